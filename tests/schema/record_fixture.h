// SPDX-License-Identifier: Apache-2.0
// A context with counted allocations, modules made by hand, and failing allocations.
#pragma once

#include <gtest/gtest.h>
#include <zrschema/zrschema.h>

#include <string>
#include <vector>

#include "model/context.h"
#include "platform/memory.h"
#include "schema/module/module.h"
#include "schema/nodes/node.h"
#include "support/alloc.h"

namespace zrtest {

// Every test of this fixture also checks that deleting its context gives every block back.
class RecordTest : public ::testing::Test {
protected:
    RecordTest() : ctx_(ZR_CTX_Create(0)), dict_(&ctx_->dict) {}
    void TearDown() override
    {
        for (ZrMod *module : detached_)
            ZRS_MOD_Free(module);
        ZR_CTX_Delete(ctx_);
        EXPECT_EQ(guard_.LiveBlocks(), 0);
    }

    // A module with namespace urn:NAME and prefix NAME; `linked` ones are found in the context.
    ZrMod *NewModule(const std::string &name, bool linked = true)
    {
        ZrMod *module = zr::NewModule(ctx_);
        module->name = ZR_DICT_Insert(dict_, name.c_str());
        module->ns = ZR_DICT_Insert(dict_, ("urn:" + name).c_str());
        module->prefix = ZR_DICT_Insert(dict_, name.c_str());
        if (linked)
            EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, module), ZR_OK);
        else
            detached_.push_back(module);
        return module;
    }

    // Frees a module that is not linked before the end of the test.
    void FreeModule(ZrMod *module)
    {
        std::erase(detached_, module);
        ZRS_MOD_Free(module);
    }

    // A node of the module, linked nowhere.
    ZrNode *NewNode(ZrMod *module, uint32_t kind, const char *name)
    {
        ZrNode *node = ZRS_NODE_New(kind);
        node->module = module;
        node->name = ZR_DICT_Insert(dict_, name);
        return node;
    }
    // A node at the end of the list whose head is `head`.
    ZrNode *AddTop(ZrMod *module, ZrNode *&head, uint32_t kind, const char *name)
    {
        ZrNode *node = NewNode(module, kind, name);
        if (head == nullptr)
            head = node;
        else
            ZRS_NODE_AddSibling(head, node);
        return node;
    }
    ZrNode *AddData(ZrMod *module, uint32_t kind, const char *name)
    {
        return AddTop(module, module->dataNodes, kind, name);
    }
    ZrNode *AddChild(ZrNode *parent, uint32_t kind, const char *name)
    {
        ZrNode *node = NewNode(parent->module, kind, name);
        ZRS_NODE_AddChild(parent, node);
        return node;
    }

    AllocGuard guard_;
    ZrCtx *ctx_;
    ZrDict *dict_;

private:
    std::vector<ZrMod *> detached_;
};

} // namespace zrtest
