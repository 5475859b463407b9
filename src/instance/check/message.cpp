// SPDX-License-Identifier: Apache-2.0
// Readers of the kinds of documents: data, edits, and messages, whose operation or notification
// stands in its place in the data (RFC 7950, sections 6.4.1, 7.14, 7.15 and 7.16).
#include "instance/base/text.h"
#include "instance/check/envelope.h"
#include "instance/check/match.h"
#include "instance/check/match_json.h"
#include "instance/tree/json_node.h"
#include "instance/tree/value.h"

namespace zr::data {

namespace {

// The kinds of messages that are looked for: at the top, and inside data; 0 for none.
struct Wanted {
    uint32_t atTop, inData;
    const char *name; // of those inside data
};
constexpr Wanted kRpc = {ZR_NODE_RPC, 0, nullptr};
constexpr Wanted kAction = {0, ZR_NODE_ACTION, "action"};
constexpr Wanted kOperation = {ZR_NODE_RPC, ZR_NODE_ACTION, "action"};
constexpr Wanted kNotification = {ZR_NODE_NOTIFICATION, ZR_NODE_NOTIFICATION, "notification"};

class MessageReader {
public:
    explicit MessageReader(Run &run)
        : run_(run), matcher_(run), text_(run.memory), value_(run.memory)
    {
        run_.tree.root.isContext = true;
    }

    // Follows the nodes that lead from the top to the message.
    void Read(const xmlNode &top, const Wanted &wanted)
    {
        Element *at = &run_.tree.root;
        const xmlNode *step = &top;
        while (step != nullptr) {
            matcher_.CountElement();
            const PlanModule *module = matcher_.ModuleOf(*at, *step);
            if (module == nullptr)
                return;
            const Message *message = run_.plan.FindMessage(*at->plan, module, View(step->name));
            if (message != nullptr &&
                message->kind == (step == &top ? wanted.atTop : wanted.inData)) {
                if (IsFit(*at, *message->request, *step))
                    ReadContent(*at, *message->request, *step);
                return;
            }
            const PlanNode *plan = run_.plan.FindChild(*at->plan, module, View(step->name));
            if (plan == nullptr || plan->IsLeaf() || plan->IsAny() || wanted.inData == 0) {
                matcher_.AddUnknown(*at, *step);
                return;
            }
            if (!IsFit(*at, *plan, *step))
                return;
            at = &Enter(*at, *plan, *step);
            step = NextStep(*at, *step, wanted.name);
        }
    }

    void ReadReplyOf(const Message &operation, const xmlNode &source)
    {
        matcher_.CountElement();
        Element *parent = &EnterParent(*operation.reply->parent);
        Element &reply = *run_.tree.Add(*parent, *operation.reply, &source, 0);
        reply.isContext = false;
        matcher_.ExpectOrder();
        bool isRefused = false;
        const xmlNode *ok = nullptr;
        const xmlNode *other = nullptr;
        for (const xmlNode *at = source.children; at != nullptr; at = at->next) {
            if (IsNamed(*at, "rpc-error", kNetconfNamespace)) {
                isRefused = true;
            } else if (IsNamed(*at, "ok", kNetconfNamespace)) {
                ok = at;
            } else {
                matcher_.Walk(reply, *at);
                other = at->type == XML_ELEMENT_NODE ? at : other;
            }
        }
        if (isRefused) // nothing is asked for that an operation gives when it succeeds
            reply.isContext = true;
        else
            CheckOk(reply, source, ok, other);
    }

private:
    // An array without entries leads nowhere, which is told of the step that is missing in it.
    bool IsFit(const Element &parent, const PlanNode &plan, const xmlNode &source)
    {
        const JsonNode *json = AsJson(&source);
        return json == nullptr || (plan.IsRepeated() && json->kind == JsonKind::Array) ||
               IsShaped(run_.faults, run_.warnings, matcher_.At(parent, source, 0), plan, *json);
    }

    void ReadContent(Element &parent, const PlanNode &side, const xmlNode &source)
    {
        Element &message = matcher_.Add(parent, side, source);
        message.isContext = false;
        if (side.kind != ZR_NODE_NOTIFICATION)
            matcher_.ExpectOrder();
        matcher_.WalkChildren(message, source);
    }

    // RFC 7950, section 7.14.4: a reply has output parameters, or "ok" in their place.
    void CheckOk(const Element &reply, const xmlNode &source, const xmlNode *ok,
                 const xmlNode *other)
    {
        if (ok != nullptr && other != nullptr) {
            run_.faults.Add(FaultOfEnvelope(run_, *ok, ZR_ERROR_TAG_BAD_ELEMENT),
                            {"\"ok\" stands beside output parameters"});
        } else if (ok == nullptr && other == nullptr && !reply.plan->Is(PlanNode::kAsks) &&
                   IsNamed(source, "rpc-reply", kNetconfNamespace)) {
            Fault fault = FaultOfEnvelope(run_, source, ZR_ERROR_TAG_MISSING_ELEMENT);
            fault.badElement = "ok";
            run_.faults.Add(fault, {"\"ok\" is missing where there are no output parameters"});
        }
    }

    // ---- what leads to a message: of the datastore where it is there

