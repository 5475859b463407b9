// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.13: the instance-identifier type, and whether what a value names is there.
#include "support/schema.h"
#include "support/value.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *kModule =
    "identity base; identity one { base base; } identity two { base base; }"
    " list l { key \"k j\"; leaf k { type int8; } leaf j { type string; } leaf v { type string; } }"
    " list i { key k; leaf k { type identityref { base base; } } }"
    " list many { config false; leaf v { type string; } }"
    " leaf-list ll { type uint8; }"
    " container plain { leaf d { type string; default x; } leaf n { type string; } }"
    " container here { presence p; }"
    " leaf state { config false; type string; }"
    " leaf id { type instance-identifier; }"
    " leaf told { config false; type instance-identifier; }"
    " leaf loose { type instance-identifier { require-instance false; } }";

constexpr const char *kData = "<l><k>5</k><j>a</j><v>1</v></l><l><k>5</k><j>b</j></l>"
                              "<i><k>one</k></i><ll>7</ll><ll>8</ll>";

Texts Check(Schema &schema, const std::string &data, uint32_t kind = ZR_DATA_CONFIG)
{
    return schema.CheckDocument("<data xmlns=\"urn:m\" xmlns:m=\"urn:m\">" + data + "</data>",
                                kind);
}

// What is wrong where a leaf has that value beside the data.
Texts CheckId(const std::string &value, const std::string &leaf = "id")
{
    Schema schema(kModule);
    return Check(schema, kData + ("<" + leaf + ">" + value + "</" + leaf + ">"));
}

testing::Matcher<Texts> NotThere(const std::string &value)
{
    return ElementsAre("data-missing[instance-required] /id: \"id\" refers to \"" + value +
                       "\", which is not there");
}

} // namespace

TEST(InstanceIdentifier, LeadsToANodeOfTheSchema)
{
    const std::string list = "list l { key k; leaf k { type string; } leaf a { type string; } }";
    const std::string type = "instance-identifier { require-instance false; }";
    EXPECT_TRUE(Takes(type, "/m:l[ m:k = 'x' ]/m:a", list));
    for (const char *bad : {"", "l", "/l", "/m:none", "/m:l[m:k]", "/x:l", "/m:l/"})
        EXPECT_FALSE(Takes(type, bad, list)) << bad;
}

TEST(InstanceIdentifier, NamesAnEntryByItsKeys)
{
    EXPECT_THAT(CheckId("/m:l[m:k='5'][m:j='a']"), IsEmpty());
    EXPECT_THAT(CheckId("/m:l[m:j='b'][m:k='5']"), IsEmpty()) << "in any order";
    EXPECT_THAT(CheckId("/m:l[m:k='5'][m:j='a']/m:v"), IsEmpty());
    EXPECT_THAT(CheckId("/m:l[m:k='5'][m:j='b']/m:v"), NotThere("/m:l[m:k='5'][m:j='b']/m:v"));
    EXPECT_THAT(CheckId("/m:l[m:k='5'][m:j='c']"), NotThere("/m:l[m:k='5'][m:j='c']"));
}

TEST(InstanceIdentifier, HasValuesOfTheTypesOfTheKeys)
{
    EXPECT_THAT(CheckId("/m:l[m:k='+05'][m:j=\"a\"]"), IsEmpty());
    EXPECT_THAT(CheckId("/m:i[m:k='m:one']"), IsEmpty());
    EXPECT_THAT(CheckId("/m:i[m:k='one']"), IsEmpty()) << "of the default namespace";
    EXPECT_THAT(CheckId("/m:i[m:k='m:two']"), NotThere("/m:i[m:k='m:two']"));
    EXPECT_THAT(CheckId("/m:l[m:k='five'][m:j='a']"), NotThere("/m:l[m:k='five'][m:j='a']"))
        << "no entry has such a key";
    EXPECT_THAT(CheckId("/m:l[m:k='five'][m:j='a']", "loose"), IsEmpty());
    Schema other("leaf x { type string; must \"string(.) = ../id\"; } " + std::string(kModule));
    EXPECT_THAT(Check(other, kData + std::string("<x>/m:l[m:k='5'][m:j='a']</x>"
                                                 "<id>/m:l[ m:k = '+5' ][ m:j = 'a' ]</id>")),
                IsEmpty())
        << "in their canonical form";
}

