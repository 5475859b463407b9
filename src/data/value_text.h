// The value of a leaf element as text, identities in module-name form.
#pragma once

#include "data/check_records.h"
#include "data/schema_query.h"

extern "C" {
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
} // namespace zr
