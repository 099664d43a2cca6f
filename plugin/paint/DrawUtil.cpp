#include "paint/DrawUtil.h"

#include "paint/ImageSize.h"
#include "paint/TextCaret.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

constexpr float HEAD_ANGLE = 0.62831855f; // 36 degrees
constexpr double HEAD_LENGTH = 40.0;
constexpr double FULL_HEAD_SHAFT = 200.0; // pixels; shorter shafts have shorter heads
constexpr int EDITING_FRAME_WIDTH = 2;
constexpr double CARET_WIDTH = 2.0;

// Side of the largest transformed image, in pixels. Larger regions are drawn through the painter's matrix,
// which costs only the part that falls on the target.
constexpr double MAX_TRANSFORMED_SIDE = 4096.0;

QColor StrokeColor(const StrokePoint& point, QColor color) {
    const float opacity = point.opacity > 0.0f ? std::min(point.opacity, 1.0f) : 0.0f;
    color.setAlpha(int(255.0f * opacity));
    return color;
}

QPen StrokePen(const QPainter& painter, const StrokePoint& point, const QColor& color) {
    QPen pen = painter.pen();
    pen.setCapStyle(Qt::RoundCap);
    pen.setWidth(std::min(std::max(int(point.size), 1), IMAGE_WIDTH));
    pen.setColor(StrokeColor(point, color));
    return pen;
}

QRectF SpannedRectangle(const QList<StrokePoint>& points) {
    return QRectF(points.at(0).position, points.at(1).position).normalized();
}

// Start of the transformed region along one axis. The region is centred on the selection, whose middle is
// rounded up.
int CentredStart(int first, int last, int extent, int offset) {
    const qint64 sum = qint64(first) + last;
    const qint64 middle = (sum % 2 == 0 ? sum : sum + 1) / 2;
    const qint64 start = middle - extent / 2 + offset;
    constexpr qint64 far = 1 << 24; // far outside the image on either side
    return int(std::min(std::max(start, -far), far));
}

void DrawCaret(QPainter& painter, const Stroke& stroke) {
    const QRectF caret = TextCaret::Place(stroke, *painter.device());
    if (!caret.isNull()) {
        painter.fillRect(caret.adjusted(0.0, 0.0, CARET_WIDTH, 0.0), stroke.color);
    }
}

bool IsFinite(const Stroke& stroke) {
    return std::isfinite(stroke.rotation) && std::isfinite(stroke.scaleX) && std::isfinite(stroke.scaleY);
}

QTransform MatrixOf(const Stroke& stroke) {
    QTransform matrix;
    matrix.rotate(double(stroke.rotation));
    matrix.scale(stroke.scaleX, stroke.scaleY);
    return matrix;
}

void DrawEnlarged(QPainter& painter, const Stroke& stroke, const QImage& lifted) {
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(CentredStart(stroke.selection.left(), stroke.selection.right(), 0, stroke.offsetX),
                      CentredStart(stroke.selection.top(), stroke.selection.bottom(), 0, stroke.offsetY));
    painter.setTransform(MatrixOf(stroke), true);
    painter.drawImage(QPointF(-0.5 * lifted.width(), -0.5 * lifted.height()), lifted);
    painter.restore();
}

} // namespace

void DrawUtil::DrawStroke(QImage& image, const Stroke& stroke, bool editing) {
    if (image.isNull()) {
        return;
    }
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    QPen pen = painter.pen();
    pen.setJoinStyle(Qt::RoundJoin); // to match the round ends of lines
    painter.setPen(pen);
    switch (stroke.tool) {
    case ToolType::Line:
        DrawLine(painter, stroke.points, stroke.color);
        break;
    case ToolType::Arrow:
        DrawArrow(painter, stroke.points, stroke.color);
        break;
    case ToolType::Ellipse:
        DrawEllipse(painter, stroke.points, stroke.color);
        break;
    case ToolType::Rectangle:
        DrawRectangle(painter, stroke.points, stroke.color);
        break;
    case ToolType::Text:
        painter.setRenderHint(QPainter::TextAntialiasing);
        DrawTextString(painter, stroke.points, stroke.color, stroke.text, stroke.fontFamily, editing);
        if (editing) {
            DrawCaret(painter, stroke);
        }
        break;
    case ToolType::Pencil:
    case ToolType::Brush:
    case ToolType::Eraser:
    case ToolType::Transform:
        break;
    }
}

void DrawUtil::DrawLine(QPainter& painter, const QList<StrokePoint>& points, const QColor& color) {
    if (points.size() < 2) {
        return;
    }
    painter.setPen(StrokePen(painter, points.at(0), color));
    painter.drawLine(points.at(0).position, points.at(1).position);
}

