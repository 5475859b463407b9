// SPDX-License-Identifier: Apache-2.0
// The schema node record, its flags and its per-kind information.
#pragma once

#include <cstddef>
#include <cstdint>
#include <zrschema/types.h>

#include "model/module_records.h"

// Bits of ZrNode::flags. The config and NACM bits pass to the nodes below; the others are the
// node's own.
enum ZrsNodeFlag : uint32_t {
    ZRS_FLAG_COUPLED = 0x1, // augment nodes: the children stand in the target
    ZRS_FLAG_CONFIG_TRUE = 0x2,
    ZRS_FLAG_CONFIG_FALSE = 0x4,
    ZRS_FLAG_CONFIG_GIVEN = 0x8, // by an own "config" statement
    ZRS_FLAG_MANDATORY_TRUE = 0x10,
    ZRS_FLAG_MANDATORY_FALSE = 0x20,
    ZRS_FLAG_ORDERED_BY_USER = 0x80, // "ordered-by" "system" sets nothing
    ZRS_FLAG_KEY = 0x100,            // a leaf that its list's "key" names
    ZRS_FLAG_DEPRECATED = 0x200,     // "status" "current" sets nothing
    ZRS_FLAG_OBSOLETE = 0x400,
    ZRS_FLAG_PRESENCE = 0x800,     // containers
    ZRS_FLAG_DENY_WRITE = 0x1000,  // default-deny-write of ietf-netconf-acm
    ZRS_FLAG_DENY_ALL = 0x2000,    // default-deny-all of ietf-netconf-acm
    ZRS_FLAG_MADE_TARGET = 0x4000, // augment nodes: coupling made the target, "input" or "output"

    ZRS_FLAGS_COUPLING = ZRS_FLAG_COUPLED | ZRS_FLAG_MADE_TARGET, // that no statement sets
    ZRS_FLAGS_CONFIG = ZRS_FLAG_CONFIG_TRUE | ZRS_FLAG_CONFIG_FALSE,
    ZRS_FLAGS_MANDATORY = ZRS_FLAG_MANDATORY_TRUE | ZRS_FLAG_MANDATORY_FALSE,
    ZRS_FLAGS_NACM = ZRS_FLAG_DENY_WRITE | ZRS_FLAG_DENY_ALL
};

// Bits of ZrNode::marks: what the flags cannot tell any more, so that they come out the same
// whichever of the modules that change them arrives first.
enum ZrsNodeMark : uint8_t {
    ZRS_MARK_CONFIG_YIELDED = 0x1,  // an own "config true" gave way to state data above
    ZRS_MARK_CONFIG_DEVIATED = 0x2, // a deviation set "config"; it holds below any parent
    ZRS_MARK_WRITE_DEVIATED = 0x4,  // a deviation added default-deny-write
    ZRS_MARK_ALL_DEVIATED = 0x8     // a deviation added default-deny-all
};

// Bits of ZrsEntryRules::given.
enum : uint16_t { ZRS_ENTRY_MIN = 0x1, ZRS_ENTRY_MAX = 0x2 };

// What a list or leaf-list says of its entries (RFC 7950, sections 7.7.5, 7.7.6, 7.8.2 and 7.8.3),
// or a "deviate" of those of its target. Only contexts with ZR_CTX_STANDARD have such records, in a
// tree of their own, and only for who says something.
struct ZrsEntryRules {
    const void *owner; // ZrNode or ZrsDeviate: the key
    PalAvlNode link;
    uint32_t minElements;
    uint32_t maxElements; // 0: unbounded
    uint16_t given;       // ZRS_ENTRY_...: the statements that are there
    uint16_t uniqueCount;
    const char **uniques; // interned, with module names
    const char *key;      // interned, the argument of "key"; null for other nodes and for deviates
};

// The per-kind information, born and freed with its node. All strings are interned.
struct ZrsLeafInfo {
    ZrtRealType realType;
    const char *defaultValue; // or null
    const char *units;        // or null
};

struct ZrsLeafListInfo {
    ZrtRealType realType;
    const char **defaults;
    uint16_t defaultCount;
    const char *units; // or null
};

struct ZrsChoiceInfo {
    const char *defaultCase; // or null
};

// One statement of a schema tree. Texts are interned in the context's dictionary; the node owns
// them, its arrays, its information and every node from `firstChild` on along `next`.
//
// While an augment is coupled its children stand in the target's chain, with the target as their
// parent; the augment's own `firstChild` and `lastChild` mark them as a stretch of that chain, so a
// walk over an augment's children ends at `lastChild`, not where `next` is null.
struct ZrNode {
    ZrNode *parent; // null for a top-level node
    ZrNode *firstChild;
    ZrNode *lastChild;
    ZrNode *next;
    ZrNode *prev;
    ZrMod *module;    // that defines the node, also after coupling
    const char *name; // of an augment: its target path
    const char *description;
    uint32_t kind;    // ZrNodeKind
    uint32_t flags;   // ZRS_FLAG_...
    const char *when; // condition, with what was inherited from an augment; or null
    ZrsIfFeature *ifFeatures;
    ZrsMust *musts;
    uint16_t ifFeatureCount;
    uint16_t mustCount;
    uint16_t extInstCount;
    uint8_t keyCount; // lists
    uint8_t marks;    // ZRS_MARK_...
    ZrsExtInst *extInsts;
    void *info;        // ZrsLeafInfo, ZrsLeafListInfo, ZrsChoiceInfo or null
    void *privateData; // the application's
};

#if UINTPTR_MAX == UINT32_MAX
static_assert(sizeof(ZrsLeafInfo) == 20);
static_assert(sizeof(ZrsLeafListInfo) == 24);
static_assert(sizeof(ZrsChoiceInfo) == 4);
static_assert(sizeof(ZrNode) == 72);
static_assert(offsetof(ZrNode, kind) == 32);
static_assert(offsetof(ZrNode, keyCount) == 58);
static_assert(offsetof(ZrNode, marks) == 59);
static_assert(offsetof(ZrNode, extInsts) == 60);
#endif
