// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/grammar.h"

#include <array>

namespace zr::yang {

namespace {

using K = Keyword;

// How often a sub-statement may stand in its parent.
enum Rule : uint8_t {
    kNever = 0,
    kAllowed = 0x01,
    kMany = 0x02,     // more than once
    kNeeded = 0x04,   // at least once
    kNew = 0x08,      // in YANG 1.1 alone
    kManyNew = 0x10,  // more than once in YANG 1.1 alone
    kNeededNew = 0x20 // at least once in YANG 1.1 alone
};
constexpr uint8_t kOnce = kAllowed, kAny = kAllowed | kMany, kOne = kAllowed | kNeeded,
                  kSome = kAllowed | kMany | kNeeded, kAnyNew = kAny | kNew,
                  kOnceNew = kOnce | kNew;

// A list of keywords whose unused places are Unknown.
using Keywords = std::array<K, 14>;

struct Row {
    Keywords parents;
    uint8_t rule;
    Keywords children;
};

constexpr K kNone = K::Unknown;
constexpr Keywords L(K a = kNone, K b = kNone, K c = kNone, K d = kNone, K e = kNone, K f = kNone,
                     K g = kNone, K h = kNone, K i = kNone, K j = kNone, K k = kNone, K l = kNone,
                     K m = kNone, K n = kNone)
{
    return {a, b, c, d, e, f, g, h, i, j, k, l, m, n};
}

constexpr Keywords kModules = L(K::Module, K::Submodule);
constexpr Keywords kNodes = L(K::Container, K::Leaf, K::LeafList, K::List, K::Choice, K::Anyxml);
// What holds data nodes by "uses" too.
constexpr Keywords kBodies = L(K::Module, K::Submodule, K::Container, K::List, K::Case, K::Grouping,
                               K::Augment, K::Input, K::Output, K::Notification);
constexpr Keywords kDescribed = L(K::Module, K::Submodule, K::Revision, K::Must, K::Deviation,
                                  K::Range, K::Length, K::Pattern, K::Refine, K::When);

// clang-format off
//   in                                               how often  which
constexpr Row kRows[] = {
    // Modules, their heads and what they define.
    {L(K::Module),                                    kOne,      L(K::Namespace, K::Prefix)},
    {L(K::Submodule),                                 kOne,      L(K::BelongsTo)},
    {kModules,                                        kOnce | kNeededNew, L(K::YangVersion)},
    {kModules,                                        kOnce,     L(K::Organization, K::Contact)},
    {kModules,                                        kAny,      L(K::Import, K::Include, K::Revision, K::Extension, K::Feature, K::Identity, K::Typedef, K::Grouping, K::Augment, K::Rpc, K::Notification, K::Deviation)},
    {L(K::BelongsTo, K::Import),                      kOne,      L(K::Prefix)},
    {L(K::Import, K::Include),                        kOnce,     L(K::RevisionDate)},
    {L(K::Import, K::Include),                        kOnceNew,  L(K::Description, K::Reference)},
    {L(K::Extension),                                 kOnce,     L(K::Argument)},
    {L(K::Argument),                                  kOnce,     L(K::YinElement)},
    {L(K::Feature),                                   kAny,      L(K::IfFeature)},
    {L(K::Identity),                                  kOnce | kManyNew, L(K::Base)},
    {L(K::Identity, K::Enum, K::Bit, K::Refine),      kAnyNew,   L(K::IfFeature)},

    // What says something about its parent.
    {kDescribed,                                      kOnce,     L(K::Description, K::Reference)},
    {L(K::Extension, K::Feature, K::Identity, K::Typedef, K::Grouping, K::Augment, K::Rpc, K::Action, K::Notification, K::Uses, K::Case, K::Enum, K::Bit, K::Anydata),
                                                      kOnce,     L(K::Description, K::Reference, K::Status)},
    {kNodes,                                          kOnce,     L(K::Description, K::Reference, K::Status)},

    // Nodes: what stands in them.
    {kBodies,                                         kAny,      L(K::Container, K::Leaf, K::LeafList, K::List, K::Choice, K::Anyxml, K::Uses)},
    {kBodies,                                         kAnyNew,   L(K::Anydata)},
    {L(K::Choice),                                    kAny,      L(K::Case, K::Container, K::Leaf, K::LeafList, K::List, K::Anyxml)},
    {L(K::Choice),                                    kAnyNew,   L(K::Choice, K::Anydata)},
    {L(K::Augment),                                   kAny,      L(K::Case)},
    {L(K::Container, K::List, K::Grouping, K::Augment), kAnyNew, L(K::Action, K::Notification)},
    {L(K::Container, K::List, K::Grouping, K::Rpc, K::Action, K::Input, K::Output, K::Notification),
                                                      kAny,      L(K::Typedef, K::Grouping)},
    {L(K::Rpc, K::Action),                            kOnce,     L(K::Input, K::Output)},

    // Nodes: what they are like.
    {kNodes,                                          kOnce,     L(K::When, K::Config)},
    {L(K::Anydata),                                   kOnce,     L(K::When, K::Config, K::Mandatory)},
    {L(K::Case, K::Augment, K::Uses),                 kOnce,     L(K::When)},
    {kNodes,                                          kAny,      L(K::IfFeature)},
    {L(K::Anydata, K::Case, K::Augment, K::Uses, K::Rpc, K::Action, K::Notification), kAny, L(K::IfFeature)},
    {L(K::Container, K::Leaf, K::LeafList, K::List, K::Anyxml, K::Anydata, K::Refine), kAny, L(K::Must)},
    {L(K::Input, K::Output, K::Notification),         kAnyNew,   L(K::Must)},
    {L(K::Container, K::Refine),                      kOnce,     L(K::Presence)},
    {L(K::Leaf, K::LeafList, K::Typedef),             kOne,      L(K::Type)},
    {L(K::Leaf, K::LeafList, K::Typedef),             kOnce,     L(K::Units)},
    {L(K::Leaf, K::Typedef, K::Choice),               kOnce,     L(K::Default)},
    {L(K::LeafList),                                  kAnyNew,   L(K::Default)},
    {L(K::Leaf, K::Choice, K::Anyxml),                kOnce,     L(K::Mandatory)},
    {L(K::LeafList, K::List),                         kOnce,     L(K::MinElements, K::MaxElements, K::OrderedBy)},
    {L(K::List),                                      kOnce,     L(K::Key)},
    {L(K::List),                                      kAny,      L(K::Unique)},
    {L(K::Must, K::Range, K::Length, K::Pattern),     kOnce,     L(K::ErrorMessage, K::ErrorAppTag)},
    {L(K::Uses),                                      kAny,      L(K::Refine, K::Augment)},
    {L(K::Refine),                                    kOnce | kManyNew, L(K::Default)},
    {L(K::Refine),                                    kOnce,     L(K::Config, K::Mandatory, K::MinElements, K::MaxElements)},

    // Types.
    {L(K::Type),                                      kOnce,     L(K::FractionDigits, K::Range, K::Length, K::Path, K::RequireInstance)},
    {L(K::Type),                                      kOnce | kManyNew, L(K::Base)},
    {L(K::Type),                                      kAny,      L(K::Pattern, K::Enum, K::Bit, K::Type)},
    {L(K::Pattern),                                   kOnceNew,  L(K::Modifier)},
    {L(K::Enum),                                      kOnce,     L(K::Value)},
    {L(K::Bit),                                       kOnce,     L(K::Position)},

    // Deviations.
    {L(K::Deviation),                                 kSome,     L(K::Deviate)},
    {L(K::Deviate),                                   kOnce,     L(K::Type, K::Units, K::Config, K::Mandatory, K::MinElements, K::MaxElements)},
    {L(K::Deviate),                                   kAny,      L(K::Must, K::Unique)},
    {L(K::Deviate),                                   kOnce | kManyNew, L(K::Default)},
};
// clang-format on

using Matrix = std::array<std::array<uint8_t, kKeywordCount>, kKeywordCount>;

constexpr Matrix MakeMatrix()
{
    Matrix matrix{};
    for (const Row &row : kRows)
        for (K parent : row.parents)
            for (K child : row.children)
                if (parent != kNone && child != kNone)
                    matrix[static_cast<size_t>(parent)][static_cast<size_t>(child)] |= row.rule;
    return matrix;
}
constexpr Matrix kMatrix = MakeMatrix();

// What each way to deviate takes (RFC 7950, section 7.20.3.2).
struct DeviateRow {
    std::string_view way;
    Keywords children;
};
constexpr DeviateRow kDeviateRows[] = {
    {"not-supported", L()},
    {"add", L(K::Units, K::Must, K::Unique, K::Default, K::Config, K::Mandatory, K::MinElements,
              K::MaxElements)},
    {"replace",
     L(K::Type, K::Units, K::Default, K::Config, K::Mandatory, K::MinElements, K::MaxElements)},
    {"delete", L(K::Units, K::Must, K::Unique, K::Default)},
};

bool IsAllowedToDeviate(std::string_view way, Keyword child)
{
    for (const DeviateRow &row : kDeviateRows)
        if (row.way == way)
            for (K allowed : row.children)
                if (allowed == child)
                    return true;
    return false;
}

// In which part of a module a statement stands (RFC 7950, section 14, module-stmt).
uint8_t SectionOf(Keyword keyword)
{
    switch (keyword) {
    case K::YangVersion:
    case K::Namespace:
    case K::Prefix:
    case K::BelongsTo:
        return 1;
    case K::Import:
    case K::Include:
        return 2;
    case K::Organization:
    case K::Contact:
    case K::Description:
    case K::Reference:
        return 3;
    case K::Revision:
        return 4;
    default:
        return 5;
    }
}

class GrammarCheck {
public:
    GrammarCheck(Statement &root, Reports &reports)
        : root_(root), reports_(reports), isNew_(VersionOf(root) == Version::Yang11)
    {
    }

