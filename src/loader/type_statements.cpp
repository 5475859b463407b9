#include <zrschema/names.h>

#include <cstring>
#include <iterator>

#include "foundation/load_errors.h"
#include "loader/arguments.h"
#include "loader/engine.h"
#include "loader/module_form.h"
#include "loader/type_fill.h"
#include "platform/xml.h"
#include "schema/members/members.h"
#include "types/real_type.h"

namespace {

void RecordParseFailure(ZrMod *module, const char *value, const char *keyword)
{
    ZR_CTX_AddModError(module->ctx, module->name,
                       "Failed to parse value \"%s\" of statement \"%s\".", value, keyword);
}

uint32_t ParseTypeDefBody(ZrMod *module, xmlNode *element, const char *name, ZrsTypDef *typeDef)
{
    ZrsSubElem rows[] = {
        {ZRS_STMT_TYPE, &typeDef->realType, nullptr, nullptr, 0, ZRS_ROW_UNIQUE},
        {ZRS_STMT_DEFAULT, &typeDef->defaultValue, nullptr, nullptr, 0, ZRS_ROW_UNIQUE},
        {ZRS_STMT_UNITS, &typeDef->units, nullptr, nullptr, 0, ZRS_ROW_UNIQUE},
    };
    uint32_t status = ZRS_LOADER_ParseSubStatements(module, element, ZRS_STMT_TYPEDEF, rows,
                                                    static_cast<uint32_t>(std::size(rows)));
    if (status != ZR_OK) {
        RecordParseFailure(module, name, "typedef");
        return status;
    }
    if (ZRT_TYPE_IsInvalidType(&typeDef->realType)) {
        ZR_CTX_AddModError(module->ctx, module->name,
                           "typedef \"%s\" must define with type statement.", name);
        return ZR_ERR_INVALID;
    }
    return ZRS_LOADER_RefreshTypeDefDefaultValue(module, typeDef);
}

} // namespace

uint32_t ZRT_LOADER_ParseTypeStmt(ZrMod *module, xmlNode *element, uint32_t, void *destination)
{
    auto *type = static_cast<ZrtRealType *>(destination);
    if (type == nullptr || module == nullptr || element == nullptr)
        return ZR_ERR_INVALID;
    const char *name = ZR_XML_GetFirstPropertyValue(element);
    if (name == nullptr) {
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                           "typeName");
        return ZR_ERR_INVALID;
    }
    ZrtTypeSubElemCount counters = {};
    uint32_t baseType = ZRT_LOADER_GetBaseTypeFromTypeName(name);
    if (baseType == ZRT_TYPE_DERIVED) {
        counters.counts[ZRT_CONS_DERIVED] = 1;
        counters.counts[ZRT_CONS_KIND_COUNT] = 1;
    }
    uint32_t status = zr::CountAndMarkRestrictions(element, &counters);
    if (status != ZR_OK) {
        RecordParseFailure(module, name, "type");
        return status;
    }
    type->baseType = baseType;
    if (counters.counts[ZRT_CONS_KIND_COUNT] == 0)
        return ZR_OK;
    status = ZRT_TYPE_ExpandConstraintArray(type, counters.counts[ZRT_CONS_KIND_COUNT]);
    if (status != ZR_OK)
        return status;
    status = ZRT_LOADER_FillAllTypeConstraint(module, type, element, &counters);
    if (status != ZR_OK)
        RecordParseFailure(module, name, "type");
    return status;
}

