// The names of the built-in types (RFC 7950, section 4.2.4).
#include <cstring>
#include <span>

#include "loader/type_statements.h"

namespace {

struct TypeName {
    const char *rest; // after the first character
    uint32_t baseType;
};

constexpr TypeName g_namesB[] = {
    {"oolean", ZRT_TYPE_BOOLEAN},
    {"its", ZRT_TYPE_BITS},
    {"inary", ZRT_TYPE_BINARY},
};
constexpr TypeName g_namesD[] = {
    {"ecimal64", ZRT_TYPE_DECIMAL64},
};
constexpr TypeName g_namesE[] = {
    {"numeration", ZRT_TYPE_ENUMERATION},
    {"mpty", ZRT_TYPE_EMPTY},
};
constexpr TypeName g_namesI[] = {
    {"nt32", ZRT_TYPE_INT32}, {"dentityref", ZRT_TYPE_IDENTITYREF},
    {"nt8", ZRT_TYPE_INT8},   {"nstance-identifier", ZRT_TYPE_INSTANCE_IDENTIFIER},
    {"nt64", ZRT_TYPE_INT64}, {"nt16", ZRT_TYPE_INT16},
};
constexpr TypeName g_namesL[] = {
    {"eafref", ZRT_TYPE_LEAFREF},
};
constexpr TypeName g_namesS[] = {
    {"tring", ZRT_TYPE_STRING},
};
constexpr TypeName g_namesU[] = {
    {"int32", ZRT_TYPE_UINT32}, {"int16", ZRT_TYPE_UINT16}, {"int8", ZRT_TYPE_UINT8},
    {"int64", ZRT_TYPE_UINT64}, {"nion", ZRT_TYPE_UNION},
};

std::span<const TypeName> NamesStartingWith(char first)
{
    switch (first) {
    case 'b':
        return g_namesB;
    case 'd':
        return g_namesD;
    case 'e':
        return g_namesE;
    case 'i':
        return g_namesI;
    case 'l':
        return g_namesL;
    case 's':
        return g_namesS;
    case 'u':
        return g_namesU;
    default:
        return {};
    }
}

} // namespace

uint32_t ZRT_LOADER_GetBaseTypeFromTypeName(const char *name)
{
    if (name == nullptr)
        return ZRT_TYPE_DERIVED;
    for (const TypeName &candidate : NamesStartingWith(name[0])) {
        if (std::strcmp(candidate.rest, name + 1) == 0)
            return candidate.baseType;
    }
    return ZRT_TYPE_DERIVED;
}
