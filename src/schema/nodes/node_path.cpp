// Paths of schema nodes, in the form in which target paths are looked up.
#include "foundation/text.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "schema/nodes/node.h"

namespace {

const char *StepName(const ZrNode *node)
{
    switch (node->kind) {
    case ZR_NODE_INPUT:
        return "input";
    case ZR_NODE_OUTPUT:
        return "output";
    default:
        return node->name;
    }
}

// A step carries its module's name where the path enters the module. A node whose augment is not
// coupled has no parent in the schema yet, so its step is the first one of its own module.
bool IsQualified(const ZrNode *node)
{
    const ZrNode *parent = ZR_NODE_GetParentNode(node);
    return parent == nullptr || parent->module != node->module;
}

int WriteStep(const ZrNode *node, char *destination, uint32_t size)
{
    const char *name = StepName(node);
    if (name == nullptr)
        return -1;
    if (node->kind == ZR_NODE_AUGMENT) // its name is the path of its target
        return sprintf_s(destination, size, "%s", name);
    if (!IsQualified(node))
        return sprintf_s(destination, size, "/%s", name);
    if (node->module == nullptr || node->module->name == nullptr)
        return -1;
    return sprintf_s(destination, size, "/%s:%s", node->module->name, name);
}

} // namespace

uint32_t ZRS_NODE_PrintJsonPathRecursive(const ZrNode *node, char *buffer, uint32_t size,
                                         uint32_t *length)
{
    if (node == nullptr || buffer == nullptr || length == nullptr)
        return ZR_ERR_INVALID;
    if (node->parent != nullptr) {
        uint32_t status = ZRS_NODE_PrintJsonPathRecursive(node->parent, buffer, size, length);
        if (status != ZR_OK)
            return status;
    }
    if (*length >= size)
        return ZR_ERR_NO_MEMORY;
    int written = WriteStep(node, buffer + *length, size - *length);
    if (written < 0)
        return ZR_ERR_NO_MEMORY;
    *length += static_cast<uint32_t>(written);
    return ZR_OK;
}

char *ZRS_NODE_PrintPath(const ZrNode *node)
{
    zr::Owned<char> buffer(zr::New<char>(zr::kXpathSize));
    uint32_t length = 0;
    if (!buffer ||
        ZRS_NODE_PrintJsonPathRecursive(node, buffer.get(), zr::kXpathSize, &length) != ZR_OK)
        return nullptr;
    return ZR_UTL_StrDup(buffer.get());
}

uint32_t ZR_NODE_GetNodePath(const ZrNode *node, char *buffer, uint32_t size)
{
    if (node == nullptr || buffer == nullptr || size == 0)
        return ZR_ERR_INVALID;
    uint32_t length = 0;
    buffer[0] = '\0';
    uint32_t status = ZRS_NODE_PrintJsonPathRecursive(node, buffer, size, &length);
    if (status != ZR_OK)
        buffer[0] = '\0';
    return status;
}
