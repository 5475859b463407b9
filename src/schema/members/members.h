// SPDX-License-Identifier: Apache-2.0
// The members of a module, kind by kind. The operations of all kinds are alike:
//
// Fill, Set     interns the texts into a zeroed record. ZR_ERR_INVALID for a missing argument,
//               ZR_ERR_NO_MEMORY, unless a kind says otherwise; a failure leaves no text behind.
// AppendOne     makes room at the end of the module's array, fills the new record, and counts it
//               when that succeeded. The status of Fill; ZR_ERR_INVALID also for one too many (a
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
// Imports (RFC 7950, section 7.1.5).

// Both texts are required; ZR_ERR_INVALID for every failure.
ZR_API uint32_t ZRS_MOD_FillImport(ZrDict *dict, ZrsImport *record, const char *moduleName,
                                   const char *prefix);
// Adds an import to the module.
ZR_API uint32_t ZRS_MOD_AppendOneImport(ZrMod *module, const char *moduleName, const char *prefix);
// Releases the texts of an import.
ZR_API void ZRS_MOD_ClearImport(ZrDict *dict, ZrsImport *record);
// Frees an array of imports.
ZR_API void ZRS_MOD_FreeImports(ZrDict *dict, ZrsImport *array, uint32_t count);

// Includes (section 7.1.6).

// The name of the submodule is required.
ZR_API uint32_t ZRS_MOD_FillInclude(ZrDict *dict, ZrsInclude *record, const char *name);
// Adds an include to the module.
ZR_API uint32_t ZRS_MOD_AppendOneInclude(ZrMod *module, const char *name);
// Releases the name of an include.
ZR_API void ZRS_MOD_ClearInclude(ZrDict *dict, ZrsInclude *record);
// Frees an array of includes.
ZR_API void ZRS_MOD_FreeIncludes(ZrDict *dict, ZrsInclude *array, uint32_t count);

// Features (section 7.20.1).

// A new feature is off; its if-features are appended later.
ZR_API uint32_t ZRS_MOD_FillFeature(ZrDict *dict, ZrsFeature *record, const char *name);
// Adds a feature to the module.
ZR_API uint32_t ZRS_MOD_AppendOneFeature(ZrMod *module, const char *name);
// Releases name and if-features; the flags stay.
ZR_API void ZRS_MDL_ClearFeature(ZrDict *dict, ZrsFeature *record);
// Frees an array of features.
ZR_API void ZRS_MOD_FreeFeatures(ZrDict *dict, ZrsFeature *array, uint32_t count);
// Of one name and with the same if-features in the same order, on or off.
ZR_API uint32_t ZRS_MOD_CheckTwoFeatureSame(const ZrsFeature *a, const ZrsFeature *b);

// Identities (section 7.18).

// Bases, if-features and the description are set later.
ZR_API uint32_t ZRS_MOD_FillIdentity(ZrDict *dict, ZrsIdentity *record, const char *name);
// Adds an identity to the module.
ZR_API uint32_t ZRS_MOD_AppendOneIdentity(ZrMod *module, const char *name);
// Releases the identity's texts, bases and if-features.
ZR_API void ZRS_MDL_ClearIdentity(ZrDict *dict, ZrsIdentity *record);
// Frees an array of identities.
ZR_API void ZRS_MOD_FreeIdentities(ZrDict *dict, ZrsIdentity *array, uint32_t count);
// Of one name, with the same bases and the same if-features in the same order; descriptions do not
// matter.
ZR_API uint32_t ZRS_MOD_CheckTwoIdentitySame(const ZrsIdentity *a, const ZrsIdentity *b);

// Bases of identities and of identityref types (sections 7.18.2 and 9.10.2).

// Both names are required.
ZR_API uint32_t ZRS_MOD_FillIdentBase(ZrDict *dict, ZrsIdentBase *record, const char *moduleName,
                                      const char *identityName);
// A copy of an array of bases.
ZR_API ZrsIdentBase *ZRS_MOD_CopyIdentBaseArray(ZrDict *dict, const ZrsIdentBase *array,
                                                uint32_t count);
