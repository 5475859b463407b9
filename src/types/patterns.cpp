// The patterns of a type and the check of its values (RFC 7950, section 9.4.5).
//
// A pattern is compiled for each value, or, in a context that keeps compiled patterns, by the
// first value that meets it. Checks may run on several threads, so a compiled form is published
// with one compare-and-exchange: of two threads that compile the same pattern at once, one keeps
// its work and the other throws it away. What cannot be kept, because memory runs out or the
// pattern does not compile, is compiled for the value at hand, so that every value gets the same
// answer with and without the option.
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

// The kept forms of a type's patterns, each null until it is there; null without memory for them.
xmlRegexp **KeptForms(const ZrtConsPattern *patterns)
{
    xmlRegexp **forms = Read(patterns->compiled);
    if (forms != nullptr)
        return forms;
    auto *made = zr::New<xmlRegexp *>(patterns->count);
    if (made == nullptr)
        return nullptr;
    return Publish(patterns->compiled, made, [](xmlRegexp **block) { zr::Free(block); });
}

zr::Match MatchKept(const ZrtConsPattern *patterns, uint32_t index, const char *text)
{
    const char *pattern = patterns->items[index].pattern;
    xmlRegexp **forms = KeptForms(patterns);
    if (forms == nullptr)
        return zr::MatchPattern(text, pattern);
    xmlRegexp *compiled = Read(forms[index]);
    if (compiled == nullptr) {
        bool outOfMemory = false;
        compiled = zr::CompilePattern(pattern, &outOfMemory);
        if (compiled == nullptr)
            return outOfMemory ? zr::MatchPattern(text, pattern) : zr::Match::No;
        compiled = Publish(forms[index], compiled, xmlRegFreeRegexp);
    }
    return zr::MatchCompiled(compiled, text);
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
    for (uint32_t i = 0; patterns->compiled != nullptr && i < patterns->count; ++i)
        xmlRegFreeRegexp(patterns->compiled[i]);
    zr::Free(patterns->compiled);
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
    bool keep = ctx != nullptr && (ctx->flags & ZR_CTX_KEEP_PATTERNS) != 0;
    for (uint32_t i = 0; i < patterns->count; ++i) {
        // A pattern that does not compile matches nothing, so that inverted it accepts everything;
        // one that is not decided accepts nothing, inverted or not.
        zr::Match match = keep ? MatchKept(patterns, i, text)
                               : zr::MatchPattern(text, patterns->items[i].pattern);
        bool inverted = patterns->items[i].invertMatch != 0;
        if (match == zr::Match::Undecided || (match == zr::Match::Yes) == inverted)
            return ZR_ERR_VALUE_PATTERN;
    }
    return ZR_OK;
}
