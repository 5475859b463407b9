// SPDX-License-Identifier: Apache-2.0
// The evaluator's values, and their conversions (XPath 1.0, sections 4.2 to 4.4).
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "platform/memory.h"

enum ZrXpathObjectKind : uint32_t {
    ZR_XPATH_OBJ_BOOLEAN = 0,
    ZR_XPATH_OBJ_STRING = 1,
    ZR_XPATH_OBJ_NODE = 2,
    ZR_XPATH_OBJ_NUMBER = 3,
    ZR_XPATH_OBJ_KIND_COUNT = 4
};

union ZrXpathValue {
    uint32_t boolean; // 0 or 1
    char *string;     // owned, never null
    xmlNode *node;    // null: no node
    double number;
};
static_assert(sizeof(ZrXpathValue) == 8);

struct ZrXpathObject {
    uint32_t kind; // ZrXpathObjectKind
    ZrXpathValue value;
};

extern "C" {
// Frees an object with its string; null is accepted.
ZR_API void ZR_XPATH_FreeObject(ZrXpathObject *object);

// Conversions in place: to a string, a number and a boolean. ZR_OK, ZR_ERR_NO_MEMORY (the object
// stays as it was), or ZR_ERR_INVALID for null or an unknown kind.
ZR_API uint32_t ZR_XPATH_FuncStringInner(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_FuncNumberInner(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_FuncBooleanInner(ZrXpathObject *object);

// The single conversions behind them, for an object of the kind that their name begins with; the
// last one takes a node to its value text.
ZR_API uint32_t ZR_XPATH_ConvertBooleanToString(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_ConvertBooleanToNumber(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_ConvertStringToNumber(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_ConvertNodeToNumber(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_ConvertStringToBoolean(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_ConvertNumberToBoolean(ZrXpathObject *object);
ZR_API uint32_t ZR_XPATH_CopyElementNodeContent(ZrXpathObject *object);
}

namespace zr {

// Numbers nearer than this are equal, and one nearer to 0 is false: 2 to the power of -52.
constexpr double kXpathEpsilon = 0x1p-52;

using OwnedObject = Owned<ZrXpathObject, ZR_XPATH_FreeObject>;

} // namespace zr
