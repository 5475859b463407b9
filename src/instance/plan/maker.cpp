// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/maker.h"

#include <libxml/xpath.h>

#include <algorithm>
#include <memory>

#include "instance/base/text.h"
#include "instance/plan/expression.h"
#include "instance/plan/inherited.h"
#include "instance/plan/lookup.h"
#include "instance/plan/modules.h"
#include "instance/plan/order.h"
#include "instance/plan/scan.h"
#include "instance/plan/type_maker.h"
#include "shared/names.h"
#include "shared/xml_reports.h"

namespace zr::data {

namespace {

using XPathContext = std::unique_ptr<xmlXPathContext, decltype(&xmlXPathFreeContext)>;

// What stands in data under its own name.
bool IsData(uint32_t kind)
{
    return kind >= ZR_NODE_CONTAINER && kind <= ZR_NODE_LIST;
}

bool IsWanted(uint32_t kind)
{
    return IsData(kind) || kind == ZR_NODE_CHOICE || kind == ZR_NODE_CASE ||
           kind == ZR_NODE_ANYDATA || kind == ZR_NODE_ANYXML;
}

class Maker {
public:
    explicit Maker(Plan &plan)
        : plan_(plan), memory_(&plan.memory), types_(plan), expressions_(&plan.memory),
          sides_(&plan.memory), augments_(&plan.memory),
          checker_(xmlXPathNewContext(nullptr), xmlXPathFreeContext)
    {
        if (!checker_)
            throw std::bad_alloc();
        checker_->error = [](void *, xmlErrorPtr) {};
    }

    void Run()
    {
        AddChildren(plan_.root, [&](auto add) {
            for (PlanModule *module : plan_.modules)
                Scan(ZR_MOD_IterScanTopmostNode, module->source, add);
        });
        NumberData(plan_.root, plan_.root);
        for (PlanNode *side : sides_) {
            NumberData(*side, *side);
            side->slot = static_cast<uint32_t>(side->parent->dataChildren.size());
        }
        for (PlanModule *module : plan_.modules)
            ReadAugments(*module);
        Orderer orderer(plan_);
        sides_.push_back(&plan_.root);
        for (PlanNode *top : sides_) {
            Finish(*top);
            orderer.Add(*top);
        }
        orderer.Run();
    }

private:
    template <typename ScanChildren> void AddChildren(PlanNode &parent, ScanChildren scan);
    PlanNode *AddNode(ZrNode *source, PlanNode &schemaParent);
    PlanNode *NewNode(ZrNode *source, PlanNode &schemaParent);
    void AddMessage(ZrNode *source, PlanNode &schemaParent);
    PlanNode *AddSide(ZrNode *source, ZrNode *content, PlanNode &parent);
    void NumberData(PlanNode &dataParent, PlanNode &schemaParent);
    void CollectData(PlanNode &schemaParent, std::pmr::vector<PlanNode *> &out);
    void ReadAugments(const PlanModule &module);
    void Finish(PlanNode &node);
    void FinishOne(PlanNode &node);
    void FinishChildren(PlanNode &node);
    void ReadConditions(PlanNode &node);
    void ReadDefaults(PlanNode &node);
    void ReadList(PlanNode &node);
    void AddUnique(PlanNode &list, std::string_view argument,
                   std::pmr::vector<std::span<UniquePath>> &uniques);
    const Expression *ExpressionOf(const PlanNode &node, const char *source);

