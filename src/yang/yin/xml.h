// SPDX-License-Identifier: Apache-2.0
// XML text as it is written: elements with attributes, indented by their depth.
#pragma once

#include <memory_resource>
#include <string>
#include <string_view>

namespace zr::yang {

class XmlText {
public:
    explicit XmlText(std::pmr::memory_resource *memory) : text_(memory) {}

    // Begins an element in what is open; attributes come before anything in it.
    void Open(std::string_view prefix, std::string_view name);
    void Open(std::string_view name) { Open({}, name); }
    void Attribute(std::string_view name, std::string_view value);
    void Close(std::string_view prefix, std::string_view name);
    void Close(std::string_view name) { Close({}, name); }
    // A whole element that holds a text.
    void TextElement(std::string_view prefix, std::string_view name, std::string_view text);

    void SetDepth(uint32_t depth) { depth_ = depth; }
    std::pmr::string &text() { return text_; }

private:
    void EndTag();
    void Indent();
    void Name(std::string_view prefix, std::string_view name);

    std::pmr::string text_;
    uint32_t depth_ = 0;
    bool isTagOpen_ = false;
};

} // namespace zr::yang
