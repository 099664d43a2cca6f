#include "core/StrokePainter.h"

#include "core/Frame.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/ToolTable.h"

#include <QPainter>

#include <algorithm>

namespace vellix {
namespace {

/// Limit of a selection's coordinates, in pixels. Beyond it a selection is invalid.
constexpr int MAX_SELECTION_COORDINATE = 4 * IMAGE_WIDTH;

bool IsFreehand(ToolType tool) {
    return KindOf(tool) == ToolKind::Freehand;
}

bool IsDrawnWhole(ToolType tool) {
    return KindOf(tool) == ToolKind::Shape || KindOf(tool) == ToolKind::Text;
}

} // namespace

Picture StrokePainter::Canvas::AsPicture() const {
    Picture picture;
    picture.canvas = &image;
    picture.canvasCoverage = &coverage;
    picture.key = key;
    return picture;
}

void StrokePainter::Canvas::Replace(const QImage& with, TileMask& changed) {
    changed |= coverage.occupied;
    image = with;
    coverage = TileCoverage::Of(image);
    changed |= coverage.occupied;
}

bool StrokePainter::HasStroke() const {
    return m_stroke != nullptr;
}

Stroke* StrokePainter::GetStroke() const {
    return m_stroke.get();
}

const QString& StrokePainter::GetCamera() const {
    return m_camera;
}

void StrokePainter::Begin(const QString& camera) {
    Forget();
    m_stroke = std::make_unique<Stroke>();
    m_camera = camera;
    m_work.key = Picture::NewKey();
    m_moved.key = Picture::NewKey();
}

void StrokePainter::Cancel(Frame* frame) {
    if (m_stroke != nullptr && frame != nullptr && m_stroke->tool == ToolType::Transform &&
        m_stroke->freshSelection && m_stroke->copyToClipboard && SelectionIsUsable()) {
        m_copied = frame->GetImage().copy(m_stroke->selection);
    }
    Forget();
}

bool StrokePainter::Commit(Frame& frame, QByteArray* undo) {
    if (m_stroke == nullptr) {
        return false;
    }
    if (undo != nullptr) {
        const QByteArray before = frame.GetPackedImage();
        if (before.isEmpty()) {
            return false;
        }
        *undo = before;
    }
    TileMask changed;
    Paint(&frame, false, changed);
    const ToolType tool = m_stroke->tool;
    if (tool == ToolType::Eraser) {
        frame.SetImage(m_work.image);
    } else if (IsFreehand(tool) || IsDrawnWhole(tool)) {
        Composite::SourceOver(frame.GetImage(), m_work.image, m_work.coverage.occupied);
    } else if (tool == ToolType::Transform && SelectionIsUsable()) {
        Composite::SourceOver(m_work.image, m_moved.image, m_moved.coverage.occupied);
        frame.SetImage(m_work.image);
    }
    Forget();
    return true;
}

void StrokePainter::AppendTo(PictureStack& stack, const Picture& drawing, Frame* frame, TileMask& changed) {
    Paint(frame, true, changed);
    const ToolType tool = m_stroke->tool;
    if (tool == ToolType::Transform) {
        if (SelectionIsUsable() && frame != nullptr) {
            stack.push_back(m_work.AsPicture());
            stack.push_back(m_moved.AsPicture());
        }
        return;
    }
    if (tool != ToolType::Eraser) {
        stack.push_back(drawing);
    }
    if (IsFreehand(tool) || IsDrawnWhole(tool)) {
        stack.push_back(m_work.AsPicture());
    }
}

bool StrokePainter::HasPasteImage() const {
    return !m_copied.isNull();
}

void StrokePainter::Paint(Frame* frame, bool editing, TileMask& changed) {
    if (IsFreehand(m_stroke->tool)) {
        PaintFreehand(frame, changed);
    } else if (IsDrawnWhole(m_stroke->tool)) {
        QImage shape = Composite::TransparentImage();
        DrawUtil::DrawStroke(shape, *m_stroke, editing);
        m_work.Replace(shape, changed);
    } else if (m_stroke->tool == ToolType::Transform && SelectionIsUsable() && frame != nullptr) {
        PaintTransform(*frame, changed);
    }
}

void StrokePainter::PaintFreehand(Frame* frame, TileMask& changed) {
    const bool erases = m_stroke->tool == ToolType::Eraser;
    const int lastPoint = std::max(0, m_stroke->points.size() - 1);
    if (erases && frame != nullptr) {
        frame->GetImage(); // unpacking an empty frame changes its key, so do it before the key is read
    }
    const qint64 baseKey = !erases            ? qint64(m_stroke->color.rgba())
                           : frame != nullptr ? frame->GetPictureKey()
                                              : 0;
    if (!m_begun || baseKey != m_baseKey || m_lastRasterised > lastPoint) {
        m_work.Replace(FreehandBase(frame), changed);
        m_begun = true;
        m_baseKey = baseKey;
        m_lastRasterised = 0;
    }
    const QRect touched =
        DrawUtil::DrawFreehand(m_work.image, m_stroke->points, m_lastRasterised, m_stroke->tool);
    m_lastRasterised = lastPoint;
    const TileMask tiles = TileMask::Touching(touched);
    changed |= tiles;
    if (erases) {
        m_work.coverage.opaque.Remove(tiles);
    } else {
        m_work.coverage.occupied |= tiles;
    }
}

/// The image a freehand stroke starts from. The eraser lowers the alpha of the drawing; the other tools raise
/// the alpha of their colour from 0.
QImage StrokePainter::FreehandBase(Frame* frame) const {
    if (m_stroke->tool == ToolType::Eraser && frame != nullptr) {
        return frame->GetImage();
    }
    QImage base = Composite::TransparentImage();
    if (m_stroke->tool != ToolType::Eraser) {
        QColor color = m_stroke->color;
        color.setAlpha(0);
        base.fill(color);
    }
    return base;
}

void StrokePainter::PaintTransform(Frame& frame, TileMask& changed) {
    const bool isFirst = m_stroke->freshSelection || !m_begun;
    if (isFirst) {
        m_pastes = m_stroke->pasted;
    }
    frame.GetImage(); // unpacking an empty frame changes its key, so do it before the key is read
    // Undo or a change of frame may have replaced the drawing under the stroke.
    if (isFirst || m_baseKey != frame.GetPictureKey()) {
        LiftSelection(frame, isFirst, changed);
        m_baseKey = frame.GetPictureKey();
        m_begun = true;
    }
    QImage moved = Composite::TransparentImage();
    QPoint leftTop;
    const QImage region = DrawUtil::TransformLifted(*m_stroke, m_lifted, leftTop);
    if (!region.isNull()) {
        Composite::Replace(moved, region, leftTop);
    } else if (!m_lifted.isNull()) {
        QPainter painter(&moved);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        DrawUtil::DrawTransform(painter, *m_stroke, m_lifted);
    }
    m_moved.Replace(moved, changed);
}

void StrokePainter::LiftSelection(Frame& frame, bool isFirst, TileMask& changed) {
    QImage rest = frame.GetImage();
    const QImage region = rest.copy(m_stroke->selection);
    if (isFirst && m_pastes) {
        m_lifted = m_copied;
    }
    if (!m_pastes) {
        m_lifted = m_stroke->liftedImageEmptied ? QImage() : region;
        if (m_stroke->liftedImageEmptied || !m_stroke->copyToClipboard) {
            QPainter painter(&rest);
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.fillRect(m_stroke->selection, Qt::transparent);
        }
    }
    if (isFirst && m_stroke->copyToClipboard) {
        m_copied = region;
    }
    m_work.Replace(rest, changed);
}

bool StrokePainter::SelectionIsUsable() const {
    const QRect& selection = m_stroke->selection;
    return selection.left() <= selection.right() && selection.top() <= selection.bottom() &&
           selection.left() >= -MAX_SELECTION_COORDINATE && selection.right() <= MAX_SELECTION_COORDINATE &&
           selection.top() >= -MAX_SELECTION_COORDINATE && selection.bottom() <= MAX_SELECTION_COORDINATE;
}

void StrokePainter::Forget() {
    m_stroke.reset();
    m_camera.clear();
    m_work = Canvas();
    m_moved = Canvas();
    m_lifted = QImage();
    m_begun = false;
    m_pastes = false;
    m_lastRasterised = 0;
}

} // namespace vellix
