// The operations of each constraint kind, as the dispatch tables list them.
//
// Create makes a body with room for `count` items, null when memory runs out. Destroy gives the
// body's interned strings and blocks back. Copy makes a body with references of its own, null on
// failure. Check returns 0 or the kind's status; Update resolves typedef references into `module`.
#pragma once

#include <cstdint>

#include "model/type_records.h"

extern "C" {
ZR_API void *ZRT_CONS_CreateConsDataBodyWithDerived(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithBase(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithBit(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithEnum(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithFraction(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithPath(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithPattern(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithRange(uint32_t count); // also of lengths
ZR_API void *ZRT_CONS_CreateConsDataBodyWithUnion(uint32_t count);

ZR_API void ZRT_CONS_DestroyConsDataBodyWithDerived(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithBase(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithBit(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithEnum(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithNoDynamic(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithPath(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithPattern(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithRange(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithUnion(ZrCtx *ctx, void *body);

ZR_API void *ZRT_CONS_CopyConsDataBodyWithDerived(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithBase(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithBit(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithEnum(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithFraction(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithPath(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithPattern(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithRange(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithUnion(ZrCtx *ctx, const void *body);

ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataDerived(const void *body, uint32_t inputKind,
                                                             const void *value,
                                                             ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataBase(const void *body, uint32_t inputKind,
                                                          const void *value,
                                                          ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataBit(const void *body, uint32_t inputKind,
                                                         const void *value,
                                                         ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataEnum(const void *body, uint32_t inputKind,
                                                          const void *value,
                                                          ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataFraction(const void *body, uint32_t inputKind,
                                                              const void *value,
                                                              ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataLength(const void *body, uint32_t inputKind,
                                                            const void *value,
                                                            ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPath(const void *body, uint32_t inputKind,
                                                          const void *value,
                                                          ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPattern(const void *body, uint32_t inputKind,
                                                             const void *value,
                                                             ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataRange(const void *body, uint32_t inputKind,
                                                           const void *value,
                                                           ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataUnion(const void *body, uint32_t inputKind,
                                                           const void *value,
                                                           ZrtValidateCtx *validation);

ZR_API uint32_t ZRT_CONS_UpdateConsDataDerFromWithDerived(void *body, const ZrMod *module);
ZR_API uint32_t ZRT_CONS_UpdateConsDataDerFromWithUnion(void *body, const ZrMod *module);

// Each calls back per item or segment, in order, and stops at the first non-zero result.
ZR_API uint32_t ZRT_CONS_ScanNameValuePairsWithBit(const void *body, ZrNameValueScanFunc callback,
                                                   void *userData);
ZR_API uint32_t ZRT_CONS_ScanNameValuePairsWithEnum(const void *body, ZrNameValueScanFunc callback,
                                                    void *userData);
ZR_API uint32_t ZRT_CONS_ScanStartEndPairsWithLength(const void *body, uint32_t baseType,
                                                     ZrStartEndScanFunc callback, void *userData);
ZR_API uint32_t ZRT_CONS_ScanStartEndPairsWithRange(const void *body, uint32_t baseType,
                                                    ZrStartEndScanFunc callback, void *userData);

// Reads of one body; a null body gives 0 or null.
ZR_API uint32_t ZRT_CONS_GetConsDataFractionVal(const void *body);
ZR_API const char *ZRT_CONS_GetConsDataLeafrefPath(const void *body);
ZR_API const char *ZRT_CONS_GetConsDataInheritedTypDefName(const void *body,
                                                           const char **moduleNameOut);
ZR_API ZrtRealType *ZRT_CONS_GetConsUnionSubTypeData(const void *body, uint16_t *countOut);
}
