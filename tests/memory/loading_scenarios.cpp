// SPDX-License-Identifier: Apache-2.0
// Scenarios of contexts, loading, submodules, suffixed parts and failing loads.
#include "memory/scenario.h"

namespace zrtest {

namespace {

const char *const kStatements = R"yin(
<yang-version value="1.1"/>
<import module="x"><prefix value="x"/></import>
<organization><text>Org</text></organization>
<description><text>A module.</text></description>
<revision date="2026-02-01"/><revision date="2026-01-01"/>
<extension name="note"><argument name="text"><yin-element value="true"/></argument></extension>
<m:note text="one"><m:note text="two"/></m:note>
<feature name="f"><if-feature name="g"/></feature><feature name="g"/>
<identity name="base"/>
<identity name="derived"><base name="base"/><if-feature name="m:f"/>
  <description><text>An identity.</text></description></identity>
<typedef name="count"><type name="int16"><range value="1..10 | 20">
  <error-message><value>Not so many.</value></error-message></range></type><default value="5"/>
  <units name="pieces"/></typedef>
<container name="c"><presence value="p"/><when condition="m:a = 'x'"/><if-feature name="f"/>
  <must condition="m:l"><error-message><value>No list.</value></error-message>
    <error-app-tag value="no-list"/></must>
  <description><text>A container.</text></description><m:note text="three"/>
  <list name="l"><key value="k1 k2"/><leaf name="k1"><type name="string"/></leaf>
    <leaf name="k2"><type name="count"/></leaf>
    <action name="act"><input><leaf name="i"><type name="empty"/></leaf></input></action></list>
  <choice name="h"><default value="one"/>
    <case name="one"><leaf name="o"><type name="boolean"/></leaf></case>
    <container name="two"/></choice></container>
<leaf name="a"><type name="identityref"><base name="base"/></type><default value="derived"/></leaf>
<leaf-list name="ll"><type name="decimal64"><fraction-digits value="2"/>
  <range value="min..1.5"/></type><default value="1"/><default value="0.5"/></leaf-list>
<anydata name="ad"/><anyxml name="ax"><mandatory value="true"/></anyxml>
<rpc name="r"><input><leaf name="i"><type name="string"><length value="1..5"/>
  <pattern value="^a+$"><error-app-tag value="a"/></pattern></type></leaf></input><output><leaf name="o"><type name="binary"/></leaf>
  </output></rpc>
<notification name="n"><leaf name="e"><type name="enumeration"><enum name="up"><value value="3"/>
  <description><text>Up.</text></description></enum><enum name="down"><if-feature name="m:f"/>
  </enum></type></leaf>
  <leaf name="b"><type name="bits"><bit name="x"><position value="2"/></bit><bit name="y"/></type>
  </leaf><leaf name="u"><type name="union"><type name="int8"/><type name="leafref">
  <path value="../m:n[m:e=current()/../m:e]/m:e"/></type></type></leaf></notification>)yin";

void Directories(World &world)
{
    world.SetDir("one//");
    world.SetDir("two");
    world.SetDir("one");
    world.SetDir("missing");
    world.UnsetDir("one");
    world.SetDir("one");
    world.Load("absent");
}

void WriteDirectories(const TempDir &folder)
{
    folder.Write("one/x", "");
    folder.Write("two/x", "");
}

void EveryStatement(World &world)
{
    world.LoadBody("m", kStatements);
    world.LoadBody("m", "");
    world.Enable("m", "*");
    world.Node("/m:c/h/one/o");
}

const char *const kEntries = R"yin(
<list name="l"><key value="b a"/><min-elements value="1"/><max-elements value="9"/>
  <unique tag="c"/><unique tag="a c"/><leaf name="a"><type name="string"/></leaf>
  <leaf name="b"><type name="string"/></leaf><leaf name="c"><type name="string"/></leaf></list>
<leaf-list name="ll"><type name="string"/><max-elements value="3"/></leaf-list>)yin";

const char *const kEntryDeviations = R"yin(
<import module="m"><prefix value="m"/></import>
<deviation target-node="/m:l"><deviate value="add"><unique tag="m:b m:c"/></deviate>
  <deviate value="delete"><unique tag="m:c"/></deviate>
  <deviate value="replace"><max-elements value="4"/></deviate></deviation>
