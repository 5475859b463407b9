// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.9: the leafref type, and paths with predicates.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The example of section 9.9.6.
constexpr const char *kAddresses =
    "list interface { key name; leaf name { type string; }"
    "  list address { key ip; leaf ip { type string; } } }"
    " container default-address {"
    "  leaf ifname { type leafref { path \"../../interface/name\"; } }"
    "  leaf address { type leafref {"
    "   path \"../../interface[name = current()/../ifname]/address/ip\"; } } }";

constexpr const char *kTwoInterfaces =
    "<interface><name>eth0</name><address><ip>192.0.2.1</ip></address>"
    "<address><ip>192.0.2.2</ip></address></interface>"
    "<interface><name>lo</name><address><ip>192.0.2.3</ip></address></interface>";

std::string Default(const std::string &ifname, const std::string &address)
{
    return std::string(kTwoInterfaces) + "<default-address>" +
           (ifname.empty() ? "" : "<ifname>" + ifname + "</ifname>") + "<address>" + address +
           "</address></default-address>";
}

std::string NotThere(const std::string &path, const std::string &name, const std::string &value)
{
    return "data-missing[instance-required] " + path + ": \"" + name + "\" refers to \"" + value +
           "\", which is not there";
}

} // namespace

TEST(Leafref, TakesTheValuesOfItsTarget)
{
    Schema schema("list l { key k; leaf k { type int8; } }"
                  " leaf r { type leafref { path \"../l/k\"; } }"
                  " leaf loose { type leafref { path \"/m:l/m:k\"; require-instance false; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l><r>+1</r><loose>7</loose>"), IsEmpty());
    EXPECT_THAT(
        schema.Check("<l><k>1</k></l><r>2</r>"),
        ElementsAre(
            "data-missing[instance-required] /r: \"r\" refers to \"2\", which is not there"));
    EXPECT_THAT(
        schema.Check("<loose>x</loose>"),
        ElementsAre("invalid-value /loose: \"x\" is no value of \"loose\": it is no integer"));
}

TEST(Leafref, LooksIntoItsOwnEntry)
{
    Schema schema("list l { key k; leaf k { type string; } leaf-list v { type string; }"
                  "  leaf r { type leafref { path \"../v\"; } } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><v>a</v><r>a</r></l><l><k>2</k><v>b</v></l>"), IsEmpty());
    EXPECT_EQ(schema.Check("<l><k>1</k><v>a</v><r>b</r></l><l><k>2</k><v>b</v></l>").size(), 1u);
}

TEST(LeafrefPredicates, NameTheEntryThatHoldsTheTarget)
{
    Schema schema(kAddresses);
    EXPECT_THAT(schema.Check(Default("eth0", "192.0.2.2")), IsEmpty());
    EXPECT_THAT(schema.Check(Default("lo", "192.0.2.3")), IsEmpty());
    const std::string missing = "/default-address/address";
    EXPECT_THAT(schema.Check(Default("lo", "192.0.2.2")),
                ElementsAre(NotThere(missing, "address", "192.0.2.2")))
        << "the address is another interface's";
    EXPECT_THAT(schema.Check(Default("eth0", "192.0.2.9")),
                ElementsAre(NotThere(missing, "address", "192.0.2.9")));
    EXPECT_THAT(schema.Check(Default("", "192.0.2.1")),
                ElementsAre(NotThere(missing, "address", "192.0.2.1")))
        << "nothing says of which interface";
}

