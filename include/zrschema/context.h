/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file context.h
 * Contexts: creation, callbacks, search directories, loading and lookups.
 *
 * A context owns its modules with all their nodes and types, the strings in them, the search
 * directories and the load errors. Contexts know nothing of each other and may be used at the same
 * time. A context has no lock of its own: loading, unloading, changes of the search directories,
 * features and callbacks, and deletion must not run at the same time as anything else on the same
 * context. Lookups only read and may run in parallel with each other.
 *
 * Loading parses XML with libxml2. A program that loads in several contexts at the same time, or
 * beside other users of libxml2, calls its xmlInitParser() once before it starts threads. libxml2's
 * keep-blanks default is switched off by loading and left so (xmlKeepBlanksDefault(0)).
 *
 * A thread needs 1 MiB of stack for whatever a module file may hold: see the guide.
 *
 * In the order of use: create, set callbacks and a matcher, add search directories, load modules,
 * query and validate, unload, delete.
 */
#ifndef ZRSCHEMA_CONTEXT_H
#define ZRSCHEMA_CONTEXT_H
#include <zrschema/types.h>
#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Life cycle
 * @{
 */

/**
 * Creates an empty context.
 *
 * @param flags  the sum of ZrCtxFlag bits, fixed for the context's life; other bits are ignored
 * @return the context, to be deleted with ZR_CTX_Delete(), or null when memory runs out. When
 * memory is too short for the store of load errors alone, the context works but records no errors.
 */
ZR_API ZrCtx *ZR_CTX_Create(uint32_t flags);

/**
 * Deletes a context with all that it owns.
 *
 * Modules, nodes, types and all texts that were read from them are gone afterwards. The callback
 * for private data is called for each node that carries some.
 *
 * @param ctx  the context; null is ignored
 */
ZR_API void ZR_CTX_Delete(ZrCtx *ctx);

/**
 * Sets the load stage, a number that is copied into each load error recorded from now on.
 *
 * It is a mark for those who record load errors. The loader records what it may take back later,
 * the failures of coupling, under marks of its own, and leaves the stage as it was.
 *
 * @param ctx    the context; null is ignored
 * @param stage  the stage
 */
ZR_API void ZR_CTX_SetLoadStage(ZrCtx *ctx, uint32_t stage);

/**
 * Tells the load stage.
 *
 * @param ctx  the context; null gives 0
 * @return the stage, 0 in a new context
 */
ZR_API uint32_t ZR_CTX_GetLoadStage(const ZrCtx *ctx);

/**
 * Tells whether a module is accepted although an import of it cannot be loaded.
 *
 * @param ctx  the context; null gives 0
 * @return 1 when the context was created with ZR_CTX_IGNORE_IMPORT_ERRORS, else 0
 */
ZR_API uint32_t ZT_CTX_IgnoreImportModError(const ZrCtx *ctx);

/** @} */

/**
 * @name Callbacks
 * None is set in a new context. Each setter replaces the function that was set before; a null
 * function is allowed and means that nothing is called. A callback runs on the thread that called
 * into the library and must not load, unload or delete anything in the context.
 * @{
 */

/**
 * Sets the function that releases an application's private data.
 *
 * It is called when a schema node that carries private data (ZR_NODE_SetPrivate()) is freed: when
 * its module is unloaded, also to be loaded again, when a deviation removes it, and when the
 * context is deleted. The node itself and everything below it are still whole and may be asked
 * about, but not what stands above: neither for its parent, its path or its module. The private
 * pointer is cleared afterwards.
 *
 * @param ctx   the context; null is ignored
 * @param func  the function, or null
 */
ZR_API void ZR_CTX_SetPridataFreeFunc(ZrCtx *ctx, ZrPridataFreeFunc func);

/**
 * Sets the function that is told when the nodes of an augment change their place (RFC 7950, section
 * 7.17). It gets the first of them:
 * - each time the augment is coupled, after all its nodes have been linked into the target;
 * - each time it is uncoupled, which also the unloading of a module and the deletion of the context
 *   do, before the first of its nodes leaves the target.
 *
 * Both times ZR_NODE_GetParentNode() of the node is the target. Not told of are augments without
 * nodes, and those whose target is removed by a "not-supported" deviation.
 *
 * @param ctx   the context; null is ignored
 * @param func  the function, or null
 */
ZR_API void ZR_CTX_SetFirstAugChildRelinkFunc(ZrCtx *ctx, ZrNodeChangeFunc func);

/**
 * Sets the function that is told just before a "not-supported" deviation removes a node (RFC 7950,
 * section 7.20.3.2). It gets the deviation's target; what stands below goes with it, untold.
 *
 * @param ctx   the context; null is ignored
 * @param func  the function, or null
 */
ZR_API void ZR_CTX_SetBeforeDeviateNotSupportFunc(ZrCtx *ctx, ZrNodeChangeFunc func);

/**
 * Sets the function that is told just before a deviation changes the extension instances of a node,
 * once for each "deviate" that does.
 *
 * @param ctx   the context; null is ignored
 * @param func  the function, or null
 */
ZR_API void ZR_CTX_SetBeforeDeviateExtInstFunc(ZrCtx *ctx, ZrNodeChangeFunc func);

/**
 * Sets the function that is told during an unload just before each module of the unload is
 * destroyed, also before one that is loaded again afterwards.
 *
 * The module's augments are uncoupled by then; its header can be asked for. Private pointers on the
 * module and its nodes do not come back with a reload: this is the application's chance to take
 * note.
 *
 * @param ctx   the context; null is ignored
 * @param func  the function, or null
 */
ZR_API void ZR_CTX_SetReloadModuleCbFunc(ZrCtx *ctx, ZrReloadModuleFunc func);

/**
 * Sets the function that decides, while a module is read, whether an extension instance is kept
 * (RFC 7950, section 7.19).
 *
 * It is given the name of the module that defines the extension and the extension's name; a
 * non-zero result skips the instance. Without a function every instance is kept.
 *
 * @param ctx   the context; null is ignored
 * @param func  the function, or null
 */
ZR_API void ZR_CTX_SetExtInstFilterCbFunc(ZrCtx *ctx, ZrExtInstFilterFunc func);

/** @} */

/**
 * @name Patterns
 * @{
 */

/**
 * Has values matched against patterns (RFC 7950, section 9.4.5) by a matcher from outside, such as
 * the one of libzrpatterns, instead of the built-in one, which is libxml2's.
 *
 * The matcher compiles each pattern of a type once, when the first value meets it, and the form is
 * kept until the type goes: when its module is unloaded or loaded again, when a deviation or a
 * merge replaces it, and when the context is deleted. A copy of a type, as a deviation or a merge
 * makes it, compiles for itself. Two threads may compile the same pattern at the same time; one of
 * the forms is then released at once. A pattern that the matcher refuses is left to the built-in
 * matcher, which compiles it for each value, or once with #ZR_CTX_KEEP_PATTERNS.
 *
 * A value is refused with #ZR_ERR_VALUE_PATTERN, inverted or not, where the matcher answers
 * #ZR_PATTERN_UNDECIDED, or where memory runs out before it is asked.
 *
 * A context with a matcher holds two more pointers for each pattern that a value has met. The
 * functions must not call back into the context, and must not throw or jump out.
 *
 * @param ctx      the context, without a module: compiled forms stay with the matcher that made
 * them
 * @param matcher  copied, in place of the one that was set before; null for the built-in matcher.
 * Its user data has to stay until the context is deleted
 * @retval ZR_OK             the matcher is set
 * @retval ZR_ERR_NO_MEMORY  memory ran out; the matcher is the one from before
 * @retval ZR_ERR_INVALID    a null context, one that has a module, or a matcher with a null
 * function; the matcher is the one from before
 * @note Not to be called while another thread uses the same context. The matcher's functions run on
 *       the threads that check values, several at once.
 */
ZR_API uint32_t ZR_CTX_SetPatternMatcher(ZrCtx *ctx, const ZrPatternMatcher *matcher);

/** @} */

/**
 * @name Search directories
 * Module files are searched in the directories in the order in which these were added, and so are
 * the submodules that they include, whatever directory the including file came from. There may be
 * any number of directories. A file whose whole path has more than 255 bytes is not found.
 * @{
 */

/**
 * Adds a search directory at the end of the list.
 *
 * Slashes at the end of the path do not count; nothing else is normalised. A directory that is in
 * the list already stays where it is, and nothing is added.
 *
 * @param ctx        the context; null gives #ZR_ERR_INVALID
 * @param directory  an absolute path of an existing directory; copied; null gives #ZR_ERR_INVALID
 * @retval ZR_OK             the directory is in the list
 * @retval ZR_ERR_NO_MEMORY  memory ran out
 * @retval ZR_ERR_BAD_DIR    the path is not absolute, or there is no such directory; also when
 *                           memory ran out for the copy of the path
 * @retval ZR_ERR_INVALID    a null argument, or memory ran out for the text
 */
ZR_API uint32_t ZR_CTX_SetSearchDir(ZrCtx *ctx, const char *directory);

/**
 * Removes a search directory, or all of them.
 *
 * The directory must still exist: one that has vanished from the disk goes only with all others.
 * Modules that were loaded from it stay.
 *
 * @param ctx        the context; null does nothing
 * @param directory  an absolute path, compared without the slashes at its end; null removes all
 * @retval ZR_OK           the directory is not in the list (any more)
 * @retval ZR_ERR_BAD_DIR  the path is not absolute, or there is no such directory; nothing changed
 */
ZR_API uint32_t ZR_CTX_UnSetSearchDir(ZrCtx *ctx, const char *directory);

/** @} */

/**
 * @name Loading and unloading
 *
 * Names have at most 64 characters. A module or a node with a longer one is loaded, and the module
 * is found by it, but no path leads through it: neither ZR_CTX_GetTargetNode() nor an augment, a
 * deviation or a leafref reaches the node, or what is in the module.
 * @{
 */

/**
 * Loads a module by name from the search directories.
 *
 * The files are name.yin, or else name\@revision.yin and the parts name\@\@suffix.yin, which are
 * merged into one module. The module's augments and deviations are applied to the modules that are
 * loaded, and theirs to it, in whatever order modules arrive. Loading a module that is loaded
 * already does nothing and gives 0, but for parts with new suffixes, which are merged in; the
 * schema is then the one that all parts give at once. Deviations of the module's nodes are applied
 * anew for that. A part that failed is not merged again until the module is unloaded. At most ten
 * files are merged in one call; the others come with a later one. In a context with
 * ZR_CTX_LOAD_IMPORTS the modules that it imports follow, and those that they import.
 *
 * Why a module is missing or incomplete is recorded: see ZR_CTX_ScanAllSchemaLoadFail(). A module
 * whose augments or deviations could not be applied is loaded, with an error recorded. So is one of
 * whose suffixed parts the first could be read and a later one not.
 *
 * Loading again is also how imports that failed are tried again: in a context with
 * ZR_CTX_LOAD_IMPORTS the imports of a module that is loaded already are followed as well. The
 * module's file must still be there for it; without one the status is #ZR_ERR_NOT_FOUND, a warning
 * is recorded, and the module stays.
 *
 * @param ctx         the context; null gives #ZR_ERR_INVALID
 * @param moduleName  the module's name; null gives #ZR_ERR_INVALID
 * @retval ZR_OK             the module is loaded
 * @retval ZR_ERR_FAILED     its namespace is taken by another module
 * @retval ZR_ERR_NOT_FOUND  no search directory has a file of it, or of a module that it imports
 * @retval ZR_ERR_NO_MEMORY  memory ran out
 * @retval ZR_ERR_INVALID    a null argument, or a file that cannot be read or is no such module
 * @note The status of an import that fails is passed on; the module itself stays loaded then. Any
 *       other failure leaves nothing of a module that was not loaded before but its recorded
 *       errors.
 */
ZR_API uint32_t ZR_CTX_LoadModule(ZrCtx *ctx, const char *moduleName);

/**
 * Loads a module from memory.
 *
 * A module whose name is loaded already stays as it is, and the new text is dropped. Imports are
 * not loaded here; the submodules that the text includes are, from the search directories. What was
 * loaded from memory has no file to come back from: see ZR_CTX_UnloadModule().
 *
 * @param ctx      the context; null gives #ZR_ERR_INVALID
 * @param yinText  the module in YIN form (RFC 7950, section 13), NUL-terminated, with its groupings
 *                 expanded; null gives #ZR_ERR_INVALID
 * @retval ZR_OK             the module, or another one of its name, is loaded
 * @retval ZR_ERR_FAILED     the text is no module, has an error in it, or its namespace is taken;
 *                           nothing is loaded
 * @retval ZR_ERR_NO_MEMORY  memory ran out
 * @retval ZR_ERR_INVALID    a null argument, or text that is not well-formed XML
 */
ZR_API uint32_t ZR_CTX_LoadMemory(ZrCtx *ctx, const char *yinText);

/**
 * Unloads a module.
 *
 * Modules whose augments or deviations reach into it, modules that its own deviations have changed,
 * and those that depend on these in turn, are replaced: taken out and loaded again by name from the
 * search directories, so that the schema is as if the module had never been there. Each is a new
 * module with new nodes: pointers to the old ones are invalid, the features that were on are on
 * again, the private pointers are empty. One that has no file any more, or came from memory, is
 * gone. Modules that merely import the module, or that its augments reach into, stay as they are.
 *
 * The module itself comes back in two cases: one that was put together from suffixed parts is
 * loaded again, from the files that are there now; and in a context with ZR_CTX_LOAD_IMPORTS a
 * module that is loaded again brings its imports along, this one among them if it has a file.
 * Recorded errors of the module are forgotten.
 *
 * @param ctx         the context; null gives 0
 * @param moduleName  the module's name; one that is not loaded gives 0; null gives #ZR_ERR_INVALID
 * @retval ZR_OK             done
 * @retval ZR_ERR_NO_MEMORY  memory ran out; the context may have changed in part
 * @retval ZR_ERR_INVALID    a null name
 * @return any other value: at least one module could not be loaded again; its load errors say why.
 *         The statuses of several are combined, so that the number itself need not be a status.
 */
ZR_API uint32_t ZR_CTX_UnloadModule(ZrCtx *ctx, const char *moduleName);

/** @} */

/**
 * @name Lookups
 * The results belong to the context and live until their module is unloaded.
 * @{
 */

/**
 * Finds a module by its name.
 *
 * @param ctx   the context; null gives null
 * @param name  the module's name; null gives null
 * @return the module, or null when none of that name is loaded
 */
ZR_API ZrMod *ZR_CTX_GetModuleByModName(const ZrCtx *ctx, const char *name);

/**
 * Finds a module by its namespace (RFC 7950, section 7.1.3).
 *
 * @param ctx  the context; null gives null
 * @param ns   the namespace URI, compared byte by byte; null gives null
 * @return the module, or null when none of that namespace is loaded
 */
ZR_API ZrMod *ZR_CTX_GetModuleByModNs(const ZrCtx *ctx, const char *ns);

/**
 * Scans the loaded modules in the order of their names, compared byte by byte.
 *
 * @param ctx       the context; null gives ZR_ERR_INVALID
 * @param callback  called with each module; 0 goes on, any other value stops the scan; null gives
 *                  ZR_ERR_INVALID. It must not load or unload anything in the context.
 * @param userData  handed to the callback; may be null
 * @retval ZR_OK           every module was visited; there may be none
 * @retval ZR_ERR_INVALID  a null context or callback
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_API uint32_t ZR_CTX_ScanAllModules(const ZrCtx *ctx, ZrModuleScanFunc callback, void *userData);

/**
 * Tells whether a feature is enabled (RFC 7950, section 7.20.1).
 *
 * Compare the result with 1: a null argument gives #ZR_ERR_INVALID, which is not zero either.
 *
 * @param ctx          the context; null gives #ZR_ERR_INVALID
 * @param moduleName   the module's name; null gives #ZR_ERR_INVALID
 * @param featureName  the feature's name; null gives #ZR_ERR_INVALID
 * @retval 0               the feature is disabled, or there is no such module or feature
 * @retval 1               the feature is enabled
 * @retval ZR_ERR_INVALID  a null argument
 */
ZR_API uint32_t ZR_CTX_IsModFeatureEnable(const ZrCtx *ctx, const char *moduleName,
                                          const char *featureName);

/**
 * Turns a feature of a loaded module off.
 *
 * The effect is immediate, as with ZR_MOD_EnableFeature(), which turns it on again.
 *
 * @param ctx          the context; null gives #ZR_ERR_INVALID
 * @param moduleName   the module's name; null gives #ZR_ERR_INVALID
 * @param featureName  the feature's name; null gives #ZR_ERR_INVALID
 * @retval ZR_OK           the feature is off
 * @retval ZR_ERR_INVALID  a null argument, or no such module or feature; nothing changed
 * @note Not to be called while another thread uses the same context.
 */
ZR_API uint32_t ZR_CTX_DisableModFeature(ZrCtx *ctx, const char *moduleName,
                                         const char *featureName);

/**
 * Finds a schema node by its absolute path.
 *
 * The path is a schema node identifier (RFC 7950, section 6.5) with module names in the place of
 * prefixes: "/module:name/name/...". The first step always names its module, a later one where the
 * module changes, which is where an augment added it. Choices, cases, inputs and outputs are steps
 * of their own. This is the form that ZR_NODE_GetNodePath() gives. A path with a predicate is never
 * found, and neither is one whose later step names the module that it is in already.
 *
 * @param ctx         the context; null gives null
 * @param path        the path, of any length; module and node names in it have at most 64
 *                    characters; null gives null
 * @param augmentOut  receives the augment node that added the target, or null when it stands in its
 *                    module's own tree; may be null
 * @return the node, or null when there is none or the path is malformed
 */
ZR_API ZrNode *ZR_CTX_GetTargetNode(const ZrCtx *ctx, const char *path, ZrNode **augmentOut);

/**
 * Finds the schema node of a top element of instance data: a data node at the top of a module, also
 * one inside choices and cases there, an rpc or a notification. From there on
 * ZR_NODE_FindDataChild() leads down. Whoever walks an XML tree has the namespace of an element,
 * from which ZR_CTX_GetModuleByModNs() and ZR_MOD_GetModuleName() make the module's name.
 *
 * A node counts whether or not its features are on (ZR_NODE_IsEnabled()).
 *
 * @param ctx         the context; null gives null
 * @param moduleName  the module that defines the node; null gives null. It may have added the node
 *                    to a top-level choice of another module with an augment.
 * @param name        the node's name; null gives null
 * @return the node, or null when there is none
 */
ZR_API ZrNode *ZR_CTX_FindTopDataNode(const ZrCtx *ctx, const char *moduleName, const char *name);

/**
 * Reads the recorded load errors and warnings of all modules.
 *
 * Modules come in the order of their names, the entries of each in the order in which they were
 * recorded. Of each module the first two entries are kept; they are forgotten when the module is
 * unloaded or loaded afresh.
 *
 * @param ctx       the context; null gives 0
 * @param callback  called for each entry; its texts live until it returns; a non-zero result ends
 *                  the scan; null gives 0
 * @param userData  handed to the callback
 * @retval ZR_OK        all entries were visited
 * @retval ZR_ERR_LOCK  the store's lock could not be taken; nothing was visited
 * @return any other value: the callback's result that ended the scan
 * @note Takes the store's own lock for reading: scans may run at the same time as each other, and
 *       on other threads than loading. The callback must neither call back into loading, which
 *       records errors and would wait for itself, nor scan again.
 */
ZR_API uint32_t ZR_CTX_ScanAllSchemaLoadFail(ZrCtx *ctx, ZrLoadFailScanFunc callback,
                                             void *userData);

/** @} */

#ifdef __cplusplus
}
#endif
#endif
