// SPDX-License-Identifier: Apache-2.0
// The records of a validation run: the run itself, its error, its list of added default nodes.
#pragma once

#include <zrschema/types.h>

#include <libxml/tree.h>

#include <cstdint>

#include "foundation/list.h"

// An rpc-error (RFC 6241, section 4.3). All texts are owned and may be null.
struct ZrdErrNode {
    uint32_t type;      // ZrErrorType
    uint32_t severity;  // ZrErrorSeverity
    uint32_t tag;       // ZrErrorTag
    char *appTag;       // error-app-tag
    char *path;         // error-path
    char *message;      // error-message
    char *badElement;   // local name of the offending element
    char *badAttribute; // kept for the record's form; no check sets it
};

// The root of one subtree that default completion added.
struct ZrdDefaultNodeEntry {
    ZrListLink link;
    xmlNode *node;
};

// Bits of ZrdCheckAux::mode.
enum ZrdCheckMode : uint32_t {
    ZRD_MODE_RPC = 0x1,
    ZRD_MODE_NOTIF = 0x2,
    ZRD_MODE_ACTION = 0x4,       // an RPC run whose top element is data that carries an action
    ZRD_MODE_IN_ACTION = 0x8,    // while the children of the action element are matched
    ZRD_MODE_MOUNT_POINT = 0x10, // a schema-mount point was met (RFC 8528)
    ZRD_MODE_REMEMBERS = 0x20    // the record is the head of a zr::ValidationRun
};

struct ZrdCheckAux {
    ZrCtx *ctx;
    uint32_t mode;          // bits of ZrdCheckMode
    xmlNode *root;          // parent of the top element; paths and absolute XPaths start below it
    xmlNode *actionElement; // the one element that instantiates an action, or null
    ZrdErrNode *error;      // null while no fault was found
    ZrListLink defaults;    // of ZrdDefaultNodeEntry, newest first
    ZrDefaultNodeFunc callback;
    void *userData;
};

#if UINTPTR_MAX == UINT32_MAX
static_assert(sizeof(ZrdErrNode) == 32);
static_assert(sizeof(ZrdDefaultNodeEntry) == 12);
static_assert(sizeof(ZrdCheckAux) == 36);
#endif
