// The status codes of the XPath evaluator.
#pragma once

#include <cstdint>

enum ZrXpathStatus : uint32_t {
    ZR_XPATH_RESULT_FALSE = 0x7100,             // the condition does not hold; no error
    ZR_XPATH_ERR_TOKENIZE = 0x7101,             // the expression cannot be tokenized
    ZR_XPATH_ERR_PAREN = 0x7102,                // a "(" or ")" is missing, or ")" or "," too many
    ZR_XPATH_ERR_UNSUPPORTED_OPERATOR = 0x7103, // an additive, multiplicative or union operator
    ZR_XPATH_ERR_BAD_OPERATION = 0x7104,        // the operator's token is no operator
    ZR_XPATH_ERR_BAD_PRIMARY = 0x7105,          // a primary expression starts with another token
    ZR_XPATH_ERR_ROOT_STEP = 0x7106,            // an absolute path starts with "//"
    ZR_XPATH_ERR_BAD_STEP = 0x7107,             // a step is neither a name nor "." nor ".."
    ZR_XPATH_ERR_UNKNOWN_FUNCTION = 0x7108,     // not in the table of functions
    ZR_XPATH_ERR_BAD_ARGUMENT = 0x7109,         // derived-from: no string or no node given
    ZR_XPATH_ERR_NO_SCHEMA = 0x710A,            // derived-from: the node has no schema node
    ZR_XPATH_ERR_SUBEXPR_START = 0x710B,        // a sub-expression starts without "(" or ","
    ZR_XPATH_ERR_SUBEXPR_END = 0x710C,          // a sub-expression ends without ")" or ","
    ZR_XPATH_ERR_PREDICATE = 0x710D             // a "[" has no "]"
};
