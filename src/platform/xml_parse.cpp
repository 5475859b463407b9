// SPDX-License-Identifier: Apache-2.0
#include <libxml/encoding.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlstring.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "platform/memory.h"
#include "platform/strings.h"
#include "platform/xml.h"

namespace {

// Short texts stand inside their nodes: one allocation less for most arguments. The encoding is the
// one that the look at the text has found.
constexpr int kOptions =
    XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_IGNORE_ENC;

// A new parser begins with the defaults of the process, which are the application's affair: all of
// them are replaced. False when the encoding is unknown.
bool SetUp(xmlParserCtxt *parser, const char *encoding)
{
    parser->options = 0;
    xmlCtxtUseOptions(parser, kOptions);
    parser->linenumbers = 0;
    if (encoding[0] == '\0')
        return true;
    xmlCharEncodingHandler *handler = xmlFindCharEncodingHandler(encoding);
    return handler != nullptr && xmlSwitchToEncoding(parser, handler) == 0;
}

xmlDoc *Parse(xmlParserCtxt *parser)
{
    xmlParseDocument(parser);
    xmlDoc *document = parser->myDoc;
    parser->myDoc = nullptr;
    return document;
}

} // namespace

xmlDoc *zr::ParseXmlText(const char *text, size_t length)
{
    xmlKeepBlanksDefault(0);
    if (text == nullptr || length > kMaxXmlLength)
        return nullptr;
    XmlLook look = LookAtXml({text, length});
    if (!look.accepted)
        return nullptr;
    XmlErrors errors;
    Owned<xmlParserCtxt, xmlFreeParserCtxt> parser(
        xmlCreateMemoryParserCtxt(text, static_cast<int>(length)));
    if (!parser || !SetUp(parser.get(), look.encoding))
        return nullptr;
    Owned<xmlDoc, xmlFreeDoc> document(Parse(parser.get()));
    // Short of memory, libxml2 leaves parts out of a document that it calls well-formed.
    return parser->wellFormed != 0 && !errors.outOfMemory() ? document.release() : nullptr;
}

// libxml2 compares each attribute of a tag with all others. And it does not stop where a text turns
// out not to be well-formed, but goes on behind the place. So what the look passes over at once
// must be what the parser passes over at once, in broken texts too: else a comment that breaks off
// at a character that is none would hide a tag.

namespace {

constexpr size_t kRefused = std::string_view::npos;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r\n";

// Beginnings of the names of the encodings in which every byte below 0x80 is the character of
// ASCII, never a part of another one, so that markup can be told byte by byte.
constexpr std::string_view kByteEncodings[] = {"US-ASCII", "ASCII", "ISO-8859-", "WINDOWS-125",
                                               "CP125",    "KOI8-", "EUC-",      "GB2312"};

// The character whose bytes begin at `at`, which moves behind them; 0 when they are not UTF-8.
uint32_t TakeCharacter(std::string_view text, size_t *at)
{
    auto lead = static_cast<unsigned char>(text[(*at)++]);
    if (lead < 0x80)
        return lead;
    uint32_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    constexpr uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4 || text.size() - *at < more)
        return 0;
    uint32_t character = lead & (0x3FU >> more);
    for (uint32_t i = 0; i < more; ++i) {
        auto byte = static_cast<unsigned char>(text[(*at)++]);
        if ((byte & 0xC0) != 0x80)
            return 0;
        character = character << 6 | (byte & 0x3F);
    }
    return character >= kLeast[more] ? character : 0;
}

// The characters of XML 1.0, section 2.2. The parser breaks a comment off at any other, and there
// is no NUL among them.
bool IsXmlCharacter(uint32_t character)
{
    if (character < 0x20)
        return character == '\t' || character == '\n' || character == '\r';
    return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
           (character > 0xFFFF && character < 0x110000);
}

