// SPDX-License-Identifier: Apache-2.0
// Patterns and values of which each is asked of three: of this library, of the reference, which
// tells what XML Schema says, and of libxml2's matcher, which is the engine's built-in one. The
// library always says what the reference says. Where libxml2 does not, the difference has to belong
// to a known class: docs/patterns.md explains them.
//
// ZR_PATTERN_PAIRS is the number of generated pairs.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlregexp.h>
#include <zrpatterns/zrpatterns.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <set>

#include "patterns/reference.h"

namespace {

using namespace zrtest;
using zr::patterns::Node;
using zr::patterns::Verdict;
using Random = std::mt19937;

uint32_t Pick(Random &random, size_t count)
{
    return static_cast<uint32_t>(random() % count);
}

// libxml2's matcher.
class BuiltIn {
public:
    explicit BuiltIn(const std::string &pattern)
        : compiled_(xmlRegexpCompile(reinterpret_cast<const xmlChar *>(pattern.c_str())),
                    xmlRegFreeRegexp)
    {
    }
    // 1 or 0; negative when the matcher gives up, or the pattern does not compile.
    int Ask(const std::string &value) const
    {
        constexpr int kDoesNotCompile = -1000;
        return compiled_ ? xmlRegexpExec(compiled_.get(),
                                         reinterpret_cast<const xmlChar *>(value.c_str()))
                         : kDoesNotCompile;
    }

private:
    std::unique_ptr<xmlRegexp, decltype(&xmlRegFreeRegexp)> compiled_;
};

// A pattern, the same with its counted repetitions written out, and the atoms that it has.
struct Pattern {
    std::string text, writtenOut;
    std::vector<std::string> atoms;
};

constexpr const char *kAtoms[] = {
    "a",          "b",      "c",       "0",        "1",
    "-",          ":",      ".",       "\\.",      "[a-c]",
    "[^a]",       "\\d",    "\\w",     "\\s",      "\\i",
    "\\c",        "\\D",    "\\W",     "\\S",      "\\I",
    "\\C",        "$",      "^",       "[.]",      "[a-z-[b]]",
    "[^0-9-[a]]", "\\p{L}", "\\n",     "[-a]",     "\\P{Lu}",
    "\\p{Nd}",    "[\\d:]", "\\-",     "\\^",      "\\p{IsBasicLatin}",
    "[\\w-]",     "[^\\s]", "[$^]",    "\xC3\xA9", "[\xC3\xA0-\xC3\xBF]",
    "[\\i-[:]]",  "[^\\D]", "\\p{Z}",  "\\p{P}",   "\\p{S}",
    "[^\\P{L}]",  "\\p{C}", "\\p{Cn}",
};
// Their sets are read off RE2's tables, which takes its time.
constexpr const char *kCostlyAtoms[] = {"[\\W_]", "[\\w-[\\d]]", "[\\p{Cn}a]",
                                        "[\\p{L}-[\\p{Lu}]]"};

class Generator {
public:
    explicit Generator(Random &random) : random_(random) {}

    Pattern Make()
    {
        pattern_ = {};
        Branches(Pick(random_, 3), pattern_.text, pattern_.writtenOut);
        return pattern_;
    }

private:
    void Branches(uint32_t depth, std::string &text, std::string &writtenOut)
    {
        uint32_t count = Pick(random_, 3) == 0 ? 2 + Pick(random_, 2) : 1;
        for (uint32_t branch = 0; branch < count; ++branch) {
            if (branch > 0) {
                text += '|';
                writtenOut += '|';
            }
            uint32_t pieces = Pick(random_, 8) == 0 ? 0 : 1 + Pick(random_, 3);
            for (uint32_t piece = 0; piece < pieces; ++piece)
                Piece(depth, text, writtenOut);
        }
    }

