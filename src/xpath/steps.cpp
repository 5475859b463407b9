// SPDX-License-Identifier: Apache-2.0
// Location paths: from node to node, one step at a time.
#include "xpath/evaluate.h"

#include "foundation/text.h"
#include "platform/strings.h"
#include "xpath/child_memory.h"

namespace {

// What "/" alone stands for where the root node is not to be read: a node that is there and has no
// value.
constexpr xmlNode kRootWithoutValue = [] {
    xmlNode node{};
    node.type = XML_DOCUMENT_NODE;
    return node;
}();

// The local name of a name test. A wildcard stays the text "*": no element bears that name, so that
// it finds none.
bool LocalName(const char *text, uint32_t length, char (&name)[zr::kNameSize])
{
    if (length != 0 && text[length - 1] == '*')
        return strcpy_s(name, sizeof(name), "*") == 0;
    char test[2 * zr::kNameSize]; // prefix, colon, name and NUL
    char prefix[zr::kNameSize];
    return strncpy_s(test, sizeof(test), text, length) == 0 &&
           ZR_UTL_GetXPathNextPrefixAndNode(test, prefix, sizeof(prefix), name, sizeof(name)) ==
               ZR_OK;
}

// The operation in which the context node stands: the child of the root node.
xmlNode *OperationOf(const ZrXpathEvalCtx *ctx)
{
    xmlNode *node = ctx->contextNode;
    while (node != nullptr && node->parent != ctx->rootNode)
        node = node->parent;
    return node;
}

xmlNode *FindChild(const ZrXpathEvalCtx *ctx, const xmlNode *node, const char *name,
                   const zr::XpathView &view)
{
    if (view.operationAlone && node == ctx->rootNode) {
        xmlNode *operation = OperationOf(ctx);
        return operation != nullptr && zr::HasName(operation, name) ? operation : nullptr;
    }
    // What hangs below a reference to an entity belongs to the entity's declaration.
    if (node->type == XML_ENTITY_REF_NODE)
        return nullptr;
    return view.memory != nullptr ? view.memory->Find(node, name)
                                  : zr::FirstNamed(node->children, name);
}

uint32_t NameTest(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                  const zr::XpathView &view)
{
    const xmlNode *node = ZR_XPATH_GetStackTopObjNode(ctx);
    if (node != nullptr) {
        uint32_t length = 0;
        const char *text = ZR_XPATH_GetTokenExprByPos(lex, *cursor, nullptr, &length);
        char name[zr::kNameSize];
        if (!LocalName(text, length, name))
            return ZR_ERR_INVALID;
        // The node came from the object on top, which can therefore take another one.
        ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, FindChild(ctx, node, name, view));
    }
    ++*cursor;
    return ZR_OK;
}

uint32_t ParentStep(ZrXpathEvalCtx *ctx, uint32_t *cursor, const zr::XpathView &view)
{
    const xmlNode *node = ZR_XPATH_GetStackTopObjNode(ctx);
    if (view.operationAlone && node == ctx->rootNode)
        ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, nullptr);
    else if (node != nullptr && node->parent != ctx->rootNode)
        ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, node->parent);
    ++*cursor;
    return ZR_OK;
}

uint32_t Step(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
              const zr::XpathView &view)
{
    switch (zr::TokenTypeAt(lex, *cursor)) {
    case ZR_XPATH_TOKEN_NAME: {
        uint32_t status = NameTest(ctx, lex, cursor, view);
        return status != ZR_OK ? status : ZR_XPATH_SkipPredicate(ctx, lex, cursor);
    }
    case ZR_XPATH_TOKEN_DOT:
        return ZR_XPATH_EvalDot(ctx, lex, cursor);
    case ZR_XPATH_TOKEN_DOTDOT:
        return ParentStep(ctx, cursor, view);
    default:
        return ZR_XPATH_ERR_BAD_STEP;
    }
}

