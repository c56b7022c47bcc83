// libFuzzer target: see FuzzEntries::gpl.
#include "FuzzEntries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEntries::gpl(data, size);
    return 0;
}