// How many bytes at `at` are line feeds or characters of ASCII that are none of control, by whole
// words: the most of every text, and the same characters in every encoding that is read.
size_t PlainLength(std::string_view text, size_t at)
{
    using Word = uint64_t;
    constexpr Word kOnes = ~Word{0} / 0xFF; // 0x01 in each byte
    constexpr Word kHighBits = kOnes * 0x80, kRest = kOnes * 0x7F;
    size_t end = at;
    for (Word word; text.size() - end >= sizeof(word); end += sizeof(word)) {
        std::memcpy(&word, text.data() + end, sizeof(word));
        // Sums that no byte carries into the next one: a high bit that stays clear tells a byte
        // below 0x20, and a line feed.
        Word notControl = (word & kRest) + kOnes * (0x80 - 0x20);
        Word notLineFeed = ((word ^ kOnes * '\n') & kRest) + kRest;
        if (((word | (~notControl & notLineFeed)) & kHighBits) != 0)
            break;
    }
    return end - at;
}

bool HasOnlyCharacters(std::string_view text, bool isUtf8)
{
    for (size_t at = 0; at < text.size();) {
        at += PlainLength(text, at);
        // What stopped it, and the rest of its word.
        for (size_t end = std::min(at + sizeof(uint64_t), text.size()); at < end;) {
            uint32_t character =
                isUtf8 ? TakeCharacter(text, &at) : static_cast<unsigned char>(text[at++]);
            if (!IsXmlCharacter(character))
                return false;
        }
    }
    return true;
}

// What the XML declaration says, "" when it says nothing. Read as loosely as can be: the parser is
// told the result and does not read the declaration itself.
std::string_view DeclaredEncoding(std::string_view text)
{
    constexpr std::string_view kStart = "<?xml";
    constexpr std::string_view kName = "encoding";
    if (!zr::StartsWith(text, kStart))
        return "";
    std::string_view declaration = zr::First(text, text.find("?>"));
    size_t name = declaration.find(kName);
    if (name == std::string_view::npos)
        return "";
    size_t quote = declaration.find_first_of("\"'", name + kName.size());
    if (quote == std::string_view::npos)
        return "";
    std::string_view value = zr::From(declaration, quote + 1);
    return zr::First(value, value.find(declaration[quote]));
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view start)
{
    auto asXml = [](std::string_view chars) {
        return reinterpret_cast<const xmlChar *>(chars.data());
    };
    return text.size() >= start.size() &&
           xmlStrncasecmp(asXml(text), asXml(start), static_cast<int>(start.size())) == 0;
}

// Writes the name for libxml2, "" for UTF-8; false for an encoding that is not read.
template <size_t size> bool ChooseEncoding(std::string_view declared, char (&encoding)[size])
{
    encoding[0] = '\0';
    auto is = [declared](std::string_view name) {
        return declared.size() == name.size() && StartsWithIgnoringCase(declared, name);
    };
    if (declared.empty() || is("UTF-8") || is("UTF8"))
        return true;
    auto begins = [declared](std::string_view start) {
        return StartsWithIgnoringCase(declared, start);
    };
    if (declared.size() >= size ||
        std::none_of(std::begin(kByteEncodings), std::end(kByteEncodings), begins))
        return false;
    *std::copy(declared.begin(), declared.end(), encoding) = '\0';
    return true;
}

// What a start tag is cut at.
constexpr auto kTagMarks = [] {
    std::array<bool, 256> marks = {};
    for (char mark : {'<', '>', '"', '\''})
        marks[static_cast<unsigned char>(mark)] = true;
    return marks;
}();

// Where the next one stands, or the text's size.
size_t NextMark(std::string_view text, size_t at)
{
    while (at < text.size() && !kTagMarks[static_cast<unsigned char>(text[at])])
        ++at;
    return at;
}

// The walk over the markup. The functions are given a text that begins with "<", and give the
// length of what is passed over at once, or kRefused.
class Markup {
public:
    // `longest` is the most that a comment, an instruction or a CDATA section may hold.
    explicit Markup(size_t longest) : longest_(longest) {}

