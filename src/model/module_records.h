// SPDX-License-Identifier: Apache-2.0
// The module record, and the small records that modules and nodes hold in counted arrays. All
// strings are interned in the context's dictionary; each record holds a reference of its own to
// each of them.
#pragma once

#include <zrschema/types.h>

#include <cstdint>
#include <iterator>
#include <type_traits>

#include "foundation/context_record.h"
#include "model/type_records.h"
#include "platform/avl.h"

// A use of an extension, with those that stand below it (RFC 7950, section 7.19).
struct ZrsExtInst {
    const char *moduleName;    // of the module that defines the extension
    const char *extensionName; // null: removed
    const char *argument;      // or null
    uint16_t childCount;
    ZrsExtInst *children;
};

// A feature that must be on (section 7.20.2).
struct ZrsIfFeature {
    const char *moduleName; // of the module that defines the feature
    const char *featureName;
};

// A "must" (section 7.5.3).
struct ZrsMust {
    const char *condition;    // XPath, prefixes replaced by module names
    const char *errorMessage; // or null
    const char *errorAppTag;  // or null
};

// An import (section 7.1.5); it binds to whatever revision is loaded.
struct ZrsImport {
    const char *moduleName;
    const char *prefix;
};

// An included submodule (section 7.1.6).
struct ZrsInclude {
    const char *submoduleName;
};

// Bits of ZrsFeature::flags.
enum : uint16_t { ZRS_FEATURE_ENABLED = 0x40 };

// A feature (section 7.20.1).
struct ZrsFeature {
    const char *name;
    ZrsIfFeature *ifFeatures;
    uint16_t ifFeatureCount;
    uint16_t flags;
};

// An identity (section 7.18).
struct ZrsIdentity {
    const char *name;
    uint16_t ifFeatureCount;
    uint16_t baseCount;
    ZrsIfFeature *ifFeatures;
    ZrsIdentBase *bases;
    const char *description; // or null
};

// An extension that the module defines (section 7.19).
struct ZrsExtension {
    const char *name;
    const char *argument; // its name, or null
    uint32_t yinElement;  // set: in YIN the argument is an element
};

// A typedef (section 7.3). The loader writes its sub-statements into these fields one by one.
struct ZrsTypDef {
    const char *name;
    const char *defaultValue; // or null
    const char *units;        // or null
    ZrtRealType realType;
};

enum ZrsDeviateKind : uint32_t {
    ZRS_DEVIATE_ADD = 1,
    ZRS_DEVIATE_DELETE = 2,
    ZRS_DEVIATE_NOT_SUPPORTED = 3,
    ZRS_DEVIATE_REPLACE = 4
};

// Bits of ZrsDeviate::flags beside the config and mandatory bits of ZrNode::flags.
enum : uint16_t {
    ZRS_DEVIATE_ENTRY_RULES = 0x4000,       // it has a ZrsEntryRules
    ZRS_DEVIATE_DEFAULTS_QUALIFIED = 0x8000 // identity defaults name their modules
};

// One "deviate" of a deviation (section 7.20.3.2).
struct ZrsDeviate {
    uint32_t kind;  // ZrsDeviateKind
    uint16_t flags; // ZRS_FLAG_... of config and mandatory, ZRS_DEVIATE_...
    uint16_t mustCount;
    uint16_t defaultCount;
    uint16_t extInstCount;
    ZrsMust *musts;
    const char **defaults;
    ZrtRealType *type; // or null
    const char *units; // or null
    ZrsExtInst *extInsts;
};

// Bits of ZrsDeviation::flags; none for a deviation that was not tried on its target yet.
enum : uint16_t {
    ZRS_DEVIATION_COUPLED = 0x1, // it has changed its target
    // Applying it failed part of the way, and what was changed stays. It is not tried again on the
    // same target, since the changes would be made twice.
    ZRS_DEVIATION_FAILED = 0x2
};

// A deviation (section 7.20.3).
struct ZrsDeviation {
    const char *targetPath; // in module-name form
    ZrsDeviate *deviates;
    uint16_t deviateCount;
    uint16_t flags;
};

#if UINTPTR_MAX == UINT32_MAX
static_assert(sizeof(ZrsExtInst) == 20);
static_assert(sizeof(ZrsIfFeature) == 8);
static_assert(sizeof(ZrsMust) == 12);
static_assert(sizeof(ZrsFeature) == 12);
static_assert(sizeof(ZrsIdentity) == 20);
static_assert(sizeof(ZrsExtension) == 12);
static_assert(sizeof(ZrsTypDef) == 24);
static_assert(sizeof(ZrsDeviate) == 32);
static_assert(sizeof(ZrsDeviation) == 12);
#endif

// The module record: header texts, eight counted arrays of members, and the heads of four chains of
// top-level nodes. All strings are interned. The module owns everything in it but the private data.

// Values of ZrMod::yangVersion.
enum : uint32_t { ZRS_YANG_VERSION_1 = 0, ZRS_YANG_VERSION_1_1 = 1 };

struct ZrsFilePrefixes;

struct ZrMod {
    ZrCtx *ctx;
    const char *name;
    const char *ns; // XML namespace
    const char *prefix;
    const char *organization;
    uint32_t yangVersion; // ZRS_YANG_VERSION_...
    uint16_t importCount;
    uint16_t includeCount;
    ZrsImport *imports;
    ZrsInclude *includes;
    const char *description;
    const char *revision; // the newest
    uint16_t featureCount;
    uint16_t identityCount;
    uint16_t extensionCount;
    uint16_t typedefCount;
    uint16_t deviationCount;
    uint16_t extInstCount;
    ZrsFeature *features;
    ZrsIdentity *identities;
    ZrsExtension *extensions;
    ZrsTypDef *typedefs;
    ZrsDeviation *deviations;
    ZrsExtInst *extInsts;
    // The first nodes of four chains of siblings.
    ZrNode *dataNodes;
    ZrNode *rpcs;
    ZrNode *notifications;
    ZrNode *augments;
    uint16_t mergeSourceCount;
    const char **mergeSources; // suffixes of the files read for this module
    void *privateData;         // the application's
    PalAvlNode byNameLink;     // the context's two trees
    PalAvlNode byNamespaceLink;
    // For each of the four chains, in the order of their heads: null, or the node of the chain that
    // was appended last, where the next append begins to look for the end.
    ZrNode *lastAppended[4];
    const ZrsFilePrefixes *file; // the file that is being read into the module, else null
};

namespace zr {
// The heads of a module's chains of top-level nodes, in the order in which they are searched.
enum TopChain : uint32_t { kDataNodes, kRpcs, kNotifications, kAugments, kTopChainCount };
inline constexpr ZrNode *ZrMod::*kTopChains[] = {&ZrMod::dataNodes, &ZrMod::rpcs,
                                                 &ZrMod::notifications, &ZrMod::augments};
static_assert(std::size(kTopChains) == kTopChainCount);
static_assert(kTopChains[kDataNodes] == &ZrMod::dataNodes && kTopChains[kRpcs] == &ZrMod::rpcs);
static_assert(kTopChains[kNotifications] == &ZrMod::notifications);
static_assert(kTopChains[kAugments] == &ZrMod::augments);
static_assert(std::extent_v<decltype(ZrMod::lastAppended)> == kTopChainCount);
} // namespace zr
