// SPDX-License-Identifier: Apache-2.0
// The evaluator against two witnesses: a plain recursive reference, on every expression, and
// libxml2's XPath, on those for which the subset and XPath 1.0 agree.
#include <gtest/gtest.h>
#include <libxml/xpath.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "xpath/data_tree.h"
#include "xpath/evaluate.h"
#include "xpath/reference.h"

namespace {

namespace reference = zrtest::reference;

// The standard's distributions differ between libraries; this does not.
class Random {
public:
    explicit Random(uint32_t seed) : engine_(seed) {}
    uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(engine_() % limit); }
    bool OneIn(uint32_t n) { return Below(n) == 0; }
    template <size_t N> const char *Of(const char *const (&texts)[N])
    {
        return texts[Below(static_cast<uint32_t>(N))];
    }

private:
    std::mt19937 engine_;
};

const char *const kNames[] = {"a", "b", "c", "d", "and", "text"};
const char *const kXPathNames[] = {"a", "b", "c", "d", "and"}; // none that a text node has too
const char *const kXPathTexts[] = {"",      "1",   "1.0", "2",  "-2", "10",  ".5",      "0",
                                   "false", "abc", " 7 ", "on", "1x", "x y", "9999999", "1."};
// libxml2 takes the last three, which are no numbers, for 0.
const char *const kTexts[] = {"",   "1",  "1.0", "-2",  "10",  ".5", "0", "abc",
                              "on", "1x", " 7 ", "0.0", "- 1", "-",  "."};

// A generated tree, once for the reference and once for libxml2.
class Trees {
public:
    explicit Trees(Random *random, bool uniqueNames)
        : random_(random), uniqueNames_(uniqueNames), doc_(xmlNewDoc(nullptr))
    {
        root_ = std::make_unique<reference::Node>();
        root_->hasSchema = false;
        Add(root_.get(), reinterpret_cast<xmlNode *>(doc_), "a", 0);
    }
    ~Trees() { xmlFreeDoc(doc_); }
    Trees(const Trees &) = delete;
    Trees &operator=(const Trees &) = delete;

    struct Pair {
        const reference::Node *node;
        xmlNode *element;
    };
    Pair AnyElement() { return elements_[random_->Below(static_cast<uint32_t>(elements_.size()))]; }
    const reference::Node *Root() const { return root_.get(); }
    xmlDoc *Doc() const { return doc_; }
    xmlNode *RootNode() const { return reinterpret_cast<xmlNode *>(doc_); }
    std::string Xml() const
    {
        xmlChar *text = nullptr;
        int length = 0;
        xmlDocDumpMemory(doc_, &text, &length);
        std::string xml(reinterpret_cast<const char *>(text), static_cast<size_t>(length));
        xmlFree(text);
        return xml;
    }

private:
    void Add(reference::Node *parent, xmlNode *parentElement, const char *name, uint32_t depth)
    {
        auto owned = std::make_unique<reference::Node>();
        reference::Node *node = owned.get();
        xmlNode *element =
            xmlNewDocNode(doc_, nullptr, reinterpret_cast<const xmlChar *>(name), nullptr);
        xmlAddChild(parentElement, element);
        node->name = name;
        node->parent = parent;
        node->hasSchema = uniqueNames_ || !random_->OneIn(8);
        element->_private = node->hasSchema ? zrtest::StringLeaf() : nullptr;
        parent->children.push_back(std::move(owned));
        elements_.push_back({node, element});
        if (depth < 4 && (depth < 2 || !random_->OneIn(3)))
            AddChildren(node, element, depth);
        else
            SetText(node, element);
    }

    void AddChildren(reference::Node *node, xmlNode *element, uint32_t depth)
    {
        uint32_t count = random_->Below(5);
        for (uint32_t i = 0; i < count; ++i) {
            const char *name = uniqueNames_ ? kXPathNames[i] : random_->Of(kNames);
            Add(node, element, name, depth + 1);
        }
    }

    void SetText(reference::Node *node, xmlNode *element)
    {
        node->text = uniqueNames_ ? random_->Of(kXPathTexts) : random_->Of(kTexts);
        if (node->text.empty())
            return;
        xmlNodeAddContent(element, reinterpret_cast<const xmlChar *>(node->text.c_str()));
        if (!uniqueNames_) { // the text is a child called "text", which name tests find too
            auto text = std::make_unique<reference::Node>();
            text->name = "text";
            text->parent = node;
            text->hasSchema = false;
            node->children.push_back(std::move(text));
        }
    }

    Random *random_;
    bool uniqueNames_;
    xmlDoc *doc_;
    std::unique_ptr<reference::Node> root_;
    std::vector<Pair> elements_;
};

