// SPDX-License-Identifier: Apache-2.0
// The value of a leaf element as text, identities in module-name form.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

extern "C" {
// 1 for a leaf or leaf-list whose type is or contains an identityref, also behind typedefs, else 0.
ZR_API uint32_t ZRD_MDL_IsIdentityref(const ZrNode *schemaNode);
// A copy of the element's value, to be freed through the hooks. An identityref's "prefix:name"
// becomes "module:name", and a name alone is one of the leaf's module; what is neither, as a union
// may hold it, stays as it is. Null without content, for an unknown prefix and when memory runs
// out.
ZR_API char *ZRD_NODE_GetValueContent(const xmlNode *element, const ZrNode *schemaNode);
// The rewriting alone: prefixes are looked up among the element's namespace declarations.
ZR_API char *ZRD_NODE_ConvertPrefixValueToModValue(const xmlNode *element, const ZrNode *schemaNode,
                                                   const char *value);
}

namespace zr {
// Whether an identityref's value has a value text: the conversion then fails for memory alone.
bool HasModuleForm(const xmlNode *element, const ZrNode *schemaNode, const char *value);
// Whether the type is an identityref, also behind typedefs; not so a union that contains one.
bool IsIdentityrefAlone(const ZrNode *schemaNode);
// The schema node of a matched element. Null for null and for nodes of other kinds, whose private
// pointer is the application's.
inline ZrNode *SchemaOf(const xmlNode *node)
{
    return node != nullptr && node->type == XML_ELEMENT_NODE ? static_cast<ZrNode *>(node->_private)
                                                             : nullptr;
}

// Stores the value text of a node, a new text freed with zr::Free(), or null when it has none: a
// node without a schema node, without content, or an identityref whose prefix means no loaded
// module. ZR_OK or ZR_ERR_NO_MEMORY.
uint32_t ReadValueText(const xmlNode *node, char **textOut);
} // namespace zr
