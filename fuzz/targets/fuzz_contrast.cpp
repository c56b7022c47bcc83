// libFuzzer target: see FuzzEntries::contrast.
#include "FuzzEntries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEntries::contrast(data, size);
    return 0;
}
