#include "data/phases.h"

#include <gtest/gtest.h>

#include <cstring>

#include "data/schema.h"
#include "support/run.h"

namespace {

using namespace zrtest;

class ValidationRun : public ::testing::Test {
protected:
    Schema schema_{Rpc("op", Input(Leaf("d", "string", Default("x"))))};
};

TEST_F(ValidationRun, WantsATopElement)
{
    CheckRun run(schema_, ZRD_MODE_RPC);
    EXPECT_EQ(ZRD_PAS_ValidateDataTree(run, nullptr), ZR_ERR_INVALID);
}

TEST_F(ValidationRun, StartsEmpty)
{
    int userData = 0;
    auto callback = [](void *, void *) {};
    ZrdCheckAux check;
    std::memset(static_cast<void *>(&check), 0xff, sizeof(check));
    ZRD_PAS_InitCheckAux(&check, schema_, ZRD_MODE_NOTIF, callback, &userData);
    EXPECT_EQ(check.ctx, schema_.get());
    EXPECT_EQ(check.mode, ZRD_MODE_NOTIF);
    EXPECT_EQ(check.root, nullptr);
    EXPECT_EQ(check.actionElement, nullptr);
    EXPECT_EQ(check.error, nullptr);
    EXPECT_EQ(check.defaults.next, &check.defaults);
    EXPECT_EQ(check.defaults.prev, &check.defaults);
    EXPECT_NE(check.callback, nullptr);
    EXPECT_EQ(check.userData, &userData);
}

TEST_F(ValidationRun, TakesTheTopsParentForItsRoot)
{
    Document document(Data("op"));
    CheckRun run(schema_, ZRD_MODE_RPC);
    EXPECT_EQ(ZRD_PAS_ValidateDataTree(run, document.top()), ZR_OK);
    EXPECT_EQ(run->root, reinterpret_cast<xmlNode *>(document.get()));
    EXPECT_EQ(run->defaults.next->next, &run->defaults);
}

} // namespace
