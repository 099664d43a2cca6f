// The pictures of a drawing, as scene files hold them. The mutator repairs most checksums, which would else
// keep damage out.
#include "paint/DrawUtil.h"

#include <QImage>

#include <cstdint>
#include <cstdlib>
#include <zlib.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximum);

namespace {

constexpr std::size_t SIGNATURE = 8;
constexpr std::size_t HEAD = 8; ///< of a chunk: a 32-bit length and four letters
constexpr std::size_t CHECKSUM = 4;

void RepairChecksums(std::uint8_t* data, std::size_t size) {
    std::size_t at = SIGNATURE;
    while (at + HEAD + CHECKSUM <= size) {
        const std::uint8_t* const head = data + at;
        const std::size_t length =
            std::size_t(head[0]) << 24 | std::size_t(head[1]) << 16 | std::size_t(head[2]) << 8 | head[3];
        if (length > size - at - HEAD - CHECKSUM) {
            return;
        }
        const uLong sum = crc32(0, head + 4, static_cast<uInt>(length + 4));
        for (std::size_t i = 0; i < CHECKSUM; ++i) {
            data[at + HEAD + length + i] = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
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
    using vellix::DrawUtil;
    const QByteArray png(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const bool isUsable = DrawUtil::CheckPngBuffer(png) != DrawUtil::PngContent::Undecodable;
    QImage image;
    if (DrawUtil::UnpackPngBuffer(png, image) != isUsable || image.isNull() == isUsable) {
        std::abort(); // the answers have to agree
    }
    // Packing a picture of another size takes long.
    QByteArray normal = png;
    if (qChecksum(png.constData(), static_cast<uint>(png.size())) % 64 == 0 &&
        DrawUtil::NormalisePngBuffer(normal)) {
        QImage again;
        if (!DrawUtil::UnpackPngBuffer(normal, again) || again != image) {
            std::abort(); // the picture has to stay the same
        }
    }
    return 0;
}
