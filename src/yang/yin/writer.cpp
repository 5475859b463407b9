// SPDX-License-Identifier: Apache-2.0
#include "yang/yin/writer.h"

namespace zr::yang {

namespace {

using K = Keyword;

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view kYinNamespace = "urn:ietf:params:xml:ns:yang:yin:1";

// What stands at the head of a module behind its imports, in this order.
constexpr Keyword kMeta[] = {K::Organization, K::Contact, K::Description, K::Reference,
                             K::Revision};

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

std::pmr::string YinWriter::Write()
{
    body_.SetDepth(1);
    WriteBody(); // before the head, which declares the prefixes that the body needs
    XmlText head(memory_);
    head.text() = kDeclaration;
    WriteHead(head);
    head.text() += body_.text();
    head.Close("module");
    return std::move(head.text());
}

void YinWriter::WriteHead(XmlText &head)
{
    head.Open("module");
    head.Attribute("name", module_.name);
    head.Attribute("xmlns", kYinNamespace);
    std::pmr::string name(memory_);
    for (const Prefixes::Entry &entry : prefixes_.entries()) {
        if (entry.module == nullptr || entry.prefix.starts_with("xml"))
            continue; // such names belong to XML itself
        (name = "xmlns:") += entry.prefix;
        head.Attribute(name, entry.module->nameSpace);
    }
    const Statement &root = *module_.unit->root;
    for (Keyword keyword : {K::YangVersion, K::Namespace, K::Prefix})
        if (const Statement *statement = SubStatement(root, keyword)) {
            head.Open(statement->word);
            head.Attribute(InfoOf(keyword).yinArgument, statement->argument);
            head.Close(statement->word);
        }
    for (const Prefixes::Entry &entry : prefixes_.entries()) {
        if (entry.module == &module_)
            continue;
        head.Open("import");
        head.Attribute("module", entry.name);
        head.Open("prefix");
        head.Attribute("value", entry.prefix);
        head.Close("prefix");
        head.Close("import");
    }
}

void YinWriter::WriteDefinitions(Keyword keyword)
{
    for (const Unit *unit : module_.units)
        for (const Statement &child : SubStatements(*unit->root))
            if (child.keyword == keyword)
                WriteStatement(child);
}

void YinWriter::WriteTypedefs()
{
    for (bool isLifted : {false, true})
        for (const Definition *definition : module_.ordered)
            if (definition->kind == DefinitionKind::Typedef && definition->IsInner() == isLifted)
                WriteElement(*definition->statement);
}

void YinWriter::WriteInstance(const Statement &statement, const Node *node)
{
    if (node == nullptr)
        return WriteStatement(statement);
    if (!OpenExtension(statement))
        return;
    for (const Statement &child : SubStatements(statement))
        if (!IsNodeKeyword(child.keyword))
            WriteStatement(child);
    WriteChildren(*node);
    CloseExtension(statement);
}

// Those that hold nodes were expanded, and stand behind the others.
void YinWriter::WriteInstances()
{
    for (const Unit *unit : module_.units)
        for (const Statement &child : SubStatements(*unit->root)) {
            if (!child.IsExtension())
                continue;
            const Node *expanded = nullptr;
            for (const Node *node : module_.instances)
                if (node->statement == &child)
                    expanded = node;
            WriteInstance(child, expanded);
        }
}

void YinWriter::WriteBody()
{
    for (Keyword keyword : kMeta)
        for (const Statement &child : SubStatements(*module_.unit->root))
            if (child.keyword == keyword)
                WriteStatement(child);
    for (Keyword keyword : {K::Extension, K::Feature, K::Identity})
        WriteDefinitions(keyword);
    WriteTypedefs();
    WriteChildren(*module_.tree);
    WriteAugments();
    WriteDefinitions(K::Deviation);
    WriteInstances();
}

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
