#pragma once

#include "paint/ImageSize.h"

#include <QImage>

#include <algorithm>

namespace vellix {

/// Writable pixels of a layer image. Fetches the pointer, which detaches the image, once for many painting
/// operations. Borrows: the image must outlive the view and must not be copied meanwhile.
struct PixelView {
    /// Bit position of the alpha byte in a 32-bit word. In memory the bytes are R, G, B, A.
    static constexpr int ALPHA_SHIFT = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 24 : 0;
    static constexpr quint32 COLOR_MASK = ~(quint32(0xff) << ALPHA_SHIFT);

    quint32* pixels = nullptr;
    int stride = 0; ///< words from one row to the next
    int width = 0;  ///< writable columns, at most 1024; 0 if the format is not RGBA8888
    int height = 0; ///< writable rows, at most 1024; 0 if the format is not RGBA8888

    explicit PixelView(QImage& image) {
        if (image.format() != QImage::Format_RGBA8888) {
            return;
        }
        pixels = reinterpret_cast<quint32*>(image.bits());
        stride = image.bytesPerLine() / int(sizeof(quint32));
        width = std::min(image.width(), IMAGE_WIDTH);
        height = std::min(image.height(), IMAGE_WIDTH);
    }

    bool Contains(int x, int y) const { return x >= 0 && x < width && y >= 0 && y < height; }

    quint32* Row(int y) const { return pixels + qptrdiff(y) * stride; }

    /// Raises the alpha of one pixel to `alpha` (at most 255); never lowers it. The pixel must be inside.
    void Raise(int x, int y, int alpha) const {
        quint32& pixel = Row(y)[x];
        const int old = int((pixel >> ALPHA_SHIFT) & 0xff);
        pixel = (pixel & COLOR_MASK) | quint32(std::max(old, alpha)) << ALPHA_SHIFT;
    }

    /// Clears the alpha of one pixel. The pixel must be inside.
    void Clear(int x, int y) const { Row(y)[x] &= COLOR_MASK; }
};

} // namespace vellix
