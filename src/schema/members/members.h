// The members of a module, kind by kind. The operations of all kinds are alike:
//
// Fill, Set     interns the texts into a zeroed record. 22 for a missing argument, 12 when memory
//               runs out, unless a kind says otherwise; a failure leaves no text behind.
// AppendOne     makes room at the end of the module's array, fills the new record, and counts it
//               when that succeeded. 12, 22 or the status of Fill; 22 also for one too many (a
//               module holds 65,535 of a kind).
// Copy          a new array with copies of everything; null when empty or memory runs out.
// Clear         releases what a record holds; null is accepted.
// Free          clears every record and frees the array; null is accepted.
// CheckTwoSame  1 or 0. Texts are interned, so that they are compared by their pointers.
#pragma once

#include <zrschema/module.h>

#include "foundation/dict.h"
#include "model/module_records.h"
#include "model/scope.h"

extern "C" {
// Imports (RFC 7950, section 7.1.5). Fill gives 22 for every failure.
ZR_API uint32_t ZRS_MOD_FillImport(ZrDict *dict, ZrsImport *record, const char *moduleName,
                                   const char *prefix);
ZR_API uint32_t ZRS_MOD_AppendOneImport(ZrMod *module, const char *moduleName, const char *prefix);
ZR_API void ZRS_MOD_ClearImport(ZrDict *dict, ZrsImport *record);
ZR_API void ZRS_MOD_FreeImports(ZrDict *dict, ZrsImport *array, uint32_t count);

// Includes (section 7.1.6).
ZR_API uint32_t ZRS_MOD_FillInclude(ZrDict *dict, ZrsInclude *record, const char *name);
ZR_API uint32_t ZRS_MOD_AppendOneInclude(ZrMod *module, const char *name);
ZR_API void ZRS_MOD_ClearInclude(ZrDict *dict, ZrsInclude *record);
ZR_API void ZRS_MOD_FreeIncludes(ZrDict *dict, ZrsInclude *array, uint32_t count);

// Features (section 7.20.1). A new one is off. Clear keeps the flags; the same are two features of
// one name and with the same if-features in the same order, on or off.
ZR_API uint32_t ZRS_MOD_FillFeature(ZrDict *dict, ZrsFeature *record, const char *name);
ZR_API uint32_t ZRS_MOD_AppendOneFeature(ZrMod *module, const char *name);
ZR_API void ZRS_MDL_ClearFeature(ZrDict *dict, ZrsFeature *record);
ZR_API void ZRS_MOD_FreeFeatures(ZrDict *dict, ZrsFeature *array, uint32_t count);
ZR_API uint32_t ZRS_MOD_CheckTwoFeatureSame(const ZrsFeature *a, const ZrsFeature *b);

// Identities (section 7.18). The same are two of one name, with the same bases and the same
// if-features in the same order; descriptions do not matter.
ZR_API uint32_t ZRS_MOD_FillIdentity(ZrDict *dict, ZrsIdentity *record, const char *name);
ZR_API uint32_t ZRS_MOD_AppendOneIdentity(ZrMod *module, const char *name);
ZR_API void ZRS_MDL_ClearIdentity(ZrDict *dict, ZrsIdentity *record);
ZR_API void ZRS_MOD_FreeIdentities(ZrDict *dict, ZrsIdentity *array, uint32_t count);
ZR_API uint32_t ZRS_MOD_CheckTwoIdentitySame(const ZrsIdentity *a, const ZrsIdentity *b);

// Bases of identities and of identityref types (sections 7.18.2 and 9.10.2).
ZR_API uint32_t ZRS_MOD_FillIdentBase(ZrDict *dict, ZrsIdentBase *record, const char *moduleName,
                                      const char *identityName);
ZR_API ZrsIdentBase *ZRS_MOD_CopyIdentBaseArray(ZrDict *dict, const ZrsIdentBase *array,
                                                uint32_t count);
ZR_API void ZRS_MDL_ClearIdentBase(ZrDict *dict, ZrsIdentBase *record);
ZR_API void ZRS_MDL_FreeIdentBases(ZrDict *dict, ZrsIdentBase *array, uint32_t count);
ZR_API uint32_t ZRS_MOD_CheckTwoIdentBaseSame(const ZrsIdentBase *a, const ZrsIdentBase *b);

// Extensions (section 7.19). The argument's name may be null.
ZR_API uint32_t ZRS_MOD_SetExtension(ZrDict *dict, ZrsExtension *record, const char *name,
                                     const char *argument, uint32_t yinElement);
ZR_API uint32_t ZRS_MOD_AppendOneExtension(ZrMod *module, const char *name, const char *argument,
                                           uint32_t yinElement);
ZR_API void ZRS_MDL_ClearExtension(ZrDict *dict, ZrsExtension *record);
ZR_API void ZRS_MOD_FreeExtensions(ZrDict *dict, ZrsExtension *array, uint32_t count);
ZR_API uint32_t ZRS_MOD_CheckTwoExtensionSame(const ZrsExtension *a, const ZrsExtension *b);

// Typedefs (section 7.3). The operations on records that hold a type take the context, whose
// dictionary the type uses. The default may be null, units are left empty; the type is copied, and
// one that cannot be copied gives 22.
ZR_API uint32_t ZRS_MOD_FillTypeDef(ZrCtx *ctx, ZrsTypDef *record, const char *name,
                                    const ZrtRealType *realType, const char *defaultValue);
ZR_API uint32_t ZRS_MOD_AppendOneTypeDef(ZrMod *module, const char *name,
                                         const ZrtRealType *realType, const char *defaultValue);
ZR_API void ZRS_TYPE_DestroyTypDefInner(ZrCtx *ctx, ZrsTypDef *record);
ZR_API void ZRS_TYPE_FreeTypDefArray(ZrCtx *ctx, ZrsTypDef *array, uint32_t count);

// Deviations (section 7.20.3), by their target path in module-name form.
ZR_API uint32_t ZRS_MOD_FillDeviationTargetNode(ZrDict *dict, ZrsDeviation *record,
                                                const char *targetPath);
ZR_API uint32_t ZRS_MOD_AppendOneDeviation(ZrMod *module, const char *targetPath);
// The first deviation that is the same as `record`: none ever is.
ZR_API ZrsDeviation *ZRS_MOD_CheckSameDeviationExist(ZrsDeviation *array, uint32_t count,
                                                     const ZrsDeviation *record);
ZR_API void ZRS_MOD_ClearDeviation(ZrCtx *ctx, ZrsDeviation *record);
ZR_API void ZRS_MOD_FreeDeviation(ZrCtx *ctx, ZrsDeviation *array, uint32_t count);
// Two deviations or deviates are never the same: always 0.
ZR_API uint32_t ZRS_MOD_CheckTwoDeviationSame(const ZrsDeviation *a, const ZrsDeviation *b);
ZR_API uint32_t ZRS_MOD_CheckTwoDeviateSame(const ZrsDeviate *a, const ZrsDeviate *b);

// Deviates. Fill copies `source` with everything in it.
ZR_API uint32_t ZRS_MOD_FillDeviate(ZrCtx *ctx, ZrsDeviate *record, const ZrsDeviate *source);
ZR_API ZrsDeviate *ZRS_MOD_CopyDeviateArray(ZrCtx *ctx, const ZrsDeviate *array, uint32_t count);
ZR_API void ZRS_MOD_ClearDeviate(ZrCtx *ctx, ZrsDeviate *record);
ZR_API void ZRS_MOD_FreeDeviate(ZrCtx *ctx, ZrsDeviate *array, uint32_t count);
}
