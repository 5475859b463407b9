// SPDX-License-Identifier: Apache-2.0
// Statements as elements, with their arguments in the names of the prepared module.
#include "yang/expand/expander.h"
#include "yang/syntax/arguments.h"
#include "yang/yin/writer.h"

namespace zr::yang {

namespace {

using K = Keyword;

// What the values of a type may name: identities, or nodes.
bool HoldsNames(const Type *type)
{
    if (type == nullptr)
        return false;
    if (type->base == Builtin::Identityref || type->base == Builtin::InstanceIdentifier)
        return true;
    if (type->members != nullptr)
        for (const Type *member : *type->members)
            if (HoldsNames(member))
                return true;
    return false;
}

} // namespace

bool YinWriter::IsLeftOut(const Statement &statement) const
{
    switch (statement.keyword) {
    case K::Description:
    case K::Reference:
    case K::Contact:
        return strip_;
    case K::Grouping: // expanded where they are used
    case K::Uses:
    case K::Refine:
    case K::Typedef: // written at the top of the module
        return true;
    case K::Enum:
    case K::Bit: {
        bool isOff = false; // as nodes whose expression is decided
        for (const Statement *at = SubStatement(statement, K::IfFeature); at != nullptr;
             at = NextSubStatement(*at, K::IfFeature))
            ForEachConjunct(*static_cast<const FeatureExpression *>(at->meaning),
                            [&](const FeatureExpression &part) {
                                isOff |= part.kind != FeatureExpression::Kind::Feature &&
                                         features_.Evaluate(part) == Truth::False;
                            });
        return isOff;
    }
    default:
        return false;
    }
}

std::string_view YinWriter::WriteReference(std::string_view reference, const Definition *definition)
{
    if (definition == nullptr)
        return reference;
    QName name = SplitName(reference);
    buffer_.clear();
    if (definition->module != &module_) {
        buffer_ =
            name.prefix.empty() ? prefixes_.OfUnprefixedName() : prefixes_.Written(name.prefix);
        buffer_ += ':';
    }
    return buffer_ += definition->writtenName;
}

// Targets of augments and deviations, and the nodes of "unique". Those that are absolute have a
// prefix on every step.
std::string_view YinWriter::WriteNodePath(const Statement &statement)
{
    buffer_.clear();
    std::string_view rest = statement.argument;
    bool isAbsolute = rest.starts_with('/');
    while (!rest.empty()) {
        QName step = SplitName(TakeStep(rest));
        if (isAbsolute || !buffer_.empty())
            buffer_ += '/';
        std::string_view prefix = !step.prefix.empty() ? prefixes_.Written(step.prefix)
                                  : isAbsolute         ? prefixes_.own()
                                                       : std::string_view();
        if (!prefix.empty())
            (buffer_ += prefix) += ':';
        buffer_ += step.name;
    }
    return buffer_;
}

// Identities in defaults have prefixes too.
std::string_view YinWriter::WriteDefault(const Statement &statement)
{
    std::string_view value = statement.argument;
    const Statement &owner = *(node_ != nullptr ? node_->statement : statement.parent);
    const Type *type = owner.keyword == K::Deviate ? nullptr : TypeIn(owner);
    if (owner.keyword != K::Deviate && !HoldsNames(type))
        return value;
    buffer_.clear();
    if (type != nullptr && type->base == Builtin::InstanceIdentifier) {
        RewriteCondition(value, false, prefixes_, buffer_);
        return buffer_;
    }
    QName name = SplitName(value);
    if (!IsReference(value) || (!name.prefix.empty() && !prefixes_.IsKnown(name.prefix)))
        return value;
    bool isIdentity = type != nullptr && type->base == Builtin::Identityref;
    std::string_view prefix = !name.prefix.empty() ? prefixes_.Written(name.prefix)
                              : isIdentity         ? prefixes_.OfUnprefixedName()
                                                   : std::string_view();
    buffer_ = prefix;
    if (!prefix.empty())
        buffer_ += ':';
    return buffer_ += name.name;
}

std::string_view YinWriter::ArgumentOf(const Statement &statement)
{
    prefixes_.SetUnit(UnitOf(statement));
    buffer_.clear();
    switch (statement.keyword) {
    case K::Type:
        return WriteReference(statement.argument,
                              static_cast<const TypeUse *>(statement.meaning)->definition);
    case K::Base:
        return WriteReference(statement.argument,
                              static_cast<const Definition *>(statement.meaning));
    case K::Typedef:
        return static_cast<const Definition *>(statement.meaning)->writtenName;
    case K::Must:
    case K::When:
        RewriteCondition(statement.argument, false, prefixes_, buffer_);
        return buffer_;
    case K::Path:
        RewriteLeafrefPath(statement.argument, prefixes_.own(), prefixes_, buffer_);
        return buffer_;
    case K::Augment:
    case K::Deviation:
        return WriteNodePath(statement);
    case K::Default:
        return WriteDefault(statement);
    default:
        return statement.argument;
    }
}

// One element for each feature of a conjunction; other parts were decided or stay open.
void YinWriter::WriteFeatureConditions(const Statement &statement)
{
    const auto *expression = static_cast<const FeatureExpression *>(statement.meaning);
    ForEachConjunct(*expression, [&](const FeatureExpression &part) {
        if (part.kind != FeatureExpression::Kind::Feature)
            return;
        prefixes_.SetUnit(UnitOf(statement));
        body_.Open(statement.word);
        body_.Attribute("name", WriteReference(part.name, part.feature));
        WriteSubStatements(statement);
        body_.Close(statement.word);
    });
}

void YinWriter::WriteSubStatements(const Statement &statement)
{
    for (const Statement &child : SubStatements(statement))
        WriteStatement(child);
}

void YinWriter::WriteStatement(const Statement &statement)
{
    if (statement.IsExtension()) {
        if (OpenExtension(statement)) {
            WriteSubStatements(statement);
            CloseExtension(statement);
        }
        return;
    }
    if (statement.keyword == K::IfFeature)
        return WriteFeatureConditions(statement);
    if (!IsLeftOut(statement))
        WriteElement(statement);
}

void YinWriter::WriteElement(const Statement &statement)
{
    const KeywordInfo &info = InfoOf(statement.keyword);
    body_.Open(info.name);
    if (info.isElement)
        body_.TextElement({}, info.yinArgument, statement.argument);
    else if (!info.yinArgument.empty())
        body_.Attribute(info.yinArgument, ArgumentOf(statement));
    WriteSubStatements(statement);
    body_.Close(info.name);
}

// An instance is an element in the name space of its extension (RFC 7950, section 13.1). False when
// its extension is not known, and nothing was written.
bool YinWriter::OpenExtension(const Statement &statement)
{
    const auto *extension = static_cast<const Definition *>(statement.meaning);
    if (extension == nullptr)
        return false;
    prefixes_.SetUnit(UnitOf(statement));
    QName name = SplitName(statement.word);
    std::string_view prefix = prefixes_.Written(name.prefix);
    body_.Open(prefix, name.name);
    const Statement *argument = SubStatement(*extension->statement, K::Argument);
    if (argument == nullptr)
        return true;
    if (zr::yang::ArgumentOf(*argument, K::YinElement) == "true")
        body_.TextElement(prefix, argument->argument, statement.argument);
    else
        body_.Attribute(argument->argument, statement.argument);
    return true;
}

void YinWriter::CloseExtension(const Statement &statement)
{
    prefixes_.SetUnit(UnitOf(statement)); // what stands in it may be of another file
    QName name = SplitName(statement.word);
    body_.Close(prefixes_.Written(name.prefix), name.name);
}

} // namespace zr::yang
