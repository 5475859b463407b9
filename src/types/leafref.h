// Where a leafref leads (RFC 7950, section 9.9): read alike by queries and by checks of values.
#pragma once

#include <zrschema/types.h>

namespace zr {

// The path of a leaf or leaf-list that is a leafref: its type's, or the first one along the chain
// of its typedefs. Null for another type and for another node.
const char *LeafrefPathOf(const ZrNode *node);

// The node that the path leads to from `node`, with `follow` on through the leafrefs that it meets.
// Null when there is none, and when the leafrefs do not come to an end.
ZrNode *LeafrefTarget(const ZrNode *node, const char *path, bool follow);

} // namespace zr
