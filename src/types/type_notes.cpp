// SPDX-License-Identifier: Apache-2.0
#include "types/type_notes.h"

#include <zrschema/type.h>

#include <iterator>

#include "foundation/array.h"
#include "types/constraints.h"

namespace {

ZrtConsSlot &NoteSlot(const ZrtRealType *type)
{
    return type->constraints[type->consCount];
}

void DestroyBody(ZrCtx *ctx, void *body)
{
    zr::DestroyCountedBody<ZrtTypeNotes>(ctx, body, [](ZrCtx *owner, ZrtTypeNote &note) {
        for (const char *&text : note.texts)
            zr::Release(&owner->dict, text);
    });
}

bool CopyNote(ZrCtx *ctx, ZrtTypeNote &to, const ZrtTypeNote &from)
{
    to.kind = from.kind;
    to.index = from.index;
    return zr::Intern(&ctx->dict, to.texts[0], from.texts[0]) &&
           zr::Intern(&ctx->dict, to.texts[1], from.texts[1]);
}

bool PutNotes(ZrtRealType *type, ZrtTypeNotes *notes)
{
    if (notes == nullptr)
        return false;
    NoteSlot(type) = {ZRT_CONS_KIND_COUNT, notes};
    type->flags |= ZRT_TYPE_HAS_NOTES;
    return true;
}

} // namespace

const ZrtTypeNotes *zr::NotesOf(const ZrtRealType *type)
{
    bool hasNotes = type != nullptr && (type->flags & ZRT_TYPE_HAS_NOTES) != 0;
    return hasNotes ? static_cast<const ZrtTypeNotes *>(NoteSlot(type).body) : nullptr;
}

ZrtTypeNotes *zr::CreateNotes(ZrtRealType *type, uint32_t count)
{
    auto *notes = CreateCountedBody<ZrtTypeNotes>(count);
    return PutNotes(type, notes) ? notes : nullptr;
}

bool zr::CopyNotes(ZrCtx *ctx, ZrtRealType *destination, const ZrtTypeNotes *source)
{
    return PutNotes(destination, CopyCountedBody<ZrtTypeNotes>(ctx, source, CopyNote, DestroyBody));
}

void zr::DestroyNotes(ZrCtx *ctx, ZrtRealType *type)
{
    if (NotesOf(type) == nullptr)
        return;
    DestroyBody(ctx, NoteSlot(type).body);
    type->flags = static_cast<uint16_t>(type->flags & ~ZRT_TYPE_HAS_NOTES);
}

namespace {

// The kinds of restrictions by ZrRestriction.
constexpr uint32_t kRestrictionKinds[] = {ZRT_CONS_LENGTH, ZRT_CONS_RANGE, ZRT_CONS_PATTERN};
static_assert(ZR_RESTRICTION_LENGTH == 0 && ZR_RESTRICTION_RANGE == 1);
static_assert(ZR_RESTRICTION_PATTERN == 2 && std::size(kRestrictionKinds) == 3);

const ZrtTypeNote *FindNote(const ZrtRealType *type, uint32_t kind, uint32_t index)
{
    const ZrtTypeNotes *notes = zr::NotesOf(type);
    for (uint32_t i = 0; notes != nullptr && i < notes->count; ++i)
        if (notes->items[i].kind == kind && notes->items[i].index == index)
            return &notes->items[i];
    return nullptr;
}

const char *ErrorText(const ZrtRealType *type, uint32_t restriction, uint32_t index, uint32_t place)
{
    if (restriction >= std::size(kRestrictionKinds))
        return nullptr;
    const ZrtTypeNote *note = FindNote(type, kRestrictionKinds[restriction], index);
    return note != nullptr ? note->texts[place] : nullptr;
}

} // namespace

const char *ZR_TYPE_GetErrorMessage(const ZrtRealType *type, uint32_t restriction, uint32_t index)
{
    return ErrorText(type, restriction, index, ZRT_NOTE_ERROR_MESSAGE);
}

const char *ZR_TYPE_GetErrorAppTag(const ZrtRealType *type, uint32_t restriction, uint32_t index)
{
    return ErrorText(type, restriction, index, ZRT_NOTE_ERROR_APP_TAG);
}
