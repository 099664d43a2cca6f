#include "core/StrokePainter.h"

#include "core/Frame.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/TilePatch.h"
#include "paint/ToolTable.h"

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace vellix {
namespace {

/// Limit of a selection's coordinates, in pixels. A selection that goes beyond is cut to the image.
constexpr int MAX_SELECTION_COORDINATE = 4 * IMAGE_WIDTH;

bool IsFreehand(ToolType tool) {
    return KindOf(tool) == ToolKind::Freehand;
}

bool IsDrawnWhole(ToolType tool) {
    return KindOf(tool) == ToolKind::Shape || KindOf(tool) == ToolKind::Text;
}

bool GoesFarOut(const QRect& selection) {
    constexpr int limit = MAX_SELECTION_COORDINATE;
    return std::min(selection.left(), selection.top()) < -limit ||
           std::max(selection.right(), selection.bottom()) > limit;
}

QPointF CentreOf(const QRect& selection) {
    return {(static_cast<double>(selection.left()) + selection.right()) * 0.5,
            (static_cast<double>(selection.top()) + selection.bottom()) * 0.5};
}

/// The same transform of what the selection holds of the image, if it goes far out; its memory is bounded
/// then. The selection may be empty after that.
Stroke CutToImage(const Stroke& stroke) {
    Stroke cut = stroke;
    if (!GoesFarOut(stroke.selection)) {
        return cut;
    }
    const QPoint last(std::min(stroke.selection.right(), IMAGE_WIDTH - 1),
                      std::min(stroke.selection.bottom(), IMAGE_WIDTH - 1));
    cut.selection =
        QRect(QPoint(std::max(stroke.selection.left(), 0), std::max(stroke.selection.top(), 0)), last);
    if (stroke.pasted || cut.selection.isEmpty()) {
        return cut;
    }
    // It turns and grows about the middle of the whole selection.
    QTransform matrix;
    matrix.rotate(static_cast<double>(stroke.rotation));
    matrix.scale(stroke.scaleX, stroke.scaleY);
    const QPointF aside = CentreOf(cut.selection) - CentreOf(stroke.selection);
    const QPointF moved = matrix.map(aside) - aside;
    constexpr double far = 1 << 24;
    cut.offsetX += static_cast<int>(std::lround(std::min(std::max(moved.x(), -far), far)));
    cut.offsetY += static_cast<int>(std::lround(std::min(std::max(moved.y(), -far), far)));
    return cut;
}

/// A copy of the part of the image; null for an empty part.
QImage CopyOf(const QImage& image, const QRect& part) {
    return part.isEmpty() ? QImage() : composite::OrBadAlloc(image.copy(part));
}

/// The pixels of the frame; transparent for a picture that does not decode.
QImage ImageOf(Frame& frame) {
    frame.Unpack(); // to decode it only once
    const QImage image = frame.PeekImage();
    return image.isNull() ? composite::OrBadAlloc(composite::TransparentImage()) : image;
}

constexpr int TILE_PIXELS = TileMask::TILE_WIDTH * TileMask::TILE_WIDTH;

/// Calls `visit` with each row of pixels of each of these tiles of a layer image, always in the same order.
template <typename Image, typename Visit>
void ForEachTileRow(Image& image, const TileMask& tiles, Visit visit) {
    using Pixel = std::conditional_t<std::is_const<Image>::value, const quint32, quint32>;
    auto* const first = reinterpret_cast<Pixel*>(image.bits());
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    tiles.ForEach([&](int row, int column) {
        for (int y = row * TileMask::TILE_WIDTH; y < (row + 1) * TileMask::TILE_WIDTH; ++y) {
            visit(first + y * stride + column * TileMask::TILE_WIDTH);
        }
    });
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

void StrokePainter::Canvas::Replace(QImage with, TileMask& changed) {
    changed |= coverage.occupied;
    if (with.isDetached()) {
        image = std::move(with);
    } else if (image.isDetached()) {
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

void StrokePainter::Tail::Keep(const Canvas& canvas, const TileMask& edited, const TileMask& tiles) {
    pixels.resize(static_cast<std::size_t>(tiles.Size()) * TILE_PIXELS);
    covered = tiles;
    coverageBefore = canvas.coverage;
    editedBefore = edited;
    quint32* kept = pixels.data();
    ForEachTileRow(canvas.image, tiles,
                   [&kept](const quint32* row) { kept = std::copy_n(row, TileMask::TILE_WIDTH, kept); });
}

void StrokePainter::Tail::TakeOff(Canvas& canvas, TileMask& edited, TileMask& changed) {
    if (covered.IsEmpty()) {
        return;
    }
    const quint32* kept = pixels.data();
    ForEachTileRow(canvas.image, covered, [&kept](quint32* row) {
        std::copy_n(kept, TileMask::TILE_WIDTH, row);
        kept += TileMask::TILE_WIDTH;
    });
    changed |= covered;
    canvas.coverage = coverageBefore;
    edited = editedBefore;
    covered = TileMask();
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
            copied_ = CopyOf(ImageOf(*frame), CutToImage(*stroke_).selection);
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
    TilePatch patch = PatchOf(frame.Pixels());
    const qint64 before = frame.GetPictureKey();
    patch.SetKeys(before, patch.Tiles().IsEmpty() ? before : Picture::NewKey());
    if (!frame.Exchange(patch)) {
        return false;
    }
    undo = patch.TakeBytes();
    Forget();
    return true;
}

TileMask StrokePainter::ReachedTiles() const {
    if (stroke_->tool == ToolType::Eraser) {
        return edited_;
    }
    if (IsFreehand(stroke_->tool) || IsDrawnWhole(stroke_->tool)) {
        return work_.coverage.occupied;
    }
    const bool moves = stroke_->tool == ToolType::Transform && SelectionIsUsable();
    return moves ? edited_ | moved_.coverage.occupied : TileMask();
}

/// The tiles that the stroke changes in its picture, as they will be.
TilePatch StrokePainter::PatchOf(const TileSource& picture) const {
    const TileMask tiles = ReachedTiles();
    const bool erases = stroke_->tool == ToolType::Eraser;
    if (erases || stroke_->tool == ToolType::Transform) {
        return TilePatch(picture, tiles, work_.image, erases ? nullptr : &moved_.image);
    }
    return TilePatch(picture, tiles, picture, &work_.image,
                     IsFreehand(stroke_->tool) ? &stroke_->color : nullptr);
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
        tail_.TakeOff(work_, edited_, changed_);
        PaintFreehand(frame, editing);
        if (editing && !stroke_->tail.isEmpty()) {
            PaintTail();
        }
    } else if (IsDrawnWhole(stroke_->tool)) {
        PaintShape(editing);
    } else if (stroke_->tool == ToolType::Transform && SelectionIsUsable() && frame) {
        PaintTransform(*frame);
    }
}

/// The eraser lowers the alpha of the drawing; the other tools raise the alpha of their colour from 0. Tiles
/// take the colour when they are shown; a patch takes it from the stroke.
void StrokePainter::PaintFreehand(Frame* frame, bool editing) {
    const bool erases = stroke_->tool == ToolType::Eraser;
    const int lastPoint = std::max(0, stroke_->points.size() - 1);
    const qint64 baseKey = !erases ? static_cast<qint64>(stroke_->color.rgba())
                           : frame ? frame->GetPictureKey()
                                   : 0;
    if (!begun_ || stroke_->restarted || baseKey != baseKey_ || lastRasterised_ > lastPoint) {
        begun_ = false; // should memory be short
        stroke_->restarted = false;
        if (erases && frame) {
            work_.Replace(ImageOf(*frame), changed_);
        } else {
            work_.Clear(changed_);
        }
        begun_ = true;
        edited_ = TileMask();
        uncolored_ = TileMask();
        baseKey_ = baseKey;
        lastRasterised_ = 0;
    }
    const TileMask tiles =
        DrawUtil::DrawFreehand(work_.image, stroke_->points, lastRasterised_, stroke_->tool);
    lastRasterised_ = lastPoint;
    TakeUpFreehand(tiles, editing);
}

/// After freehand painting in these tiles.
void StrokePainter::TakeUpFreehand(const TileMask& tiles, bool editing) {
    changed_ |= tiles;
    if (stroke_->tool == ToolType::Eraser) {
        work_.coverage.opaque.Remove(tiles);
        edited_ |= tiles;
    } else {
        uncolored_ |= tiles;
        work_.coverage.occupied |= tiles;
    }
    if (editing) {
        composite::OverrideColor(work_.image, uncolored_, stroke_->color);
        uncolored_ = TileMask();
    }
}

void StrokePainter::PaintTail() {
    const QList<StrokePoint>& points = stroke_->points;
    // A segment that is not the stroke's first begins without a dab.
    QList<StrokePoint> line = points.mid(std::max(0, points.size() - 2));
    const int start = std::max(0, line.size() - 1);
    line += stroke_->tail;
    tail_.Keep(work_, edited_, DrawUtil::ReachOfFreehand(line, start));
    TakeUpFreehand(DrawUtil::DrawFreehand(work_.image, line, start, stroke_->tool), true);
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
    const Stroke cut = CutToImage(*stroke_);
    const QImage region = DrawUtil::TransformLifted(cut, lifted_, leftTop);
    if (!region.isNull()) {
        composite::Replace(moved_.image, region, leftTop);
    } else if (!lifted_.isNull()) {
        QPainter painter(&moved_.image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        DrawUtil::DrawTransform(painter, cut, lifted_);
    }
    moved_.UpdateCoverage(changed_);
}

void StrokePainter::LiftSelection(Frame& frame, bool isFirst) {
    work_.Replace(ImageOf(frame), changed_);
    edited_ = TileMask();
    const QRect selection = CutToImage(*stroke_).selection;
    const QImage region = CopyOf(work_.image, selection);
    if (isFirst && pastes_) {
        lifted_ = copied_;
    }
    if (!pastes_) {
        lifted_ = stroke_->liftedImageEmptied ? QImage() : region;
        if (stroke_->liftedImageEmptied || !stroke_->copyToClipboard) {
            QPainter painter(&work_.image);
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.fillRect(selection, Qt::transparent);
            painter.end();
            edited_ = selection.isEmpty() ? TileMask() : TileMask::Touching(selection);
            work_.coverage.opaque.Remove(edited_);
        }
    }
    if (isFirst && stroke_->copyToClipboard) {
        copied_ = region;
    }
}

bool StrokePainter::SelectionIsUsable() const {
    const QRect& selection = stroke_->selection;
    return selection.left() <= selection.right() && selection.top() <= selection.bottom();
}

/// Keeps the canvas of freehand strokes, since making it anew takes longer than painting most of them.
void StrokePainter::Forget() {
    stroke_.reset();
    drawing_ = DrawingId();
    changed_ = TileMask();
    edited_ = TileMask();
    uncolored_ = TileMask();
    work_.Forget();
    tail_.covered = TileMask();
    moved_ = Canvas();
    lifted_ = QImage();
    begun_ = false;
    pastes_ = false;
    lastRasterised_ = 0;
}

} // namespace vellix
