// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 15.7: an entry is put beside one that is there.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// What is told of edits of a datastore with the song "a" of disc 1 and the mood "calm".
Texts EditSongs(const std::string &edit)
{
    Schema schema("container c { list song { key \"title disc\"; ordered-by user; leaf title {"
                  "type string; } leaf disc { type int8; } } leaf-list mood { type string;"
                  "ordered-by user; } }");
    return schema.CheckMessage(
        "<config xmlns:yang=\"urn:ietf:params:xml:ns:yang:1\" "
        "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
        "<c xmlns=\"urn:m\" xmlns:m=\"urn:m\">" +
            edit + "</c></config>",
        ZR_DATA_EDIT,
        "<data><c xmlns=\"urn:m\"><song><title>a</title><disc>1</disc></song>"
        "<mood>calm</mood></c></data>");
}

std::string Song(const std::string &title, const std::string &attributes)
{
    return "<song " + attributes + "><title>" + title + "</title><disc>1</disc></song>";
}

std::string After(const std::string &title, const std::string &disc)
{
    return "yang:insert='after' yang:key=\"[m:title='" + title + "'][m:disc='" + disc + "']\"";
}

} // namespace

TEST(InsertBeside, AnEntryThatIsThere)
{
    EXPECT_THAT(EditSongs(Song("b", After("a", "+1"))), IsEmpty());
    EXPECT_THAT(
        EditSongs(Song("b", After("a", "2"))),
        ElementsAre("bad-attribute[missing-instance] /c/song[title='b'][disc='1']: the entry "
                    "that attribute \"key\" names is not there"));
}

TEST(InsertBeside, AValueThatIsThere)
{
    EXPECT_THAT(EditSongs("<mood yang:insert='before' yang:value='calm'>glad</mood>"), IsEmpty());
    EXPECT_THAT(EditSongs("<mood yang:insert='before' yang:value='sad'>glad</mood>"),
                ElementsAre("bad-attribute[missing-instance] /c/mood[.='glad']: the entry that "
                            "attribute \"value\" names is not there"));
}

TEST(InsertBeside, AnEntryThatTheSameEditMakesOrTakesAway)
{
    EXPECT_THAT(EditSongs(Song("c", "") + Song("b", After("c", "1"))), IsEmpty());
    EXPECT_THAT(EditSongs(Song("b", After("b", "1"))), testing::SizeIs(1)) << "not beside itself";
}

} // namespace datatest
