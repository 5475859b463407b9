// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/leafref.h"

#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

class Compiler {
public:
    Compiler(Plan &plan, const PlanNode &leaf, std::string_view path)
        : plan_(plan), leaf_(leaf), tokens_(path), steps_(&plan.memory)
    {
    }

    // What is wrong with the path, or null.
    const char *Run(Type &type)
    {
        const PlanNode *at = &leaf_;
        module_ = leaf_.module;
        if (IsSlash()) {
            at = &plan_.root;
            type.upward = Type::kFromRoot;
        } else {
            at = Climb(type.upward);
        }
        while (at != nullptr && tokens_.at().kind != XPathKind::End) {
            if (IsSlash())
                tokens_.Advance();
            at = TakeStep(*at);
            if (at != nullptr && tokens_.at().kind == XPathKind::OpenBracket &&
                !TakePredicates(*at))
                return "a predicate of the path compares no leaf of the list with another leaf";
        }
        if (at == nullptr || !at->IsLeaf())
            return "the path leads to no leaf";
        type.target = at;
        type.steps = Keep(plan_.arena, steps_);
        return nullptr;
    }

private:
    bool IsSlash() const
    {
        return tokens_.at().kind == XPathKind::Slash && tokens_.at().text == "/";
    }
    bool Take(XPathKind kind)
    {
        if (tokens_.at().kind != kind)
            return false;
        tokens_.Advance();
        return true;
    }

    // Goes up from the leaf by steps "..", with the slash behind each.
    const PlanNode *Climb(uint32_t &upward)
    {
        const PlanNode *at = &leaf_;
        while (tokens_.at().kind == XPathKind::DotDot || tokens_.at().kind == XPathKind::Dot) {
            if (tokens_.at().kind == XPathKind::DotDot) {
                ++upward;
                at = at->parent;
            }
            tokens_.Advance();
            if (at == nullptr || !IsSlash())
                return at;
            tokens_.Advance();
        }
        return at;
    }

    // A step down. A name without a module is of the step's before, or of the leaf's.
    const PlanNode *TakeStep(const PlanNode &parent)
    {
        if (tokens_.at().kind != XPathKind::Name)
            return nullptr;
        QName name = SplitName(tokens_.at().text);
        tokens_.Advance();
        if (!name.prefix.empty())
            module_ = plan_.FindModule(name.prefix);
        const PlanNode *child = plan_.FindChild(parent, module_, name.name);
        if (child == nullptr)
            child = plan_.FindChild(parent, leaf_.module, name.name);
        return child != nullptr ? child : Plan::FindOwnMessage(leaf_, parent, module_, name.name);
    }

    bool TakePredicates(const PlanNode &list)
    {
        std::pmr::vector<PathPredicate> predicates(&plan_.memory);
        while (Take(XPathKind::OpenBracket)) {
            PathPredicate &predicate = predicates.emplace_back();
            if (!TakePredicate(list, predicate) || !Take(XPathKind::CloseBracket))
                return false;
        }
        steps_.push_back({&list, Keep(plan_.arena, predicates)});
        return list.kind == ZR_NODE_LIST;
    }

    // "m:leaf = current()/../m:x/m:y"
    bool TakePredicate(const PlanNode &list, PathPredicate &predicate)
    {
        predicate.leaf = TakeName(list, list.module);
        if (predicate.leaf == nullptr || predicate.leaf->kind != ZR_NODE_LEAF ||
            tokens_.at().text != "=" || !Take(XPathKind::Operator) ||
            tokens_.at().text != "current" || !Take(XPathKind::Function) ||
            !Take(XPathKind::Open) || !Take(XPathKind::Close) || !Take(XPathKind::Slash))
            return false;
        std::pmr::vector<const PlanNode *> downward(&plan_.memory);
        const PlanNode *at = Climb(predicate.upward);
        while (at != nullptr && !at->IsLeaf()) {
            at = TakeName(*at, at->module);
            downward.push_back(at);
            if (!IsSlash())
                break;
            tokens_.Advance();
        }
        predicate.downward = Keep(plan_.arena, downward);
        return at != nullptr && at->IsLeaf() && predicate.upward != 0;
    }

    // A name in a predicate; without a module it is of the leaf's, or of another one.
    const PlanNode *TakeName(const PlanNode &parent, const PlanModule *other)
    {
        if (tokens_.at().kind != XPathKind::Name)
            return nullptr;
        QName name = SplitName(tokens_.at().text);
        tokens_.Advance();
        if (!name.prefix.empty())
            return plan_.FindChild(parent, plan_.FindModule(name.prefix), name.name);
        const PlanNode *child = plan_.FindChild(parent, leaf_.module, name.name);
        return child != nullptr ? child : plan_.FindChild(parent, other, name.name);
    }

    Plan &plan_;
    const PlanNode &leaf_;
    XPathTokens tokens_;
    const PlanModule *module_ = nullptr; // that was named last
    std::pmr::vector<PathStep> steps_;
};

} // namespace

void CompileLeafref(Plan &plan, const PlanNode &leaf, const char *path, Type &type)
{
    if (const char *fault = Compiler(plan, leaf, path).Run(type))
        plan.AddProblem(leaf, path, fault);
}

} // namespace zr::data
