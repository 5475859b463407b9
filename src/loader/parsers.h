// The statement parsers. All but the last few have the shape of ZrsParseFunc; the comment on each
// group says what the destination is. A parser that fails has recorded why, unless its statement
// engine does so for it, and leaves nothing of its own behind.
#pragma once

#include "loader/statements.h"

using ZrsParser = uint32_t(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                           void *destination);

extern "C" {
// Module header. Destination: the place of a uint32_t; of an interned string.
ZR_API ZrsParser ZRS_LOADER_ParseYangVersion; // "1" is 0, "1.1" is 1; UINT32_MAX when neither
ZR_API ZrsParser ZRS_LOADER_ParseNamespace;
ZR_API ZrsParser ZRS_LOADER_ParsePrefix;

// Linkage. Destination: not used, the module is changed.
ZR_API ZrsParser ZRS_LOADER_ParseImport;
ZR_API ZrsParser ZRS_LOADER_ParseInclude;

// Texts. Destination: the place of an interned string.
ZR_API ZrsParser ZRS_LOADER_ParseRevision; // the first one of a module is kept
ZR_API ZrsParser ZRS_LOADER_ParseOrganization;
ZR_API ZrsParser ZRS_LOADER_ParseDescription; // with ZR_CTX_KEEP_DESCRIPTIONS only
ZR_API ZrsParser ZRS_LOADER_ParseUnits;       // with ZR_CTX_KEEP_UNITS only
ZR_API ZrsParser ZRS_LOADER_ParseDefault;
ZR_API ZrsParser ZRS_LOADER_ParseWhen;
ZR_API ZrsParser ZRS_LOADER_ParseErrorMessage;
ZR_API ZrsParser ZRS_LOADER_ParseErrorAppTag;
ZR_API ZrsParser ZRS_LOADER_ParseText;  // the "text" child of a text statement
ZR_API ZrsParser ZRS_LOADER_ParseValue; // the "value" child of a text statement

// Properties. Destination: a 32-bit word of node flags, into which bits are ORed.
ZR_API ZrsParser ZRS_LOADER_ParseConfig;
ZR_API ZrsParser ZRS_LOADER_ParseMandatory;
ZR_API ZrsParser ZRS_LOADER_ParseOrderedBy;
ZR_API ZrsParser ZRS_LOADER_ParsePresence;
ZR_API ZrsParser ZRS_LOADER_ParseStatus;

// Destination: the place of a pointer that receives the document's own text.
ZR_API ZrsParser ZRS_LOADER_ParseKey;

// Members. Destination: the zeroed record named beside each.
ZR_API ZrsParser ZRS_LOADER_ParseExtension;  // ZrsExtension
ZR_API ZrsParser ZRS_LOADER_ParseArgument;   // ZrsExtension
ZR_API ZrsParser ZRS_LOADER_ParseYinElement; // uint32_t
ZR_API ZrsParser ZRS_LOADER_ParseFeature;    // ZrsFeature
ZR_API ZrsParser ZRS_LOADER_ParseIdentity;   // ZrsIdentity
ZR_API ZrsParser ZRS_LOADER_ParseIdentBase;  // ZrsIdentBase
ZR_API ZrsParser ZRS_LOADER_ParseIfFeature;  // ZrsIfFeature
ZR_API ZrsParser ZRS_LOADER_ParseMust;       // ZrsMust
ZR_API ZrsParser ZRS_LOADER_ParseDeviation;  // ZrsDeviation
ZR_API ZrsParser ZRS_LOADER_ParseDeviate;    // ZrsDeviate; UINT32_MAX for a kind that is none
ZR_API ZrsParser ZRS_LOADER_ParseDeviateAdd;
ZR_API ZrsParser ZRS_LOADER_ParseDeviateDelete;
ZR_API ZrsParser ZRS_LOADER_ParseDeviateReplace;
// ZrsExtInst, but under a schema-node statement the ZrNode, to whose own array it goes.
ZR_API ZrsParser ZRS_LOADER_ParseExtInst;

// Schema nodes. Destination: the parent ZrNode, or the ZrMod when the parent statement is "module".
ZR_API ZrsParser ZRS_LOADER_ParseContainer;
ZR_API ZrsParser ZRS_LOADER_ParseLeaf;
ZR_API ZrsParser ZRS_LOADER_ParseLeafList;
ZR_API ZrsParser ZRS_LOADER_ParseList;
ZR_API ZrsParser ZRS_LOADER_ParseChoice;
ZR_API ZrsParser ZRS_LOADER_ParseCase;
ZR_API ZrsParser ZRS_LOADER_ParseAnydata;
ZR_API ZrsParser ZRS_LOADER_ParseAnyxml;
ZR_API ZrsParser ZRS_LOADER_ParseAugment;
ZR_API ZrsParser ZRS_LOADER_ParseRpc;
ZR_API ZrsParser ZRS_LOADER_ParseAction;
ZR_API ZrsParser ZRS_LOADER_ParseInput;
ZR_API ZrsParser ZRS_LOADER_ParseOutput;
ZR_API ZrsParser ZRS_LOADER_ParseNotif;
ZR_API uint32_t ZRS_LOADER_ParseAnydataInner(ZrMod *module, xmlNode *element,
                                             uint32_t parentStatement, void *destination,
                                             uint32_t nodeKind);
ZR_API uint32_t ZRS_LOADER_ParseRpcInner(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                         void *destination, uint32_t nodeKind);
ZR_API uint32_t ZRS_LOADER_ParseInout(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                      void *destination, uint32_t nodeKind);

// A new node of the module with its name, not linked anywhere; null on failure.
ZR_API ZrNode *ZRS_LOADER_ParseNodeCommon(ZrMod *module, const xmlNode *element, uint32_t nodeKind);
// The target of an augment in module-name form, freed with the free hook; null on failure.
ZR_API char *ZRS_LOADER_ParseAugmentTargetNode(ZrMod *module, const xmlNode *element);
// Puts a finished node under its parent: `destination` is as for the node parsers.
ZR_API uint32_t ZRS_LOADER_AddNodeToSchemaTree(uint32_t parentStatement, void *destination,
                                               ZrNode *node);

// A ZrsDeviateKind, or 0.
ZR_API uint32_t ZRS_LOADER_GetDeviateType(const char *name);
// 1 unless the application's filter skips the instance.
ZR_API uint32_t ZRS_LOADER_IsExtInstNeedParse(const ZrMod *module, const xmlNode *element);
}