TEST(InstanceIdentifier, NamesAValueOfALeafList)
{
    EXPECT_THAT(CheckId("/m:ll[.='7']"), IsEmpty());
    EXPECT_THAT(CheckId("/m:ll[ . = '08' ]"), IsEmpty());
    EXPECT_THAT(CheckId("/m:ll[.='9']"), NotThere("/m:ll[.='9']"));
}

TEST(InstanceIdentifier, NamesAnEntryWithoutKeysByItsPosition)
{
    Schema schema(kModule);
    const std::string many = "<many><v>a</v></many><many/>";
    auto check = [&](const std::string &path) {
        return Check(schema, many + "<told>" + path + "</told>", ZR_DATA_CONFIG_AND_STATE);
    };
    EXPECT_THAT(check("/m:many[2]"), IsEmpty());
    EXPECT_THAT(check("/m:many[1]/m:v"), IsEmpty());
    for (const char *path : {"/m:many[3]", "/m:many[0]", "/m:many[2]/m:v"})
        EXPECT_EQ(check(path).size(), 1u) << path;
}

TEST(InstanceIdentifier, NamesContainersAndDefaultsInUse)
{
    EXPECT_THAT(CheckId("/m:plain"), IsEmpty());
    EXPECT_THAT(CheckId("/m:plain/m:d"), IsEmpty());
    EXPECT_THAT(CheckId("/m:plain/m:n"), NotThere("/m:plain/m:n"));
    EXPECT_THAT(CheckId("/m:here"), NotThere("/m:here")) << "a presence container";
    EXPECT_THAT(CheckId("/m:here</id><here/><id>").size(), 1u) << "only the second id";
}

TEST(InstanceIdentifier, OfConfigurationNamesConfiguration)
{
    Schema schema(kModule);
    auto check = [&](const std::string &leaf) {
        return Check(schema, "<state>s</state><" + leaf + ">/m:state</" + leaf + ">",
                     ZR_DATA_CONFIG_AND_STATE);
    };
    EXPECT_THAT(check("told"), IsEmpty());
    EXPECT_THAT(check("id"), NotThere("/m:state"));
}

TEST(InstanceIdentifier, NeedsNoInstanceWithoutRequireInstance)
{
    EXPECT_THAT(CheckId("/m:l[m:k='6'][m:j='c']/m:v", "loose"), IsEmpty());
    Schema schema("typedef t { type instance-identifier; } leaf-list ll { type string; }"
                  " leaf a { type t { require-instance false; } } leaf id { type t; }");
    EXPECT_THAT(Check(schema, "<a>/m:ll[.='x']</a><id>/m:ll[.='x']</id>"),
                NotThere("/m:ll[.='x']"));
    Schema without(kModule, 0);
    EXPECT_THAT(Check(without, "<id>/m:ll[.='9']</id>"), IsEmpty())
        << "in a context that does not keep it";
}

TEST(InstanceIdentifier, IsMalformedWhereItsPredicatesAreNotThoseOfItsSteps)
{
    for (const char *bad :
         {"/m:l[m:k='5']", "/m:l", "/m:l[m:k='5'][m:k='5']", "/m:l[m:k='5'][m:j='a'][m:v='1']",
          "/m:l[1]", "/m:l[.='5']", "/m:plain[m:d='x']", "/m:plain[1]", "/m:ll[1]",
          "/m:ll[m:ll='7']", "/m:l[m:k='5'][m:j=5]", "/m:l[k='5'][j='a']"})
        EXPECT_THAT(CheckId(bad, "loose"),
                    ElementsAre(testing::StartsWith("invalid-value /loose: ")))
            << bad;
}

