#pragma once

#include "core/Identity.h"
#include "node/BaseNodePointer.h"
#include "node/LegacyPicture.h"
#include "node/ViewPlacement.h"

#include <maya/MApiNamespace.h>
#include <maya/MBoundingBox.h>
#include <maya/MPxLocatorNode.h>
#include <maya/MString.h>
#include <maya/MTime.h>
#include <maya/MTypeId.h>

#include <QByteArray>
#include <QLineF>
#include <QList>
#include <QPoint>
#include <QString>

#include <array>
#include <memory>
#include <vector>

class QImage;
class QWidget;

namespace vellix {

class Frame;
class Layer;
class LayerManager;
class LegacyOutline;
class TimelineOverlay;
struct LayerPlace;
struct Stroke;
enum class LayerState : qint32;

/// The scene node that carries the drawing. Exactly one drawing node in the scene is the master (MasterNode).
/// Commands, tools and panels work only on it, through the operations here, which forward to its
/// LayerManager. A node without a layer manager returns false, 0, -1 or an empty result.
class BaseNode : public MPxLocatorNode {
public:
    BaseNode();
    ~BaseNode() override;

    static void* Creator();
    static MTypeId GetTypeID();
    static MString GetTypeName();
    static MString GetDrawDbClassification();
    static MString GetDrawRegistrationId();

    /// Creates the node's attributes and, if the host has a user interface, the frame marks over the time
    /// slider.
    static MStatus Initialize();
    /// Removes the frame marks, shuts the panels down and writes the settings.
    static MStatus Shutdown();
    static MStatus Cleanup();

    void postConstructor() override;
    /// Gives this duplicate a copy of the other node's drawing and hides it.
    void copyInternalData(MPxNode* node) override;
    bool isBounded() const override;
    bool excludeAsLocator() const override;
    bool isTransparent() const override;
    bool drawLast() const override;
    MBoundingBox boundingBox() const override;
    /// Draws the composed image of the view's camera in the legacy viewport.
    void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle style,
              M3dView::DisplayStatus status) override;

    // Finding nodes. The scene owns them; null if there is none.
    static BaseNode* FromObject(MObject object);
    static QList<BaseNode*> GetAll();
    static BaseNode* GetMaster();
    static BaseNode* GetSelected();
    /// The node of a selection of exactly one item: the item itself, or the first drawing node directly below
    /// it.
    static BaseNode* GetFromSelectionList(const MSelectionList& list);

    bool InitializeLayerManager();
    std::shared_ptr<LayerManager> GetLayerManager() const;
    bool IsMaster() const;
    /// Makes this node the master and shows it. Call when the master has left the scene.
    void TakeOver();
    /// Makes this node no longer the master, and as visible as before TakeOver.
    void StepBack();
    QString GetName() const;
    /// The shortest path that no other node has.
    QString GetPath() const;

    // Cameras.
    QString GetActiveCamera() const;
    QString GetPreviousActiveCamera() const;
    void RefreshActiveCamera();

    // Layers.
    bool LayerExists(const QString& camera, int index) const;
    int LayerCount(const QString& camera) const;
    Layer* GetLayer(const QString& camera, int index) const;
    /// Where the layer with this identity is now; a place without a layer if there is none.
    LayerPlace FindLayer(LayerId id) const;
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
    /// Adds a layer at the index (-1: on top). Returns its index, or a negative value if refused.
    int InsertLayer(const QString& camera, int index, const QString& name);
    /// Takes ownership of the layer. Returns its index, or a negative value if refused.
    int InsertLayer(const QString& camera, int index, std::unique_ptr<Layer> layer);
    /// Removes the layer and hands it to the caller; null if there is none.
    std::unique_ptr<Layer> RemoveLayer(const QString& camera, int index);
    /// Removes the camera's layers and appends them to `removed` in stack order.
    void RemoveAllLayers(const QString& camera, std::vector<std::unique_ptr<Layer>>& removed);
    int MoveLayer(const QString& camera, int from, int to);
    int MoveLayer(const QString& camera, int index, const QString& toCamera, int toIndex);

    // Frames of the camera's active layer.
    Frame* GetPreviousFrame(const QString& camera, bool wrap) const;
    Frame* GetNextFrame(const QString& camera, bool wrap) const;
    void GetFrameTimes(const QString& camera, QList<int>& times) const;
    int AddFrame(const QString& camera, const MTime& time);
    /// Removes the frame and hands it to the caller; null if there is none.
    std::unique_ptr<Frame> RemoveFrame(const QString& camera, const MTime& time);
    void ForceCacheUpdate(const QString& camera, int index);
    /// Call once after a command changed a layer's frames or their times. Finds the layer's current frame
    /// again and updates the host's own ticks on the time slider.
    void OnFramesChanged(const QString& camera, int index);

    // Images and strokes.
    bool ImageUpdateRequired(const QString& camera) const;
    /// The camera's composed image, owned by the layer manager; null without layers.
    QImage* GetFinalImage(const QString& camera);
    bool HasActiveStroke() const;
    Stroke* GetActiveStroke(const QString& camera, bool shape);
    void CancelActiveStroke();
    bool CommitActiveStroke(const QString& camera, QByteArray& undo);
    bool UndoStroke(const QString& camera, QByteArray& buffer);
    bool PasteTransformImageAvailable() const;

    void UpdateLayerManagerDialog();
    static void ClearLayerManagerDialog();

    // The node itself.
    float GetOpacity() const;
    /// Marks the node dirty, so that the host redraws it.
    void QueueRefresh();
    void RefreshActiveView();
    void UpdateGhosting();

