/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file type.h
 * Queries and scans on compiled types: the "type" statements of leaves, leaf-lists, typedefs and
 * unions (RFC 7950, sections 7.4 and 9).
 *
 * A type belongs to the leaf, typedef or union that it was read from and lives as long as its
 * module is loaded. Names and patterns that a callback receives are owned by the library and stay
 * valid as long as the type. None of these functions changes anything, so that they may run at the
 * same time as each other and as every other query on the same context, but not while the context
 * is loading, unloading or being deleted.
 */
#ifndef ZRSCHEMA_TYPE_H
#define ZRSCHEMA_TYPE_H

#include <zrschema/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What stands for a bound of a range or length. */
enum ZrBoundKind {
    ZR_BOUND_NUMBER = 0, /**< a number */
    ZR_BOUND_MIN = 1,    /**< "min", whose number is not known before a value is checked */
    ZR_BOUND_MAX = 2     /**< "max", likewise */
};

/** What a type says of the instance that a value refers to (RFC 7950, section 9.9.3). */
enum ZrRequireInstance {
    ZR_INSTANCE_NOT_SAID = 0, /**< nothing */
    ZR_INSTANCE_OPTIONAL = 1, /**< it may be there */
    ZR_INSTANCE_REQUIRED = 2  /**< it must be there */
};

/** The restrictions that may say how their violation is reported (RFC 7950, section 7.5.4). */
enum ZrRestriction {
    ZR_RESTRICTION_LENGTH = 0, /**< the length of a type */
    ZR_RESTRICTION_RANGE = 1,  /**< its range */
    ZR_RESTRICTION_PATTERN = 2 /**< one of its patterns */
};

/** One bound of a segment of a range or length. */
typedef struct ZrTypeBound {
    uint32_t kind;           /**< a ::ZrBoundKind */
    uint32_t fractionDigits; /**< the number is scaled by ten to the power of these: those of a
                                  decimal64 in its own range; in the range of a derived type those
                                  with which the number is written; else 0 */
    uint64_t number;         /**< its 64-bit pattern, signed when the type is or it is negative; 0
                                  when it is none */
} ZrTypeBound;

/** Receives one segment of a range or length. */
typedef uint32_t (*ZrBoundsScanFunc)(const ZrTypeBound *start, const ZrTypeBound *end,
                                     void *userData);

/**
 * Tells which built-in type a type statement names.
 *
 * A type that names a typedef answers ZRT_TYPE_DERIVED; ZR_TYPE_IterRealTypeDerivedName() leads
 * from there to the built-in type at the end of the chain.
 *
 * @param type  a type; null is allowed
 * @return a ZrtBuiltInType, ZRT_TYPE_NONE (20) for null
 */
ZR_API uint32_t ZR_TYPE_GetBuiltInBaseType(const ZrtRealType *type);

/**
 * Tells the fraction digits of a decimal64 (RFC 7950, section 9.3.4).
 *
 * @param type  a type; null is allowed
 * @return 1 to 18; 0 for null and for a type statement without "fraction-digits", such as one that
 *         names a typedef of a decimal64
 */
ZR_API uint32_t ZR_TYPE_GetDecimal64Fraction(const ZrtRealType *type);

/**
 * Gives the path of a leafref (RFC 7950, section 9.9.2).
 *
 * @param type  a type; null is allowed
 * @return the path with module names in place of prefixes, without its predicates; null for null
 *         and for a type statement without "path". It belongs to the type
 */
ZR_API const char *ZR_TYPE_GetTypeConsDataLeafrefPath(const ZrtRealType *type);

/**
 * Gives the path of a leafref with its predicates (RFC 7950, section 9.9.2).
 *
 * Names have the names of their modules in place of prefixes. A name without one in a predicate is
 * of the module of the leaf or leaf-list that has the type. Only contexts with #ZR_CTX_STANDARD
 * keep predicates.
 *
 * @param type  a type; null is allowed
 * @return the path; what ZR_TYPE_GetTypeConsDataLeafrefPath() returns for a path without predicates
 *         and in a context without #ZR_CTX_STANDARD. It belongs to the type
 */
ZR_API const char *ZR_TYPE_GetLeafrefPathWithPredicates(const ZrtRealType *type);

/**
 * Tells whether the target of a leafref must be there (RFC 7950, section 9.9.3).
 *
 * @param type  a type; null is allowed
 * @return 1 when it must, by "require-instance" "true" or because nothing is said; 0 for "false",
 *         for null and for a type statement without "path"
 */
ZR_API uint32_t ZR_TYPE_GetLeafrefRequireInstance(const ZrtRealType *type);

