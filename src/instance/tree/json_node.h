// SPDX-License-Identifier: Apache-2.0
// Data that was JSON (RFC 7951), in the shape of a tree of libxml2's: what reads a caller's tree
// reads this one too, and asks for a JsonNode where the encodings differ.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <string_view>

#include "instance/plan/plan.h"

namespace zr::data {

enum class JsonKind : uint8_t {
    Object,
    Array, // one that is empty or stands in another; the values of others are nodes themselves
    String,
    Number,
    Boolean,
    Null,
    Empty, // [null]
    Unfit  // a string with characters that data cannot hold
};

// The name of a member, shared by all members of that name.
struct JsonName {
    std::string_view text;    // as it is written
    std::string_view prefix;  // what stands before its colon; "" when there is none
    const char *local;        // what stands behind it
    const PlanModule *module; // of the prefix; null when there is none
    const xmlNs *space;       // of its elements; null where it is that of the object around
    bool isAnnotation;        // "@..." (RFC 7952, section 5.2)
    // The last object that was read with such a member, and the member there.
    const xmlNode *object;
    struct JsonNode *first;
};

struct JsonNode {
    xmlNode node; // the first member; an element, also of an array's value
    JsonName *name;
    JsonKind kind;
    bool isEntry;      // a value of an array
    bool startsMember; // the only value of its member, or the first of an array
    bool isRepeated;   // a member of its name stands in the object before
    uint32_t line;
};

// What marks the document of such a tree, by its address.
extern const char kJsonMark;

// The node as JSON; null for one of a tree of libxml2's own.
inline const JsonNode *AsJson(const xmlNode *node)
{
    bool isJson = node != nullptr && node->type == XML_ELEMENT_NODE && node->doc != nullptr &&
                  node->doc->_private == &kJsonMark;
    return isJson ? reinterpret_cast<const JsonNode *>(node) : nullptr;
}

// The next value of the same array; null behind the last.
inline const JsonNode *NextEntry(const JsonNode &entry)
{
    auto *next = reinterpret_cast<const JsonNode *>(entry.node.next);
    bool isSame = next != nullptr && !next->startsMember && next->name == entry.name;
    return isSame ? next : nullptr;
}

// Why a value of JSON cannot be one of a built-in type, whatever its text (RFC 7951, section 6);
// null when it can. `base` is a ZrtBuiltInType.
const char *CheckKind(const JsonNode &value, uint32_t base);

// Why a value cannot be an instance of a schema node, whatever it holds (RFC 7951, section 5).
const char *CheckShape(const JsonNode &value, const PlanNode &plan);

} // namespace zr::data
