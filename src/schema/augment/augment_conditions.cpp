// SPDX-License-Identifier: Apache-2.0
// What an augment passes down to the nodes that it adds: its "when" and its if-features.
#include <cstring>
#include <string_view>

#include "platform/memory.h"
#include "platform/strings.h"
#include "schema/augment/augment.h"
#include "schema/members/condition_records.h"
#include "schema/nodes/node.h"
#include "xpath/lex.h"

namespace {

constexpr std::string_view kUp = "../";
constexpr std::string_view kUpAfter = "/..";

// Writes the rewritten condition token by token.
class ConditionWriter {
public:
    ConditionWriter(const ZrXpathLex *lex, char *out) : lex_(lex), out_(out) {}

    void WriteToken(uint32_t position)
    {
        const ZrXpathToken &token = lex_->tokens[position];
        Put({lex_->expression + end_, token.start - end_}); // white space
        if (startOfPath_)
            ClimbAtStart(token.type);
        if (afterCurrent_ && token.type == ZR_XPATH_TOKEN_PATHOP) {
            Put(kUpAfter);
            afterCurrent_ = false;
        }
        Put(TextOf(position));
        end_ = token.start + token.length;
        // Only a new operand starts a new path; a predicate's opening bracket does not.
        if (token.type >= ZR_XPATH_TOKEN_UNION && token.type <= ZR_XPATH_TOKEN_OR)
            startOfPath_ = true;
        if (IsCurrentCall(position))
            afterCurrent_ = true;
    }

private:
    std::string_view TextOf(uint32_t position) const
    {
        const ZrXpathToken &token = lex_->tokens[position];
        return {lex_->expression + token.start, token.length};
    }

    uint32_t TypeOf(uint32_t position) const
    {
        return position < lex_->count ? lex_->tokens[position].type : ZR_XPATH_TOKEN_NONE;
    }

    bool IsCurrentCall(uint32_t position) const
    {
        return TypeOf(position) == ZR_XPATH_TOKEN_FUNCNAME && TextOf(position) == "current" &&
               TypeOf(position + 1) == ZR_XPATH_TOKEN_LPAREN &&
               TypeOf(position + 2) == ZR_XPATH_TOKEN_RPAREN;
    }

    // Writes what goes before the first token of a path: nothing before an absolute one.
    void ClimbAtStart(uint32_t type)
    {
        switch (type) {
        case ZR_XPATH_TOKEN_PATHOP:
            break;
        case ZR_XPATH_TOKEN_DOT:
            Put("."); // "." becomes ".."
            break;
        case ZR_XPATH_TOKEN_NAME:
        case ZR_XPATH_TOKEN_DOTDOT:
            Put(kUp);
            break;
        default:
            return; // the path is still to come
        }
        startOfPath_ = false;
    }

    void Put(std::string_view text)
    {
        std::memcpy(out_, text.data(), text.size());
        out_ += text.size();
    }

    const ZrXpathLex *lex_;
    char *out_;
    uint32_t end_ = 0; // of the token before, in the expression
    bool startOfPath_ = true;
    bool afterCurrent_ = false;
};

uint32_t ReplaceWhen(ZrDict *dict, ZrNode *child, const char *condition)
{
    const char *when = condition != nullptr ? ZR_DICT_Insert(dict, condition) : nullptr;
    if (when == nullptr)
        return ZR_ERR_INVALID;
    ZR_DICT_Remove(dict, child->when);
    child->when = when;
    return ZR_OK;
}

// The condition one level further down, as a new text: ZR_OK, ZR_ERR_INVALID when it cannot be
// read, or ZR_ERR_NO_MEMORY.
uint32_t RewriteForChild(const char *condition, zr::XpathAxes axes, char **textOut)
{
    zr::Owned<ZrXpathLex, ZR_XPATH_FreeXpathLex> lex;
    uint32_t status = zr::Tokenize(condition, zr::Out(lex), axes);
    if (status != ZR_OK)
        return status;
    // A token of one character gets at most three more, so that the result always fits.
    size_t size = std::strlen(condition) * (1 + kUp.size()) + 1;
    *textOut = zr::New<char>(size);
    if (*textOut == nullptr)
        return ZR_ERR_NO_MEMORY;
    ConditionWriter writer(lex.get(), *textOut);
    for (uint32_t i = 0; i < lex->count; ++i)
        writer.WriteToken(i);
    return ZR_OK;
}

bool Inherits(const ZrNode *child)
{
    return child->kind != ZR_NODE_ACTION && child->kind != ZR_NODE_NOTIFICATION;
}

} // namespace

