// The small records that modules and nodes hold in counted arrays. All strings are interned in the
// context's dictionary; each record holds a reference of its own to each of them.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "model/type_records.h"

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
    uint32_t yinElement;  // 1: in YIN the argument is an element
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

// One "deviate" of a deviation (section 7.20.3.2).
struct ZrsDeviate {
    uint32_t kind;  // ZrsDeviateKind
    uint16_t flags; // config and mandatory bits of ZrNode::flags
    uint16_t mustCount;
    uint16_t defaultCount;
    uint16_t extInstCount;
    ZrsMust *musts;
    const char **defaults;
    ZrtRealType *type; // or null
    const char *units; // or null
    ZrsExtInst *extInsts;
};

// Bits of ZrsDeviation::flags.
enum : uint16_t { ZRS_DEVIATION_COUPLED = 0x1 };

// A deviation (section 7.20.3). Once coupled, it has changed its target.
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