void DrawUtil::DrawArrow(QPainter& painter, const QList<StrokePoint>& points, const QColor& color) {
    if (points.size() < 2) {
        return;
    }
    const QPoint start = points.at(0).position;
    const QPoint tip = points.at(1).position;
    // One path: a translucent stroke would be laid on twice where separate lines meet.
    QPainterPath path;
    path.moveTo(start);
    path.lineTo(tip);
    path.moveTo(GetArrowHeadPoint(start, tip, HEAD_ANGLE));
    path.lineTo(tip);
    path.lineTo(GetArrowHeadPoint(start, tip, -HEAD_ANGLE));
    painter.strokePath(path, StrokePen(painter, points.at(0), color));
}

void DrawUtil::DrawEllipse(QPainter& painter, const QList<StrokePoint>& points, const QColor& color) {
    if (points.size() < 2) {
        return;
    }
    painter.setPen(StrokePen(painter, points.at(0), color));
    painter.drawEllipse(SpannedRectangle(points));
}

void DrawUtil::DrawRectangle(QPainter& painter, const QList<StrokePoint>& points, const QColor& color) {
    if (points.size() < 2) {
        return;
    }
    painter.setPen(StrokePen(painter, points.at(0), color));
    painter.drawRect(SpannedRectangle(points));
}

void DrawUtil::DrawTextString(QPainter& painter, const QList<StrokePoint>& points, const QColor& color,
                              const QString& text, const QString& fontFamily, bool editing) {
    if (points.isEmpty()) {
        return;
    }
    const StrokePoint& point = points.at(0);
    QPen pen = painter.pen();
    pen.setColor(StrokeColor(point, color));
    painter.setPen(pen);
    painter.setFont(TextCaret::FontOf(fontFamily, point));
    // An empty text has no bounding box to frame. A space has the height of a line.
    const QString shown = text.isEmpty() ? QStringLiteral(" ") : text;
    const QRectF place(QPointF(point.position), QSizeF(1.0, 1.0));
    QRectF box;
    painter.drawText(place, Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip, shown, &box);
    if (editing) {
        pen.setWidth(EDITING_FRAME_WIDTH);
        painter.setPen(pen);
        painter.drawRect(box.adjusted(-EDITING_FRAME_WIDTH, -EDITING_FRAME_WIDTH, EDITING_FRAME_WIDTH,
                                      EDITING_FRAME_WIDTH));
    }
}

void DrawUtil::DrawTransform(QPainter& painter, const Stroke& stroke, const QImage& lifted) {
    QPoint leftTop;
    const QImage transformed = TransformLifted(stroke, lifted, leftTop);
    if (!transformed.isNull()) {
        painter.drawImage(leftTop, transformed);
    } else if (!lifted.isNull() && IsFinite(stroke)) {
        DrawEnlarged(painter, stroke, lifted);
    }
}

QImage DrawUtil::TransformLifted(const Stroke& stroke, const QImage& lifted, QPoint& leftTop) {
    const QRect& selection = stroke.selection;
    if (stroke.pasted) {
        leftTop = QPoint(CentredStart(selection.left(), selection.left(), 0, stroke.offsetX),
                         CentredStart(selection.top(), selection.top(), 0, stroke.offsetY));
        return lifted;
    }
    if (!IsFinite(stroke)) {
        return QImage();
    }
    const QTransform matrix = MatrixOf(stroke);
    const QRectF extent = matrix.mapRect(QRectF(lifted.rect()));
    if (extent.width() > MAX_TRANSFORMED_SIDE || extent.height() > MAX_TRANSFORMED_SIDE) {
        return QImage();
    }
    QImage transformed = lifted.transformed(matrix, Qt::SmoothTransformation);
    leftTop = QPoint(CentredStart(selection.left(), selection.right(), transformed.width(), stroke.offsetX),
                     CentredStart(selection.top(), selection.bottom(), transformed.height(), stroke.offsetY));
    return transformed;
}

QPoint DrawUtil::GetArrowHeadPoint(const QPoint& p0, const QPoint& p1, float angle) {
    const double x = double(p0.x()) - p1.x();
    const double y = double(p0.y()) - p1.y();
    const double length = std::hypot(x, y);
    if (length == 0.0) {
        return p1;
    }
    const double reach = HEAD_LENGTH * std::min(length / FULL_HEAD_SHAFT, 1.0) / length;
    const double sine = std::sin(double(angle));
    const double cosine = std::cos(double(angle));
    return QPoint(int(p1.x() + reach * (x * cosine - y * sine)),
                  int(p1.y() + reach * (x * sine + y * cosine)));
}

float DrawUtil::Distance(int x0, int y0, int x1, int y1) {
    const double dx = double(x1) - x0;
    const double dy = double(y1) - y0;
    return float(std::sqrt(dx * dx + dy * dy));
}

} // namespace vellix
