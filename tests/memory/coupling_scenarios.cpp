// SPDX-License-Identifier: Apache-2.0
// Scenarios of augments, deviations, unload and reload, and of changes to nodes.
#include "memory/scenario.h"

namespace zrtest {

namespace {

const char *const kTarget = R"yin(
<extension name="e"/><feature name="f"/><identity name="i"/>
<container name="c"><leaf name="a"><type name="string"/></leaf>
  <leaf-list name="ll"><type name="string"/><default value="x"/><default value="y"/><units name="u"/>
    <must condition="1"/><must condition="2"/><m:e a="1"/><m:e a="2"/></leaf-list>
  <choice name="h"><default value="one"/><leaf name="one"><type name="string"/></leaf>
    <leaf name="two"><type name="string"/></leaf></choice>
  <leaf name="id"><type name="identityref"><base name="i"/></type></leaf></container>
<rpc name="r"/>)yin";

const char *const kImports = R"yin(<import module="m"><prefix value="m"/></import>
<import module="n"><prefix value="n"/></import>)yin";

std::string Augmenting()
{
    return std::string(kImports) + R"yin(
<augment target-node="/m:c"><when condition="m:a = 'x'"/><if-feature name="m:f"/>
  <container name="d"><when condition="n:y"/><leaf name="y"><type name="string"/></leaf></container>
  <leaf name="q"><type name="string"/></leaf><action name="act"/></augment>
<augment target-node="/m:c/n:d"><leaf name="z"><type name="string"/></leaf></augment>
<augment target-node="/m:r/m:input"><leaf name="i"><type name="string"/></leaf></augment>)yin";
}

std::string Further()
{
    return std::string(kImports) + R"yin(
<augment target-node="/m:c/n:d"><leaf name="w"><type name="string"/></leaf></augment>
<augment target-node="/m:c/m:h"><case name="three"><leaf name="t"><type name="string"/></leaf></case>
  </augment>
<augment target-node="/m:c/m:missing"><leaf name="t"><type name="string"/></leaf></augment>)yin";
}

std::string Deviating()
{
    return std::string(kImports) + R"yin(
<deviation target-node="/m:c/m:a"><deviate value="add"><config value="false"/>
  <mandatory value="true"/><default value="d"/><units name="m"/><must condition="."/>
  <m:e a="3"/></deviate><deviate value="replace"><type name="union"><type name="int8"/>
  <type name="string"><length value="1..4"/></type></type><default value="5"/></deviate></deviation>
<deviation target-node="/m:c/m:ll"><deviate value="delete"><default value="x"/><must condition="2"/>
  <units name="u"/><m:e a="1"/></deviate><deviate value="add"><default value="v"/></deviate>
  </deviation>
<deviation target-node="/m:c/m:h"><deviate value="replace"><default value="two"/></deviate>
  </deviation>
<deviation target-node="/m:c/m:id"><deviate value="add"><default value="m:i"/></deviate></deviation>
<deviation target-node="/m:c/n:q"><deviate value="add"><units name="w"/></deviate></deviation>)yin";
}

// Every deviation fails. Their module must be another one than that of those which do not: only the
// first two messages of a module are kept.
std::string DeviatingInVain()
{
    return std::string(kImports) + R"yin(
<deviation target-node="/m:c/m:ll"><deviate value="add"><default value="y"/></deviate></deviation>
<deviation target-node="/m:c/m:a"><deviate value="delete"><units name="none"/></deviate></deviation>
)yin";
}

std::string Removing()
{
    return std::string(kImports) +
           "<deviation target-node=\"/m:c/n:d\"><deviate value=\"not-supported\"/></deviation>"
           "<deviation target-node=\"/m:c/m:one\"><deviate value=\"not-supported\"/></deviation>"
           "<deviation target-node=\"/m:r/m:input\"><deviate value=\"not-supported\"/></deviation>";
}