    bool IsReadable(std::string_view text)
    {
        for (size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
            size_t length = LengthOf(zr::From(text, at));
            if (length == kRefused)
                return false;
            at += length;
        }
        return true;
    }

private:
    size_t LengthOf(std::string_view text)
    {
        constexpr std::string_view kComment = "<!--";
        constexpr std::string_view kCdata = "<![CDATA[";
        if (zr::StartsWith(text, kComment))
            return SectionLength(text, kComment.size(), "-->");
        if (zr::StartsWith(text, kCdata))
            return SectionLength(text, kCdata.size(), "]]>");
        if (zr::StartsWith(text, "<!"))
            return kRefused; // a document type declaration
        if (zr::StartsWith(text, "<?"))
            return InstructionLength(text);
        if (zr::StartsWith(text, "</"))
            return Close() ? 2 : kRefused;
        return StartTagLength(text);
    }

    // Up to the end. The parser leaves one that is too long in its middle.
    size_t SectionLength(std::string_view text, size_t opening, std::string_view closing) const
    {
        size_t end = text.find(closing, opening);
        if (end == std::string_view::npos || end - opening > longest_)
            return kRefused;
        return end + closing.size();
    }

    // The parser leaves an instruction without a proper target behind its "<?", and an XML
    // declaration that is not well-formed at its first ">".
    size_t InstructionLength(std::string_view text) const
    {
        constexpr size_t kOpening = 2;
        char first = text.size() > kOpening ? text[kOpening] : '\0';
        size_t nameEnd = std::min(text.find_first_of(" \t\r\n?", kOpening), text.size());
        std::string_view target = zr::First(zr::From(text, kOpening), nameEnd - kOpening);
        if ((!zr::IsLetter(first) && first != '_') || target == "xml" ||
            target.size() > XML_MAX_NAME_LENGTH)
            return kOpening;
        return SectionLength(text, kOpening, "?>");
    }

    size_t StartTagLength(std::string_view text)
    {
        uint32_t attributes = 0;
        for (size_t i = NextMark(text, 1); i < text.size(); i = NextMark(text, i + 1)) {
            char ch = text[i];
            if (ch == '>')
                return text[i - 1] == '/' || Open(attributes) ? i + 1 : kRefused;
            if (ch == '<' || ++attributes > zr::kMaxAttributes)
                return kRefused;
            do { // the value, in which the other quote and ">" may stand
                i = NextMark(text, i + 1);
                if (i == text.size() || text[i] == '<')
                    return kRefused;
            } while (text[i] != ch);
        }
        return kRefused;
    }

    bool Open(uint32_t attributes)
    {
        if (depth_ == zr::kMaxDepth || open_ + attributes > zr::kMaxOpenAttributes)
            return false;
        attributes_[depth_++] = static_cast<uint16_t>(attributes);
        open_ += attributes;
        return true;
    }

    bool Close()
    {
        if (depth_ == 0)
            return false;
        open_ -= attributes_[--depth_];
        return true;
    }

    size_t longest_;
    uint32_t depth_ = 0; // open elements
    uint32_t open_ = 0;  // their attributes
    uint16_t attributes_[zr::kMaxDepth] = {};
};

} // namespace

zr::XmlLook zr::LookAtXml(std::string_view text)
{
    XmlLook look = {};
    bool hasMark = zr::StartsWith(text, kByteOrderMark); // that of UTF-8, whatever is declared
    if (hasMark)
        text.remove_prefix(kByteOrderMark.size());
    if (!ChooseEncoding(hasMark ? "" : DeclaredEncoding(text), look.encoding))
        return look;
    bool isUtf8 = look.encoding[0] == '\0';
    // The parser counts bytes of UTF-8, of which one byte becomes three at the most.
    size_t longest = XML_MAX_TEXT_LENGTH / (isUtf8 ? 1 : 3);
    size_t start = text.find_first_not_of(kBlanks);
    look.accepted = start != std::string_view::npos && text[start] == '<' &&
                    HasOnlyCharacters(text, isUtf8) && Markup(longest).IsReadable(text);
    return look;
}
