// The key leafs of a list (RFC 7950, section 7.8.2).
#include <cstring>

#include "foundation/text.h"
#include "schema/node.h"

namespace {

constexpr uint32_t kBadKey = UINT32_MAX; // -1

bool MarkKeyLeaf(ZrNode *list, const char *text, uint32_t length)
{
    char name[zr::kNameSize] = {};
    if (length == 0 || length >= sizeof(name))
        return false;
    std::memcpy(name, text, length);
    ZrNode *leaf = ZRS_NODE_FindChildNodeByName(list, nullptr, name);
    if (leaf == nullptr || leaf->kind != ZR_NODE_LEAF)
        return false;
    leaf->flags |= ZRS_FLAG_KEY;
    return true;
}

} // namespace

uint32_t ZRS_NODE_MarkKeyAttrToListLeafs(ZrNode *list, const char *keyText, uint8_t *keyCount)
{
    if (keyText == nullptr)
        return ZR_OK;
    if (list == nullptr || list->firstChild == nullptr || keyCount == nullptr)
        return ZR_ERR_INVALID;
    const char *text = ZR_UTL_ConsumeAllSpaceChar(keyText);
    do {
        uint32_t length = ZR_UTL_ConsumeIdentNameBestEffort(text);
        if (*keyCount == UINT8_MAX || !MarkKeyLeaf(list, text, length))
            return kBadKey;
        ++*keyCount;
        text = ZR_UTL_ConsumeAllSpaceChar(text + length);
    } while (*text != '\0');
    return ZR_OK;
}
