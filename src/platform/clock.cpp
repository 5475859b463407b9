// Seconds that do not run out in 2038, also where a long has 32 bits.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#endif
#ifndef _TIME_BITS
#define _TIME_BITS 64
#endif

#include <ctime>

#include "platform/text.h"

uint32_t PAL_SystimeGet(void)
{
    return static_cast<uint32_t>(std::time(nullptr));
}
