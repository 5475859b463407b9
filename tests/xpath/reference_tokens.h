// SPDX-License-Identifier: Apache-2.0
// The tokens of a condition, for the second opinion in reference.h.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zrtest::reference {

struct Token {
    enum Kind { kPunct, kName, kFunction, kLiteral, kNumber, kOperator, kPath } kind;
    std::string text;
};

inline bool IsDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

inline bool IsNameChar(char ch)
{
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || IsDigit(ch) || ch == '_' ||
           ch == '-' || ch == '.';
}

// The tokens, or nothing when the expression is refused.
inline std::optional<std::vector<Token>> Tokenize(const std::string &text)
{
    std::vector<Token> tokens;
    auto operatorIsDue = [&] {
        if (tokens.empty())
            return false;
        const Token &last = tokens.back();
        if (last.kind == Token::kOperator || last.kind == Token::kPath)
            return false;
        return last.text != "(" && last.text != "[" && last.text != "@" && last.text != ",";
    };
    size_t at = 0;
    while (at < text.size()) {
        char ch = text[at];
        char next = at + 1 < text.size() ? text[at + 1] : '\0';
        size_t end = at + 1;
        if (ch == ' ' || ch == '\t' || ch == '\n' || ch == '\r') {
            ++at;
            continue;
        }
        if (IsDigit(ch) || (ch == '.' && IsDigit(next))) {
            int dots = 0;
            while (end < text.size() && (IsDigit(text[end]) || text[end] == '.'))
                dots += text[end++] == '.';
            if (dots > 1)
                return std::nullopt;
            tokens.push_back({Token::kNumber, text.substr(at, end - at)});
        } else if (IsNameChar(ch) && ch != '-' && ch != '.') {
            if (operatorIsDue()) {
                std::string word;
                for (const char *candidate : {"and", "or", "div", "mod"}) {
                    if (word.empty() &&
                        text.compare(at, std::string(candidate).size(), candidate) == 0)
                        word = candidate;
                }
                if (word.empty())
                    return std::nullopt;
                end = at + word.size();
                tokens.push_back({Token::kOperator, word});
            } else {
                while (end < text.size() && IsNameChar(text[end]))
                    ++end;
                if (end < text.size() && text[end] == ':') {
                    ++end;
                    if (end < text.size() && text[end] == '*')
                        ++end;
                    else
                        while (end < text.size() && IsNameChar(text[end]))
                            ++end;
                }
                tokens.push_back({Token::kName, text.substr(at, end - at)});
            }
        } else if (ch == '\'' || ch == '"') {
            end = text.find(ch, at + 1);
            if (end == std::string::npos)
                return std::nullopt;
            ++end;
            tokens.push_back({Token::kLiteral, text.substr(at, end - at)});
        } else if (ch == '*') {
            tokens.push_back({operatorIsDue() ? Token::kOperator : Token::kName, "*"});
        } else if (ch == '/') {
            end += next == '/';
            tokens.push_back({Token::kPath, text.substr(at, end - at)});
        } else if (ch == '!' && next == '=') {
            ++end;
            tokens.push_back({Token::kOperator, "!="});
        } else if (ch == '<' || ch == '>') {
            end += next == '=';
            tokens.push_back({Token::kOperator, text.substr(at, end - at)});
        } else if (ch == '=' || ch == '+' || ch == '-' || ch == '|') {
            tokens.push_back({Token::kOperator, std::string(1, ch)});
        } else if (ch == '.') {
            end += next == '.';
            tokens.push_back({Token::kPunct, text.substr(at, end - at)});
        } else if (std::string("()[]@,").find(ch) != std::string::npos) {
            if (ch == '(' && !tokens.empty() && tokens.back().kind == Token::kName)
                tokens.back().kind = Token::kFunction;
            tokens.push_back({Token::kPunct, std::string(1, ch)});
        } else {
            return std::nullopt;
        }
        at = end;
    }
    return tokens;
}

} // namespace zrtest::reference
