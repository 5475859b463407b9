// SPDX-License-Identifier: Apache-2.0
// Conditions and defaults in module-name form.
#include <cstring>

#include "loader/statements/arguments.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "types/real_type.h"
#include "xpath/lex.h"

namespace {

struct Token {
    uint32_t type;
    const char *text;
    uint32_t length;
};

const char *ModuleNameOfPrefix(const ZrMod *module, const char *text, uint32_t length)
{
    char prefix[zr::kNameSize];
    if (strncpy_s(prefix, sizeof(prefix), text, length) != 0)
        return nullptr;
    return ZRS_MOD_GetModuleNameByPrefix(module, prefix);
}

// The length of the prefix of a name test; 0 when it has none.
uint32_t PrefixLengthOfName(const Token &token)
{
    const void *colon = std::memchr(token.text, ':', token.length);
    return colon != nullptr ? static_cast<uint32_t>(static_cast<const char *>(colon) - token.text)
                            : 0;
}

// The same for a literal, when all that it holds is "prefix:name": identities are compared in
// module-name form. The prefix begins behind the quote.
uint32_t PrefixLengthOfLiteral(const Token &token)
{
    const char *content = token.text + 1;
    uint32_t prefixLength = ZR_UTL_ConsumeIdentNameBestEffort(content);
    if (prefixLength == 0 || content[prefixLength] != ':')
        return 0;
    uint32_t nameLength = ZR_UTL_ConsumeIdentNameBestEffort(content + prefixLength + 1);
    bool isWhole = nameLength != 0 && prefixLength + nameLength + 3 == token.length;
    return isWhole ? prefixLength : 0;
}

// Writes `before` characters of the token as they are, the module's name for the prefix behind
// them, and the rest from the colon on.
uint32_t AppendRewritten(const ZrMod *module, zr::ConditionText *out, const Token &token,
                         uint32_t before, uint32_t prefixLength)
{
    uint32_t restStart = before + prefixLength;
    uint32_t status = ZRS_LOADER_CopyTokenIntoOutCondition(out, token.text, before);
    if (status == ZR_OK)
        status =
            ZRS_LOADER_AddModuleNameIntoCondition(module, out, token.text + before, prefixLength);
    if (status == ZR_OK)
        status = ZRS_LOADER_CopyTokenIntoOutCondition(out, token.text + restStart,
                                                      token.length - restStart);
    return status;
}

uint32_t AppendToken(const ZrMod *module, zr::ConditionText *out, const Token &token)
{
    if (token.type == ZR_XPATH_TOKEN_NAME) {
        uint32_t prefixLength = PrefixLengthOfName(token);
        if (prefixLength != 0)
            return AppendRewritten(module, out, token, 0, prefixLength);
    }
    if (token.type == ZR_XPATH_TOKEN_LITERAL) {
        uint32_t prefixLength = PrefixLengthOfLiteral(token);
        if (prefixLength != 0 &&
            ModuleNameOfPrefix(module, token.text + 1, prefixLength) != nullptr)
            return AppendRewritten(module, out, token, 1, prefixLength);
    }
    return ZRS_LOADER_CopyTokenIntoOutCondition(out, token.text, token.length);
}

// Token by token, with the white space between them.
uint32_t AppendTokens(const ZrMod *module, zr::ConditionText *out, const ZrXpathLex *lex,
                      const char *condition)
{
    const char *copied = condition;
    uint32_t count = ZR_XPATH_GetTokenNumber(lex);
    for (uint32_t i = 0; i < count; ++i) {
        Token token = {};
        token.text = ZR_XPATH_GetTokenExprByPos(lex, i, &token.type, &token.length);
        uint32_t status = ZRS_LOADER_CopyTokenIntoOutCondition(
            out, copied, static_cast<uint32_t>(token.text - copied));
        if (status == ZR_OK)
            status = AppendToken(module, out, token);
        if (status != ZR_OK)
            return status;
        copied = token.text + token.length;
    }
    return ZRS_LOADER_CopyTokenIntoOutCondition(out, copied,
                                                static_cast<uint32_t>(std::strlen(copied)));
}

} // namespace

uint32_t ZRS_LOADER_CopyTokenIntoOutCondition(zr::ConditionText *out, const char *text,
                                              uint32_t length)
{
    if (length > zr::kMaxConditionLength - out->length)
        return ZR_ERR_INVALID;
    std::memcpy(out->text + out->length, text, length);
    out->length += length;
    return ZR_OK;
}

uint32_t ZRS_LOADER_AddModuleNameIntoCondition(const ZrMod *module, zr::ConditionText *out,
                                               const char *prefix, uint32_t length)
{
    const char *name = ModuleNameOfPrefix(module, prefix, length);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    return ZRS_LOADER_CopyTokenIntoOutCondition(out, name,
                                                static_cast<uint32_t>(std::strlen(name)));
}

char *ZRS_LOADER_TransPrefix2ModNameInLiteral(const ZrMod *module, const char *condition)
{
    zr::Owned<char> text(zr::New<char>(zr::kMaxConditionLength + 1));
    if (!text)
        return nullptr;
    zr::Owned<ZrXpathLex, ZR_XPATH_FreeXpathLex> lex;
    if (zr::Tokenize(condition, zr::Out(lex), zr::AxesOf(module->ctx)) != ZR_OK)
        return nullptr;
    zr::ConditionText out = {text.get(), 0};
    uint32_t status = AppendTokens(module, &out, lex.get(), condition);
    return status == ZR_OK ? text.release() : nullptr;
}

// Defaults.

namespace {

// An identity is written with a prefix of its file (RFC 7950, section 9.10.3) and compared as
// module:identity. The old text stays when the new one cannot be had.
uint32_t RefreshDefault(ZrMod *module, const ZrtRealType *type, const char **value)
{
    if (*value == nullptr || ZRT_TYPE_IsTypeWithIdentref(type) == 0)
        return ZR_OK;
    zr::Owned<char> qualified(ZRS_MOD_ConvertPrefixValToJsonFormat(module, *value));
    if (!qualified)
        return ZR_ERR_INVALID;
    return zr::KeepText(module, qualified.get(), value);
}

} // namespace

uint32_t ZRS_LOADER_RefreshLeafDefaultValue(ZrMod *module, ZrNode *leaf)
{
    auto *info = static_cast<ZrsLeafInfo *>(leaf->info);
    return RefreshDefault(module, &info->realType, &info->defaultValue);
}

uint32_t ZRS_LOADER_RefreshLeafListDefaultValue(ZrMod *module, ZrNode *leafList)
{
    auto *info = static_cast<ZrsLeafListInfo *>(leafList->info);
    for (uint32_t i = 0; i < info->defaultCount; ++i) {
        uint32_t status = RefreshDefault(module, &info->realType, &info->defaults[i]);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_LOADER_RefreshTypeDefDefaultValue(ZrMod *module, ZrsTypDef *typeDef)
{
    return RefreshDefault(module, &typeDef->realType, &typeDef->defaultValue);
}
