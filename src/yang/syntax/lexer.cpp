// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/lexer.h"

namespace zr::yang {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr uint32_t kTabWidth = 8;

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

// What ends a word without quotes.
bool EndsWord(char c)
{
    return IsBlank(c) || c == '\n' || c == '\r' || c == ';' || c == '{' || c == '}';
}

// What a string cannot be taken as it stands for.
bool IsStop(char c, char quote)
{
    return c == quote || c == '\n' || c == '\r' || (c == '\\' && quote == '"');
}

size_t FindStop(std::string_view text, size_t at, char quote)
{
    while (at < text.size() && !IsStop(text[at], quote))
        ++at;
    return at;
}

uint32_t WidthOf(std::string_view text)
{
    uint32_t width = CountCharacters(text);
    for (char c : text)
        width += c == '\t' ? kTabWidth - 1 : 0;
    return width;
}

} // namespace

Lexer::Lexer(Source &source, Reports &reports, Arena &arena)
    : source_(source), reports_(reports), arena_(arena), text_(source.text),
      joined_(arena.resource()), doubtful_(arena.resource())
{
    if (text_.starts_with(kByteOrderMark))
        at_ = lineStart_ = counted_ = kByteOrderMark.size();
}

Place Lexer::Here()
{
    column_ += CountCharacters(text_.substr(counted_, at_ - counted_));
    counted_ = at_;
    return {&source_, line_, column_};
}

void Lexer::Doubt(const char *what)
{
    if (doubtful_.size() < kDoubtfulLimit)
        doubtful_.push_back({Here(), what});
}

void Lexer::ReportForVersion11()
{
    for (const Doubtful &one : doubtful_)
        reports_.Error(one.place, ZR_YANG_CODE_SYNTAX, {one.what});
    doubtful_.clear();
}

void Lexer::SkipComment()
{
    if (Peek(1) == '/') {
        at_ = std::min(text_.find('\n', at_), text_.size());
        return;
    }
    Place start = Here();
    size_t end = text_.find("*/", at_ + 2);
    if (end == std::string_view::npos) {
        reports_.Error(start, ZR_YANG_CODE_SYNTAX, {"comment without an end"});
        end = text_.size();
    }
    while (at_ < end)
        if (text_[at_++] == '\n')
            NewLine();
    at_ = std::min(end + 2, text_.size());
}

void Lexer::SkipBlanks()
{
    for (; !AtEnd();) {
        char c = Peek();
        if (c == '/' && (Peek(1) == '/' || Peek(1) == '*')) {
            SkipComment();
            continue;
        }
        if (!IsBlank(c) && c != '\n' && c != '\r')
            return;
        ++at_;
        if (c == '\n')
            NewLine();
    }
}

Token Lexer::Next()
{
    SkipBlanks();
    Token token;
    token.place = Here();
    if (AtEnd())
        return token;
    switch (Peek()) {
    case '{':
        token.kind = TokenKind::OpenBrace;
        break;
    case '}':
        token.kind = TokenKind::CloseBrace;
        break;
    case ';':
        token.kind = TokenKind::Semicolon;
        break;
    case '"':
    case '\'':
        return ReadStrings(token);
    default:
        return ReadWord(token);
    }
    ++at_;
    return token;
}

Token Lexer::ReadWord(Token token)
{
    size_t start = at_;
    for (; !AtEnd() && !EndsWord(Peek()); ++at_) {
        if (Peek() == '"' || Peek() == '\'')
            Doubt("a quote in a string without quotes");
        if ((Peek() == '/' && (Peek(1) == '/' || Peek(1) == '*')))
            break; // a comment begins
    }
    token.kind = TokenKind::Word;
    token.text = text_.substr(start, at_ - start);
    return token;
}

// Strings are joined with "+" between them, and white space and comments around that.
Token Lexer::ReadStrings(Token token)
{
    token.kind = TokenKind::Word;
    token.isQuoted = true;
    joined_.clear();
    bool isPlain = ReadString(token.text);
    while (true) {
        SkipBlanks();
        if (Peek() != '+')
            break;
        ++at_;
        SkipBlanks();
        if (Peek() != '"' && Peek() != '\'') {
            reports_.Error(Here(), ZR_YANG_CODE_SYNTAX, {"no string in quotes behind \"+\""});
            break;
        }
        if (isPlain)
            joined_ = token.text;
        std::string_view more;
        if (ReadString(more))
            joined_ += more;
        isPlain = false;
    }
    if (!isPlain)
        token.text = arena_.Copy(joined_);
    return token;
}

// A line break in a string: blanks before it go, and with them the indentation of the next line as
// far as the opening quote stands to the right (RFC 7950, section 6.1.3).
void Lexer::TakeLineBreak(size_t contentStart, uint32_t indentation)
{
    while (joined_.size() > contentStart && (IsBlank(joined_.back()) || joined_.back() == '\r'))
        joined_.pop_back();
    joined_ += '\n';
    ++at_;
    NewLine();
    uint32_t width = 0;
    for (; width < indentation && IsBlank(Peek()); ++at_)
        width += Peek() == '\t' ? kTabWidth : 1;
    joined_.append(width > indentation ? width - indentation : 0, ' ');
}

void Lexer::ReadEscape()
{
    constexpr std::string_view kEscapes = "nt\"\\", kMeanings = "\n\t\"\\";
    size_t which = kEscapes.find(Peek(1));
    if (which == std::string_view::npos) {
        Doubt("a backslash may stand only before n, t, \" and \\");
        joined_ += '\\';
        ++at_;
        return;
    }
    joined_ += kMeanings[which];
    at_ += 2;
}

bool Lexer::ReadString(std::string_view &plain)
{
    Place start = Here();
    char quote = Peek();
    size_t quoteAt = at_, line = lineStart_;
    size_t contentStart = ++at_;
    size_t stop = FindStop(text_, at_, quote);
    if (stop < text_.size() && text_[stop] == quote) {
        plain = text_.substr(contentStart, stop - contentStart);
        at_ = stop + 1;
        return true;
    }
    uint32_t indentation = WidthOf(text_.substr(line, quoteAt - line)) + 1;
    size_t joinedStart = joined_.size();
    while (!AtEnd() && Peek() != quote) {
        char c = Peek();
        if (quote == '"' && c == '\n') {
            TakeLineBreak(joinedStart, indentation);
        } else if (quote == '"' && c == '\\') {
            ReadEscape();
            joinedStart = joined_.size(); // an escaped blank is no blank of the source
        } else if (IsStop(c, quote)) {
            ++at_;
            if (c == '\n')
                NewLine();
            if (c != '\r' || Peek() != '\n') // a line break is one character everywhere
                joined_ += c;
        } else {
            size_t end = FindStop(text_, at_, quote);
            joined_ += text_.substr(at_, end - at_);
            at_ = end;
        }
    }
    if (AtEnd())
        reports_.Error(start, ZR_YANG_CODE_SYNTAX, {"string without an end"});
    else
        ++at_;
    plain = {};
    return false;
}

} // namespace zr::yang