void Augments(World &world)
{
    world.LoadBody("o", Further());
    world.LoadBody("n", Augmenting());
    world.LoadBody("m", kTarget);
    world.Node("/m:c/n:d/o:w");
    world.Node("/m:r/input/n:i");
}

void Deviations(World &world)
{
    world.LoadBody("v", Deviating());
    world.LoadBody("m", kTarget);
    world.LoadBody("n", Augmenting());
    world.LoadBody("w", DeviatingInVain());
    world.Value("/m:c/a", "5");
}

void RemovedNodes(World &world)
{
    world.LoadBody("m", kTarget);
    world.LoadBody("n", Augmenting());
    world.LoadBody("o", Further());
    world.LoadBody("x", Removing());
    world.Node("/m:c/n:d");
}

void WriteModules(const TempDir &folder)
{
    folder.Write("m.yin", ModuleText("m", kTarget));
    folder.Write("n@@one.yin", ModuleText("n", Augmenting()));
    folder.Write("more/n@@two.yin",
                 ModuleText("n", Augmenting() + "<augment target-node='/m:c'><leaf name='late'>"
                                                "<type name='string'/></leaf></augment>"));
    folder.Write("o.yin", ModuleText("o", Further()));
    folder.Write("v.yin", ModuleText("v", Deviating()));
    folder.Write("x.yin", ModuleText("x", Removing()));
}

void LoadAll(World &world)
{
    world.SetDir();
    for (const char *module : {"m", "n", "o", "v"})
        world.Load(module);
    world.Enable("m", "f");
}

void UnloadTarget(World &world)
{
    LoadAll(world);
    world.Unload("m");
    world.Load("m");
}

void UnloadAugmenting(World &world)
{
    LoadAll(world);
    world.Unload("n"); // which comes back, being put together from parts
    world.Unload("o");
}

// Of a module that is augmented and deviated, and whose own augments are.
void LaterPart(World &world)
{
    LoadAll(world);
    world.SetDir("more");
    world.Load("n");
    world.Load("n");
    world.Node("/m:c/n:d");
}

void UnloadDeviating(World &world)
{
    LoadAll(world);
    world.Load("x");
    world.Unload("x");
    world.Unload("v");
    world.Unload("nothing");
}

void NodeChanges(World &world)
{
    world.LoadBody("m", kTarget);
    ZrNode *source = world.Node("/m:c/ll");
    ZrNode *destination = world.Node("/m:c");
    if (source == nullptr || destination == nullptr)
        return;
    world.Status("append", ZR_NODE_AppendExtInst(destination, "m", "e", "9"),
                 {ZR_OK, ZR_ERR_NO_MEMORY});
    world.Status("append",
                 ZR_NODE_AppendExtInst(source, "ietf-netconf-acm", "default-deny-all", nullptr),
                 {ZR_OK, ZR_ERR_NO_MEMORY});
    world.Status("replace", ZR_NODE_ReplaceDstExtInst(destination, source),
                 {ZR_OK, ZR_ERR_NO_MEMORY});
    ZR_NODE_CleanExtInsts(source);
}

} // namespace

const std::vector<Scenario> &CouplingScenarios()
{
    constexpr uint32_t kTexts = ZR_CTX_KEEP_UNITS;
    static const std::vector<Scenario> scenarios = {
        {"Augments", kTexts, nullptr, Augments},
        {"Deviations", kTexts, nullptr, Deviations},
        {"RemovedNodes", kTexts, nullptr, RemovedNodes},
        {"LaterPart", kTexts, WriteModules, LaterPart},
        {"UnloadTarget", kTexts, WriteModules, UnloadTarget},
        {"UnloadAugmenting", kTexts, WriteModules, UnloadAugmenting},
        {"UnloadDeviating", kTexts, WriteModules, UnloadDeviating},
        {"NodeChanges", kTexts, nullptr, NodeChanges},
    };
    return scenarios;
}

} // namespace zrtest
