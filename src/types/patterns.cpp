// SPDX-License-Identifier: Apache-2.0
// The patterns of a type and the check of its values (RFC 7950, section 9.4.5).
//
// A pattern is compiled for each value, or, in a context that keeps compiled patterns, by the
// first value that meets it. Checks may run on several threads, so a compiled form is published
// with one compare-and-exchange: of two threads that compile the same pattern at once, one keeps
// its work and the other throws it away. What cannot be kept, because memory runs out or the
// pattern does not compile, is compiled for the value at hand, so that every value gets the same
// answer with and without the option.
//
// A matcher from outside compiles each pattern once. It may see patterns with other eyes than the
// built-in one, so the two never stand in for each other: where memory runs out, the value is not
// decided. Only a pattern that the matcher refuses goes to the built-in one, for good.
#include "foundation/array.h"
#include "foundation/pattern.h"
#include "types/constraints.h"

namespace {

// The compiler's own atomic operations: libc++ 14 has no std::atomic_ref.
template <typename T> T *Read(T *const &slot)
{
    return __atomic_load_n(&slot, __ATOMIC_SEQ_CST);
}

// Puts `made` into an empty `slot`; otherwise `discard(made)`. Returns what the slot then holds.
template <typename T, typename Discard> T *Publish(T *&slot, T *made, Discard discard)
{
    T *present = nullptr;
    if (__atomic_compare_exchange_n(&slot, &present, made, false, __ATOMIC_SEQ_CST,
                                    __ATOMIC_SEQ_CST))
        return made;
    discard(made);
    return present;
}

// A value under check against the patterns of its type.
struct Check {
    const ZrtConsPattern *patterns;
    ZrPatternMatcher *matcher; // null for the built-in one
    bool keeps;                // what the built-in one compiles
    const char *text;
};

uint32_t FormCount(const ZrtConsPattern *patterns, const ZrPatternMatcher *matcher)
{
    return matcher != nullptr ? 2U * patterns->count : patterns->count;
}

// The kept forms of a type's patterns, each null until it is there; null without memory for them.
void **KeptForms(const Check &check)
{
    void **forms = Read(check.patterns->compiled);
    if (forms != nullptr)
        return forms;
    auto *made = zr::New<void *>(FormCount(check.patterns, check.matcher));
    if (made == nullptr)
        return nullptr;
    return Publish(check.patterns->compiled, made, [](void **block) { zr::Free(block); });
}

void DiscardCompiled(void *form)
{
    xmlRegFreeRegexp(static_cast<xmlRegexp *>(form));
}

zr::Match MatchKept(const Check &check, uint32_t index)
{
    const char *pattern = check.patterns->items[index].pattern;
    void **forms = KeptForms(check);
    if (forms == nullptr)
        return zr::MatchPattern(check.text, pattern);
    void *compiled = Read(forms[index]);
    if (compiled == nullptr) {
        bool outOfMemory = false;
        compiled = zr::CompilePattern(pattern, &outOfMemory);
        if (compiled == nullptr)
            return outOfMemory ? zr::MatchPattern(check.text, pattern) : zr::Match::No;
        compiled = Publish(forms[index], compiled, DiscardCompiled);
    }
    return zr::MatchCompiled(static_cast<xmlRegexp *>(compiled), check.text);
}

// Stands in the place of the form of a pattern that the matcher refused: no form has this address.
void *Refused(ZrPatternMatcher *matcher)
{
    return matcher;
}

// The matcher's form of a pattern, Refused(), or null when memory runs out.
void *FormOfMatcher(const Check &check, uint32_t index)
{
    void **forms = KeptForms(check);
    if (forms == nullptr)
        return nullptr;
    void *&slot = forms[check.patterns->count + index];
    if (void *kept = Read(slot); kept != nullptr)
        return kept;
    ZrPatternMatcher *matcher = check.matcher;
    void *made = nullptr;
    uint32_t status =
        matcher->compile(check.patterns->items[index].pattern, matcher->userData, &made);
    if (status == ZR_ERR_NO_MEMORY)
        return nullptr;
    if (status != ZR_OK || made == nullptr)
        made = Refused(matcher);
    return Publish(slot, made, [&](void *form) {
        if (form != Refused(matcher))
            matcher->release(form, matcher->userData);
    });
}

zr::Match MatchBuiltIn(const Check &check, uint32_t index)
{
    return check.keeps ? MatchKept(check, index)
                       : zr::MatchPattern(check.text, check.patterns->items[index].pattern);
}

zr::Match MatchOne(const Check &check, uint32_t index)
{
    if (check.matcher == nullptr)
        return MatchBuiltIn(check, index);
    const void *form = FormOfMatcher(check, index);
    if (form == nullptr)
        return zr::Match::Undecided;
    if (form == Refused(check.matcher))
        return MatchBuiltIn(check, index);
    switch (check.matcher->match(form, check.text, check.matcher->userData)) {
    case ZR_PATTERN_MATCH:
        return zr::Match::Yes;
    case ZR_PATTERN_NO_MATCH:
        return zr::Match::No;
    default:
        return zr::Match::Undecided;
    }
}

void DiscardForms(ZrPatternMatcher *matcher, const ZrtConsPattern *patterns)
{
    void **forms = patterns->compiled;
    if (forms == nullptr)
        return;
    for (uint32_t i = 0; i < FormCount(patterns, matcher); ++i) {
        if (i < patterns->count)
            DiscardCompiled(forms[i]);
        else if (forms[i] != nullptr && forms[i] != Refused(matcher))
            matcher->release(forms[i], matcher->userData);
    }
    zr::Free(forms);
}

} // namespace

