// Scene files, Maya ASCII.
#include "FuzzHost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::OpenScene("fuzzed.ma", data, size);
    return 0;
}
