/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file validation.h
 * Validation of requests and notifications, and the error records that it gives.
 *
 * A run matches every element to its schema node and checks it in document order, adds the
 * defaults that the data leaves out, evaluates "when" and "must" conditions and looks for missing
 * mandatory nodes (RFC 7950, section 8). The first fault ends it and is described in one record in
 * the manner of a NETCONF rpc-error (RFC 6241, section 4.3).
 *
 * What is validated is the operation alone: what stands inside `<rpc>`, or inside `<notification>`
 * after `<eventTime>`. Conditions are evaluated against that data and nothing else.
 *
 * Not checked, and left to the application:
 * - features: data of a node whose "if-feature" is off is taken like any other (such a node is only
 *   not completed, not missed when it is mandatory, and passed over by the check of the order);
 * - keys of lists: one may be missing, stand anywhere, or repeat the keys of another entry;
 * - "unique", and the uniqueness of the entries of a leaf-list;
 * - "min-elements" and "max-elements";
 * - "require-instance": a leafref's value is held against the type of its target, and whether the
 *   target holds that value is not asked; of an instance-identifier, the value is any text;
 * - attributes, which are neither read nor refused;
 * - the nodes of an operation's output: in the data of an operation they are taken like those of
 *   its input;
 * - in notifications the values of leaves, the order of elements and the cases of choices.
 *
 * Three rules that are easily taken for others:
 * - the order of an element is compared with the element before it and with no other: of a, b and c
 *   in the schema's order, "b a" and "c a" are refused, and in "b x a", with x of another module,
 *   nothing is out of order;
 * - completion looks into the element that was matched to a container. An element of another module
 *   that has the container's name is not looked into, but keeps the container from being added;
 * - an element that has the name of a choice or case is unexpected, also at the top: these have no
 *   elements of their own (RFC 7950, section 7.9).
 */
#ifndef ZRSCHEMA_VALIDATION_H
#define ZRSCHEMA_VALIDATION_H

#include <zrschema/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Validates the XML of an RPC or action invocation and completes its defaults.
 *
 * The top element is an rpc of a loaded module, or data (a container, list entry and so on) that
 * leads to exactly one action (RFC 7950, sections 7.14 and 7.15). Around an action only matching,
 * values and repeated nodes are checked; inside it, and in an rpc, also order, cases, conditions
 * and mandatory nodes. Where action data holds a schema-mount point (RFC 8528), whose schema is
 * not known here, the run ends with success once everything known is matched.
 *
 * A leaf or leaf-list element holds text or nothing: a comment, an instruction, a CDATA section or
 * an element in it, beside the text or instead of it, makes it unexpected. Text nodes that follow
 * one another in a caller's tree are one text.
 *
 * Default leaves that the input leaves out, and the non-presence containers needed to hold them,
 * are appended to the tree as its last children (RFC 7950, sections 7.5.1 and 7.6.1); one whose
 * "when" is false is taken out again. An added element whose module is not its parent's declares
 * its module's namespace as the default one and belongs to it; any other belongs to its parent's.
 * An added leaf whose value is an identity "module:identity" binds that prefix to the namespace of
 * the module, unless it is bound to it there already (RFC 7950, section 9.10.3).
 *
 * A caller's tree is changed by these additions alone, and only when the data is valid: after a
 * failed run it is as it was. The private pointers (`_private`) of its elements are used during
 * the run, whatever they held before, and are null afterwards, also those of added elements. The
 * tree must not be used by others meanwhile.
 *
 * Text is parsed with libxml2, whose process-wide keep-blanks default is switched off and left so
 * (`xmlKeepBlanksDefault(0)`). No external entity is loaded and nothing is printed.
 *
 * @param ctx        the context whose loaded modules are the schema; null gives a record
 * @param inputKind  2: `data` is the top element of a libxml2 tree (xmlNode *) that stays the
 *                   caller's; any other value: `data` is a NUL-terminated XML text (const char *)
 * @param data       the tree or text; null gives a record
 * @param callback   called after a successful run for every root of an added subtree, the one
 *                   added last first; may be null. With text input the element lives until the
 *                   call returns. It must not unload modules or remove the element.
 * @param userData   passed to `callback`
 * @return null when the data is valid, else the record of the first fault, which the caller frees
 *         with ZR_FreeErrNode(). Text that is not well-formed, a null argument, a node that is no
 *         element and exhausted memory give a record with tag ZR_ERROR_TAG_OPERATION_FAILED, path
 *         "/" and nothing else; null is never returned for a run that failed.
 * @note Not to be called while another thread changes the same context. Runs on different trees
 *       may go side by side, since they only read the context; with text input, libxml2 must have
 *       been initialised before (`xmlInitParser()`).
 */