TEST(InstanceIdentifier, LooksIntoTheDatastoreAndTheMessage)
{
    Schema schema(std::string(kModule) +
                  " rpc r { input { leaf p { type instance-identifier; }"
                  "  list e { key k; leaf k { type string; } } } }"
                  " list a { key k; leaf k { type string; }"
                  "  notification n { leaf p { type instance-identifier; } } }");
    auto call = [&](const std::string &path, const std::string &store) {
        return schema.CheckMessage("<r xmlns=\"urn:m\" xmlns:m=\"urn:m\"><p>" + path +
                                       "</p><e><k>x</k></e></r>",
                                   ZR_DATA_REQUEST, store);
    };
    const std::string store = Wrap(kData);
    EXPECT_THAT(call("/m:ll[.='7']", store), IsEmpty());
    EXPECT_EQ(call("/m:ll[.='9']", store).size(), 1u);
    EXPECT_THAT(call("/m:plain/m:d", store), IsEmpty());
    EXPECT_THAT(call("/m:ll[.='9']", ""), IsEmpty()) << "without a datastore";
    for (const std::string &either : {store, std::string()}) {
        EXPECT_THAT(call("/m:r/m:e[m:k='x']", either), IsEmpty());
        EXPECT_EQ(call("/m:r/m:e[m:k='y']", either).size(), 1u);
    }
    auto notify = [&](const std::string &path) {
        return schema.CheckMessage("<a xmlns=\"urn:m\" xmlns:m=\"urn:m\"><k>1</k><n><p>" + path +
                                       "</p></n></a>",
                                   ZR_DATA_NOTIFICATION, Wrap("<a><k>1</k></a>"));
    };
    EXPECT_THAT(notify("/m:a[m:k='1']"), IsEmpty());
    EXPECT_THAT(notify("/m:a[m:k='1']/m:n/m:p"), IsEmpty());
    EXPECT_EQ(notify("/m:a[m:k='2']").size(), 1u);
}

TEST(InstanceIdentifier, HasTheSameMeaningInJson)
{
    Schema schema(kModule);
    auto check = [&](const std::string &path) {
        return schema.CheckJson(
            "{\"m:l\": [{\"k\": 5, \"j\": \"a\"}], \"m:i\": [{\"k\": \"one\"}], \"m:ll\": [7],"
            " \"m:id\": \"" +
            path + "\"}");
    };
    EXPECT_THAT(check("/m:l[k='5'][j='a']"), IsEmpty());
    EXPECT_THAT(check("/m:l[k='+5'][m:j='a']/j"), IsEmpty());
    EXPECT_THAT(check("/m:i[k='m:one']"), IsEmpty());
    EXPECT_THAT(check("/m:ll[.='7']"), IsEmpty());
    EXPECT_THAT(check("/m:l[k='6'][j='a']"), NotThere("/m:l[m:k='6'][m:j='a']"));
}

TEST(InstanceIdentifier, IsWrittenWithTheModulesOfItsKeys)
{
    Schema schema;
    schema.Add("x", "identity base; identity one { base base; }");
    schema.Add("m", "import x { prefix x; } list i { key k; leaf k { type identityref {"
                    "  base x:base; } } } leaf id { type instance-identifier; }");
    const std::string document = "<data xmlns=\"urn:m\" xmlns:p=\"urn:m\" xmlns:q=\"urn:x\">"
                                 "<i><k>q:one</k></i><id>/p:i[p:k='q:one']</id></data>";
    ZrDataWriteOptions how = {ZR_DATA_XML, ZR_DATA_EXPLICIT, 0};
    std::string written = schema.Write(document, how);
    EXPECT_THAT(written, testing::HasSubstr("<id xmlns:m=\"urn:m\" xmlns:x=\"urn:x\">"
                                            "/m:i[m:k='x:one']</id>"));
    EXPECT_THAT(schema.CheckDocument(written), IsEmpty());
    how.format = ZR_DATA_JSON;
    EXPECT_THAT(schema.Write(document, how), testing::HasSubstr("\"m:id\":\"/m:i[k='x:one']\""));
}

TEST(InstanceIdentifier, IsFollowedByDeref)
{
    Schema schema("list l { key k; leaf k { type int8; } leaf on { type boolean; default true; } }"
                  " leaf id { type instance-identifier; must \"deref(.)/on = 'true'\"; }");
    EXPECT_THAT(Check(schema, "<l><k>1</k></l><id>/m:l[m:k='01']</id>"), IsEmpty());
    EXPECT_EQ(Check(schema, "<l><k>1</k><on>false</on></l><id>/m:l[m:k='1']</id>").size(), 1u);
}

} // namespace datatest
