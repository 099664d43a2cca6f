#pragma once

class QColor;
class QPainter;

namespace vellix {

class Icon;

/// The drawings of the icons, on a square of 24 units.
class IconDrawing {
public:
    /// The painter's pen is the line that all icons have in common.
    static void Draw(const Icon& icon, QPainter& painter, const QColor& accent);
};

} // namespace vellix
