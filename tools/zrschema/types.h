// SPDX-License-Identifier: Apache-2.0
// What types are called, and what they take.
#pragma once

#include <zrschema/zrschema.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tool {

// A type statement and then those of the typedefs behind it, down to the built-in type; null at the
// end when a typedef is not loaded.
std::vector<const ZrtRealType *> TypeChain(const ZrCtx *ctx, const ZrtRealType *type);

// A built-in type's keyword, or a typedef's name with its module.
std::string TypeName(const ZrCtx *ctx, const ZrtRealType *type);
// The name of the type that took a value, as the leaf's type leads to it: a typedef of its chain, a
// member of its union, or what a leafref points to.
std::string MatchedTypeName(const ZrCtx *ctx, const ZrNode *leaf, const ZrtRealType *matched);

// The member types of a union, none for another type.
std::vector<const ZrtRealType *> MembersOf(const ZrtRealType *type);

// Bounds of ranges and lengths, both included; signed numbers as their bit patterns.
using Segments = std::vector<std::pair<uint64_t, uint64_t>>;
bool IsSigned(uint32_t baseType);
Segments SegmentsOf(const ZrtRealType *type);

// What a leaf takes, in words and with all restrictions.
std::string ExpectedValue(const ZrCtx *ctx, const ZrNode *leaf);

} // namespace tool
