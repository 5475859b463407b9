// What the evaluator asks of the data folder, which stands above it and calls it: the value of an
// element as conditions see it. The functions live there, with the rest of what reads values.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

extern "C" {
// The value text of an element, an identityref's in the form module:identity. A new text, freed
// with zr::Free(); null when the element has no content, when the value's prefix means no loaded
// module, or when memory runs out.
ZR_API char *ZRD_NODE_GetValueContent(const xmlNode *element, const ZrNode *schemaNode);
// 1 for a leaf or leaf-list whose type is or contains an identityref, also behind typedefs, else 0.
ZR_API uint32_t ZRD_MDL_IsIdentityref(const ZrNode *schemaNode);
}

namespace zr {
// Whether the type is an identityref, also behind typedefs; not so a union that contains one.
bool IsIdentityrefAlone(const ZrNode *schemaNode);
// Whether an identityref's value has a value text: its prefix, if it has one, means a loaded
// module.
bool HasModuleForm(const xmlNode *element, const ZrNode *schemaNode, const char *value);
} // namespace zr
