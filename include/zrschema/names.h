/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file names.h
 * Names and sentences for the numbers of the interface, for messages, logs and protocols.
 *
 * The texts are constant: they are never freed, and every function may be called at any time on any
 * thread. None returns null: a number that has no name here, such as a status that an application's
 * own callback returned, is "unknown".
 */
#ifndef ZRSCHEMA_NAMES_H
#define ZRSCHEMA_NAMES_H

#include <zrschema/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Returns the name of a status.
 *
 * @param status  a ::ZrStatus or ::ZrXpathStatus
 * @return the name of the constant, such as "ZR_ERR_INVALID"; else "unknown"
 */
ZR_API const char *ZR_GetStatusName(uint32_t status);

/**
 * Says in a sentence what a status means.
 *
 * @param status  a ::ZrStatus or ::ZrXpathStatus
 * @return an English sentence, such as "No module file was found in any search directory.";
 * "Unknown status." for any other number
 */
ZR_API const char *ZR_GetStatusText(uint32_t status);

/**
 * Returns the keyword of a kind of schema node.
 *
 * @param kind  a ::ZrNodeKind
 * @return the YANG keyword, such as "leaf-list"; "unknown" for #ZR_NODE_UNKNOWN and other numbers
 */
ZR_API const char *ZR_GetNodeKindName(uint32_t kind);

/**
 * Returns the keyword of a built-in type (RFC 7950, section 4.2.4).
 *
 * @param type  a ::ZrtBuiltInType
 * @return the YANG keyword, such as "decimal64"; "derived" for #ZRT_TYPE_DERIVED; "unknown" for
 *         #ZRT_TYPE_NONE and other numbers
 */
ZR_API const char *ZR_GetBuiltInTypeName(uint32_t type);

/**
 * Returns the error-type of an error record as NETCONF writes it (RFC 6241, section 4.3).
 *
 * @param type  a ::ZrErrorType
 * @return such as "application"; else "unknown"
 */
ZR_API const char *ZR_GetErrorTypeName(uint32_t type);

/**
 * Returns the error-severity of an error record as NETCONF writes it (RFC 6241, section 4.3).
 *
 * @param severity  a ::ZrErrorSeverity
 * @return "error" or "warning"; else "unknown"
 */
ZR_API const char *ZR_GetErrorSeverityName(uint32_t severity);

/**
 * Returns the error-tag of an error record as NETCONF writes it (RFC 6241, appendix A).
 *
 * @param tag  a ::ZrErrorTag
 * @return such as "operation-failed"; else "unknown"
 */
ZR_API const char *ZR_GetErrorTagName(uint32_t tag);

#ifdef __cplusplus
}
#endif

#endif
