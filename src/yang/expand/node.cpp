#include "yang/expand/node.h"

namespace zr::yang {

Node *DataParentOf(const Node &node)
{
    Node *at = node.parent;
    while (at != nullptr && at->IsChoiceOrCase())
        at = at->parent;
    return at;
}

const Statement *PropertyOf(const Node &node, Keyword keyword)
{
    const Statement *refined = nullptr;
    for (const Added *added = node.added; added != nullptr; added = added->next)
        if (!added->isInherited && added->statement->keyword == keyword)
            refined = added->statement; // the outermost refine comes last
    if (refined != nullptr || node.isImplicit)
        return refined;
    return SubStatement(*node.statement, keyword);
}

bool HasProperty(const Node &node, Keyword keyword, std::string_view value)
{
    const Statement *property = PropertyOf(node, keyword);
    return property != nullptr && property->argument == value;
}

// What an augment adds stands in the augment and has the target for its parent, so that the way
// back up is found through the depth of the nodes.
Node *NextNode(const Node &root, Node &node, bool enter)
{
    if (enter && node.first != nullptr)
        return node.first;
    Node *at = &node;
    while (at != &root && at->next == nullptr) {
        Node *up = at->parent;
        if (up == nullptr || up->depth < root.depth || at->depth <= root.depth + 1)
            return nullptr;
        at = up;
    }
    return at != &root ? at->next : nullptr;
}

} // namespace zr::yang
