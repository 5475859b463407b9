#include <zrschema/version.h>

const char *ZR_GetVersion(void)
{
    return ZR_VERSION_STRING;
}