// "//" goes on like "/", and one at the end is passed over: docs/oddities.md.
uint32_t RelativePath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                      const zr::XpathView &view)
{
    uint32_t status = ZR_OK;
    if (ZR_XPATH_GetStackTopObjNode(ctx) == nullptr)
        status = ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, ctx->contextNode);
    while (status == ZR_OK && zr::StartsStep(zr::TokenTypeAt(lex, *cursor))) {
        status = Step(ctx, lex, cursor, view);
        if (status != ZR_OK || zr::TokenTypeAt(lex, *cursor) != ZR_XPATH_TOKEN_PATHOP)
            return status;
        ++*cursor;
    }
    return status;
}

uint32_t AbsolutePath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                      const zr::XpathView &view)
{
    uint32_t status = ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, ctx->rootNode);
    if (status != ZR_OK)
        return status;
    uint32_t type = ZR_XPATH_TOKEN_NONE;
    uint32_t length = 0;
    ZR_XPATH_GetTokenExprByPos(lex, *cursor, &type, &length);
    if (type != ZR_XPATH_TOKEN_PATHOP || length != 1)
        return ZR_XPATH_ERR_ROOT_STEP;
    ++*cursor;
    if (zr::StartsStep(zr::TokenTypeAt(lex, *cursor)))
        status = RelativePath(ctx, lex, cursor, view);
    if (view.operationAlone && ZR_XPATH_GetStackTopObjNode(ctx) == ctx->rootNode)
        ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, const_cast<xmlNode *>(&kRootWithoutValue));
    return status;
}

} // namespace

namespace zr {

bool StartsStep(uint32_t tokenType)
{
    return tokenType == ZR_XPATH_TOKEN_DOT || tokenType == ZR_XPATH_TOKEN_DOTDOT ||
           tokenType == ZR_XPATH_TOKEN_NAME || tokenType == ZR_XPATH_TOKEN_RESERVED9;
}

uint32_t EvalLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                          const XpathView &view)
{
    uint32_t status = ZR_XPATH_PushNodeToObjStack(ctx, nullptr);
    if (status != ZR_OK)
        return status;
    uint32_t type = TokenTypeAt(lex, *cursor);
    if (type == ZR_XPATH_TOKEN_PATHOP)
        return AbsolutePath(ctx, lex, cursor, view);
    return StartsStep(type) ? RelativePath(ctx, lex, cursor, view) : uint32_t{ZR_ERR_INVALID};
}

} // namespace zr

uint32_t ZR_XPATH_EvalAbsoluteLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                           uint32_t *cursor)
{
    return AbsolutePath(ctx, lex, cursor, zr::kWholeTree);
}

uint32_t ZR_XPATH_EvalRelativeLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                           uint32_t *cursor)
{
    return RelativePath(ctx, lex, cursor, zr::kWholeTree);
}

uint32_t ZR_XPATH_EvalStep(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    return Step(ctx, lex, cursor, zr::kWholeTree);
}

uint32_t ZR_XPATH_EvalNameTest(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    return NameTest(ctx, lex, cursor, zr::kWholeTree);
}

uint32_t ZR_XPATH_EvalDot(ZrXpathEvalCtx *, const ZrXpathLex *, uint32_t *cursor)
{
    ++*cursor;
    return ZR_OK;
}

uint32_t ZR_XPATH_EvalDDot(ZrXpathEvalCtx *ctx, const ZrXpathLex *, uint32_t *cursor)
{
    return ParentStep(ctx, cursor, zr::kWholeTree);
}

uint32_t ZR_XPATH_SkipPredicate(ZrXpathEvalCtx *, const ZrXpathLex *lex, uint32_t *cursor)
{
    if (zr::TokenTypeAt(lex, *cursor) != ZR_XPATH_TOKEN_LBRACKET)
        return ZR_OK;
    while (*cursor < ZR_XPATH_GetTokenNumber(lex)) {
        if (zr::TokenTypeAt(lex, (*cursor)++) == ZR_XPATH_TOKEN_RBRACKET)
            return ZR_OK;
    }
    return ZR_XPATH_ERR_PREDICATE;
}
