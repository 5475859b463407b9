// SPDX-License-Identifier: Apache-2.0
// Printing: a module, or one node with its ancestors, as a tree diagram.
#include "application.h"

namespace {

class Printing : public Application {
protected:
    void SetUp() override
    {
        Start();
        Have("box", R"(
            <typedef name='litre'><type name='uint8'/></typedef>
            <container name='store'>
              <list name='box'>
                <key value='number'/>
                <leaf name='number'><type name='uint8'/></leaf>
                <leaf name='size'><type name='litre'/><default value='1'/></leaf>
                <leaf-list name='label'><type name='string'/></leaf-list>
                <choice name='closing'>
                  <case name='by-lid'><container name='lid'><presence value='p'/></container></case>
                  <leaf name='rope'><status value='obsolete'/><type name='empty'/></leaf>
                </choice>
                <leaf name='weight'><config value='false'/><type name='uint32'/></leaf>
                <action name='move'>
                  <input><leaf name='to'><type name='string'/><mandatory value='true'/></leaf></input>
                </action>
              </list>
            </container>
            <rpc name='open'><output><leaf name='done'><type name='boolean'/></leaf></output></rpc>
            <notification name='opened'/>)");
    }
};

TEST_F(Printing, OfAModuleShowsDataRpcsAndNotifications)
{
    EXPECT_EQ(Tree("box"), R"(
module: box
+--rw store
   +--rw box* [number]
      +--rw number     uint8
      +--rw size?      litre <1>
      +--rw label*     string
      +--rw (closing)?
      |  +--:(by-lid)
      |  |  +--rw lid!
      |  o--:(rope)
      |     o--rw rope?     empty
      +--ro weight?    uint32
      +---x move
         +---w input
            +---w to    string
rpcs:
+---x open
   +--ro output
      +--ro done?   boolean
notifications:
+---n opened
)");
}

TEST_F(Printing, OfANodeShowsItUnderItsAncestors)
{
    std::string text = "\n";
    auto append = [](const char *piece, uint32_t length, void *out) {
        static_cast<std::string *>(out)->append(piece, length);
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_PrintNodesTree(Node("/box:store/box/closing"), append, &text), ZR_OK);
    EXPECT_EQ(text, R"(
module: box
+--rw store
   +--rw box* [number]
      +--rw (closing)?
         +--:(by-lid)
         |  +--rw lid!
         o--:(rope)
            o--rw rope?     empty
)");
}

TEST_F(Printing, ShowsWhatAugmentsAddUnderTheNameOfTheirModule)
{
    Have("wheels", R"(
        <import module='box'><prefix value='b'/></import>
        <augment target-node='/b:store/b:box'>
          <leaf name='wheels'><type name='b:litre'/></leaf>
        </augment>)");
    EXPECT_THAT(Tree("box"), testing::HasSubstr("+--rw wheels:wheels?   litre"));
    EXPECT_EQ(Tree("wheels"), R"(
module: wheels
augment /box:store/box:
+--rw wheels?   box:litre
)");
}

TEST_F(Printing, IsStoppedByTheCallback)
{
    auto stop = [](const char *, uint32_t, void *) { return 1u; };
    EXPECT_EQ(ZR_MOD_PrintModelTree(Module("box"), stop, nullptr), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_MOD_PrintModelTree(nullptr, stop, nullptr), ZR_ERR_INVALID);
}

} // namespace
