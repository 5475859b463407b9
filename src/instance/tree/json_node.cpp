// SPDX-License-Identifier: Apache-2.0
#include "instance/tree/json_node.h"

#include <iterator>

namespace zr::data {

const char kJsonMark = 0;

namespace {

constexpr uint32_t Bit(JsonKind kind)
{
    return 1u << static_cast<uint32_t>(kind);
}

struct KindRule {
    uint32_t allowed;
    const char *fault;
};
constexpr KindRule kString = {Bit(JsonKind::String), "it must be a string in JSON"};
constexpr KindRule kNumber = {Bit(JsonKind::Number), "it must be a number in JSON"};
constexpr KindRule kBoolean = {Bit(JsonKind::Boolean), "it must be true or false in JSON"};
constexpr KindRule kEmpty = {Bit(JsonKind::Empty), "it must be [null] in JSON"};
constexpr KindRule kScalar = {Bit(JsonKind::String) | Bit(JsonKind::Number) |
                                  Bit(JsonKind::Boolean) | Bit(JsonKind::Empty),
                              "it must be one value in JSON"};

// By ZrtBuiltInType.
constexpr KindRule kRules[] = {
    kScalar,  // derived
    kString,  // binary
    kString,  // bits
    kBoolean, // boolean
    kString,  // decimal64
    kEmpty,   // empty
    kString,  // enumeration
    kString,  // identityref
    kString,  // instance-identifier
    kNumber,  // int8
    kNumber,  // int16
    kNumber,  // int32
    kString,  // int64
    kScalar,  // leafref
    kString,  // string
    kNumber,  // uint8
    kNumber,  // uint16
    kNumber,  // uint32
    kString,  // uint64
    kScalar,  // union
    kScalar,  // none
};
static_assert(std::size(kRules) == ZRT_TYPE_NONE + 1);

} // namespace

const char *CheckKind(const JsonNode &value, uint32_t base)
{
    if (value.kind == JsonKind::Unfit)
        return "it holds a control character or another that data cannot hold";
    const KindRule &rule = kRules[base];
    return (rule.allowed & Bit(value.kind)) != 0 ? nullptr : rule.fault;
}

const char *CheckShape(const JsonNode &value, const PlanNode &plan)
{
    bool isObject = value.kind == JsonKind::Object;
    if (plan.kind == ZR_NODE_ANYXML)
        return nullptr;
    if (plan.IsRepeated()) {
        if (!value.isEntry && value.kind != JsonKind::Array)
            return "it must be an array in JSON";
        if (plan.kind == ZR_NODE_LIST && !isObject)
            return "its entries must be objects in JSON";
    } else if (value.isEntry || value.kind == JsonKind::Array) {
        return "it must be no array in JSON";
    }
    if (!plan.IsLeaf())
        return isObject ? nullptr : "it must be an object in JSON";
    return isObject || value.kind == JsonKind::Array ? "it must be one value in JSON" : nullptr;
}

} // namespace zr::data
