// The namespace declarations of elements that are added to a tree: what the tree says of them, its
// text says too.
#pragma once

#include "data/check_records.h"

namespace zr {

// Puts an element whose parent belongs to another module into its own module's namespace, which it
// declares as the default one. False when memory runs out.
bool EnterModuleNamespace(xmlNode *element, const ZrNode *parentSchema, const ZrNode *schemaNode);

// Declares what the qualifier of an identityref's default stands for, so that the value means the
// identity in XML too (RFC 7950, section 9.10.3), unless the prefix is bound to that namespace
// there already. Any other value needs no declaration. False when memory runs out.
bool DeclareIdentityPrefix(xmlNode *leaf, const ZrNode *schemaNode, const char *value);

} // namespace zr
