// SPDX-License-Identifier: Apache-2.0
// The slots of a type, kind by kind.
#include "loader/types/type_fill.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/text.h"
#include "loader/statements/arguments.h"
#include "loader/statements/statements.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/members/members.h"
#include "types/constraints.h"
#include "types/range.h"
#include "xpath/path_forms.h"

namespace {

const char *KeywordOf(uint32_t statement)
{
    return ZRS_LOADER_GetKeywordByStmt(statement);
}

uint32_t Intern(ZrMod *module, const char *&field, const char *text)
{
    return zr::Intern(&module->ctx->dict, field, text) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

// Loads the items of a body from the marked children.
template <typename Item>
uint32_t FillItems(ZrMod *module, xmlNode *element, uint32_t kind, Item *items, uint32_t count,
                   ZrtItemLoadFunc loadItem, uint8_t *explicitFlags = nullptr)
{
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(Item), zr::TypeMarkOf(kind), loadItem);
    return ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler, items, explicitFlags);
}

} // namespace

// The restrictions of numbers and text: fraction digits, ranges, lengths and patterns.

namespace {

constexpr uint64_t kMaxFractionDigits = 18; // RFC 7950, section 9.3.4

bool IsAnchored(const char *pattern, size_t length)
{
    return length > 1 && pattern[0] == '^' && pattern[length - 1] == '$';
}

// Patterns match whole values anyway, so a pair of anchors around one says nothing; libxml2 would
// take them for characters.
uint32_t InternPattern(ZrMod *module, const char *&field, const char *pattern)
{
    size_t length = std::strlen(pattern);
    if (!IsAnchored(pattern, length))
        return Intern(module, field, pattern);
    zr::Owned<char> inner(zr::New<char>(length - 1));
    if (!inner)
        return ZR_ERR_NO_MEMORY;
    std::memcpy(inner.get(), pattern + 1, length - 2);
    return Intern(module, field, inner.get());
}

} // namespace

uint32_t ZRT_LOADER_FillConsDataAndAllFractionSeg(ZrMod * /*module*/, ZrtRealType * /*type*/,
                                                  void *body, xmlNode *element, uint32_t /*count*/)
{
    const char *text = zr::MarkedChildArgument(element, ZRT_CONS_FRACTION);
    uint64_t digits = 0;
    // What follows the number is not looked at (docs/oddities.md).
    if (text == nullptr ||
        ZR_UTL_ReadInputStrAsUnsignedInteger(text, nullptr, 0, &digits) != ZR_OK || digits < 1 ||
        digits > kMaxFractionDigits)
        return ZR_ERR_INVALID;
    static_cast<ZrtConsFraction *>(body)->fractionDigits = static_cast<uint8_t>(digits);
    return ZR_OK;
}

uint32_t ZRT_LOADER_FillConsDataAndAllLengthSeg(ZrMod * /*module*/, ZrtRealType *type, void *body,
                                                xmlNode *element, uint32_t /*count*/)
{
    const char *expression = zr::MarkedChildArgument(element, ZRT_CONS_LENGTH);
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    return zr::ParseLengthInto(type, static_cast<ZrtConsRange *>(body), expression);
}

uint32_t ZRT_LOADER_FillConsDataAndAllRangeSeg(ZrMod *module, ZrtRealType *type, void *body,
                                               xmlNode *element, uint32_t /*count*/)
{
    const char *expression = zr::MarkedChildArgument(element, ZRT_CONS_RANGE);
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    return zr::ParseRangeInto(type, static_cast<ZrtConsRange *>(body), expression,
                              zr::IsStandard(module->ctx));
}

