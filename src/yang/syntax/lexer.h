// SPDX-License-Identifier: Apache-2.0
// From characters to tokens (RFC 7950, section 6.1): words, strings, braces and semicolons;
// comments and white space are passed over.
#pragma once

#include <memory_resource>
#include <string>

#include "yang/base/reports.h"

namespace zr::yang {

enum class TokenKind : uint8_t { End, Word, OpenBrace, CloseBrace, Semicolon };

// A string in quotes, or several joined with "+", is a word that is quoted.
struct Token {
    TokenKind kind = TokenKind::End;
    bool isQuoted = false;
    std::string_view text; // of the source, or of the arena where it had to be put together
    Place place;
};

class Lexer {
public:
    Lexer(Source &source, Reports &reports, Arena &arena);

    // The next token. What cannot be one is reported and passed over. After `End` come more of it.
    Token Next();

    // YANG 1 allows what YANG 1.1 forbids: a backslash before any character, and quotes inside a
    // word without quotes (RFC 7950, section 12). The version stands in the text itself, so that
    // the first of each are kept until it is known.
    void ReportForVersion11();

private:
    // What was seen and is a fault in one version only.
    struct Doubtful {
        Place place;
        const char *what;
    };
    static constexpr size_t kDoubtfulLimit = 100;

    bool AtEnd() const { return at_ >= text_.size(); }
    char Peek(size_t ahead = 0) const
    {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }
    Place Here();
    void SkipBlanks();
    void SkipComment();
    void NewLine()
    {
        ++line_;
        lineStart_ = counted_ = at_;
        column_ = 1;
    }
    Token ReadStrings(Token token);
    // One string: its content goes to `joined_`, or is told as a part of the source when it can be
    // taken as it stands.
    bool ReadString(std::string_view &plain);
    void ReadEscape();
    void TakeLineBreak(size_t contentStart, uint32_t indentation);
    Token ReadWord(Token token);
    void Doubt(const char *what);

    Source &source_;
    Reports &reports_;
    Arena &arena_;
    std::string_view text_;
    size_t at_ = 0;
    uint32_t line_ = 1;
    size_t lineStart_ = 0;
    size_t counted_ = 0;  // a place in the line whose column is known:
    uint32_t column_ = 1; // lines may be long, and are counted once
    std::pmr::string joined_;
    std::pmr::vector<Doubtful> doubtful_;
};

} // namespace zr::yang
