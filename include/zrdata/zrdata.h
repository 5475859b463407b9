/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file zrdata.h
 * Checking whole data by RFC 7950: configuration, configuration with state, edits, and messages,
 * held against every constraint of the modules that a context of libzrschema has loaded. All faults
 * are collected, in document order, each with what an rpc-error (RFC 6241, section 4.3) says of it.
 *
 * A *plan* is what a context's modules mean for data: children by name, constraints, compiled
 * types, rewritten conditions. It is made once and never changes; any number of threads check data
 * with it at the same time. It reads the context when it is made and refers to it afterwards: the
 * context, and its modules, must outlive it, and ZR_DATA_IsPlanCurrent() tells when the context has
 * changed and a new plan is due.
 *
 * A *result* is what one check found. It belongs to the caller and needs neither the plan nor the
 * data any more. Results and plans know nothing of each other and may be deleted in any order.
 *
 * In the order of use: load modules, make a plan, check data, read the faults, delete the result;
 * at the end delete the plan, then the context. The library starts no threads, prints nothing and
 * has no state of its own.
 */
#ifndef ZRDATA_ZRDATA_H
#define ZRDATA_ZRDATA_H

#include <stddef.h>
#include <stdint.h>
#include <zrschema/types.h>

/** @def ZR_DATA_API
    Marks a function that the library exports under its own name. */
#if defined(__GNUC__)
#define ZR_DATA_API __attribute__((visibility("default")))
#else
#define ZR_DATA_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** What the modules of a context mean for data; only the library sees inside. */
typedef struct ZrDataPlan ZrDataPlan;
/** What one check found; only the library sees inside. */
typedef struct ZrDataResult ZrDataResult;

/** What the functions return. */
enum ZrDataStatus {
    ZR_DATA_OK = 0,             /**< done; of a check: the data is valid */
    ZR_DATA_ERR_FAULTY = 1,     /**< the data has faults: see the result */
    ZR_DATA_ERR_STALE = 3,      /**< the context has changed since the plan was made */
    ZR_DATA_ERR_NO_MEMORY = 12, /**< memory ran out */
    ZR_DATA_ERR_INVALID = 22    /**< a null or malformed argument */
};

/** What data is, which decides what it may hold and what it must. */
enum ZrDataKind {
    /** Configuration alone: a node that is not configuration is a fault. */
    ZR_DATA_CONFIG = 1,
    /** Configuration with state data: `config false` nodes may stand in it and their constraints
        hold too. */
    ZR_DATA_CONFIG_AND_STATE = 2,
    /** Configuration that is to be merged into another (RFC 6241, section 7.2; RFC 7950, sections
        7.7.9 and 7.8.6): a part with the attributes `operation`, `insert`, `key` and `value`. Held
        against what can be known of it alone (RFC 7950, section 8.3.1): names, values, attributes,
        keys, equal entries, and cases of one choice. */
    ZR_DATA_EDIT = 3,
    /** The request of an rpc or action, with its input (RFC 7950, sections 7.14.4 and 7.15.2). */
    ZR_DATA_REQUEST = 4,
    /** The output that an rpc or action gives (RFC 7950, sections 7.14.4 and 7.15.2). */
    ZR_DATA_REPLY = 5,
    /** A notification, at the top of a module or inside data (RFC 7950, section 7.16.2). */
    ZR_DATA_NOTIFICATION = 6
};

/**
 * Where a plan, and the results that are made with it, have their memory from. What libxml2 needs
 * to parse a text, to match a pattern and to evaluate a condition comes from libxml2's own
 * allocator; it is given back when the check ends, but for patterns, which live as long as the
 * plan. Reading JSON takes a copy of the longest token, and a bit for each object and array that is
 * open, from the C++ heap meanwhile.
 */
typedef struct ZrDataMemory {
    /** Returns a block of `size` bytes that is aligned for any type, or null. Any thread may call
        it that checks data. */
    void *(*allocate)(size_t size, void *user);
    /** Takes a block back; never called with null. */
    void (*release)(void *block, void *user);
    void *user; /**< handed to both */
} ZrDataMemory;

