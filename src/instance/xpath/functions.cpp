// SPDX-License-Identifier: Apache-2.0
#include "instance/xpath/functions.h"

#include <libxml/xpathInternals.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <new>

#include "instance/base/text.h"
#include "instance/plan/expression.h"
#include "instance/plan/lookup.h"
#include "instance/tree/value.h"
#include "instance/xpath/evaluator.h"
#include "shared/names.h"

namespace zr::data {

namespace {

// What libxml2 hands out, which is given back also when memory runs out.
struct XmlFree {
    void operator()(xmlChar *text) const { xmlFree(text); }
};
using XmlString = std::unique_ptr<xmlChar, XmlFree>;
using NodeSet = std::unique_ptr<xmlNodeSet, decltype(&xmlXPathFreeNodeSet)>;

// The arguments of one call and its result, on libxml2's stack.
class Call {
public:
    Call(xmlXPathParserContext *parser, int arguments)
        : parser_(parser), evaluator_(*static_cast<Evaluator *>(parser->context->extra)),
          arguments_(static_cast<size_t>(arguments))
    {
    }

    size_t arguments() const { return arguments_; }

    Evaluator &evaluator() const { return evaluator_; }

    bool IsNodeSet() const
    {
        return parser_->value != nullptr && parser_->value->type == XPATH_NODESET;
    }
    // Arguments are popped from the last to the first.
    bool PopString(std::pmr::string &out)
    {
        XmlString text(xmlXPathPopString(parser_));
        out = View(text.get());
        return parser_->error == XPATH_EXPRESSION_OK;
    }
    // The nodes, in document order, that are elements of the tree, and its root.
    bool PopElements(std::pmr::vector<Element *> &out)
    {
        if (parser_->value == nullptr || parser_->value->type != XPATH_NODESET) {
            xmlXPathErr(parser_, XPATH_INVALID_TYPE);
            return false;
        }
        NodeSet nodes(xmlXPathPopNodeSet(parser_), xmlXPathFreeNodeSet);
        if (nodes != nullptr) {
            xmlXPathNodeSetSort(nodes.get());
            for (int i = 0; i < nodes->nodeNr; ++i) {
                if (nodes->nodeTab[i]->type == XML_ELEMENT_NODE)
                    out.push_back(ElementOf(nodes->nodeTab[i]));
                else if (nodes->nodeTab[i]->type == XML_DOCUMENT_NODE)
                    out.push_back(&evaluator_.tree.root);
            }
        }
        return true;
    }
    void Push(xmlXPathObject *result)
    {
        if (result == nullptr)
            throw std::bad_alloc();
        valuePush(parser_, result);
    }

private:
    xmlXPathParserContext *parser_;
    Evaluator &evaluator_;
    size_t arguments_;
};

using Elements = std::pmr::vector<Element *>;

// current(): the node that the whole expression is evaluated for.
void Current(Call &call)
{
    call.Push(xmlXPathNewNodeSet(call.evaluator().current));
}

// re-match(string subject, string pattern)
void ReMatch(Call &call)
{
    std::pmr::string subject(call.evaluator().memory()), pattern(call.evaluator().memory());
    if (call.PopString(pattern) && call.PopString(subject))
        call.Push(
            xmlXPathNewBoolean(Matches(call.evaluator().patterns.Get(pattern), subject.c_str())));
}

// deref(node-set nodes): what the first node refers to.
void Deref(Call &call)
{
    Evaluator &evaluator = call.evaluator();
    Elements nodes(evaluator.memory());
    if (!call.PopElements(nodes))
        return;
    xmlXPathObject *result = xmlXPathNewNodeSet(nullptr);
    call.Push(result);
    if (nodes.empty())
        return;
    Element &leaf = *nodes[0];
    const Type *type = ReferenceOf(evaluator.tree, leaf);
    Elements targets(evaluator.memory());
    if (type != nullptr && type->base == ZRT_TYPE_INSTANCE_IDENTIFIER && !leaf.isFaulty)
        if (Element *target = evaluator.references.FindPath(leaf.value))
            targets.push_back(target);
    if (type != nullptr && type->target != nullptr)
        evaluator.references.Find(leaf, *type, targets);
    for (Element *target : targets)
        if (evaluator.tree.IsVisible(*target->plan) &&
            xmlXPathNodeSetAddUnique(result->nodesetval, &target->node) != 0)
            throw std::bad_alloc();
}

// Whether any node is an identityref whose value is derived from an identity, or is that one.
void IsDerivedFrom(Call &call, bool orSelf)
{
    Evaluator &evaluator = call.evaluator();
    std::pmr::string name(evaluator.memory());
    Elements nodes(evaluator.memory());
    if (!call.PopString(name) || !call.PopElements(nodes))
        return;
    if (name.find(':') == std::string::npos) {
        std::pmr::string own(evaluator.expression->module->name, evaluator.memory());
        name = (own += ':') += name;
    }
    const Identity *base = evaluator.plan.FindIdentity(name);
    bool isDerived = base != nullptr && std::any_of(nodes.begin(), nodes.end(), [&](Element *at) {
                         const Identity *identity =
                             at->type != nullptr && at->type->base == ZRT_TYPE_IDENTITYREF
                                 ? evaluator.plan.FindIdentity(at->value)
                                 : nullptr;
                         return identity != nullptr &&
                                (IsDerived(*identity, *base) || (orSelf && identity == base));
                     });
    call.Push(xmlXPathNewBoolean(isDerived));
}

void DerivedFrom(Call &call)
{
    IsDerivedFrom(call, false);
}

void DerivedFromOrSelf(Call &call)
{
    IsDerivedFrom(call, true);
}

// enum-value(node-set nodes): the integer of the first node's enum, or NaN.
void EnumValue(Call &call)
{
    Elements nodes(call.evaluator().memory());
    if (!call.PopElements(nodes))
        return;
    double number = xmlXPathNAN;
    if (!nodes.empty() && nodes[0]->type != nullptr && nodes[0]->type->base == ZRT_TYPE_ENUMERATION)
        for (const NamedValue &row : nodes[0]->type->names)
            if (row.name == nodes[0]->value)
                number = static_cast<double>(row.value);
    call.Push(xmlXPathNewFloat(number));
}

// bit-is-set(node-set nodes, string bit-name): of the first node.
void BitIsSet(Call &call)
{
    Evaluator &evaluator = call.evaluator();
    std::pmr::string name(evaluator.memory());
    Elements nodes(evaluator.memory());
    if (!call.PopString(name) || !call.PopElements(nodes))
        return;
    bool isSet = false;
    if (!nodes.empty() && nodes[0]->type != nullptr && nodes[0]->type->base == ZRT_TYPE_BITS) {
        std::string_view bits = nodes[0]->value;
        for (std::string_view bit = TakeWord(bits); !bit.empty(); bit = TakeWord(bits))
            isSet |= bit == name;
    }
    call.Push(xmlXPathNewBoolean(isSet));
}

// zr-entries(PARENTS, 'm:list', 'm:key', VALUE...): entries by their keys, which stands in the
// place of a step with predicates (see plan/lookup.h). A value is a string or a node-set, any node
// of which may be equal.
class EntryFinder {
public:
    explicit EntryFinder(Call &call)
        : call_(call), memory_(call.evaluator().memory()), names_(memory_), values_(memory_),
          texts_(memory_)
    {
    }

