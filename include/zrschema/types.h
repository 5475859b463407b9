/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file types.h
 * The types, numbers and callback signatures that every header of the library shares.
 *
 * All records are opaque: they are reached through the functions of the other headers. The
 * numbers written out here are part of the interface and never change.
 */
#ifndef ZRSCHEMA_TYPES_H
#define ZRSCHEMA_TYPES_H

#include <stddef.h>
#include <stdint.h>

/** Marks a function or variable that the library exports under its own name. */
#define ZR_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/** A context: owns modules, strings, search directories and load errors. */
typedef struct ZrCtx ZrCtx;
/** A loaded YANG module (RFC 7950, section 7.1). */
typedef struct ZrMod ZrMod;
/** A schema node: one data-definition statement of a module (RFC 7950, section 3). */
typedef struct ZrNode ZrNode;
/** A compiled "type" statement (RFC 7950, section 7.4). */
typedef struct ZrtRealType ZrtRealType;
/** An identity of a module (RFC 7950, section 7.18). */
typedef struct ZrsIdentity ZrsIdentity;
/** One base of an identity or of an identityref type: module name and identity name. */
typedef struct ZrsIdentBase ZrsIdentBase;
/** A use of an extension statement (RFC 7950, section 7.19). */
typedef struct ZrsExtInst ZrsExtInst;
/** One pattern of a type with its invert-match mark (RFC 7950, section 9.4.5). */
typedef struct ZrtPatternItem ZrtPatternItem;
/** The record of one validation fault, in the manner of rpc-error (RFC 6241, section 4.3). */
typedef struct ZrdErrNode ZrdErrNode;
/** One validation run. */
typedef struct ZrdCheckAux ZrdCheckAux;

/** Status codes: 0 is success, the others are errno numbers or codes of a check. */
enum ZrStatus {
    ZR_OK = 0,              /**< done */
    ZR_ERR_FAILED = 1,      /**< generic failure or a broken rule; a load error is recorded */
    ZR_ERR_NOT_FOUND = 2,   /**< no module file in any search directory */
    ZR_ERR_NO_MEMORY = 12,  /**< an allocation failed */
    ZR_ERR_REGISTERED = 17, /**< allocation hooks are registered already */
    ZR_ERR_BAD_DIR = 20,    /**< not an absolute path of an existing directory */
    ZR_ERR_INVALID = 22,    /**< invalid argument, malformed input or a reported fault */
    ZR_ERR_LOCK = 37,       /**< a lock could not be taken */
    ZR_ERR_COPY = 104,      /**< a segment could not be copied */
    ZR_ERR_OVERFLOW = 126,  /**< a bounded copy did not fit */

    ZR_ERR_VALUE_NO_BODY = 0x7000,  /**< a restriction of the type has no content */
    ZR_ERR_VALUE_DERIVED = 0x7001,  /**< typedef not found, or more than 129 typedefs in a chain */
    ZR_ERR_VALUE_IDENTITY = 0x7002, /**< identityref: no base accepts the identity */
    ZR_ERR_VALUE_BITS = 0x7003,     /**< bits: unknown, repeated or malformed bit name */
    ZR_ERR_VALUE_ENUM = 0x7004,     /**< enumeration: not one of the names */
    ZR_ERR_VALUE_LENGTH = 0x7005,   /**< length outside every segment */
    ZR_ERR_VALUE_LEAFREF = 0x7006,  /**< leafref: no target leaf */
    ZR_ERR_VALUE_PATTERN = 0x7007,  /**< a pattern refuses the value */
    ZR_ERR_VALUE_RANGE = 0x7008,    /**< number malformed or outside every segment */
    ZR_ERR_VALUE_UNION = 0x7009,    /**< no member of the union accepts the value */
    ZR_ERR_VALUE_BOOLEAN = 0x700A,  /**< neither "true" nor "false" */
    ZR_ERR_VALUE_BINARY = 0x700B,   /**< not base64 */
    ZR_ERR_VALUE_EMPTY = 0x700C     /**< a value for the type empty */
};