/** How a check goes. Zero-filled but for `kind` means the defaults. */
typedef struct ZrDataOptions {
    uint32_t kind;       /**< ::ZrDataKind */
    uint32_t errorLimit; /**< the faults that are kept, the first in document order; 0 for 100. The
                              same number of warnings is kept. */
    uint64_t stepLimit;  /**< the steps that one evaluation of a condition may take, a measure of
                              libxml2; 0 for 10,000,000. More is a fault of the data. */
    /** Of a reply: the rpc or action that gives it, "MODULE:RPC" or "/MODULE:NODE/.../ACTION" with
        names of modules where they change. Else it is not looked at. */
    const char *operation;
    /** Of a message: the wrapper element (xmlNode *) of the data that it is sent to or comes from,
        state and configuration. Its conditions and references look into that data (RFC 7950,
        section 6.4.1), with the defaults in use there. It is only read, and not judged: where it
        has faults there is a warning. Null for none: conditions see the defaults alone, and
        references that lead out of the message are not followed. Of an edit: the datastore that
        it is made for; what its operations find there, or do not, is told as data-exists,
        data-missing and missing-instance. Of data it is not looked at. */
    const void *datastore;
} ZrDataOptions;

/** A prefix of an error's path. */
typedef struct ZrDataPrefix {
    const char *prefix;       /**< the name of a module, which is what the path calls it */
    const char *namespaceUri; /**< the module's namespace */
} ZrDataPrefix;

/**
 * One fault or warning, with the fields of an rpc-error (RFC 6241, section 4.3). All texts are
 * UTF-8 and belong to the result.
 */
typedef struct ZrDataError {
    uint32_t tag;       /**< a ::ZrErrorTag; ZR_DATA_GetTagName() gives its text */
    const char *appTag; /**< the error-app-tag, or null */
    const char *path;   /**< the node as an instance-identifier (RFC 7950, section 9.13): where
                             a node is missing, the node that it is missing in, with the name
                             of what is missing where an error-path says so; "/" for the data
                             as a whole */
    const ZrDataPrefix *prefixes; /**< what stands before the colons in `path` */
    size_t prefixCount;           /**< their number */
    const char *message;          /**< one line; the schema's own error-message where it has one */
    const char *badElement;       /**< the name of the element at fault, or null */
    uint32_t line;            /**< of the element in the text that was parsed, from 1; 0 when it is
                                   not known */
    const char *badAttribute; /**< the name of the attribute at fault, or null */
} ZrDataError;

/**
 * Hears of an expression of the schema that cannot be used.
 *
 * @param nodePath    the schema node that carries it, in the form of ZR_NODE_GetNodePath()
 * @param expression  the condition or path as the schema holds it
 * @param message     one line on what is wrong with it
 * @param user        as given with the callback
 * @return 0 to go on, anything else to stop
 */
typedef int (*ZrDataProblemFunc)(const char *nodePath, const char *expression, const char *message,
                                 void *user);

/**
 * Makes the plan of what a context has loaded.
 *
 * The context is best made with #ZR_CTX_STANDARD: without it numbers of entries, "unique",
 * predicates of leafrefs and "require-instance" of instance-identifiers are not known and not
 * checked, and keys count in the order of their leafs.
 *
 * Features count as they are now: a node whose features are off, and what stands below it, is
 * unknown to the plan (RFC 7950, section 5.6.2).
 *
 * @param ctx      the context; it is only read, and must outlive the plan
 * @param memory   copied; null for the C library's malloc() and free()
 * @param planOut  receives the plan, to be deleted with ZR_DATA_DeletePlan(); null on failure
 * @retval ZR_DATA_OK             made
 * @retval ZR_DATA_ERR_NO_MEMORY  memory ran out
 * @retval ZR_DATA_ERR_INVALID    a null argument, or a function of `memory` that is null
 * @note Nothing may be loaded, unloaded or changed in the context meanwhile; queries may run.
 */
ZR_DATA_API uint32_t ZR_DATA_CreatePlan(const ZrCtx *ctx, const ZrDataMemory *memory,
                                        ZrDataPlan **planOut);

