/* SPDX-License-Identifier: Apache-2.0 */
/** @file zrschema.h  The whole interface of the library. */
#ifndef ZRSCHEMA_ZRSCHEMA_H
#define ZRSCHEMA_ZRSCHEMA_H
#include <zrschema/context.h>
#include <zrschema/memory.h>
#include <zrschema/module.h>
#include <zrschema/names.h>
#include <zrschema/node.h>
#include <zrschema/print.h>
#include <zrschema/type.h>
#include <zrschema/types.h>
#include <zrschema/validation.h>
#include <zrschema/version.h>
#endif
