#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPaintDevice;

namespace vellix {

struct Stroke;
struct StrokePoint;

/// The caret of a text stroke, and the font that it stands in.
class TextCaret {
public:
    static QFont FontOf(const QString& fontFamily, const StrokePoint& point);

    /// The caret as a line without width, in image pixels, when the text is drawn on the device; null for a
    /// stroke without a caret.
    static QRectF Place(const Stroke& stroke, QPaintDevice& device);
};

} // namespace vellix
