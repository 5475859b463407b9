// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/parser.h"

#include "yang/syntax/arguments.h"
#include "yang/syntax/grammar.h"
#include "yang/syntax/lexer.h"

namespace zr::yang {

namespace {

class Parser {
public:
    Parser(Source &source, Reports &reports, Arena &arena)
        : source_(source), reports_(reports), arena_(arena), lexer_(source, reports, arena)
    {
    }

    Statement *Run();

private:
    Statement *ReadStatement();
    void ReadKeyword(Statement &statement);
    void Append(Statement &statement);
    void ExpectEnd();
    void Error(const Place &place, std::initializer_list<std::string_view> pieces)
    {
        reports_.Error(place, ZR_YANG_CODE_SYNTAX, pieces);
    }
    // Passes over the rest of a statement that cannot be read.
    void SkipStatement();

    Source &source_;
    Reports &reports_;
    Arena &arena_;
    Lexer lexer_;
    Token token_;
    Statement *root_ = nullptr;
    Statement *open_ = nullptr;           // the innermost statement whose brace is open
    Statement *lasts_[kDepthLimit + 1]{}; // the last sub-statement at each depth
    uint32_t depth_ = 0;
};

void Parser::SkipStatement()
{
    uint32_t depth = 0;
    for (; token_.kind != TokenKind::End; token_ = lexer_.Next()) {
        if (token_.kind == TokenKind::OpenBrace)
            ++depth;
        if (token_.kind == TokenKind::CloseBrace && depth == 0)
            return; // the parent's
        depth -= token_.kind == TokenKind::CloseBrace;
        if (depth == 0 && token_.kind != TokenKind::OpenBrace && token_.kind != TokenKind::Word)
            break;
    }
    token_ = lexer_.Next();
}

void Parser::ReadKeyword(Statement &statement)
{
    statement.word = token_.text;
    statement.keyword = FindKeyword(token_.text);
    if (!statement.IsExtension())
        return;
    if (token_.text.find(':') == std::string_view::npos) {
        reports_.Error(token_.place, ZR_YANG_CODE_STATEMENT,
                       {"unknown statement \"", token_.text, "\""});
        statement.isFaulty = true;
    } else if (!IsReference(token_.text)) {
        Error(token_.place, {"\"", token_.text, "\" is no keyword"});
        statement.isFaulty = true;
    }
}

void Parser::Append(Statement &statement)
{
    statement.parent = open_;
    if (open_ == nullptr)
        return;
    Statement *&last = lasts_[depth_];
    (last != nullptr ? last->next : open_->first) = &statement;
    last = &statement;
    if (statement.keyword == Keyword::Typedef || statement.keyword == Keyword::Grouping)
        open_->hasDefinitions = true;
}

// Reads one statement up to its brace or semicolon; null when it could not be read.
Statement *Parser::ReadStatement()
{
    if (token_.kind != TokenKind::Word || token_.isQuoted) {
        Error(token_.place, {"a statement is expected here"});
        SkipStatement();
        return nullptr;
    }
    auto *statement = arena_.New<Statement>();
    statement->source = &source_;
    statement->line = token_.place.line;
    statement->column = token_.place.column;
    ReadKeyword(*statement);
    token_ = lexer_.Next();
    if (token_.kind == TokenKind::Word) {
        statement->argument = token_.text;
        statement->hasArgument = true;
        token_ = lexer_.Next();
    }
    Append(*statement);
    if (token_.kind != TokenKind::OpenBrace && token_.kind != TokenKind::Semicolon) {
        Error(token_.place, {"\";\" or \"{\" is expected behind \"", statement->word, "\""});
        statement->isFaulty = true;
        SkipStatement();
        return nullptr;
    }
    CheckArgument(*statement, reports_);
    return statement;
}

void Parser::ExpectEnd()
{
    if (token_.kind != TokenKind::End)
        Error(token_.place, {"something stands behind the end of the module"});
}

Statement *Parser::Run()
{
    token_ = lexer_.Next();
    if (token_.kind == TokenKind::End)
        Error({&source_, 0, 0}, {"the file holds no module"});
    while (token_.kind != TokenKind::End) {
        if (token_.kind == TokenKind::CloseBrace && open_ != nullptr) {
            open_ = open_->parent;
            --depth_;
            token_ = lexer_.Next();
            if (open_ == nullptr)
                break;
            continue;
        }
        if (token_.kind == TokenKind::CloseBrace) {
            Error(token_.place, {"a closing brace without an opening one"});
            token_ = lexer_.Next();
            continue;
        }
        Statement *statement = ReadStatement();
        if (statement == nullptr)
            continue;
        if (root_ == nullptr)
            root_ = statement;
        bool isOpen = token_.kind == TokenKind::OpenBrace;
        if (isOpen && depth_ == kDepthLimit) {
            reports_.Error(statement->place(), ZR_YANG_CODE_LIMIT,
                           {"statements stand more than 200 deep in each other"});
            SkipStatement();
            continue;
        }
        token_ = lexer_.Next();
        if (isOpen) {
            open_ = statement;
            lasts_[++depth_] = nullptr;
        }
        if (open_ == nullptr)
            break;
    }
    if (open_ != nullptr)
        Error(open_->place(), {"\"", open_->word, "\" has no closing brace"});
    else if (root_ != nullptr)
        ExpectEnd();
    if (root_ != nullptr && VersionOf(*root_) == Version::Yang11)
        lexer_.ReportForVersion11();
    return root_;
}

} // namespace

Statement *Parse(Source &source, Reports &reports, Arena &arena)
{
    TextFault fault = FindTextFault(source.text);
    if (fault.what != nullptr) {
        reports.Error(PlaceOf(source, fault.offset), ZR_YANG_CODE_ENCODING, {fault.what});
        return nullptr;
    }
    return Parser(source, reports, arena).Run();
}

} // namespace zr::yang
