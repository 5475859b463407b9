// SPDX-License-Identifier: Apache-2.0
// Faults as XML (RFC 6241, section 4.3 and appendix A; RFC 7950, section 15).
#include <libxml/parser.h>

#include "support/schema.h"

namespace datatest {

using testing::HasSubstr;
using testing::Not;

namespace {

std::string FirstError(Schema &schema, const std::string &data)
{
    schema.Check(data);
    return schema.xml().empty() ? "" : schema.xml()[0];
}

} // namespace

TEST(RpcError, SaysAllThatIsKnownOfAFault)
{
    Schema schema("leaf a { type int8; must '. < 5' { error-message \"a < 5 & more\"; "
                  "  error-app-tag too-big; } }");
    EXPECT_EQ(FirstError(schema, "<a>7</a>"),
              "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
              "<error-type>application</error-type><error-tag>operation-failed</error-tag>"
              "<error-severity>error</error-severity><error-app-tag>too-big</error-app-tag>"
              "<error-path xmlns:m=\"urn:m\">/m:a</error-path>"
              "<error-message xml:lang=\"en\">a &lt; 5 &amp; more</error-message></rpc-error>");
}

TEST(RpcError, NamesTheElementWhereItsTagAsksForIt)
{
    Schema schema("container c { leaf a { type int8; } leaf b { type int8; mandatory true; } }");
    EXPECT_THAT(FirstError(schema, "<c/>"),
                HasSubstr("<error-info><bad-element>b</bad-element></error-info>"));
    EXPECT_THAT(FirstError(schema, "<c><b>1</b><x/></c>"),
                HasSubstr("<error-info><bad-element>x</bad-element></error-info>"));
    EXPECT_THAT(FirstError(schema, "<c><b>1</b><x xmlns=\"urn:&quot;x&quot;\"/></c>"),
                HasSubstr("<error-info><bad-element>x</bad-element>"
                          "<bad-namespace>urn:\"x\"</bad-namespace></error-info>"));
    EXPECT_THAT(FirstError(schema, "<c a=\"1\"><b>1</b></c>"),
                HasSubstr("<error-info><bad-attribute>a</bad-attribute>"
                          "<bad-element>c</bad-element></error-info>"));
    EXPECT_THAT(FirstError(schema, "<c><b>x</b></c>"), Not(HasSubstr("error-info")));
}

TEST(RpcError, NamesTheLeafsThatAreNotUnique)
{
    Schema schema("list l { key k; unique 'a c/b'; leaf k { type int8; } leaf a { type int8; }"
                  "  container c { leaf b { type int8; default 3; } } }");
    std::string ns = "<non-unique xmlns=\"urn:ietf:params:xml:ns:yang:1\" xmlns:m=\"urn:m\">";
    EXPECT_THAT(FirstError(schema, "<l><k>1</k><a>2</a></l><l><k>2</k><a>2</a></l>"),
                HasSubstr("<error-info>" + ns + "/m:l[m:k='1']/m:a</non-unique>" + ns +
                          "/m:l[m:k='1']/m:c/m:b</non-unique>" + ns +
                          "/m:l[m:k='2']/m:a</non-unique>" + ns +
                          "/m:l[m:k='2']/m:c/m:b</non-unique></error-info>"));
}

TEST(RpcError, NamesTheChoiceThatIsMissing)
{
    Schema schema("container c { presence p; choice how { mandatory true; leaf a { type empty; } "
                  "} }");
    EXPECT_THAT(FirstError(schema, "<c/>"),
                HasSubstr("<error-info><missing-choice xmlns=\"urn:ietf:params:xml:ns:yang:1\">how"
                          "</missing-choice></error-info>"));
}

TEST(RpcError, IsXmlWhateverStandsInTheData)
{
    Schema schema("list l { key k; leaf k { type string; } leaf a { type int8; } }");
    for (const char *key : {"&lt;&amp;&gt;", "'\"", "&#13;&#10;", "]]&gt;"}) {
        std::string text =
            FirstError(schema, std::string("<l><k>") + key + "</k><a>&lt;x></a></l>");
        xmlDoc *doc =
            xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
        EXPECT_NE(doc, nullptr) << text;
        xmlFreeDoc(doc);
    }
}

TEST(RpcError, OfATextThatIsNoXmlIsOfTheRpcLayer)
{
    Schema schema("leaf a { type int8; }");
    schema.CheckDocument("<a>");
    EXPECT_THAT(schema.xml()[0], HasSubstr("<error-type>rpc</error-type>"
                                           "<error-tag>malformed-message</error-tag>"));
}

} // namespace datatest