/**
 * Tells what a type statement says of the instance that a value refers to, for leafrefs,
 * instance-identifiers and what is derived from them (RFC 7950, sections 9.9.3 and 9.13.1).
 *
 * A type that names a typedef speaks for itself: when it says nothing, the typedef holds, which
 * ZR_TYPE_IterRealTypeDerivedName() leads to.
 *
 * @param type  a type; null is allowed
 * @return #ZR_INSTANCE_REQUIRED by "require-instance" "true", and for a leafref or
 *         instance-identifier without the statement; #ZR_INSTANCE_OPTIONAL by "false";
 *         #ZR_INSTANCE_NOT_SAID for any other type without the statement, for null, and in a
 *         context without #ZR_CTX_STANDARD
 */
ZR_API uint32_t ZR_TYPE_GetRequireInstance(const ZrtRealType *type);

/**
 * Walks the chain of typedefs behind a type, from the typedef that it names to the one that is
 * built on a built-in type (RFC 7950, section 7.3).
 *
 * The callback receives, per link, the names of the module and of the typedef and the typedef's
 * own type, which is null when module or typedef are not loaded; the walk then ends. A type that
 * names a built-in type itself is reported once, with both names null. At most 129 links are
 * walked.
 *
 * @param type      the type to start from; null gives #ZR_ERR_INVALID
 * @param ctx       the context in which modules are looked up; with null no typedef is found
 * @param callback  called per link; a result other than 0 ends the walk; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           the chain was walked to its end
 * @retval ZR_ERR_INVALID  a null argument, a type without its typedef reference, or a chain of 129
 *                         or more links, whose first 129 were reported
 * @return otherwise the callback's result that ended the walk
 */
ZR_API uint32_t ZR_TYPE_IterRealTypeDerivedName(const ZrtRealType *type, const ZrCtx *ctx,
                                                ZrDerivedTypeScanFunc callback, void *userData);

/**
 * Lists the names of an enumeration with their values, or of a bits type with their positions, in
 * the order of their statements (RFC 7950, sections 9.6.4 and 9.7.4).
 *
 * An enum comes with its description when the context keeps descriptions, else with null; a bit
 * always with null. Only the names that the type statement itself gives are listed, not those of a
 * typedef that it names.
 *
 * @param type      a type; null gives #ZR_ERR_INVALID
 * @param callback  called per name; a result other than 0 ends the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           every name was listed, or there are none
 * @retval ZR_ERR_INVALID  a null argument
 * @return otherwise the callback's result that ended the scan
 */
ZR_API uint32_t ZR_TYPE_ScanNameValuePair(const ZrtRealType *type, ZrNameValueScanFunc callback,
                                          void *userData);

/**
 * Lists the features that an enum or bit depends on (RFC 7950, section 7.20.2).
 *
 * Only contexts with #ZR_CTX_STANDARD keep them.
 *
 * @param type      a type; null gives #ZR_ERR_INVALID
 * @param index     the place of the name in the order of ZR_TYPE_ScanNameValuePair(), from 0; a
 *                  place where none stands has no features
 * @param callback  called per "if-feature"; a result other than 0 ends the scan; null gives
 *                  #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           every feature was listed, or there are none
 * @retval ZR_ERR_INVALID  a null argument
 * @return otherwise the callback's result that ended the scan
 */
ZR_API uint32_t ZR_TYPE_ScanNameIfFeatures(const ZrtRealType *type, uint32_t index,
                                           ZrIfFeatureScanFunc callback, void *userData);

/**
 * Tells whether every feature that an enum or bit depends on is enabled (RFC 7950, section 7.20.2).
 *
 * Only the "if-feature" statements of that type statement count: one that restricts a typedef and
 * the typedef may each make the same name depend on others. A feature that is not known counts as
 * disabled. Validation of rpcs, actions and notifications takes the name either way.
 *
 * @param type   a type; null gives 0
 * @param ctx    the context of its module; null gives 0
 * @param index  the place of the name in the order of ZR_TYPE_ScanNameValuePair(), from 0; a place
 *               where none stands gives 0
 * @return 1 or 0; 1 for every name in a context without #ZR_CTX_STANDARD
 */
ZR_API uint32_t ZR_TYPE_IsNameEnabled(const ZrtRealType *type, const ZrCtx *ctx, uint32_t index);

/**
 * Lists the segments of a type's length, then of its range, in the order in which they are written
 * (RFC 7950, sections 9.2.4 and 9.4.4).
 *
 * Both bounds are 64-bit patterns: of a signed number for the signed integer types and decimal64,
 * whose bounds are scaled by ten to the power of its fraction digits, else of an unsigned one. In a
 * type that names a typedef, "min" and "max" are not known before a value is checked; such a bound
 * reads as 0.
 *
 * @param type      a type; null gives #ZR_ERR_INVALID
 * @param callback  called per segment; a result other than 0 ends the scan; null gives
 *                  #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           every segment was listed, or there are none
 * @retval ZR_ERR_INVALID  a null argument
 * @return otherwise the callback's result that ended the scan
 */
