#include "exchange/CanvasFit.h"
#include "exchange/OpenRasterReader.h"
#include "exchange/PclxReader.h"
#include "faults/fuzz/Readers.h"
#include "paint/ImageSize.h"

#include <QByteArray>
#include <QSize>

#include <cstdlib>

namespace readers {

namespace {

using vellix::LayeredDrawing;
using vellix::LayeredPicture;
using vellix::LayeredReader;
using vellix::PictureLayer;

/// Larger pictures and canvases are read, but not painted: it takes long. So it does for all others.
constexpr int MAX_PAINTED = 256;

bool IsPainted(const QSize& canvas, const QByteArray& png) {
    return canvas.width() <= MAX_PAINTED && canvas.height() <= MAX_PAINTED && png.size() < 4096 &&
           qChecksum(png.constData(), static_cast<uint>(png.size())) % 64 == 0;
}

void CheckPicture(LayeredReader& reader, const LayeredPicture& picture, double opacity) {
    const QSize canvas = reader.Drawing().size;
    QByteArray png;
    if (!reader.Read(picture, png)) {
        if (reader.Fault().isEmpty()) {
            std::abort(); // a refusal has a reason
        }
        return;
    }
    if (png.isEmpty() != picture.source.isEmpty()) {
        std::abort(); // only a blank has no bytes
    }
    if (!png.isEmpty() && IsPainted(canvas, png)) {
        const vellix::CanvasFit fit(vellix::CanvasFit::Mode::Automatic, canvas, 16.0 / 9.0, 1.0);
        fit.Place(png, picture.position, opacity);
    }
}

void CheckDrawing(LayeredReader& reader) {
    const LayeredDrawing& drawing = reader.Drawing();
    if (!reader.Fault().isEmpty()) {
        return;
    }
    if (drawing.size.isEmpty() || drawing.size.width() > vellix::MAX_PNG_SIDE ||
        drawing.size.height() > vellix::MAX_PNG_SIDE) {
        std::abort();
    }
    int read = 0;
    for (const PictureLayer& layer : drawing.layers) {
        const LayeredPicture* last = nullptr;
        for (const LayeredPicture& picture : layer.pictures) {
            if ((last && last->frame >= picture.frame) || !(layer.opacity >= 0.0 && layer.opacity <= 1.0)) {
                std::abort();
            }
            last = &picture;
            if (++read <= 8) {
                CheckPicture(reader, picture, layer.opacity * picture.opacity);
            }
        }
    }
}

template <typename Reader>
void ReadArchive(const std::uint8_t* data, std::size_t size) {
    Reader reader(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    CheckDrawing(reader);
}

} // namespace

void OpenRaster(const std::uint8_t* data, std::size_t size) {
    ReadArchive<vellix::OpenRasterReader>(data, size);
}

void Pclx(const std::uint8_t* data, std::size_t size) {
    ReadArchive<vellix::PclxReader>(data, size);
}

} // namespace readers