/** Statuses of the evaluation of a condition; a validation turns them into an error record. */
enum ZrXpathStatus {
    ZR_XPATH_RESULT_FALSE = 0x7100,             /**< the condition does not hold; no error */
    ZR_XPATH_ERR_TOKENIZE = 0x7101,             /**< the expression cannot be tokenized */
    ZR_XPATH_ERR_PAREN = 0x7102,                /**< "(" or ")" missing, or ")" or "," too many */
    ZR_XPATH_ERR_UNSUPPORTED_OPERATOR = 0x7103, /**< + - * div mod or the union */
    ZR_XPATH_ERR_BAD_OPERATION = 0x7104,        /**< the operator's token is no operator */
    ZR_XPATH_ERR_BAD_PRIMARY = 0x7105,      /**< a primary expression starts with another token */
    ZR_XPATH_ERR_ROOT_STEP = 0x7106,        /**< an absolute path starts with "//" */
    ZR_XPATH_ERR_BAD_STEP = 0x7107,         /**< a step is neither a name nor "." nor ".." */
    ZR_XPATH_ERR_UNKNOWN_FUNCTION = 0x7108, /**< not in the table of functions */
    ZR_XPATH_ERR_BAD_ARGUMENT = 0x7109,     /**< derived-from: no string or no node given */
    ZR_XPATH_ERR_NO_SCHEMA = 0x710A,        /**< derived-from: the node has no schema node */
    ZR_XPATH_ERR_SUBEXPR_START = 0x710B,    /**< a sub-expression starts without "(" or "," */
    ZR_XPATH_ERR_SUBEXPR_END = 0x710C,      /**< a sub-expression ends without ")" or "," */
    ZR_XPATH_ERR_PREDICATE = 0x710D         /**< a "[" has no "]" */
};

/** Option bits of ZR_CTX_Create(). */
enum ZrCtxFlag {
    ZR_CTX_LOAD_IMPORTS = 0x01,         /**< loading a module also loads what it imports */
    ZR_CTX_KEEP_DESCRIPTIONS = 0x02,    /**< keep "description" texts */
    ZR_CTX_KEEP_UNITS = 0x08,           /**< keep "units" texts */
    ZR_CTX_IGNORE_IMPORT_ERRORS = 0x10, /**< go on when an import cannot be loaded */

    /**
     * Keep compiled patterns: the first value that meets a "pattern" (RFC 7950, section 9.4.5) has
     * it compiled, and the compiled form stays with its type until the type goes. Without this
     * bit a pattern is compiled for each value. What is accepted and refused is the same either
     * way, also from several threads at once.
     *
     * It costs one pointer for each pattern of a type whose values were checked, through the
     * allocation hooks, and the compiled form, through libxml2's allocator: on a 64-bit machine
     * 300 bytes for "[a-z]+", 7 KiB for a domain name's, 20 KiB for an IPv6 address's. A copy of
     * a type, as a deviation or a merge makes it, compiles for itself.
     */
    ZR_CTX_KEEP_PATTERNS = 0x20,

    /**
     * Keep and take what RFC 7950 has beyond what the library needs for its own checks.
     *
     * Kept, for ZR_NODE_GetMinElements(), ZR_NODE_GetMaxElements(), ZR_NODE_ScanAllUniques() and
     * ZR_NODE_ScanAllKeysInOrder(): "min-elements", "max-elements" and "unique", with what
     * deviations make of them, and the order of a list's keys. Without this bit these statements
     * are passed over.
     *
     * Taken: the enum values -2147483648 and 2147483647, the bit position 4294967295 (sections
     * 9.6.4.2 and 9.7.4.2), decimal numbers in the range of a type that is derived from a decimal64
     * (section 9.3), and axes in "when" and "must" (section 6.4), whose prefixes are then replaced
     * like all others.
     *
     * Followed: every "default-deny-all" and "default-deny-write" holds for its node and for all
     * that is below it, the two side by side (RFC 8341, section 3.2.2).
     *
     * It costs one block for each list and leaf-list that says something of its entries, on a
     * 64-bit machine 72 bytes, and the texts. What a validation checks stays the same.
     */
    ZR_CTX_STANDARD = 0x40
};

