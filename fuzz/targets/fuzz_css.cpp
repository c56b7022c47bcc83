// libFuzzer target: see FuzzEntries::css.
#include "FuzzEntries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEntries::css(data, size);
    return 0;
}
