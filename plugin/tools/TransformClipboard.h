#pragma once

#include "tools/TransformSelection.h"

#include <QPoint>
#include <QString>

namespace vellix {

class BaseNode;
struct Stroke;

/// Cut, copy and paste of the transform tool: what the stroke is to do, the size of the rectangle copied
/// last, and the layer and frame created to paste into.
class TransformClipboard {
public:
    using Corners = TransformSelection::Corners;

    /// Begins a stroke, which pastes or not. Keeps the copied rectangle.
    void Begin(bool paste);
    void SetCut(bool cut) { cut_ = cut; }
    void SetCopy(bool copy) { copy_ = copy; }
    bool IsPasting() const { return paste_; }
    /// Sets the stroke's flags for cut, copy and paste.
    void ApplyTo(Stroke& stroke) const;
    /// Ends the stroke. The layer and frame created for it stay.
    void End();

    /// Stores the rectangle as the copied one. `scale` is in view pixels per image pixel.
    void Remember(const Corners& corners, float scale);
    bool HasCopied() const;
    /// The copied rectangle in a view of the given scale (view pixels per image pixel), with its left top
    /// corner at `leftTop`. One view pixel larger each way than the original, on purpose.
    Corners PlaceAt(const QPoint& leftTop, float scale) const;

    /// Creates a missing layer and frame to paste into. Returns false if the camera's drawing cannot be
    /// pasted into.
    bool PrepareToPaste(BaseNode& node, const QString& camera);
    /// Index of the created layer; -1 for none.
    int GetCreatedLayer() const { return createdLayer_; }
    bool IsFrameCreated() const { return frameCreated_; }
    /// Forgets the created layer and frame. They stay, or have gone with the stroke.
    void ForgetCreated();

private:
    bool cut_ = false;
    bool copy_ = false;
    bool paste_ = false;

    // The copied rectangle in view pixels; empty while left > right.
    int left_ = 0;
    int bottom_ = 0;
    int right_ = -1;
    int top_ = -1;
    float scale_ = 1.0f; ///< view pixels per image pixel when it was copied

    int createdLayer_ = -1;
    bool frameCreated_ = false;
};

} // namespace vellix