/**
 * Deletes a plan. No check may be running with it.
 *
 * @param plan  the plan; null is ignored
 */
ZR_DATA_API void ZR_DATA_DeletePlan(ZrDataPlan *plan);

/**
 * Tells whether a plan still fits its context.
 *
 * The modules are compared one by one: names, revisions, which of their features are on, and their
 * top-level nodes. So loading, unloading, reloading and features are seen. Not seen is a further
 * file of a module that adds nodes below its top-level nodes alone (suffixed parts): who loads one
 * makes a new plan.
 *
 * @param plan  the plan; null gives 0
 * @return 1 or 0
 * @note Nothing may be loaded, unloaded or changed in the context meanwhile.
 */
ZR_DATA_API uint32_t ZR_DATA_IsPlanCurrent(const ZrDataPlan *plan);

/**
 * Lists the expressions that the plan cannot use: conditions that are no XPath 1.0 or name modules
 * that are not loaded, and leafref paths that lead to no leaf or have predicates that are none of
 * theirs (RFC 7950, section 9.9.2). A condition of these is a fault of the data where it would have
 * to be evaluated; a leafref of these takes any value.
 *
 * @param plan      the plan; null gives #ZR_DATA_ERR_INVALID
 * @param callback  called for each; null gives #ZR_DATA_ERR_INVALID
 * @param user      handed to the callback
 * @retval ZR_DATA_OK           all were told; there may be none
 * @retval ZR_DATA_ERR_INVALID  a null argument
 * @return any other value: the result with which the callback stopped the scan
 */
ZR_DATA_API uint32_t ZR_DATA_ScanPlanProblems(const ZrDataPlan *plan, ZrDataProblemFunc callback,
                                              void *user);

/**
 * Checks a document that is XML text.
 *
 * The root depends on the kind:
 *
 * - data: any element whose children are top-level data nodes, `<config>`, `<data>` or another one;
 * - an edit: such an element, or `<edit-config>` (RFC 6241) or `<edit-data>` (RFC 8526) with its
 *   `<config>`, also inside its `<rpc>`;
 * - a request: the element of an rpc, or `<action>` (RFC 7950, section 7.15.2), also inside its
 *   `<rpc>`;
 * - a reply: `<rpc-reply>`, or any other element whose children are output parameters;
 * - a notification: its element, or the data node at the top that leads to it, also inside
 *   `<notification>` (RFC 5277).
 *
 * Text that is not well-formed, or has a document type declaration, is one fault with the tag
 * malformed-message.
 *
 * @param plan       the plan
 * @param options    how to check; only read
 * @param text       the document; its encoding is UTF-8 unless its XML declaration says otherwise
 * @param length     its bytes, at most 2,147,483,647
 * @param resultOut  receives the result, to be deleted with ZR_DATA_DeleteResult(), when the status
 *                   is #ZR_DATA_OK or #ZR_DATA_ERR_FAULTY; else null
 * @retval ZR_DATA_OK             the data is valid; there may be warnings
 * @retval ZR_DATA_ERR_FAULTY     the data has faults
 * @retval ZR_DATA_ERR_STALE      the context has changed: a new plan is due
 * @retval ZR_DATA_ERR_NO_MEMORY  memory ran out; nothing is known of the data
 * @retval ZR_DATA_ERR_INVALID    a null argument, an unknown kind, a reply's operation that is not
 *                                there, a datastore that is no element, or a text that is too long
 * @note Any number of checks may run at the same time with one plan.
 */
ZR_DATA_API uint32_t ZR_DATA_CheckText(const ZrDataPlan *plan, const ZrDataOptions *options,
                                       const char *text, size_t length, ZrDataResult **resultOut);