uint32_t ZRT_LOADER_FillOneConsSegPattern(ZrMod *module, xmlNode *element, void *item,
                                          uint8_t * /*isExplicit*/)
{
    auto *entry = static_cast<ZrtPatternItem *>(item);
    const char *pattern = ZR_XML_GetFirstPropertyValue(element);
    if (pattern == nullptr)
        return ZR_ERR_INVALID;
    // Its word is not read: "invert-match" is the only modifier there is (docs/oddities.md).
    entry->invertMatch = zr::FirstChildNamed(element, KeywordOf(ZRS_STMT_MODIFIER)) != nullptr;
    return InternPattern(module, entry->pattern, pattern);
}

uint32_t ZRT_LOADER_FillConsDataAndAllPatternSeg(ZrMod *module, ZrtRealType * /*type*/, void *body,
                                                 xmlNode *element, uint32_t count)
{
    return FillItems(module, element, ZRT_CONS_PATTERN, static_cast<ZrtConsPattern *>(body)->items,
                     count, ZRT_LOADER_FillOneConsSegPattern);
}

// The restrictions that name something else: a typedef, an identity, a leaf or member types.

uint32_t ZRT_LOADER_FillConsDataAndAllDerivedSeg(ZrMod *module, ZrtRealType * /*type*/, void *body,
                                                 xmlNode *element, uint32_t /*count*/)
{
    auto *derived = static_cast<ZrtConsDerived *>(body);
    const char *typeName = ZR_XML_GetFirstPropertyValue(element);
    zr::DefinitionRef ref;
    if (typeName == nullptr || zr::ReadDefinitionRef(module, typeName, &ref) != ZR_OK)
        return ZR_ERR_INVALID;
    uint32_t status = Intern(module, derived->moduleName, ref.moduleName);
    return status == ZR_OK ? Intern(module, derived->typedefName, ref.name) : status;
}

uint32_t ZRT_LOADER_FillOneConsSegBase(ZrMod *module, xmlNode *element, void *item,
                                       uint8_t * /*isExplicit*/)
{
    const char *name = zr::RequireArgument(module, element, ZRS_STMT_BASE);
    zr::DefinitionRef ref;
    if (name == nullptr || zr::ReadDefinitionRef(module, name, &ref) != ZR_OK)
        return ZR_ERR_INVALID;
    return ZRS_MOD_FillIdentBase(&module->ctx->dict, static_cast<ZrsIdentBase *>(item),
                                 ref.moduleName, ref.name);
}

uint32_t ZRT_LOADER_FillConsDataAndAllBaseSeg(ZrMod *module, ZrtRealType * /*type*/, void *body,
                                              xmlNode *element, uint32_t count)
{
    return FillItems(module, element, ZRT_CONS_BASE, static_cast<ZrtConsBase *>(body)->items, count,
                     ZRT_LOADER_FillOneConsSegBase);
}

namespace {

// True unless the word begins like "false"; nothing else of it is read (docs/oddities.md).
uint32_t ReadRequireInstance(const xmlNode *element)
{
    const char *value = zr::ArgumentOfChild(element, KeywordOf(ZRS_STMT_REQUIRE_INSTANCE));
    return value == nullptr || value[0] != 'f';
}

bool KeepsPredicates(const ZrMod *module, const xmlNode *element)
{
    const char *path = zr::MarkedChildArgument(element, ZRT_CONS_PATH);
    return zr::IsStandard(module->ctx) && path != nullptr && std::strchr(path, '[') != nullptr;
}

// The path of a leafref is kept twice: for the schema without its predicates, and whole for data.
uint32_t KeepPredicates(ZrMod *module, ZrtConsPath *leafref, const char *path)
{
    ZrtConsFullPath *full = zr::FullPathOf(leafref);
    if (full == nullptr)
        return ZR_OK;
    zr::Owned<char> fullPath(ZRS_LOADER_TransPrefix2ModNameInLiteral(module, path));
    return fullPath ? Intern(module, full->fullPath, fullPath.get()) : uint32_t{ZR_ERR_INVALID};
}

} // namespace

