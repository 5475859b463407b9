// The XPath evaluator for "when" and "must" (RFC 7950, sections 7.21.5 and 7.5.3).
//
// It decides conditions of a small subset of XPath 1.0: a node is one node, not a set; a step goes
// to a child, to the parent or stays; predicates are skipped; the operators are "or", "and" and the
// comparisons; the functions are not(), derived-from() and derived-from-or-self().
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

extern "C" {
// Whether a condition holds on `contextNode`: 0 when it does, ZR_XPATH_RESULT_FALSE when it does
// not. Another ZrXpathStatus, 22 or 12 says why it cannot be evaluated; 22 also for a null
// argument. "/" starts at `root`, the node above the instance data, to which ".." never climbs.
// Every element carries its schema node in _private, or null. Nothing is changed and nothing is
// kept: conditions may be evaluated side by side as long as tree and schema stay as they are.
ZR_API uint32_t ZR_XPATH_EvalCondition(xmlNode *root, xmlNode *contextNode, const char *expression);
}

namespace zr {
class ChildMemory;
// The same for a condition of a validation run: it sees one operation alone, the child of `root` in
// which `contextNode` stands. `root` itself and what is beside the operation are not read. `memory`
// is the run's, or null.
uint32_t EvalConditionInRun(xmlNode *root, xmlNode *contextNode, const char *expression,
                            ChildMemory *memory);
} // namespace zr