ZR_API ZrdErrNode *ZR_CTX_ValidateRpcDataTree(ZrCtx *ctx, uint32_t inputKind, void *data,
                                              ZrDefaultNodeFunc callback, void *userData);

/**
 * Validates the text of an RPC or action invocation, as ZR_CTX_ValidateRpcDataTree() does, and
 * hands it out with its defaults, each at its place in the schema's order (RFC 7950,
 * section 7.14.4), where the check of the order accepts it again.
 *
 * @param ctx       the context whose loaded modules are the schema; null gives #ZR_ERR_INVALID and
 *                  a record
 * @param xmlText   NUL-terminated XML; its root element is the operation, or the data that leads to
 *                  the action; null gives #ZR_ERR_INVALID and a record
 * @param callback  receives the completed request as formatted UTF-8 text with an XML declaration,
 *                  which lives until the callback returns; not called when the run failed; may be
 *                  null
 * @param userData  passed to `callback`
 * @param errorOut  receives null, or the record of a run that failed, which the caller frees with
 *                  ZR_FreeErrNode(); may be null
 * @retval ZR_OK           the request is valid and there is no callback
 * @retval ZR_ERR_INVALID  the run failed, or the request could not be written (the general record,
 *                         with tag ZR_ERROR_TAG_OPERATION_FAILED); `*errorOut` is not null
 * @return                 otherwise what the callback returned; `*errorOut` is null
 * @note Not to be called while another thread changes the same context. Runs may go side by side
 *       when libxml2 has been initialised before (`xmlInitParser()`).
 */
ZR_API uint32_t ZR_CTX_CompleteRpcDataTree(ZrCtx *ctx, const char *xmlText, ZrDocumentFunc callback,
                                           void *userData, ZrdErrNode **errorOut);

/**
 * Validates the XML text of a notification and hands out what remains of it.
 *
 * Other than in a request, values, the order of elements and the cases of choices are not checked
 * (that a leaf holds text alone is), no defaults are added, and an element whose "when" or "must"
 * is false is no fault: it is removed with everything below it (RFC 7950, section 7.16). A false
 * "must" of the notification itself, a missing mandatory node and every other fault fail the run.
 *
 * The text is parsed as ZR_CTX_ValidateRpcDataTree() parses it.
 *
 * @param ctx       the context whose loaded modules are the schema; null gives #ZR_ERR_INVALID
 * @param xmlText   NUL-terminated XML; its root element is the notification; null gives
 *                  #ZR_ERR_INVALID
 * @param callback  receives the document as it was left, as formatted UTF-8 text with an XML
 *                  declaration, which lives until the callback returns; may be null
 * @param userData  passed to `callback`
 * @retval ZR_OK           the notification is valid and there is no callback
 * @retval ZR_ERR_INVALID  a null argument, text that is not well-formed, any fault, or a document
 *                         that could not be written; the callback was not called
 * @return     otherwise what the callback returned
 * @note Not to be called while another thread changes the same context.
 */
ZR_API uint32_t ZR_CTX_ValidateNotifDataTree(ZrCtx *ctx, const char *xmlText,
                                             ZrDocumentFunc callback, void *userData);