<deviation target-node="/m:ll"><deviate value="add"><min-elements value="2"/></deviate>
</deviation>)yin";

void NoteEntries(World &world, const char *path)
{
    const ZrNode *node = world.Node(path);
    if (node == nullptr)
        return;
    world.Note(std::to_string(ZR_NODE_GetMinElements(node)) + ".." +
               std::to_string(ZR_NODE_GetMaxElements(node)));
    auto note = [](const char *text, void *to) -> uint32_t {
        static_cast<World *>(to)->Note(text);
        return 0;
    };
    world.Status("uniques", ZR_NODE_ScanAllUniques(node, note, &world), {ZR_OK});
}

void WriteEntries(const TempDir &folder)
{
    folder.Write("m@@1.yin", ModuleText("m", kEntries));
    folder.Write("m@@2.yin", ModuleText("m", std::string(kEntries) + "<container name='c'/>"));
    folder.Write("d@@1.yin", ModuleText("d", kEntryDeviations));
    folder.Write("d@@2.yin", ModuleText("d", kEntryDeviations));
}

// Modules in parts, so that deviates are copied; the second part's deviations meet changed targets.
void Entries(World &world)
{
    world.SetDir();
    world.Load("m");
    world.Load("d");
    NoteEntries(world, "/m:l");
    NoteEntries(world, "/m:ll");
    world.Unload("d");
    NoteEntries(world, "/m:l");
    world.LoadBody("s",
                   "<container name='c'><must condition='ancestor::s:c = child::*'/></container>"
                   "<typedef name='t'><type name='decimal64'><fraction-digits value='2'/></type>"
                   "</typedef><leaf name='v'><type name='t'><range value='1.5..2'/></type></leaf>");
    world.Value("/s:v", "1.75");
}

void WriteImports(const TempDir &folder)
{
    folder.Write("a.yin", ModuleText("a", "<import module='b'><prefix value='b'/></import>"
                                          "<import module='gone'><prefix value='g'/></import>"
                                          "<leaf name='l'><type name='b:t'/></leaf>"));
    folder.Write("b@2026-01-01.yin",
                 ModuleText("b", "<import module='c'><prefix value='c'/></import>"
                                 "<import module='a'><prefix value='a'/></import>"
                                 "<typedef name='t'><type name='c:t'><range value='2..max'/></type>"
                                 "</typedef><augment target-node='/c:k'><leaf name='n'>"
                                 "<type name='t'/></leaf></augment>"));
    folder.Write("c.yin",
                 ModuleText("c", "<typedef name='t'><type name='uint8'><range value='1..9'/></type>"
                                 "</typedef><container name='k'/>"));
}

void Imports(World &world)
{
    world.SetDir();
    world.Load("a");
    world.Value("/a:l", "3");
    world.Node("/c:k/b:n");
}

void WriteSubmodules(const TempDir &folder)
{
    folder.Write("m.yin", ModuleText("m", "<include module='s'/><include module='t'/>"
                                          "<leaf name='own'><type name='word'/></leaf>"));
    folder.Write("s.yin",
                 yin::SubmoduleText("s", "<include module='t'/><feature name='f'/><p:x arg='1'/>"
                                         "<container name='c'><when condition='p:own'/></container>"
                                         "<augment target-node='/p:c'><leaf name='l'>"
                                         "<if-feature name='p:f'/><type name='p:word'/></leaf>"
                                         "</augment>"));
    folder.Write("t.yin",
                 yin::SubmoduleText("t", "<typedef name='word'><type name='string'/></typedef>"
                                         "<rpc name='r'/>"));
    folder.Write("broken.yin", ModuleText("broken", "<include module='none'/>"));
}

void Submodules(World &world)
{
    world.SetDir();
    world.Load("m");
    world.Node("/m:c/l");
    world.Load("broken");
}