uint16_t zr::ReadInstanceFlags(const ZrMod *module, const xmlNode *element, uint32_t baseType)
{
    bool refers = baseType == ZRT_TYPE_LEAFREF || baseType == ZRT_TYPE_INSTANCE_IDENTIFIER;
    bool speaks =
        refers || zr::FirstChildNamed(element, KeywordOf(ZRS_STMT_REQUIRE_INSTANCE)) != nullptr;
    if (!speaks || !zr::IsStandard(module->ctx))
        return 0;
    return ReadRequireInstance(element) != 0 ? ZRT_INSTANCE_REQUIRED : ZRT_INSTANCE_OPTIONAL;
}

uint32_t ZRT_LOADER_FillConsDataAndAllPathSeg(ZrMod *module, ZrtRealType * /*type*/, void *body,
                                              xmlNode *element, uint32_t /*count*/)
{
    auto *leafref = static_cast<ZrtConsPath *>(body);
    const char *path = zr::MarkedChildArgument(element, ZRT_CONS_PATH);
    if (path == nullptr || leafref->path != nullptr)
        return ZR_ERR_INVALID;
    leafref->requireInstance =
        (leafref->requireInstance & ZRT_PATH_HAS_PREDICATES) | ReadRequireInstance(element);
    if (path[0] != '.' && path[0] != '/')
        return ZR_ERR_INVALID;
    zr::Owned<char> jsonPath(ZR_XPATH_TransformToJsonFormat(module, path));
    if (!jsonPath)
        return ZR_ERR_INVALID;
    uint32_t status = Intern(module, leafref->path, jsonPath.get());
    return status == ZR_OK ? KeepPredicates(module, leafref, path) : status;
}

uint32_t ZRT_LOADER_FillOneConsSegUnion(ZrMod *module, xmlNode *element, void *item,
                                        uint8_t * /*isExplicit*/)
{
    return ZRS_LOADER_GetStmtParseFunc(ZRS_STMT_TYPE)(module, element, ZRS_STMT_TYPE, item);
}

uint32_t ZRT_LOADER_FillConsDataAndAllUnionSeg(ZrMod *module, ZrtRealType * /*type*/, void *body,
                                               xmlNode *element, uint32_t count)
{
    return FillItems(module, element, ZRT_CONS_UNION, static_cast<ZrtConsUnion *>(body)->items,
                     count, ZRT_LOADER_FillOneConsSegUnion);
}

// The restrictions that number names: the enums of an enumeration and the bits of a bits type
// (RFC 7950, sections 9.6.4 and 9.7.4).

namespace {

// Neither end of the 32-bit range of an enum and not the last position of a bit can be given
// (docs/oddities.md), but in a context with ZR_CTX_STANDARD.
bool TakesEnumValue(const ZrMod *module, int64_t value)
{
    bool isEnd = value == INT32_MIN || value == INT32_MAX;
    return value >= INT32_MIN && value <= INT32_MAX && (!isEnd || zr::IsStandard(module->ctx));
}

bool TakesBitPosition(const ZrMod *module, uint64_t position)
{
    return position < UINT32_MAX || (position == UINT32_MAX && zr::IsStandard(module->ctx));
}

bool EndsAfterBlanks(const char *text)
{
    return *ZR_UTL_ConsumeAllSpaceChar(text) == '\0';
}

uint32_t InternName(ZrMod *module, const xmlNode *element, const char *&field)
{
    const char *name = ZR_XML_GetFirstPropertyValue(element);
    return name != nullptr ? Intern(module, field, name) : uint32_t{ZR_ERR_INVALID};
}

// Gives the items without a number of their own the next free one, in document order. The next is
// one above the greatest so far; `last` is the greatest that the number's type can hold.
template <typename Item, typename Number>
uint32_t AssignNumbers(Item *items, uint32_t count, const uint8_t *explicitFlags,
                       Number Item::*number, int64_t last)
{
    int64_t next = 0;
    for (uint32_t i = 0; i < count; ++i) {
        if (explicitFlags[i] == 0) {
            if (next > last)
                return ZR_ERR_INVALID;
            items[i].*number = static_cast<Number>(next);
        }
        next = std::max(next, int64_t{items[i].*number} + 1);
    }
    return ZR_OK;
}

} // namespace