    // The clipboard of copied or cut frames. All nodes share one, which lasts when another scene is opened.
    // Their times count from the start of the copied range.
    void ClearClipboard();
    QList<Frame*> GetClipboardFrames() const;
    void CopyFramesToClipboard(const QString& camera);

    /// Sets an outline to draw over the camera's drawing, with these corners (image pixels).
    void SetTransformOutline(const QString& camera, const QPoint& p0, const QPoint& p1, const QPoint& p2,
                             const QPoint& p3);
    void ClearTransformOutline();
    /// Whether an outline is set for the camera.
    bool DrawTransformOutline(const QString& camera) const;
    /// The corners of the outline, image pixels.
    const std::array<QPoint, 4>& GetTransformOutline() const;

    /// Sets the string on which the pen draws the brush, from the brush to the pen (image pixels), to draw
    /// over the camera's drawing. A string without length takes it away.
    void SetPenString(const QString& camera, const QLineF& string);
    /// The string over the camera's drawing, in view pixels; null if there is none.
    QLineF GetPenString(const QString& camera, const ViewPlacement& placement) const;

    // The last placement of the drawing, stored when a view was drawn or when it is updated here. Code that
    // has a view uses ViewPlacement instead, which does not depend on which view was drawn last.
    /// Stores the placement in the view being drawn, and passes the playback time to the layers.
    void NotePlacement(const ViewPlacement& placement);
    /// Stores the placement in a view of this size (pixels), without 2D pan.
    void UpdateOverlayValues(const MDagPath& cameraPath, int width, int height, bool viewport2);
    /// The same with 2D pan, for the view in its current state.
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

    // Tools and the frame marks over the time slider.
    static void SetDrawContextActive(bool active);
    /// Whether a press in a view draws with Settings::activeTool.
    static bool IsDrawContextActive();
    /// The transform tool while it is active, for its outline in the legacy viewport; borrowed, null for
    /// none.
    static void SetActiveTransformContext(LegacyOutline* context);
    static LegacyOutline* GetActiveTransformContext();
    /// The draw tool while it shows the size of its tool; null when it does not. Borrowed, as above.
    static void SetAdjustingContext(LegacyOutline* context);
    static bool TimeControlOverlayIsVisible(const BaseNode* node);
    static void UpdateTimeControlOverlay();

    /// Call for every drawing node after a camera got another name, by an undo or otherwise.
    void OnCameraRenamed(const QString& from, const QString& to, bool isUndo);
    void OnPlaybackTimeChanged(int frame);
    static void UpdatePlaybackTime();

    /// Whether the user may draw now. Adds a missing layer or frame if the settings allow it, for the stroke
    /// that begins next. Sets `layerIndex` to the index of an added layer (else leaves it unchanged), and
    /// `frameAdded`. A refusal adds nothing. Logs the reason of a refusal, except for an empty camera name
    /// and if it opens the new layer dialog instead.
    bool PrepareForDraw(const QString& camera, int& layerIndex, bool& frameAdded);

    /// Whether the drawing of the camera's active layer may be changed. Logs why not.
    bool MayChangeActiveLayer(const QString& camera) const;
    /// Whether the picture that the camera's active layer shows, if any, could be made to be drawn on. Logs
    /// why not.
    bool MayChangeActivePicture(const QString& camera) const;

    /// Whether the stroke being drawn may be committed: its drawing is still there, visible and not locked.
    /// Logs why not, except if there is no stroke.
    bool MayCommitStroke() const;
    /// Logs that a stroke was dropped since its drawing, or the whole node, is gone.
    static void ReportStrokeLost();

    /// Makes a node's attribute not keyable, locked and hidden in the channel box. Ignores a missing
    /// attribute.
    static void LockAndHideAttribute(const MObject& node, const MString& attribute);

    // Part of the interface for scripts and other tools; not called here.
    void SetOpacity(float opacity);
    int TotalLayerCount() const;
    bool FrameExists(const QString& camera) const;
    bool FrameExists(const QString& camera, const MTime& time) const;
    void SetFrameTimes(const QString& camera, const QList<int>& times);
    int AddFrame(const QString& camera);
    /// Takes ownership of the frame, even if it is refused.
    int InsertFrame(const QString& camera, std::unique_ptr<Frame> frame);
    std::unique_ptr<Frame> RemoveFrame(const QString& camera);

private:
    static MStatus InitializeType();
    void Construct();
    std::shared_ptr<LayerManager> ReadLayerManager() const;
    bool SetLayerManager(const std::shared_ptr<LayerManager>& layers) const;
    std::shared_ptr<LayerManager> Separate(const LayerManager& shared) const;
    MPlug GetVisibilityPlug() const;
    bool AddMissingLayer(LayerManager& layers, const QString& camera, int& layerIndex);
    bool AddMissingFrame(LayerManager& layers, const QString& camera, bool& frameAdded);

    static MObject layerData_;
    static MObject opacity_;
    static std::unique_ptr<TimelineOverlay> timelineOverlay_;
    static bool drawContextActive_;
    static LegacyOutline* transformContext_;
    static LegacyOutline* adjustingContext_;
    static std::vector<std::unique_ptr<Frame>> clipboard_;

    mutable bool toldOfMissingData_ = false;
    mutable BaseNodePointer copiedFrom_; ///< of a duplicate that may still share its drawing
    bool shownAsMaster_ = false;         ///< was hidden before TakeOver
    ViewPlacement placement_;
    bool drawOutline_ = false;
    QString outlineCamera_;
    std::array<QPoint, 4> outline_;
    QString stringCamera_;
    QLineF penString_;
    LegacyPicture legacyPicture_;
};

} // namespace vellix
