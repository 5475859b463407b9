// min-elements, max-elements and unique, which a context does not keep: here they are given.
#include "instance/check/run.h"
#include "instance/errors/result.h"
#include "instance/plan/maker.h"
#include "instance/tree/parse.h"
#include "support/schema.h"

namespace datatest {

using namespace zr::data;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *kServers =
    "container c { presence p; list server { key name; leaf name { type string; }"
    "  container at { leaf ip { type string; } leaf port { type uint16; default 80; } } } }";

// The list has one to three entries, of which no two have the same address and port.
void Constrain(const ZrNode *node, ListConstraints &constraints)
{
    if (std::string(ZR_NODE_GetNodeName(node)) != "server")
        return;
    constraints.minElements = 1;
    constraints.maxElements = 3;
    constraints.uniques.emplace_back("m:at/m:ip  m:at/m:port");
}

Texts CheckServers(const std::string &entries)
{
    Schema schema(kServers);
    ZrDataMemory hooks = zr::MallocHooks<ZrDataMemory>();
    Plan plan(hooks);
    MakePlan(plan, schema.ctx(), Constrain);
    ZrDataOptions options = {ZR_DATA_CONFIG, 0, 0};
    Result result(hooks);
    Run run(plan, options, &result.memory);
    std::string text = Wrap("<c>" + entries + "</c>");
    ParseFault fault(&result.memory);
    XmlDoc doc = ParseXml(text.data(), text.size(), fault);
    CheckData(run, *xmlDocGetRootElement(doc.get()));
    result.Take(run.faults, run.warnings);
    Texts errors;
    for (const ZrDataError &error : result.errors)
        errors.push_back(Describe(error));
    return errors;
}

std::string Server(const std::string &name, const std::string &rest = "")
{
    return "<server><name>" + name + "</name><at>" + rest + "</at></server>";
}

} // namespace

TEST(MinElements, AreAskedForWhereNoEntryStands)
{
    EXPECT_THAT(CheckServers(""), ElementsAre("operation-failed[too-few-elements] /c/server: "
                                              "\"server\" has too few entries"));
    EXPECT_THAT(CheckServers(Server("a")), IsEmpty());
}

TEST(MaxElements, AreToldOnceForAList)
{
    std::string three = Server("a") + Server("b") + Server("c");
    EXPECT_THAT(CheckServers(three), IsEmpty());
    EXPECT_THAT(CheckServers(three + Server("d") + Server("e")),
                ElementsAre("operation-failed[too-many-elements] /c/server: "
                            "\"server\" has too many entries"));
}

TEST(Unique, ComparesNestedLeafsWithTheirDefaults)
{
    EXPECT_THAT(CheckServers(Server("a", "<ip>1</ip>") + Server("b", "<ip>1</ip><port>80</port>")),
                ElementsAre("operation-failed[data-not-unique] /c/server[name='b']: "
                            "another entry has the same \"ip\", \"port\""));
    EXPECT_THAT(CheckServers(Server("a", "<ip>1</ip>") + Server("b", "<ip>1</ip><port>81</port>")),
                IsEmpty());
}

TEST(Unique, LeavesOutEntriesThatLackALeaf)
{
    EXPECT_THAT(CheckServers(Server("a") + Server("b")), IsEmpty());
}

} // namespace datatest
