// SPDX-License-Identifier: Apache-2.0
// Mutations that know elements: most changes of single bytes only make a text that is no XML.
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

extern "C" {
size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize); // libFuzzer's own
size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int start);
}

namespace {

using Random = std::minstd_rand;

struct Span {
    size_t start = 0;
    size_t length = 0;
};

size_t Pick(Random &random, size_t bound)
{
    return bound != 0 ? random() % bound : 0;
}

bool IsLetter(char ch)
{
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z');
}

// The start of an element: the first "<" with a letter behind a random place, or else the first.
size_t FindElement(std::string_view text, Random &random)
{
    for (size_t from : {Pick(random, text.size()), size_t{0}}) {
        for (size_t at = text.find('<', from); at != std::string_view::npos;
             at = text.find('<', at + 1)) {
            if (at + 1 < text.size() && IsLetter(text[at + 1]))
                return at;
        }
    }
    return std::string_view::npos;
}

// The element that starts at `start` with all that is in it, as far as the text is well-formed.
Span ElementAt(std::string_view text, size_t start)
{
    size_t depth = 0;
    for (size_t at = start; at != std::string_view::npos && at < text.size();
         at = text.find('<', at)) {
        size_t end = text.find('>', at);
        if (end == std::string_view::npos)
            break;
        if (text[at + 1] == '/')
            depth -= depth != 0;
        else if (IsLetter(text[at + 1]) && text[end - 1] != '/')
            ++depth;
        at = end + 1;
        if (depth == 0)
            return {start, at - start};
    }
    return {start, text.size() - start};
}

Span PickElement(std::string_view text, Random &random)
{
    size_t start = FindElement(text, random);
    return start != std::string_view::npos ? ElementAt(text, start) : Span{};
}

// Puts an element of `from` before or into an element of `text`.
void Insert(std::string &text, std::string_view from, Random &random)
{
    Span source = PickElement(from, random);
    Span target = PickElement(text, random);
    size_t at = target.start;
    if (random() % 2 != 0) {
        size_t end = text.find('>', at);
        at = end != std::string::npos && end > at && text[end - 1] != '/' ? end + 1 : at;
    }
    text.insert(at, std::string(from.substr(source.start, source.length)));
}

// Exchanges the first attribute value of one element by that of another.
void CopyValue(std::string &text, Random &random)
{
    Span from = PickElement(text, random);
    Span to = PickElement(text, random);
    size_t fromStart = text.find('"', from.start);
    size_t toStart = text.find('"', to.start);
    if (fromStart == std::string::npos || toStart == std::string::npos)
        return;
    size_t fromEnd = text.find('"', fromStart + 1);
    size_t toEnd = text.find('"', toStart + 1);
    if (fromEnd == std::string::npos || toEnd == std::string::npos)
        return;
    std::string value = text.substr(fromStart, fromEnd - fromStart);
    text.replace(toStart, toEnd - toStart, value);
}

void Change(std::string &text, Random &random)
{
    Span element = PickElement(text, random);
    switch (random() % 6) {
    case 0:
        text.erase(element.start, element.length);
        break;
    case 1: // once more, right behind itself
        text.insert(element.start, text.substr(element.start, element.length));
        break;
    case 2:
    case 3:
        Insert(text, std::string(text), random);
        break;
    case 4: { // to another place
        std::string moved = text.substr(element.start, element.length);
        text.erase(element.start, element.length);
        Insert(text, moved, random);
        break;
    }
    default:
        CopyValue(text, random);
    }
}

size_t Store(const std::string &text, uint8_t *data, size_t maxSize)
{
    size_t size = text.size() < maxSize ? text.size() : maxSize;
    std::memcpy(data, text.data(), size);
    return size;
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int start)
{
    Random random(start);
    if (size == 0 || random() % 3 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::string text(reinterpret_cast<const char *>(data), size);
    for (uint32_t i = 0; i <= random() % 3; ++i)
        Change(text, random);
    return Store(text, data, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *first, size_t firstSize,
                                            const uint8_t *second, size_t secondSize, uint8_t *out,
                                            size_t maxSize, unsigned int start)
{
    Random random(start);
    std::string text(reinterpret_cast<const char *>(first), firstSize);
    Insert(text, {reinterpret_cast<const char *>(second), secondSize}, random);
    return Store(text, out, maxSize);
}
