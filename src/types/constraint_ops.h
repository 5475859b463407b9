// Dispatch by constraint kind and by base type: each lookup is null where there is no operation,
// also for a kind above 9 or a base type above 19.
#pragma once

#include <cstdint>

#include "model/type_records.h"

typedef void *(*ZrtConsCreateFunc)(uint32_t count);
typedef void (*ZrtConsDestroyFunc)(ZrCtx *ctx, void *body);
typedef void *(*ZrtConsCopyFunc)(ZrCtx *ctx, const void *body);
typedef uint32_t (*ZrtConsCheckFunc)(const void *body, uint32_t inputKind, const void *value,
                                     ZrtValidateCtx *validation);
typedef uint32_t (*ZrtConsUpdateFunc)(void *body, const ZrMod *module);
typedef uint32_t (*ZrtConsScanNameValueFunc)(const void *body, ZrNameValueScanFunc callback,
                                             void *userData);
typedef uint32_t (*ZrtConsScanStartEndFunc)(const void *body, uint32_t baseType,
                                            ZrStartEndScanFunc callback, void *userData);
typedef uint32_t (*ZrtDefaultCheckFunc)(uint32_t baseType, uint32_t inputKind, const void *value,
                                        ZrtValidateCtx *validation);

extern "C" {
ZR_API ZrtConsCreateFunc ZRT_CONS_GetConsDataCreateBodyFunc(uint32_t kind);
ZR_API ZrtConsDestroyFunc ZRT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind);
ZR_API ZrtConsCopyFunc ZRT_CONS_GetConsDataCopyBodyFunc(uint32_t kind);
ZR_API ZrtConsCheckFunc ZRT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind);
ZR_API ZrtConsUpdateFunc ZRT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind);
ZR_API ZrtConsScanNameValueFunc ZRT_CONS_GetConsDataScanNameValueFunc(uint32_t kind);
ZR_API ZrtConsScanStartEndFunc ZRT_CONS_GetConsDataScanStartEndFunc(uint32_t kind);
ZR_API ZrtDefaultCheckFunc ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType);
}
