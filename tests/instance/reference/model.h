// SPDX-License-Identifier: Apache-2.0
// Small generated schemas and documents of them, for the comparison of libzrdata with a checker
// that is slow and simple.
#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace datatest::reference {

// The same numbers on every machine.
class Chance {
public:
    explicit Chance(uint32_t seed) : engine_(seed) {}
    // From 0 to count - 1.
    uint32_t Of(uint32_t count) { return static_cast<uint32_t>(engine_() % count); }
    bool In(uint32_t count) { return Of(count) == 0; }

private:
    std::mt19937 engine_;
};

enum class Kind { kContainer, kPresence, kLeaf, kLeafList, kList, kChoice, kCase };

// "../SIBLING = 'value'", or "!=": true when one instance of the sibling compares so.
struct Condition {
    std::string sibling; // "": there is none
    bool equal = true;
    std::string value;
};

struct Node {
    Kind kind;
    std::string name;
    // Of leafs and leaf-lists: words of an enumeration, numbers of a range, a reference to an entry
    // of the leaf-list beside it, or one into the list beside it, to those entries that have in
    // `key` the value of `chooser`, beside it too.
    std::vector<std::string> words;
    int low = 0, high = 0;
    std::string reference;
    std::string list, key, chooser;
    std::string defaultValue; // "" for none
    bool mandatory = false;
    size_t minimum = 0, maximum = 0; // of entries; 0 for any number
    size_t keys = 0;                 // the first so many children
    std::string unique;              // a child
    std::string defaultCase;
    Condition when, must;
    std::vector<std::unique_ptr<Node>> children;

    bool IsLeaf() const { return kind == Kind::kLeaf || kind == Kind::kLeafList; }
    bool HasEntries() const { return kind == Kind::kLeafList || kind == Kind::kList; }
};

// The whole schema is a container without a name.
std::unique_ptr<Node> MakeSchema(Chance &chance);
// The body of a YANG module.
std::string YangOf(const Node &schema);

struct Element {
    std::string name;
    std::string value;
    std::vector<Element> children;
};

// Mostly valid data, in which `mistakes` things were made wrong at random.
Element MakeDocument(const Node &schema, Chance &chance, uint32_t mistakes);
std::string XmlOf(const Element &document); // what stands in the root

} // namespace datatest::reference