    bool PopArguments()
    {
        for (size_t left = (call_.arguments() - 2) / 2; left != 0; --left) {
            Strings &values = values_.emplace_back();
            if (!PopValues(values) || !call_.PopString(names_.emplace_back()))
                return false;
        }
        return call_.PopString(list_) && call_.PopElements(parents_);
    }
    void Run()
    {
        Evaluator &evaluator = call_.evaluator();
        Elements found(memory_);
        for (Element *parent : parents_) {
            const PlanNode *list = FindPlan(*parent->plan, list_);
            if (list == nullptr || !evaluator.tree.IsVisible(*list))
                continue;
            std::pmr::vector<References::Wanted> wanted(memory_);
            for (size_t i = names_.size(); i != 0; --i) // they were popped from the last
                wanted.push_back({FindPlan(*list, names_[i - 1]), values_[i - 1]});
            evaluator.references.FindEntries(*parent, *list, wanted, found);
        }
        xmlXPathObject *result = xmlXPathNewNodeSet(nullptr);
        call_.Push(result);
        for (Element *entry : found)
            if (xmlXPathNodeSetAddUnique(result->nodesetval, &entry->node) != 0)
                throw std::bad_alloc();
    }

private:
    using Strings = std::pmr::vector<std::string_view>;

    // Each text once. Those that are no values of the tree are kept here.
    bool PopValues(Strings &out)
    {
        if (!call_.IsNodeSet()) {
            if (!call_.PopString(texts_.emplace_back()))
                return false;
            out.push_back(texts_.back());
            return true;
        }
        Elements nodes(memory_);
        call_.PopElements(nodes);
        for (Element *node : nodes)
            out.push_back(node->plan->IsLeaf() ? node->value : TextOf(*node));
        std::sort(out.begin(), out.end());
        out.erase(std::unique(out.begin(), out.end()), out.end());
        return true;
    }
    std::string_view TextOf(Element &node)
    {
        XmlString text(xmlXPathCastNodeToString(&node.node));
        return texts_.emplace_back(View(text.get()));
    }
    const PlanNode *FindPlan(const PlanNode &parent, std::string_view qualified) const
    {
        const Plan &plan = call_.evaluator().plan;
        QName name = SplitName(qualified);
        return plan.FindChild(parent, plan.FindModule(name.prefix), name.name);
    }

