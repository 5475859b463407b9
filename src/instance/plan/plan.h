// SPDX-License-Identifier: Apache-2.0
// The plan: what the modules of a context mean for data. Made once, never changed afterwards, used
// by any number of threads.
#pragma once

#include <libxml/tree.h>
#include <zrschema/zrschema.h>

#include <algorithm>
#include <memory_resource>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "instance/base/memory.h"
#include "instance/plan/type.h"

namespace zr::data {

struct PlanModule {
    std::string_view name; // NUL-terminated
    ZrMod *source;
    xmlNs xml; // its namespace, under its name as the prefix, for the elements of trees
    std::span<const std::string_view> annotations; // names of those that it defines (RFC 7952)
};

// An expression in the form in which libxml2 evaluates it: each name with its module's name as the
// prefix.
struct Expression {
    const char *text;         // null when it cannot be used
    const char *source;       // as the schema holds it
    const char *fault;        // what is wrong with it, when it cannot be used
    const PlanModule *module; // of the names without prefix
    uint32_t number;          // from 0, among the expressions of the plan
};

struct Condition {
    const Expression *expression;
    const char *message; // null: the schema has none
    const char *appTag;
};

// One argument of "unique": the leafs that make it, each as the nodes that lead to it from the
// list.
using UniquePath = std::span<const PlanNode *>;

struct PlanNode {
    enum Flag : uint16_t {
        kConfig = 1,
        kMandatory = 2,
        kPresence = 4,
        kUserOrdered = 8,
        kKey = 16,
        // Something directly in it, or in its choices and cases, must be there.
        kAsks = 32,
        // The same may come into use by default, or is a non-presence container.
        kFills = 64,
        // Operations or notifications are defined in it.
        kSpeaks = 128,
        // Something is asked of its instances beyond their names and values.
        kWatched = 256
    };

    const ZrNode *source; // null for the root
    const PlanModule *module;
    const char *name;
    uint32_t kind; // ZrNodeKind; ZR_NODE_UNKNOWN for the root
    uint16_t flags;
    PlanNode *parent;                   // in data: no choice, no case; null for the root
    PlanNode *schemaParent;             // choices and cases included
    std::span<PlanNode *> children;     // choices included, in schema order
    std::span<PlanNode *> dataChildren; // through choices and cases, in schema order
    uint32_t slot;                      // its place among the parent's slots
    uint32_t slotCount;                 // dataChildren, and one for a message if it kSpeaks
    uint32_t minElements, maxElements;  // 0: no maximum
    // Defaults come into use rank by rank: this node's, and the last of what is directly in it.
    uint32_t rank, lastRank;
    std::span<const PlanNode *> keys;
    std::span<std::span<UniquePath>> uniques;
    const Expression *when;
    std::span<Condition> musts;
    std::span<std::string_view> defaults; // as the schema has them
    const PlanNode *defaultCase;          // of a choice
    const Type *type;

    bool Is(Flag flag) const { return (flags & flag) != 0; }
    bool IsLeaf() const { return kind == ZR_NODE_LEAF || kind == ZR_NODE_LEAF_LIST; }
    bool IsAny() const { return kind == ZR_NODE_ANYDATA || kind == ZR_NODE_ANYXML; }
    bool IsChoiceOrCase() const { return kind == ZR_NODE_CHOICE || kind == ZR_NODE_CASE; }
    bool IsRepeated() const { return kind == ZR_NODE_LIST || kind == ZR_NODE_LEAF_LIST; }
    bool IsMessage() const
    {
        return kind == ZR_NODE_RPC || kind == ZR_NODE_ACTION || kind == ZR_NODE_NOTIFICATION;
    }
};

// An operation or a notification. Each direction is a node of the data in which it is defined, with
// the name of the operation and, as its children, the parameters (RFC 7950, section 6.4.1). None of
// these nodes is configuration.
struct Message {
    uint32_t kind;     // ZR_NODE_RPC, ZR_NODE_ACTION or ZR_NODE_NOTIFICATION
    PlanNode *request; // the input, or what a notification holds
    PlanNode *reply;   // the output; null for a notification
};

// A child by its name: the names of the schema are compared as texts.
struct ChildKey {
    const PlanNode *parent;
    const PlanModule *module;
    std::string_view name;
    bool operator==(const ChildKey &) const = default;
};
struct ChildKeyHash {
    size_t operator()(const ChildKey &key) const;
};

// An expression that cannot be used.
struct Problem {
    const char *path; // of the schema node that has it
    const char *expression;
    const char *message;
};

class Plan {
public:
    explicit Plan(const ZrDataMemory &hooks);
    ~Plan();
    Plan(const Plan &) = delete;
    Plan &operator=(const Plan &) = delete;

    const PlanModule *FindModule(std::string_view name) const;
    // Whether a module that is loaded defines an annotation of that name.
    bool HasAnnotation(std::string_view uri, std::string_view name) const;
    const PlanModule *FindNamespace(std::string_view uri) const;
    // A data child, also one inside choices and cases; null when there is none.
    const PlanNode *FindChild(const PlanNode &parent, const PlanModule *module,
                              std::string_view name) const;
    // An operation or notification that is defined in a data node or at the top.
    const Message *FindMessage(const PlanNode &parent, const PlanModule *module,
                               std::string_view name) const;
    // The message that a leaf stands in, as a child of the node in which the message is defined;
    // null when another child is asked for.
    static const PlanNode *FindOwnMessage(const PlanNode &leaf, const PlanNode &parent,
                                          const PlanModule *module, std::string_view name);
    // An operation by a path of names, "MODULE:RPC" or "/MODULE:NODE/.../ACTION"; null when there
    // is none.
    const Message *FindOperation(std::string_view path) const;
    const Identity *FindIdentity(std::string_view qualified) const;
    void AddProblem(const PlanNode &node, const char *expression, const char *message);

    mutable HookResource memory; // any thread that checks data may take from it
    Arena arena;
    const ZrCtx *ctx = nullptr;
    uint64_t stamp = 0; // of the context's modules when the plan was made
    PlanNode root = {};
    uint32_t lastRank = 0; // of all nodes
    std::pmr::vector<PlanModule *> modules;
    std::pmr::unordered_map<std::string_view, PlanModule *> modulesByName, modulesByNamespace;
    std::pmr::unordered_map<ChildKey, PlanNode *, ChildKeyHash> childrenByName;
    std::pmr::unordered_map<ChildKey, Message *, ChildKeyHash> messagesByName;
    std::pmr::unordered_map<std::string_view, Identity *> identities;
    std::pmr::unordered_map<std::string_view, Pattern *> patterns;
    std::pmr::vector<const Expression *> expressions;
    std::pmr::vector<Problem> problems;
};

// A copy of the items that lives as long as the plan.
template <typename T> std::span<T> Keep(Arena &arena, const std::pmr::vector<T> &items)
{
    T *kept = arena.NewArray<T>(items.size());
    std::copy(items.begin(), items.end(), kept);
    return {kept, items.size()};
}

bool IsDerived(const Identity &identity, const Identity &base);

// A number that changes when modules come, go or are replaced, and when features are turned on or
// off.
uint64_t StampOf(const ZrCtx *ctx);

} // namespace zr::data
