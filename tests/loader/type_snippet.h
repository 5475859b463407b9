// SPDX-License-Identifier: Apache-2.0
// A "type" or "typedef" statement on its own: parsed from text, compiled in a module that stands in
// no tree.
#pragma once

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <string>

#include "loader/statements/statements.h"
#include "loader/types/type_fill.h"
#include "schema/members/members.h"
#include "schema/module/module.h"
#include "support/context.h"
#include "types/real_type.h"

namespace zrtest {

// An element in the YIN namespace; the prefix x is bound to another one.
class YinElement {
public:
    explicit YinElement(const std::string &text)
    {
        std::string whole = "<root xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\" xmlns:x=\"urn:x\">" +
                            text + "</root>";
        doc_ = xmlReadMemory(whole.data(), static_cast<int>(whole.size()), nullptr, nullptr,
                             XML_PARSE_HUGE | XML_PARSE_NOBLANKS);
    }
    ~YinElement() { xmlFreeDoc(doc_); }
    YinElement(const YinElement &) = delete;
    YinElement &operator=(const YinElement &) = delete;
    xmlNode *get() const { return xmlDocGetRootElement(doc_)->children; }

private:
    xmlDoc *doc_;
};

// Module "m" with the prefix "m" and an import of "types" as "t".
class SnippetModule {
public:
    explicit SnippetModule(uint32_t flags = 0) : ctx_(flags), module_(zr::NewModule(ctx_))
    {
        module_->name = ZR_DICT_Insert(&ctx_.get()->dict, "m");
        module_->prefix = ZR_DICT_Insert(&ctx_.get()->dict, "m");
        ZRS_MOD_AppendOneImport(module_, "types", "t");
    }
    ~SnippetModule() { ZRS_MOD_Free(module_); }
    SnippetModule(const SnippetModule &) = delete;
    SnippetModule &operator=(const SnippetModule &) = delete;
    TestContext &context() { return ctx_; }
    ZrMod *module() const { return module_; }
    std::vector<std::string> Messages() { return ctx_.Messages("m"); }

private:
    TestContext ctx_;
    ZrMod *module_;
};

// A compiled type statement.
class TypeSnippet : public SnippetModule {
public:
    explicit TypeSnippet(const std::string &text, uint32_t flags = 0)
        : SnippetModule(flags), element_(text),
          status_(ZRT_LOADER_ParseTypeStmt(module(), element_.get(), ZRS_STMT_LEAF, &type_))
    {
    }
    ~TypeSnippet() { ZRT_TYPE_DestroyZrtRealTypeInner(context(), &type_); }
    uint32_t status() const { return status_; }
    const ZrtRealType &type() const { return type_; }
    xmlNode *element() const { return element_.get(); }
    template <typename Body> const Body *Get(uint32_t kind) const
    {
        return static_cast<const Body *>(ZRT_TYPE_GetTypeConsDataByConsType(&type_, kind));
    }

private:
    YinElement element_;
    ZrtRealType type_ = {};
    uint32_t status_;
};

} // namespace zrtest
