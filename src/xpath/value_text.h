// The value of an element, as conditions see it.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

namespace zr {
// The schema node of an element, or null. Only elements have one: the private pointer of another
// kind of node is the application's.
inline const ZrNode *SchemaNodeOf(const xmlNode *node)
{
    return node->type == XML_ELEMENT_NODE ? static_cast<const ZrNode *>(node->_private) : nullptr;
}

// Stores the value text of a node, a new text freed with zr::Free(), or null when it has none: a
// node without a schema node, without content, or an identityref whose prefix means no loaded
// module. 0, or 12 when memory runs out.
uint32_t ReadValueText(const xmlNode *node, char **textOut);
} // namespace zr
