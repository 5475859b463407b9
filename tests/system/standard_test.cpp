// SPDX-License-Identifier: Apache-2.0
// ZR_CTX_STANDARD: what such a context keeps and takes beyond the others.
#include "application.h"

namespace {

using namespace zrtest::yin;
using testing::ElementsAre;
using testing::IsEmpty;

std::string Min(const std::string &number)
{
    return Statement("min-elements", "value", number);
}
std::string Max(const std::string &number)
{
    return Statement("max-elements", "value", number);
}
std::string Unique(const std::string &paths)
{
    return Statement("unique", "tag", paths);
}

Texts UniquesOf(const ZrNode *node)
{
    Texts texts;
    auto append = [](const char *text, void *out) {
        static_cast<Texts *>(out)->emplace_back(text);
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllUniques(node, append, &texts), ZR_OK);
    return texts;
}

Texts KeysOf(const ZrNode *node)
{
    Texts names;
    auto append = [](ZrNode *key, uint32_t arrival, void *out) {
        EXPECT_EQ(arrival, uint32_t{ZR_ARRIVAL_CHILD});
        static_cast<Texts *>(out)->emplace_back(ZR_NODE_GetNodeName(key));
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllKeysInOrder(node, append, &names), ZR_OK);
    return names;
}

// The numbers of a list or leaf-list, as "MIN..MAX".
std::string Numbers(const ZrNode *node)
{
    return std::to_string(ZR_NODE_GetMinElements(node)) + ".." +
           std::to_string(ZR_NODE_GetMaxElements(node));
}

const std::string kServers =
    List("server", "port name",
         Min("2") + Max("8") + Unique("address") + Unique(" address/ip\n b:address/b:mask ") +
             Leaf("name") + Leaf("port") + Container("address", Leaf("ip") + Leaf("mask")));
const std::string kNames = LeafList("alias", "string", Min("1") + Max("unbounded"));

class Standard : public Application {
protected:
    void SetUp() override { Start(ZR_CTX_STANDARD); }

