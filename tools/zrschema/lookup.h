// SPDX-License-Identifier: Apache-2.0
// Schema nodes by what somebody wrote on the command line, and by leafref paths.
#pragma once

#include <zrschema/zrschema.h>

#include <string>

#include "session.h"

namespace tool {

std::string PathOf(const ZrNode *node);
// The node of a schema path; null when there is none, which is said with names that are close.
const ZrNode *FindNode(Session &session, const std::vector<std::string> &modules,
                       const std::string &path);
// The paths one step below a node's path or, below "/MODULE:", those of the module's top nodes; one
// with more below it ends with a slash.
std::vector<std::string> PathsBelow(const Session &session, const std::string &path);
// The node that a leafref's path leads to from the leaf that has it; null when there is none.
const ZrNode *FollowLeafrefPath(const ZrCtx *ctx, const ZrNode *leaf, const std::string &path);

} // namespace tool