    void Run()
    {
        for (Statement *at = &root_; at != nullptr; at = NextInWalk(root_, *at))
            if (!at->IsExtension())
                Check(*at);
        CheckOrder();
    }

private:
    void Check(const Statement &parent)
    {
        const auto &rules = kMatrix[static_cast<size_t>(parent.keyword)];
        std::array<uint32_t, kKeywordCount> seen{};
        for (Statement &child : SubStatements(parent))
            if (!child.IsExtension())
                CheckChild(parent, child, rules[static_cast<size_t>(child.keyword)],
                           ++seen[static_cast<size_t>(child.keyword)]);
        if (parent.isFaulty)
            return;
        uint8_t needed = isNew_ ? kNeeded | kNeededNew : kNeeded;
        for (size_t i = 0; i < kKeywordCount; ++i)
            if ((rules[i] & needed) != 0 && seen[i] == 0)
                reports_.Error(
                    parent.place(), ZR_YANG_CODE_STATEMENT,
                    {"\"", parent.word, "\" without \"", NameOf(static_cast<K>(i)), "\""});
    }

    void CheckChild(const Statement &parent, const Statement &child, uint8_t rule, uint32_t count)
    {
        bool isWay =
            parent.keyword != K::Deviate || IsAllowedToDeviate(parent.argument, child.keyword);
        uint8_t many = isNew_ ? kMany | kManyNew : kMany;
        if ((rule & kAllowed) == 0 || !isWay)
            reports_.Error(child.place(), ZR_YANG_CODE_STATEMENT,
                           {"\"", child.word, "\" may not stand in \"", parent.word,
                            isWay ? "" : " ", isWay ? "" : parent.argument, "\""});
        else if ((rule & kNew) != 0 && !isNew_)
            reports_.Error(
                child.place(), ZR_YANG_CODE_STATEMENT,
                {"\"", child.word, "\" in \"", parent.word, "\" needs \"yang-version 1.1\""});
        else if (count > 1 && (rule & many) == 0)
            reports_.Error(child.place(), ZR_YANG_CODE_STATEMENT,
                           {"\"", child.word, "\" stands in \"", parent.word, "\" more than once"});
    }

    void CheckOrder()
    {
        const Statement *latest = nullptr;
        for (Statement &child : SubStatements(root_)) {
            if (child.IsExtension())
                continue;
            if (latest == nullptr || SectionOf(child.keyword) >= SectionOf(latest->keyword))
                latest = &child;
            else
                reports_.Error(child.place(), ZR_YANG_CODE_STATEMENT,
                               {"\"", child.word, "\" behind \"", latest->word, "\""});
        }
    }

    Statement &root_;
    Reports &reports_;
    bool isNew_;
};

} // namespace

Version VersionOf(const Statement &root)
{
    return ArgumentOf(root, K::YangVersion) == "1.1" ? Version::Yang11 : Version::Yang1;
}

void CheckGrammar(Statement &root, Reports &reports)
{
    GrammarCheck(root, reports).Run();
}

} // namespace zr::yang
