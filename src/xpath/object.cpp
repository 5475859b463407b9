// SPDX-License-Identifier: Apache-2.0
// The evaluator's values: freeing them and turning one kind into another.
#include "xpath/object.h"

#include <cmath>
#include <limits>

#include "foundation/array.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "platform/xml.h"
#include "xpath/value_text.h"

void ZR_XPATH_FreeObject(ZrXpathObject *object)
{
    if (object == nullptr)
        return;
    if (object->kind == ZR_XPATH_OBJ_STRING)
        zr::Free(object->value.string);
    zr::Free(object);
}

namespace {

void SetBoolean(ZrXpathObject *object, bool value)
{
    object->kind = ZR_XPATH_OBJ_BOOLEAN;
    object->value.boolean = value ? 1 : 0;
}

void SetNumber(ZrXpathObject *object, double value)
{
    object->kind = ZR_XPATH_OBJ_NUMBER;
    object->value.number = value;
}

// Takes the text; null stands for an allocation that failed.
uint32_t SetString(ZrXpathObject *object, char *text)
{
    if (text == nullptr)
        return ZR_ERR_NO_MEMORY;
    object->kind = ZR_XPATH_OBJ_STRING;
    object->value.string = text;
    return ZR_OK;
}

double NumberFromText(const char *text)
{
    double value;
    return PAL_StrToFloat(text, &value) == 0 ? value : std::numeric_limits<double>::quiet_NaN();
}

uint32_t Keep(ZrXpathObject *)
{
    return ZR_OK;
}

// Only the kind changes: no comparison makes a string of a number. The payload stays the number, so
// that the object must not be freed as it is.
uint32_t RelabelNumberAsString(ZrXpathObject *object)
{
    object->kind = ZR_XPATH_OBJ_STRING;
    return ZR_OK;
}

uint32_t ConvertNodeToBoolean(ZrXpathObject *object)
{
    SetBoolean(object, object->value.node != nullptr);
    return ZR_OK;
}

using Conversion = uint32_t (*)(ZrXpathObject *object);

struct Conversions {
    ZrXpathObjectKind kind;
    Conversion toString;
    Conversion toNumber;
    Conversion toBoolean;
};

// clang-format off
//   kind                  to string                         to number                        to boolean
constexpr Conversions kConversions[] = {
    {ZR_XPATH_OBJ_BOOLEAN, ZR_XPATH_ConvertBooleanToString,  ZR_XPATH_ConvertBooleanToNumber, Keep},
    {ZR_XPATH_OBJ_STRING,  Keep,                             ZR_XPATH_ConvertStringToNumber,  ZR_XPATH_ConvertStringToBoolean},
    {ZR_XPATH_OBJ_NODE,    ZR_XPATH_CopyElementNodeContent,  ZR_XPATH_ConvertNodeToNumber,    ConvertNodeToBoolean},
    {ZR_XPATH_OBJ_NUMBER,  RelabelNumberAsString,            Keep,                            ZR_XPATH_ConvertNumberToBoolean},
};
// clang-format on
static_assert(zr::RowsInOrder(kConversions, &Conversions::kind, ZR_XPATH_OBJ_BOOLEAN,
                              ZR_XPATH_OBJ_KIND_COUNT));

uint32_t Convert(ZrXpathObject *object, Conversion Conversions::*target)
{
    if (object == nullptr || object->kind >= ZR_XPATH_OBJ_KIND_COUNT)
        return ZR_ERR_INVALID;
    return (kConversions[object->kind].*target)(object);
}

} // namespace

uint32_t ZR_XPATH_FuncStringInner(ZrXpathObject *object)
{
    return Convert(object, &Conversions::toString);
}

uint32_t ZR_XPATH_FuncNumberInner(ZrXpathObject *object)
{
    return Convert(object, &Conversions::toNumber);
}

uint32_t ZR_XPATH_FuncBooleanInner(ZrXpathObject *object)
{
    return Convert(object, &Conversions::toBoolean);
}

uint32_t ZR_XPATH_ConvertBooleanToString(ZrXpathObject *object)
{
    return SetString(object, ZR_UTL_StrDup(object->value.boolean != 0 ? "true" : "false"));
}

uint32_t ZR_XPATH_ConvertBooleanToNumber(ZrXpathObject *object)
{
    SetNumber(object, object->value.boolean != 0 ? 1.0 : 0.0);
    return ZR_OK;
}

uint32_t ZR_XPATH_ConvertStringToNumber(ZrXpathObject *object)
{
    zr::Owned<char> text(object->value.string);
    SetNumber(object, NumberFromText(text.get()));
    return ZR_OK;
}

// No node is zero here, not NaN. Comparisons take a node to its text first, where it is NaN.
uint32_t ZR_XPATH_ConvertNodeToNumber(ZrXpathObject *object)
{
    const xmlNode *node = object->value.node;
    const char *text = node != nullptr ? ZR_XML_GetElemNodeContent(node) : nullptr;
    SetNumber(object, text != nullptr ? NumberFromText(text) : 0.0);
    return ZR_OK;
}

uint32_t ZR_XPATH_ConvertStringToBoolean(ZrXpathObject *object)
{
    zr::Owned<char> text(object->value.string);
    SetBoolean(object, text && *text != '\0');
    return ZR_OK;
}

uint32_t ZR_XPATH_ConvertNumberToBoolean(ZrXpathObject *object)
{
    double number = object->value.number;
    SetBoolean(object, !std::isnan(number) && std::fabs(number) >= zr::kXpathEpsilon);
    return ZR_OK;
}

uint32_t ZR_XPATH_CopyElementNodeContent(ZrXpathObject *object)
{
    char *text = nullptr;
    if (object->value.node != nullptr) {
        uint32_t status = zr::ReadValueText(object->value.node, &text);
        if (status != ZR_OK)
            return status;
    }
    return SetString(object, text != nullptr ? text : ZR_UTL_CreateEmptyString());
}