void *ZRT_CONS_CreateConsDataBodyWithPattern(uint32_t count)
{
    return zr::CreateCountedBody<ZrtConsPattern>(count);
}

void ZRT_CONS_DestroyConsDataBodyWithPattern(ZrCtx *ctx, void *body)
{
    auto *patterns = static_cast<ZrtConsPattern *>(body);
    if (patterns == nullptr)
        return;
    DiscardForms(ctx != nullptr ? ctx->patternMatcher : nullptr, patterns);
    zr::DestroyCountedBody<ZrtConsPattern>(ctx, patterns, [](ZrCtx *owner, ZrtPatternItem &item) {
        zr::Release(&owner->dict, item.pattern);
    });
}

void *ZRT_CONS_CopyConsDataBodyWithPattern(ZrCtx *ctx, const void *body)
{
    // A copy's patterns all match normally: docs/oddities.md.
    return zr::CopyCountedBody<ZrtConsPattern>(
        ctx, body,
        [](ZrCtx *owner, ZrtPatternItem &to, const ZrtPatternItem &from) {
            return zr::Intern(&owner->dict, to.pattern, from.pattern);
        },
        ZRT_CONS_DestroyConsDataBodyWithPattern);
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPattern(const void *body, uint32_t inputKind,
                                                      const void *value, ZrtValidateCtx *validation)
{
    const auto *patterns = static_cast<const ZrtConsPattern *>(body);
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr)
        return ZR_ERR_VALUE_PATTERN;
    const ZrCtx *ctx = validation != nullptr ? validation->ctx : nullptr;
    const Check check = {
        patterns,
        ctx != nullptr ? ctx->patternMatcher : nullptr,
        ctx != nullptr && (ctx->flags & ZR_CTX_KEEP_PATTERNS) != 0,
        text,
    };
    for (uint32_t i = 0; i < patterns->count; ++i) {
        // A pattern that does not compile matches nothing, so that inverted it accepts everything;
        // one that is not decided accepts nothing, inverted or not.
        zr::Match match = MatchOne(check, i);
        bool inverted = patterns->items[i].invertMatch != 0;
        if (match == zr::Match::Undecided || (match == zr::Match::Yes) == inverted)
            return ZR_ERR_VALUE_PATTERN;
    }
    return ZR_OK;
}
