// SPDX-License-Identifier: Apache-2.0
#include "types/chains.h"

#include <gtest/gtest.h>

#include "types/leaf.h"

namespace {

using zr::TypedefChain;
using zrtest::Leaf;
using zrtest::Typedefs;

const TypedefChain::How kBothWays[] = {TypedefChain::kByName, TypedefChain::kResolved};

TEST(TypedefChain, EndsAtTheBuiltInType)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(3, "string"));
    for (TypedefChain::How how : kBothWays) {
        TypedefChain chain(leaf.context(), leaf.type(), how);
        for (const char *name : {"t1", "t2", "t3"}) {
            ASSERT_TRUE(chain.Next());
            EXPECT_STREQ(chain.TypedefName(), name);
            EXPECT_STREQ(chain.ModuleName(), "m");
        }
        EXPECT_FALSE(chain.Next());
        EXPECT_EQ(chain.Links(), 3u);
        EXPECT_EQ(chain.Type()->baseType, ZRT_TYPE_STRING);
    }
}

TEST(TypedefChain, HasNoLinkBehindABuiltInType)
{
    Leaf leaf("<type name=\"string\"/>");
    TypedefChain chain(leaf.context(), leaf.type(), TypedefChain::kByName);
    EXPECT_FALSE(chain.Next());
    EXPECT_EQ(chain.Type(), leaf.type());
    EXPECT_EQ(chain.TypedefName(), nullptr);
}

TEST(TypedefChain, FindsDefinitionsByNameAlone)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(1, "string"));
    TypedefChain byName(leaf.context(), leaf.type(), TypedefChain::kByName);
    ASSERT_TRUE(byName.Next());
    ASSERT_NE(byName.Definition(), nullptr);
    EXPECT_STREQ(byName.Definition()->name, "t1");
    TypedefChain withoutContext(nullptr, leaf.type(), TypedefChain::kByName);
    ASSERT_TRUE(withoutContext.Next());
    EXPECT_EQ(withoutContext.Definition(), nullptr);
    EXPECT_EQ(withoutContext.Type(), nullptr);
    EXPECT_FALSE(withoutContext.Next());
    TypedefChain resolved(nullptr, leaf.type(), TypedefChain::kResolved);
    ASSERT_TRUE(resolved.Next());
    EXPECT_EQ(resolved.Type()->baseType, ZRT_TYPE_STRING);
}

TEST(TypedefChain, StopsAfterTheMostLinks)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(zr::kMaxChainLinks + 1, "string"));
    for (TypedefChain::How how : kBothWays) {
        TypedefChain chain(leaf.context(), leaf.type(), how);
        while (chain.Next()) {
        }
        EXPECT_EQ(chain.Links(), zr::kMaxChainLinks);
        EXPECT_EQ(chain.Type()->baseType, ZRT_TYPE_DERIVED);
    }
}

TEST(TypedefChain, CountsTheLinksThatWereFollowedBefore)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(3, "string"));
    TypedefChain chain(leaf.context(), leaf.type(), TypedefChain::kResolved,
                       zr::kMaxChainLinks - 1);
    EXPECT_TRUE(chain.Next());
    EXPECT_FALSE(chain.Next());
}

} // namespace
