#include "core/StrokePainter.h"

#include "core/Frame.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/TilePatch.h"
#include "paint/ToolTable.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cstddef>
#include <cstring>
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

void StrokePainter::Canvas::Clear(TileMask& changed) {
    changed |= coverage.occupied;
    if (image.isDetached()) {
        composite::Clear(image, coverage.occupied);
    } else {
        image = composite::OrBadAlloc(composite::TransparentImage());
    }
    coverage = TileCoverage();
}

void StrokePainter::Canvas::Replace(const QImage& with, TileMask& changed) {
    changed |= coverage.occupied;
    if (image.isDetached()) {
        std::memcpy(image.bits(), with.constBits(),
                    static_cast<std::size_t>(with.bytesPerLine()) * static_cast<std::size_t>(with.height()));
    } else {
        image = composite::OrBadAlloc(with.copy());
    }
    UpdateCoverage(changed);
}

void StrokePainter::Canvas::UpdateCoverage(TileMask& changed) {
    coverage = TileCoverage::Of(image);
    changed |= coverage.occupied;
}

void StrokePainter::Canvas::Forget() {
    if (!image.isDetached()) {
        *this = Canvas();
    }
    key = 0;
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

bool StrokePainter::Commit(Frame& frame, QByteArray& undo) {
    if (!stroke_ || !frame.Unpack()) {
        return false;
    }
    Paint(&frame, false);
    TilePatch patch = PatchOf(frame.GetImage());
    const qint64 before = frame.GetPictureKey();
    patch.SetKeys(before, patch.Tiles().IsEmpty() ? before : Picture::NewKey());
    if (!frame.Exchange(patch)) {
        return false;
    }
    undo = patch.TakeBytes();
    Forget();
    return true;
}

/// The tiles that the stroke changes in its picture, as they will be.
TilePatch StrokePainter::PatchOf(const QImage& picture) const {
    if (stroke_->tool == ToolType::Eraser) {
        return TilePatch(picture, edited_, work_.image, nullptr);
    }
    if (IsFreehand(stroke_->tool) || IsDrawnWhole(stroke_->tool)) {
        return TilePatch(picture, work_.coverage.occupied, picture, &work_.image);
    }
    if (stroke_->tool == ToolType::Transform && SelectionIsUsable()) {
        return TilePatch(picture, edited_ | moved_.coverage.occupied, work_.image, &moved_.image);
    }
    return TilePatch(picture, TileMask(), picture, nullptr);
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
        PaintShape(editing);
    } else if (stroke_->tool == ToolType::Transform && SelectionIsUsable() && frame) {
        PaintTransform(*frame);
    }
}

/// The eraser lowers the alpha of the drawing; the other tools raise the alpha of their colour from 0.
void StrokePainter::PaintFreehand(Frame* frame) {
    const bool erases = stroke_->tool == ToolType::Eraser;
    const int lastPoint = std::max(0, stroke_->points.size() - 1);
    const qint64 baseKey = !erases ? static_cast<qint64>(stroke_->color.rgba())
                           : frame ? frame->GetPictureKey()
                                   : 0;
    if (!begun_ || baseKey != baseKey_ || lastRasterised_ > lastPoint) {
        begun_ = false; // should memory be short
        if (erases && frame) {
            work_.Replace(frame->GetImage(), changed_);
        } else {
            work_.Clear(changed_);
        }
        begun_ = true;
        edited_ = TileMask();
        baseKey_ = baseKey;
        lastRasterised_ = 0;
    }
    const TileMask tiles =
        DrawUtil::DrawFreehand(work_.image, stroke_->points, lastRasterised_, stroke_->tool);
    lastRasterised_ = lastPoint;
    changed_ |= tiles;
    if (erases) {
        work_.coverage.opaque.Remove(tiles);
        edited_ |= tiles;
    } else {
        composite::OverrideColor(work_.image, tiles, stroke_->color);
        work_.coverage.occupied |= tiles;
    }
}

void StrokePainter::PaintShape(bool editing) {
    work_.Clear(changed_);
    DrawUtil::DrawStroke(work_.image, *stroke_, editing);
    work_.UpdateCoverage(changed_);
}

void StrokePainter::PaintTransform(Frame& frame) {
    const bool isFirst = stroke_->freshSelection || !begun_;
    if (isFirst) {
        pastes_ = stroke_->pasted;
    }
    // Undo may have replaced the picture under the stroke.
    if (isFirst || baseKey_ != frame.GetPictureKey()) {
        begun_ = false; // should memory be short
        LiftSelection(frame, isFirst);
        baseKey_ = frame.GetPictureKey();
        begun_ = true;
    }
    moved_.Clear(changed_);
    QPoint leftTop;
    const QImage region = DrawUtil::TransformLifted(*stroke_, lifted_, leftTop);
    if (!region.isNull()) {
        composite::Replace(moved_.image, region, leftTop);
    } else if (!lifted_.isNull()) {
        QPainter painter(&moved_.image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        DrawUtil::DrawTransform(painter, *stroke_, lifted_);
    }
    moved_.UpdateCoverage(changed_);
}

void StrokePainter::LiftSelection(Frame& frame, bool isFirst) {
    work_.Replace(frame.GetImage(), changed_);
    edited_ = TileMask();
    const QImage region = composite::OrBadAlloc(work_.image.copy(stroke_->selection));
    if (isFirst && pastes_) {
        lifted_ = copied_;
    }
    if (!pastes_) {
        lifted_ = stroke_->liftedImageEmptied ? QImage() : region;
        if (stroke_->liftedImageEmptied || !stroke_->copyToClipboard) {
            QPainter painter(&work_.image);
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.fillRect(stroke_->selection, Qt::transparent);
            painter.end();
            edited_ = TileMask::Touching(stroke_->selection);
            work_.coverage.opaque.Remove(edited_);
        }
    }
    if (isFirst && stroke_->copyToClipboard) {
        copied_ = region;
    }
}

bool StrokePainter::SelectionIsUsable() const {
    const QRect& selection = stroke_->selection;
    return selection.left() <= selection.right() && selection.top() <= selection.bottom() &&
           selection.left() >= -MAX_SELECTION_COORDINATE && selection.right() <= MAX_SELECTION_COORDINATE &&
           selection.top() >= -MAX_SELECTION_COORDINATE && selection.bottom() <= MAX_SELECTION_COORDINATE;
}

/// Keeps the canvas of freehand strokes, since making it anew takes longer than painting most of them.
void StrokePainter::Forget() {
    stroke_.reset();
    drawing_ = DrawingId();
    changed_ = TileMask();
    edited_ = TileMask();
    work_.Forget();
    moved_ = Canvas();
    lifted_ = QImage();
    begun_ = false;
    pastes_ = false;
    lastRasterised_ = 0;
}

} // namespace vellix
