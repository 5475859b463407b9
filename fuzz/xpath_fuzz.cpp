// SPDX-License-Identifier: Apache-2.0
// XPath expressions, evaluated at every element of a fixed tree, and as conditions in a module.
#include "support.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>

#include "platform/memory.h"
#include "schema/augment/augment.h"
#include "schema/members/condition_records.h"
#include "xpath/evaluate.h"
#include "xpath/lex.h"

namespace {

using namespace zrfuzz;

Goal g_true("a condition holds");
Goal g_false("a condition does not hold");
Goal g_error("a condition cannot be evaluated");
Goal g_tokens("an expression is tokenized");
Goal g_noTokens("an expression cannot be tokenized");
Goal g_valid("a request meets its conditions");
Goal g_mustFalse("a must of a request is false");
Goal g_mustError("a must of a request cannot be evaluated");
Goal g_whenFalse("a when of a request is false");
Goal g_whenError("a when of a request cannot be evaluated");
Goal g_completed("a default whose when holds is added");

// The fixed tree, with `more` at the end of its top element.
std::string Data(const std::string &more)
{
    return "<c xmlns=\"urn:m\" "
           "xmlns:m=\"urn:m\"><a>1</a><b>text</b><i>m:derived</i><l><k>x</k><v/></l><l><k>y</k>"
           "<v>2.5</v></l><!-- note --><d><a>true</a></d>" +
           more + "</c>";
}

std::string Leaf(const char *name)
{
    return std::string("<leaf name=\"") + name + "\"><type name=\"string\"/></leaf>";
}

// The schema of the tree: as data, and as the input of two operations.
std::string Fixed()
{
    std::string content =
        "<container name=\"c\">" + Leaf("a") + Leaf("b") +
        "<leaf name=\"i\"><type name=\"identityref\"><base name=\"base\"/></type></leaf>"
        "<list name=\"l\"><key value=\"k\"/>" +
        Leaf("k") + Leaf("v") + "</list><container name=\"d\">" + Leaf("a") +
        "</container></container>";
    std::string input = "<input>" + content + "</input>";
    return ModuleText("m", "<identity name=\"base\"/><identity name=\"derived\"><base "
                           "name=\"base\"/></identity>" +
                               content + "<rpc name=\"op\">" + input +
                               "</rpc><rpc name=\"check\">" + input + "</rpc>");
}

// A schema and a tree whose elements know their schema nodes.
class Tree {
public:
    Tree()
        : ctx_(0),
          doc_(xmlReadDoc(reinterpret_cast<const xmlChar *>(Data("").c_str()), nullptr, nullptr, 0))
    {
        LoadOrDie(ctx_, Fixed());
        Attach(Top(), "/m:c");
    }
    ~Tree() { xmlFreeDoc(doc_); }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;
    xmlNode *Top() const { return xmlDocGetRootElement(doc_); }
    xmlNode *Root() const { return reinterpret_cast<xmlNode *>(doc_); }

private:
    void Attach(xmlNode *element, const std::string &path)
    {
        element->_private = ZR_CTX_GetTargetNode(ctx_, path.c_str(), nullptr);
        Check(element->_private != nullptr, "every element has its schema node");
        for (xmlNode *child = xmlFirstElementChild(element); child != nullptr;
             child = xmlNextElementSibling(child))
            Attach(child, path + "/" + reinterpret_cast<const char *>(child->name));
    }

