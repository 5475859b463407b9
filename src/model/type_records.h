// SPDX-License-Identifier: Apache-2.0
// The type record and the bodies of its constraint slots.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

enum ZrtConsKind : uint32_t {
    ZRT_CONS_DERIVED = 0,
    ZRT_CONS_BASE = 1,
    ZRT_CONS_BIT = 2,
    ZRT_CONS_ENUM = 3,
    ZRT_CONS_FRACTION = 4,
    ZRT_CONS_LENGTH = 5,
    ZRT_CONS_PATH = 6,
    ZRT_CONS_PATTERN = 7,
    ZRT_CONS_RANGE = 8,
    ZRT_CONS_UNION = 9,
    ZRT_CONS_KIND_COUNT = 10
};

// Bits of ZrtRealType::flags.
enum : uint16_t {
    ZRT_BOUNDS_GIVEN = 0x1,    // the type carries a range or length
    ZRT_BOUNDS_EXPLICIT = 0x2, // its bounds stand for themselves
    ZRT_BOUNDS_RELATIVE = 0x4, // "min" or "max" refer to the parent typedef's bounds

    // "require-instance", in contexts with ZR_CTX_STANDARD: neither bit where nothing is said.
    ZRT_INSTANCE_OPTIONAL = 0x8,
    ZRT_INSTANCE_REQUIRED = 0x10, // also by a leafref or instance-identifier that says nothing
    ZRT_INSTANCE_BITS = 0x18,

    ZRT_TYPE_HAS_NOTES = 0x20 // the slot behind those that are counted holds a ZrtTypeNotes
};

struct ZrtConsSlot {
    uint32_t kind; // ZrtConsKind
    void *body;    // ZrtCons..., owned
};

struct ZrtRealType {
    uint32_t baseType; // ZrtBuiltInType
    uint16_t flags;
    uint16_t consCount;
    ZrtConsSlot *constraints; // ascending by kind
};

struct ZrtConsDerived {
    const char *moduleName;
    const char *typedefName;
    const ZrtRealType *resolved; // the typedef's type, not owned; null until resolved
};

struct ZrsIdentBase {
    const char *moduleName;
    const char *identityName;
};

struct ZrtConsBase {
    uint16_t count;
    ZrsIdentBase *items;
};

struct ZrtBitItem {
    const char *name;
    uint32_t position;
};

struct ZrtConsBit {
    uint16_t count;
    ZrtBitItem *items;
};

struct ZrtEnumItem {
    const char *name;
    int32_t value;
};

struct ZrtConsEnum {
    uint16_t count;
    ZrtEnumItem *items;
    const char **descriptions; // parallel to items; null when descriptions are not kept
};

struct ZrtConsFraction {
    uint8_t fractionDigits;
};

// Bits of ZrtGenericSeg::flags.
enum : uint32_t {
    ZRT_SEG_SIGNED = 0x01,
    ZRT_SEG_UNSIGNED = 0x02,
    ZRT_SEG_START_MIN = 0x04,
    ZRT_SEG_START_MAX = 0x08,
    ZRT_SEG_END_MIN = 0x10,
    ZRT_SEG_END_MAX = 0x20,

    // Of a derived type, in contexts with ZR_CTX_STANDARD: how the numbers are scaled stands in the
    // flags too, as the count of the fraction digits with which each was written.
    ZRT_SEG_DECIMAL = 0x40,
    ZRT_SEG_START_DIGITS_SHIFT = 8,
    ZRT_SEG_END_DIGITS_SHIFT = 16,
    ZRT_SEG_DIGITS_MASK = 0xff
};

// The widest segment: 20 bytes in every build.
struct __attribute__((packed, aligned(4))) ZrtGenericSeg {
    uint64_t start; // signed or unsigned as the flags say
    uint64_t end;
    uint32_t flags;
};
static_assert(sizeof(ZrtGenericSeg) == 20);

// A range or a length.
struct ZrtConsRange {
    uint16_t segCount;
    uint16_t segSize; // bytes: of two numbers of the type's width, or of a ZrtGenericSeg
    void *segments;
};

struct ZrtConsPath {
    const char *path;         // without predicates
    uint32_t requireInstance; // 0 or 1, and ZRT_PATH_HAS_PREDICATES
};

// The body is a ZrtConsFullPath.
constexpr uint32_t ZRT_PATH_HAS_PREDICATES = 0x2;

// A path with predicates, in contexts with ZR_CTX_STANDARD.
struct ZrtConsFullPath : ZrtConsPath {
    const char *fullPath;
};

struct ZrtPatternItem {
    const char *pattern;
    uint32_t invertMatch;
};

struct ZrtConsPattern {
    uint16_t count;
    ZrtPatternItem *items;
    // What values made compile, for a context that keeps it, else null: parallel to items libxml2's
    // forms, and behind them, in a context with a matcher, the matcher's. Checks of values write
    // here, from several threads.
    mutable void **compiled;
};

struct ZrtConsUnion {
    uint16_t count;
    ZrtRealType *items;
};

// What a restriction of a type says beside itself, or an "if-feature" of a bit or enum, in contexts
// with ZR_CTX_STANDARD.
struct ZrtTypeNote {
    uint16_t kind; // ZRT_CONS_LENGTH, ZRT_CONS_PATTERN, ZRT_CONS_RANGE, ZRT_CONS_BIT, ZRT_CONS_ENUM
    uint16_t index;       // the place of the restriction, bit or enum among those of the kind
    const char *texts[2]; // ZRT_NOTE_...; either may be null
};

// The places of ZrtTypeNote::texts.
enum : uint32_t {
    ZRT_NOTE_ERROR_MESSAGE = 0,
    ZRT_NOTE_ERROR_APP_TAG = 1,
    // Of a bit or enum, whose notes are one for each feature that it depends on.
    ZRT_NOTE_MODULE = 0,
    ZRT_NOTE_FEATURE = 1
};

struct ZrtTypeNotes {
    uint16_t count;
    ZrtTypeNote *items;
};

// The counters of one type statement: sub-statements by kind, then how many kinds occur.
struct ZrtTypeSubElemCount {
    uint16_t counts[ZRT_CONS_KIND_COUNT + 1];
};

// One validation of one value; zeroed by the caller.
struct ZrtValidateCtx {
    uint16_t derivedDepth;
    uint16_t fractionDigits;
    uint32_t baseType;       // of the innermost built-in type reached
    uint32_t explicitBounds; // nesting counter
    uint32_t parentBounds;   // set: bounds of an outer type are relative to its parent
    ZrtGenericSeg bounds;    // the latest parent bounds
    ZrtGenericSeg value;     // the value under check
    uint32_t binaryLength;   // octets that the base64 check decoded
    uint32_t nesting;        // types that the value has been handed on through
    uint32_t visits;         // types that the value was held against so far
    uint32_t tooDeep;        // set: nesting or visits reached its bound, nothing more is tried
    const ZrCtx *ctx;
    const ZrNode *node;
    const ZrtRealType *current;
    const ZrtRealType *matched;
    const ZrtValidateCtx *referrer; // of the leaf whose leafref leads to `node`, or null
};
