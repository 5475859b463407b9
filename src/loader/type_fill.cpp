// The slots of a type, kind by kind.
#include "loader/type_fill.h"

#include <cstring>
#include <iterator>

#include "foundation/load_errors.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/members/members.h"
#include "types/constraints.h"
#include "types/range.h"
#include "xpath/path_forms.h"

namespace {

constexpr ZrtConsFillFunc g_fillFuncs[] = {
    ZRT_LOADER_FillConsDataAndAllDerivedSeg,  // derived
    ZRT_LOADER_FillConsDataAndAllBaseSeg,     // base
    ZRT_LOADER_FillConsDataAndAllBitSeg,      // bit
    ZRT_LOADER_FillConsDataAndAllEnumSeg,     // enum
    ZRT_LOADER_FillConsDataAndAllFractionSeg, // fraction-digits
    ZRT_LOADER_FillConsDataAndAllLengthSeg,   // length
    ZRT_LOADER_FillConsDataAndAllPathSeg,     // path
    ZRT_LOADER_FillConsDataAndAllPatternSeg,  // pattern
    ZRT_LOADER_FillConsDataAndAllRangeSeg,    // range
    ZRT_LOADER_FillConsDataAndAllUnionSeg,    // type
};
static_assert(std::size(g_fillFuncs) == ZRT_CONS_KIND_COUNT);

// The segments of a length or range are counted only when the expression is read.
uint32_t ItemsToCreate(uint32_t kind, uint32_t count)
{
    return kind == ZRT_CONS_LENGTH || kind == ZRT_CONS_RANGE ? 0 : count;
}

uint32_t FillSlot(ZrMod *module, ZrtRealType *type, uint32_t kind, uint32_t count, xmlNode *element)
{
    ZrtConsSlot &slot = type->constraints[type->consCount];
    if (slot.body != nullptr)
        return ZR_ERR_INVALID;
    slot.body = ZRT_CONS_GetConsDataCreateBodyFunc(kind)(ItemsToCreate(kind, count));
    if (slot.body == nullptr)
        return ZR_ERR_NO_MEMORY;
    slot.kind = kind;
    ++type->consCount;
    return ZRT_LOADER_GetConsDataFillAllSegFunc(kind)(module, type, slot.body, element, count);
}

} // namespace

ZrtConsFillFunc ZRT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind)
{
    return kind < std::size(g_fillFuncs) ? g_fillFuncs[kind] : nullptr;
}

uint32_t ZRT_LOADER_FillAllTypeConstraint(ZrMod *module, ZrtRealType *type, xmlNode *element,
                                          const ZrtTypeSubElemCount *counters)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        uint32_t count = counters->counts[kind];
        if (count == 0 || ZRT_LOADER_GetConsDataFillAllSegFunc(kind) == nullptr)
            continue;
        if (type->consCount >= counters->counts[ZRT_CONS_KIND_COUNT])
            return ZR_ERR_INVALID;
        uint32_t status = FillSlot(module, type, kind, count, element);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

void ZRT_LOADER_InitSegFiller(ZrtSegFiller *filler, uint32_t itemCount, uint32_t itemSize,
                              uint32_t mark, ZrtItemLoadFunc loadItem)
{
    *filler = {itemCount, itemSize, mark, loadItem};
}

uint32_t ZRT_LOADER_FillTypeConstraintSeg(ZrMod *module, xmlNode *element,
                                          const ZrtSegFiller *filler, void *items,
                                          uint8_t *explicitFlags)
{
    auto *item = static_cast<unsigned char *>(items);
    uint32_t index = 0;
    for (xmlNode *child = element->children; child != nullptr && index < filler->itemCount;
         child = child->next) {
        if (!zr::HasTypeMark(child, filler->mark))
            continue;
        uint8_t *isExplicit = explicitFlags != nullptr ? explicitFlags + index : nullptr;
        uint32_t status = filler->loadItem(module, child, item, isExplicit);
        if (status != ZR_OK)
            return status;
        item += filler->itemSize;
        ++index;
    }
    return ZR_OK;
}

