// SPDX-License-Identifier: Apache-2.0
// What the parts of a type say beside themselves, in contexts with ZR_CTX_STANDARD: the
// error-message and error-app-tag of ranges, lengths and patterns (RFC 7950, sections 7.5.4.1 and
// 7.5.4.2), and the features that bits and enums depend on (section 7.20.2). Few types have notes,
// so they stand in one more slot behind those that are counted, which only a type with notes has
// and no walk over the slots of a type meets.
#pragma once

#include "foundation/context_record.h"
#include "model/type_records.h"

namespace zr {

// The notes of a type, which may be null; null without any.
const ZrtTypeNotes *NotesOf(const ZrtRealType *type);
// Gives a type, whose array of slots has room behind those that are counted, that many zero-filled
// notes. Null when memory runs out.
ZrtTypeNotes *CreateNotes(ZrtRealType *type, uint32_t count);
// Gives such a type copies of the notes: false when memory runs out, and then it has none.
bool CopyNotes(ZrCtx *ctx, ZrtRealType *destination, const ZrtTypeNotes *source);
// Releases the notes, if there are any; the array of slots stays.
void DestroyNotes(ZrCtx *ctx, ZrtRealType *type);

} // namespace zr
