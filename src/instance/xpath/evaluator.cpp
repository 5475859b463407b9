// SPDX-License-Identifier: Apache-2.0
#include "instance/xpath/evaluator.h"

#include <libxml/xpathInternals.h>

#include <new>

#include "instance/base/text.h"
#include "instance/xpath/functions.h"
#include "shared/xml_reports.h"

namespace zr::data {

Evaluator::Evaluator(const Plan &aPlan, Tree &aTree, References &theReferences, uint64_t stepLimit,
                     std::pmr::memory_resource *memory)
    : plan(aPlan), tree(aTree), references(theReferences), patterns(aTree.arena, memory),
      memory_(memory), stepLimit_(stepLimit), compiled_(memory)
{
}

Evaluator::~Evaluator()
{
    for (xmlXPathCompExpr *compiled : compiled_)
        xmlXPathFreeCompExpr(compiled);
    xmlXPathFreeContext(context_);
}

void Evaluator::Prepare()
{
    compiled_.resize(plan.expressions.size());
    xmlXPathContext *context = xmlXPathNewContext(&tree.doc);
    if (context == nullptr)
        throw std::bad_alloc();
    context_ = context;
    context->error = [](void *, xmlErrorPtr) {};
    context->opLimit = static_cast<unsigned long>(stepLimit_);
    context->extra = this;
    bool isWhole = xmlXPathContextSetCache(context, 1, -1, 0) == 0 && RegisterFunctions(*context);
    for (const PlanModule *module : plan.modules)
        isWhole &= xmlXPathRegisterNs(context, module->xml.prefix, module->xml.href) == 0;
    if (!isWhole)
        throw std::bad_alloc();
}

// What libxml2 says of an evaluation that came to no end.
Truth Evaluator::Explain()
{
    int code = XPathErrorOf(context_->lastError);
    if (isOutOfMemory || IsShortOfMemory(context_->lastError))
        throw std::bad_alloc();
    if (code == XPATH_OP_LIMIT_EXCEEDED)
        return Truth::Exceeded;
    struct Row {
        int code;
        const char *reason;
    };
    static constexpr Row kReasons[] = {
        {XPATH_UNKNOWN_FUNC_ERROR, "it calls a function that is not known"},
        {XPATH_INVALID_ARITY, "a function has too many arguments or too few"},
        {XPATH_INVALID_TYPE, "an argument of a function has the wrong type"},
        {XPATH_RECURSION_LIMIT_EXCEEDED, "it is nested too deeply"},
    };
    reason_ = "it cannot be evaluated";
    for (const Row &row : kReasons)
        if (row.code == code)
            reason_ = row.reason;
    return Truth::Failed;
}

Truth Evaluator::Evaluate(const Expression &given, Element &context)
{
    if (given.text == nullptr) {
        reason_ = given.fault;
        return Truth::Failed;
    }
    if (context_ == nullptr)
        Prepare();
    tree.Prepare();
    xmlResetError(&context_->lastError);
    xmlXPathCompExpr *&compiled = compiled_[given.number];
    if (compiled == nullptr)
        compiled = xmlXPathCtxtCompile(context_, XmlText(given.text));
    if (compiled == nullptr || IsShortOfMemory(context_->lastError)) // it may lack a part
        return Explain();
    bool isRoot = &context == &tree.root;
    current = isRoot ? reinterpret_cast<xmlNode *>(&tree.doc) : &context.node;
    expression = &given;
    context_->node = current;
    // Of the whole expression the context is one node (RFC 7950, section 6.4.1).
    context_->contextSize = context_->proximityPosition = 1;
    context_->opCount = 0;
    int truth = xmlXPathCompiledEvalToBoolean(compiled, context_);
    if (truth < 0)
        return Explain();
    return truth != 0 ? Truth::True : Truth::False;
}

} // namespace zr::data
