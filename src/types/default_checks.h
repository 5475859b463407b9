// SPDX-License-Identifier: Apache-2.0
// What a built-in type demands of a value by itself, before any restriction (RFC 7950, section 9).
#pragma once

#include <cstdint>

#include "model/type_records.h"

extern "C" {
// Each gives ZR_OK or a status of its own: ZR_ERR_VALUE_BINARY, ZR_ERR_VALUE_BOOLEAN,
// ZR_ERR_VALUE_EMPTY or, of the numbers, ZR_ERR_VALUE_RANGE. The length of a string refuses nothing
// yet. What is read of the value stays in the context for its restrictions.
ZR_API uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictBinary(uint32_t baseType, uint32_t inputKind,
                                                             const void *value,
                                                             ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictBoolean(uint32_t baseType, uint32_t inputKind,
                                                              const void *value,
                                                              ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictDecimal64(uint32_t baseType,
                                                                uint32_t inputKind,
                                                                const void *value,
                                                                ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictEmpty(uint32_t baseType, uint32_t inputKind,
                                                            const void *value,
                                                            ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictLength(uint32_t baseType, uint32_t inputKind,
                                                             const void *value,
                                                             ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictRange(uint32_t baseType, uint32_t inputKind,
                                                            const void *value,
                                                            ZrtValidateCtx *validation);
}
