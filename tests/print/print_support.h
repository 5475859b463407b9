// SPDX-License-Identifier: Apache-2.0
// What the printer's tests share: printing into a string, and contexts with modules from strings.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/context.h"

namespace zrtest {

// Receives pieces of text and refuses the one with the number `failAt`.
struct Pieces {
    std::vector<std::string> pieces;
    size_t failAt = SIZE_MAX;

    std::string Whole() const
    {
        std::string text;
        for (const std::string &piece : pieces)
            text += piece;
        return text;
    }
};

inline uint32_t TakePiece(const char *text, uint32_t length, void *userData)
{
    auto *taken = static_cast<Pieces *>(userData);
    EXPECT_EQ(std::string(text).size(), length); // ends with a NUL
    if (taken->pieces.size() == taken->failAt)
        return 5;
    taken->pieces.emplace_back(text, length);
    return 0;
}

// The tree of a module with this body, all features on.
inline std::string TreeOfBody(const std::string &body)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", body), ZR_OK) << ::testing::PrintToString(ctx.Messages());
    return Tree(ctx.Module("m"));
}

// The tree of one node with its ancestors, or the status.
inline std::string NodeTree(const ZrNode *node)
{
    Pieces pieces;
    uint32_t status = ZR_NODE_PrintNodesTree(node, TakePiece, &pieces);
    return status == ZR_OK ? pieces.Whole() : "status " + std::to_string(status);
}

} // namespace zrtest
