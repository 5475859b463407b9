// Which children of a type statement are restrictions, and of which kind.
#include <cstring>
#include <iterator>

#include "loader/type_fill.h"
#include "platform/xml.h"

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