void WriteParts(const TempDir &folder)
{
    const std::string header = "<import module='x'><prefix value='x'/></import>"
                               "<include module='s'/><extension name='e'/>"
                               "<feature name='f'><if-feature name='g'/></feature>"
                               "<identity name='i'><base name='x:i'/></identity><m:e a='1'/>";
    folder.Write("s.yin", yin::SubmoduleText("s", ""));
    folder.Write("m@@one.yin",
                 ModuleText("m", header + "<container name='c'><leaf name='a'>"
                                          "<type name='string'/></leaf></container>"));
    folder.Write("m@@two.yin",
                 ModuleText("m", header + "<import module='y'><prefix value='y'/></import>"
                                          "<extension name='e2'><argument name='a'/></extension>"
                                          "<feature name='f2'><if-feature name='f'/></feature>"
                                          "<identity name='i2'><base name='i'/>"
                                          "<if-feature name='f'/></identity><m:e a='2'/>"
                                          "<typedef name='t'><type name='union'><type name='int8'/>"
                                          "<type name='string'><pattern value='a'/></type></type>"
                                          "</typedef>"
                                          "<container name='c'><m:e a='3'/><leaf name='a'>"
                                          "<type name='string'/></leaf><leaf name='b'>"
                                          "<type name='t'/></leaf></container>"
                                          "<deviation target-node='/m:c/m:a'><deviate value='add'>"
                                          "<must condition='.'/><default value='d'/></deviate>"
                                          "</deviation>"));
    folder.Write("more/m@@three.yin",
                 ModuleText("m", "<container name='d'><leaf name='z'><type name='t'/></leaf>"
                                 "</container><rpc name='r'/>"));
    folder.Write("bad/m@@four.yin", ModuleText("m", "<feature name='f'/>"));
}

void SuffixedParts(World &world)
{
    world.SetDir();
    world.Load("m");
    world.Value("/m:c/b", "a");
    world.SetDir("more");
    world.Load("m");
    world.Node("/m:d/z");
    world.SetDir("bad");
    world.Load("m");
    world.UnsetDir("bad");
    world.Unload("m");
}

// Each is refused in its own way, with messages.
void BadModules(World &world)
{
    world.LoadText("<module");
    world.LoadText("<module/>");
    const char *const bodies[] = {
        "<prefix value='again'/>",
        "<yang-version value='2'/>",
        "<include module='none'/>",
        "<leaf name='l'/>",
        "<leaf name='l'><type name='q:t'/></leaf>",
        "<leaf name='l'><type name='int8'><range value='1..x'/></type></leaf>",
        "<container name='c'><config value='yes'/></container>",
        "<container name='c'><list name='l'><key value='none'/></list></container>",
        "<identity name='i'><base name='q:i'/></identity>",
        "<typedef name='t'><default value='d'/></typedef>",
        "<augment target-node='relative'/>",
        "<augment target-node='/m:none'/>",
        "<deviation target-node='/q:none'/>",
        ("<leaf name='l'><type name='identityref'><base name='b'/></type>"
         "<default value='q:b'/></leaf>"),
        "<leaf name='l'><type name='string'/><must condition='q:x'/></leaf>",
        "<leaf name='l'><type name='none'/></leaf>",
    };
    int number = 0;
    for (const char *body : bodies)
        world.LoadBody("m" + std::to_string(number++), body);
}

} // namespace

const std::vector<Scenario> &LoadingScenarios()
{
    static const std::vector<Scenario> scenarios = {
        {"Directories", 0, WriteDirectories, Directories},
        {"EveryStatement", ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS, nullptr, EveryStatement},
        {"Entries", ZR_CTX_STANDARD, WriteEntries, Entries},
        {"EveryStatementByTheStandard", ZR_CTX_STANDARD | ZR_CTX_KEEP_DESCRIPTIONS, nullptr,
         EveryStatement},
        {"Imports", ZR_CTX_LOAD_IMPORTS | ZR_CTX_IGNORE_IMPORT_ERRORS, WriteImports, Imports},
        {"ImportsThatFail", ZR_CTX_LOAD_IMPORTS, WriteImports, Imports},
        {"Submodules", 0, WriteSubmodules, Submodules},
        {"SuffixedParts", 0, WriteParts, SuffixedParts},
        {"BadModules", 0, nullptr, BadModules},
    };
    return scenarios;
}

} // namespace zrtest
