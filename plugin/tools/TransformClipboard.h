#pragma once

#include "tools/TransformSelection.h"

#include <maya/MTime.h>

#include <QPoint>
#include <QString>

namespace vellix {

class BaseNode;
class Layer;
class LayerManager;
struct Stroke;

/// Cutting, copying and pasting with the transform tool: what the stroke is to do, how large the rectangle
/// was that was copied last, and the layer and the frame that were created to paste into.
class TransformClipboard {
public:
    using Corners = TransformSelection::Corners;

    /// A stroke begins that pastes, or not. What was copied stays.
    void Begin(bool paste);
    void SetCut(bool cut) { m_cut = cut; }
    void SetCopy(bool copy) { m_copy = copy; }
    bool IsPasting() const { return m_paste; }
    /// Makes the stroke cut, copy and paste.
    void ApplyTo(Stroke& stroke) const;
    /// The stroke has ended: what was created for it stays.
    void End();

    /// Remembers the rectangle as the copied one. `scale`: view pixels to an image pixel.
    void Remember(const Corners& corners, float scale);
    bool HasCopied() const;
    /// Where a view of that scale shows what was copied, with its left top corner there. One pixel larger
    /// each way than what was copied, which is intended.
    Corners PlaceAt(const QPoint& leftTop, float scale) const;

    /// Creates the layer and the frame that are missing; false when the camera's drawing cannot be pasted
    /// into.
    bool PrepareToPaste(BaseNode& node, const QString& camera);
    /// Index of the layer that was created; -1 for none.
    int GetCreatedLayer() const { return m_createdLayer; }
    bool IsFrameCreated() const { return m_frameCreated; }
    /// Removes what was created from the layer that was pasted into. Returns the index of that layer, -1 when
    /// there is nothing to remove or the layer is gone.
    int RemoveCreated(LayerManager& layers, const QString& camera, const Layer* layer) const;
    /// What was created stays.
    void ForgetCreated();

private:
    bool m_cut = false;
    bool m_copy = false;
    bool m_paste = false;

    // The copied rectangle, view pixels; empty while left is beyond right.
    int m_left = 0;
    int m_bottom = 0;
    int m_right = -1;
    int m_top = -1;
    float m_scale = 1.0f; ///< view pixels to an image pixel then

    int m_createdLayer = -1;
    bool m_frameCreated = false;
    MTime m_frameTime;
};

} // namespace vellix
