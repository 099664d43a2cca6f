#pragma once

#include <QByteArray>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QtGlobal>

#include <vector>

namespace vellix {

/// A picture of a layer that travels, shown from its time until the next picture's.
struct LayeredPicture {
    LayeredPicture() = default;
    LayeredPicture(int atFrame, const QByteArray& bytes, const QPoint& at)
        : frame(atFrame)
        , png(bytes)
        , position(at) {}

    int frame = 0;        ///< whole frames; no two pictures of a layer share one
    QByteArray png;       ///< straight alpha, of any size
    QPoint position;      ///< of its top left pixel on the drawing, in pixels
    double opacity = 1.0; ///< 0..1, of this picture alone
    QString source;       ///< the member of the archive that a reader has it from
};

/// A layer as other programs know it.
struct PictureLayer {
    QString name;
    bool isVisible = true;
    double opacity = 1.0;                 ///< 0..1
    std::vector<LayeredPicture> pictures; ///< ascending in time
};

/// What files of layers carry from program to program: the form between our documents and the readers and
/// writers of this room.
struct LayeredDrawing {
    QSize size;                       ///< of the canvas, in pixels
    double rate = 24.0;               ///< frames per second
    std::vector<PictureLayer> layers; ///< bottom first

    int PictureCount() const;
    /// Of all pictures, in bytes.
    qint64 ByteCount() const;
};

} // namespace vellix
