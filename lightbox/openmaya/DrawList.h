#pragma once

#include <QColor>
#include <QPointF>
#include <QString>

#include <memory>
#include <tuple>
#include <vector>

namespace lightbox {

struct Texture;

/// One item that a plug-in draws over a viewport. Positions and lengths are view pixels from the bottom left,
/// y upward.
struct DrawItem {
    enum class Kind { Rectangle, Line, Circle, Text };

    Kind kind = Kind::Line;
    /// Straight alpha.
    QColor color = Qt::white;
    float lineWidth = 1.0f;
    bool filled = false;
    /// Later items cover earlier ones, unless their priority is lower.
    unsigned depthPriority = 0;

    /// Centre of a rectangle or circle, first point of a line, position of a text.
    QPointF position;
    /// Second point of a line.
    QPointF end;
    /// A rectangle's up direction, a unit vector, and half the lengths of its sides.
    QPointF up{0.0, 1.0};
    double halfWidth = 0.0;
    double halfHeight = 0.0;
    double radius = 0.0;

    /// The texture of a filled rectangle; null for none. Its first row is the rectangle's top.
    std::shared_ptr<Texture> texture;
    /// Whether to interpolate between the texture's pixels. Beyond its edge the texture continues with the
    /// colour of the edge.
    bool smooth = true;
    /// The channels of the view that a textured rectangle writes: red 1, green 2, blue 4, alpha 8.
    unsigned channels = 15;

    QString text;
    unsigned fontSize = 12;
    /// AlignLeft: the text starts at the position; AlignHCenter: it is centred there; AlignRight: it ends
    /// there. The position is on the baseline.
    Qt::Alignment alignment = Qt::AlignLeft;

    /// Whether both look alike, as far as their shared texture's pixels have not changed in between.
    bool operator==(const DrawItem& other) const {
        const auto all = [](const DrawItem& i) {
            return std::tie(i.kind, i.color, i.lineWidth, i.filled, i.depthPriority, i.position, i.end, i.up,
                            i.halfWidth, i.halfHeight, i.radius, i.texture, i.smooth, i.channels, i.text,
                            i.fontSize, i.alignment);
        };
        return all(*this) == all(other);
    }
};

/// Items in drawing order.
using DrawList = std::vector<DrawItem>;

} // namespace lightbox
