#include "schema/record_fixture.h"

namespace {

class LeafListDefaults : public zrtest::RecordTest {
protected:
    LeafListDefaults()
        : node_(AddData(NewModule("m"), ZR_NODE_LEAF_LIST, "many")),
          info_(static_cast<ZrsLeafListInfo *>(node_->info))
    {
    }
    uint32_t Append(const std::vector<const char *> &values)
    {
        return ZRS_NODE_AppendLeaflistDefaults(dict_, info_, values.data(),
                                               static_cast<uint32_t>(values.size()));
    }
    std::string Defaults() const
    {
        std::string text;
        for (uint32_t i = 0; i < info_->defaultCount; ++i)
            text += info_->defaults[i];
        return text;
    }

    ZrNode *node_;
    ZrsLeafListInfo *info_;
};

TEST_F(LeafListDefaults, AreAppendedInOrder)
{
    EXPECT_EQ(Append({"a", "b"}), ZR_OK);
    EXPECT_EQ(Append({"c", "a"}), ZR_OK);
    EXPECT_EQ(Defaults(), "abca");
    EXPECT_EQ(Append({}), ZR_OK);
    EXPECT_EQ(info_->defaultCount, 4);
}

TEST_F(LeafListDefaults, AppendingNothingToNothingSucceeds)
{
    EXPECT_EQ(Append({}), ZR_OK);
    EXPECT_EQ(info_->defaults, nullptr);
}

TEST_F(LeafListDefaults, AreAppendedAllOrNoneWhenMemoryRunsOut)
{
    for (bool filled : {false, true}) {
        if (filled) {
            ASSERT_EQ(Append({"old"}), ZR_OK);
        }
        FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
            uint32_t status = memory.Run([&] {
                return Append({"a new text", "another text", "a third one"});
            });
            EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
            std::string before = filled ? "old" : "";
            EXPECT_EQ(Defaults(),
                      memory.Failed() ? before : before + "a new textanother texta third one");
            if (memory.Failed()) {
                EXPECT_EQ(info_->defaults == nullptr, !filled);
                return;
            }
            for (uint32_t i = filled ? 1 : 0; i < info_->defaultCount; ++i)
                zr::Release(dict_, info_->defaults[i]);
            ASSERT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, filled ? 1 : 0), ZR_OK);
        });
    }
}

TEST_F(LeafListDefaults, MoreThanACounterHoldsAreRefused)
{
    std::vector<const char *> values(65535, "x");
    ASSERT_EQ(Append(values), ZR_OK);
    EXPECT_EQ(info_->defaultCount, 65535);
    EXPECT_EQ(Append({"y"}), ZR_ERR_INVALID);
    EXPECT_EQ(info_->defaultCount, 65535);
    for (uint32_t i = 1; i < info_->defaultCount; ++i)
        zr::Release(dict_, info_->defaults[i]);
    ASSERT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 1), ZR_OK);
    values.pop_back();
    EXPECT_EQ(Append(values), ZR_OK);
    EXPECT_EQ(info_->defaultCount, 65535);
}

TEST_F(LeafListDefaults, TheGapsOfReleasedOnesAreClosed)
{
    ASSERT_EQ(Append({"a", "b", "c", "b"}), ZR_OK);
    zr::Release(dict_, info_->defaults[1]);
    zr::Release(dict_, info_->defaults[3]);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 2), ZR_OK);
    EXPECT_EQ(Defaults(), "ac");
    EXPECT_EQ(Append({"d"}), ZR_OK);
    EXPECT_EQ(Defaults(), "acd");
}

TEST_F(LeafListDefaults, NothingIsLeftWhenAllAreReleased)
{
    ASSERT_EQ(Append({"a", "b"}), ZR_OK);
    zr::Release(dict_, info_->defaults[0]);
    zr::Release(dict_, info_->defaults[1]);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 0), ZR_OK);
    EXPECT_EQ(info_->defaults, nullptr);
    EXPECT_EQ(info_->defaultCount, 0);
}

TEST_F(LeafListDefaults, AWrongCountChangesNothing)
{
    ASSERT_EQ(Append({"a", "b", "c"}), ZR_OK);
    zr::Release(dict_, info_->defaults[1]);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 3), ZR_ERR_INVALID);
    EXPECT_EQ(info_->defaultCount, 3);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 2), ZR_OK);
    EXPECT_EQ(Defaults(), "ac");
}

TEST_F(LeafListDefaults, NullArgumentsAreRefused)
{
    const char *const values[] = {"a"};
    EXPECT_EQ(ZRS_NODE_AppendLeaflistDefaults(nullptr, info_, values, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendLeaflistDefaults(dict_, nullptr, values, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendLeaflistDefaults(dict_, info_, nullptr, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(nullptr, info_, 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, nullptr, 0), ZR_ERR_INVALID);
    EXPECT_EQ(info_->defaultCount, 0);
}

} // namespace