// The restrictions of numbers and text: fraction digits, ranges, lengths and patterns.

namespace {

constexpr uint64_t kMaxFractionDigits = 18;

bool IsAnchored(const char *pattern, size_t length)
{
    return length > 1 && pattern[0] == '^' && pattern[length - 1] == '$';
}

// Patterns match whole values anyway, so a pair of anchors around one says nothing; libxml2 would
// take them for characters.
const char *InternPattern(ZrDict *dict, const char *pattern)
{
    size_t length = std::strlen(pattern);
    if (!IsAnchored(pattern, length))
        return ZR_DICT_Insert(dict, pattern);
    zr::Owned<char> inner(zr::New<char>(length - 1));
    if (!inner)
        return nullptr;
    std::memcpy(inner.get(), pattern + 1, length - 2);
    return ZR_DICT_Insert(dict, inner.get());
}

} // namespace

uint32_t ZRT_LOADER_FillConsDataAndAllFractionSeg(ZrMod *, ZrtRealType *, void *body,
                                                  xmlNode *element, uint32_t)
{
    const char *text = zr::MarkedChildArgument(element, ZRT_CONS_FRACTION);
    uint64_t digits = 0;
    // Kept: what follows the number is not looked at.
    if (text == nullptr ||
        ZR_UTL_ReadInputStrAsUnsignedInteger(text, nullptr, 0, &digits) != ZR_OK || digits < 1 ||
        digits > kMaxFractionDigits)
        return ZR_ERR_INVALID;
    static_cast<ZrtConsFraction *>(body)->fractionDigits = static_cast<uint8_t>(digits);
    return ZR_OK;
}

uint32_t ZRT_LOADER_FillConsDataAndAllLengthSeg(ZrMod *, ZrtRealType *type, void *body,
                                                xmlNode *element, uint32_t)
{
    const char *expression = zr::MarkedChildArgument(element, ZRT_CONS_LENGTH);
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    return zr::ParseLengthInto(type, static_cast<ZrtConsRange *>(body), expression);
}

uint32_t ZRT_LOADER_FillConsDataAndAllRangeSeg(ZrMod *, ZrtRealType *type, void *body,
                                               xmlNode *element, uint32_t)
{
    const char *expression = zr::MarkedChildArgument(element, ZRT_CONS_RANGE);
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    return zr::ParseRangeInto(type, static_cast<ZrtConsRange *>(body), expression);
}

uint32_t ZRT_LOADER_FillOneConsSegPattern(ZrMod *module, xmlNode *element, void *item, uint8_t *)
{
    auto *entry = static_cast<ZrtPatternItem *>(item);
    const char *pattern = ZR_XML_GetFirstPropertyValue(element);
    if (pattern == nullptr)
        return ZR_ERR_INVALID;
    entry->pattern = InternPattern(&module->ctx->dict, pattern);
    // "invert-match" is the only modifier there is, so that its word is not read.
    entry->invertMatch = zr::FirstChildNamed(element, "modifier") != nullptr;
    return entry->pattern != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRT_LOADER_FillConsDataAndAllPatternSeg(ZrMod *module, ZrtRealType *, void *body,
                                                 xmlNode *element, uint32_t count)
{
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrtPatternItem),
                             zr::TypeMarkOf(ZRT_CONS_PATTERN), ZRT_LOADER_FillOneConsSegPattern);
    return ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler,
                                            static_cast<ZrtConsPattern *>(body)->items, nullptr);
}

// The restrictions that name something else: a typedef, an identity, a leaf or member types.

namespace {

// A reference "prefix:name" or "name", taken apart.
struct Reference {
    const char *moduleName = nullptr;
    char name[zr::kNameSize];

