/* SPDX-License-Identifier: Apache-2.0 */
/* For the programs that run what the documents show: ends one with its place where something is not
 * so. */
#ifndef TESTS_DOCS_CHECK_H
#define TESTS_DOCS_CHECK_H

#include <stdio.h>
#include <stdlib.h>

#define CHECK(condition) check(condition, #condition, __FILE__, __LINE__)

static inline void check(int condition, const char *text, const char *file, int line)
{
    if (condition)
        return;
    fprintf(stderr, "%s:%d: not so: %s\n", file, line, text);
    exit(1);
}

#endif
