// SPDX-License-Identifier: Apache-2.0
// A statement: keyword, argument and sub-statements, as they stand in a source.
#pragma once

#include "yang/base/source.h"
#include "yang/syntax/keyword.h"

namespace zr::yang {

// Records of the arena, linked in the order of the source.
struct Statement {
    std::string_view argument;   // with quotes, "+" and escapes resolved
    std::string_view word;       // the keyword as it was written
    Statement *parent = nullptr; // null for the module itself
    Statement *first = nullptr;  // sub-statement
    Statement *next = nullptr;   // of the same parent
    Source *source = nullptr;
    void *meaning = nullptr; // what later rooms have found out: see each of them
    uint32_t line = 0, column = 0;
    Keyword keyword = Keyword::Unknown;
    bool hasArgument = false;
    bool hasDefinitions = false; // a typedef or a grouping among its sub-statements
    bool isFaulty = false;       // reported: not to be looked into again

    bool IsExtension() const { return keyword == Keyword::Unknown; }
    Place place() const { return {source, line, column}; }
};

// The first sub-statement of that keyword, null without one.
const Statement *SubStatement(const Statement &statement, Keyword keyword);
// The next one behind `statement`.
const Statement *NextSubStatement(const Statement &statement, Keyword keyword);
inline Statement *SubStatement(Statement &statement, Keyword keyword)
{
    return const_cast<Statement *>(
        SubStatement(static_cast<const Statement &>(statement), keyword));
}
inline Statement *NextSubStatement(Statement &statement, Keyword keyword)
{
    return const_cast<Statement *>(
        NextSubStatement(static_cast<const Statement &>(statement), keyword));
}
// The argument of the first sub-statement of that keyword, "" without one.
std::string_view ArgumentOf(const Statement &statement, Keyword keyword);

// The statement behind `statement` in a walk over all that stands in `root`, parents first; null at
// the end. A walk that does not enter a statement passes `enter` as false.
const Statement *NextInWalk(const Statement &root, const Statement &statement, bool enter = true);
inline Statement *NextInWalk(Statement &root, Statement &statement, bool enter = true)
{
    return const_cast<Statement *>(NextInWalk(static_cast<const Statement &>(root),
                                              static_cast<const Statement &>(statement), enter));
}

// A range over sub-statements.
class SubStatements {
public:
    explicit SubStatements(const Statement &statement) : first_(statement.first) {}

    struct Iterator {
        Statement *at;
        Statement &operator*() const { return *at; }
        Iterator &operator++()
        {
            at = at->next;
            return *this;
        }
        bool operator!=(const Iterator &other) const { return at != other.at; }
    };
    Iterator begin() const { return {first_}; }
    Iterator end() const { return {nullptr}; }

private:
    Statement *first_;
};

} // namespace zr::yang
