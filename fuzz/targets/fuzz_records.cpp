// libFuzzer target: see FuzzEntries::records.
#include "FuzzEntries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEntries::records(data, size);
    return 0;
}
