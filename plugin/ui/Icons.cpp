#include "ui/Icons.h"

#include "ui/IconEngine.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QRectF>
#include <QVector>

#include <initializer_list>

namespace vellix {

namespace {

constexpr double LINE_WIDTH = 1.5;
constexpr double FRAME_RADIUS = 1.5;
/// Half the side of a mark at a drawing's corner. The drawing is left out behind it, so that both can be
/// read.
constexpr double MARK_HALF = 3.5;

/// Draws one icon.
class Sketch {
public:
    Sketch(QPainter& painter, const QColor& accent)
        : painter_(painter)
        , line_(painter.pen().color())
        , accent_(accent) {}

    void Draw(ToolType tool);
    void Draw(Icon::Name icon);

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

    // Shapes that several icons share.
    void Polyline(std::initializer_list<QPointF> points);
    void Polygon(std::initializer_list<QPointF> points);
    void Frame(const QRectF& rect);
    /// A sheet of a stack seen from above, centred at height `y`.
    void Sheet(double y);
    void Plus(const QPointF& middle);
    void Minus(const QPointF& middle);
    /// Draws what follows in the accent colour, or in the common colour again.
    void UseAccent(bool use);

    QPainter& painter_;
    QColor line_;
    QColor accent_;
};

void Sketch::Draw(ToolType tool) {
    switch (tool) {
    case ToolType::Pencil:
        return Pencil();
    case ToolType::Brush:
        return Brush();
    case ToolType::Eraser:
        return Eraser();
    case ToolType::Text:
        return Text();
    case ToolType::Line:
        return Line();
    case ToolType::Arrow:
        return Arrow();
    case ToolType::Ellipse:
        return Ellipse();
    case ToolType::Rectangle:
        return Rectangle();
    case ToolType::Transform:
        return Transform();
    }
}

void Sketch::Draw(Icon::Name icon) {
    switch (icon) {
    case Icon::GhostPrevious:
        return Ghost(true);
    case Icon::GhostNext:
        return Ghost(false);
    case Icon::InsertFrame:
        return InsertFrame();
    case Icon::DuplicateFrame:
        return DuplicateFrame();
    case Icon::DeleteFrame:
        return DeleteFrame();
    case Icon::StepBack:
        return Step(true);
    case Icon::StepForward:
        return Step(false);
    case Icon::NewLayer:
        return NewLayer();
    case Icon::DeleteLayer:
        return DeleteLayer();
    case Icon::MoveLayerUp:
        return MoveLayer(true);
    case Icon::MoveLayerDown:
        return MoveLayer(false);
    case Icon::LayerManager:
        return LayerManager();
    case Icon::Refresh:
        return Refresh();
    case Icon::Palette:
        return Palette();
    case Icon::Options:
        return Options();
    }
}

// --- tools ------------------------------------------------------------------------------------------------

void Sketch::Pencil() {
    QPainterPath pencil(QPointF(4, 20));
    pencil.lineTo(5.5, 15);
    pencil.lineTo(15.5, 5);
    pencil.quadTo(17.25, 3.25, 19, 5);
    pencil.quadTo(20.75, 6.75, 19, 8.5);
    pencil.lineTo(9, 18.5);
    pencil.closeSubpath();
    painter_.drawPath(pencil);
    painter_.drawLine(QPointF(13, 7.5), QPointF(16.5, 11));
    UseAccent(true);
    painter_.setBrush(accent_);
    Polygon({{4, 20}, {4.7, 17.6}, {6.4, 19.3}});
}

void Sketch::Brush() {
    QPainterPath handle(QPointF(9.5, 12.5));
    handle.lineTo(17.5, 4.5);
    handle.quadTo(19, 3.25, 20, 4);
    handle.quadTo(20.75, 5, 19.5, 6.5);
    handle.lineTo(11.5, 14.5);
    handle.closeSubpath();
    painter_.drawPath(handle);
    UseAccent(true);
    painter_.setBrush(accent_);
    QPainterPath hair(QPointF(9.5, 13));
    hair.quadTo(6, 12.5, 5.5, 16);
    hair.quadTo(5.25, 18.5, 3.5, 19.5);
    hair.quadTo(8, 21.25, 10.25, 18.5);
    hair.quadTo(11.5, 16.75, 11, 14.5);
    hair.closeSubpath();
    painter_.drawPath(hair);
}

void Sketch::Eraser() {
    QPainterPath body(QPointF(4.25, 14.75));
    body.lineTo(13.5, 5.5);
    body.quadTo(15, 4, 16.5, 5.5);
    body.lineTo(19.5, 8.5);
    body.quadTo(21, 10, 19.5, 11.5);
    body.lineTo(11.5, 19.5);
    body.lineTo(9, 19.5);
    body.lineTo(4.25, 14.75);
    painter_.drawPath(body);
    painter_.drawLine(QPointF(9, 10), QPointF(15, 16));
    UseAccent(true);
    painter_.drawLine(QPointF(14.5, 19.5), QPointF(20, 19.5));
}

void Sketch::Text() {
    Polyline({{5, 7.5}, {5, 5}, {19, 5}, {19, 7.5}});
    painter_.drawLine(QPointF(12, 5), QPointF(12, 19));
    UseAccent(true);
    painter_.drawLine(QPointF(9, 19), QPointF(15, 19));
}

void Sketch::Line() {
    painter_.drawLine(QPointF(6, 18), QPointF(18, 6));
    UseAccent(true);
    painter_.setBrush(accent_);
    painter_.drawEllipse(QPointF(5.25, 18.75), 1.5, 1.5);
    painter_.drawEllipse(QPointF(18.75, 5.25), 1.5, 1.5);
}

void Sketch::Arrow() {
    painter_.drawLine(QPointF(5, 19), QPointF(18, 6));
    UseAccent(true);
    Polyline({{10.5, 5}, {19, 5}, {19, 13.5}});
}

void Sketch::Ellipse() {
    painter_.drawEllipse(QPointF(12, 12), 8.5, 6.5);
}

void Sketch::Rectangle() {
    painter_.drawRect(QRectF(3.75, 5.75, 16.5, 12.5));
}

void Sketch::Transform() {
    painter_.drawRect(QRectF(5.5, 5.5, 13, 13));
    UseAccent(true);
    painter_.setBrush(accent_);
    for (const double x : {5.5, 18.5}) {
        for (const double y : {5.5, 18.5}) {
            painter_.drawRect(QRectF(x - 1.5, y - 1.5, 3, 3));
        }
    }
}

// --- ghosts and frames ------------------------------------------------------------------------------------

void Sketch::Ghost(bool previous) {
    if (!previous) {
        // "Next" is the mirror image of "previous".
        painter_.translate(24, 0);
        painter_.scale(-1, 1);
    }
    UseAccent(true);
    QColor faint = accent_;
    for (const double x : {3.5, 7.0}) {
        faint.setAlphaF(accent_.alphaF() * (x < 5 ? 0.5 : 0.9));
        QPen pen = painter_.pen();
        pen.setColor(faint);
        painter_.setPen(pen);
        QPainterPath edge(QPointF(x + 3.5, 6));
        edge.lineTo(x + 1.5, 6);
        edge.quadTo(x, 6, x, 7.5);
        edge.lineTo(x, 16.5);
        edge.quadTo(x, 18, x + 1.5, 18);
        edge.lineTo(x + 3.5, 18);
        painter_.drawPath(edge);
    }
    UseAccent(false);
    Frame(QRectF(11.5, 4.75, 9, 14.5));
}

void Sketch::InsertFrame() {
    Frame(QRectF(4.75, 3.75, 14.5, 16.5));
    UseAccent(true);
    Plus(QPointF(12, 12));
}

void Sketch::DuplicateFrame() {
    Frame(QRectF(3.75, 3.75, 10.5, 12.5));
    QPainterPath second(QPointF(17, 7.75));
    UseAccent(true);
    second.lineTo(18.75, 7.75);
    second.quadTo(20.25, 7.75, 20.25, 9.25);
    second.lineTo(20.25, 18.75);
    second.quadTo(20.25, 20.25, 18.75, 20.25);
    second.lineTo(11.25, 20.25);
    second.quadTo(9.75, 20.25, 9.75, 18.75);
    painter_.drawPath(second);
}

void Sketch::DeleteFrame() {
    Frame(QRectF(4.75, 3.75, 14.5, 16.5));
    UseAccent(true);
    painter_.drawLine(QPointF(9.25, 9.25), QPointF(14.75, 14.75));
    painter_.drawLine(QPointF(14.75, 9.25), QPointF(9.25, 14.75));
}

void Sketch::Step(bool back) {
    if (back) {
        painter_.translate(24, 0);
        painter_.scale(-1, 1);
    }
    Polygon({{5.5, 5.5}, {15, 12}, {5.5, 18.5}});
    UseAccent(true);
    painter_.drawLine(QPointF(18.5, 5.5), QPointF(18.5, 18.5));
}

// --- layers -----------------------------------------------------------------------------------------------

void Sketch::NewLayer() {
    Sheet(9);
    Polyline({{3.5, 14}, {11, 17.75}});
    UseAccent(true);
    Plus(QPointF(17.5, 17));
}

void Sketch::DeleteLayer() {
    Sheet(9);
    Polyline({{3.5, 14}, {11, 17.75}});
    UseAccent(true);
    Minus(QPointF(17.5, 17));
}

void Sketch::MoveLayer(bool up) {
    Sheet(up ? 16 : 8);
    UseAccent(true);
    // The arrow points away from the sheet, in the direction of the move.
    const double tip = up ? 3.25 : 20.75;
    const double wing = up ? 6.75 : 17.25;
    const double foot = up ? 9.5 : 14.5;
    painter_.drawLine(QPointF(12, foot), QPointF(12, tip));
    Polyline({{8.5, wing}, {12, tip}, {15.5, wing}});
}

void Sketch::LayerManager() {
    Sheet(8);
    Polyline({{3.5, 12}, {12, 16.25}, {20.5, 12}});
    UseAccent(true);
    Polyline({{3.5, 16}, {12, 20.25}, {20.5, 16}});
}

void Sketch::Refresh() {
    // Qt measures arcs in sixteenths of a degree.
    constexpr int degree = 16;
    painter_.drawArc(QRectF(4.5, 4.5, 15, 15), 20 * degree, 290 * degree);
    UseAccent(true);
    Polyline({{19.25, 4.25}, {19.25, 9.25}, {14.25, 9.25}});
}

// --- colours and options ----------------------------------------------------------------------------------

void Sketch::Palette() {
    QPainterPath board(QPointF(12, 4));
    board.cubicTo(7, 4, 3.5, 7.75, 3.5, 12);
    board.cubicTo(3.5, 16.5, 7.25, 20, 11.5, 20);
    board.cubicTo(13.5, 20, 13.75, 18.5, 13, 17.25);
    board.cubicTo(12.25, 15.75, 13, 14.5, 14.5, 14.5);
    board.lineTo(17, 14.5);
    board.cubicTo(19.25, 14.5, 20.5, 13, 20.5, 11);
    board.cubicTo(20.5, 7, 16.75, 4, 12, 4);
    painter_.drawPath(board);
    UseAccent(true);
    painter_.setBrush(accent_);
    for (const QPointF& paint : {QPointF(7.5, 12), QPointF(9.5, 8), QPointF(14, 7.75), QPointF(17, 10.75)}) {
        painter_.drawEllipse(paint, 0.75, 0.75);
    }
}

void Sketch::Options() {
    const double knobs[] = {15.5, 8.5, 13.0};
    double y = 6;
    for (const double x : knobs) {
        UseAccent(false);
        painter_.drawLine(QPointF(4, y), QPointF(x - 2.75, y));
        painter_.drawLine(QPointF(x + 2.75, y), QPointF(20, y));
        UseAccent(true);
        painter_.drawEllipse(QPointF(x, y), 1.75, 1.75);
        y += 6;
    }
}

// --- shared -----------------------------------------------------------------------------------------------

void Sketch::Polyline(std::initializer_list<QPointF> points) {
    painter_.drawPolyline(QPolygonF(QVector<QPointF>(points)));
}

void Sketch::Polygon(std::initializer_list<QPointF> points) {
    painter_.drawPolygon(QPolygonF(QVector<QPointF>(points)));
}

void Sketch::Frame(const QRectF& rect) {
    painter_.drawRoundedRect(rect, FRAME_RADIUS, FRAME_RADIUS);
}

void Sketch::Sheet(double y) {
    Polygon({{12, y - 4.25}, {20.5, y}, {12, y + 4.25}, {3.5, y}});
}

void Sketch::Plus(const QPointF& middle) {
    Minus(middle);
    painter_.drawLine(middle - QPointF(0, MARK_HALF), middle + QPointF(0, MARK_HALF));
}

void Sketch::Minus(const QPointF& middle) {
    painter_.drawLine(middle - QPointF(MARK_HALF, 0), middle + QPointF(MARK_HALF, 0));
}

void Sketch::UseAccent(bool use) {
    QPen pen = painter_.pen();
    pen.setColor(use ? accent_ : line_);
    painter_.setPen(pen);
}

} // namespace

QIcon Icons::Get(Icon icon) {
    return QIcon(new IconEngine(icon));
}

void Icons::Draw(Icon icon, QPainter& painter, const QColor& line, const QColor& accent) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, LINE_WIDTH, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    Sketch sketch(painter, accent);
    if (icon.IsTool()) {
        sketch.Draw(icon.GetTool());
    } else {
        sketch.Draw(icon.GetName());
    }
}

} // namespace vellix
