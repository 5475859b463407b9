// A tree with a node of most kinds, and the run that matches it.
#pragma once

#include <gtest/gtest.h>

#include "data/phases.h"
#include "data/schema.h"
#include "support/run.h"

namespace zrtest {

class DataTree : public ::testing::Test {
protected:
    DataTree()
        : schema_(Container("top", Leaf("a", "string") + Container("box", Leaf("x", "string")) +
                                       List("l", "k", Leaf("k", "string") + Leaf("v", "string")) +
                                       "<choice name=\"way\"><case name=\"one\">" +
                                       Container("deep", Leaf("d", "string")) +
                                       "<choice name=\"inner\"><case name=\"i\">" +
                                       Leaf("in", "string") +
                                       "</case></choice></case><case name=\"two\">" +
                                       Leaf("t", "string") + "</case></choice>"))
    {
    }
    void Match(Document &document)
    {
        CheckRun run(schema_, ZRD_MODE_RPC);
        ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    }

    Schema schema_;
};

} // namespace zrtest