    // Two bits of access: "a" for deny-all, "w" for deny-write.
    std::string Access(const std::string &path)
    {
        const ZrNode *node = Node(path);
        return std::string(ZR_NODE_IsNacmDefaultDenyAll(node) != 0 ? "a" : "") +
               (ZR_NODE_IsNacmDefaultDenyWrite(node) != 0 ? "w" : "");
    }
};

std::string Deny(const std::string &what)
{
    return "<n:default-deny-" + what + " xmlns:n='urn:ietf-netconf-acm'/>";
}
const std::string kAcm = Import("ietf-netconf-acm", "n");

TEST_F(Standard, KeepsTheNumbersOfEntries)
{
    Have("b", kServers + kNames + List("any", "k", Leaf("k")));
    EXPECT_EQ(Numbers(Node("/b:server")), "2..8");
    EXPECT_EQ(Numbers(Node("/b:alias")), "1..0");
    EXPECT_EQ(Numbers(Node("/b:any")), "0..0");
    EXPECT_EQ(Numbers(Node("/b:any/k")), "0..0") << "of a leaf";
    EXPECT_EQ(Numbers(nullptr), "0..0");
}

TEST_F(Standard, KeepsUniquesWithTheModuleOfEachStep)
{
    Have("b", kServers + kNames);
    EXPECT_THAT(UniquesOf(Node("/b:server")),
                ElementsAre("b:address", "b:address/b:ip b:address/b:mask"));
    EXPECT_THAT(UniquesOf(Node("/b:alias")), IsEmpty());
    auto count = [](const char *, void *calls) { return ++*static_cast<uint32_t *>(calls); };
    uint32_t calls = 0;
    EXPECT_EQ(ZR_NODE_ScanAllUniques(Node("/b:server"), count, &calls), 1u) << "ends the scan";
    EXPECT_EQ(calls, 1u);
    EXPECT_EQ(ZR_NODE_ScanAllUniques(nullptr, count, &calls), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllUniques(Node("/b:server"), nullptr, nullptr), ZR_ERR_INVALID);
}

TEST_F(Standard, KeepsTheOrderOfKeys)
{
    Have("b", kServers);
    EXPECT_THAT(KeysOf(Node("/b:server")), ElementsAre("port", "name"));
    EXPECT_THAT(KeysOf(Node("/b:server/name")), IsEmpty()) << "no list";
    auto stop = [](ZrNode *, uint32_t, void *) { return 7u; };
    EXPECT_EQ(ZR_NODE_ScanAllKeysInOrder(Node("/b:server"), stop, nullptr), 7u);
    EXPECT_EQ(ZR_NODE_ScanAllKeysInOrder(nullptr, stop, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllKeysInOrder(Node("/b:server"), nullptr, nullptr), ZR_ERR_INVALID);
}

TEST_F(Standard, AppliesDeviationsOfTheseAndTakesThemBack)
{
    Have("b", kServers + kNames);
    Have("d", Import("b") + Deviation("/b:server", "replace", Min("0") + Max("3")) +
                  Deviation("/b:server", "delete", Unique("b:address")) +
                  Deviation("/b:server", "add", Unique("b:name b:port")) +
                  Deviation("/b:alias", "replace", Max("9")));
    EXPECT_EQ(Numbers(Node("/b:server")), "0..3");
    EXPECT_EQ(Numbers(Node("/b:alias")), "1..9");
    EXPECT_THAT(UniquesOf(Node("/b:server")),
                ElementsAre("b:address/b:ip b:address/b:mask", "b:name b:port"));
    EXPECT_EQ(Unload("d"), ZR_OK);
    EXPECT_EQ(Numbers(Node("/b:server")), "2..8");
    EXPECT_EQ(Numbers(Node("/b:alias")), "1..0");
    EXPECT_THAT(UniquesOf(Node("/b:server")),
                ElementsAre("b:address", "b:address/b:ip b:address/b:mask"));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(Standard, LeavesOutAKeyThatADeviationTakesAway)
{
    Have("b", kServers);
    Have("d", Import("b") + Deviation("/b:server/b:port", "not-supported"));
    EXPECT_THAT(KeysOf(Node("/b:server")), ElementsAre("name"));
}

TEST_F(Standard, KeepsTheRulesOfNodesThatAnAugmentAdds)
{
    Have("a",
         Import("b") +
             Augment("/b:c", List("l", "k", Max("4") + Unique("v b:x") + Leaf("k") + Leaf("v"))));
    Have("b", Container("c"));
    EXPECT_EQ(Numbers(Node("/b:c/a:l")), "0..4");
    EXPECT_THAT(UniquesOf(Node("/b:c/a:l")), ElementsAre("a:v b:x"));
    EXPECT_EQ(Unload("b"), ZR_OK);
    Have("b", Container("c"));
    EXPECT_EQ(Numbers(Node("/b:c/a:l")), "0..4");
}

TEST_F(Standard, KeepsTheRulesOfNodesThatAFurtherPartOfAModuleBrings)
{
    WriteFile("b@@1.yin", zrtest::ModuleText("b", kServers));
    WriteFile("b@@2.yin", zrtest::ModuleText("b", kNames));
    ASSERT_EQ(Load("b"), ZR_OK);
    EXPECT_EQ(Numbers(Node("/b:server")), "2..8");
    EXPECT_EQ(Numbers(Node("/b:alias")), "1..0");
    EXPECT_THAT(KeysOf(Node("/b:server")), ElementsAre("port", "name"));
}

TEST_F(Standard, TakesEnumValuesAndBitPositionsAtTheEndsOfTheirRange)
{
    Have("b",
         Leaf("e", Type("enumeration", "<enum name='low'><value value='-2147483648'/></enum>"
                                       "<enum name='high'><value value='2147483647'/></enum>")) +
             Leaf("f", Type("bits", "<bit name='last'><position value='4294967295'/></bit>")));
    EXPECT_EQ(Check("/b:e", "low"), ZR_OK);
    std::vector<int64_t> values;
    auto append = [](const char *, const char *, int64_t value, void *out) {
        static_cast<std::vector<int64_t> *>(out)->push_back(value);
        return 0u;
    };
    ZR_TYPE_ScanNameValuePair(ZR_NODE_GetRealType(Node("/b:e")), append, &values);
    ZR_TYPE_ScanNameValuePair(ZR_NODE_GetRealType(Node("/b:f")), append, &values);
    EXPECT_THAT(values, ElementsAre(INT64_C(-2147483648), 2147483647, 4294967295));
}

TEST_F(Standard, RefusesEnumValuesAndBitPositionsBeyondTheirRange)
{
    for (const char *value : {"-2147483649", "2147483648"}) {
        Write("b",
              Leaf("e", Type("enumeration",
                             "<enum name='a'>" + Statement("value", "value", value) + "</enum>")));
        EXPECT_EQ(Load("b"), ZR_ERR_INVALID) << value;
    }
    Write("b", Leaf("f", Type("bits", "<bit name='a'><position value='4294967296'/></bit>")));
    EXPECT_EQ(Load("b"), ZR_ERR_INVALID);
}

TEST_F(Standard, NarrowsADerivedDecimal64)
{
    Have("b", TypeDef("price", Type("decimal64", "<fraction-digits value='2'/>" + Range("0..10"))) +
                  Leaf("v", Type("price", Range("1.5..2 | 3 | 4.25..max"))));
    for (const char *value : {"1.5", "2", "1.99", "3", "3.00", "4.25", "10"})
        EXPECT_EQ(Check("/b:v", value), ZR_OK) << value;
    for (const char *value : {"1.49", "2.01", "3.01", "4.24", "10.01", "0"})
        EXPECT_EQ(Check("/b:v", value), ZR_ERR_VALUE_RANGE) << value;
}

TEST_F(Standard, TakesAxesInConditionsAndNamesTheirModules)
{
    Have("b", Container("c", Must("ancestor::b:x = child::*") +
                                 When("count(preceding-sibling :: b:y) > 1 or self::node()")));
    std::string must;
    auto keep = [](const char *condition, const char *, const char *, void *out) {
        *static_cast<std::string *>(out) = condition;
        return 0u;
    };
    Have("a", Import("b", "p") + Augment("/p:c", Leaf("l", "string", Must("../descendant::p:x")) +
                                                     When("child::p:z = 'p:id'")));
    ZR_NODE_ScanAllMusts(Node("/b:c"), keep, &must);
    EXPECT_EQ(must, "ancestor::b:x = child::*");
    EXPECT_STREQ(ZR_NODE_GetWhenCond(Node("/b:c")),
                 "count(preceding-sibling :: b:y) > 1 or self::node()");
    ZR_NODE_ScanAllMusts(Node("/b:c/a:l"), keep, &must);
    EXPECT_EQ(must, "../descendant::b:x");
    EXPECT_STREQ(ZR_NODE_GetWhenCond(Node("/b:c/a:l")), "../child::b:z = 'b:id'");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(Standard, InheritsBothDefaultsOfAccessSideBySide)
{
    Have("b", kAcm +
                  Container("w", Deny("write") + Container("a", Deny("all") + Leaf("x")) +
                                     Container("n", Leaf("x"))) +
                  Container("a", Deny("all") + Leaf("w", "string", Deny("write"))));
    EXPECT_EQ(Access("/b:w"), "w");
    EXPECT_EQ(Access("/b:w/a"), "aw");
    EXPECT_EQ(Access("/b:w/a/x"), "aw");
    EXPECT_EQ(Access("/b:w/n/x"), "w");
    EXPECT_EQ(Access("/b:a/w"), "aw");
}

TEST_F(Standard, GivesAugmentedNodesTheAccessOfTheTargetThatTheyHave)
{
    Have("b", kAcm + Container("c", Deny("write")));
    Have("a", kAcm + Import("b") + Augment("/b:c", Container("k", Deny("all") + Leaf("x"))));
    EXPECT_EQ(Access("/b:c/a:k/x"), "aw");
    EXPECT_EQ(Unload("b"), ZR_OK);
    Have("b", Container("c"));
    EXPECT_EQ(Access("/b:c/a:k"), "a") << "the target denies nothing any more";
    EXPECT_EQ(Access("/b:c/a:k/x"), "a");
}

// What a type keeps of references: its own "PATH NUMBER", and in brackets what its typedefs and
// members keep; 2 for "require-instance" "true", 1 for "false", 0 for nothing.
std::string References(const ZrCtx *ctx, const ZrtRealType *type)
{
    struct Walk {
        const ZrCtx *ctx;
        const ZrtRealType *type;
        std::string text;
    };
    Walk walk = {ctx, type,
                 OrDash(ZR_TYPE_GetLeafrefPathWithPredicates(type)) + " " +
                     std::to_string(ZR_TYPE_GetRequireInstance(type))};
    auto appendMember = [](const char *, const char *, const ZrtRealType *member, void *user) {
        auto *self = static_cast<Walk *>(user);
        self->text += " [" + References(self->ctx, member) + "]";
        return 0u;
    };
    auto appendLink = [](const char *, const char *, const ZrtRealType *link, void *user) {
        auto *self = static_cast<Walk *>(user);
        if (link != self->type)
            self->text += " [" + References(self->ctx, link) + "]";
        return 1u; // the link itself goes on
    };
    ZR_TYPE_ScanUnionSubType(type, appendMember, &walk);
    ZR_TYPE_IterRealTypeDerivedName(type, ctx, appendLink, &walk);
    return walk.text;
}

const std::string kKeptPath =
    "../../x:port[x:name = current()/../x:name][slot=current()/../s]/x:speed";
const std::string kSpeed = Leafref(kKeptPath);

// Typedefs, members of unions, augments and deviations that are references.
struct Referring {
    std::string x = List("port", "name slot", Leaf("name") + Leaf("slot") + Leaf("speed"));
    std::string b =
        Import("x") + TypeDef("speed", kSpeed) + Leaf("own", kSpeed) +
        Leaf("derived", Type("speed")) + Leaf("either", Type("union", Type("int8") + kSpeed)) +
        Leaf("plain", Leafref("../x:port/x:name")) + Leaf("other", "string") + Container("c");
    std::string a = Import("b") + Import("x") + Augment("/b:c", Leaf("l", kSpeed));
    std::string d = Import("b") + Import("x") + Deviation("/b:other", "replace", kSpeed);
};

TEST_F(Standard, KeepsPredicatesOfLeafrefsWithTheModuleOfEachName)
{
    Referring modules;
    Have("x", modules.x);
    Have("b", modules.b);
    Have("a", modules.a);
    Have("d", modules.d);
    auto kept = [&](const std::string &path) {
        return References(ctx_, ZR_NODE_GetRealType(Node(path)));
    };
    const std::string path = kKeptPath + " 2";
    EXPECT_EQ(kept("/b:own"), path);
    EXPECT_STREQ(ZR_TYPE_GetTypeConsDataLeafrefPath(ZR_NODE_GetRealType(Node("/b:own"))),
                 "../../x:port/speed");
    EXPECT_EQ(kept("/b:derived"), "- 0 [" + path + "]") << "the typedef has it";
    EXPECT_EQ(kept("/b:either"), "- 0 [- 0] [" + path + "]");
    EXPECT_EQ(kept("/b:plain"), "../x:port/name 2");
    EXPECT_EQ(kept("/b:c/a:l"), path);
    EXPECT_EQ(kept("/b:other"), path);
    EXPECT_EQ(Unload("d"), ZR_OK);
    EXPECT_EQ(kept("/b:other"), "- 0");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(Standard, GivesPathsTheNamesOfModulesForPrefixes)
{
    Have("x", Referring().x);
    Have("b", Import("x", "p") + Leaf("l", Leafref("/p:port[ p:name=current()/../b:n ]/p:speed")) +
                  Leaf("n"));
    EXPECT_EQ(References(ctx_, ZR_NODE_GetRealType(Node("/b:l"))),
              "/x:port[ x:name=current()/../b:n ]/x:speed 2");
}

TEST_F(Standard, RefusesAPredicateOfALeafrefThatItCannotRead)
{
    for (const char *path : {"/b:l[q:k=current()/../b:x]/b:v", "/b:l[b:k='x]/b:v"}) {
        Write("b", Leaf("r", Leafref(path)));
        EXPECT_EQ(Load("b"), ZR_ERR_INVALID) << path;
        EXPECT_THAT(Errors(), testing::Contains("b: Failed to parse value \"leafref\" of statement "
                                                "\"type\"."));
    }
}

TEST_F(Standard, KeepsRequireInstanceOfEveryTypeThatSaysIt)
{
    auto said = [](const std::string &value) {
        return Statement("require-instance", "value", value);
    };
    Have("b",
         TypeDef("free", Type("instance-identifier", said("false"))) +
             Leaf("id", "instance-identifier") + Leaf("derived", Type("free")) +
             Leaf("strict", Type("free", said("true"))) +
             Leaf("ref", Type("leafref", Statement("path", "value", "../id") + said("false"))) +
             LeafList("any", Type("union", Type("instance-identifier") + Type("free"))) +
             Leaf("text", "string"));
    Have("d",
         Import("b") + Deviation("/b:text", "replace", Type("instance-identifier", said("false"))));
    auto kept = [&](const std::string &path) {
        return References(ctx_, ZR_NODE_GetRealType(Node(path)));
    };
    EXPECT_EQ(kept("/b:id"), "- 2");
    EXPECT_EQ(kept("/b:derived"), "- 0 [- 1]");
    EXPECT_EQ(kept("/b:strict"), "- 2 [- 1]");
    EXPECT_EQ(kept("/b:ref"), "../b:id 1");
    EXPECT_EQ(kept("/b:any"), "- 0 [- 2] [- 0 [- 1]]");
    EXPECT_EQ(kept("/b:text"), "- 1");
    EXPECT_EQ(Unload("d"), ZR_OK);
    EXPECT_EQ(kept("/b:text"), "- 0");
}

// What a type says of violations, "RESTRICTION MESSAGE, APP-TAG;" each, with its typedefs and
// members in brackets.
std::string Violations(const ZrCtx *ctx, const ZrtRealType *type)
{
    struct Walk {
        const ZrCtx *ctx;
        const ZrtRealType *type;
        std::string text;
    };
    Walk walk = {ctx, type, ""};
    for (uint32_t restriction = ZR_RESTRICTION_LENGTH; restriction <= ZR_RESTRICTION_PATTERN;
         ++restriction) {
        for (uint32_t index = 0; index < 3; ++index) {
            const char *message = ZR_TYPE_GetErrorMessage(type, restriction, index);
            const char *appTag = ZR_TYPE_GetErrorAppTag(type, restriction, index);
            if (message != nullptr || appTag != nullptr)
                walk.text += std::to_string(restriction) + "." + std::to_string(index) + " " +
                             OrDash(message) + ", " + OrDash(appTag) + ";";
        }
    }
    auto append = [](const char *, const char *, const ZrtRealType *other, void *user) {
        auto *self = static_cast<Walk *>(user);
        if (other != self->type)
            self->text += "[" + Violations(self->ctx, other) + "]";
        return 1u; // a typedef itself goes on
    };
    auto appendMember = [](const char *, const char *, const ZrtRealType *member, void *user) {
        auto *self = static_cast<Walk *>(user);
        self->text += "[" + Violations(self->ctx, member) + "]";
        return 0u;
    };
    ZR_TYPE_IterRealTypeDerivedName(type, ctx, append, &walk);
    ZR_TYPE_ScanUnionSubType(type, appendMember, &walk);
    return walk.text;
}

const std::string kSmall = Type("int8", Range("1..9", ErrorMessage("Large.")));
const std::string kWord = Type("string", Length("1..9", ErrorAppTag("long")) + Pattern("a.*") +
                                             Pattern(".*z", ErrorMessage("No z.")));

TEST_F(Standard, KeepsWhatRestrictionsSayOfViolations)
{
    Have("x", TypeDef("small", kSmall));
    Have("b", Import("x") + TypeDef("word", kWord) + Leaf("own", kWord) +
                  Leaf("derived", Type("word", Pattern("b", ErrorAppTag("b")))) +
                  Leaf("foreign", "x:small") + Leaf("either", Type("union", kSmall + kWord)) +
                  Leaf("plain", Type("int8", Range("1"))) + Leaf("other", "string") +
                  Container("c"));
    Have("a", Import("b") + Augment("/b:c", LeafList("l", kSmall)));
    Have("d", Import("b") + Deviation("/b:other", "replace", kWord));
    auto kept = [&](const std::string &path) {
        return Violations(ctx_, ZR_NODE_GetRealType(Node(path)));
    };
    const std::string word = "0.0 -, long;2.1 No z., -;", small = "1.0 Large., -;";
    EXPECT_EQ(kept("/b:own"), word);
    EXPECT_EQ(kept("/b:derived"), "2.0 -, b;[" + word + "]");
    EXPECT_EQ(kept("/b:foreign"), "[" + small + "]");
    EXPECT_EQ(kept("/b:either"), "[" + small + "][" + word + "]");
    EXPECT_EQ(kept("/b:plain"), "");
    EXPECT_EQ(kept("/b:c/a:l"), small);
    EXPECT_EQ(kept("/b:other"), word);
    EXPECT_EQ(Unload("d"), ZR_OK);
    EXPECT_EQ(kept("/b:other"), "");
    EXPECT_THAT(Errors(), IsEmpty());
}

// The names of a type whose features are on.
Texts EnabledNames(const ZrCtx *ctx, const ZrtRealType *type)
{
    struct Walk {
        const ZrCtx *ctx;
        const ZrtRealType *type;
        uint32_t index;
        Texts names;
    };
    Walk walk = {ctx, type, 0, {}};
    auto append = [](const char *name, const char *, int64_t, void *user) {
        auto *self = static_cast<Walk *>(user);
        if (ZR_TYPE_IsNameEnabled(self->type, self->ctx, self->index++) != 0)
            self->names.emplace_back(name);
        return 0u;
    };
    EXPECT_EQ(ZR_TYPE_ScanNameValuePair(type, append, &walk), ZR_OK);
    return walk.names;
}

std::string Enums(const std::string &condition)
{
    return Type("enumeration",
                Statement("enum", "name", "always") +
                    Statement("enum", "name", "rare", Statement("if-feature", "name", condition)));
}

TEST_F(Standard, KeepsTheFeaturesOfEnums)
{
    Have("x", Statement("feature", "name", "f"));
    Have("b", Import("x") + Leaf("own", Enums("x:f")) + Leaf("other") + Container("c"));
    Have("a", Import("b") + Import("x", "y") + Augment("/b:c", Leaf("l", Enums("y:f"))));
    Have("d", Import("b") + Import("x") + Deviation("/b:other", "replace", Enums("x:f")));
    for (const char *path : {"/b:own", "/b:other", "/b:c/a:l"}) {
        const ZrtRealType *type = ZR_NODE_GetRealType(Node(path));
        EXPECT_THAT(EnabledNames(ctx_, type), ElementsAre("always")) << path;
        ZR_MOD_EnableFeature(Module("x"), "f");
        EXPECT_THAT(EnabledNames(ctx_, type), ElementsAre("always", "rare")) << path;
        ZR_MOD_DisableFeature(Module("x"), "f");
        EXPECT_EQ(Check(path, "rare"), ZR_OK) << "a validation takes it either way";
    }
}

TEST_F(Standard, TellsTheFeaturesOfIdentities)
{
    Have("b", Statement("feature", "name", "f") +
                  Statement("identity", "name", "i", Statement("if-feature", "name", "f")));
    const ZrsIdentity *identity = nullptr;
    auto take = [](const ZrsIdentity *found, void *out) {
        *static_cast<const ZrsIdentity **>(out) = found;
        return 0u;
    };
    ASSERT_EQ(ZR_MOD_ScanAllIdentity(Module("b"), take, &identity), ZR_OK);
    Texts features;
    auto append = [](const char *module, const char *feature, void *out) {
        static_cast<Texts *>(out)->push_back(std::string(module) + ":" + feature);
        return 0u;
    };
    EXPECT_EQ(ZR_MOD_ScanIdentityIfFeatures(identity, append, &features), ZR_OK);
    EXPECT_THAT(features, ElementsAre("b:f"));
    EXPECT_EQ(ZR_MOD_ScanIdentityIfFeatures(identity, nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_ScanIdentityIfFeatures(nullptr, append, &features), ZR_OK);
    EXPECT_EQ(ZR_MOD_IsIdentityEnabled(identity, ctx_), 0u);
    ZR_MOD_EnableFeature(Module("b"), "f");
    EXPECT_EQ(ZR_MOD_IsIdentityEnabled(identity, ctx_), 1u);
    EXPECT_EQ(ZR_MOD_IsIdentityEnabled(identity, nullptr), 0u);
    EXPECT_EQ(ZR_MOD_IsIdentityEnabled(nullptr, ctx_), 0u);
}

struct Wrong {
    const char *where;
    std::string body;
    const char *message;
};

TEST_F(Standard, RefusesWhatIsWrongInTheseStatements)
{
    auto list = [](const std::string &inside) { return List("l", "k", inside + Leaf("k")); };
    const Wrong rows[] = {
        {"no number", list(Min("two")),
         "Failed to parse value \"two\" of statement \"min-elements\"."},
        {"too many", list(Min("4294967296")),
         "Failed to parse value \"4294967296\" of statement \"min-elements\"."},
        {"no room", list(Max("0")), "Failed to parse value \"0\" of statement \"max-elements\"."},
        {"below zero", list(Max("-1")),
         "Failed to parse value \"-1\" of statement \"max-elements\"."},
        {"no path", list(Unique(" ")), "Failed to parse value \" \" of statement \"unique\"."},
        {"half a path", list(Unique("a/")),
         "Failed to parse value \"a/\" of statement \"unique\"."},
        {"absolute", list(Unique("/a")), "Failed to parse value \"/a\" of statement \"unique\"."},
        {"unknown prefix", list(Unique("q:a")),
         "Failed to parse value \"q:a\" of statement \"unique\"."},
        {"twice", list(Min("1") + Min("1")),
         "Statement \"min-elements\" under statement \"list\" has repeated."},
        {"twice", LeafList("l", "string", Max("1") + Max("2")),
         "Statement \"max-elements\" under statement \"leaf-list\" has repeated."},
        {"no argument", list("<unique/>"), "Failed to get value of statement \"unique\"."},
    };
    for (const Wrong &row : rows) {
        Write("b", row.body);
        EXPECT_NE(Load("b"), ZR_OK) << row.where;
        EXPECT_THAT(Errors(), testing::Contains("b: " + std::string(row.message))) << row.where;
        EXPECT_EQ(Module("b"), nullptr) << row.where;
    }
}

TEST_F(Standard, TellsWhyADeviationOfTheseCannotBeApplied)
{
    const Wrong rows[] = {
        {"a number is there", Deviation("/b:server", "add", Min("1")),
         "d: Failed to add min-elements or max-elements to node \"server\", because it already has "
         "that statement."},
        {"a unique is there", Deviation("/b:server", "add", Unique("b:address")),
         "d: Failed to add unique to node \"server\", because it already exists."},
        {"no such unique", Deviation("/b:server", "delete", Unique("b:name")),
         "d: Failed to find unique to be deleted in node \"server\"."},
        {"a summary follows", Deviation("/b:server", "delete", Unique("b:name")),
         "d: Failed to delete unique from node \"server\"."},
        {"no list", Deviation("/b:server/b:name", "add", Max("1")),
         "d: Failed to add min-elements, max-elements or unique to node \"name\"."},
        {"a leaf-list", Deviation("/b:alias", "add", Unique("b:x")),
         "d: Failed to add min-elements, max-elements or unique to node \"alias\"."},
        {"no list", Deviation("/b:server/b:name", "replace", Max("1")),
         "d: Failed to replace min-elements or max-elements of node \"name\"."},
    };
    Have("b", kServers + kNames);
    for (const Wrong &row : rows) {
        Write("d", Import("b") + row.body);
        Load("d");
        EXPECT_THAT(Errors(), testing::Contains(row.message)) << row.where;
        EXPECT_EQ(Numbers(Node("/b:server")), "2..8") << row.where;
        EXPECT_EQ(UniquesOf(Node("/b:server")).size(), 2u) << row.where;
        EXPECT_EQ(Unload("d"), ZR_OK);
    }
}

class WithoutStandard : public Application {
protected:
    void SetUp() override { Start(); }
};

TEST_F(WithoutStandard, ReferencesAreKeptWithoutPredicates)
{
    Have("b", Leaf("r", Leafref("/b:l[q:k='x][]/b:v")) +
                  Leaf("i", Type("instance-identifier",
                                 Statement("require-instance", "value", "false"))));
    EXPECT_EQ(References(ctx_, ZR_NODE_GetRealType(Node("/b:r"))), "/b:l/v 0");
    EXPECT_EQ(References(ctx_, ZR_NODE_GetRealType(Node("/b:i"))), "- 0");
}

TEST_F(WithoutStandard, NothingIsKeptOfViolationsThatRestrictionsName)
{
    Have("b", Leaf("own", kWord) + Leaf("odd", Type("int8", Range("1", "<error-message/>"))));
    EXPECT_EQ(Violations(ctx_, ZR_NODE_GetRealType(Node("/b:own"))), "");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WithoutStandard, NothingOfItIsKeptOrTaken)
{
    Have("b", kServers + kNames + List("odd", "k", Min("two") + Unique("/") + Leaf("k")));
    EXPECT_EQ(Numbers(Node("/b:server")), "0..0");
    EXPECT_THAT(UniquesOf(Node("/b:server")), IsEmpty());
    EXPECT_THAT(KeysOf(Node("/b:server")), ElementsAre("name", "port")) << "as the leafs stand";
    Have("d", Import("b") + Deviation("/b:server/b:name", "add", Max("1")));
    EXPECT_THAT(Errors(), IsEmpty());
    Have("x", Container("c", Must("ancestor::x:c")));
    EXPECT_THAT(Errors(), ElementsAre("x: Failed to transfer prefix to module name in statement "
                                      "\"must\"."));
    Write("y", TypeDef("p", Type("decimal64", "<fraction-digits value='2'/>")) +
                   Leaf("v", Type("p", Range("1.5..2"))));
    EXPECT_EQ(Load("y"), ZR_ERR_INVALID);
}

} // namespace
