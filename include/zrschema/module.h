/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file module.h
 * Queries on loaded modules: header, typedefs, identities, features, and scans.
 *
 * A module belongs to its context. It lives until it is unloaded or reloaded or the context is
 * deleted; its name finds it again with ZR_CTX_GetModuleByModName(). All texts that the functions
 * return belong to the schema and live as long as the module; identities and types are good until
 * the next load or unload in the context, because a further file of a module can add to it.
 *
 * What only reads may run at the same time on any number of threads, as long as nothing is loaded,
 * unloaded or changed in the context meanwhile. The functions that change a module are marked; they
 * must not run while anything else uses the context.
 */
#ifndef ZRSCHEMA_MODULE_H
#define ZRSCHEMA_MODULE_H

#include <zrschema/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Header
 * @{
 */

/**
 * Returns a module's name (RFC 7950, section 7.1).
 *
 * @param module  a loaded module; null gives null
 * @return the name
 */
ZR_API const char *ZR_MOD_GetModuleName(const ZrMod *module);

/**
 * Returns a module's XML namespace (RFC 7950, section 7.1.3).
 *
 * @param module  a loaded module; null gives null
 * @return the namespace, or null when the module states none
 */
ZR_API const char *ZR_MOD_GetModuleNs(const ZrMod *module);

/**
 * Returns the prefix that a module gives itself (RFC 7950, section 7.1.4).
 *
 * @param module  a loaded module; null gives null
 * @return the prefix, or null when the module states none
 */
ZR_API const char *ZR_MOD_GetModulePrefix(const ZrMod *module);

/**
 * Returns the organization that is responsible for a module (RFC 7950, section 7.1.7).
 *
 * @param module  a loaded module; null gives null
 * @return the text, or null when the module states none
 */
ZR_API const char *ZR_MOD_GetOrganization(const ZrMod *module);

/**
 * Returns a module's revision (RFC 7950, section 7.1.9).
 *
 * @param module  a loaded module; null gives null
 * @return the date of the first "revision" statement, the newest by convention, as it is written
 *         there ("YYYY-MM-DD" is not enforced); null when the module states none
 */
ZR_API const char *ZR_MOD_GetRevision(const ZrMod *module);

/**
 * Returns the version of YANG that a module is written in (RFC 7950, section 7.1.2).
 *
 * @param module  a loaded module; null gives null
 * @return "1.1", or "1" for a module that says so or says nothing; the text is constant
 */
ZR_API const char *ZR_MOD_GetYangVersion(const ZrMod *module);

/**
 * Returns a module's description (RFC 7950, section 7.21.3).
 *
 * @param module  a loaded module; null gives null
 * @return the text; null when there is none or the context does not keep descriptions
 *         (#ZR_CTX_KEEP_DESCRIPTIONS)
 */
ZR_API const char *ZR_MOD_GetDescription(const ZrMod *module);

/** @} */

/**
 * @name Private pointer
 * @{
 */

/**
 * Returns the pointer that the application has stored with a module.
 *
 * @param module  a loaded module; null gives null
 * @return the pointer; null in a module that has just been loaded or reloaded
 */
ZR_API void *ZR_MOD_GetPrivate(const ZrMod *module);

/**
 * Stores a pointer of the application with a module. The library never looks behind it and never
 * frees it. Changes the module.
 *
 * @param module       a loaded module; null is ignored
 * @param privateData  the pointer; may be null
 */
ZR_API void ZR_MOD_SetPrivate(ZrMod *module, void *privateData);

/** @} */

/**
 * @name Typedefs and identities
 * @{
 */

/**
 * Returns the type of a module's typedef (RFC 7950, section 7.3).
 *
 * @param module  a loaded module; null gives null
 * @param name    the typedef's name, without prefix; null gives null
 * @return the type inside the typedef, or null when the module has no typedef of that name
 */
ZR_API const ZrtRealType *ZR_MOD_GetRealTypeByTypDefName(const ZrMod *module, const char *name);

/**
 * Returns the default value that a module's typedef states itself (RFC 7950, section 7.3.4).
 *
 * @param module  a loaded module; null gives null
 * @param name    the typedef's name, without prefix; null gives null
 * @return the text; null when the module has no typedef of that name or it states no default. A
 *         typedef that it is built on is not asked.
 */
ZR_API const char *ZR_MOD_GetTypedefDefault(const ZrMod *module, const char *name);

/**
 * Returns the units that a module's typedef states itself (RFC 7950, section 7.3.3).
 *
 * @param module  a loaded module; null gives null
 * @param name    the typedef's name, without prefix; null gives null
 * @return the text; null when the module has no typedef of that name, when it states no units, and
 *         when the context does not keep them (#ZR_CTX_KEEP_UNITS)
 */
ZR_API const char *ZR_MOD_GetTypedefUnits(const ZrMod *module, const char *name);

/**
 * Returns an identity's name (RFC 7950, section 7.18).
 *
 * @param identity  an identity, from a scan; null gives null
 * @return the name
 */
ZR_API const char *ZR_MOD_GetIdentityName(const ZrsIdentity *identity);

/**
 * Returns an identity's description (RFC 7950, section 7.21.3).
 *
 * @param identity  an identity, from a scan; null gives null
 * @return the text; null when there is none or the context does not keep descriptions
 *         (#ZR_CTX_KEEP_DESCRIPTIONS)
 */
ZR_API const char *ZR_MOD_GetIdentityDescription(const ZrsIdentity *identity);

/** @} */

/**
 * @name Features
 * @{
 */

/**
 * Turns a feature of a loaded module on. Changes the module.
 *
 * Features are off after loading; when an unload has a module loaded again, those that were on are
 * on again. The effect is immediate: ZR_NODE_IsEnabled() and printing look each time (RFC 7950,
 * section 7.20.1). The conditions of the feature itself are not looked at.
 *
 * Validation refuses nothing for a feature that is off: elements of a disabled node are taken like
 * any others. Only what would be asked for or added by itself is left alone below such a node: its
 * mandatory nodes are not missed, its defaults are not added.
 *
 * @param module  a loaded module; null gives #ZR_ERR_INVALID
 * @param name    the feature's name, or "*" for all of the module's features; null gives
 *                #ZR_ERR_INVALID
 * @retval ZR_OK           the feature, or every feature for "*" (there may be none), is on
 * @retval ZR_ERR_INVALID  a null argument, or no feature of that name; nothing changed
 * @note Not to be called while another thread uses the same context.
 */
ZR_API uint32_t ZR_MOD_EnableFeature(ZrMod *module, const char *name);

/**
 * Turns a feature of a loaded module off. Changes the module.
 *
 * The effect is as immediate as that of ZR_MOD_EnableFeature(). Features are turned off one by one:
 * "*" does not stand for all of them here.
 *
 * @param module  a loaded module; null gives #ZR_ERR_INVALID
 * @param name    the feature's name; null gives #ZR_ERR_INVALID
 * @retval ZR_OK           the feature is off
 * @retval ZR_ERR_INVALID  a null argument, or no feature of that name; nothing changed
 * @note Not to be called while another thread uses the same context.
 */
ZR_API uint32_t ZR_MOD_DisableFeature(ZrMod *module, const char *name);

/** @} */

/**
 * @name Scans
 *
 * A callback gets its argument `userData` unchanged. 0 from it goes on; any other result stops the
 * scan and is the scan's result. A callback must not load or unload anything, and must not change
 * what is scanned.
 * @{
 */

/**
 * Scans the features that a module defines, with their state (RFC 7950, section 7.20.1).
 *
 * @param module    a loaded module; null gives ZR_ERR_INVALID
 * @param callback  called for each feature in order, with its name and 1 when it is on, else 0; it
 *                  may turn features on and off, and sees the state at the time of its call; null
 *                  gives ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null module or callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanAllFeatures(const ZrMod *module, ZrFeatureScanFunc callback,
                                       void *userData);

/**
 * Scans the modules that a module imports (RFC 7950, section 7.1.5).
 *
 * The imports of its submodules stand behind its own; a module comes once for each prefix. The date
 * of a "revision-date" is not kept: an import binds to whatever revision is loaded.
 *
 * @param module    a loaded module; null gives ZR_ERR_INVALID
 * @param callback  called for each import in order, with the imported module's name, the prefix
 *                  that the importing module or submodule gives it, and the revision of the module
 *                  of that name that is loaded: null when none is, or it states no revision; null
 *                  gives ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null module or callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanAllImports(const ZrMod *module, ZrImportScanFunc callback,
                                      void *userData);

/**
 * Scans the submodules that a module includes (RFC 7950, section 7.1.6), those that its submodules
 * include too. Their revisions are not kept, and their definitions are the module's.
 *
 * @param module    a loaded module; null gives ZR_ERR_INVALID
 * @param callback  called with the name of each submodule, once, in the order in which they were
 *                  met; null gives ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null module or callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanAllSubmodules(const ZrMod *module, ZrTextScanFunc callback,
                                         void *userData);

/**
 * Scans the deviations that a module applies to other modules, or to itself (RFC 7950, section
 * 7.20.3).
 *
 * @param module    a loaded module; null gives ZR_ERR_INVALID
 * @param callback  called for each deviation in order, with the path of its target (module names in
 *                  the place of prefixes, the form of ZR_CTX_GetTargetNode()), the name of the
 *                  module that defines the target, which need not be loaded, and 1 when every
 *                  "deviate" in it is applied, else 0; the module's name lives until it returns;
 *                  null gives ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null module or callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanAllDeviations(const ZrMod *module, ZrDeviationScanFunc callback,
                                         void *userData);

/**
 * Scans the extension instances at the top of a module (RFC 7950, section 7.19).
 *
 * Instances that stand below another one are reached with ZR_EXT_ScanAllChildExtInsts().
 *
 * @param module    a loaded module; null gives #ZR_ERR_INVALID
 * @param callback  called for each instance in order; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null module or callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanAllExtInsts(const ZrMod *module, ZrExtInstScanFunc callback,
                                       void *userData);

/**
 * Scans the top-level nodes of a module: its data nodes, then its rpcs, then its notifications,
 * each in schema order. Augments are not among them.
 *
 * @param module    a loaded module; null gives 0
 * @param callback  called with each node and #ZR_ARRIVAL_ROOT; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_IterScanTopmostNode(const ZrMod *module, ZrNodeScanFunc callback,
                                           void *userData);

/**
 * Scans the augments of a module (RFC 7950, section 7.17), coupled or not.
 *
 * What an augment adds is scanned with ZR_NODE_IterScanChildrenNode(), which also works while the
 * nodes stand in the augment's target.
 *
 * @param module    a loaded module; null gives 0
 * @param callback  called with each augment node and #ZR_ARRIVAL_ROOT; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_IterScanAugmentNode(const ZrMod *module, ZrNodeScanFunc callback,
                                           void *userData);

/**
 * Scans the identities that a module defines (RFC 7950, section 7.18).
 *
 * @param module    a loaded module; null gives 0
 * @param callback  called for each identity in order; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanAllIdentity(const ZrMod *module, ZrIdentityScanFunc callback,
                                       void *userData);

/**
 * Scans the bases of an identity (RFC 7950, section 7.18.2).
 *
 * @param identity  an identity, from a scan; null gives 0
 * @param callback  called for each base in order, with module name and identity name; null gives
 *                  #ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanIdentityBase(const ZrsIdentity *identity, ZrIdentBaseScanFunc callback,
                                        void *userData);

/**
 * Scans the features that an identity depends on (RFC 7950, section 7.20.2).
 *
 * @param identity  an identity, from a scan; null gives 0
 * @param callback  called for each "if-feature" in order; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           all were scanned; there may be none
 * @retval ZR_ERR_INVALID  a null callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_MOD_ScanIdentityIfFeatures(const ZrsIdentity *identity,
                                              ZrIfFeatureScanFunc callback, void *userData);

/**
 * Tells whether every feature that an identity depends on is enabled (RFC 7950, section 7.20.2).
 *
 * Only the identity's own "if-feature" statements count, not those of its bases. A feature that is
 * not known counts as disabled. Validation of rpcs, actions and notifications takes the identity
 * either way.
 *
 * @param identity  an identity, from a scan; null gives 0
 * @param ctx       the context of its module; null gives 0
 * @return 1 or 0
 */
ZR_API uint32_t ZR_MOD_IsIdentityEnabled(const ZrsIdentity *identity, const ZrCtx *ctx);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