/** What a ZrPatternMatchFunc answers. */
enum ZrPatternMatch {
    ZR_PATTERN_NO_MATCH = 0, /**< the value does not match */
    ZR_PATTERN_MATCH = 1,    /**< the whole value matches */
    ZR_PATTERN_UNDECIDED = 2 /**< not known, for want of memory or time: the value is refused */
};

/** Kinds of schema node, as ZR_NODE_GetNodeType() returns them. */
enum ZrNodeKind {
    ZR_NODE_UNKNOWN = 0,       /**< no node, or none of the kinds below */
    ZR_NODE_CONTAINER = 1,     /**< RFC 7950, section 7.5 */
    ZR_NODE_LEAF = 2,          /**< section 7.6 */
    ZR_NODE_LEAF_LIST = 3,     /**< section 7.7 */
    ZR_NODE_LIST = 4,          /**< section 7.8 */
    ZR_NODE_CHOICE = 5,        /**< section 7.9 */
    ZR_NODE_CASE = 6,          /**< section 7.9.2 */
    ZR_NODE_ANYDATA = 7,       /**< section 7.10 */
    ZR_NODE_ANYXML = 8,        /**< section 7.11 */
    ZR_NODE_ACTION = 9,        /**< section 7.15 */
    ZR_NODE_RPC = 10,          /**< section 7.14 */
    ZR_NODE_NOTIFICATION = 11, /**< section 7.16 */
    ZR_NODE_INPUT = 12,        /**< what an rpc or action takes, section 7.14.2 */
    ZR_NODE_OUTPUT = 13,       /**< what an rpc or action gives, section 7.14.3 */
    ZR_NODE_AUGMENT = 14       /**< section 7.17 */
};

/** Built-in types, as ZR_TYPE_GetBuiltInBaseType() returns them (RFC 7950, section 4.2.4). */
enum ZrtBuiltInType {
    ZRT_TYPE_DERIVED = 0,             /**< the type statement names a typedef */
    ZRT_TYPE_BINARY = 1,              /**< octets in base64, section 9.8 */
    ZRT_TYPE_BITS = 2,                /**< a set of names, section 9.7 */
    ZRT_TYPE_BOOLEAN = 3,             /**< "true" or "false", section 9.5 */
    ZRT_TYPE_DECIMAL64 = 4,           /**< a number with a fixed number of decimals, section 9.3 */
    ZRT_TYPE_EMPTY = 5,               /**< a leaf without a value, section 9.11 */
    ZRT_TYPE_ENUMERATION = 6,         /**< one of several names, section 9.6 */
    ZRT_TYPE_IDENTITYREF = 7,         /**< the name of an identity, section 9.10 */
    ZRT_TYPE_INSTANCE_IDENTIFIER = 8, /**< the path of an instance, section 9.13 */
    ZRT_TYPE_INT8 = 9,                /**< section 9.2 */
    ZRT_TYPE_INT16 = 10,              /**< section 9.2 */
    ZRT_TYPE_INT32 = 11,              /**< section 9.2 */
    ZRT_TYPE_INT64 = 12,              /**< section 9.2 */
    ZRT_TYPE_LEAFREF = 13,            /**< a value that another leaf has, section 9.9 */
    ZRT_TYPE_STRING = 14,             /**< section 9.4 */
    ZRT_TYPE_UINT8 = 15,              /**< section 9.2 */
    ZRT_TYPE_UINT16 = 16,             /**< section 9.2 */
    ZRT_TYPE_UINT32 = 17,             /**< section 9.2 */
    ZRT_TYPE_UINT64 = 18,             /**< section 9.2 */
    ZRT_TYPE_UNION = 19,              /**< a value of one of several types, section 9.12 */
    ZRT_TYPE_NONE = 20                /**< no type at all: the answer for a null record */
};

