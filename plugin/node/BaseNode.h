#pragma once

#include "node/LegacyPicture.h"
#include "node/ViewPlacement.h"

#include <maya/MApiNamespace.h>
#include <maya/MBoundingBox.h>
#include <maya/MPxLocatorNode.h>
#include <maya/MString.h>
#include <maya/MTime.h>
#include <maya/MTypeId.h>

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QPoint>
#include <QString>

#include <array>
#include <memory>
#include <vector>

class QWidget;

namespace vellix {

class Frame;
class Layer;
class LayerManager;
class LegacyOutline;
class TimelineOverlay;
struct Stroke;
enum class LayerState : qint32;

/// The scene node that carries the drawing. Of all drawing nodes in the scene exactly one is the master:
/// commands, tools and panels act on it alone, through the operations here, which forward to the node's
/// LayerManager. A node without a layer manager answers with false, 0, -1 or an empty result.
class BaseNode : public MPxLocatorNode {
public:
    BaseNode();
    ~BaseNode() override;

    static void* Creator();
    static MTypeId GetTypeID();
    static MString GetTypeName();
    static MString GetDrawDbClassification();
    static MString GetDrawRegistrationId();

    /// Makes the attributes and, with a user interface, the marks over the time slider.
    static MStatus Initialize();
    /// Takes the marks away, shuts the panels down and writes the settings.
    static MStatus Shutdown();
    static MStatus Cleanup();

    void postConstructor() override;
    bool isBounded() const override;
    bool excludeAsLocator() const override;
    bool isTransparent() const override;
    bool drawLast() const override;
    MBoundingBox boundingBox() const override;
    /// Draws the drawing of the view's camera in the legacy viewport.
    void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle style,
              M3dView::DisplayStatus status) override;

    // Finding nodes. The scene owns them; null for none.
    static QList<BaseNode*> GetAll();
    static BaseNode* GetMaster();
    static BaseNode* GetSelected();
    /// The node of a selection of exactly one item: the item itself, or the first drawing node under it.
    static BaseNode* GetFromSelectionList(const MSelectionList& list);

    bool InitializeLayerManager();
    std::shared_ptr<LayerManager> GetLayerManager() const;
    bool IsMaster() const;

    // Cameras.
    QString GetActiveCamera() const;
    QString GetPreviousActiveCamera() const;
    void RefreshActiveCamera();

    // Layers.
    bool LayerExists(const QString& camera, int index) const;
    int LayerCount(const QString& camera) const;
    Layer* GetLayer(const QString& camera, int index) const;
    QList<Layer*> GetLayers(const QString& camera) const;
    Layer* GetActiveLayer(const QString& camera) const;
    int GetActiveLayerIndex(const QString& camera) const;
    bool SetActiveLayer(const QString& camera, int index, bool makeCameraActive);
    void SetLayerName(const QString& camera, int index, const QString& name);
    QString GetLayerName(const QString& camera, int index) const;
    bool IsLayerVisible(const QString& camera, int index) const;
    void SetLayerVisible(const QString& camera, int index, bool visible);
    float GetLayerOpacity(const QString& camera, int index) const;
    void SetLayerOpacity(const QString& camera, int index, float opacity);
    LayerState GetLayerState(const QString& camera, int index) const;
    void SetLayerState(const QString& camera, int index, LayerState state);
    /// A new layer at the index (-1: on top); returns its index, negative when refused.
    int InsertLayer(const QString& camera, int index, const QString& name);
    /// Takes ownership of the layer.
    int InsertLayer(const QString& camera, int index, std::unique_ptr<Layer> layer);
    /// Hands the layer to the caller; null when there is none.
    std::unique_ptr<Layer> RemoveLayer(const QString& camera, int index);
    /// Appends the camera's layers in stack order to `removed`.
    void RemoveAllLayers(const QString& camera, std::vector<std::unique_ptr<Layer>>& removed);
    int MoveLayer(const QString& camera, int from, int to);
    int MoveLayer(const QString& camera, int index, const QString& toCamera, int toIndex);

    // Frames of the camera's active layer.
    Frame* GetPreviousFrame(const QString& camera, bool wrap) const;
    Frame* GetNextFrame(const QString& camera, bool wrap) const;
    void GetFrameTimes(const QString& camera, QList<int>& times) const;
    int AddFrame(const QString& camera, const MTime& time);
    /// Hands the frame to the caller; null when there is none.
    std::unique_ptr<Frame> RemoveFrame(const QString& camera, const MTime& time);
    void ForceCacheUpdate(const QString& camera, int index);
    /// Once after the frames of a layer, or their times, have changed by a command: finds the layer's current
    /// frame anew, and brings the time slider's own ticks up to date.
    void OnFramesChanged(const QString& camera, int index);

