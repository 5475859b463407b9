// SPDX-License-Identifier: Apache-2.0
// Modules in a directory of their own, and pending tables, for the tests of unloading.
#pragma once

#include "loader/unload.h"
#include "schema/coupling_fixture.h"

namespace zrtest {

constexpr uint32_t kKeepAll = ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS;

// A context over a directory of its own.
class Dir {
public:
    explicit Dir(uint32_t flags = kKeepAll) : ctx(flags)
    {
        EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, dir.path().c_str()), ZR_OK);
    }
    // Writes a module and loads it.
    void Add(const std::string &name, const std::string &body)
    {
        dir.Write(name + ".yin", ModuleText(name, body));
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK) << name;
    }
    // The schema that the other modules of the directory give without it.
    std::string Fresh(const std::vector<std::string> &names)
    {
        TestContext other(kKeepAll);
        EXPECT_EQ(ZR_CTX_SetSearchDir(other, dir.path().c_str()), ZR_OK);
        for (const std::string &name : names)
            EXPECT_EQ(ZR_CTX_LoadModule(other, name.c_str()), ZR_OK) << name;
        return DumpContext(other);
    }

    TempDir dir;
    TestContext ctx;
};

// A pending table with one module.
class Table {
public:
    explicit Table(const char *name)
    {
        zr::InitPendTable(&table_);
        EXPECT_EQ(zr::AppendPending(&table_, name), ZR_OK);
    }
    ~Table() { zr::FreePendTable(&table_); }
    ZrsPendTbl *get() { return &table_; }
    ZrsPendNode *node() { return reinterpret_cast<ZrsPendNode *>(table_.nodes.next); }

private:
    ZrsPendTbl table_;
};

} // namespace zrtest