char *ZRS_NODE_GetParentCond(const char *condition)
{
    char *text = nullptr;
    RewriteForChild(condition, zr::XpathAxes::kRefused, &text);
    return text;
}

char *ZRS_NODE_CombineTwoWhenCondition(const char *a, const char *b)
{
    if (a == nullptr || b == nullptr)
        return nullptr;
    size_t size = std::strlen(a) + std::strlen(b) + sizeof("() and ()");
    zr::Owned<char> text(zr::New<char>(size));
    if (!text || sprintf_s(text.get(), size, "(%s) and (%s)", a, b) < 0)
        return nullptr;
    return text.release();
}

uint32_t ZRS_NODE_InheritAugNodeWhenCondToChildNode(ZrDict *dict, ZrNode *child,
                                                    const char *condition)
{
    if (dict == nullptr || child == nullptr || condition == nullptr)
        return ZR_ERR_INVALID;
    if (child->when == nullptr)
        return ReplaceWhen(dict, child, condition);
    zr::Owned<char> both(ZRS_NODE_CombineTwoWhenCondition(condition, child->when));
    return ReplaceWhen(dict, child, both.get());
}

uint32_t ZRS_NODE_InheritAugNodeIfFeatArrayToChildNode(ZrDict *dict, const ZrNode *augment,
                                                       ZrNode *child)
{
    if (dict == nullptr || augment == nullptr || child == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; i < augment->ifFeatureCount; ++i) {
        const ZrsIfFeature &entry = augment->ifFeatures[i];
        if (ZRS_NODE_FindIfFeature(child->ifFeatures, child->ifFeatureCount, entry.moduleName,
                                   entry.featureName) != nullptr)
            continue;
        uint32_t status = ZRS_NODE_AppendOneIfFeat(dict, &child->ifFeatures, &child->ifFeatureCount,
                                                   entry.moduleName, entry.featureName);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_NODE_InheritAugNodeEvalToChildNode(ZrDict *dict, const ZrNode *augment, ZrNode *child,
                                                const char *condition)
{
    uint32_t status = condition != nullptr
                          ? ZRS_NODE_InheritAugNodeWhenCondToChildNode(dict, child, condition)
                          : uint32_t{ZR_OK};
    return status != ZR_OK ? status
                           : ZRS_NODE_InheritAugNodeIfFeatArrayToChildNode(dict, augment, child);
}

uint32_t ZRS_NODE_InheritAugNodeEvalToAllChildNode(ZrDict *dict, ZrNode *augment)
{
    if (dict == nullptr || augment == nullptr)
        return ZR_ERR_INVALID;
    if (augment->when == nullptr && augment->ifFeatureCount == 0)
        return ZR_OK;
    // A condition that cannot be rewritten is not passed down (docs/oddities.md). One that only
    // found no memory must not get lost: nodes would be there that should not.
    zr::Owned<char> condition;
    uint32_t status = ZR_OK;
    if (augment->when != nullptr)
        status =
            RewriteForChild(augment->when, zr::AxesOf(zr::ContextOf(augment)), zr::Out(condition));
    if (status == ZR_ERR_NO_MEMORY)
        return status;
    status = ZR_OK;
    for (ZrNode *child = augment->firstChild; child != nullptr && status == ZR_OK;
         child = child->next) {
        if (Inherits(child))
            status = ZRS_NODE_InheritAugNodeEvalToChildNode(dict, augment, child, condition.get());
    }
    return status;
}
