#pragma once

class QColor;
class QPainter;

namespace vellix {

class Icon;

/// Draws the icons on a square of 24 by 24 units.
class IconDrawing {
public:
    /// The caller sets the painter's pen to the line that all icons share. `accent` colours the parts that
    /// stand out.
    static void Draw(const Icon& icon, QPainter& painter, const QColor& accent);
};

} // namespace vellix
