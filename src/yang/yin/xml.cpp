// SPDX-License-Identifier: Apache-2.0
#include "yang/yin/xml.h"

#include "shared/escapes.h"

namespace zr::yang {

void XmlText::Name(std::string_view prefix, std::string_view name)
{
    if (!prefix.empty())
        (text_ += prefix) += ':';
    text_ += name;
}

void XmlText::Indent()
{
    text_.append(depth_ * 2, ' ');
}

void XmlText::EndTag()
{
    if (isTagOpen_)
        text_ += ">\n";
    isTagOpen_ = false;
}

void XmlText::Open(std::string_view prefix, std::string_view name)
{
    EndTag();
    Indent();
    text_ += '<';
    Name(prefix, name);
    isTagOpen_ = true;
    ++depth_;
}

void XmlText::Attribute(std::string_view name, std::string_view value)
{
    ((text_ += ' ') += name) += "=\"";
    AppendEscaped(text_, value, EscapeInAttribute);
    text_ += '"';
}

void XmlText::Close(std::string_view prefix, std::string_view name)
{
    --depth_;
    if (isTagOpen_) {
        text_ += "/>\n";
        isTagOpen_ = false;
        return;
    }
    Indent();
    text_ += "</";
    Name(prefix, name);
    text_ += ">\n";
}

void XmlText::TextElement(std::string_view prefix, std::string_view name, std::string_view text)
{
    EndTag();
    Indent();
    text_ += '<';
    Name(prefix, name);
    text_ += '>';
    AppendEscaped(text_, text, EscapeInText);
    text_ += "</";
    Name(prefix, name);
    text_ += ">\n";
}

} // namespace zr::yang
