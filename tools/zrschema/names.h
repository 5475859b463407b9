// The names of the interface's numbers, and of types.
#pragma once

#include <zrschema/zrschema.h>

#include <string>

namespace tool {

std::string StatusName(uint32_t status);
std::string BuiltInTypeName(uint32_t baseType);
std::string NodeKindName(uint32_t kind);
std::string ErrorTypeName(uint32_t type);
std::string ErrorSeverityName(uint32_t severity);
std::string ErrorTagName(uint32_t tag);

// A built-in type's keyword, or a typedef's name with its module.
std::string TypeName(const ZrCtx *ctx, const ZrtRealType *type);
// The name of the type that took a value, as the leaf's type leads to it: a typedef of its chain, a
// member of its union, or what its leafref points to.
std::string MatchedTypeName(const ZrCtx *ctx, const ZrNode *leaf, const ZrtRealType *matched);

} // namespace tool