/**
 * Does what ZR_CTX_ValidateNotifDataTree() does, and tells why a notification was refused.
 *
 * A false "must" of the notification itself gives the general record, as text that is not
 * well-formed does: tag ZR_ERROR_TAG_OPERATION_FAILED, path "/" and nothing else.
 *
 * @param ctx       the context whose loaded modules are the schema; null gives #ZR_ERR_INVALID and
 *                  a record
 * @param xmlText   NUL-terminated XML; its root element is the notification; null gives
 *                  #ZR_ERR_INVALID and a record
 * @param callback  receives the document as it was left, as formatted UTF-8 text with an XML
 *                  declaration, which lives until the callback returns; not called when the run
 *                  failed; may be null
 * @param userData  passed to `callback`
 * @param errorOut  receives null, or the record of a run that failed, which the caller frees with
 *                  ZR_FreeErrNode(); may be null
 * @retval ZR_OK           the notification is valid and there is no callback
 * @retval ZR_ERR_INVALID  the run failed, or the document could not be written; `*errorOut` is not
 *                         null
 * @return                 otherwise what the callback returned; `*errorOut` is null
 * @note Not to be called while another thread changes the same context.
 */
ZR_API uint32_t ZR_CTX_ValidateNotifDataTreeWithError(ZrCtx *ctx, const char *xmlText,
                                                      ZrDocumentFunc callback, void *userData,
                                                      ZrdErrNode **errorOut);

/**
 * The error-type of a record (RFC 6241, section 4.3).
 *
 * @param error  a record; null gives 0
 * @return a ZrErrorType; validation sets ZR_ERROR_TYPE_APPLICATION
 */
ZR_API uint32_t ZR_GetErrorType(const ZrdErrNode *error);

/**
 * The error-severity of a record (RFC 6241, section 4.3).
 *
 * @param error  a record; null gives 0
 * @return a ZrErrorSeverity; validation sets ZR_ERROR_SEVERITY_ERROR
 */
ZR_API uint32_t ZR_GetErrorSeverity(const ZrdErrNode *error);

/**
 * The error-tag of a record (RFC 6241, appendix A).
 *
 * A value that its type refuses has ZR_ERROR_TAG_BAD_ELEMENT, an element out of order
 * ZR_ERROR_TAG_MISSING_ELEMENT, an element whose "when" is false ZR_ERROR_TAG_UNKNOWN_ELEMENT.
 *
 * @param error  a record; null gives 0
 * @return a ZrErrorTag
 */
ZR_API uint32_t ZR_GetErrorTag(const ZrdErrNode *error);

/**
 * The error-app-tag of a record: "missing-choice" for a mandatory choice without data,
 * "must-violation" or the schema's own for a "must" (RFC 7950, sections 7.5.4.2 and 15.6).
 *
 * @param error  a record; null gives null
 * @return the text, which belongs to the record; null when there is none
 */
ZR_API const char *ZR_GetErrorAppTag(const ZrdErrNode *error);

/**
 * The error-message of a record: a sentence in English, or the "error-message" of a "must".
 *
 * @param error  a record; null gives null
 * @return the text, which belongs to the record; null when there is none, when the schema's is
 *         empty, and when it would be longer than 10240 bytes
 */
ZR_API const char *ZR_GetErrorMessage(const ZrdErrNode *error);

/**
 * The error-path of a record.
 *
 * The steps from the top element to the faulty one, or to its parent where an element is missing:
 * "/module:top/list[key='value']/leaf". A step names its module at the top and wherever the module
 * changes. Entries of lists show the keys that were matched before the fault, entries of
 * leaf-lists their value ("[.='value']"), identities in the form module:name; a value that holds
 * an apostrophe stands between double quotes.
 *
 * @param error  a record; null gives null
 * @return the text, which belongs to the record; "/" for a fault of the whole; null for a path
 *         longer than 10239 bytes
 */
ZR_API const char *ZR_GetErrorPath(const ZrdErrNode *error);

/**
 * The bad-element of a record: the local name of the element, choice parent or missing node that
 * is at fault (RFC 6241, appendix A).
 *
 * @param error  a record; null gives null
 * @return the text, which belongs to the record; null when there is none
 */
ZR_API const char *ZR_GetBadElement(const ZrdErrNode *error);

/**
 * The bad-attribute of a record. Validation looks at no attributes and never sets it.
 *
 * @param error  a record; null gives null
 * @return the text, which belongs to the record; null when there is none
 */
ZR_API const char *ZR_GetBadAttribute(const ZrdErrNode *error);

/**
 * Frees a record with all its texts.
 *
 * @param error  a record that a validation gave; null is accepted. Not to be used again.
 */
ZR_API void ZR_FreeErrNode(ZrdErrNode *error);

#ifdef __cplusplus
}
#endif

#endif