    Call &call_;
    std::pmr::memory_resource *memory_;
    std::pmr::string list_{memory_};
    Elements parents_{memory_};
    std::pmr::vector<std::pmr::string> names_;
    std::pmr::vector<Strings> values_;
    std::pmr::deque<std::pmr::string> texts_; // which stay in their place
};

void Entries(Call &call)
{
    EntryFinder finder(call);
    if (finder.PopArguments())
        finder.Run();
}

// What a function throws must not pass through libxml2.
constexpr int kAny = -1;

template <void (*kFunction)(Call &), int kArguments>
void Invoke(xmlXPathParserContext *parser, int arguments)
{
    if (kArguments != kAny && arguments != kArguments) {
        xmlXPathErr(parser, XPATH_INVALID_ARITY);
        return;
    }
    try {
        Call call(parser, arguments);
        kFunction(call);
    } catch (const std::bad_alloc &) {
        static_cast<Evaluator *>(parser->context->extra)->isOutOfMemory = true;
        xmlXPathErr(parser, XPATH_MEMORY_ERROR);
    }
}

struct Function {
    const char *name;
    xmlXPathFunction function;
};
constexpr Function kFunctions[] = {
    {"current", Invoke<Current, 0>},
    {"re-match", Invoke<ReMatch, 2>},
    {"deref", Invoke<Deref, 1>},
    {"derived-from", Invoke<DerivedFrom, 2>},
    {"derived-from-or-self", Invoke<DerivedFromOrSelf, 2>},
    {"enum-value", Invoke<EnumValue, 1>},
    {"bit-is-set", Invoke<BitIsSet, 2>},
    {kEntriesFunction.data(), Invoke<Entries, kAny>},
};

} // namespace

// libxml2 does not tell when it had no memory for all of them, its own ones included.
bool RegisterFunctions(xmlXPathContext &context)
{
    auto isThere = [&](std::string_view name) {
        return xmlXPathFunctionLookup(&context, XmlText(name.data())) != nullptr;
    };
    for (const Function &row : kFunctions)
        xmlXPathRegisterFunc(&context, XmlText(row.name), row.function);
    return std::ranges::all_of(FunctionNames(), isThere) && isThere(kEntriesFunction);
}

} // namespace zr::data
