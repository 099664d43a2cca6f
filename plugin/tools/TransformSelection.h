#pragma once

#include <maya/M3dView.h>

#include <QPoint>
#include <QRect>
#include <QString>

#include <array>
#include <memory>

namespace vellix {

class BaseNode;
class Layer;
class LayerManager;
struct Stroke;

/// The rectangle that the transform tool works on: the camera, the layer and the frame it was chosen in, and
/// where it lies in the view and in the image. View pixels count from the bottom left, image pixels from the
/// top left. A node that is passed in is the one of GetNode().
class TransformSelection {
public:
    /// In this order: left top, left bottom, right bottom, right top; until they are reordered the first is
    /// where the button was pressed. View pixels.
    using Corners = std::array<QPoint, 4>;

    /// Ends the selection: no camera and no rectangle.
    void Forget();
    /// Begins without a rectangle, in the active view at the playback frame.
    void Begin(const BaseNode& node);
    /// The camera's active layer becomes the one that is selected in; false when there is none.
    bool TakeActiveLayer(const BaseNode& node);

    bool HasBegun() const { return !m_camera.isEmpty(); }
    /// Empty until a selection begins.
    const QString& GetCamera() const { return m_camera; }
    M3dView& GetView() { return m_view; }
    /// Null once the drawing is gone.
    std::shared_ptr<LayerManager> GetLayers() const { return m_layers.lock(); }
    /// To be told from others only, it may be gone.
    const Layer* GetLayer() const { return m_layer; }

    /// The node that the selection is in; null once it is gone or no longer the master.
    BaseNode* GetNode() const;
    /// The transform stroke of the node, borrowed; null when it has none.
    Stroke* FindStroke(BaseNode& node) const;
    /// Is the active view one of the selection's camera?
    bool IsInActiveView() const;
    /// Do the view, the frame and the layer still show what was selected?
    bool IsCurrent() const;

    const Corners& GetCorners() const { return m_corners; }
    void SetCorners(const Corners& corners) { m_corners = corners; }
    /// Brings the corner opposite to the pressed one to the position.
    void StretchTo(const QPoint& position);
    /// Makes the first corner the top left one.
    void Reorder();
    bool IsPoint() const { return m_corners[0] == m_corners[2]; }

    /// Finds the region of the image that the corners enclose.
    void Locate(BaseNode& node);
    /// Makes the whole image the region, and encloses it.
    void SelectAll(BaseNode& node);
    /// Image pixels, edges included.
    const QRect& GetRegion() const { return m_region; }

    /// View pixels to an image pixel when the region was last located; 0 before.
    float GetScale() const { return m_placement.scale; }
    /// The same for the view as it is.
    float MeasureScale(BaseNode& node);
    /// Brings the corners back to the region when the view was panned, zoomed or resized since; tells whether
    /// it was.
    bool LocateAgain(BaseNode& node);
    /// Goes along when another view of the same camera is in use; tells whether it is.
    bool FollowActiveView();
    /// The image pixels at points of the view.
    Corners InImage(BaseNode& node, const Corners& points);
    QPoint OffsetInImage(BaseNode& node, const QPoint& from, const QPoint& to);

private:
    /// Where the drawing lies over the view.
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

    M3dView m_view;
    QString m_camera;
    std::weak_ptr<LayerManager> m_layers;
    const Layer* m_layer = nullptr;
    int m_frame = 0; ///< playback frame
    Corners m_corners{};
    QRect m_region;
    Placement m_placement;
};

} // namespace vellix