    // Images and strokes.
    bool ImageUpdateRequired(const QString& camera) const;
    /// The composed image of the camera, owned by the layer manager; null without layers.
    QImage* GetFinalImage(const QString& camera);
    bool HasActiveStroke() const;
    Stroke* GetActiveStroke(const QString& camera, bool shape);
    void CancelActiveStroke();
    bool CommitActiveStroke(const QString& camera, QByteArray& undo);
    bool CommitActiveStroke(const QString& camera);
    bool UndoStroke(const QString& camera, QByteArray& buffer);
    bool PasteTransformImageAvailable() const;

    void UpdateLayerManagerDialog();
    static void ClearLayerManagerDialog();

    // The node itself.
    float GetOpacity() const;
    /// Marks the node dirty, so that the host draws it again.
    void QueueRefresh();
    void RefreshActiveView();
    void UpdateGhosting();

    // Frames copied or cut. The node owns them; their times count from the start of the copied range.
    void ClearClipboard();
    QList<Frame*> GetClipboardFrames() const;
    void CopyFramesToClipboard(const QString& camera);

    /// Shows an outline with these corners (image pixels) over the drawing of the camera.
    void SetTransformOutline(const QString& camera, const QPoint& p0, const QPoint& p1, const QPoint& p2,
                             const QPoint& p3);
    void ClearTransformOutline();
    bool DrawTransformOutline(const QString& camera) const;
    /// Its corners, image pixels.
    const std::array<QPoint, 4>& GetTransformOutline() const;

    // The placement of the drawing that was noted last, by drawing a view or by an update here. Who has a
    // view asks ViewPlacement instead, which does not depend on what was drawn in between.
    /// Notes the placement in a view that is drawn, and tells the layers the time.
    void NotePlacement(const ViewPlacement& placement);
    void UpdateOverlayValues(const MDagPath& cameraPath, int width, int height, bool viewport2);
    /// The same and the pan, for the view as it is.
    void UpdateOverlayValues(M3dView& view);
    void UpdateOverlayPan(const MDagPath& cameraPath, const M3dView& view);
    void UpdateOverlayPan(const MDagPath& cameraPath, const MHWRender::MFrameContext& frameContext);
    QPoint ScreenCoordsToTexCoords(const QPoint& point) const;
    MPoint TexCoordsToScreenCoords(const QPoint& pixel) const;
    float TextureToScreenScale() const;
    MPoint GetOverlayCenter() const;
    float GetOverlayScale() const;
    /// The corners of the outline in view pixels.
    void TransformOutlinePoints(MPoint& p0, MPoint& p1, MPoint& p2, MPoint& p3) const;

    // Tools and the marks over the time slider.
    static void SetDrawContextActive(bool active);
    /// The transform tool while it is in use, for its outline in the legacy viewport; borrowed, or null.
    static void SetActiveTransformContext(LegacyOutline* context);
    static LegacyOutline* GetActiveTransformContext();
    static bool TimeControlOverlayIsVisible(const BaseNode* node);
    static void UpdateTimeControlOverlay();

    void OnPlaybackTimeChanged(int frame);
    static void UpdatePlaybackTime();

    /// May the user draw now? Creates the layer and the frame that are missing where the settings allow it,
    /// telling so in `layerIndex` (left as it is otherwise) and `frameAdded`; a refusal is logged.
    bool PrepareForDraw(const QString& camera, int& layerIndex, bool& frameAdded);

    /// May the drawing of the camera's active layer be changed? A refusal is logged.
    bool MayChangeActiveLayer(const QString& camera) const;

    /// Makes a node's attribute not keyable, locked and hidden in the channel box. A missing one is ignored.
    static void LockAndHideAttribute(const MObject& node, const MString& attribute);

    // Part of the interface for scripts and other tools; not called here.
    void SetOpacity(float opacity);
    int TotalLayerCount() const;
    bool FrameExists(const QString& camera) const;
    bool FrameExists(const QString& camera, const MTime& time) const;
    void SetFrameTimes(const QString& camera, const QList<int>& times);
    int AddFrame(const QString& camera);
    /// Takes ownership of the frame, also when it refuses.
    int InsertFrame(const QString& camera, std::unique_ptr<Frame> frame);
    std::unique_ptr<Frame> RemoveFrame(const QString& camera);

private:
    bool AddMissingLayer(LayerManager& layers, const QString& camera, int& layerIndex);
    bool AddMissingFrame(LayerManager& layers, const QString& camera, bool& frameAdded);

    static MObject s_layerData;
    static MObject s_opacity;
    static std::unique_ptr<TimelineOverlay> s_timelineOverlay;
    static bool s_drawContextActive;
    static LegacyOutline* s_transformContext;

    std::vector<std::unique_ptr<Frame>> clipboard_;
    ViewPlacement placement_;
    bool drawOutline_ = false;
    QString outlineCamera_;
    std::array<QPoint, 4> outline_;
    LegacyPicture legacyPicture_;
};

} // namespace vellix