    void Piece(uint32_t depth, std::string &text, std::string &writtenOut)
    {
        std::string atom, out;
        if (depth > 0 && Pick(random_, 3) == 0) {
            Branches(depth - 1, atom, out);
            atom = "(" + atom + ")";
            out = "(" + out + ")";
        } else {
            atom = out = Atom();
        }
        uint32_t least = Pick(random_, 3), most = least + Pick(random_, 3);
        switch (Pick(random_, 9)) {
        case 0:
        case 1:
        case 2: {
            const std::string sign(1, "?*+"[Pick(random_, 3)]);
            text += atom + sign;
            writtenOut += out + sign;
            return;
        }
        case 3:
            text += atom + "{" + std::to_string(least) + "}";
            writtenOut += Times(out, least);
            return;
        case 4:
            text += atom + "{" + std::to_string(least) + ",}";
            writtenOut += Times(out, least) + "(" + out + ")*";
            return;
        case 5:
            text += atom + "{" + std::to_string(least) + "," + std::to_string(most) + "}";
            writtenOut +=
                Times(out, least) + Times("(" + out, most - least) + Times(")?", most - least);
            return;
        default:
            text += atom;
            writtenOut += out;
        }
    }

    static std::string Times(const std::string &part, uint32_t count)
    {
        std::string all;
        while (count-- > 0)
            all += part;
        return all;
    }

    std::string Atom()
    {
        const char *atom = kAtoms[Pick(random_, 5)];
        if (Pick(random_, 2) == 0)
            atom = kAtoms[Pick(random_, std::size(kAtoms))];
        if (Pick(random_, 4000) == 0)
            atom = kCostlyAtoms[Pick(random_, std::size(kCostlyAtoms))];
        return pattern_.atoms.emplace_back(atom);
    }

    Random &random_;
    Pattern pattern_;
};

// A text that matches, one near such a text, or any.
std::u32string MakeValue(const Reference &reference, size_t most, Random &random)
{
    constexpr std::u32string_view kOthers = U"abc01-:. \n\u00e9$^Z\u0663\U0001F600";
    auto other = [&] { return kOthers[Pick(random, kOthers.size())]; };
    std::u32string value;
    if (Pick(random, 4) != 0)
        value = reference.Sample(random);
    else
        for (uint32_t count = Pick(random, 6); count > 0; --count)
            value += other();
    value.resize(std::min(value.size(), most));
    if (Pick(random, 2) == 0) {
        size_t at = Pick(random, value.size() + 1);
        if (at < value.size() && Pick(random, 2) == 0)
            value.erase(at, 1);
        else
            value.insert(at, 1, other());
    }
    return value;
}

bool CanBeEmpty(const Node &node)
{
    const auto &parts = node.children;
    switch (node.kind) {
    case Node::Kind::Class:
        return false;
    case Node::Kind::Sequence:
        return std::all_of(parts.begin(), parts.end(), CanBeEmpty);
    case Node::Kind::Choice:
        return std::any_of(parts.begin(), parts.end(), CanBeEmpty);
    default:
        return node.least == 0 || CanBeEmpty(parts.front());
    }
}

// Repetitions in repetitions, and of what may be empty, make libxml2 try for hours or for ever,
// also with a value of 14 characters; a counted group does so even where it is counted once.
bool TakesLibxml2TooLong(const Node &node, bool isRepeated = false)
{
    bool repeats = node.kind == Node::Kind::Repeat && node.most > 1;
    if (repeats && (isRepeated || CanBeEmpty(node.children.front())))
        return true;
    return std::any_of(node.children.begin(), node.children.end(), [&](const Node &child) {
        return TakesLibxml2TooLong(child, isRepeated || repeats);
    });
}

bool IsFitForLibxml2(const std::string &pattern, const Node &tree)
{
    return pattern.find("){") == std::string::npos && !TakesLibxml2TooLong(tree);
}

// The known classes of differences, as they are looked for.
enum class Difference { GivesUp, Characters, Counting, Branching };

constexpr const char *kNames[] = {"libxml2 gives up", "sets of characters", "counted repetition",
                                  "several ways from one place"};

// One of the pattern's atoms, alone, differs on one of the value's characters.
bool DiffersOnACharacter(const Pattern &pattern, const std::u32string &value)
{
    static std::map<std::pair<std::string, char32_t>, bool> known;
    for (const std::string &atom : pattern.atoms) {
        for (char32_t code : value) {
            auto [found, isNew] = known.try_emplace({atom, code});
            if (isNew) {
                Node tree;
                Parse(atom, tree);
                const std::u32string text(1, code);
                found->second = BuiltIn(atom).Ask(ToUtf8(text)) != Reference(tree).Matches(text);
            }
            if (found->second)
                return true;
        }
    }
    return false;
}

Difference Classify(const Pattern &pattern, const std::u32string &value, int builtIn, bool expected)
{
    if (builtIn < 0)
        return Difference::GivesUp;
    if (DiffersOnACharacter(pattern, value))
        return Difference::Characters;
    bool counts = pattern.text != pattern.writtenOut;
    if (counts && BuiltIn(pattern.writtenOut).Ask(ToUtf8(value)) == expected)
        return Difference::Counting;
    return Difference::Branching;
}

// What came of many pairs.
class Tally {
public:
    // Asks all three, or without a built-in matcher two.
    void Ask(const Pattern &pattern, const Reference &reference, const ZrPattern *compiled,
             const BuiltIn *builtIn, const std::u32string &value)
    {
        std::string bytes = ToUtf8(value);
        bool expected = reference.Matches(value);
        ++pairs_;
        matches_ += expected;
        EXPECT_EQ(ZR_PATTERNS_Match(compiled, bytes.c_str()), expected ? 1u : 0u)
            << pattern.text << " on " << bytes;
        int answer = builtIn != nullptr ? builtIn->Ask(bytes) : expected;
        notAsked_ += builtIn == nullptr;
        if (answer == expected)
            return;
        auto &[count, example] = differences_[Classify(pattern, value, answer, expected)];
        ++count;
        std::string text =
            pattern.text + " on '" + bytes + "'" + (expected ? " matches" : " does not");
        if (example.empty() || text.size() < example.size())
            example = text;
    }
    void Print() const
    {
        std::printf("%ld pairs, of which %ld match; libxml2 was not asked about %ld\n", pairs_,
                    matches_, notAsked_);
        for (const auto &[difference, found] : differences_)
            std::printf("  %8ld %-28s %s\n", found.first, kNames[static_cast<size_t>(difference)],
                        found.second.c_str());
    }
    long pairs() const { return pairs_; }
    long CountOf(Difference difference) const
    {
        auto found = differences_.find(difference);
        return found != differences_.end() ? found->second.first : 0;
    }

private:
    long pairs_ = 0, matches_ = 0, notAsked_ = 0;
    std::map<Difference, std::pair<long, std::string>> differences_;
};

class Agreement : public testing::Test {
protected:
    Agreement()
    {
        // Of type "xmlStructuredErrorFunc", whose last argument is const in some releases.
        xmlSetStructuredErrorFunc(nullptr, [](void *, auto *) {});
    }
    ~Agreement() override { xmlSetStructuredErrorFunc(nullptr, nullptr); }

