// SPDX-License-Identifier: Apache-2.0
#include "schema/augment/augment_index.h"

#include "schema/coupling_fixture.h"
#include "support/alloc.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

// The target paths of the doomed augments, which are spared again.
std::vector<std::string> Doomed(zr::AugmentIndex *index, const char *path, const ZrNode *node)
{
    std::vector<std::string> paths;
    bool any = index->Doom(path, node);
    index->ForEachDoomed([&](const ZrNode *augment) { paths.emplace_back(augment->name); });
    EXPECT_EQ(any, !paths.empty());
    index->Spare();
    return paths;
}

class AugmentIndex : public testing::Test {
protected:
    AugmentIndex()
    {
        EXPECT_EQ(ctx_.LoadBody("m", Container("c", Container("k")) + Container("c-more") +
                                         Container("c0")),
                  ZR_OK);
        EXPECT_EQ(ctx_.LoadBody("a", Import("m") + Augment("/m:c-more", Leaf("p")) +
                                         Augment("/m:c", Container("p")) +
                                         Augment("/m:c/m:k", Leaf("p") + Leaf("q")) +
                                         Augment("/m:c/m:none", Leaf("p"))),
                  ZR_OK);
        EXPECT_EQ(ctx_.LoadBody("b", Import("m") + Augment("/m:c", Leaf("r")) +
                                         Augment("/m:c0", Leaf("r")) +
                                         Augment("/m:c/m:p", Leaf("s"))), // of a, by another name
                  0u);
    }

    TestContext ctx_;
};

} // namespace

TEST_F(AugmentIndex, FindsThePathsAtAndBelowOneAndNoOthers)
{
    zr::AugmentIndex index;
    ASSERT_EQ(index.Make(ctx_.get()), ZR_OK);
    EXPECT_THAT(Doomed(&index, "/m:c", nullptr),
                UnorderedElementsAre("/m:c", "/m:c/k", "/m:c/none", "/m:c", "/m:c/p"));
    EXPECT_THAT(Doomed(&index, "/m:c/k", nullptr), ElementsAre("/m:c/k"));
    EXPECT_THAT(Doomed(&index, "/m:c0", nullptr), ElementsAre("/m:c0"));
    EXPECT_THAT(Doomed(&index, "/m:c-", nullptr), IsEmpty());
    EXPECT_THAT(Doomed(&index, "/m:zzz", nullptr), IsEmpty());
}

TEST_F(AugmentIndex, FindsTargetsBelowANodeByWhateverPath)
{
    zr::AugmentIndex index;
    ASSERT_EQ(index.Make(ctx_.get()), ZR_OK);
    EXPECT_THAT(Doomed(&index, "/m:c/a:p", ctx_.Node("/m:c/a:p")), ElementsAre("/m:c/p"));
    EXPECT_THAT(Doomed(&index, "/none:x", ctx_.Node("/m:c/k")), ElementsAre("/m:c/k"));
}

TEST_F(AugmentIndex, KnowsWhichAugmentAddedANode)
{
    zr::AugmentIndex index;
    ASSERT_EQ(index.Make(ctx_.get()), ZR_OK);
    EXPECT_EQ(index.AugmentOf(ctx_.Node("/m:c/k/a:q")), ctx_.Module("a")->augments->next->next);
    EXPECT_EQ(index.AugmentOf(ctx_.Node("/m:c0/b:r")), ctx_.Module("b")->augments->next);
    EXPECT_EQ(index.AugmentOf(ctx_.Node("/m:c/k")), nullptr);
}

TEST_F(AugmentIndex, OfOneModuleLeavesTheOthersOut)
{
    zr::AugmentIndex index;
    ASSERT_EQ(index.Make(static_cast<const ZrMod *>(ctx_.Module("b"))), ZR_OK);
    EXPECT_THAT(Doomed(&index, "/m:c", nullptr), UnorderedElementsAre("/m:c", "/m:c/p"));
}

TEST_F(AugmentIndex, FreesTheDoomedAndFindsTheOthersAfterwards)
{
    zr::AugmentIndex index;
    ASSERT_EQ(index.Make(ctx_.get()), ZR_OK);
    ASSERT_TRUE(index.Doom("/m:c/k", nullptr));
    index.ForEachDoomed(zr::TakeBackAugmentNodes);
    index.FreeDoomed();
    EXPECT_THAT(ChildNames(ctx_.Node("/m:c/k")), IsEmpty());
    EXPECT_THAT(Doomed(&index, "/m:c/k", nullptr), IsEmpty());
    EXPECT_THAT(Doomed(&index, "/m:c", nullptr),
                UnorderedElementsAre("/m:c", "/m:c/none", "/m:c", "/m:c/p"));
    EXPECT_THAT(ctx_.Messages("a"), ElementsAre("Failed to couple augment statements."));
}

TEST_F(AugmentIndex, ForgetsTheMessageOfAModuleThatLosesItsLastAugmentWithoutATarget)
{
    zr::AugmentIndex index;
    ASSERT_EQ(index.Make(ctx_.get()), ZR_OK);
    ASSERT_THAT(ctx_.Messages("a"), ElementsAre("Failed to couple augment statements."));
    ASSERT_TRUE(index.Doom("/m:c/none", nullptr));
    index.FreeDoomed();
    EXPECT_THAT(ctx_.Messages("a"), IsEmpty());
}

TEST_F(AugmentIndex, WithoutMemoryIsNotMade)
{
    AllocGuard guard;
    uint64_t points = FailEachAllocation(
        guard,
        [&](FailPoint &memory) {
            zr::AugmentIndex index;
            uint32_t status = memory.Run([&] { return index.Make(ctx_.get()); });
            EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        },
        true);
    EXPECT_EQ(points, 3u);
}
