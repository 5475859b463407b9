// SPDX-License-Identifier: Apache-2.0
// Scenarios of value checks, validation, completion, conditions, error records and printing.
#include "memory/scenario.h"
#include "support/matcher.h"

namespace zrtest {

namespace {

const char *const kTypes = R"yin(
<identity name="b"/><identity name="d"><base name="b"/></identity>
<typedef name="t"><type name="int16"><range value="1..100"/></type></typedef>
<leaf name="binary"><type name="binary"><length value="2..4"/></type></leaf>
<leaf name="bits"><type name="bits"><bit name="one"/><bit name="two"/></type></leaf>
<leaf name="boolean"><type name="boolean"/></leaf>
<leaf name="decimal64"><type name="decimal64"><fraction-digits value="2"/><range value="0..9.5"/>
  </type></leaf>
<leaf name="empty"><type name="empty"/></leaf>
<leaf name="enumeration"><type name="enumeration"><enum name="up"/></type></leaf>
<leaf name="identityref"><type name="identityref"><base name="b"/></type></leaf>
<leaf name="instance"><type name="instance-identifier"/></leaf>
<leaf name="int64"><type name="int64"/></leaf>
<leaf name="leafref"><type name="leafref"><path value="/m:derived"/></type></leaf>
<leaf name="string"><type name="string"><length value="1..9"/><pattern value="[a-z]+"/></type></leaf>
<leaf name="uint8"><type name="uint8"><range value="0..5 | 7"/></type></leaf>
<leaf name="union"><type name="union"><type name="int8"/><type name="bits"><bit name="x"/></type>
  </type></leaf>
<leaf name="derived"><type name="t"><range value="min..50"/></type></leaf>)yin";

void Values(World &world)
{
    world.LoadBody("m", kTypes);
    const char *const values[][2] = {
        {"/m:binary", "QUJD"},    {"/m:bits", "two one"},    {"/m:bits", "three"},
        {"/m:boolean", "true"},   {"/m:decimal64", "1.5"},   {"/m:empty", ""},
        {"/m:enumeration", "up"}, {"/m:identityref", "m:d"}, {"/m:identityref", "m:x"},
        {"/m:instance", "/m:a"},  {"/m:int64", "-5"},        {"/m:leafref", "7"},
        {"/m:leafref", "70"},     {"/m:string", "abc"},      {"/m:string", "ABC"},
        {"/m:uint8", "7"},        {"/m:union", "x"},         {"/m:union", "y"},
        {"/m:derived", "50"},
    };
    for (const auto &row : values)
        world.Value(row[0], row[1]);
}

const char *const kPatternLeaves = R"yin(
<typedef name="t"><type name="string"><pattern value="[a-z]*"/><pattern value=".{2,4}"/></type>
</typedef>
<leaf name="union"><type name="union"><type name="t"><pattern value="b.*"><modifier
  value="invert-match"/></pattern></type><type name="string"><pattern value="[0-9]+"/></type>
  </type></leaf>
<leaf name="broken"><type name="string"><pattern value="[0-"/></type></leaf>)yin";

void KeptPatterns(World &world)
{
    world.LoadBody("m", kPatternLeaves);
    for (const char *value : {"abc", "bcd", "7", "abc", "abcde"})
        world.Value("/m:union", value);
    world.Value("/m:broken", "0");
    world.LoadBody("d", R"yin(<import module="m"><prefix value="m"/></import>
<deviation target-node="/m:union"><deviate value="replace"><type name="m:t"/></deviate>
</deviation>)yin");
    for (const char *value : {"bcd", "7"})
        world.Value("/m:union", value);
    world.Unload("d");
    world.Value("/m:union", "7");
}

// A pattern that the matcher refuses among those that it takes.
void OutsideMatcher(World &world)
{
    static EqualityMatcher matcher;
    const ZrPatternMatcher record = matcher;
    world.Status("matcher", ZR_CTX_SetPatternMatcher(world.ctx(), &record),
                 {ZR_OK, ZR_ERR_NO_MEMORY});
    world.LoadBody("m", "<typedef name='t'><type name='string'><pattern value='refuse.*'/></type>"
                        "</typedef><leaf name='v'><type name='t'><pattern value='refuse1'/>"
                        "<pattern value='b'><modifier value='invert-match'/></pattern></type>"
                        "</leaf><leaf name='w'><type name='string'><pattern value='a'/></type>"
                        "</leaf>");
    for (const char *value : {"a", "refuse1", "refuse2"}) {
        world.Value("/m:v", value);
        world.Value("/m:w", value);
    }
    world.LoadBody("d", R"yin(<import module="m"><prefix value="m"/></import>
<deviation target-node="/m:w"><deviate value="replace"><type name="m:t"/></deviate>
</deviation>)yin");
    world.Value("/m:w", "refuse2");
    world.Unload("d");
    world.Value("/m:w", "a");
}

