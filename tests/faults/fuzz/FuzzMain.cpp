// What libFuzzer calls. FUZZ_READER names the function of Readers.h.
#include "faults/fuzz/Readers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readers::FUZZ_READER(data, size);
    return 0;
}
