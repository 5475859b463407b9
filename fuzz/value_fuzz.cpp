// SPDX-License-Identifier: Apache-2.0
// Values against leaves of every type, as a string and as the text of an element.
//
// Input: a byte that picks the leaf, then the value.
#include "support.h"

#include <libxml/tree.h>

#include <cstring>
#include <deque>
#include <iterator>

namespace {

using namespace zrfuzz;

constexpr const char *kTypes[] = {
    "<type name=\"binary\"><length value=\"2..10\"/></type>",
    "<type name=\"bits\"><bit name=\"one\"/><bit name=\"two\"/><bit name=\"three\"/></type>",
    "<type name=\"boolean\"/>",
    "<type name=\"decimal64\"><fraction-digits value=\"2\"/><range value=\"-1.5..10.25\"/></type>",
    "<type name=\"empty\"/>",
    "<type name=\"enumeration\"><enum name=\"up\"/><enum name=\"down\"/></type>",
    "<type name=\"identityref\"><base name=\"b\"/></type>",
    "<type name=\"instance-identifier\"/>",
    "<type name=\"int8\"><range value=\"-10..-5 | 0 | 7..max\"/></type>",
    "<type name=\"int16\"/>",
    "<type name=\"int32\"/>",
    "<type name=\"int64\"/>",
    "<type name=\"leafref\"><path value=\"/m:v8\"/></type>",
    "<type name=\"string\"><length value=\"1..20\"/><pattern value=\"[a-z]+(-[0-9]{1,3})*\"/>"
    "<pattern value=\"x.*\"><modifier value=\"invert-match\"/></pattern></type>",
    "<type name=\"uint8\"/>",
    "<type name=\"uint16\"/>",
    "<type name=\"uint32\"/>",
    "<type name=\"uint64\"><range value=\"min..9 | 20..max\"/></type>",
    "<type name=\"union\"><type name=\"int8\"/><type name=\"leafref\"><path value=\"/m:v5\"/>"
    "</type><type name=\"t\"/></type>",
    "<type name=\"t\"><range value=\"min..50 | 60..max\"/></type>",
    "<type name=\"decimal64\"><fraction-digits value=\"18\"/></type>",
};
constexpr size_t kTypeCount = sizeof kTypes / sizeof kTypes[0];

// Each type takes a value and refuses one.
struct TypeGoals {
    explicit TypeGoals(const char *type)
        : taken(std::string("a value is taken by ") + type),
          refused(std::string("a value is refused by ") + type)
    {
    }
    Goal taken;
    Goal refused;
};
std::deque<TypeGoals> g_types(std::begin(kTypes), std::end(kTypes));

std::string Fixed()
{
    std::string body = "<identity name=\"b\"/><identity name=\"d\"><base name=\"b\"/></identity>"
                       "<identity name=\"e\"><base name=\"d\"/></identity>"
                       "<typedef name=\"t\"><type name=\"int16\"><range value=\"1..100\"/></type>"
                       "</typedef>";
    for (size_t i = 0; i < kTypeCount; ++i)
        body += "<leaf name=\"v" + std::to_string(i) + "\">" + kTypes[i] + "</leaf>";
    return ModuleText("m", body);
}

// An element in the module's namespace, which is also declared with the prefix "m", with a text.
class Element {
public:
    explicit Element(const char *value) : doc_(xmlNewDoc(Xml("1.0")))
    {
        element_ = xmlNewDocNode(doc_, nullptr, Xml("v"), nullptr);
        xmlDocSetRootElement(doc_, element_);
        xmlSetNs(element_, xmlNewNs(element_, Xml("urn:m"), nullptr));
        xmlNewNs(element_, Xml("urn:m"), Xml("m"));
        if (*value != '\0')
            xmlAddChild(element_, xmlNewDocText(doc_, Xml(value)));
    }
    ~Element() { xmlFreeDoc(doc_); }
    Element(const Element &) = delete;
    Element &operator=(const Element &) = delete;
    const xmlNode *get() const { return element_; }

private:
    static const xmlChar *Xml(const char *text) { return reinterpret_cast<const xmlChar *>(text); }

    xmlDoc *doc_;
    xmlNode *element_;
};

bool IsValueStatus(uint32_t status)
{
    return status == ZR_OK || (status > ZR_ERR_VALUE_DERIVED && status <= ZR_ERR_VALUE_EMPTY);
}

Context *NewContext(uint32_t flags)
{
    auto *made = new Context(flags);
    LoadOrDie(*made, Fixed());
    return made;
}

const ZrNode *Leaf(const Context *ctx, size_t pick)
{
    return ZR_CTX_GetTargetNode(*ctx, ("/m:v" + std::to_string(pick)).c_str(), nullptr);
}

uint32_t Run(const ZrNode *leaf, uint32_t kind, const void *value)
{
    uint32_t status = ZR_NODE_ValidateValue(leaf, kind, value);
    Check(IsValueStatus(status), "a value check has a stated status");
    Check((ZR_NODE_FindRealTypeMatchedValue(leaf, kind, value) != nullptr) == (status == ZR_OK),
          "a type is found for a value that is taken, and only then");
    return status;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    static const Context *ctx = NewContext(0);
    static const Context *keeping = NewContext(ZR_CTX_KEEP_PATTERNS);
    if (size == 0)
        return 0;
    size_t pick = data[0] % kTypeCount;
    std::string value(reinterpret_cast<const char *>(data) + 1, size - 1);
    value.resize(std::strlen(value.c_str()));
    const ZrNode *leaf = Leaf(ctx, pick);
    uint32_t withKeptPatterns = Run(Leaf(keeping, pick), ZR_VALUE_STRING, value.c_str());
    BlockBalance balance("a value check keeps no block");
    uint32_t asString = Run(leaf, ZR_VALUE_STRING, value.c_str());
    g_types[pick].taken.MeetIf(asString == ZR_OK);
    // The text of an instance-identifier is not checked.
    bool takesAll = std::strstr(kTypes[pick], "instance-identifier") != nullptr;
    g_types[pick].refused.MeetIf(asString != ZR_OK || takesAll);
    Check(asString == withKeptPatterns, "kept patterns give the same answer");
    uint32_t withoutValue = Run(leaf, ZR_VALUE_STRING, nullptr);
    Element element(value.c_str());
    uint32_t asElement = Run(leaf, ZR_VALUE_XML, element.get());
    // An identity is written with a module's name in a string and with a prefix in an element. An
    // element without text has no value.
    bool isIdentity = std::strstr(kTypes[pick], "identityref") != nullptr;
    Check(isIdentity || asElement == (value.empty() ? withoutValue : asString),
          "both kinds of input give the same answer");
    Check(Run(leaf, 3, value.c_str()) == withoutValue,
          "an unknown kind of input counts as no value");
    return 0;
}
