// Mutates a file of chunks and repairs most of its checksums, which would else keep all damage out.
// FUZZ_PNG is set for PNG files; else they are .lbx scenes.
#include <cstddef>
#include <cstdint>
#include <zlib.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximum);

namespace {

constexpr std::size_t SIGNATURE = 8;
constexpr std::size_t LETTERS = 4;
constexpr std::size_t CHECKSUM = 4;

#ifdef FUZZ_PNG
constexpr std::size_t LENGTH = 4; ///< bytes; most significant first, in front of the letters
constexpr bool LENGTH_FIRST = true;
#else
constexpr std::size_t LENGTH = 8; ///< bytes; least significant first, behind the letters
constexpr bool LENGTH_FIRST = false;
#endif

std::uint64_t Number(const std::uint8_t* bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < LENGTH; ++i) {
        number = number << 8 | bytes[LENGTH_FIRST ? i : LENGTH - 1 - i];
    }
    return number;
}

void RepairChecksums(std::uint8_t* data, std::size_t size) {
    std::size_t at = SIGNATURE;
    constexpr std::size_t HEAD = LETTERS + LENGTH;
    while (at + HEAD + CHECKSUM <= size) {
        const std::uint64_t length = Number(data + at + (LENGTH_FIRST ? 0 : LETTERS));
        if (length > size - at - HEAD - CHECKSUM) {
            return;
        }
        std::uint8_t* const content = data + at + HEAD;
        uLong sum = crc32(0, data + at + (LENGTH_FIRST ? LENGTH : 0), LETTERS);
        sum = crc32(sum, content, static_cast<uInt>(length));
        for (std::size_t i = 0; i < CHECKSUM; ++i) {
            content[length + i] = static_cast<std::uint8_t>(sum >> 8 * (LENGTH_FIRST ? CHECKSUM - 1 - i : i));
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