    Element &Enter(Element &parent, const PlanNode &plan, const xmlNode &source)
    {
        Element *known = plan.kind == ZR_NODE_LIST ? FindEntry(parent, plan, source)
                                                   : run_.tree.First(parent, plan);
        if (known != nullptr)
            return *known;
        Element &element = matcher_.Add(parent, plan, source);
        for (const PlanNode *key : plan.keys) {
            if (const xmlNode *leaf = FindLeaf(source, *key))
                matcher_.Walk(element, *leaf);
            else
                run_.faults.Add(FaultBelow(element, *key, ZR_ERROR_TAG_MISSING_ELEMENT),
                                {"key \"", key->name, "\" is missing"});
        }
        return element;
    }
    // The parents of a reply's operation; which entries of lists they are is not known.
    Element &EnterParent(const PlanNode &plan)
    {
        std::pmr::vector<const PlanNode *> way(run_.memory);
        for (const PlanNode *at = &plan; at->parent != nullptr; at = at->parent)
            way.push_back(at);
        Element *element = &run_.tree.root;
        for (auto step = way.rbegin(); step != way.rend(); ++step) {
            Element *known =
                (*step)->kind == ZR_NODE_CONTAINER ? run_.tree.First(*element, **step) : nullptr;
            element = known != nullptr ? known : run_.tree.Add(*element, **step, nullptr, 0);
        }
        return *element;
    }
    static const xmlNode *FindLeaf(const xmlNode &source, const PlanNode &leaf)
    {
        return FindInner(source, leaf.name, View(leaf.module->xml.href));
    }
    Element *FindEntry(const Element &parent, const PlanNode &list, const xmlNode &source)
    {
        for (Element *at = run_.tree.First(parent, list); at != nullptr; at = at->nextSame)
            if (!list.keys.empty() && HasKeysOf(*at, source))
                return at;
        return nullptr;
    }
    bool HasKeysOf(const Element &entry, const xmlNode &source)
    {
        for (const PlanNode *key : entry.plan->keys) {
            const xmlNode *given = FindLeaf(source, *key);
            const Element *known = run_.tree.First(entry, *key);
            if (given == nullptr || known == nullptr)
                return false;
            text_.clear();
            AppendText(text_, *given);
            ValueResult result = ReadValue({run_.plan, *key, given}, *key->type, text_, value_);
            if (result.fault != nullptr || value_ != known->value)
                return false;
        }
        return true;
    }

    // The one element in a node on the way that is none of its keys; null, with a fault, when there
    // is none or more than one.
    const xmlNode *NextStep(const Element &at, const xmlNode &source, const char *what)
    {
        const xmlNode *found = nullptr;
        for (const xmlNode *inner = source.children; inner != nullptr; inner = inner->next) {
            if (inner->type != XML_ELEMENT_NODE || IsKeyOf(at, *inner))
                continue;
            if (found != nullptr) {
                run_.faults.Add(
                    matcher_.At(at, *inner, ZR_ERROR_TAG_BAD_ELEMENT),
                    {"beside keys, one node that leads to one ", what, " stands here alone"});
                return nullptr;
            }
            found = inner;
        }
        if (found == nullptr) {
            Fault fault = FaultAt(at, ZR_ERROR_TAG_MISSING_ELEMENT);
            fault.source = &source;
            run_.faults.Add(fault, {"no ", what, " stands in \"", at.plan->name, "\""});
        }
        return found;
    }
    static bool IsKeyOf(const Element &entry, const xmlNode &inner)
    {
        for (const PlanNode *key : entry.plan->keys)
            if (IsNamed(inner, key->name, View(key->module->xml.href)))
                return true;
        return false;
    }

    Run &run_;
    Matcher matcher_;
    std::pmr::string text_, value_;
};

} // namespace

void ReadDatastore(Run &run, Faults &warnings)
{
    auto *root = static_cast<const xmlNode *>(run.options.datastore);
    if (root == nullptr)
        return;
    Faults itsFaults(run.arena, run.memory, 0), itsWarnings(run.arena, run.memory, 0);
    run.tree.root.isContext = true;
    Matcher(run, itsFaults, itsWarnings).WalkChildren(run.tree.root, *root);
    if (itsFaults.found() != 0) {
        Fault warning;
        warning.tag = ZR_ERROR_TAG_INVALID_VALUE;
        warnings.Add(warning, {"the datastore has faults: what could not be read of it is as if it "
                               "was not there"});
    }
}

void ReadData(Run &run, const xmlNode &root)
{
    Matcher(run).WalkChildren(run.tree.root, root);
}

void ReadEdit(Run &run, const xmlNode &root)
{
    Operation defaultOperation = Operation::Merge;
    if (const xmlNode *data = OpenEdit(run, root, defaultOperation)) {
        run.tree.root.operation = defaultOperation;
        Matcher(run).WalkChildren(run.tree.root, *data);
    }
}

void ReadRequest(Run &run, const xmlNode &root)
{
    ReadDatastore(run, run.warnings);
    MessageReader reader(run);
    const xmlNode *operation = OpenRpc(run, root);
    if (operation == nullptr)
        return;
    if (!IsNamed(*operation, "action", kYangNamespace))
        reader.Read(*operation, AsJson(operation) != nullptr ? kOperation : kRpc);
    else if (const xmlNode *top = TakeOnly(run, *operation, nullptr, "top-level node"))
        reader.Read(*top, kAction);
}

void ReadReply(Run &run, const xmlNode &root)
{
    ReadDatastore(run, run.warnings);
    MessageReader(run).ReadReplyOf(*run.plan.FindOperation(run.options.operation), root);
}

void ReadNotification(Run &run, const xmlNode &root)
{
    ReadDatastore(run, run.warnings);
    MessageReader reader(run);
    if (const xmlNode *top = OpenNotification(run, root))
        reader.Read(*top, kNotification);
}

} // namespace zr::data
