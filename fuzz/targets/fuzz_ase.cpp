// libFuzzer target: see FuzzEntries::ase.
#include "FuzzEntries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEntries::ase(data, size);
    return 0;
}
