#pragma once

#include "core/CameraHandle.h"
#include "core/Identity.h"

#include <maya/M3dView.h>

#include <QPoint>
#include <QRect>
#include <QString>

#include <array>
#include <memory>

namespace vellix {

class BaseNode;
class LayerManager;
struct Stroke;

/// The rectangle that the transform tool works on: the camera, layer and frame it was selected in, and its
/// place in the view and in the image. View pixels count from the bottom left, image pixels from the top
/// left. The `node` arguments are the node of GetNode().
class TransformSelection {
public:
    /// View pixels, in the order left top, left bottom, right bottom, right top. Until Reorder() the first is
    /// where the button was pressed.
    using Corners = std::array<QPoint, 4>;

    /// Ends the selection: clears the camera and the rectangle.
    void Forget();
    /// Begins a selection without a rectangle, in the active view at the playback frame.
    void Begin(const BaseNode& node);
    /// Selects in the camera's active layer. Returns false if there is none.
    bool TakeActiveLayer(const BaseNode& node);

    bool HasBegun() const { return !camera_.IsEmpty(); }
    /// The camera's name now; empty until a selection begins.
    QString GetCamera() const { return camera_.Name(); }
    M3dView& GetView() { return view_; }
    /// The drawing selected in; null once it is gone.
    std::shared_ptr<LayerManager> GetLayers() const { return layers_.lock(); }
    /// The node that holds the selection; null once it is gone or no longer the master.
    BaseNode* GetNode() const;
    /// The transform stroke of the node, borrowed; null if there is none.
    Stroke* FindStroke(BaseNode& node) const;
    /// Returns whether the active view looks through the selection's camera.
    bool IsInActiveView() const;
    /// Returns whether the active view, the frame and the active layer are still those of the selection.
    bool IsCurrent() const;

    const Corners& GetCorners() const { return corners_; }
    void SetCorners(const Corners& corners) { corners_ = corners; }
    /// Moves the corner opposite the pressed one to `position`.
    void StretchTo(const QPoint& position);
    /// Makes the first corner the top left one.
    void Reorder();
    bool IsPoint() const { return corners_[0] == corners_[2]; }

    /// Sets the region to the part of the image that the corners enclose.
    void Locate(BaseNode& node);
    /// Sets the region to the whole image, and the corners around it.
    void SelectAll(BaseNode& node);
    /// The region in image pixels, edges included.
    const QRect& GetRegion() const { return region_; }

    /// View pixels per image pixel when the region was last located; 0 before.
    float GetScale() const { return placement_.scale; }
    /// View pixels per image pixel in the view now.
    float MeasureScale(BaseNode& node);
    /// Moves the corners back to the region if the view was panned, zoomed or resized. Returns whether it
    /// was.
    bool LocateAgain(BaseNode& node);
    /// Changes to the active view if it is another view of the same camera. Returns whether it did.
    bool FollowActiveView();
    /// Converts points of the view to image pixels.
    Corners InImage(BaseNode& node, const Corners& points);
    /// The offset in image pixels between two points of the view.
    QPoint OffsetInImage(BaseNode& node, const QPoint& from, const QPoint& to);

private:
    /// The drawing's place over the view: its centre in view pixels, and view pixels per image pixel.
    struct Placement {
        double x = 0.0;
        double y = 0.0;
        float scale = 0.0f;

        bool operator==(const Placement& other) const {
            return x == other.x && y == other.y && scale == other.scale;
        }
    };

    Placement FindPlacement(BaseNode& node);
    void EncloseRegion(const BaseNode& node);

    M3dView view_;
    CameraHandle camera_;
    std::weak_ptr<LayerManager> layers_;
    LayerId layer_ = LayerId::None;
    int frame_ = 0; ///< playback frame
    Corners corners_{};
    QRect region_;
    Placement placement_;
};

} // namespace vellix
