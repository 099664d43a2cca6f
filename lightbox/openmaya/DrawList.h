#pragma once

#include "openmaya/Texture.h"

#include <QColor>
#include <QPointF>
#include <QString>

#include <memory>
#include <tuple>
#include <vector>

namespace lightbox {

/// One thing that a plug-in wants to see over a viewport. Positions and lengths in view pixels, from the
/// bottom left with y upward.
struct DrawItem {
    enum class Kind { Rectangle, Line, Circle, Text };

    Kind kind = Kind::Line;
    /// Straight alpha.
    QColor color = Qt::white;
    float lineWidth = 1.0f;
    bool filled = false;
    /// What is drawn later lies over what was drawn before, unless its priority is lower.
    unsigned depthPriority = 0;

    /// Centre of a rectangle or circle, first point of a line, position of a text.
    QPointF position;
    /// Second point of a line.
    QPointF end;
    /// A rectangle's up direction, of length 1, and half its sides.
    QPointF up{0.0, 1.0};
    double halfWidth = 0.0;
    double halfHeight = 0.0;
    double radius = 0.0;

    /// On a filled rectangle; null for none. The first row of the texture is the rectangle's top.
    std::shared_ptr<Texture> texture;
    /// Between the texture's pixels; beyond its edge the colour of the edge goes on.
    bool smooth = true;
    /// The channels of the view that a textured rectangle changes: red 1, green 2, blue 4, alpha 8.
    unsigned channels = 15;

    QString text;
    unsigned fontSize = 12;
    /// Qt::AlignLeft: the text begins at the position; AlignHCenter: it is centred on it; AlignRight: it ends
    /// there. The position is on the base line.
    Qt::Alignment alignment = Qt::AlignLeft;

    /// Whether both are drawn alike, but for what the pixels of their one texture were.
    bool operator==(const DrawItem& other) const {
        const auto all = [](const DrawItem& i) {
            return std::tie(i.kind, i.color, i.lineWidth, i.filled, i.depthPriority, i.position, i.end, i.up,
                            i.halfWidth, i.halfHeight, i.radius, i.texture, i.smooth, i.channels, i.text,
                            i.fontSize, i.alignment);
        };
        return all(*this) == all(other);
    }
};

/// In the order of drawing.
using DrawList = std::vector<DrawItem>;

} // namespace lightbox
