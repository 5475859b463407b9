// SPDX-License-Identifier: Apache-2.0
// Single statements parsed into the record of a module that is not loaded.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "foundation/array.h"
#include "foundation/dict.h"
#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "platform/xml.h"
#include "schema/members/members.h"
#include "schema/module/module.h"
#include "schema/nodes/node.h"
#include "support/alloc.h"
#include "support/context.h"

namespace zrtest {

constexpr const char *kYinNs = "urn:ietf:params:xml:ns:yang:yin:1";

// Elements parsed from text: YIN is the default namespace, "x" and "acm" are the prefixes of two
// other modules, "q" is one that no module imports.
class Yin {
public:
    explicit Yin(const std::string &xml)
    {
        std::string text = "<wrap xmlns=\"" + std::string(kYinNs) +
                           "\" xmlns:x=\"urn:x\" xmlns:acm=\"urn:acm\" xmlns:q=\"urn:q\">" + xml +
                           "</wrap>";
        doc_ = zr::ParseXmlText(text.c_str(), text.size());
        EXPECT_NE(doc_, nullptr) << xml;
    }
    ~Yin() { xmlFreeDoc(doc_); }
    Yin(const Yin &) = delete;
    Yin &operator=(const Yin &) = delete;
    // The element around everything, and the first element inside it.
    xmlNode *wrap() const { return xmlDocGetRootElement(doc_); }
    xmlNode *first() const { return xmlFirstElementChild(wrap()); }

private:
    xmlDoc *doc_;
};

// A context and the record of a module "t" (prefix "t") that imports "x-mod" as "x" and
// "ietf-netconf-acm" as "acm".
class ModuleUnderTest {
public:
    explicit ModuleUnderTest(uint32_t flags = 0) : ctx(flags), module_(zr::NewModule(ctx))
    {
        module_->name = Text("t");
        module_->prefix = Text("t");
        EXPECT_EQ(ZRS_MOD_AppendOneImport(module_, "x-mod", "x"), ZR_OK);
        EXPECT_EQ(ZRS_MOD_AppendOneImport(module_, "ietf-netconf-acm", "acm"), ZR_OK);
    }
    ~ModuleUnderTest() { ZRS_MOD_Free(module_); }
    ModuleUnderTest(const ModuleUnderTest &) = delete;
    ModuleUnderTest &operator=(const ModuleUnderTest &) = delete;

    ZrMod *get() const { return module_; }
    ZrMod *operator->() const { return module_; }
    operator ZrMod *() const { return module_; }
    ZrDict *dict() const { return &module_->ctx->dict; }
    const char *Text(const char *text) { return ZR_DICT_Insert(dict(), text); }
    std::vector<std::string> Messages() { return ctx.Messages("t"); }

    TestContext ctx;

private:
    ZrMod *module_;
};

// Parses one statement and returns its status.
template <typename Destination>
uint32_t Parse(ModuleUnderTest &module, ZrsParser parser, const std::string &xml,
               Destination *destination, uint32_t parentStatement = ZRS_STMT_UNKNOWN)
{
    Yin yin(xml);
    return parser(module, yin.first(), parentStatement,
                  const_cast<void *>(static_cast<const void *>(destination)));
}

// An interned text that is given back at the end of the scope.
class OwnedText {
public:
    explicit OwnedText(ModuleUnderTest &module) : module_(module) {}
    ~OwnedText() { ZR_DICT_Remove(module_.dict(), text_); }
    OwnedText(const OwnedText &) = delete;
    OwnedText &operator=(const OwnedText &) = delete;
    const char **slot() { return &text_; }
    const char *get() const { return text_; }

private:
    ModuleUnderTest &module_;
    const char *text_ = nullptr;
};

} // namespace zrtest