uint32_t ZRT_LOADER_ParseTypeDefStmt(ZrMod *module, xmlNode *element, uint32_t, void *destination)
{
    auto *typeDef = static_cast<ZrsTypDef *>(destination);
    if (typeDef == nullptr || module == nullptr || element == nullptr)
        return ZR_ERR_INVALID;
    const char *name = zr::RequireName(module, element, ZRS_STMT_TYPEDEF);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    typeDef->name = ZR_DICT_Insert(&module->ctx->dict, name);
    if (typeDef->name == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = ParseTypeDefBody(module, element, name, typeDef);
    if (status != ZR_OK)
        ZRS_TYPE_DestroyTypDefInner(module->ctx, typeDef);
    return status;
}

// The names of the built-in types (RFC 7950, section 4.2.4).

uint32_t ZRT_LOADER_GetBaseTypeFromTypeName(const char *name)
{
    if (name == nullptr)
        return ZRT_TYPE_DERIVED;
    for (uint32_t type = ZRT_TYPE_DERIVED + 1; type < ZRT_TYPE_NONE; ++type) {
        if (std::strcmp(ZR_GetBuiltInTypeName(type), name) == 0)
            return type;
    }
    return ZRT_TYPE_DERIVED;
}

// Which children of a type statement are restrictions, and of which kind.

namespace {

constexpr char kYinNamespace[] = "urn:ietf:params:xml:ns:yang:yin:1";

struct KindRow {
    const char *keyword;
    uint32_t mark;
};

// clang-format off
constexpr KindRow g_kindRows[] = {
//   keyword            mark
    {nullptr,           0x000}, // derived: the type's name itself
    {"base",            0x001},
    {"bit",             0x002},
    {"enum",            0x004},
    {"fraction-digits", 0x008},
    {"length",          0x010},
    {"path",            0x020},
    {"pattern",         0x040},
    {"range",           0x080},
    {"type",            0x200},
};
// clang-format on
static_assert(std::size(g_kindRows) == ZRT_CONS_KIND_COUNT);

// Every keyword begins with one of these.
constexpr char kFirstLetters[] = "beflprt";

// The kind that a child element restricts its type by, or 0.
uint32_t KindOfChild(const xmlNode *child)
{
    const auto *name = reinterpret_cast<const char *>(child->name);
    if (child->type != XML_ELEMENT_NODE || *name == '\0' ||
        std::strchr(kFirstLetters, *name) == nullptr)
        return 0;
    // An extension may use the same words for statements of its own.
    const char *ns = ZR_XML_GetXmlNodeDefaultNs(child);
    if (ns != nullptr && std::strcmp(ns, kYinNamespace) != 0)
        return 0;
    for (uint32_t kind = 1; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        if (std::strcmp(g_kindRows[kind].keyword, name) == 0)
            return kind;
    }
    return 0;
}

} // namespace

namespace zr {

uint32_t TypeMarkOf(uint32_t kind)
{
    return kind < std::size(g_kindRows) ? g_kindRows[kind].mark : 0;
}

uint32_t CountAndMarkRestrictions(xmlNode *element, ZrtTypeSubElemCount *counters)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        uint32_t kind = KindOfChild(child);
        if (kind == 0)
            continue;
        uint16_t &counter = counters->counts[kind];
        if (counter == UINT16_MAX)
            return ZR_ERR_INVALID;
        ++counter;
        auto marks = reinterpret_cast<uintptr_t>(child->_private) | TypeMarkOf(kind);
        child->_private = reinterpret_cast<void *>(marks);
        if (counter == 1)
            ++counters->counts[ZRT_CONS_KIND_COUNT];
    }
    return ZR_OK;
}

xmlNode *FirstChildNamed(const xmlNode *element, const char *name)
{
    xmlNode *child = element->children;
    while (child != nullptr &&
           (child->type != XML_ELEMENT_NODE ||
            std::strcmp(reinterpret_cast<const char *>(child->name), name) != 0))
        child = child->next;
    return child;
}

bool HasTypeMark(const xmlNode *element, uint32_t mark)
{
    return (reinterpret_cast<uintptr_t>(element->_private) & mark) != 0;
}

const char *MarkedChildArgument(const xmlNode *element, uint32_t kind)
{
    const xmlNode *child = ZR_XML_GetFirstChildNodeWithPriVal(element, TypeMarkOf(kind));
    return child != nullptr ? ZR_XML_GetFirstPropertyValue(child) : nullptr;
}

} // namespace zr

const char *ZRT_LOADER_GetMatchChildFirstMatchedValStr(const xmlNode *element, const char *name)
{
    if (element == nullptr || name == nullptr)
        return nullptr;
    const xmlNode *child = zr::FirstChildNamed(element, name);
    return child != nullptr ? ZR_XML_GetFirstPropertyValue(child) : nullptr;
}
