// SPDX-License-Identifier: Apache-2.0
// Schemas that were made to be as deep as can be loaded, and requests for them; the module is "m".
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <string>

namespace zrtest {

// A file has at most so many levels of containers, and the path of an augment so many characters.
inline constexpr uint32_t kLevelsOfOneAugment = 250;
inline constexpr size_t kLongestPath = 3095;

inline std::string Repeat(const std::string &text, uint32_t count)
{
    std::string all;
    for (uint32_t i = 0; i < count; ++i)
        all += text;
    return all;
}

inline std::string Augment(const std::string &path, uint32_t levels, const std::string &inner)
{
    return "<augment target-node=\"" + path + "\">" + Repeat("<container name=\"a\">", levels) +
           inner + Repeat("</container>", levels) + "</augment>";
}

inline std::string Module(const std::string &body)
{
    return R"(<module name="m" xmlns="urn:ietf:params:xml:ns:yang:yin:1">)"
           R"(<namespace uri="urn:m"/><prefix value="m"/>)" +
           body + "</module>";
}

// An rpc whose input goes down as far as augments of augments reach; `*levels` of containers.
inline std::string DeepestModule(const std::string &inner, uint32_t *levels)
{
    std::string body = "<rpc name=\"r\"><input/></rpc>";
    std::string path = "/m:r/m:input";
    size_t length = std::string("/m:r/input").size(); // as it is kept, without repeated prefixes
    for (*levels = 0; length + 2 <= kLongestPath;) {
        auto count = uint32_t((kLongestPath - length) / 2);
        count = count < kLevelsOfOneAugment ? count : kLevelsOfOneAugment;
        body += Augment(path, count, "");
        path += Repeat("/m:a", count);
        length += 2 * size_t{count};
        *levels += count;
    }
    body += Augment(path, kLevelsOfOneAugment, inner);
    *levels += kLevelsOfOneAugment;
    return Module(body);
}

// Leaves that refer to each other, each through a union, so that a value is handed on and on.
inline std::string Chain(uint32_t count)
{
    std::string leaves = R"(<leaf name="l0"><type name="int8"/></leaf>)";
    for (uint32_t i = 1; i < count; ++i)
        leaves += "<leaf name=\"l" + std::to_string(i) +
                  R"("><type name="union"><type name="leafref"><path value="../l)" +
                  std::to_string(i - 1) + "\"/></type></type></leaf>";
    return leaves;
}

// A request for that rpc, so many levels down, with a leaf in the last; the caller frees its
// document.
inline xmlNode *Request(uint32_t levels, const char *leaf)
{
    xmlDoc *document = xmlNewDoc(BAD_CAST "1.0");
    xmlNode *top = xmlNewNode(nullptr, BAD_CAST "r");
    xmlDocSetRootElement(document, top);
    xmlNs *ns = xmlNewNs(top, BAD_CAST "urn:m", nullptr);
    xmlSetNs(top, ns);
    xmlNode *element = top;
    for (uint32_t i = 0; i < levels; ++i)
        element = xmlNewChild(element, ns, BAD_CAST "a", nullptr);
    xmlNewChild(element, ns, BAD_CAST leaf, BAD_CAST "1");
    return top;
}

} // namespace zrtest
