// XPath expressions, evaluated at every element of a fixed tree, and as conditions in a module.
#include "support.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>

#include "foundation/memory.h"
#include "schema/augment.h"
#include "schema/conditions.h"
#include "xpath/evaluate.h"
#include "xpath/lex.h"

namespace {

using namespace zrfuzz;

constexpr const char *kData =
    "<c xmlns=\"urn:m\"><a>1</a><b>text</b><i>m:derived</i><l><k>x</k><v/></l><l><k>y</k>"
    "<v>2.5</v></l><!-- note --><d><a>true</a></d></c>";

std::string Leaf(const char *name)
{
    return std::string("<leaf name=\"") + name + "\"><type name=\"string\"/></leaf>";
}

std::string Fixed()
{
    return ModuleText(
        "m", "<identity name=\"base\"/><identity name=\"derived\"><base name=\"base\"/></identity>"
             "<container name=\"c\">" +
                 Leaf("a") + Leaf("b") +
                 "<leaf name=\"i\"><type name=\"identityref\"><base name=\"base\"/></type></leaf>"
                 "<list name=\"l\"><key value=\"k\"/>" +
                 Leaf("k") + Leaf("v") + "</list><container name=\"d\">" + Leaf("a") +
                 "</container></container>");
}

// A schema and a tree whose elements know their schema nodes.
class Tree {
public:
    Tree()
        : ctx_(0),
          doc_(xmlReadMemory(kData, static_cast<int>(std::strlen(kData)), nullptr, nullptr, 0))
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

// As conditions of an augment that is coupled, whose nodes inherit them.
void LoadWith(const std::string &expression)
{
    std::string text = AttributeText(expression);
    Context ctx(0);
    LoadOrDie(ctx, Fixed());
    LoadOrDie(ctx, ModuleText("n", "<import module=\"m\"><prefix value=\"p\"/></import>"
                                   "<augment target-node=\"/p:c\"><when condition=\"" +
                                       text +
                                       "\"/><leaf name=\"w\"><type name=\"string\"/><when "
                                       "condition=\"" +
                                       text + "\"/><must condition=\"" + text +
                                       "\"/></leaf></augment>"));
    WalkErrors(ctx);
    WalkModule(ctx, ZR_CTX_GetModuleByModName(ctx, "n"), false);
    char data[] = "<rpc xmlns=\"urn:m\"/>";
    ZR_FreeErrNode(ZR_CTX_ValidateRpcDataTree(ctx, 1, data, nullptr, nullptr));
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
