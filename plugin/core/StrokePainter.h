#pragma once

#include "paint/Picture.h"
#include "paint/Stroke.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <memory>

namespace vellix {

class Frame;

/// Owns the stroke being drawn and the images it is painted into, until it is committed to a frame or
/// cancelled. Paints freehand strokes as they grow, and shapes, text and transforms from scratch each time.
/// Also keeps what the transform tool has copied, across strokes.
class StrokePainter {
public:
    bool HasStroke() const;
    /// The stroke, owned here; null while nothing is drawn.
    Stroke* GetStroke() const;
    /// The camera on whose layer the stroke is drawn.
    const QString& GetCamera() const;

    void Begin(const QString& camera);
    /// Drops the stroke. `frame` is the frame it was drawn on, or null: a pending copy to the clipboard is
    /// taken from it.
    void Cancel(Frame* frame);
    /// Paints the stroke into the frame and ends it. `undo` (may be null) receives the previous picture as
    /// PNG bytes. Returns false, with nothing changed, if that picture cannot be encoded or decoded, if
    /// there is no stroke, or for lack of memory, which may also throw std::bad_alloc.
    bool Commit(Frame& frame, QByteArray* undo);

    /// Paints what is new in the stroke, and appends the layer being drawn on, with its stroke, to the stack.
    /// `drawing` is the layer's picture without the stroke, `frame` its frame or null. `changed` receives the
    /// tiles that changed since the last call; keys do not show these, since they stay the same while a
    /// stroke grows.
    void AppendTo(PictureStack& stack, const Picture& drawing, Frame* frame, TileMask& changed);

    /// Whether the transform tool has copied something that can be pasted.
    bool HasPasteImage() const;

private:
    /// An image with its coverage and a key, which stays the same as long as the stroke lasts.
    struct Canvas {
        QImage image;
        TileCoverage coverage;
        qint64 key = 0;

        Picture AsPicture() const;
        void Replace(const QImage& with, TileMask& changed);
    };

    void Paint(Frame* frame, bool editing, TileMask& changed);
    void PaintFreehand(Frame* frame, TileMask& changed);
    QImage FreehandBase(Frame* frame) const;
    void PaintTransform(Frame& frame, TileMask& changed);
    void LiftSelection(Frame& frame, bool isFirst, TileMask& changed);
    bool SelectionIsUsable() const;
    void Forget();

    std::unique_ptr<Stroke> stroke_;
    QString camera_;
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
