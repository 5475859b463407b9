// SPDX-License-Identifier: Apache-2.0
#include "loader/nodes/node_rows.h"

#include <iterator>

#include "foundation/statement_ids.h"

namespace zr {

namespace {

// Where the sub-statements of a node go.

ZrsSubElem When(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &work->node->when);
}

ZrsSubElem Text(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &work->node->description);
}

ZrsSubElem Flags(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &work->node->flags);
}

ZrsSubElem Key(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &work->keyText);
}

ZrsSubElem Child(uint32_t statement, NodeWork *work)
{
    return RepeatedRow(statement, work->node);
}

ZrsSubElem OnlyChild(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, work->node);
}

ZrsSubElem IfFeat(uint32_t statement, NodeWork *work)
{
    ZrNode *node = work->node;
    return ArrayRow(statement, &node->ifFeatures, &work->ifFeatures, &node->ifFeatureCount);
}

ZrsSubElem Musts(uint32_t statement, NodeWork *work)
{
    ZrNode *node = work->node;
    return ArrayRow(statement, &node->musts, &work->musts, &node->mustCount);
}

// The engine makes the array in the node, which is the destination of every instance.
ZrsSubElem ExtInsts(uint32_t statement, NodeWork *work)
{
    return {statement,           work->node,         &work->extInsts,
            &work->extInstTotal, sizeof(ZrsExtInst), ZRS_ROW_ARRAY};
}

template <typename Info> Info *InfoOf(NodeWork *work)
{
    return static_cast<Info *>(work->node->info);
}

template <typename Info> ZrsSubElem Type(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &InfoOf<Info>(work)->realType);
}

template <typename Info> ZrsSubElem Units(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &InfoOf<Info>(work)->units);
}

ZrsSubElem LeafDefault(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &InfoOf<ZrsLeafInfo>(work)->defaultValue);
}

ZrsSubElem LeafListDefaults(uint32_t statement, NodeWork *work)
{
    auto *info = InfoOf<ZrsLeafListInfo>(work);
    return ArrayRow(statement, &info->defaults, &work->defaults, &info->defaultCount);
}

ZrsSubElem DefaultCase(uint32_t statement, NodeWork *work)
{
    return UniqueRow(statement, &InfoOf<ZrsChoiceInfo>(work)->defaultCase);
}

constexpr auto LeafType = Type<ZrsLeafInfo>;
constexpr auto LeafUnits = Units<ZrsLeafInfo>;
constexpr auto LeafListType = Type<ZrsLeafListInfo>;
constexpr auto LeafListUnits = Units<ZrsLeafListInfo>;

// clang-format off

//   statement                     goes to

constexpr NodeRow kContainerRows[] = {
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_MUST,               Musts},
    {ZRS_STMT_PRESENCE,           Flags},
    {ZRS_STMT_CONFIG,             Flags},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_CONTAINER,          Child},
    {ZRS_STMT_LEAF,               Child},
    {ZRS_STMT_LEAF_LIST,          Child},
    {ZRS_STMT_LIST,               Child},
    {ZRS_STMT_CHOICE,             Child},
    {ZRS_STMT_ANYDATA,            Child},
    {ZRS_STMT_ANYXML,             Child},
    {ZRS_STMT_ACTION,             Child},
    {ZRS_STMT_NOTIFICATION,       Child},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

constexpr NodeRow kLeafRows[] = {
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_TYPE,               LeafType},
    {ZRS_STMT_MUST,               Musts},
    {ZRS_STMT_DEFAULT,            LeafDefault},
    {ZRS_STMT_CONFIG,             Flags},
    {ZRS_STMT_MANDATORY,          Flags},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
    {ZRS_STMT_UNITS,              LeafUnits},
};

constexpr NodeRow kLeafListRows[] = {
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_TYPE,               LeafListType},
    {ZRS_STMT_MUST,               Musts},
    {ZRS_STMT_DEFAULT,            LeafListDefaults},
    {ZRS_STMT_CONFIG,             Flags},
    {ZRS_STMT_ORDERED_BY,         Flags},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
    {ZRS_STMT_UNITS,              LeafListUnits},
};

constexpr NodeRow kListRows[] = {
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_MUST,               Musts},
    {ZRS_STMT_KEY,                Key},
    {ZRS_STMT_CONFIG,             Flags},
    {ZRS_STMT_ORDERED_BY,         Flags},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_CONTAINER,          Child},
    {ZRS_STMT_LEAF,               Child},
    {ZRS_STMT_LEAF_LIST,          Child},
    {ZRS_STMT_LIST,               Child},
    {ZRS_STMT_CHOICE,             Child},
    {ZRS_STMT_ANYDATA,            Child},
    {ZRS_STMT_ANYXML,             Child},
    {ZRS_STMT_ACTION,             Child},
    {ZRS_STMT_NOTIFICATION,       Child},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

