// SPDX-License-Identifier: Apache-2.0
// The list of directories in which YIN files are searched, and the name of the file being loaded.
#pragma once

#include <zrschema/context.h>

extern "C" {
// A new copy of an absolute path without the slashes at its end; null for any other path or when
// memory runs out. Released with zr::Free.
ZR_API char *ZR_CTX_FormatInputPath(const char *path);
// Adds (`remove` 0) or removes a directory. ZR_OK also when it is there already, or not there;
// ZR_ERR_BAD_DIR when it is not an absolute path of an existing directory; when it cannot be added
// ZR_ERR_NO_MEMORY or ZR_ERR_INVALID.
ZR_API uint32_t ZR_CTX_UpdateSearchDirAgainstTbl(ZrCtx *ctx, const char *directory,
                                                 uint32_t remove);
// The index of a directory, compared as text, or -1.
ZR_API int32_t ZR_CTX_FindSearchDirInTbl(const ZrCtx *ctx, const char *directory);
// Gives the entry at an index back and moves the later ones forward; other indexes are ignored.
ZR_API void ZR_CTX_ClearSearchDirAtPos(ZrCtx *ctx, uint32_t position);
// Makes sure that one more entry fits: ZR_OK, ZR_ERR_INVALID for null, or ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZR_CTX_AllocSearchDirBufferIfNeed(ZrCtx *ctx);
// Puts a directory at the end: ZR_OK; ZR_ERR_NO_MEMORY when the list cannot grow; ZR_ERR_INVALID
// when the slot is taken or the text cannot be interned.
ZR_API uint32_t ZR_CTX_AppendSearchDirToTbl(ZrCtx *ctx, const char *directory);

// The base name of the file being loaded, for the texts of load errors; "" when there is none. A
// name that does not fit into the context's 256 bytes counts as none.
ZR_API void ZR_CTX_SetCurYinFile(ZrCtx *ctx, const char *path);
ZR_API void ZR_CTX_ClearCurYinFile(ZrCtx *ctx);
ZR_API const char *ZR_CTX_GetCurYinFile(const ZrCtx *ctx);
}
