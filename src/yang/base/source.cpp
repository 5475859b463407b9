#include "yang/base/source.h"

#include "yang/base/utf8.h"

namespace zr::yang {

Place PlaceOf(Source &source, size_t offset)
{
    std::string_view before = source.text.substr(0, offset);
    size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    uint32_t line = 1;
    for (char c : before)
        line += c == '\n';
    return {&source, line, CountCharacters(before.substr(lineStart)) + 1};
}

std::string_view LineOf(const Source &source, uint32_t line)
{
    size_t start = 0;
    for (uint32_t i = 1; i < line; ++i) {
        start = source.text.find('\n', start);
        if (start == std::string_view::npos)
            return {};
        ++start;
    }
    std::string_view rest = source.text.substr(start);
    rest = rest.substr(0, rest.find('\n'));
    return rest.ends_with('\r') ? rest.substr(0, rest.size() - 1) : rest;
}

} // namespace zr::yang
