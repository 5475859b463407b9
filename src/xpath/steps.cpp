// Location paths: from node to node, one step at a time.
#include "xpath/steps.h"

#include "foundation/text.h"
#include "platform/secure.h"
#include "platform/text.h"

namespace zr {

bool StartsStep(uint32_t tokenType)
{
    return tokenType == ZR_XPATH_TOKEN_DOT || tokenType == ZR_XPATH_TOKEN_DOTDOT ||
           tokenType == ZR_XPATH_TOKEN_NAME || tokenType == ZR_XPATH_TOKEN_RESERVED9;
}

} // namespace zr

uint32_t ZR_XPATH_EvalAbsoluteLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                           uint32_t *cursor)
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
    if (!zr::StartsStep(zr::TokenTypeAt(lex, *cursor)))
        return ZR_OK;
    return ZR_XPATH_EvalRelativeLocationPath(ctx, lex, cursor);
}

// Kept: "//" goes on to the children only, like "/", and a "/" at the end is passed over.
uint32_t ZR_XPATH_EvalRelativeLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                           uint32_t *cursor)
{
    uint32_t status = ZR_OK;
    if (ZR_XPATH_GetStackTopObjNode(ctx) == nullptr)
        status = ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, ctx->contextNode);
    while (status == ZR_OK && zr::StartsStep(zr::TokenTypeAt(lex, *cursor))) {
        status = ZR_XPATH_EvalStep(ctx, lex, cursor);
        if (status != ZR_OK || zr::TokenTypeAt(lex, *cursor) != ZR_XPATH_TOKEN_PATHOP)
            return status;
        ++*cursor;
    }
    return status;
}

uint32_t ZR_XPATH_EvalStep(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    switch (zr::TokenTypeAt(lex, *cursor)) {
    case ZR_XPATH_TOKEN_NAME: {
        uint32_t status = ZR_XPATH_EvalNameTest(ctx, lex, cursor);
        return status != ZR_OK ? status : ZR_XPATH_SkipPredicate(ctx, lex, cursor);
    }
    case ZR_XPATH_TOKEN_DOT:
        return ZR_XPATH_EvalDot(ctx, lex, cursor);
    case ZR_XPATH_TOKEN_DOTDOT:
        return ZR_XPATH_EvalDDot(ctx, lex, cursor);
    default:
        return ZR_XPATH_ERR_BAD_STEP;
    }
}

namespace {

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

xmlNode *FindChildByName(const xmlNode *parent, const char *name)
{
    for (xmlNode *child = parent->children; child != nullptr; child = child->next) {
        const char *childName = reinterpret_cast<const char *>(child->name);
        if (childName != nullptr && PAL_StrCmp(childName, name) == 0)
            return child;
    }
    return nullptr;
}

} // namespace

uint32_t ZR_XPATH_EvalNameTest(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    const xmlNode *node = ZR_XPATH_GetStackTopObjNode(ctx);
    if (node != nullptr) {
        uint32_t length = 0;
        const char *text = ZR_XPATH_GetTokenExprByPos(lex, *cursor, nullptr, &length);
        char name[zr::kNameSize];
        if (!LocalName(text, length, name))
            return ZR_ERR_INVALID;
        // The node came from the object on top, which can therefore take another one.
        ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, FindChildByName(node, name));
    }
    ++*cursor;
    return ZR_OK;
}

uint32_t ZR_XPATH_EvalDot(ZrXpathEvalCtx *, const ZrXpathLex *, uint32_t *cursor)
{
    ++*cursor;
    return ZR_OK;
}

uint32_t ZR_XPATH_EvalDDot(ZrXpathEvalCtx *ctx, const ZrXpathLex *, uint32_t *cursor)
{
    const xmlNode *node = ZR_XPATH_GetStackTopObjNode(ctx);
    if (node != nullptr && node->parent != ctx->rootNode)
        ZR_XPATH_ReplaceNodeToTopElemInObjStack(ctx, node->parent);
    ++*cursor;
    return ZR_OK;
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