/** How a scan arrived at a node. */
enum ZrArrival {
    ZR_ARRIVAL_CHILD = 0,   /**< down to a first child; every child in a scan of children */
    ZR_ARRIVAL_SIBLING = 1, /**< on to a next sibling */
    ZR_ARRIVAL_PARENT = 2,  /**< back up to a parent that was visited before */
    ZR_ARRIVAL_ROOT = 3     /**< the node where the scan starts; every top-level node */
};

/** Result of a ZrNodeScanFunc that keeps ZR_NODE_TreeScanAllNode() out of the node's subtree. */
#define ZR_SCAN_SKIP_SUBTREE 0x5a6b7c8dU

/** Kinds of value handed to the value checks. */
enum ZrValueInput {
    ZR_VALUE_STRING = 1, /**< a NUL-terminated string */
    ZR_VALUE_XML = 2     /**< a libxml2 element (xmlNode *) whose text is the value */
};

/** Kinds of a recorded load error. */
enum ZrLoadErrorKind {
    ZR_LOAD_ERROR = 0,  /**< a module, or a part of one, could not be loaded */
    ZR_LOAD_WARNING = 1 /**< no search directory has a file of a module */
};

/** Error types of an error record (RFC 6241, section 4.3). */
enum ZrErrorType {
    ZR_ERROR_TYPE_TRANSPORT = 1,  /**< secure transport */
    ZR_ERROR_TYPE_RPC = 2,        /**< the messages layer */
    ZR_ERROR_TYPE_PROTOCOL = 3,   /**< the operations layer */
    ZR_ERROR_TYPE_APPLICATION = 4 /**< the content, which the libraries look at */
};

/** Severities of an error record (RFC 6241, section 4.3). */
enum ZrErrorSeverity {
    ZR_ERROR_SEVERITY_ERROR = 1,  /**< the data is refused */
    ZR_ERROR_SEVERITY_WARNING = 2 /**< RFC 6241 has it for later use */
};

/** Error tags of an error record (RFC 6241, appendix A). */
enum ZrErrorTag {
    ZR_ERROR_TAG_IN_USE = 1,             /**< the request needs a resource that is in use */
    ZR_ERROR_TAG_INVALID_VALUE = 2,      /**< a parameter has a value that it cannot have */
    ZR_ERROR_TAG_TOO_BIG = 3,            /**< the request or its answer is too large */
    ZR_ERROR_TAG_MISSING_ATTRIBUTE = 4,  /**< an expected attribute is not there */
    ZR_ERROR_TAG_BAD_ATTRIBUTE = 5,      /**< an attribute has a value that it cannot have */
    ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE = 6,  /**< an attribute is not expected */
    ZR_ERROR_TAG_MISSING_ELEMENT = 7,    /**< an expected element is not there */
    ZR_ERROR_TAG_BAD_ELEMENT = 8,        /**< the value of an element is not right */
    ZR_ERROR_TAG_UNKNOWN_ELEMENT = 9,    /**< an element is not expected */
    ZR_ERROR_TAG_UNKNOWN_NAMESPACE = 10, /**< an element has a namespace that is not expected */
    ZR_ERROR_TAG_ACCESS_DENIED = 11,     /**< the sender may not do it */
    ZR_ERROR_TAG_LOCK_DENIED = 12,       /**< another session has the lock */
    ZR_ERROR_TAG_RESOURCE_DENIED = 13,   /**< there are not enough resources */
    ZR_ERROR_TAG_ROLLBACK_FAILED = 14,   /**< changes could not be taken back */
    ZR_ERROR_TAG_DATA_EXISTS = 15,       /**< what was to be created is there already */
    ZR_ERROR_TAG_DATA_MISSING = 16,      /**< data that the request needs is not there */
    ZR_ERROR_TAG_OPERATION_NOT_SUPPORTED = 17, /**< the receiver does not do it */
    ZR_ERROR_TAG_OPERATION_FAILED = 18,        /**< any other reason */
    ZR_ERROR_TAG_PARTIAL_OPERATION = 19,       /**< a part was done; obsolete */
    ZR_ERROR_TAG_MALFORMED_MESSAGE = 20        /**< the message is no well-formed XML */
};

