#pragma once

#include "core/DocumentListener.h"
#include "core/LayerState.h"
#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <vector>

class QColor;

namespace vellix {

class Compositor;
class Frame;
class Layer;
class StrokePainter;
struct Stroke;

/// The whole drawing of one scene node: for every camera a stack of layers (index 0 at the bottom) with one
/// active layer, the stroke being drawn, and the composed image of each camera. Cameras go by the names of
/// their transforms; an unknown one is an empty stack. Refusals are silent: null, -1 or false.
class LayerManager : private NonCopyable {
public:
    LayerManager();
    ~LayerManager();

    /// Who is told of the changes of every drawing; borrowed, null for nobody.
    static void SetListener(DocumentListener* listener);

    /// While one is there, changes are gathered; they are told together when the last one goes.
    class ChangeScope {
    public:
        explicit ChangeScope(LayerManager& document);
        ChangeScope(const ChangeScope&) = delete;
        ChangeScope& operator=(const ChangeScope&) = delete;
        ~ChangeScope();

    private:
        LayerManager& document_;
    };

    /// The master's layers fill the layer manager panel.
    bool IsMaster() const;
    void MakeMaster();

    // Cameras.
    QString GetActiveCamera() const;
    QString GetPreviousActiveCamera() const;
    QStringList GetCameras() const;
    void SetActiveCamera(const QString& camera);
    /// Makes the camera of the host's active view the active one.
    void RefreshActiveCamera();

    // Layers. Borrowed pointers, unless said otherwise.
    int LayerCount(const QString& camera) const;
    int TotalLayerCount() const;
    bool LayerExists(const QString& camera, int index) const;
    bool LayerNameExists(const QString& name) const;
    /// The name when it is free (an empty one stands for the default), else the first free numbered default
    /// name.
    QString GetUniqueLayerName(const QString& name) const;
    Layer* GetLayer(const QString& camera, int index) const;
    QList<Layer*> GetLayers(const QString& camera) const;
    int GetActiveLayerIndex(const QString& camera) const;
    Layer* GetActiveLayer(const QString& camera) const;
    /// -1 leaves the camera without an active layer. False, with an error logged, for any other invalid
    /// index.
    bool SetActiveLayer(const QString& camera, int index, bool makeCameraActive);
    QString GetLayerName(const QString& camera, int index) const;
    void SetLayerName(const QString& camera, int index, const QString& name);
    bool IsLayerVisible(const QString& camera, int index) const;
    void SetLayerVisible(const QString& camera, int index, bool visible);
    float GetLayerOpacity(const QString& camera, int index) const;
    void SetLayerOpacity(const QString& camera, int index, float opacity);
    LayerState GetLayerState(const QString& camera, int index) const;
    void SetLayerState(const QString& camera, int index, LayerState state);

    /// Takes ownership of the layer and returns its index; an index that is not one appends. A layer that
    /// comes with its active flag set (one that was removed while active) becomes the camera's active layer.
    int InsertLayer(const QString& camera, int index, Layer* layer);
    int InsertLayer(const QString& camera, int index, const QString& name);
    /// Returns the layer's new index, or -1 when an index is invalid.
    int MoveLayer(const QString& camera, int from, int to);
    /// Moves a layer to another camera's stack; an index there that is not one appends. The layer is no
    /// longer active.
    int MoveLayer(const QString& camera, int index, const QString& toCamera, int toIndex);
    /// Hands the layer to the caller; null when there is none.
    std::unique_ptr<Layer> RemoveLayer(const QString& camera, int index);
    /// The caller owns what is put into `removed`, in stack order.
    void RemoveAllLayers(const QString& camera, QList<Layer*>& removed);

