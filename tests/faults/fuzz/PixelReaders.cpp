#include "faults/fuzz/Readers.h"
#include "paint/DrawUtil.h"
#include "paint/PngStructure.h"
#include "paint/StrokeRecording.h"

#include <QImage>

#include <cstdlib>

namespace readers {

using vellix::DrawUtil;

void Png(const std::uint8_t* data, std::size_t size) {
    const QByteArray png(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QImage image;
    const bool isRead = DrawUtil::UnpackPngBuffer(png, image);
    if (image.isNull() == isRead || (isRead && !vellix::PngStructure::IsSound(png))) {
        std::abort(); // the answers have to agree
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
