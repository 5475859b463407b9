#include "yang/yin/writer.h"

#include "yang/expand/lifting.h"

namespace zr::yang {

namespace {

using K = Keyword;

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view kYinNamespace = "urn:ietf:params:xml:ns:yang:yin:1";

// What stands at the head of a module behind its imports, in this order.
constexpr Keyword kMeta[] = {K::Organization, K::Contact, K::Description, K::Reference,
                             K::Revision};

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
            if (definition->kind == DefinitionKind::Typedef && IsLifted(*definition) == isLifted)
                WriteElement(*definition->statement);
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
            WriteExtension(child, expanded);
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

} // namespace zr::yang
