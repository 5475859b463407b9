// SPDX-License-Identifier: Apache-2.0
// What can be seen of statements before they are expanded.
#include <algorithm>

#include "yang/check/checker.h"
#include "yang/xpath/expression.h"

namespace zr::yang {

namespace {

using K = Keyword;

// Reports prefixes that are not known.
class PrefixCheck final : public XPathVisitor {
public:
    PrefixCheck(const Statement &statement, Scopes &scopes) : statement_(statement), scopes_(scopes)
    {
    }
    void Name(const XPathToken &token, bool) override
    {
        QName name = SplitName(token.text);
        if (!name.prefix.empty())
            scopes_.FindModule(name.prefix, statement_);
    }

private:
    const Statement &statement_;
    Scopes &scopes_;
};

// The status of each statement of a walk: the worst of its own and those of what it stands in.
class StatusWalk {
public:
    explicit StatusWalk(std::pmr::memory_resource *memory) : levels_(memory) {}

    Status Enter(const Statement &statement)
    {
        while (!levels_.empty() && levels_.back().statement != statement.parent)
            levels_.pop_back();
        Status around = levels_.empty() ? Status::Current : levels_.back().status;
        Status status = std::max(around, StatusOf(statement));
        if (statement.first != nullptr)
            levels_.push_back({&statement, status});
        return status;
    }

private:
    struct Level {
        const Statement *statement;
        Status status;
    };
    std::pmr::vector<Level> levels_;
};

// What a statement refers to; null when it refers to nothing that has a status.
const Definition *ReferredTo(const Statement &statement)
{
    if (statement.meaning == nullptr)
        return nullptr;
    switch (statement.keyword) {
    case K::Type:
        return static_cast<const TypeUse *>(statement.meaning)->definition;
    case K::Uses:
    case K::Base:
    case K::Unknown:
        return static_cast<const Definition *>(statement.meaning);
    case K::IfFeature: // an expression of several is not looked into
        return static_cast<const FeatureExpression *>(statement.meaning)->feature;
    default:
        return nullptr;
    }
}

constexpr std::string_view kStatusWords[] = {"current", "deprecated", "obsolete"};
std::string_view WordOf(Status status)
{
    return kStatusWords[static_cast<size_t>(status)];
}

} // namespace

// Within a module, what is current refers to nothing that is deprecated, and neither to anything
// that is obsolete (RFC 7950, section 7.21.2).
void Checker::CheckStatus(const Statement &statement, Status status)
{
    const Definition *definition = ReferredTo(statement);
    if (definition == nullptr || definition->status <= status ||
        definition->module != UnitOf(statement).module)
        return;
    Error(statement, ZR_YANG_CODE_NAME,
          {NameOf(definition->kind), " \"", definition->name(), "\" is ",
           WordOf(definition->status), " and what refers to it is ", WordOf(status)});
}

bool Checker::CheckCondition(const Statement &statement)
{
    PrefixCheck prefixes(statement, scopes_);
    XPathFault fault = ReadXPath(statement.argument, prefixes);
    if (fault.what == nullptr)
        return true;
    bool hasText = !fault.text.empty();
    Error(statement, ZR_YANG_CODE_XPATH,
          {"bad expression \"", statement.argument, "\": ", fault.what, hasText ? " \"" : "",
           fault.text, hasText ? "\"" : ""});
    return false;
}

// The default of a typedef, or the one that it inherits, is to be one of its values (RFC 7950,
// section 7.3.4).
void Checker::CheckTypedefDefault(const Statement &statement)
{
    const Type *type = TypeIn(statement);
    if (type == nullptr)
        return;
    const Statement *value = SubStatement(statement, K::Default);
    if (value != nullptr)
        CheckValue(*type, *value);
    else
        CheckInheritedDefault(statement, *type);
}

void Checker::CheckStatements(Unit &unit)
{
    StatusWalk walk(memory_);
    for (Statement *at = unit.root; at != nullptr; at = NextInWalk(*unit.root, *at)) {
        CheckStatus(*at, walk.Enter(*at));
        switch (at->keyword) {
        case K::Must:
        case K::When:
            CheckCondition(*at);
            break;
        case K::Path:
            at->isFaulty = !CheckCondition(*at) || !CheckPath(*at);
            break;
        case K::Typedef:
            CheckTypedefDefault(*at);
            break;
        default:
            break;
        }
    }
}

} // namespace zr::yang
