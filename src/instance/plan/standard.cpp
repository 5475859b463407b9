#include "instance/plan/standard.h"

namespace zr::data {

void ReadConstraints(const ZrNode *node, ListConstraints &constraints)
{
    constraints.isUserOrdered = ZR_NODE_IsOrderedByNode(node) != 0;
}

} // namespace zr::data
