// Mutates a ZIP archive and repairs most of the checksums of its stored members, which would else keep all
// damage out.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <zlib.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximum);

namespace {

std::uint32_t Number(const std::uint8_t* bytes, std::size_t length) {
    std::uint32_t number = 0;
    for (std::size_t i = length; i > 0; --i) {
        number = number << 8 | bytes[i - 1];
    }
    return number;
}

void Put(std::uint8_t* bytes, std::uint32_t number) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>(number >> 8 * i);
    }
}

/// Goes through the central directory's entries, each of which names the place of its member's own header.
void RepairArchive(std::uint8_t* data, std::size_t size) {
    constexpr std::size_t head = 46;
    constexpr std::size_t localHead = 30;
    for (std::size_t at = 0; at + head <= size; ++at) {
        if (std::memcmp(data + at, "PK\1\2", 4) != 0) {
            continue;
        }
        const std::size_t local = Number(data + at + 42, 4);
        const std::size_t length = Number(data + at + 20, 4);
        const bool isStored = Number(data + at + 10, 2) == 0;
        if (!isStored || local + localHead > size || std::memcmp(data + local, "PK\3\4", 4) != 0) {
            continue;
        }
        const std::size_t begin =
            local + localHead + Number(data + local + 26, 2) + Number(data + local + 28, 2);
        if (begin > size || length > size - begin) {
            continue;
        }
        const auto sum =
            static_cast<std::uint32_t>(crc32(crc32(0, nullptr, 0), data + begin, static_cast<uInt>(length)));
        Put(data + at + 16, sum);
        Put(data + local + 14, sum);
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maximum,
                                               unsigned seed) {
    const std::size_t changed = LLVMFuzzerMutate(data, size, maximum);
    if (seed % 8 != 0) {
        RepairArchive(data, changed);
    }
    return changed;
}
