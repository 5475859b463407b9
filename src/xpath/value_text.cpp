// The value of an element, read through the data folder.
#include "xpath/value_text.h"

#include "platform/xml.h"
#include "xpath/data_values.h"

namespace zr {

uint32_t ReadValueText(const xmlNode *node, char **textOut)
{
    *textOut = nullptr;
    const ZrNode *schemaNode = SchemaNodeOf(node);
    if (schemaNode == nullptr)
        return ZR_OK;
    *textOut = ZRD_NODE_GetValueContent(node, schemaNode);
    const char *content = ZR_XML_GetElemNodeContent(node);
    if (*textOut != nullptr || content == nullptr)
        return ZR_OK;
    // There is content, so that only a prefix without a module leaves no value.
    if (ZRD_MDL_IsIdentityref(schemaNode) != 0 && !HasModuleForm(node, schemaNode, content))
        return ZR_OK;
    return ZR_ERR_NO_MEMORY;
}

} // namespace zr
