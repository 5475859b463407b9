// Schema nodes as elements: their own statements with what was refined or inherited, then the nodes
// in them.
#include "yang/yin/writer.h"

namespace zr::yang {

namespace {

using K = Keyword;

// Of these a node keeps what it has when a refine adds more; others are replaced (RFC 7950, section
// 7.13.2).
bool IsAddedTo(const Statement &statement)
{
    return statement.keyword == K::Must || statement.keyword == K::IfFeature ||
           statement.IsExtension();
}

bool IsReplaced(const Node &node, const Statement &own)
{
    if (IsAddedTo(own))
        return false;
    for (const Added *added = node.added; added != nullptr; added = added->next)
        if (!added->isInherited && added->statement->keyword == own.keyword)
            return true;
    return false;
}

// Whether a later refine says the same again.
bool IsOutdone(const Added &added)
{
    if (IsAddedTo(*added.statement))
        return false;
    for (const Added *later = added.next; later != nullptr; later = later->next)
        if (!later->isInherited && later->statement->keyword == added.statement->keyword &&
            later->statement->parent != added.statement->parent)
            return true;
    return false;
}

bool CanHaveWhen(const Node &node)
{
    return node.keyword != K::Action && node.keyword != K::Notification && node.keyword != K::Rpc;
}

} // namespace

// All conditions of a node as one. Those from around it are evaluated at its parent; a choice or
// case has its parent for the context node itself.
void YinWriter::WriteWhen(const Node &node)
{
    if (!CanHaveWhen(node))
        return;
    size_t count = 0;
    const Statement *only = nullptr;
    ForEachProperty(node, K::When, [&](const Statement &when, bool) {
        ++count;
        only = &when;
    });
    if (count == 0)
        return;
    buffer_.clear();
    ForEachProperty(node, K::When, [&](const Statement &when, bool isInherited) {
        prefixes_.SetUnit(UnitOf(when));
        if (!buffer_.empty())
            buffer_ += " and ";
        if (count > 1)
            buffer_ += '(';
        RewriteCondition(when.argument, isInherited && !node.IsChoiceOrCase(), prefixes_, buffer_);
        if (count > 1)
            buffer_ += ')';
    });
    body_.Open("when");
    body_.Attribute("condition", buffer_);
    if (count == 1)
        WriteSubStatements(*only);
    body_.Close("when");
}

void YinWriter::WriteProperties(const Node &node)
{
    node_ = &node;
    WriteWhen(node);
    for (const Added *added = node.added; added != nullptr; added = added->next)
        if (added->isInherited && added->statement->keyword == K::IfFeature)
            WriteStatement(*added->statement);
    if (!node.isImplicit)
        for (const Statement &own : SubStatements(*node.statement)) {
            bool isNode = IsNodeKeyword(own.keyword) || own.keyword == K::When;
            if (!isNode && !IsReplaced(node, own))
                WriteStatement(own);
        }
    for (const Added *added = node.added; added != nullptr; added = added->next)
        if (!added->isInherited && !IsOutdone(*added))
            WriteStatement(*added->statement);
    node_ = nullptr;
}

void YinWriter::WriteNode(const Node &node)
{
    bool isOperation = node.keyword == K::Input || node.keyword == K::Output;
    if (node.isPruned || (node.isImplicit && isOperation))
        return;
    std::string_view word = NameOf(node.keyword);
    body_.Open(word);
    if (!isOperation)
        body_.Attribute("name", node.name());
    WriteProperties(node);
    WriteChildren(node);
    body_.Close(word);
}

void YinWriter::WriteChildren(const Node &holder)
{
    for (const Node *node = holder.first; node != nullptr; node = node->next)
        WriteNode(*node);
}

void YinWriter::WriteAugments()
{
    for (const Node *augment : module_.augments) {
        if (augment->isPruned || augment->isLost)
            continue;
        body_.Open("augment");
        body_.Attribute("target-node", ArgumentOf(*augment->statement));
        for (const Statement &own : SubStatements(*augment->statement))
            if (!IsNodeKeyword(own.keyword))
                WriteStatement(own);
        WriteChildren(*augment);
        body_.Close("augment");
    }
}

} // namespace zr::yang
