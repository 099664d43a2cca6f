#pragma once

#include "exchange/CanvasFit.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <vector>

namespace vellix {

/// How pictures come onto the drawing; see CanvasFit.
struct PictureFit {
    CanvasFit::Mode mode = CanvasFit::Mode::Automatic;
    double gateAspect = 1.0; ///< the gate's width over its height
    double strength = 1.0;   ///< 0..1

    CanvasFit For(const QSize& canvas) const { return CanvasFit(mode, canvas, gateAspect, strength); }
};

/// Reads single pictures: PNG, and what Qt has readers for.
struct PictureFileReader {
    /// Reads the file as PNG bytes of a drawing. Returns false, with the reason in `fault`, if it is no
    /// picture or one with a side of more than MAX_PNG_SIDE pixels. Allocates no more than the file and the
    /// picture. Throws std::bad_alloc when memory is short.
    static bool Read(const QString& path, const PictureFit& fit, QByteArray& png, QString& fault);

    /// How many pixels the file says it has; 0 if it does not say.
    static qint64 PixelCount(const QString& path);

    /// The suffixes of the files that can be read, in lower case.
    static std::vector<QString> Suffixes();
};

} // namespace vellix
