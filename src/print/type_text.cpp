#include "print/type_text.h"

#include <zrschema/names.h>

#include <cstring>

#include "model/module_record.h"
#include "types/real_type.h"

namespace {

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
        line.Put(ZR_GetBuiltInTypeName(type->baseType));
}

} // namespace zr