    void AskAll(const Pattern &pattern, int values, size_t most, bool isPublished)
    {
        Node tree;
        ASSERT_EQ(Parse(pattern.text, tree), Verdict::Sound) << pattern.text;
        ZrPattern *compiled = nullptr;
        ASSERT_EQ(ZR_PATTERNS_Compile(pattern.text.c_str(), &compiled), ZR_PATTERNS_OK);
        std::unique_ptr<ZrPattern, decltype(&ZR_PATTERNS_Free)> owner(compiled, ZR_PATTERNS_Free);
        Reference reference(tree);
        BuiltIn builtIn(pattern.text);
        const BuiltIn *asked =
            isPublished || IsFitForLibxml2(pattern.text, tree) ? &builtIn : nullptr;
        for (int i = 0; i < values; ++i)
            tally_.Ask(pattern, reference, compiled, asked, MakeValue(reference, most, random_));
    }

    Random random_{20261122};
    Tally tally_;
};

TEST_F(Agreement, OfGeneratedPatternsIsWithXmlSchema)
{
    const char *set = std::getenv("ZR_PATTERN_PAIRS");
    long pairs = set != nullptr ? std::atol(set) : 20000;
    constexpr int kValues = 100;
    constexpr size_t kMostCharacters = 14; // more would take libxml2 too long
    Generator generator(random_);
    while (tally_.pairs() < pairs && !HasFailure())
        AskAll(generator.Make(), kValues, kMostCharacters, false);
    tally_.Print();
}

// What of any text is taken for a pattern, RE2 takes too, and it means the same.
TEST_F(Agreement, OfTextsWithoutOrderIsWithXmlSchemaWhereTheyArePatterns)
{
    constexpr std::string_view kPieces = "((()))[[]]{{}}||??**++\\\\\\\\^-..,0123abdDwWsSiIcC";
    int sound = 0;
    for (int round = 0; round < 30000 && !HasFailure(); ++round) {
        std::string text;
        for (uint32_t count = Pick(random_, 9); count > 0; --count)
            text += kPieces[Pick(random_, kPieces.size())];
        Node tree;
        ZrPattern *compiled = nullptr;
        bool isSound = Parse(text, tree) == Verdict::Sound;
        uint32_t status = ZR_PATTERNS_Compile(text.c_str(), &compiled);
        std::unique_ptr<ZrPattern, decltype(&ZR_PATTERNS_Free)> owner(compiled, ZR_PATTERNS_Free);
        ASSERT_EQ(status == ZR_PATTERNS_ERR_FAULTY, !isSound) << text;
        if (compiled == nullptr)
            continue;
        ++sound;
        Reference reference(tree);
        for (int i = 0; i < 5; ++i) {
            std::u32string value = MakeValue(reference, Reference::kMostCharacters - 1, random_);
            EXPECT_EQ(ZR_PATTERNS_Match(compiled, ToUtf8(value).c_str()),
                      reference.Matches(value) ? 1u : 0u)
                << text << " on " << ToUtf8(value);
        }
    }
    EXPECT_GT(sound, 1000);
}

// The patterns of the modules in a folder.
std::set<std::string> PublishedPatterns(const std::string &folder)
{
    std::set<std::string> patterns;
    for (const auto &file : std::filesystem::directory_iterator(folder)) {
        std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
            xmlReadFile(file.path().c_str(), nullptr, 0), xmlFreeDoc);
        std::vector<xmlNode *> rest = {xmlDocGetRootElement(document.get())};
        while (!rest.empty()) {
            xmlNode *node = rest.back();
            rest.pop_back();
            if (node == nullptr || node->type != XML_ELEMENT_NODE)
                continue;
            if (std::strcmp(reinterpret_cast<const char *>(node->name), "pattern") == 0) {
                xmlChar *value = xmlGetProp(node, reinterpret_cast<const xmlChar *>("value"));
                patterns.insert(reinterpret_cast<const char *>(value));
                xmlFree(value);
            }
            for (xmlNode *child = node->children; child != nullptr; child = child->next)
                rest.push_back(child);
        }
    }
    return patterns;
}