    Context ctx_;
    xmlDoc *doc_;
};

void Evaluate(const Tree &tree, xmlNode *element, const char *expression)
{
    uint32_t status = ZR_XPATH_EvalCondition(tree.Root(), element, expression);
    Check(status == ZR_OK || status == ZR_ERR_INVALID ||
              (status >= ZR_XPATH_RESULT_FALSE && status <= ZR_XPATH_ERR_PREDICATE),
          "an evaluation has a stated status");
    g_true.MeetIf(status == ZR_OK);
    g_false.MeetIf(status == ZR_XPATH_RESULT_FALSE);
    g_error.MeetIf(status > ZR_XPATH_RESULT_FALSE);
    Check(ZR_XPATH_EvalCondition(tree.Root(), element, expression) == status,
          "an evaluation gives the same result again");
    for (xmlNode *child = xmlFirstElementChild(element); child != nullptr;
         child = xmlNextElementSibling(child))
        Evaluate(tree, child, expression);
}

// Tokens follow each other without overlapping, and between them is white space alone.
void Tokenize(const char *expression)
{
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize(expression);
    g_tokens.MeetIf(lex != nullptr);
    g_noTokens.MeetIf(lex == nullptr);
    const char *end = expression;
    for (uint32_t i = 0; i < ZR_XPATH_GetTokenNumber(lex); ++i) {
        uint32_t type = 0;
        uint32_t length = 0;
        const char *token = ZR_XPATH_GetTokenExprByPos(lex, i, &type, &length);
        Check(token >= end && length != 0, "tokens are in order and not empty");
        Check(end + std::strspn(end, " \t\r\n") == token, "white space alone is between tokens");
        Check(type < ZR_XPATH_TOKEN_NONE, "a token has a type");
        end = token + length;
        Check(end <= expression + std::strlen(expression), "a token lies inside the text");
    }
    Check(lex == nullptr || end[std::strspn(end, " \t\r\n")] == '\0', "all of the text is read");
    ZR_XPATH_FreeXpathLex(lex);
    char *parent = ZRS_NODE_GetParentCond(expression);
    Check(parent == nullptr || std::strlen(parent) <= 4 * std::strlen(expression) + 4,
          "a condition for the child grows by a few characters a token");
    zr::Free(parent);
}

// Augments a container with the condition on the augment and on its node, and on a node that has
// a default.
std::string WithWhens(const std::string &target, const std::string &condition)
{
    std::string when = "<when condition=\"" + condition + "\"/>";
    std::string start = "<augment target-node=\"" + target + "\">";
    std::string type = "<type name=\"string\"/>";
    return start + when + "<leaf name=\"w\">" + when + type + "</leaf></augment>" + start +
           "<leaf name=\"x\">" + when + type + "<default value=\"d\"/></leaf></augment>";
}

// Augments a container with a node that has the condition as a must.
std::string WithMust(const std::string &target, const std::string &condition)
{
    return "<augment target-node=\"" + target +
           "\"><leaf name=\"y\"><type name=\"string\"/><must condition=\"" + condition +
           "\"/></leaf></augment>";
}

void CountDefault(void *, void *count)
{
    ++*static_cast<uint32_t *>(count);
}

// The message of a request's fault: empty when it is valid.
std::string Request(ZrCtx *ctx, const std::string &name, const std::string &more)
{
    std::string text = "<" + name + " xmlns=\"urn:m\">" + Data(more) + "</" + name + ">";
    uint32_t defaults = 0;
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, 1, text.data(), CountDefault, &defaults);
    const char *message = ZR_GetErrorMessage(error);
    std::string fault = message != nullptr ? message : "";
    Check(error == nullptr || fault.find("condition") != std::string::npos,
          "nothing but a condition makes the request invalid");
    ZR_FreeErrNode(error);
    g_valid.MeetIf(error == nullptr && !more.empty());
    g_completed.MeetIf(defaults != 0);
    return fault;
}

// As conditions of augments that are coupled, whose nodes inherit them: in data, which is read, and
// in the input of operations, whose requests they decide.
void LoadWith(const std::string &expression)
{
    std::string text = AttributeText(expression);
    Context ctx(0);
    LoadOrDie(ctx, Fixed());
    LoadOrDie(ctx, ModuleText("n", "<import module=\"m\"><prefix value=\"p\"/></import>" +
                                       WithWhens("/p:c", text) + WithMust("/p:c", text) +
                                       WithWhens("/p:op/p:input/p:c", text) +
                                       WithMust("/p:check/p:input/p:c", text)));
    WalkErrors(ctx);
    WalkModule(ctx, ZR_CTX_GetModuleByModName(ctx, "n"), false);
    Request(ctx, "op", "");
    std::string fault = Request(ctx, "op", "<w xmlns=\"urn:n\">1</w>");
    g_whenFalse.MeetIf(fault == "w is not satisfied when condition.");
    g_whenError.MeetIf(fault == "Failed to check when condition of w.");
    fault = Request(ctx, "check", "<y xmlns=\"urn:n\">1</y>");
    g_mustFalse.MeetIf(fault == "y is not satisfied must condition.");
    g_mustError.MeetIf(fault == "Failed to check must condition of y.");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    static const Tree *tree = new Tree;
    std::string expression(reinterpret_cast<const char *>(data), size);
    expression.resize(std::strlen(expression.c_str()));
    BlockBalance balance("an evaluation keeps no block");
    Evaluate(*tree, tree->Top(), expression.c_str());
    Tokenize(expression.c_str());
    LoadWith(expression);
    return 0;
}