ZR_API uint32_t ZR_TYPE_ScanStartEndPair(const ZrtRealType *type, ZrStartEndScanFunc callback,
                                         void *userData);

/**
 * Lists the segments of a type's length, then of its range, like ZR_TYPE_ScanStartEndPair(), and
 * tells "min" and "max" from numbers, and how decimals are scaled.
 *
 * In the range of a type that names a typedef of a decimal64, numbers are written with digits of
 * their own; without #ZR_CTX_STANDARD they are whole.
 *
 * @param type      a type; null gives #ZR_ERR_INVALID
 * @param callback  called per segment, with bounds that last as long as the call; a result other
 *                  than 0 ends the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           every segment was listed, or there are none
 * @retval ZR_ERR_INVALID  a null argument
 * @return otherwise the callback's result that ended the scan
 */
ZR_API uint32_t ZR_TYPE_ScanBounds(const ZrtRealType *type, ZrBoundsScanFunc callback,
                                   void *userData);

/**
 * Lists the member types of a union in the order in which they are tried (RFC 7950, section 9.12).
 *
 * @param type      a type; null gives #ZR_ERR_INVALID
 * @param callback  called per member, with both names null; a result other than 0 ends the scan;
 *                  null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           every member was listed, or there are none
 * @retval ZR_ERR_INVALID  a null argument
 * @return otherwise the callback's result that ended the scan
 */
ZR_API uint32_t ZR_TYPE_ScanUnionSubType(const ZrtRealType *type, ZrUnionScanFunc callback,
                                         void *userData);

/**
 * Lists the base identities of an identityref in the order in which they are tried (RFC 7950,
 * section 9.10.2).
 *
 * @param type      a type; null gives #ZR_ERR_INVALID
 * @param callback  called per base with the names of its module and of the identity and with the
 *                  array of all bases; a result other than 0 ends the scan; null gives
 *                  #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           every base was listed, or there are none
 * @retval ZR_ERR_INVALID  a null argument
 * @return otherwise the callback's result that ended the scan
 */
ZR_API uint32_t ZR_TYPE_ScanIdentRefBase(const ZrtRealType *type, ZrIdentBaseScanFunc callback,
                                         void *userData);

/**
 * Lists the patterns of a type in the order in which they are written (RFC 7950, section 9.4.5).
 *
 * A pattern that was written between "^" and "$" comes without them.
 *
 * @param type      a type; null gives #ZR_ERR_INVALID
 * @param callback  called per pattern with its text, with 1 when it must not match or else 0, and
 *                  with the array of all patterns; a result other than 0 ends the scan; null gives
 *                  #ZR_ERR_INVALID
 * @param userData  handed to the callback as it is
 * @retval ZR_OK           every pattern was listed, or there are none
 * @retval ZR_ERR_INVALID  a null argument
 * @return otherwise the callback's result that ended the scan
 */
ZR_API uint32_t ZR_TYPE_ScanPatternInvertMatch(const ZrtRealType *type, ZrPatternScanFunc callback,
                                               void *userData);

/**
 * Gives the "error-message" of a range, length or pattern: what a server reports of a value that it
 * refuses (RFC 7950, sections 7.5.4.1 and 8.3.1).
 *
 * Only the restrictions that the type statement itself gives are asked, not those of a typedef that
 * it names. Only contexts with #ZR_CTX_STANDARD keep the messages.
 *
 * @param type         a type; null is allowed
 * @param restriction  a ::ZrRestriction
 * @param index        the place of the pattern in the order of ZR_TYPE_ScanPatternInvertMatch(),
 *                     from 0; 0 for a length or range
 * @return the text, which belongs to the type; null when there is no such restriction, when it says
 *         none, and in a context without #ZR_CTX_STANDARD
 */
ZR_API const char *ZR_TYPE_GetErrorMessage(const ZrtRealType *type, uint32_t restriction,
                                           uint32_t index);

/**
 * Gives the "error-app-tag" of a range, length or pattern (RFC 7950, section 7.5.4.2), like
 * ZR_TYPE_GetErrorMessage() its message.
 *
 * @param type         a type; null is allowed
 * @param restriction  a ::ZrRestriction
 * @param index        the place of the pattern in the order of ZR_TYPE_ScanPatternInvertMatch(),
 *                     from 0; 0 for a length or range
 * @return the text, which belongs to the type; null when there is no such restriction, when it says
 *         none, and in a context without #ZR_CTX_STANDARD
 */
ZR_API const char *ZR_TYPE_GetErrorAppTag(const ZrtRealType *type, uint32_t restriction,
                                          uint32_t index);

#ifdef __cplusplus
}
#endif

#endif