uint32_t ZRT_LOADER_FillOneConsSegEnum(ZrMod *module, xmlNode *element, void *item,
                                       uint8_t *isExplicit)
{
    auto *entry = static_cast<ZrtEnumItem *>(item);
    const char *text = zr::ArgumentOfChild(element, KeywordOf(ZRS_STMT_VALUE));
    if (text != nullptr) {
        int64_t value = 0;
        const char *end = nullptr;
        if (ZR_UTL_ReadInputStrAsSignedInteger(text, &end, 0, &value) != ZR_OK ||
            !EndsAfterBlanks(end) || !TakesEnumValue(module, value))
            return ZR_ERR_INVALID;
        entry->value = static_cast<int32_t>(value);
        *isExplicit = 1;
    }
    return InternName(module, element, entry->name);
}

uint32_t ZRT_LOADER_FillOneConsSegBit(ZrMod *module, xmlNode *element, void *item,
                                      uint8_t *isExplicit)
{
    auto *entry = static_cast<ZrtBitItem *>(item);
    const char *text = zr::ArgumentOfChild(element, KeywordOf(ZRS_STMT_POSITION));
    if (text != nullptr) {
        uint64_t position = 0;
        const char *end = nullptr;
        if (ZR_UTL_ReadInputStrAsUnsignedInteger(text, &end, 0, &position) != ZR_OK ||
            !EndsAfterBlanks(end) || !TakesBitPosition(module, position))
            return ZR_ERR_INVALID;
        entry->position = static_cast<uint32_t>(position);
        *isExplicit = 1;
    }
    return InternName(module, element, entry->name);
}

