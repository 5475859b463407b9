// SPDX-License-Identifier: Apache-2.0
// The keywords of YANG, each with its argument: how it is called in YIN and what it may say.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "shared/names.h"

namespace zr::yang {

// In alphabetical order, as their table.
enum class Keyword : uint8_t {
    Action,
    Anydata,
    Anyxml,
    Argument,
    Augment,
    Base,
    BelongsTo,
    Bit,
    Case,
    Choice,
    Config,
    Contact,
    Container,
    Default,
    Description,
    Deviate,
    Deviation,
    Enum,
    ErrorAppTag,
    ErrorMessage,
    Extension,
    Feature,
    FractionDigits,
    Grouping,
    Identity,
    IfFeature,
    Import,
    Include,
    Input,
    Key,
    Leaf,
    LeafList,
    Length,
    List,
    Mandatory,
    MaxElements,
    MinElements,
    Modifier,
    Module,
    Must,
    Namespace,
    Notification,
    OrderedBy,
    Organization,
    Output,
    Path,
    Pattern,
    Position,
    Prefix,
    Presence,
    Range,
    Reference,
    Refine,
    RequireInstance,
    Revision,
    RevisionDate,
    Rpc,
    Status,
    Submodule,
    Type,
    Typedef,
    Unique,
    Units,
    Uses,
    Value,
    When,
    YangVersion,
    YinElement,
    Unknown // an extension instance, or a word that is none
};
constexpr size_t kKeywordCount = static_cast<size_t>(Keyword::Unknown);

// What an argument must look like.
enum class ArgumentForm : uint8_t {
    None,           // there is no argument
    Text,           // anything
    Identifier,     // NAME
    Reference,      // NAME or PREFIX:NAME
    References,     // names of leafs, separated by white space
    Boolean,        // "true" or "false"
    Date,           // 2020-02-29
    Uri,            // not empty
    Version,        // "1" or "1.1"
    StatusWord,     // "current", "deprecated" or "obsolete"
    OrderWord,      // "user" or "system"
    DeviateWord,    // "add", "delete", "replace" or "not-supported"
    ModifierWord,   // "invert-match"
    Unsigned,       // a number from 0
    MaxElements,    // a number from 1, or "unbounded"
    Integer,        // a number of 32 bits
    FractionDigits, // 1 to 18
    AbsoluteId,     // /p:a/p:b
    DescendantId,   // a/b
    DescendantIds,  // several of them, separated by white space
    AugmentTarget,  // the one in a module, the other in a uses
    FeatureExpression,
    Range,     // of numbers, as in "1..4 | 8"
    Length,    // of numbers that are not negative
    Condition, // an XPath expression
    LeafrefPath
};

struct KeywordInfo {
    std::string_view name;
    std::string_view yinArgument; // "" without an argument
    bool isElement;               // whether YIN has the argument as a child element
    ArgumentForm form;
};

const KeywordInfo &InfoOf(Keyword keyword);
inline std::string_view NameOf(Keyword keyword)
{
    return InfoOf(keyword).name;
}

// Keyword::Unknown for a word that is none.
Keyword FindKeyword(std::string_view word);

// Whether a statement defines a schema node: container, leaf, leaf-list, list, choice, case,
// anydata, anyxml, rpc, action, notification, input, output.
bool IsNodeKeyword(Keyword keyword);
// Whether it is a node of the data tree: container, leaf, leaf-list, list, anydata, anyxml.
bool IsDataKeyword(Keyword keyword);

class KeywordSet {
public:
    constexpr KeywordSet(std::initializer_list<Keyword> keywords)
    {
        for (Keyword keyword : keywords)
            words_[WordOf(keyword)] |= BitOf(keyword);
    }
    constexpr bool Has(Keyword keyword) const
    {
        return (words_[WordOf(keyword)] & BitOf(keyword)) != 0;
    }
    constexpr KeywordSet operator|(const KeywordSet &other) const
    {
        KeywordSet both = *this;
        for (size_t i = 0; i < kWords; ++i)
            both.words_[i] |= other.words_[i];
        return both;
    }

private:
    static constexpr size_t kWords = kKeywordCount / 64 + 1;
    static constexpr size_t WordOf(Keyword keyword) { return static_cast<size_t>(keyword) / 64; }
    static constexpr uint64_t BitOf(Keyword keyword)
    {
        return uint64_t{1} << static_cast<size_t>(keyword) % 64;
    }
    uint64_t words_[kWords]{};
};

// The built-in types (RFC 7950, section 4.2.4), in alphabetical order, as their names.
enum class Builtin : uint8_t {
    Binary,
    Bits,
    Boolean,
    Decimal64,
    Empty,
    Enumeration,
    Identityref,
    InstanceIdentifier,
    Int16,
    Int32,
    Int64,
    Int8,
    Leafref,
    String,
    Uint16,
    Uint32,
    Uint64,
    Uint8,
    Union,
    None // a derived type
};

Builtin FindBuiltin(std::string_view name);
std::string_view NameOf(Builtin type);

} // namespace zr::yang
