#include "yang/yin/xml.h"

namespace zr::yang {

namespace {

// White space in an attribute would be read as blanks, and a carriage return anywhere as a line
// feed.
std::string_view ReferenceOf(char c, bool isAttribute)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r':
        return "&#13;";
    case '"':
        return isAttribute ? "&quot;" : "";
    case '\n':
        return isAttribute ? "&#10;" : "";
    case '\t':
        return isAttribute ? "&#9;" : "";
    default:
        return "";
    }
}

} // namespace

void AppendEscaped(std::pmr::string &out, std::string_view text, bool isAttribute)
{
    size_t copied = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        std::string_view reference = ReferenceOf(text[i], isAttribute);
        if (reference.empty())
            continue;
        out.append(text, copied, i - copied).append(reference);
        copied = i + 1;
    }
    out.append(text, copied);
}

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
    AppendEscaped(text_, value, true);
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
    AppendEscaped(text_, text, false);
    text_ += "</";
    Name(prefix, name);
    text_ += ">\n";
}

} // namespace zr::yang
