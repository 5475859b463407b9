// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/statement.h"

namespace zr::yang {

namespace {

const Statement *FirstOf(const Statement *from, Keyword keyword)
{
    while (from != nullptr && from->keyword != keyword)
        from = from->next;
    return from;
}

} // namespace

const Statement *SubStatement(const Statement &statement, Keyword keyword)
{
    return FirstOf(statement.first, keyword);
}

const Statement *NextSubStatement(const Statement &statement, Keyword keyword)
{
    return FirstOf(statement.next, keyword);
}

std::string_view ArgumentOf(const Statement &statement, Keyword keyword)
{
    const Statement *found = SubStatement(statement, keyword);
    return found != nullptr ? found->argument : std::string_view();
}

const Statement *NextInWalk(const Statement &root, const Statement &statement, bool enter)
{
    const Statement *at = &statement;
    if (enter && at->first != nullptr)
        return at->first;
    while (at != &root && at->next == nullptr)
        at = at->parent;
    return at != &root ? at->next : nullptr;
}

} // namespace zr::yang