constexpr NodeRow kChoiceRows[] = {
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_DEFAULT,            DefaultCase},
    {ZRS_STMT_CONFIG,             Flags},
    {ZRS_STMT_MANDATORY,          Flags},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_CHOICE,             Child},
    {ZRS_STMT_CONTAINER,          Child},
    {ZRS_STMT_LEAF,               Child},
    {ZRS_STMT_LEAF_LIST,          Child},
    {ZRS_STMT_LIST,               Child},
    {ZRS_STMT_ANYDATA,            Child},
    {ZRS_STMT_ANYXML,             Child},
    {ZRS_STMT_CASE,               Child},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

constexpr NodeRow kCaseRows[] = {
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_CONTAINER,          Child},
    {ZRS_STMT_LEAF,               Child},
    {ZRS_STMT_LEAF_LIST,          Child},
    {ZRS_STMT_LIST,               Child},
    {ZRS_STMT_CHOICE,             Child},
    {ZRS_STMT_ANYDATA,            Child},
    {ZRS_STMT_ANYXML,             Child},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

constexpr NodeRow kAnydataRows[] = { // and anyxml
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_MUST,               Musts},
    {ZRS_STMT_CONFIG,             Flags},
    {ZRS_STMT_MANDATORY,          Flags},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

constexpr NodeRow kAugmentRows[] = {
    {ZRS_STMT_WHEN,               When},
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_CONTAINER,          Child},
    {ZRS_STMT_LEAF,               Child},
    {ZRS_STMT_LEAF_LIST,          Child},
    {ZRS_STMT_LIST,               Child},
    {ZRS_STMT_CHOICE,             Child},
    {ZRS_STMT_ANYDATA,            Child},
    {ZRS_STMT_ANYXML,             Child},
    {ZRS_STMT_CASE,               Child},
    {ZRS_STMT_ACTION,             Child},
    {ZRS_STMT_NOTIFICATION,       Child},
};

constexpr NodeRow kRpcRows[] = { // and action
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_INPUT,              OnlyChild},
    {ZRS_STMT_OUTPUT,             OnlyChild},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

constexpr NodeRow kInputRows[] = { // and output
    {ZRS_STMT_MUST,               Musts},
    {ZRS_STMT_CONTAINER,          Child},
    {ZRS_STMT_LEAF,               Child},
    {ZRS_STMT_LEAF_LIST,          Child},
    {ZRS_STMT_LIST,               Child},
    {ZRS_STMT_CHOICE,             Child},
    {ZRS_STMT_ANYDATA,            Child},
    {ZRS_STMT_ANYXML,             Child},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

constexpr NodeRow kNotificationRows[] = {
    {ZRS_STMT_IF_FEATURE,         IfFeat},
    {ZRS_STMT_MUST,               Musts},
    {ZRS_STMT_STATUS,             Flags},
    {ZRS_STMT_DESCRIPTION,        Text},
    {ZRS_STMT_CONTAINER,          Child},
    {ZRS_STMT_LEAF,               Child},
    {ZRS_STMT_LEAF_LIST,          Child},
    {ZRS_STMT_LIST,               Child},
    {ZRS_STMT_CHOICE,             Child},
    {ZRS_STMT_ANYDATA,            Child},
    {ZRS_STMT_ANYXML,             Child},
    {ZRS_STMT_EXTENSION_INSTANCE, ExtInsts},
};

struct KindRows {
    uint32_t kind;
    std::span<const NodeRow> rows;
};

constexpr KindRows kKinds[] = {
    {ZR_NODE_UNKNOWN,      {}},
    {ZR_NODE_CONTAINER,    kContainerRows},
    {ZR_NODE_LEAF,         kLeafRows},
    {ZR_NODE_LEAF_LIST,    kLeafListRows},
    {ZR_NODE_LIST,         kListRows},
    {ZR_NODE_CHOICE,       kChoiceRows},
    {ZR_NODE_CASE,         kCaseRows},
    {ZR_NODE_ANYDATA,      kAnydataRows},
    {ZR_NODE_ANYXML,       kAnydataRows},
    {ZR_NODE_ACTION,       kRpcRows},
    {ZR_NODE_RPC,          kRpcRows},
    {ZR_NODE_NOTIFICATION, kNotificationRows},
    {ZR_NODE_INPUT,        kInputRows},
    {ZR_NODE_OUTPUT,       kInputRows},
    {ZR_NODE_AUGMENT,      kAugmentRows},
};

// clang-format on

consteval bool KindsStandInOrder()
{
    for (uint32_t i = 0; i < std::size(kKinds); ++i) {
        if (kKinds[i].kind != i || kKinds[i].rows.size() > kMaxNodeRows)
            return false;
    }
    return std::size(kKinds) == ZR_NODE_AUGMENT + 1;
}
static_assert(KindsStandInOrder());

} // namespace

std::span<const NodeRow> NodeRows(uint32_t kind)
{
    return kind < std::size(kKinds) ? kKinds[kind].rows : std::span<const NodeRow>();
}

} // namespace zr
