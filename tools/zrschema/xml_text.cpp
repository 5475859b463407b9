// SPDX-License-Identifier: Apache-2.0
#include "xml_text.h"

#include <fcntl.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <string_view>

namespace tool {

namespace {

constexpr size_t kMostBytes = INT_MAX; // what libxml2 counts
// libxml2 compares every attribute of a start tag with all others of it.
constexpr size_t kMostAttributes = 1024;
constexpr const char *kTooLarge = "the text is larger than 2 GiB";

std::string Reason()
{
    return std::strerror(errno);
}

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor()
    {
        if (number_ >= 0)
            close(number_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int number() const { return number_; }

private:
    int number_;
};

std::string ReadAll(int descriptor, std::string &text)
{
    char piece[65536];
    for (;;) {
        ssize_t got = read(descriptor, piece, sizeof(piece));
        if (got == 0)
            return "";
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return Reason();
        text.append(piece, static_cast<size_t>(got));
        if (text.size() > kMostBytes)
            return kTooLarge;
    }
}

// The end of what starts at the position: behind the closing text, or the end of the whole.
size_t Behind(std::string_view text, size_t at, std::string_view closing)
{
    size_t found = text.find(closing, at);
    return found != std::string_view::npos ? found + closing.size() : text.size();
}

// Passes over a start tag, whose attributes are counted by their equals signs.
size_t BehindTag(std::string_view text, size_t at, size_t &attributes)
{
    attributes = 0;
    while (at < text.size() && text[at] != '>') {
        char c = text[at++];
        if (c == '=')
            ++attributes;
        else if (c == '"' || c == '\'')
            at = Behind(text, at, std::string_view(&c, 1));
    }
    return at;
}

// One look over the whole text. A document type is not looked into: it is refused later.
bool HasTooManyAttributes(std::string_view text)
{
    for (size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        std::string_view rest = text.substr(at);
        size_t attributes = 0;
        if (rest.starts_with("<!--"))
            at = Behind(text, at + 4, "-->");
        else if (rest.starts_with("<![CDATA["))
            at = Behind(text, at, "]]>");
        else if (rest.starts_with("<?"))
            at = Behind(text, at, "?>");
        else
            at = BehindTag(text, at + 1, attributes);
        if (attributes > kMostAttributes)
            return true;
    }
    return false;
}

// Keeps the first fault: those after it are its consequences.
void KeepFault(void *userData, xmlError *error)
{
    auto *fault = static_cast<XmlFault *>(static_cast<xmlParserCtxt *>(userData)->_private);
    if (error->level < XML_ERR_ERROR || !fault->reason.empty())
        return;
    fault->line = error->line;
    fault->reason = error->message != nullptr ? error->message : "not well-formed";
    fault->reason.erase(fault->reason.find_last_not_of(" \n") + 1);
}

// Stops before anything is declared or opened.
void RefuseDocumentType(void *userData, const xmlChar *, const xmlChar *, const xmlChar *)
{
    auto *parser = static_cast<xmlParserCtxt *>(userData);
    auto *fault = static_cast<XmlFault *>(parser->_private);
    fault->line = xmlSAX2GetLineNumber(parser);
    fault->reason = "a document type declaration is not allowed";
    xmlStopParser(parser);
}

} // namespace

std::string Text(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

std::string ReadInput(const std::string &file, std::string &text)
{
    if (file == "-")
        return ReadAll(STDIN_FILENO, text);
    Descriptor input(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    return input.number() < 0 ? Reason() : ReadAll(input.number(), text);
}

std::string ReadRegularFile(const std::string &path, std::string &text)
{
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info;
    if (file.number() < 0 || fstat(file.number(), &info) != 0)
        return Reason();
    if (!S_ISREG(info.st_mode))
        return "not a regular file";
    if (static_cast<uintmax_t>(info.st_size) > kMostBytes)
        return kTooLarge;
    text.reserve(static_cast<size_t>(info.st_size));
    return ReadAll(file.number(), text);
}

Document ParseXml(const std::string &text, XmlFault &fault)
{
    fault = XmlFault();
    if (text.find('\0') != std::string::npos)
        fault.reason = "the text holds a NUL byte";
    else if (HasTooManyAttributes(text))
        fault.reason =
            "a start tag has more than " + std::to_string(kMostAttributes) + " attributes";
    if (!fault.reason.empty())
        return Document(nullptr, xmlFreeDoc);
    std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt *)> parser(xmlNewParserCtxt(),
                                                                     xmlFreeParserCtxt);
    if (parser == nullptr)
        throw std::bad_alloc();
    parser->_private = &fault;
    parser->sax->serror = KeepFault;
    parser->sax->internalSubset = RefuseDocumentType;
    Document document(xmlCtxtReadMemory(parser.get(), text.data(), static_cast<int>(text.size()),
                                        nullptr, nullptr,
                                        XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_BIG_LINES),
                      xmlFreeDoc);
    if (document != nullptr && parser->disableSAX == 0)
        fault = XmlFault(); // such as an undeclared prefix, which does not keep the library off
    else
        document.reset();
    if (document == nullptr && fault.reason.empty())
        fault.reason = "not well-formed";
    return document;
}

} // namespace tool
