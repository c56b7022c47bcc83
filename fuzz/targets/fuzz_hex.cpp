// libFuzzer target: see FuzzEntries::hex.
#include "FuzzEntries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEntries::hex(data, size);
    return 0;
}