uint32_t ZR_LOADER_FillDescWithAllEnum(ZrMod *module, ZrtConsEnum *body, xmlNode *element)
{
    body->descriptions = zr::New<const char *>(body->count);
    if (body->descriptions == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZrsParseFunc parse = ZRS_LOADER_GetStmtParseFunc(ZRS_STMT_DESCRIPTION);
    uint32_t index = 0;
    for (xmlNode *child = element->children; child != nullptr && index < body->count;
         child = child->next) {
        if (!zr::HasTypeMark(child, ZRT_MARK_ENUM))
            continue;
        const char **description = &body->descriptions[index++];
        xmlNode *statement = zr::FirstChildNamed(child, KeywordOf(ZRS_STMT_DESCRIPTION));
        if (statement == nullptr)
            continue;
        uint32_t status = parse(module, statement, ZRS_STMT_ENUM, description);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRT_LOADER_FillConsDataAndAllEnumSeg(ZrMod *module, ZrtRealType * /*type*/, void *body,
                                              xmlNode *element, uint32_t count)
{
    auto *enums = static_cast<ZrtConsEnum *>(body);
    zr::Owned<uint8_t> flags(zr::New<uint8_t>(count));
    if (!flags)
        return ZR_ERR_NO_MEMORY;
    uint32_t status = FillItems(module, element, ZRT_CONS_ENUM, enums->items, count,
                                ZRT_LOADER_FillOneConsSegEnum, flags.get());
    if (status == ZR_OK && (module->ctx->flags & ZR_CTX_KEEP_DESCRIPTIONS) != 0)
        status = ZR_LOADER_FillDescWithAllEnum(module, enums, element);
    if (status != ZR_OK)
        return status;
    return AssignNumbers(enums->items, count, flags.get(), &ZrtEnumItem::value, INT32_MAX);
}

uint32_t ZRT_LOADER_FillConsDataAndAllBitSeg(ZrMod *module, ZrtRealType * /*type*/, void *body,
                                             xmlNode *element, uint32_t count)
{
    auto *bits = static_cast<ZrtConsBit *>(body);
    zr::Owned<uint8_t> flags(zr::New<uint8_t>(count));
    if (!flags)
        return ZR_ERR_NO_MEMORY;
    uint32_t status = FillItems(module, element, ZRT_CONS_BIT, bits->items, count,
                                ZRT_LOADER_FillOneConsSegBit, flags.get());
    if (status != ZR_OK)
        return status;
    return AssignNumbers(bits->items, count, flags.get(), &ZrtBitItem::position, UINT32_MAX);
}

// All kinds.

namespace {

struct KindFill {
    uint32_t kind;
    ZrtConsFillFunc fill;
};

// clang-format off
constexpr KindFill kKindFills[] = {
    {ZRT_CONS_DERIVED,  ZRT_LOADER_FillConsDataAndAllDerivedSeg},
    {ZRT_CONS_BASE,     ZRT_LOADER_FillConsDataAndAllBaseSeg},
    {ZRT_CONS_BIT,      ZRT_LOADER_FillConsDataAndAllBitSeg},
    {ZRT_CONS_ENUM,     ZRT_LOADER_FillConsDataAndAllEnumSeg},
    {ZRT_CONS_FRACTION, ZRT_LOADER_FillConsDataAndAllFractionSeg},
    {ZRT_CONS_LENGTH,   ZRT_LOADER_FillConsDataAndAllLengthSeg},
    {ZRT_CONS_PATH,     ZRT_LOADER_FillConsDataAndAllPathSeg},
    {ZRT_CONS_PATTERN,  ZRT_LOADER_FillConsDataAndAllPatternSeg},
    {ZRT_CONS_RANGE,    ZRT_LOADER_FillConsDataAndAllRangeSeg},
    {ZRT_CONS_UNION,    ZRT_LOADER_FillConsDataAndAllUnionSeg},
};
// clang-format on

consteval bool KindsStandInOrder()
{
    for (uint32_t i = 0; i < std::size(kKindFills); ++i) {
        if (kKindFills[i].kind != i)
            return false;
    }
    return std::size(kKindFills) == ZRT_CONS_KIND_COUNT;
}
static_assert(KindsStandInOrder());

// The segments of a length or range are counted only when the expression is read.
uint32_t ItemsToCreate(uint32_t kind, uint32_t count)
{
    return kind == ZRT_CONS_LENGTH || kind == ZRT_CONS_RANGE ? 0 : count;
}

void *CreateBody(const ZrMod *module, uint32_t kind, uint32_t count, const xmlNode *element)
{
    if (kind == ZRT_CONS_PATH && KeepsPredicates(module, element))
        return zr::CreateFullPath();
    return ZRT_CONS_GetConsDataCreateBodyFunc(kind)(ItemsToCreate(kind, count));
}

uint32_t FillSlot(ZrMod *module, ZrtRealType *type, uint32_t kind, uint32_t count, xmlNode *element)
{
    ZrtConsSlot &slot = type->constraints[type->consCount];
    if (slot.body != nullptr)
        return ZR_ERR_INVALID;
    slot.body = CreateBody(module, kind, count, element);
    if (slot.body == nullptr)
        return ZR_ERR_NO_MEMORY;
    slot.kind = kind;
    ++type->consCount;
    return kKindFills[kind].fill(module, type, slot.body, element, count);
}

} // namespace

ZrtConsFillFunc ZRT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind)
{
    return kind < std::size(kKindFills) ? kKindFills[kind].fill : nullptr;
}

uint32_t ZRT_LOADER_FillAllTypeConstraint(ZrMod *module, ZrtRealType *type, xmlNode *element,
                                          const ZrtTypeSubElemCount *counters)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        uint32_t count = counters->counts[kind];
        if (count == 0)
            continue;
        if (type->consCount >= counters->counts[ZRT_CONS_KIND_COUNT])
            return ZR_ERR_INVALID;
        uint32_t status = FillSlot(module, type, kind, count, element);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}