// Expressions by the grammar of the subset, with a few steps outside of it.
class Grammar {
public:
    Grammar(Random *random, bool onlyXPath) : random_(random), onlyXPath_(onlyXPath) {}

    std::string Expression(uint32_t depth)
    {
        static const char *const kOperators[] = {"or", "and", "=",  "!=", "<",   ">",
                                                 "<=", ">=",  "or", "=",  "and", "="};
        static const char *const kOthers[] = {"+", "-", "*", "div", "mod", "|"};
        std::string text = Operand(depth);
        while (random_->OneIn(2)) {
            bool other = !onlyXPath_ && random_->OneIn(25);
            text += Space() + " " + (other ? random_->Of(kOthers) : random_->Of(kOperators)) + " ";
            text += Space() + Operand(depth);
        }
        return text;
    }

private:
    std::string Operand(uint32_t depth)
    {
        switch (random_->Below(depth < 5 ? 10 : 7)) {
        case 0:
            return std::string("'") +
                   (onlyXPath_ ? random_->Of(kXPathTexts) : random_->Of(kTexts)) + "'";
        case 1:
            return Number();
        case 7:
            return "(" + Space() + Expression(depth + 1) + Space() + ")";
        case 8:
        case 9:
            return Call(depth);
        default:
            return Path();
        }
    }

    std::string Number()
    {
        static const char *const kNumbers[] = {"0", "1", "2", "10", "1.0", ".5", "7.", "0.5"};
        return !onlyXPath_ && random_->OneIn(20) ? ".5.3" : random_->Of(kNumbers);
    }

    std::string Call(uint32_t depth)
    {
        if (onlyXPath_ || !random_->OneIn(6))
            return "not(" + Expression(depth + 1) + ")";
        if (random_->OneIn(4))
            return "derived-from(" + Path() + ", '" + random_->Of(kTexts) + "')";
        static const char *const kFunctions[] = {
            "not", "not", "derived-from", "derived-from-or-self", "count", "current"};
        std::string text = std::string(random_->Of(kFunctions)) + Space() + "(";
        uint32_t count = random_->Below(4);
        for (uint32_t i = 0; i < count; ++i)
            text += (i != 0 ? ", " : "") + Expression(depth + 1);
        return text + ")";
    }

    std::string Path()
    {
        std::string text = random_->OneIn(4) ? "/" : "";
        if (!text.empty() && !onlyXPath_ && random_->OneIn(10))
            text = random_->OneIn(2) ? "//" : "/ ";
        if (!text.empty() && random_->OneIn(8))
            return text;
        text += Step();
        while (!random_->OneIn(2)) {
            text += !onlyXPath_ && random_->OneIn(15) ? "//" : "/";
            text += Step();
        }
        return text + (!onlyXPath_ && random_->OneIn(30) ? "/" : "");
    }

    std::string Step()
    {
        switch (random_->Below(8)) {
        case 0:
            return ".";
        case 1:
        case 2:
            return "..";
        default:
            break;
        }
        if (onlyXPath_)
            return random_->Of(kXPathNames);
        std::string text = random_->Of(kNames);
        if (random_->OneIn(10))
            text = "p:" + text;
        if (random_->OneIn(30))
            text = random_->OneIn(2) ? "*" : "p:*";
        if (random_->OneIn(12))
            text += random_->OneIn(8) ? "[" : "[" + Space() + Expression(4) + "]";
        return text;
    }

    std::string Space()
    {
        static const char *const kSpaces[] = {"", "", " ", "\t", "\n ", "\r"};
        return random_->Of(kSpaces);
    }

    Random *random_;
    bool onlyXPath_;
};

// Spoils an expression: pieces are taken out, doubled, or put in.
std::string Spoil(Random *random, std::string text)
{
    static const char *const kPieces[] = {
        "(",  ")", ",",     "[",  "]",  "@",     "..",   ".",     "/",   "//",   "|",   "+",    "-",
        "*",  "=", "!=",    "<",  "<=", " and ", " or ", " div ", "'",   "\"",   "$",   "not(", "a",
        "a:", "1", "1.2.3", "''", "!",  ":",     "\x80", " ",     "p:*", "andx", "f()", "x:y:z"};
    uint32_t changes = 1 + random->Below(3);
    for (uint32_t i = 0; i < changes; ++i) {
        size_t at = random->Below(static_cast<uint32_t>(text.size()) + 1);
        size_t length = random->Below(6);
        if (random->OneIn(2))
            text.insert(at, random->Of(kPieces));
        else if (random->OneIn(2))
            text.erase(at, length);
        else
            text.insert(at, text.substr(at, length));
    }
    return text;
}

