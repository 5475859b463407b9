#include "print/type_text.h"

#include <cstring>
#include <iterator>

#include "schema/module_record.h"
#include "types/real_type.h"

namespace {

// Indexed by ZrtBuiltInType.
constexpr const char *kKeywords[] = {
    nullptr, // derived
    "binary",  "bits",        "boolean",     "decimal64",
    "empty",   "enumeration", "identityref", "instance-identifier",
    "int8",    "int16",       "int32",       "int64",
    "leafref", "string",      "uint8",       "uint16",
    "uint32",  "uint64",      "union",
};
static_assert(std::size(kKeywords) == ZRT_TYPE_UNION + 1);

void PutTypedefName(zr::LineWriter &line, const ZrMod *module, const ZrtRealType *type)
{
    const char *moduleName = nullptr;
    const char *typedefName = ZRT_TYPE_GetInheritedTypDefName(type, &moduleName);
    if (typedefName == nullptr) {
        line.Put("unknown");
        return;
    }
    if (moduleName != nullptr && std::strcmp(moduleName, module->name) != 0)
        line.Put(moduleName).Put(":");
    line.Put(typedefName);
}

} // namespace

namespace zr {

void PutType(LineWriter &line, const ZrMod *module, const ZrtRealType *type)
{
    if (type->baseType == ZRT_TYPE_DERIVED) {
        PutTypedefName(line, module, type);
        return;
    }
    const char *path =
        type->baseType == ZRT_TYPE_LEAFREF ? ZR_TYPE_GetTypeConsDataLeafrefPath(type) : nullptr;
    if (path != nullptr)
        line.Put("-> ").Put(path);
    else
        line.Put(type->baseType < std::size(kKeywords) ? kKeywords[type->baseType] : "unknown");
}

} // namespace zr
