/* SPDX-License-Identifier: Apache-2.0 */
/* What README.md shows: modules are prepared and loaded, and a value is checked. */
#include "modules.h"

static void print_report(const ZrYangReport *report, void *user)
{
    (void)user;
    fprintf(stderr, "%s: %s\n", report->file, report->message);
}

static uint32_t print_load_error(const char *module, const char *file, uint32_t kind,
                                 const char *message, uint32_t time, void *user)
{
    (void)file, (void)kind, (void)time, (void)user;
    fprintf(stderr, "%s: %s\n", module, message);
    return 0;
}

static void prepare(const char *directory)
{
#include "readme-1.inc"
    CHECK(status == ZR_YANG_OK);
}

static void use(const char *directory)
{
#include "readme-2.inc"
    CHECK(status == ZR_OK);
}

int main(void)
{
    const char *directory = empty_folder();
    prepare(directory);
    use(directory);
    return 0;
}
