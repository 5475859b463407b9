// SPDX-License-Identifier: Apache-2.0
// Chains: from typedef to typedef, and from leafref to leafref. Nothing else follows them.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

#include "model/module_records.h"

namespace zr {

// Links of one chain that are followed at the most. Typedefs that name each other, and leafrefs
// that lead in a circle, have no other end.
constexpr uint32_t kMaxChainLinks = 129;

// The type that a typedef reference leads to: the one to which it has been resolved, else that of
// the loaded typedef of its name, else null.
const ZrtRealType *ReferencedType(const ZrtConsDerived *derived, const ZrCtx *ctx);

// A walk along the typedefs behind a type (RFC 7950, section 7.3), one link with each Next().
class TypedefChain {
public:
    enum How : uint32_t {
        kByName,  // each typedef is looked up in the context, where it may have moved or gone
        kResolved // by the references' resolved pointers where they are set; when nothing loads
    };

    // `links` have been followed before this walk.
    TypedefChain(const ZrCtx *ctx, const ZrtRealType *type, How how, uint32_t links = 0)
        : ctx_(ctx), type_(type), how_(how), links_(links)
    {
    }

    // Goes to the typedef to which the present type refers. False, and the walk stays, at a type
    // that is no reference, behind a typedef that is not loaded, and after kMaxChainLinks.
    bool Next();

    // Where the walk stands: at the beginning the type that it was given; null for a typedef that
    // is not loaded.
    const ZrtRealType *Type() const { return type_; }
    // The typedef of a walk by name; null when it is not loaded.
    const ZrsTypDef *Definition() const { return definition_; }
    // The names in the reference that was followed last; null when it has none.
    const char *ModuleName() const { return moduleName_; }
    const char *TypedefName() const { return typedefName_; }
    uint32_t Links() const { return links_; }

private:
    const ZrCtx *ctx_;
    const ZrtRealType *type_;
    How how_;
    uint32_t links_;
    const ZrsTypDef *definition_ = nullptr;
    const char *moduleName_ = nullptr;
    const char *typedefName_ = nullptr;
};

// The path of a leaf or leaf-list that is a leafref (RFC 7950, section 9.9): its type's, or the
// first one along the chain of its typedefs. Null for another type and for another node.
const char *LeafrefPathOf(const ZrNode *node);

// The node that the path leads to from `node`, with `follow` on through the leafrefs that it meets.
// Null when there is none, and when the leafrefs do not come to an end.
ZrNode *LeafrefTarget(const ZrNode *node, const char *path, bool follow);

} // namespace zr
