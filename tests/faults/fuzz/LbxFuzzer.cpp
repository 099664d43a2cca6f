// Scene files, the binary container. The mutator repairs most checksums, which would else keep damage out.
#include "FuzzHost.h"

#include <cstring>
#include <zlib.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximum);

namespace {

constexpr std::size_t SIGNATURE = 8;
constexpr std::size_t HEAD = 12; ///< of a chunk: four letters and a 64-bit length
constexpr std::size_t CHECKSUM = 4;

std::uint64_t LengthAt(const std::uint8_t* bytes) {
    std::uint64_t length = 0;
    for (int i = 7; i >= 0; --i) {
        length = length << 8 | bytes[i];
    }
    return length;
}

void RepairChecksums(std::uint8_t* data, std::size_t size) {
    std::size_t at = SIGNATURE;
    while (at + HEAD + CHECKSUM <= size) {
        const std::uint64_t length = LengthAt(data + at + 4);
        if (length > size - at - HEAD - CHECKSUM) {
            return;
        }
        std::uint8_t* const content = data + at + HEAD;
        uLong sum = crc32(0, data + at, 4);
        sum = crc32(sum, content, static_cast<uInt>(length));
        for (std::size_t i = 0; i < CHECKSUM; ++i) {
            content[length + i] = static_cast<std::uint8_t>(sum >> (8 * i));
        }
        at += HEAD + length + CHECKSUM;
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maximum,
                                               unsigned seed) {
    const std::size_t changed = LLVMFuzzerMutate(data, size, maximum);
    if (seed % 8 != 0) {
        RepairChecksums(data, changed);
    }
    return changed;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::OpenScene("fuzzed.lbx", data, size);
    return 0;
}
