/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file write.h
 * Data that was checked, to be written: as XML or JSON (RFC 7951), or as a tree of libxml2's, with
 * what is in use by default or without it (RFC 6243).
 *
 * A *document* is data that has no faults. What is written of it has every value in its canonical
 * form and every node at its place in the schema, keys first; so each default stands where the
 * schema's order puts it, and what was written is valid again and reads back to the same data.
 *
 * The functions that read a document check it as those of zrdata.h do, and give the same result
 * beside it.
 */
#ifndef ZRDATA_WRITE_H
#define ZRDATA_WRITE_H

#include <zrdata/zrdata.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Data that has no faults; only the library sees inside. */
typedef struct ZrDataDocument ZrDataDocument;

/** What a document is written as. */
enum ZrDataFormat {
    ZR_DATA_XML = 1, /**< RFC 7950; UTF-8 without an XML declaration */
    ZR_DATA_JSON = 2 /**< RFC 7951 */
};

/** How defaults are written (RFC 6243, section 3). */
enum ZrDataDefaults {
    /** What was in the data, but for what was tagged as a default in it. */
    ZR_DATA_EXPLICIT = 0,
    /** The same, but for leafs and leaf-lists that have their default. One that is all that selects
        its case stays. */
    ZR_DATA_TRIM = 1,
    /** With every default in use. Containers stand for the defaults in them alone where the data
        has none of them. */
    ZR_DATA_REPORT_ALL = 2,
    /** The same, and what would not be written as explicit data has the attribute `default` of the
        namespace urn:ietf:params:xml:ns:netconf:default:1.0, in JSON the annotation
        `ietf-netconf-with-defaults:default` (RFC 8040, section 4.8.9). */
    ZR_DATA_REPORT_ALL_TAGGED = 3
};

/** How a document is written. */
typedef struct ZrDataWriteOptions {
    uint32_t format;   /**< ::ZrDataFormat */
    uint32_t defaults; /**< ::ZrDataDefaults */
    uint32_t indent;   /**< spaces for each level, at most 16; 0 for all on one line. Content of
                            anydata and anyxml is not indented in XML. */
} ZrDataWriteOptions;

/**
 * Takes the next piece of a text.
 *
 * @param text    the piece: UTF-8, not NUL-terminated, gone when the callback returns; pieces may
 *                end inside a character
 * @param length  its bytes, at least 1
 * @param user    as given with the callback
 * @return 0 to go on, anything else to stop
 */
typedef int (*ZrDataWriteFunc)(const char *text, size_t length, void *user);

/**
 * Reads and checks XML text, as ZR_DATA_CheckText() does.
 *
 * @param plan         the plan, which must outlive the document
 * @param options      how to check; copied
 * @param text         not needed any more when the function returns
 * @param length       its bytes, at most 2,147,483,647
 * @param documentOut  receives the document, to be deleted with ZR_DATA_DeleteDocument(), when the
 *                     status is #ZR_DATA_OK; else null
 * @param resultOut    as for ZR_DATA_CheckText()
 * @return as ZR_DATA_CheckText(); a null `documentOut`, and a kind that is neither #ZR_DATA_CONFIG
 *         nor #ZR_DATA_CONFIG_AND_STATE, is #ZR_DATA_ERR_INVALID
 * @note As ZR_DATA_CheckText().
 */
ZR_DATA_API uint32_t ZR_DATA_ReadXml(const ZrDataPlan *plan, const ZrDataOptions *options,
                                     const char *text, size_t length, ZrDataDocument **documentOut,
                                     ZrDataResult **resultOut);

/**
 * Reads and checks JSON text, as ZR_DATA_CheckJson() does.
 *
 * @param plan         as for ZR_DATA_ReadXml()
 * @param options      as for ZR_DATA_ReadXml()
 * @param text         as for ZR_DATA_ReadXml()
 * @param length       as for ZR_DATA_ReadXml()
 * @param documentOut  as for ZR_DATA_ReadXml()
 * @param resultOut    as for ZR_DATA_ReadXml()
 * @return as ZR_DATA_ReadXml()
 * @note As ZR_DATA_CheckText().
 */
ZR_DATA_API uint32_t ZR_DATA_ReadJson(const ZrDataPlan *plan, const ZrDataOptions *options,
                                      const char *text, size_t length, ZrDataDocument **documentOut,
                                      ZrDataResult **resultOut);

/**
 * Reads and checks a tree of libxml2's, as ZR_DATA_CheckTree() does. The tree is only read, but the
 * document refers to it: it must stay as it is until the document is deleted.
 *
 * @param plan         as for ZR_DATA_ReadXml()
 * @param options      as for ZR_DATA_ReadXml()
 * @param root         the wrapper element (xmlNode *), as for ZR_DATA_CheckTree()
 * @param documentOut  as for ZR_DATA_ReadXml()
 * @param resultOut    as for ZR_DATA_ReadXml()
 * @return as ZR_DATA_ReadXml(); a node that is no element is #ZR_DATA_ERR_INVALID
 * @note As ZR_DATA_CheckTree().
 */
ZR_DATA_API uint32_t ZR_DATA_ReadTree(const ZrDataPlan *plan, const ZrDataOptions *options,
                                      const void *root, ZrDataDocument **documentOut,
                                      ZrDataResult **resultOut);

/**
 * Deletes a document. Its plan must still be there.
 *
 * @param document  the document; null is ignored
 */
ZR_DATA_API void ZR_DATA_DeleteDocument(ZrDataDocument *document);

/**
 * Writes a document as text.
 *
 * In XML its root is the wrapper that the data was read in, or `<data>` in the namespace of NETCONF
 * for what was JSON. JSON is one object whose members are the top-level data nodes.
 *
 * @param document  the document; it may be written any number of times
 * @param options   how to write; only read
 * @param write     called with one piece after another
 * @param user      handed to the callback
 * @retval ZR_DATA_OK             all was written
 * @retval ZR_DATA_ERR_NO_MEMORY  memory ran out; a part may have been written
 * @retval ZR_DATA_ERR_INVALID    a null argument, or an unknown format, mode or indentation
 * @return any other value: the result with which the callback stopped the writing
 * @note Any number of threads may write one document at the same time.
 */
ZR_DATA_API uint32_t ZR_DATA_WriteText(const ZrDataDocument *document,
                                       const ZrDataWriteOptions *options, ZrDataWriteFunc write,
                                       void *user);

/**
 * Writes a document as a new tree of libxml2's, that of the XML text.
 *
 * @param document  the document
 * @param defaults  a ::ZrDataDefaults
 * @param treeOut   receives the tree (xmlDoc *), which belongs to the caller and is freed with
 *                  xmlFreeDoc(); null on failure. It comes from libxml2's own allocator, and has
 *                  nothing to do with the tree that the data may have been.
 * @retval ZR_DATA_OK             made
 * @retval ZR_DATA_ERR_NO_MEMORY  memory ran out
 * @retval ZR_DATA_ERR_INVALID    a null argument, an unknown mode, or data with characters that XML
 *                                cannot write, which a caller's own tree may have
 * @note As ZR_DATA_WriteText().
 */
ZR_DATA_API uint32_t ZR_DATA_WriteTree(const ZrDataDocument *document, uint32_t defaults,
                                       void **treeOut);

#ifdef __cplusplus
}
#endif

#endif