/** An allocation hook: like malloc(). The size is in bytes. */
typedef void *(*ZrMallocFunc)(size_t size);
/** An allocation hook: like realloc(). The size is in bytes. */
typedef void *(*ZrReallocFunc)(void *block, size_t size);
/** An allocation hook: like free(). */
typedef void (*ZrFreeFunc)(void *block);

/** Releases the application's private data of a node that is being freed. */
typedef void (*ZrPridataFreeFunc)(ZrNode *node, void *privateData);
/** Tells of a change to a node; the context is passed first and last. */
typedef void (*ZrNodeChangeFunc)(ZrCtx *ctx, ZrNode *node, ZrCtx *sameCtx);
/** Tells that a module is about to be destroyed during an unload. */
typedef void (*ZrReloadModuleFunc)(ZrCtx *ctx, const char *moduleName);
/** Decides on an extension instance while parsing: non-zero skips it. */
typedef uint32_t (*ZrExtInstFilterFunc)(const char *moduleName, const char *extensionName);
/**
 * Receives one recorded load error or warning. `yinFile` is the base name of the file or null;
 * `kind` is a ZrLoadErrorKind; `time` is in seconds since 1970-01-01 UTC. Non-zero stops the scan.
 */
typedef uint32_t (*ZrLoadFailScanFunc)(const char *moduleName, const char *yinFile, uint32_t kind,
                                       const char *message, uint32_t time, void *userData);
/** Receives a node and a ZrArrival; 0 goes on, any other value stops the scan. */
typedef uint32_t (*ZrNodeScanFunc)(ZrNode *node, uint32_t arrival, void *userData);
/** Receives an extension instance: module and extension name, argument or null. */
typedef uint32_t (*ZrExtInstScanFunc)(const ZrsExtInst *instance, const char *moduleName,
                                      const char *extensionName, const char *argument,
                                      void *userData);
/** Receives a "must": its condition with module names, error-message and error-app-tag or null. */
typedef uint32_t (*ZrMustScanFunc)(const char *condition, const char *errorMessage,
                                   const char *errorAppTag, void *userData);
/** Receives an "if-feature": the module that defines the feature, and the feature's name. */
typedef uint32_t (*ZrIfFeatureScanFunc)(const char *moduleName, const char *featureName,
                                        void *userData);
/** Receives one text of a list of texts. */
typedef uint32_t (*ZrTextScanFunc)(const char *text, void *userData);
/**
 * Receives the argument of a "unique": paths from the list down, with a blank between them, each
 * step with the name of its module ("m:address/m:ip m:port").
 */
typedef uint32_t (*ZrUniqueScanFunc)(const char *argument, void *userData);
/** Receives a loaded module. */
typedef uint32_t (*ZrModuleScanFunc)(ZrMod *module, void *userData);
/** Receives a feature of a module: its name, and 1 when it is on or else 0. */
typedef uint32_t (*ZrFeatureScanFunc)(const char *featureName, uint32_t enabled, void *userData);
/**
 * Receives an import: the name of the imported module, the prefix that stands for it, and the
 * revision of the module of that name that is loaded, or null.
 */
typedef uint32_t (*ZrImportScanFunc)(const char *moduleName, const char *prefix,
                                     const char *loadedRevision, void *userData);