/**
 * Checks data that is JSON text (RFC 7951).
 *
 * The text is one object whose members are top-level data nodes, each with the name of its module;
 * one member `ietf-restconf:data` that holds them all (RFC 8040, section 3.1) is taken out. Of a
 * reply the members are output parameters. A request or notification is one member: the rpc or
 * notification, the top-level node that leads to the action or notification, or
 * `ietf-restconf:notification` (RFC 8040, section 6.4), which holds it with its eventTime. Of the
 * attributes of an edit the operation is an annotation, `ietf-netconf:operation`; the others have
 * no form in JSON. Every check, message and path is that of the same data in XML, and lines are
 * those of this text: of a member its name's, of an array's value its own. A value whose JSON type
 * is not that of its node is a fault with the tag invalid-value, a member that stands in its object
 * twice one with bad-element. Text that is not well-formed, and a message that is not alone, is one
 * fault with the tag malformed-message, with the line; the message of the first has the column.
 *
 * @param plan       the plan
 * @param options    how to check; only read
 * @param text       the document in UTF-8
 * @param length     its bytes, at most 2,147,483,647
 * @param resultOut  as for ZR_DATA_CheckText()
 * @return as ZR_DATA_CheckText()
 * @note As ZR_DATA_CheckText().
 */
ZR_DATA_API uint32_t ZR_DATA_CheckJson(const ZrDataPlan *plan, const ZrDataOptions *options,
                                       const char *text, size_t length, ZrDataResult **resultOut);

/**
 * Checks a document that is a tree of libxml2's. The tree is only read, and not needed any more
 * when the function returns.
 *
 * @param plan       the plan
 * @param options    how to check; only read
 * @param root       the element (xmlNode *) that is the root for ZR_DATA_CheckText()
 * @param resultOut  as for ZR_DATA_CheckText()
 * @return as ZR_DATA_CheckText(); a node that is no element is #ZR_DATA_ERR_INVALID
 * @note As ZR_DATA_CheckText(). Several checks may read one tree, as long as nothing changes it.
 */
ZR_DATA_API uint32_t ZR_DATA_CheckTree(const ZrDataPlan *plan, const ZrDataOptions *options,
                                       const void *root, ZrDataResult **resultOut);

/**
 * Deletes a result with all its texts.
 *
 * @param result  the result; null is ignored
 */
ZR_DATA_API void ZR_DATA_DeleteResult(ZrDataResult *result);

/**
 * Counts the faults of a result.
 *
 * @param result     the result; null gives 0
 * @param foundOut   receives the number that was found, which is greater when the limit was met;
 *                   may be null
 * @return the faults that were kept
 */
ZR_DATA_API size_t ZR_DATA_GetErrorCount(const ZrDataResult *result, size_t *foundOut);

/**
 * Returns one fault.
 *
 * @param result  the result; null gives null
 * @param index   from 0, in document order
 * @return the fault, which lives as long as the result, or null when there is none of that index
 */
ZR_DATA_API const ZrDataError *ZR_DATA_GetError(const ZrDataResult *result, size_t index);

/**
 * Counts the warnings of a result: what a receiver may take and a sender had better not write.
 *
 * @param result    the result; null gives 0
 * @param foundOut  as for ZR_DATA_GetErrorCount()
 * @return the warnings that were kept
 */
ZR_DATA_API size_t ZR_DATA_GetWarningCount(const ZrDataResult *result, size_t *foundOut);

/**
 * Returns one warning.
 *
 * @param result  the result; null gives null
 * @param index   from 0, in document order
 * @return the warning, which lives as long as the result, or null
 */
ZR_DATA_API const ZrDataError *ZR_DATA_GetWarning(const ZrDataResult *result, size_t index);

/**
 * Returns the text of an error tag, such as "missing-element".
 *
 * @param tag  a ::ZrErrorTag
 * @return the text, which is constant; null for any other number
 */
ZR_DATA_API const char *ZR_DATA_GetTagName(uint32_t tag);

/**
 * Writes a fault as an `<rpc-error>` in the namespace of NETCONF (RFC 6241, section 4.3), ready for
 * an `<rpc-reply>`.
 *
 * @param result   the result; null gives null
 * @param index    of the fault, as for ZR_DATA_GetError()
 * @return the element as UTF-8 text without an XML declaration, which belongs to the result and
 *         lives as long; null when there is no such fault
 */
ZR_DATA_API const char *ZR_DATA_GetErrorXml(const ZrDataResult *result, size_t index);

#ifdef __cplusplus
}
#endif

#endif
