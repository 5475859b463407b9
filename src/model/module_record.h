// The module record: header texts, eight counted arrays of members, and the heads of four chains of
// top-level nodes. All strings are interned. The module owns everything in it but the private data.
#pragma once

#include <cstdint>
#include <iterator>
#include <type_traits>
#include <zrschema/types.h>

#include "foundation/context_record.h"
#include "model/member_records.h"
#include "platform/avl.h"

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
static_assert(std::extent_v<decltype(ZrMod::lastAppended)> == kTopChainCount);
} // namespace zr
