#pragma once

#include "core/Identity.h"
#include "paint/Picture.h"
#include "paint/Stroke.h"

#include <QByteArray>
#include <QImage>

#include <memory>
#include <vector>

namespace vellix {

class Frame;
class TilePatch;
class TileSource;

/// Owns the stroke being drawn and the images it is painted into, until it is committed to a frame or
/// cancelled. A stroke belongs to the drawing it began on; the frames passed here are that drawing's. Paints
/// freehand strokes as they grow, and shapes, text and transforms from scratch each time. Also keeps what the
/// transform tool has copied, across strokes.
class StrokePainter {
public:
    bool HasStroke() const;
    /// The stroke, owned here; null while nothing is drawn.
    Stroke* GetStroke() const;
    /// The drawing that the stroke began on. Its frame is None if the layer had no frame to draw on.
    const DrawingId& GetDrawing() const;

    void Begin(const DrawingId& drawing);
    /// Drops the stroke. `frame` is the frame it was drawn on, null if that is gone: a pending copy to the
    /// clipboard is taken from it.
    void Cancel(Frame* frame);
    /// Paints the stroke into the frame and ends it. `undo` receives the tiles that it changed, as they were
    /// (TilePatch). Returns false, with nothing changed, if the frame's picture does not decode or there is
    /// no stroke. Throws std::bad_alloc, with nothing changed, when memory is short.
    bool Commit(Frame& frame, QByteArray& undo);
    /// Paints what is new in the stroke. A fresh selection is lifted now, whether the frame is shown or not.
    void Paint(Frame& frame);

    /// Paints what is new in the stroke, and appends the layer being drawn on, with its stroke, to the stack.
    /// `drawing` is the layer's picture without the stroke, `frame` the frame drawn on or null. `changed`
    /// receives the tiles that changed since the last call; keys do not show these, since they stay the same
    /// while a stroke grows.
    void AppendTo(PictureStack& stack, const Picture& drawing, Frame* frame, TileMask& changed);

    /// Whether the transform tool has copied something that can be pasted.
    bool HasPasteImage() const;

private:
    /// An image with its coverage and a key, which stays the same as long as the stroke lasts. The image is
    /// kept for the next stroke. `changed` receives the tiles that look different. Throws std::bad_alloc when
    /// memory is short.
    struct Canvas {
        QImage image; ///< null before the first use
        TileCoverage coverage;
        qint64 key = 0;

        Picture AsPicture() const;
        /// Makes every pixel transparent; what lies outside the coverage may keep its colour.
        void Clear(TileMask& changed);
        /// Takes another image, or copies it into this one if it is shared.
        void Replace(QImage with, TileMask& changed);
        /// Finds the coverage again, after painting over what Clear() has left.
        void UpdateCoverage(TileMask& changed);
        /// Is ready for another stroke.
        void Forget();
    };

    /// The tail of a freehand stroke (Stroke::tail), as long as it is painted on the canvas, with what it has
    /// covered there.
    struct Tail {
        TileMask covered;            ///< none while no tail is painted
        std::vector<quint32> pixels; ///< of these tiles, as they were
        TileCoverage coverageBefore;
        TileMask editedBefore;

        /// Keeps the tiles on which a tail is about to be painted. Throws std::bad_alloc, with nothing
        /// changed, when memory is short.
        void Keep(const Canvas& canvas, const TileMask& edited, const TileMask& tiles);
        /// Restores exactly what was there before the tail. Needs no memory.
        void TakeOff(Canvas& canvas, TileMask& edited, TileMask& changed);
    };

    void Paint(Frame* frame, bool editing);
    void PaintFreehand(Frame* frame, bool editing);
    void PaintTail();
    void TakeUpFreehand(const TileMask& tiles, bool editing);
    void PaintShape(bool editing);
    void PaintTransform(Frame& frame);
    /// The tiles in which the stroke may change its picture.
    TileMask ReachedTiles() const;
    TilePatch PatchOf(const TileSource& picture) const;
    void LiftSelection(Frame& frame, bool isFirst);
    bool SelectionIsUsable() const;
    void Forget();

    std::unique_ptr<Stroke> stroke_;
    DrawingId drawing_;
    TileMask changed_;   ///< tiles painted since the last AppendTo
    TileMask edited_;    ///< tiles in which work_ differs from the picture that the stroke began on
    TileMask uncolored_; ///< tiles in which a freehand stroke has not its colour yet, only its alpha
    Tail tail_;          ///< on work_
    Canvas work_;  ///< the stroke so far; for the eraser and the transform tool, the layer's new picture
    Canvas moved_; ///< the lifted region where the transform puts it
    bool begun_ = false;
    bool pastes_ = false;    ///< the transform pastes the copied region and lifts nothing
    qint64 baseKey_ = 0;     ///< identifies what the stroke began on: a colour, or a picture key of the frame
    int lastRasterised_ = 0; ///< index of the last stroke point painted into work_
    QImage lifted_;          ///< the region lifted by the transform tool
    QImage copied_;          ///< the region that was cut or copied, to be pasted
};

} // namespace vellix