TEST_F(Agreement, OfPublishedPatternsIsWithXmlSchemaAndTheBuiltInMatcher)
{
    if (*ZR_CORPUS_DIR == '\0')
        GTEST_SKIP() << "ZR_CORPUS_DIR is not set";
    std::set<std::string> patterns = PublishedPatterns(ZR_CORPUS_DIR);
    EXPECT_GT(patterns.size(), 50u);
    for (const std::string &pattern : patterns)
        AskAll({pattern, pattern, {"\\d"}}, 200, Reference::kMostCharacters - 1, true);
    tally_.Print();
    EXPECT_EQ(tally_.CountOf(Difference::GivesUp), 0);
    EXPECT_EQ(tally_.CountOf(Difference::Counting), 0);
}

// One example of each class of differences: what XML Schema says, which is what the library says,
// and what libxml2 2.9.14 says instead, with which the examples were found.
TEST_F(Agreement, WithTheBuiltInMatcherEndsWhereTheDocumentsSay)
{
    const struct {
        const char *pattern, *value;
        bool matches;
    } rows[] = {
        {"[^\\P{L}]", "a", true},             // a negated category in a class
        {"\\p{S}", "\xF0\x9F\x98\x80", true}, // a character that is younger than the tables
        {"\\w", "\xCD\xB8", false},           // one that is not assigned
        {"b{2}|b", "bb", true},               // counted beside another way
        {"(){2}", "", true},                  // counted, and empty
        {"a*\\P{Lu}", "aa", true},            // several ways from one place
    };
    for (const auto &row : rows) {
        Node tree;
        ASSERT_EQ(Parse(row.pattern, tree), Verdict::Sound);
        ZrPattern *compiled = nullptr;
        ASSERT_EQ(ZR_PATTERNS_Compile(row.pattern, &compiled), ZR_PATTERNS_OK);
        EXPECT_EQ(ZR_PATTERNS_Match(compiled, row.value) == ZR_PATTERN_MATCH, row.matches)
            << row.pattern;
        ZR_PATTERNS_Free(compiled);
        if (std::strcmp(LIBXML_DOTTED_VERSION, "2.9.14") == 0) {
            EXPECT_NE(BuiltIn(row.pattern).Ask(row.value), row.matches ? 1 : 0) << row.pattern;
        }
    }
}

} // namespace
