#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

namespace vellix {

struct LayeredDrawing;

/// Photoshop documents (Adobe's published "Photoshop File Formats", version 1) of eight bits RGBA.
struct PsdWriter {
    /// The longest side, in pixels, the most layers and the most bytes.
    static constexpr int MAX_SIDE = 30000;
    static constexpr int MAX_LAYERS = 0x7fff;
    static constexpr qint64 MAX_BYTES = 0x7f000000;

    /// Why there can be no document of these layers, as a sentence without its full stop; empty if there can.
    static QString Refusal(const LayeredDrawing& drawing);
    /// The document of the layers' first pictures; a picture that does not decode is an empty layer. `merged`
    /// is what the visible layers look like together. Empty for what is larger than a document can be. Throws
    /// std::bad_alloc when memory is short.
    static QByteArray Encode(const LayeredDrawing& drawing, const QImage& merged);
};

} // namespace vellix
