#include "core/StrokePainter.h"

#include "core/Frame.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/ToolTable.h"

#include <QPainter>

#include <algorithm>
#include <new>

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
    return stroke_ != nullptr;
}

Stroke* StrokePainter::GetStroke() const {
    return stroke_.get();
}

const DrawingId& StrokePainter::GetDrawing() const {
    return drawing_;
}

void StrokePainter::Begin(const DrawingId& drawing) {
    Forget();
    stroke_ = std::make_unique<Stroke>();
    drawing_ = drawing;
    work_.key = Picture::NewKey();
    moved_.key = Picture::NewKey();
}

void StrokePainter::Cancel(Frame* frame) {
    if (stroke_ && frame && stroke_->tool == ToolType::Transform && stroke_->freshSelection &&
        stroke_->copyToClipboard && SelectionIsUsable()) {
        try {
            copied_ = frame->GetImage().copy(stroke_->selection);
        } catch (const std::bad_alloc&) {
            copied_ = QImage(); // there is nothing to paste, but the stroke ends
        }
    }
    Forget();
}

bool StrokePainter::Commit(Frame& frame, QByteArray* undo) {
    if (!stroke_ || !frame.Unpack()) {
        return false;
    }
    if (undo) {
        const QByteArray before = frame.GetPackedImage();
        if (before.isEmpty()) {
            return false;
        }
        *undo = before;
    }
    Paint(&frame, false);
    const ToolType tool = stroke_->tool;
    const bool paints = tool != ToolType::Transform || SelectionIsUsable();
    if (paints && work_.image.isNull()) {
        return false; // for lack of memory
    }
    if (tool == ToolType::Eraser) {
        frame.SetImage(work_.image);
    } else if (IsFreehand(tool) || IsDrawnWhole(tool)) {
        composite::SourceOver(frame.GetOwnImage(), work_.image, work_.coverage.occupied);
    } else if (tool == ToolType::Transform && SelectionIsUsable()) {
        composite::SourceOver(work_.image, moved_.image, moved_.coverage.occupied);
        frame.SetImage(work_.image);
    }
    Forget();
    return true;
}

void StrokePainter::Paint(Frame& frame) {
    Paint(&frame, true);
}

void StrokePainter::AppendTo(PictureStack& stack, const Picture& drawing, Frame* frame, TileMask& changed) {
    Paint(frame, true);
    changed |= changed_;
    changed_ = TileMask();
    const ToolType tool = stroke_->tool;
    if (tool == ToolType::Transform) {
        if (SelectionIsUsable() && frame) {
            stack.push_back(work_.AsPicture());
            stack.push_back(moved_.AsPicture());
        }
        return;
    }
    if (tool != ToolType::Eraser) {
        stack.push_back(drawing);
    }
    if (IsFreehand(tool) || IsDrawnWhole(tool)) {
        stack.push_back(work_.AsPicture());
    }
}

bool StrokePainter::HasPasteImage() const {
    return !copied_.isNull();
}

void StrokePainter::Paint(Frame* frame, bool editing) {
    if (IsFreehand(stroke_->tool)) {
        PaintFreehand(frame);
    } else if (IsDrawnWhole(stroke_->tool)) {
        QImage shape = composite::TransparentImage();
        DrawUtil::DrawStroke(shape, *stroke_, editing);
        work_.Replace(shape, changed_);
    } else if (stroke_->tool == ToolType::Transform && SelectionIsUsable() && frame) {
        PaintTransform(*frame);
    }
}

void StrokePainter::PaintFreehand(Frame* frame) {
    const bool erases = stroke_->tool == ToolType::Eraser;
    const int lastPoint = std::max(0, stroke_->points.size() - 1);
    if (erases && frame) {
        frame->GetImage(); // unpacking an empty frame changes its key, so do it before the key is read
    }
    const qint64 baseKey = !erases            ? static_cast<qint64>(stroke_->color.rgba())
                           : frame != nullptr ? frame->GetPictureKey()
                                              : 0;
    if (!begun_ || baseKey != baseKey_ || lastRasterised_ > lastPoint) {
        work_.Replace(FreehandBase(frame), changed_);
        begun_ = true;
        baseKey_ = baseKey;
        lastRasterised_ = 0;
    }
    const QRect touched =
        DrawUtil::DrawFreehand(work_.image, stroke_->points, lastRasterised_, stroke_->tool);
    lastRasterised_ = lastPoint;
    const TileMask tiles = TileMask::Touching(touched);
    changed_ |= tiles;
    if (erases) {
        work_.coverage.opaque.Remove(tiles);
    } else {
        work_.coverage.occupied |= tiles;
    }
}

/// The image a freehand stroke starts from. The eraser lowers the alpha of the drawing; the other tools raise
/// the alpha of their colour from 0.
QImage StrokePainter::FreehandBase(Frame* frame) const {
    if (stroke_->tool == ToolType::Eraser && frame) {
        return frame->GetImage();
    }
    QImage base = composite::TransparentImage();
    if (stroke_->tool != ToolType::Eraser) {
        QColor color = stroke_->color;
        color.setAlpha(0);
        base.fill(color);
    }
    return base;
}

void StrokePainter::PaintTransform(Frame& frame) {
    const bool isFirst = stroke_->freshSelection || !begun_;
    if (isFirst) {
        pastes_ = stroke_->pasted;
    }
    frame.GetImage(); // unpacking an empty frame changes its key, so do it before the key is read
    // Undo may have replaced the picture under the stroke.
    if (isFirst || baseKey_ != frame.GetPictureKey()) {
        LiftSelection(frame, isFirst);
        baseKey_ = frame.GetPictureKey();
        begun_ = true;
    }
    QImage moved = composite::TransparentImage();
    QPoint leftTop;
    const QImage region = DrawUtil::TransformLifted(*stroke_, lifted_, leftTop);
    if (!region.isNull()) {
        composite::Replace(moved, region, leftTop);
    } else if (!lifted_.isNull()) {
        QPainter painter(&moved);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        DrawUtil::DrawTransform(painter, *stroke_, lifted_);
    }
    moved_.Replace(moved, changed_);
}

void StrokePainter::LiftSelection(Frame& frame, bool isFirst) {
    QImage rest = frame.GetImage();
    const QImage region = rest.copy(stroke_->selection);
    if (isFirst && pastes_) {
        lifted_ = copied_;
    }
    if (!pastes_) {
        lifted_ = stroke_->liftedImageEmptied ? QImage() : region;
        if (stroke_->liftedImageEmptied || !stroke_->copyToClipboard) {
            QPainter painter(&rest);
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.fillRect(stroke_->selection, Qt::transparent);
        }
    }
    if (isFirst && stroke_->copyToClipboard) {
        copied_ = region;
    }
    work_.Replace(rest, changed_);
}

bool StrokePainter::SelectionIsUsable() const {
    const QRect& selection = stroke_->selection;
    return selection.left() <= selection.right() && selection.top() <= selection.bottom() &&
           selection.left() >= -MAX_SELECTION_COORDINATE && selection.right() <= MAX_SELECTION_COORDINATE &&
           selection.top() >= -MAX_SELECTION_COORDINATE && selection.bottom() <= MAX_SELECTION_COORDINATE;
}

void StrokePainter::Forget() {
    stroke_.reset();
    drawing_ = DrawingId();
    changed_ = TileMask();
    work_ = Canvas();
    moved_ = Canvas();
    lifted_ = QImage();
    begun_ = false;
    pastes_ = false;
    lastRasterised_ = 0;
}

} // namespace vellix