/**
 * Receives a deviation: the path of its target with module names, the module that defines the
 * target, and 1 when the deviation is applied or else 0.
 */
typedef uint32_t (*ZrDeviationScanFunc)(const char *targetPath, const char *targetModuleName,
                                        uint32_t applied, void *userData);
/** Receives an identity of a module. */
typedef uint32_t (*ZrIdentityScanFunc)(const ZrsIdentity *identity, void *userData);
/** Receives one base of an identity or identityref type, and the array that holds it. */
typedef uint32_t (*ZrIdentBaseScanFunc)(const char *moduleName, const char *identityName,
                                        void *userData, const ZrsIdentBase *bases);
/** Receives one link of a typedef chain; both names are null for a built-in type. */
typedef uint32_t (*ZrDerivedTypeScanFunc)(const char *moduleName, const char *typedefName,
                                          const ZrtRealType *type, void *userData);
/** Receives an enum or bit: name, description or null, value or position. */
typedef uint32_t (*ZrNameValueScanFunc)(const char *name, const char *description, int64_t value,
                                        void *userData);
/**
 * Receives one segment of a range or length as 64-bit patterns: signed for signed types and
 * decimal64 (scaled by ten to the power of its fraction digits), else unsigned. Decimals in the
 * range of a derived type, with #ZR_CTX_STANDARD, come as their digits without the point.
 */
typedef uint32_t (*ZrStartEndScanFunc)(uint64_t start, uint64_t end, void *userData);
/** Receives a member type of a union; both names are null. */
typedef uint32_t (*ZrUnionScanFunc)(const char *moduleName, const char *typedefName,
                                    const ZrtRealType *member, void *userData);
/** Receives a pattern, 1 for invert-match or else 0, and the array that holds it. */
typedef uint32_t (*ZrPatternScanFunc)(const char *pattern, uint32_t invertMatch, void *userData,
                                      const ZrtPatternItem *patterns);
/**
 * Compiles a pattern, NUL-terminated UTF-8 (RFC 7950, section 9.4.5), for
 * ZR_CTX_SetPatternMatcher(). With #ZR_OK `*formOut` is the compiled form, which is not null and
 * stays until a ZrPatternFreeFunc gets it. With #ZR_ERR_NO_MEMORY the pattern is compiled again for
 * the next value; with any other status it is refused for good, and the built-in matcher is asked
 * instead.
 */
typedef uint32_t (*ZrPatternCompileFunc)(const char *pattern, void *userData, void **formOut);
/**
 * Tells, as a ZrPatternMatch, whether a compiled form matches the whole of a value, which is
 * NUL-terminated. Several threads may ask at the same time, also about the same form.
 */
typedef uint32_t (*ZrPatternMatchFunc)(const void *form, const char *value, void *userData);
/** Releases a compiled form. */
typedef void (*ZrPatternFreeFunc)(void *form, void *userData);

/** A matcher of patterns from outside the library: see ZR_CTX_SetPatternMatcher(). */
typedef struct ZrPatternMatcher {
    ZrPatternCompileFunc compile; /**< not null */
    ZrPatternMatchFunc match;     /**< not null */
    ZrPatternFreeFunc release;    /**< not null */
    void *userData;               /**< handed to all three */
} ZrPatternMatcher;

/** Receives a piece of printed text, `length` bytes and a NUL; non-zero stops the printing. */
typedef uint32_t (*ZrPrintFunc)(const char *text, uint32_t length, void *userData);
/** Receives an element (xmlNode *) that default completion added and that stays. */
typedef void (*ZrDefaultNodeFunc)(void *element, void *userData);
/** Receives the validated document as UTF-8 text; its result is the validation's status. */
typedef uint32_t (*ZrDocumentFunc)(const char *text, void *userData);

#ifdef __cplusplus
}
#endif

#endif
