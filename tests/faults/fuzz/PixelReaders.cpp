#include "faults/fuzz/Readers.h"
#include "paint/DrawUtil.h"
#include "paint/PngCodec.h"
#include "paint/PngStructure.h"
#include "paint/StrokeRecording.h"

#include <QImage>

#include <cstdlib>

namespace readers {

using vellix::DrawUtil;

namespace {

/// Pictures of more pixels are not decoded a third time: it takes long.
constexpr int MAX_COMPARED = 1 << 16;

/// Where the codec and Qt both find a picture, it has to be the same one.
void CompareWithQt(const QByteArray& png) {
    const vellix::PngStructure::Header header = vellix::PngStructure::HeaderOf(png);
    if (header.width * header.height > MAX_COMPARED) {
        return;
    }
    QImage image;
    QImage byQt;
    if (vellix::PngCodec::Decode(png, image) && byQt.loadFromData(png, "PNG") &&
        byQt.convertToFormat(image.format()) != image) {
        std::abort();
    }
}

} // namespace

void Png(const std::uint8_t* data, std::size_t size) {
    const QByteArray png(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QImage image;
    const bool isRead = DrawUtil::UnpackPngBuffer(png, image);
    if (image.isNull() == isRead || (isRead && !vellix::PngStructure::IsSound(png))) {
        std::abort(); // the answers have to agree
    }
    if (vellix::PngStructure::IsSound(png)) {
        CompareWithQt(png);
    }
    // Packing takes long.
    if (isRead && qChecksum(png.constData(), static_cast<uint>(png.size())) % 64 == 0) {
        QByteArray packed;
        QImage again;
        DrawUtil::PackPngBuffer(image, packed);
        if (!DrawUtil::UnpackPngBuffer(packed, again) || again != image) {
            std::abort(); // the picture has to stay the same
        }
    }
}

void Recording(const std::uint8_t* data, std::size_t size) {
    vellix::StrokeRecording recording;
    QString error;
    const bool isRead =
        recording.Parse(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)), error);
    if (isRead != error.isEmpty() || (!isRead && !recording.GetStrokes().isEmpty())) {
        std::abort(); // all of it or nothing, and then an error
    }
    for (const vellix::RecordedStroke& stroke : recording.GetStrokes()) {
        if (stroke.samples.isEmpty()) {
            std::abort();
        }
    }
}

} // namespace readers
