#pragma once

#include "core/CameraHandle.h"
#include "core/Identity.h"
#include "core/LayerSpot.h"

#include <QString>

#include <memory>

namespace vellix {

class Frame;
class Layer;
class LayerManager;

/// The layer and the frame that a press added for its stroke. Takes them out of the drawing, keeps them, and
/// puts the same objects back, so that whatever knows their identities finds them again.
class PressAdditions {
public:
    /// Nothing was added.
    PressAdditions();
    /// Made right after the press. `drawing` is what the stroke is drawn on; its layer is in the document.
    PressAdditions(const LayerManager& layers, const DrawingId& drawing, bool layerAdded, bool frameAdded);
    PressAdditions(PressAdditions&& other) noexcept;
    PressAdditions& operator=(PressAdditions&& other) noexcept;
    ~PressAdditions();

    const DrawingId& GetDrawing() const { return drawing_; }
    bool HasLayer() const { return layerAdded_; }
    /// The added frame; None if there is none.
    FrameId GetFrame() const { return frameAdded_ ? drawing_.frame : FrameId::None; }
    /// Whether the camera of the added layer keeps its place without it.
    bool HadPlace() const { return hadPlace_; }
    /// Takes over what is known of the time before the press from what was noted then. `hadPlace` says
    /// whether the camera of the added layer keeps its place without it (LayerManager::KeepsPlace).
    void Complete(const PressAdditions& noted, bool hadPlace);

    /// Takes out what was added, and makes the layer active again that was before. A frame that has a picture
    /// without the stroke stays, and so does a layer with such a frame or with others; if a stroke is being
    /// drawn on that layer, its additions take the layer over. Returns false, with nothing changed, if the
    /// document does not hold what was added.
    bool TakeOut(LayerManager& layers);
    /// Makes the layer of another press, which `undone` left because of the stroke on `drawing`, one that was
    /// added for this stroke. Discard() hands it back to `undone`, which can still be redone.
    void TakeOver(const PressAdditions& undone, const DrawingId& drawing);
    /// Puts back what was taken out. Returns false, with nothing changed, if the frame's layer is gone or its
    /// time is taken.
    bool PutBack(LayerManager& layers);
    /// Deletes what was added for a stroke that is dropped. What has been drawn on or filled meanwhile stays.
    /// If the layer is gone already, goes back to what was active before the press all the same.
    void Discard(LayerManager& layers);
    /// Call when the layers of a camera go by another name.
    void FollowCamera(const QString& from, const QString& to);

private:
    // A layer that was taken out, with its place and the camera that was active then.
    struct TakenLayer {
        CameraHandle activeCamera;
        LayerSpot spot;
        std::unique_ptr<Layer> layer;
    };

    void RememberPlace(const LayerManager& layers);
    void GoBackFrom(LayerManager& layers, const QString& camera) const;
    std::unique_ptr<Layer> TakeLayer(LayerManager& layers) const;

    DrawingId drawing_;
    bool layerAdded_ = false;
    bool frameAdded_ = false;
    /// The layer that was active before the added one, the first of its camera; None if another was there.
    LayerId previousLayer_ = LayerId::None;
    bool hadPlace_ = false;
    QString camera_; ///< of the added layer at the press, by its name now

    std::shared_ptr<TakenLayer> taken_; ///< null until the layer is taken out or over; shared after TakeOver
    std::unique_ptr<Frame> frame_;      ///< that was taken out without its layer
};

} // namespace vellix
