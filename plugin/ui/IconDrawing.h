#pragma once

#include <QColor>
#include <QPointF>

#include <initializer_list>

class QPainter;
class QRectF;

namespace vellix {

enum class Icon;

/// The drawings of the icons, on a square of 24 units. The painter's pen is the line that all have in common.
class IconDrawing {
public:
    IconDrawing(QPainter& painter, const QColor& accent);

    void Draw(Icon icon);

private:
    void Pencil();
    void Brush();
    void Eraser();
    void Text();
    void Line();
    void Arrow();
    void Ellipse();
    void Rectangle();
    void Transform();
    void Ghost(bool previous);
    void InsertFrame();
    void DuplicateFrame();
    void DeleteFrame();
    void Step(bool back);
    void NewLayer();
    void DeleteLayer();
    void MoveLayer(bool up);
    void LayerManager();
    void Refresh();
    void Palette();
    void Options();

    // What several share.
    void Polyline(std::initializer_list<QPointF> points);
    void Polygon(std::initializer_list<QPointF> points);
    void Frame(const QRectF& rect);
    /// A sheet of the stack seen from above, its middle at that height.
    void Sheet(double y);
    void Plus(const QPointF& middle);
    void Minus(const QPointF& middle);
    /// Further lines are in the accent, or in the common colour again.
    void UseAccent(bool use);

    QPainter& m_painter;
    QColor m_line;
    QColor m_accent;
};

} // namespace vellix