TEST(LeafrefPredicates, StandOnSeveralStepsAndForSeveralKeys)
{
    Schema schema("list a { key \"k j\"; leaf k { type int8; } leaf j { type string; }"
                  "  list b { key \"x y z\"; leaf x { type int8; } leaf y { type int8; }"
                  "   leaf z { type int8; } leaf v { type string; } } }"
                  " container c { leaf k { type int8; } leaf j { type string; }"
                  "  container in { leaf x { type int8; } leaf y { type int8; }"
                  "   leaf z { type int8; } leaf r { type leafref { path"
                  "    \"/a[j=current()/../../j][m:k=current()/../../m:k]"
                  "/b[ y = current()/../y ][z=current()/../z][x=current()/../x]/v\"; } } } }");
    const std::string entries =
        "<a><k>1</k><j>p</j><b><x>1</x><y>2</y><z>3</z><v>one</v></b>"
        "<b><x>1</x><y>2</y><z>4</z><v>two</v></b></a>"
        "<a><k>1</k><j>q</j><b><x>1</x><y>2</y><z>3</z><v>three</v></b></a>";
    auto check = [&](const std::string &j, const std::string &z, const std::string &value) {
        return schema.Check(entries + "<c><k>+1</k><j>" + j + "</j><in><x>1</x><y>02</y><z>" + z +
                            "</z><r>" + value + "</r></in></c>");
    };
    EXPECT_THAT(check("p", "3", "one"), IsEmpty());
    EXPECT_THAT(check("p", "4", "two"), IsEmpty());
    EXPECT_THAT(check("q", "3", "three"), IsEmpty());
    EXPECT_THAT(check("q", "3", "one"), ElementsAre(NotThere("/c/in/r", "r", "one")));
    EXPECT_THAT(check("q", "4", "two"), ElementsAre(NotThere("/c/in/r", "r", "two")));
    EXPECT_THAT(check("none", "3", "one"), ElementsAre(NotThere("/c/in/r", "r", "one")));
}

TEST(LeafrefPredicates, MayNameWhatIsNoKeyAndHaveDefaults)
{
    Schema schema("list l { key k; leaf k { type string; } leaf t { type string; default d; } }"
                  " leaf t { type string; default d; }"
                  " leaf r { type leafref { path \"../l[t = current()/../t]/k\"; } }");
    EXPECT_THAT(schema.Check("<l><k>a</k></l><r>a</r>"), IsEmpty());
    EXPECT_EQ(schema.Check("<l><k>a</k><t>x</t></l><r>a</r>").size(), 1u);
    EXPECT_THAT(schema.Check("<l><k>a</k><t>x</t></l><t>x</t><r>a</r>"), IsEmpty());
}

TEST(LeafrefPredicates, HoldForAnyOfSeveralValues)
{
    Schema schema("list l { key k; leaf k { type string; } leaf-list v { type string; } }"
                  " list pick { key k; leaf k { type string; } leaf-list of { type string; } }"
                  " leaf r { type leafref { path \"../l[k = current()/../pick/of]/v\"; } }");
    const std::string data = "<l><k>1</k><v>a</v><v>b</v></l><l><k>2</k><v>c</v></l>"
                             "<l><k>3</k><v>d</v></l><pick><k>x</k><of>1</of></pick>"
                             "<pick><k>y</k><of>2</of><of>1</of></pick>";
    for (const char *there : {"a", "b", "c"})
        EXPECT_THAT(schema.Check(data + "<r>" + there + "</r>"), IsEmpty()) << there;
    EXPECT_EQ(schema.Check(data + "<r>d</r>").size(), 1u);
}

TEST(LeafrefPredicates, LookBelowEveryEntryOfAListWithoutAny)
{
    Schema schema("list a { key k; leaf k { type string; } list b { key x; leaf x { type string; }"
                  "  leaf v { type string; } } }"
                  " leaf x { type string; }"
                  " leaf r { type leafref { path \"/a/b[x = current()/../x]/v\"; } }");
    const std::string data = "<a><k>1</k><b><x>p</x><v>one</v></b></a>"
                             "<a><k>2</k><b><x>p</x><v>two</v></b><b><x>q</x><v>three</v></b></a>";
    EXPECT_THAT(schema.Check(data + "<x>p</x><r>two</r>"), IsEmpty());
    EXPECT_EQ(schema.Check(data + "<x>p</x><r>three</r>").size(), 1u);
}