// A few tokens in any order.
std::string Soup(Random *random)
{
    static const char *const kTokens[] = {"(",   ")",  ",", "[",  "]",  "@",  "..", ".",    "a",
                                          "b/c", "/a", "/", "//", "1",  "2",  "'",  "''",   "'1'",
                                          "and", "or", "=", "!=", "<",  ">=", "+",  "not(", "*",
                                          "not", "(",  ")", "=",  "or", "a",  "1"};
    std::string text;
    uint32_t count = random->Below(12);
    for (uint32_t i = 0; i < count; ++i)
        text += std::string(random->Of(kTokens)) + (random->OneIn(5) ? "" : " ");
    return text;
}

TEST(EvaluatorWitness, GivesWhatTheRulesGive)
{
    Random random(20240611);
    std::map<uint32_t, uint32_t> seen; // how often each status came
    uint32_t count = 0;
    for (uint32_t round = 0; round < 400; ++round) {
        Trees trees(&random, false);
        Grammar grammar(&random, false);
        for (uint32_t i = 0; i < 50; ++i) {
            std::string text = grammar.Expression(0);
            if (i % 5 == 3)
                text = Spoil(&random, text);
            if (i % 5 == 4)
                text = Soup(&random);
            Trees::Pair context = trees.AnyElement();
            reference::Evaluator evaluator(trees.Root(), context.node);
            uint32_t expected = evaluator.Eval(text);
            ASSERT_EQ(ZR_XPATH_EvalCondition(trees.RootNode(), context.element, text.c_str()),
                      expected)
                << text << "\nat " << context.node->name << " in " << trees.Xml();
            ++seen[expected];
            ++count;
        }
    }
    EXPECT_EQ(count, 20000u);
    // The generator is worth something only if it reaches every status that a condition can have.
    for (uint32_t status : std::initializer_list<uint32_t>{
             ZR_OK, ZR_ERR_INVALID, ZR_XPATH_RESULT_FALSE, ZR_XPATH_ERR_TOKENIZE,
             ZR_XPATH_ERR_PAREN, ZR_XPATH_ERR_UNSUPPORTED_OPERATOR, ZR_XPATH_ERR_ROOT_STEP,
             ZR_XPATH_ERR_UNKNOWN_FUNCTION, ZR_XPATH_ERR_BAD_ARGUMENT, ZR_XPATH_ERR_NO_SCHEMA,
             ZR_XPATH_ERR_PREDICATE})
        EXPECT_GT(seen[status], 3u) << std::hex << status;
    EXPECT_GT(seen[ZR_OK], count / 10);
    EXPECT_GT(seen[ZR_XPATH_RESULT_FALSE], count / 10);
}

// What XPath 1.0 says, as a status.
uint32_t AskLibxml(xmlDoc *doc, xmlNode *context, const std::string &text)
{
    xmlXPathContext *xpath = xmlXPathNewContext(doc);
    xpath->node = context;
    xmlXPathObject *object =
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar *>(text.c_str()), xpath);
    EXPECT_NE(object, nullptr) << text;
    uint32_t status = ZR_XPATH_RESULT_FALSE;
    if (object != nullptr && xmlXPathCastToBoolean(object) != 0)
        status = ZR_OK;
    xmlXPathFreeObject(object);
    xmlXPathFreeContext(xpath);
    return status;
}

TEST(EvaluatorWitness, GivesWhatXPathGivesWhereTheSubsetAgreesWithIt)
{
    Random random(7950);
    uint32_t compared = 0;
    uint32_t held = 0;
    for (uint32_t round = 0; round < 1000; ++round) {
        Trees trees(&random, true);
        Grammar grammar(&random, true);
        for (uint32_t i = 0; i < 60; ++i) {
            std::string text = grammar.Expression(0);
            Trees::Pair context = trees.AnyElement();
            reference::Evaluator evaluator(trees.Root(), context.node);
            uint32_t expected = evaluator.Eval(text);
            bool isAnswer = expected == ZR_OK ||
                            expected == ZR_XPATH_RESULT_FALSE; // "/ and a" is no expression
            if (!isAnswer || !evaluator.AgreesWithXPath())
                continue;
            uint32_t status =
                ZR_XPATH_EvalCondition(trees.RootNode(), context.element, text.c_str());
            EXPECT_EQ(status, expected) << text;
            ASSERT_EQ(status, AskLibxml(trees.Doc(), context.element, text))
                << text << "\nat " << context.node->name << " in " << trees.Xml();
            ++compared;
            held += status == ZR_OK;
        }
    }
    EXPECT_GE(compared, 10000u);
    EXPECT_GT(held, compared / 10);
    EXPECT_GT(compared - held, compared / 10);
}

} // namespace