    // Frames of the camera's active layer.
    int AddFrame(const QString& camera);
    int AddFrame(const QString& camera, const MTime& time);
    /// Takes ownership of the frame, also when it refuses.
    int InsertFrame(const QString& camera, Frame* frame);
    /// Hands the frame to the caller; null when there is none.
    std::unique_ptr<Frame> RemoveFrame(const QString& camera);
    std::unique_ptr<Frame> RemoveFrame(const QString& camera, const MTime& time);
    Frame* GetPreviousFrame(const QString& camera, bool wrap) const;
    Frame* GetNextFrame(const QString& camera, bool wrap) const;
    std::unique_ptr<Frame> GetFrameCopy(const QString& camera, const MTime& time) const;
    bool FrameExists(const QString& camera) const;
    bool FrameExists(const QString& camera, const MTime& time) const;
    void GetFrameTimes(const QString& camera, QList<int>& times) const;
    void SetFrameTimes(const QString& camera, const QList<int>& times);

    // Time.
    /// The frame number used for playback.
    void SetFrame(int frame);
    /// With `keepActive` the active layer of the active camera stays on its frame.
    void OnPlaybackTimeChanged(int frame, bool keepActive);

    // The stroke being drawn.
    bool CanDraw(const QString& camera) const;
    bool CanDraw(const Layer* layer) const;
    bool HasActiveStroke() const;
    /// The stroke being drawn, or a new one on the camera's active layer; owned here. Null when that layer
    /// has no frame to draw on (`shape`: any active layer will do).
    Stroke* GetActiveStroke(const QString& camera, bool shape);
    /// Paints the stroke into the active layer's current frame and ends it. `undo` receives the image before
    /// it as PNG bytes.
    bool CommitActiveStroke(const QString& camera, QByteArray& undo);
    /// The same without the image before it, for a stroke that joins one whose way back is known.
    bool CommitActiveStroke(const QString& camera);
    /// Exchanges the current image of the active layer with the one in the buffer (PNG bytes); false, with
    /// nothing changed, when either is missing.
    bool UndoStroke(const QString& camera, QByteArray& buffer);
    void CancelActiveStroke();
    /// Has the transform tool copied something that can be pasted?
    bool PasteTransformImageAvailable() const;

    // The composed image.
    /// The camera's layers at the current time, with ghosts and the stroke being drawn, composed again only
    /// when CacheUpdateRequired says so. Straight alpha, Format_RGBA8888; owned here; null without layers.
    QImage* GetFlattenedImage(const QString& camera);
    bool CacheUpdateRequired(const QString& camera);
    bool MasterCacheUpdateRequired(const QString& camera) const;
    void QueueMasterCacheUpdate(const QString& camera);
    void MasterCacheUpdateCompleted(const QString& camera);
    void ForceCacheUpdate(const QString& camera, int index);
    /// The user's settings of ghosting have changed.
    void OnGhostingChanged();
    /// The camera's layers at any time, with the ghosts of the user's settings when `ghosting` is set. Leaves
    /// current frames, flags and caches alone; a null image without layers.
    QImage ComposeFrame(const QString& camera, int frame, bool ghosting) const;

    /// Fills the layer manager panel anew; the master only.
    void UpdateLayerManagerDialog();

    // Part of the interface for scripts and other tools; not called here.
    /// The frame number used for playback.
    int GetFrame() const;
    void QueueMasterCacheUpdateAll();
    /// Deletes the layers of every camera; without `updatePanel` the layer manager panel is left alone.
    void DeleteAllLayers(bool updatePanel);
    /// Gives every pixel that is not fully transparent the colour's red, green and blue.
    static void OverrideImageColor(QImage& image, const QColor& color);

private:
    bool CommitStroke(const QString& camera, QByteArray* undo);

    using LayerList = std::vector<std::unique_ptr<Layer>>;

    const LayerList& FindLayers(const QString& camera) const;
    void Changed(DocumentChanges changes);
    void TellChanges();
    void OnFirstLayerAdded(const QString& camera);
    void OnLastLayerRemoved(const QString& camera);

    std::map<QString, LayerList> layers_;
    QString activeCamera_;
    QString previousActiveCamera_;
    bool master_ = false;
    bool playing_ = false;
    bool cacheUpdateRequired_ = false;
    int frame_ = 0;
    QStringList masterCacheQueue_;
    DocumentChanges changes_; ///< not told yet
    int changeScopes_ = 0;
    std::unique_ptr<StrokePainter> stroke_;
    std::unique_ptr<Compositor> compositor_;
};

} // namespace vellix