TEST(LeafrefPredicates, MeanTheSameInATypedefOfAnotherModule)
{
    Schema schema;
    schema.Add("t", "list l { key k; leaf k { type string; } leaf v { type string; } }"
                    " typedef ref { type leafref { path \"/t:l[t:k = current()/../key]/t:v\"; } }");
    schema.Add("m", "import t { prefix p; } leaf key { type string; } leaf r { type p:ref; }"
                    " leaf loose { type p:ref { require-instance false; } }");
    const std::string list = "<l xmlns=\"urn:t\"><k>1</k><v>a</v></l>"
                             "<l xmlns=\"urn:t\"><k>2</k><v>b</v></l>";
    EXPECT_THAT(schema.Check(list + "<key>2</key><r>b</r><loose>none</loose>"), IsEmpty());
    EXPECT_THAT(schema.Check(list + "<key>2</key><r>a</r>"), ElementsAre(NotThere("/r", "r", "a")));
}

TEST(LeafrefPredicates, LookIntoTheDatastoreAndTheMessage)
{
    Schema schema(std::string(kAddresses) +
                  " rpc ping { input { leaf ifname { type string; }"
                  "  leaf address { type leafref { path"
                  "   \"/interface[name = current()/../ifname]/address/ip\"; } } } }");
    auto ping = [&](const std::string &ifname, const std::string &store) {
        return schema.CheckMessage("<ping xmlns=\"urn:m\"><ifname>" + ifname +
                                       "</ifname><address>192.0.2.3</address></ping>",
                                   ZR_DATA_REQUEST, store);
    };
    EXPECT_THAT(ping("lo", Wrap(kTwoInterfaces)), IsEmpty());
    EXPECT_THAT(ping("eth0", Wrap(kTwoInterfaces)),
                ElementsAre(NotThere("/ping/address", "address", "192.0.2.3")));
    EXPECT_THAT(ping("eth0", ""), IsEmpty()) << "without a datastore";
}

TEST(LeafrefPredicates, AreFollowedByDeref)
{
    Schema schema("list l { key \"k j\"; leaf k { type string; } leaf j { type string; }"
                  "  leaf on { type boolean; default true; } } leaf j { type string; }"
                  " leaf r { type leafref { path \"../l[j = current()/../j]/k\"; }"
                  "  must \"deref(.)/../on = 'true' and count(deref(.)) = 1\"; }");
    const std::string data = "<l><k>a</k><j>x</j></l><l><k>a</k><j>y</j><on>false</on></l><r>a</r>";
    EXPECT_THAT(schema.Check(data + "<j>x</j>"), IsEmpty());
    EXPECT_EQ(schema.Check(data + "<j>y</j>").size(), 1u);
}

TEST(LeafrefPredicates, OfAnotherFormAreToldAsAProblem)
{
    Schema schema;
    ASSERT_EQ(
        ZR_CTX_LoadMemory(
            schema.ctx(),
            "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
            "<namespace uri='urn:m'/><prefix value='m'/><list name='l'><key value='k'/>"
            "<leaf name='k'><type name='string'/></leaf></list><leaf name='r'>"
            "<type name='leafref'><path value=\"/m:l[m:k='x']/m:k\"/></type></leaf></module>"),
        ZR_OK);
    Texts problems;
    auto append = [](const char *, const char *, const char *message, void *out) {
        static_cast<Texts *>(out)->emplace_back(message);
        return 0;
    };
    EXPECT_EQ(ZR_DATA_ScanPlanProblems(schema.plan(), append, &problems), ZR_DATA_OK);
    EXPECT_THAT(problems, ElementsAre("a predicate of the path compares no leaf of the list with "
                                      "another leaf"));
    EXPECT_THAT(schema.Check("<r>any</r>"), IsEmpty());
}

TEST(RequireInstance, OfATypedefHoldsUnlessTheTypeSaysOtherwise)
{
    Schema schema("leaf-list v { type string; }"
                  " typedef strict { type leafref { path \"/v\"; } }"
                  " typedef loose { type leafref { path \"/v\"; require-instance false; } }"
                  " leaf a { type strict { require-instance false; } }"
                  " leaf b { type loose; } leaf c { type strict; }"
                  " leaf d { type loose { require-instance true; } }");
    EXPECT_THAT(schema.Check("<a>x</a><b>x</b><c>x</c><d>x</d>"),
                ElementsAre(NotThere("/c", "c", "x"), NotThere("/d", "d", "x")));
}

} // namespace datatest
