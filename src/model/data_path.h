// Schema nodes by a path through the data tree, the form of leafref paths (RFC 7950,
// section 9.9.2).
#pragma once

#include <zrschema/context.h>

#include "foundation/text.h"

extern "C" {
// Through the data tree, as a leafref's path goes: choice and case are no steps. A relative path
// starts at the context node, with ".." for its parents (RFC 7950, section 9.9.2).
ZR_API ZrNode *ZRS_MOD_GetNodeByXpath(const ZrMod *module, const ZrNode *contextNode,
                                      const char *path);
// Its steps: where a path starts (null: above the top level) and what is left of it, 0 or 22; the
// same for a path that begins with ".", null when it leads nowhere; one step by names.
ZR_API uint32_t ZRS_MOD_GetStartPathAndNode(const ZrNode *contextNode, const char *path,
                                            const char **restOut, ZrNode **startOut);
ZR_API const char *ZRS_MOD_GetRelativePathRealStartNode(const ZrNode *contextNode, const char *path,
                                                        ZrNode **startOut);
ZR_API ZrNode *ZRS_MOD_GetDataTreeNodeByNodeIdentifier(const ZrMod *module, ZrNode *current,
                                                       const char *moduleName, const char *name);
}

namespace zr {

// Goes down a path, whose first "/" may be left out, from `node`, which may be null: each step is
// `step(node, moduleName, name)`, and the first null ends the walk, as a malformed step does.
template <typename Step> ZrNode *FollowSteps(ZrNode *node, const char *path, Step step)
{
    const char *rest = path;
    do {
        char moduleName[kNameSize];
        char name[kNameSize];
        rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(*rest == '/' ? rest + 1 : rest, moduleName,
                                                       sizeof(moduleName), name, sizeof(name));
        if (rest == nullptr)
            return nullptr;
        node = step(node, moduleName, name);
    } while (node != nullptr && *rest != '\0');
    return node;
}

} // namespace zr