const char *const kData = R"yin(
<leaf name="mode"><type name="string"/><default value="on"/></leaf>
<leaf name="kind"><type name="identityref"><base name="b"/></type></leaf>
<leaf name="speed"><when condition="derived-from-or-self(../kind, 'm:d')"/><type name="int8"/>
  <default value="7"/></leaf>
<container name="box"><leaf name="in"><type name="string"/><default value="x"/></leaf>
  <leaf name="out"><when condition="../in = 'x'"/><type name="string"/></leaf></container>
<choice name="way"><default value="road"/><leaf name="road"><type name="string"/>
  <default value="r"/></leaf><leaf name="rail"><type name="string"/></leaf></choice>
<list name="l"><key value="k"/><leaf name="k"><type name="string"/></leaf>
  <leaf name="v"><type name="bits"><bit name="x"/></type></leaf>
  <must condition="k != 'bad' and (v or not(../mode = 'off'))"><error-message><value>Bad.</value>
  </error-message><error-app-tag value="bad-l"/></must></list>
<container name="there"><presence value="p"/><leaf name="need"><type name="string"/>
  <mandatory value="true"/></leaf></container>)yin";

void LoadData(World &world)
{
    std::string data = kData;
    world.LoadBody("m", "<identity name='b'/><identity name='d'><base name='b'/></identity>"
                        "<rpc name='op'><input>" +
                            data +
                            "</input></rpc><container name='top'><action name='act'><input>" +
                            data + "</input></action></container><notification name='event'>" +
                            data + "</notification>");
}

void Completion(World &world)
{
    LoadData(world);
    world.Request(Data("op", ""));
    world.Request(Data("op", "<kind>d</kind><box><out>o</out></box><rail>t</rail><l><k>1</k></l>"
                             "<l><k>2</k><v>x</v></l><there><need>n</need></there>"));
    world.Request(Data("top", "<act><mode>off</mode></act>"));
}

void Conditions(World &world)
{
    LoadData(world);
    world.Request(Data("op", "<box><in>y</in><out>o</out></box>"));
    world.Request(Data("op", "<l><k>bad</k></l>"));
    world.Notify(Data("event", "<box><in>y</in><out>o</out></box><l><k>2</k><v/></l>"));
    world.Notify(Data("event", "<mode>off</mode><l><k>bad</k></l>"));
}

// Conditions that ask for what stands behind many entries: remembered or not, the answers are the
// same.
void ManyEntries(World &world)
{
    const std::string body =
        "<list name='l'><key value='k'/><leaf name='k'><type name='string'/></leaf>"
        "<must condition=\"../mode = 'x'\"/></list><leaf name='mode'><type name='string'/></leaf>"
        "<leaf name='need'><when condition='not(../z)'/><type name='string'/>"
        "<mandatory value='true'/></leaf>";
    world.LoadBody("m", "<rpc name='op'><input>" + body +
                            "</input></rpc><notification name='event'>" + body + "</notification>");
    std::string entries;
    for (int i = 0; i < 33; ++i)
        entries += "<l><k>1</k></l>";
    world.Request(Data("op", entries + "<mode>x</mode>"));
    world.Notify(Data("event", entries + "<mode>y</mode><need/>"));
}

void ErrorRecords(World &world)
{
    LoadData(world);
    world.Request("<op");
    world.Request(Data("none", ""));
    world.Request("<op xmlns='urn:none'/>");
    world.Request(Data("op", "<none/>"));
    world.Request(Data("op", "<mode/><mode/>"));
    world.Request(Data("op", "<there/><mode/>"));
    world.Request(Data("op", "<road/><rail/>"));
    world.Request(Data("op", "<l><k>1</k><v>none</v></l>"));
    world.Request(Data("op", "<there/>"));
    world.Request(Data("top", ""));
}

void Printing(World &world)
{
    LoadData(world);
    world.LoadBody("n", std::string("<import module='m'><prefix value='m'/></import>"
                                    "<augment target-node='/m:op/m:input'>") +
                            kTypes + "</augment>" + kTypes);
    world.Print({"m", "n"});
    world.PrintNode("/m:op/input/l");
    if (ZrNode *node = world.Node("/m:op/input/way/rail")) {
        char path[64];
        world.Status("path", ZR_NODE_GetNodePath(node, path, sizeof path), {ZR_OK});
        world.Note(path);
    }
}

} // namespace

const std::vector<Scenario> &DataScenarios()
{
    static const std::vector<Scenario> scenarios = {
        {"Values", 0, nullptr, Values},
        {"KeptPatterns", ZR_CTX_KEEP_PATTERNS, nullptr, KeptPatterns},
        {"OutsideMatcher", 0, nullptr, OutsideMatcher},
        {"OutsideMatcherAndKeptPatterns", ZR_CTX_KEEP_PATTERNS, nullptr, OutsideMatcher},
        {"Completion", 0, nullptr, Completion},
        {"Conditions", 0, nullptr, Conditions},
        {"ManyEntries", 0, nullptr, ManyEntries},
        {"ErrorRecords", 0, nullptr, ErrorRecords},
        {"Printing", 0, nullptr, Printing},
    };
    return scenarios;
}

} // namespace zrtest
