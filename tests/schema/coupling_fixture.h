// SPDX-License-Identifier: Apache-2.0
// Small modules from strings for the tests of augments, deviations and change events.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "schema/augment/augment.h"
#include "schema/deviation/deviation.h"
#include "schema/lookup/lookup.h"
#include "schema/members/condition_records.h"
#include "schema/module/module.h"
#include "schema/nodes/node.h"
#include "support/alloc.h"
#include "support/context.h"
#include "support/schema_dump.h"

namespace zrtest {

// What "config" and "mandatory" set in a node's flags.
constexpr uint32_t kConfigBits =
    ZRS_FLAG_CONFIG_TRUE | ZRS_FLAG_CONFIG_FALSE | ZRS_FLAG_CONFIG_GIVEN;
constexpr uint32_t kMandatoryBits = ZRS_FLAG_MANDATORY_TRUE | ZRS_FLAG_MANDATORY_FALSE;

using namespace yin;

// The names of a node's children, in order.
inline std::vector<std::string> ChildNames(const ZrNode *node)
{
    std::vector<std::string> names;
    for (const ZrNode *child = node->firstChild; child != nullptr; child = child->next) {
        names.emplace_back(child->name);
        if (child == node->lastChild)
            break;
    }
    return names;
}

// A module m and a module d that deviates it, both loaded; units are kept.
class Deviated {
public:
    Deviated(const std::string &mBody, const std::string &deviations)
    {
        EXPECT_EQ(ctx.LoadBody("m", mBody), ZR_OK);
        EXPECT_EQ(
            ctx.LoadBody("d", Import("m") + Import("ietf-netconf-acm") + Import("e") + deviations),
            ZR_OK);
    }
    ZrNode *Node(const char *path) { return ctx.Node(path); }
    ZrsLeafInfo *LeafOf(const char *path) { return static_cast<ZrsLeafInfo *>(Node(path)->info); }
    ZrsLeafListInfo *LeafListOf(const char *path)
    {
        return static_cast<ZrsLeafListInfo *>(Node(path)->info);
    }
    const char *ChoiceDefault(const char *path)
    {
        return static_cast<ZrsChoiceInfo *>(Node(path)->info)->defaultCase;
    }
    std::vector<std::string> DefaultsOf(const char *path)
    {
        std::vector<std::string> values;
        for (int i = 0; i < LeafListOf(path)->defaultCount; ++i)
            values.emplace_back(LeafListOf(path)->defaults[i]);
        return values;
    }
    std::vector<std::string> MustsOf(const char *path)
    {
        std::vector<std::string> conditions;
        for (int i = 0; i < Node(path)->mustCount; ++i)
            conditions.emplace_back(Node(path)->musts[i].condition);
        return conditions;
    }
    std::vector<std::string> ExtensionsOf(const char *path)
    {
        std::vector<std::string> names;
        for (int i = 0; i < Node(path)->extInstCount; ++i)
            names.emplace_back(Node(path)->extInsts[i].extensionName);
        return names;
    }
    ZrsDeviation &First() { return ctx.Module("d")->deviations[0]; }
    bool IsApplied() { return First().flags == ZRS_DEVIATION_COUPLED; }
    bool HasFailed() { return First().flags == ZRS_DEVIATION_FAILED; }
    // What was recorded for the deviating module, the summary of the load included when it failed.
    std::vector<std::string> Messages() { return ctx.Messages("d"); }

    TestContext ctx{ZR_CTX_KEEP_UNITS};
};

// Uses of the extensions of module "e" and of NETCONF access control.
inline std::string Ext(const std::string &name)
{
    return "<e:" + name + " xmlns:e=\"urn:e\"/>";
}
inline std::string Nacm(const std::string &name)
{
    return "<ietf-netconf-acm:" + name + " xmlns:ietf-netconf-acm=\"urn:ietf-netconf-acm\"/>";
}
// A choice of the cases "one" and "two", each with a leaf.
inline std::string ChoiceOfTwo(const std::string &name, const std::string &inside = "")
{
    return Choice(name, inside + Case("one", Leaf("x1")) + Case("two", Leaf("x2")));
}

} // namespace zrtest