    // 22 when the text is malformed or the prefix is unknown.
    uint32_t Read(const ZrMod *module, const char *text)
    {
        char prefix[zr::kNameSize];
        if (ZR_UTL_GetXPathNextPrefixAndNode(text, prefix, sizeof prefix, name, sizeof name) !=
            ZR_OK)
            return ZR_ERR_INVALID;
        moduleName =
            prefix[0] != '\0' ? ZRS_MOD_GetModuleNameByPrefix(module, prefix) : module->name;
        return moduleName != nullptr ? ZR_OK : ZR_ERR_INVALID;
    }
};

} // namespace

uint32_t ZRT_LOADER_FillConsDataAndAllDerivedSeg(ZrMod *module, ZrtRealType *, void *body,
                                                 xmlNode *element, uint32_t)
{
    auto *derived = static_cast<ZrtConsDerived *>(body);
    const char *typeName = ZR_XML_GetFirstPropertyValue(element);
    Reference reference;
    if (typeName == nullptr || reference.Read(module, typeName) != ZR_OK)
        return ZR_ERR_INVALID;
    derived->moduleName = ZR_DICT_Insert(&module->ctx->dict, reference.moduleName);
    if (derived->moduleName == nullptr)
        return ZR_ERR_NO_MEMORY;
    derived->typedefName = ZR_DICT_Insert(&module->ctx->dict, reference.name);
    return derived->typedefName != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRT_LOADER_FillOneConsSegBase(ZrMod *module, xmlNode *element, void *item, uint8_t *)
{
    const char *name = ZR_XML_GetFirstPropertyValue(element);
    if (name == nullptr) {
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                           "base");
        return ZR_ERR_INVALID;
    }
    Reference reference;
    if (reference.Read(module, name) != ZR_OK)
        return ZR_ERR_INVALID;
    return ZRS_MOD_FillIdentBase(&module->ctx->dict, static_cast<ZrsIdentBase *>(item),
                                 reference.moduleName, reference.name);
}

uint32_t ZRT_LOADER_FillConsDataAndAllBaseSeg(ZrMod *module, ZrtRealType *, void *body,
                                              xmlNode *element, uint32_t count)
{
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrsIdentBase), zr::TypeMarkOf(ZRT_CONS_BASE),
                             ZRT_LOADER_FillOneConsSegBase);
    return ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler,
                                            static_cast<ZrtConsBase *>(body)->items, nullptr);
}

namespace {

// "require-instance" is true unless it begins like "false"; nothing else of the word is read.
uint32_t ReadRequireInstance(const xmlNode *element)
{
    const char *value = ZRT_LOADER_GetMatchChildFirstMatchedValStr(element, "require-instance");
    return value == nullptr || value[0] != 'f';
}

} // namespace

uint32_t ZRT_LOADER_FillConsDataAndAllPathSeg(ZrMod *module, ZrtRealType *, void *body,
                                              xmlNode *element, uint32_t)
{
    auto *leafref = static_cast<ZrtConsPath *>(body);
    const char *path = zr::MarkedChildArgument(element, ZRT_CONS_PATH);
    if (path == nullptr || leafref->path != nullptr)
        return ZR_ERR_INVALID;
    leafref->requireInstance = ReadRequireInstance(element);
    if (path[0] != '.' && path[0] != '/')
        return ZR_ERR_INVALID;
    zr::Owned<char> jsonPath(ZR_XPATH_TransformToJsonFormat(module, path));
    if (!jsonPath)
        return ZR_ERR_INVALID;
    leafref->path = ZR_DICT_Insert(&module->ctx->dict, jsonPath.get());
    return leafref->path != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRT_LOADER_FillOneConsSegUnion(ZrMod *module, xmlNode *element, void *item, uint8_t *)
{
    return ZRT_LOADER_ParseTypeStmt(module, element, ZRS_STMT_TYPE, item);
}

uint32_t ZRT_LOADER_FillConsDataAndAllUnionSeg(ZrMod *module, ZrtRealType *, void *body,
                                               xmlNode *element, uint32_t count)
{
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrtRealType), zr::TypeMarkOf(ZRT_CONS_UNION),
                             ZRT_LOADER_FillOneConsSegUnion);
    return ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler,
                                            static_cast<ZrtConsUnion *>(body)->items, nullptr);
}
