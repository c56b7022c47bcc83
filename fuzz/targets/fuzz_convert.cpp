// libFuzzer target: see FuzzEntries::convert.
#include "FuzzEntries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEntries::convert(data, size);
    return 0;
}
