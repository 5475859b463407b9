// SPDX-License-Identifier: Apache-2.0
// Two modules of one name to be merged, typedefs and leafs made by hand, and the messages.
#pragma once

#include <gmock/gmock.h>

#include <initializer_list>

#include "foundation/array.h"
#include "schema/augment/augment.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"
#include "types/real_type.h"

namespace zrtest {

class MergeTest : public RecordTest {
protected:
    void SetUp() override
    {
        destination_ = NewModule("m");
        source_ = NewModule("m", false);
    }

    // A type: "string", "int8", or derived from a typedef of the module.
    ZrtRealType Type(const ZrMod *module, const std::string &name)
    {
        ZrtRealType type = {};
        if (name == "string" || name == "int8") {
            type.baseType = name == "string" ? ZRT_TYPE_STRING : ZRT_TYPE_INT8;
            return type;
        }
        auto *body = zr::New<ZrtConsDerived>();
        body->moduleName = ZR_DICT_Insert(dict_, module->name);
        body->typedefName = ZR_DICT_Insert(dict_, name.c_str());
        GiveSlot(&type, ZRT_CONS_DERIVED, body);
        return type;
    }
    ZrtRealType UnionOf(const ZrMod *module, std::initializer_list<const char *> names)
    {
        auto *body = zr::New<ZrtConsUnion>();
        EXPECT_EQ(zr::NewArray(&body->items, static_cast<uint32_t>(names.size())), ZR_OK);
        for (const char *name : names)
            body->items[body->count++] = Type(module, name);
        ZrtRealType type = {};
        type.baseType = ZRT_TYPE_UNION;
        GiveSlot(&type, ZRT_CONS_UNION, body);
        return type;
    }
    void AddTypedef(ZrMod *module, const char *name, const char *typeName)
    {
        ZrtRealType type = Type(module, typeName);
        EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(module, name, &type, nullptr), ZR_OK);
        ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &type);
    }
    ZrNode *AddLeaf(ZrNode *parent, const char *name, const char *typeName)
    {
        ZrNode *leaf = AddChild(parent, ZR_NODE_LEAF, name);
        *TypeOf(leaf) = Type(parent->module, typeName);
        return leaf;
    }
    static ZrtRealType *TypeOf(ZrNode *leaf)
    {
        return const_cast<ZrtRealType *>(ZRS_NODE_GetLeafSchemaRealType(leaf));
    }
    static const ZrtRealType *Resolved(const ZrtRealType &type)
    {
        return ZRT_TYPE_GetTypeConsDataDerived(&type)->resolved;
    }

    // The names of the siblings from `node` on, each with its children in parentheses. Checks the
    // links on the way.
    static std::string Text(const ZrNode *node)
    {
        std::string text;
        const ZrNode *previous = nullptr;
        for (; node != nullptr; previous = node, node = node->next) {
            EXPECT_EQ(node->prev, previous) << node->name;
            text += std::string(previous == nullptr ? "" : " ") + node->name;
            if (node->firstChild != nullptr) {
                EXPECT_EQ(node->firstChild->parent, node);
                EXPECT_EQ(node->lastChild->next, nullptr);
                text += "(" + Text(node->firstChild) + ")";
            }
        }
        return text;
    }
    // Whether the siblings from `node` on and everything below them belong to the module.
    static bool AllBelongTo(const ZrNode *node, const ZrMod *module)
    {
        for (; node != nullptr; node = node->next) {
            if (node->module != module || !AllBelongTo(node->firstChild, module))
                return false;
        }
        return true;
    }

    std::vector<std::string> Messages()
    {
        std::vector<std::string> messages;
        auto collect = [](const char *, const char *, uint32_t kind, const char *message, uint32_t,
                          void *userData) {
            EXPECT_EQ(kind, uint32_t{ZR_LOAD_ERROR});
            static_cast<std::vector<std::string> *>(userData)->push_back(message);
            return uint32_t{0};
        };
        ZR_CTX_ScanAllSchemaLoadFail(ctx_, collect, &messages);
        return messages;
    }

    ZrMod *destination_ = nullptr;
    ZrMod *source_ = nullptr;

private:
    static void GiveSlot(ZrtRealType *type, uint32_t kind, void *body)
    {
        EXPECT_EQ(ZRT_TYPE_ExpandConstraintArray(type, 1), ZR_OK);
        type->constraints[0].kind = kind;
        type->constraints[0].body = body;
        type->consCount = 1;
    }
};

} // namespace zrtest