// Releases the names of a base.
ZR_API void ZRS_MDL_ClearIdentBase(ZrDict *dict, ZrsIdentBase *record);
// Frees an array of bases.
ZR_API void ZRS_MDL_FreeIdentBases(ZrDict *dict, ZrsIdentBase *array, uint32_t count);
// Of the same module and name.
ZR_API uint32_t ZRS_MOD_CheckTwoIdentBaseSame(const ZrsIdentBase *a, const ZrsIdentBase *b);

// Extensions (section 7.19).

// The argument's name may be null.
ZR_API uint32_t ZRS_MOD_SetExtension(ZrDict *dict, ZrsExtension *record, const char *name,
                                     const char *argument, uint32_t yinElement);
// Adds an extension to the module.
ZR_API uint32_t ZRS_MOD_AppendOneExtension(ZrMod *module, const char *name, const char *argument,
                                           uint32_t yinElement);
// Releases the texts of an extension.
ZR_API void ZRS_MDL_ClearExtension(ZrDict *dict, ZrsExtension *record);
// Frees an array of extensions.
ZR_API void ZRS_MOD_FreeExtensions(ZrDict *dict, ZrsExtension *array, uint32_t count);
// Of the same name, argument and form of the argument.
ZR_API uint32_t ZRS_MOD_CheckTwoExtensionSame(const ZrsExtension *a, const ZrsExtension *b);

// Typedefs (section 7.3). The operations on records that hold a type take the context, whose
// dictionary the type uses.

// The default may be null, units are left empty; the type is copied, and one that cannot be copied
// gives ZR_ERR_INVALID.
ZR_API uint32_t ZRS_MOD_FillTypeDef(ZrCtx *ctx, ZrsTypDef *record, const char *name,
                                    const ZrtRealType *realType, const char *defaultValue);
// Adds a typedef to the module.
ZR_API uint32_t ZRS_MOD_AppendOneTypeDef(ZrMod *module, const char *name,
                                         const ZrtRealType *realType, const char *defaultValue);
// Releases the texts and the type of a typedef.
ZR_API void ZRS_TYPE_DestroyTypDefInner(ZrCtx *ctx, ZrsTypDef *record);
// Frees an array of typedefs.
ZR_API void ZRS_TYPE_FreeTypDefArray(ZrCtx *ctx, ZrsTypDef *array, uint32_t count);

// Deviations (section 7.20.3).

// The target path is in module-name form; deviates are set later.
ZR_API uint32_t ZRS_MOD_FillDeviationTargetNode(ZrDict *dict, ZrsDeviation *record,
                                                const char *targetPath);
// Adds a deviation to the module.
ZR_API uint32_t ZRS_MOD_AppendOneDeviation(ZrMod *module, const char *targetPath);
// The first deviation that is the same as `record`: none ever is. For callers outside the library.
ZR_API ZrsDeviation *ZRS_MOD_CheckSameDeviationExist(ZrsDeviation *array, uint32_t count,
                                                     const ZrsDeviation *record);
// Releases the path and the deviates of a deviation.
ZR_API void ZRS_MOD_ClearDeviation(ZrCtx *ctx, ZrsDeviation *record);
// Frees an array of deviations.
ZR_API void ZRS_MOD_FreeDeviation(ZrCtx *ctx, ZrsDeviation *array, uint32_t count);
// Two deviations are never the same: always 0.
ZR_API uint32_t ZRS_MOD_CheckTwoDeviationSame(const ZrsDeviation *a, const ZrsDeviation *b);

// Deviates (section 7.20.3.2).

// Copies `source` with everything in it.
ZR_API uint32_t ZRS_MOD_FillDeviate(ZrCtx *ctx, ZrsDeviate *record, const ZrsDeviate *source);
// A copy of an array of deviates.
ZR_API ZrsDeviate *ZRS_MOD_CopyDeviateArray(ZrCtx *ctx, const ZrsDeviate *array, uint32_t count);
// Releases everything in a deviate.
ZR_API void ZRS_MOD_ClearDeviate(ZrCtx *ctx, ZrsDeviate *record);
// Frees an array of deviates.
ZR_API void ZRS_MOD_FreeDeviate(ZrCtx *ctx, ZrsDeviate *array, uint32_t count);
// Two deviates are never the same: always 0. For callers outside the library.
ZR_API uint32_t ZRS_MOD_CheckTwoDeviateSame(const ZrsDeviate *a, const ZrsDeviate *b);
}