    Plan &plan_;
    std::pmr::memory_resource *memory_;
    TypeMaker types_;
    struct Key {
        const PlanModule *module;
        std::string_view text;
        bool operator==(const Key &) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key &key) const
        {
            return std::hash<std::string_view>()(key.text) ^ std::hash<const void *>()(key.module);
        }
    };
    std::pmr::unordered_map<Key, const Expression *, KeyHash> expressions_;
    std::pmr::vector<PlanNode *> sides_; // of all messages
    // The conditions of augments, by the choices and cases that they add.
    std::pmr::unordered_map<const ZrNode *, const char *> augments_;
    XPathContext checker_;
};

template <typename ScanChildren> void Maker::AddChildren(PlanNode &parent, ScanChildren scan)
{
    std::pmr::vector<PlanNode *> children(memory_);
    scan([&](ZrNode *source, uint32_t) {
        if (PlanNode *child = AddNode(source, parent))
            children.push_back(child);
    });
    parent.children = Keep(plan_.arena, children);
}

// The node itself, without children and flags; null when its module is not there.
PlanNode *Maker::NewNode(ZrNode *source, PlanNode &schemaParent)
{
    const PlanModule *module =
        plan_.FindModule(View(ZR_MOD_GetModuleName(ZR_NODE_GetModule(source))));
    if (module == nullptr)
        return nullptr;
    auto *node = plan_.arena.New<PlanNode>();
    node->source = source;
    node->module = module;
    node->name = plan_.arena.CopyText(View(ZR_NODE_GetNodeName(source)));
    node->kind = ZR_NODE_GetNodeType(source);
    node->schemaParent = &schemaParent;
    node->parent = schemaParent.IsChoiceOrCase() ? schemaParent.parent : &schemaParent;
    return node;
}

PlanNode *Maker::AddNode(ZrNode *source, PlanNode &schemaParent)
{
    uint32_t kind = ZR_NODE_GetNodeType(source);
    if (ZR_NODE_IsEnabled(source) == 0)
        return nullptr;
    if (kind == ZR_NODE_RPC || kind == ZR_NODE_ACTION || kind == ZR_NODE_NOTIFICATION) {
        AddMessage(source, schemaParent);
        return nullptr;
    }
    PlanNode *node = IsWanted(kind) ? NewNode(source, schemaParent) : nullptr;
    if (node == nullptr)
        return nullptr;
    auto flag = [&](bool is, PlanNode::Flag bit) {
        if (is)
            node->flags |= bit;
    };
    flag(ZR_NODE_IsRwConfig(source) != 0 && schemaParent.Is(PlanNode::kConfig), PlanNode::kConfig);
    flag(ZR_NODE_IsMandatory(source) != 0, PlanNode::kMandatory);
    flag(ZR_NODE_IsPresenceContainer(source) != 0, PlanNode::kPresence);
    flag(ZR_NODE_IsKey(source) != 0, PlanNode::kKey);
    AddChildren(*node, [&](auto add) { Scan(ZR_NODE_IterScanChildrenNode, source, add); });
    return node;
}

void Maker::AddMessage(ZrNode *source, PlanNode &schemaParent)
{
    PlanNode &parent = schemaParent.IsChoiceOrCase() ? *schemaParent.parent : schemaParent;
    bool isNotification = ZR_NODE_GetNodeType(source) == ZR_NODE_NOTIFICATION;
    PlanNode *request =
        AddSide(source, isNotification ? source : ZR_NODE_GetInputNode(source), parent);
    if (request == nullptr)
        return;
    auto *message = plan_.arena.New<Message>();
    message->kind = request->kind;
    message->request = request;
    if (!isNotification)
        message->reply = AddSide(source, ZR_NODE_GetOutputNode(source), parent);
    plan_.messagesByName.emplace(ChildKey{&parent, request->module, request->name}, message);
    parent.flags |= PlanNode::kSpeaks;
}

// One direction of a message. `content` has the parameters and their conditions; an operation
// without any has none.
PlanNode *Maker::AddSide(ZrNode *source, ZrNode *content, PlanNode &parent)
{
    PlanNode *side = NewNode(source, parent);
    if (side == nullptr)
        return nullptr;
    sides_.push_back(side);
    if (content == nullptr)
        return side;
    side->source = content;
    AddChildren(*side, [&](auto add) { Scan(ZR_NODE_IterScanChildrenNode, content, add); });
    return side;
}

void Maker::CollectData(PlanNode &schemaParent, std::pmr::vector<PlanNode *> &out)
{
    for (PlanNode *child : schemaParent.children) {
        if (child->IsChoiceOrCase())
            CollectData(*child, out);
        else
            out.push_back(child);
    }
}

void Maker::NumberData(PlanNode &dataParent, PlanNode &schemaParent)
{
    if (&dataParent == &schemaParent) {
        std::pmr::vector<PlanNode *> data(memory_);
        CollectData(dataParent, data);
        dataParent.dataChildren = Keep(plan_.arena, data);
        for (uint32_t slot = 0; slot < data.size(); ++slot) {
            data[slot]->slot = slot;
            plan_.childrenByName.emplace(
                ChildKey{&dataParent, data[slot]->module, data[slot]->name}, data[slot]);
        }
        dataParent.slotCount =
            static_cast<uint32_t>(data.size()) + dataParent.Is(PlanNode::kSpeaks);
    }
    for (PlanNode *child : schemaParent.children)
        NumberData(child->IsChoiceOrCase() ? dataParent : *child, *child);
}

const Expression *Maker::ExpressionOf(const PlanNode &node, const char *source)
{
    auto [place, isNew] = expressions_.try_emplace(Key{node.module, source}, nullptr);
    if (isNew) {
        auto *expression = plan_.arena.New<Expression>();
        place->second = expression;
        *expression = {nullptr, source, nullptr, node.module,
                       static_cast<uint32_t>(plan_.expressions.size())};
        plan_.expressions.push_back(expression);
        std::pmr::string text(memory_);
        expression->fault = RewriteExpression(plan_, *node.module, source, text);
        if (expression->fault == nullptr) {
            std::pmr::string withLookups(memory_);
            AppendWithLookups(text, memory_, withLookups);
            expression->text = plan_.arena.CopyText(withLookups);
            xmlXPathCompExpr *compiled =
                xmlXPathCtxtCompile(checker_.get(), XmlText(expression->text));
            if (compiled == nullptr) {
                expression->text = nullptr;
                expression->fault = "it is no XPath 1.0 expression";
            }
            xmlXPathFreeCompExpr(compiled);
            if (IsShortOfMemory(checker_->lastError))
                throw std::bad_alloc();
        }
    }
    const Expression *expression = place->second;
    if (expression->fault != nullptr)
        plan_.AddProblem(node, expression->source, expression->fault);
    return expression;
}

void Maker::ReadAugments(const PlanModule &module)
{
    Scan(ZR_MOD_IterScanAugmentNode, module.source, [&](ZrNode *augment, uint32_t) {
        const char *when = ZR_NODE_GetWhenCond(augment);
        if (when == nullptr)
            return;
        Scan(ZR_NODE_IterScanChildrenNode, augment, [&](ZrNode *child, uint32_t) {
            uint32_t kind = ZR_NODE_GetNodeType(child);
            if (kind == ZR_NODE_CHOICE || kind == ZR_NODE_CASE)
                augments_.emplace(child, when);
        });
    });
}

void Maker::ReadConditions(PlanNode &node)
{
    const char *when = ZR_NODE_GetWhenCond(node.source);
    auto augment = augments_.find(node.source);
    if (when != nullptr && augment != augments_.end())
        when = plan_.arena.CopyText(AtParent(when, augment->second, memory_));
    if (when != nullptr)
        node.when = ExpressionOf(node, when);
    std::pmr::vector<Condition> musts(memory_);
    Scan(ZR_NODE_ScanAllMusts, node.source,
         [&](const char *condition, const char *message, const char *appTag) {
             musts.push_back({ExpressionOf(node, condition), message, appTag});
         });
    node.musts = Keep(plan_.arena, musts);
}

// A typedef's default is in force where the node says none, is not mandatory and asks for no
// entries (RFC 7950, sections 7.6.1 and 7.7.2). Keys have none (section 7.8.2).
void Maker::ReadDefaults(PlanNode &node)
{
    if (node.Is(PlanNode::kKey))
        return;
    std::pmr::vector<std::string_view> defaults(memory_);
    Scan(ZR_NODE_ScanAllDefaults, node.source, [&](const char *text) { defaults.push_back(text); });
    if (node.kind == ZR_NODE_CHOICE) {
        for (PlanNode *child : node.children)
            if (!defaults.empty() && SplitName(defaults[0]).name == child->name)
                node.defaultCase = child;
        return;
    }
    const char *ofType = ZR_NODE_GetTypedefDefaultStr(node.source);
    if (defaults.empty() && ofType != nullptr && !node.Is(PlanNode::kMandatory) &&
        node.minElements == 0)
        defaults.push_back(ofType);
    node.defaults = Keep(plan_.arena, defaults);
}

void Maker::AddUnique(PlanNode &list, std::string_view argument,
                      std::pmr::vector<std::span<UniquePath>> &uniques)
{
    std::pmr::vector<UniquePath> paths(memory_);
    for (std::string_view path = TakeWord(argument); !path.empty(); path = TakeWord(argument)) {
        std::pmr::vector<const PlanNode *> steps(memory_);
        const PlanNode *at = &list;
        while (at != nullptr && !path.empty()) {
            size_t length = std::min(path.find('/'), path.size());
            QName step = SplitName(path.substr(0, length));
            path.remove_prefix(std::min(length + 1, path.size()));
            const PlanModule *module =
                step.prefix.empty() ? list.module : plan_.FindModule(step.prefix);
            at = plan_.FindChild(*at, module, step.name);
            steps.push_back(at);
        }
        if (at == nullptr) // a disabled leaf: the constraint is as if it did not name it
            continue;
        paths.push_back(Keep(plan_.arena, steps));
    }
    if (!paths.empty())
        uniques.push_back(Keep(plan_.arena, paths));
}

void Maker::ReadList(PlanNode &node)
{
    node.minElements = ZR_NODE_GetMinElements(node.source);
    node.maxElements = ZR_NODE_GetMaxElements(node.source);
    if (ZR_NODE_IsOrderedByNode(node.source) != 0)
        node.flags |= PlanNode::kUserOrdered;
    std::pmr::vector<std::span<UniquePath>> uniques(memory_);
    Scan(ZR_NODE_ScanAllUniques, node.source,
         [&](const char *argument) { AddUnique(node, argument, uniques); });
    node.uniques = Keep(plan_.arena, uniques);
    std::pmr::vector<const PlanNode *> keys(memory_);
    Scan(ZR_NODE_ScanAllKeysInOrder, node.source, [&](ZrNode *key, uint32_t) {
        auto isKey = [&](const PlanNode *child) { return child->source == key; };
        auto found = std::find_if(node.dataChildren.begin(), node.dataChildren.end(), isKey);
        if (found != node.dataChildren.end()) // else a disabled leaf
            keys.push_back(*found);
    });
    node.keys = Keep(plan_.arena, keys);
}

void Maker::FinishOne(PlanNode &node)
{
    if (node.IsRepeated())
        ReadList(node);
    if (node.IsLeaf()) {
        const ZrtRealType *type = ZR_NODE_GetRealType(node.source);
        node.type = type != nullptr ? types_.Make(node, type) : plan_.arena.New<Type>();
    }
    ReadConditions(node);
    ReadDefaults(node);
}

void Maker::Finish(PlanNode &node)
{
    if (node.source != nullptr)
        FinishOne(node);
    FinishChildren(node);
    bool isReference = node.type != nullptr && node.type->requiresInstance;
    bool isWatched = node.when != nullptr || !node.musts.empty() || node.IsRepeated() ||
                     isReference || node.Is(PlanNode::kAsks) || node.Is(PlanNode::kFills) ||
                     (node.schemaParent != nullptr && node.schemaParent->IsChoiceOrCase());
    node.flags |= isWatched ? PlanNode::kWatched : 0;
}

void Maker::FinishChildren(PlanNode &node)
{
    for (PlanNode *child : node.children) {
        Finish(*child);
        bool asks = child->Is(PlanNode::kMandatory) || child->minElements != 0;
        bool fills = !child->defaults.empty() ||
                     (child->kind == ZR_NODE_CONTAINER && !child->Is(PlanNode::kPresence));
        if (child->IsChoiceOrCase()) {
            // Cases exclude each other, which is looked at with what is asked for.
            asks = true;
            fills = child->Is(PlanNode::kFills);
        }
        node.flags |= asks ? PlanNode::kAsks : 0;
        node.flags |= fills ? PlanNode::kFills : 0;
    }
}

} // namespace

void MakePlan(Plan &plan, const ZrCtx *ctx)
{
    plan.ctx = ctx;
    plan.stamp = StampOf(ctx);
    plan.root.flags = PlanNode::kConfig;
    MakeModules(plan);
    Maker(plan).Run();
}

} // namespace zr::data
