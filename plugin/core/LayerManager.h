#pragma once

#include "core/DocumentListener.h"
#include "core/Identity.h"
#include "core/LayerState.h"
#include "core/PressAdditions.h"
#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <vector>

class QColor;
class QImage;

namespace vellix {

class Compositor;
class Frame;
class Layer;
class LightTable;
class StrokePainter;
struct Stroke;

/// Where a layer is: its camera and its index from the bottom of the stack. The layer is borrowed; null for
/// none.
struct LayerPlace {
    QString camera;
    int index = -1;
    Layer* layer = nullptr;
};

/// The whole drawing of one scene node: per camera a stack of layers (index 0 at the bottom) with one active
/// layer, the stroke being drawn, and each camera's composed image. Cameras are named by their transforms; an
/// unknown camera is an empty stack. A refused call logs nothing, unless said otherwise, and returns null, -1
/// or false.
class LayerManager : private NonCopyable {
public:
    LayerManager();
    ~LayerManager();

    /// Sets the listener for the changes of every drawing; borrowed, null for none.
    static void SetListener(DocumentListener* listener);

    /// Collects changes while it exists. The listener gets them in one call when the last scope ends.
    class ChangeScope {
    public:
        explicit ChangeScope(LayerManager& document);
        ChangeScope(const ChangeScope&) = delete;
        ChangeScope& operator=(const ChangeScope&) = delete;
        ~ChangeScope();

    private:
        LayerManager& document_;
    };

    /// Whether this drawing fills the layer manager panel.
    bool IsMaster() const;
    void MakeMaster();
    void ResignMaster();

    /// A drawing with copies of all layers and frames, which is not the master.
    std::shared_ptr<LayerManager> Clone() const;

    // Cameras.
    QString GetActiveCamera() const;
    QString GetPreviousActiveCamera() const;
    /// Those that have a place in the drawing: they have layers, or had some.
    QStringList GetCameras() const;
    bool HasPlace(const QString& camera) const;
    /// Whether the camera has a place even if the stroke is dropped, whose press may have added its layer.
    bool KeepsPlace(const QString& camera) const;
    /// Gives a camera a place. Or takes it away, for what undoes a first layer: one without layers at once,
    /// one with nothing but the layer of a press when the stroke is dropped. With other layers it stays.
    void SetPlace(const QString& camera, bool hasPlace);
    void SetActiveCamera(const QString& camera);
    /// Makes the camera of the host's active view the active one. Does nothing without such a view.
    void RefreshActiveCamera();
    /// Call after a camera of the host got another name. Its layers, composed image and stroke go along, all
    /// of them or, if memory is too short, none.
    /// Layers that already stand under the new name but whose camera is gone get a free name, so that they
    /// stay a stack of their own; layers of another camera of that name come to lie below. The undo of the
    /// rename, which is told by `isUndo`, separates the stacks again; so does renaming the camera back if
    /// another one has its name.
    void RenameCamera(const QString& from, const QString& to, bool isUndo);
    /// Gives all layers of a camera, and its place as the active one, to another camera. Layers that this one
    /// has come to lie below.
    void GiveLayers(const QString& from, const QString& to);

    // Layers. Returned raw pointers are borrowed.
    int LayerCount(const QString& camera) const;
    int TotalLayerCount() const;
    bool LayerExists(const QString& camera, int index) const;
    bool LayerNameExists(const QString& name) const;
    /// Returns the name if it is free, else the first free numbered default name. An empty name stands for
    /// the default name.
    QString GetUniqueLayerName(const QString& name) const;
    Layer* GetLayer(const QString& camera, int index) const;
    /// Where the layer with this identity is now; a place without a layer if the drawing does not hold it.
    LayerPlace FindLayer(LayerId id) const;
    QList<Layer*> GetLayers(const QString& camera) const;
    int GetActiveLayerIndex(const QString& camera) const;
    Layer* GetActiveLayer(const QString& camera) const;
    /// -1 leaves the camera without an active layer. Returns false, and logs an error, for any other invalid
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

    /// Takes ownership of the layer and returns its index. An invalid index appends. A layer whose active
    /// flag is set (one that was active when it was removed) becomes the camera's active layer.
    int InsertLayer(const QString& camera, int index, Layer* layer);
    /// The same for a layer that the caller keeps if memory is too short, when nothing is changed.
    int InsertLayer(const QString& camera, int index, std::unique_ptr<Layer>& layer);
    int InsertLayer(const QString& camera, int index, const QString& name);
    /// Makes room for so many more layers of the camera, to insert them or move them there next: that needs
    /// no memory then.
    void ReserveLayers(const QString& camera, int count);
    /// Returns the layer's new index, or -1 if an index is invalid.
    int MoveLayer(const QString& camera, int from, int to);
    /// Moves a layer to another camera's stack and returns its new index, or -1. An invalid `toIndex`
    /// appends. The layer is then no longer active.
    int MoveLayer(const QString& camera, int index, const QString& toCamera, int toIndex);
    /// Removes the layer and hands it to the caller; null if there is none.
    std::unique_ptr<Layer> RemoveLayer(const QString& camera, int index);
    /// Removes all layers and appends them to `removed` in stack order. The caller owns them.
    void RemoveAllLayers(const QString& camera, QList<Layer*>& removed);

    /// The frames of all layers that are never displayed, since a later one has the same whole frame. There
    /// are none unless the time unit changed.
    int CountCoveredFrames() const;

    // Frames of the camera's active layer.
    int AddFrame(const QString& camera);
    int AddFrame(const QString& camera, const MTime& time);
    /// Takes ownership of the frame, even if it is refused. Returns its index or -1.
    int InsertFrame(const QString& camera, Frame* frame);
    /// Removes the frame and hands it to the caller; null if there is none.
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
    /// Updates every layer's current frame. With `keepActive`, the active camera's active layer stays on its
    /// frame.
    void OnPlaybackTimeChanged(int frame, bool keepActive);

    // The stroke being drawn.
    bool CanDraw(const QString& camera) const;
    bool CanDraw(const Layer* layer) const;
    bool HasActiveStroke() const;
    /// The stroke being drawn, or a new one on the current frame of the camera's active layer, to which it
    /// belongs from then on; owned here. Null if that layer has no frame to draw on. With `shape` the layer
    /// needs no frame.
    Stroke* GetActiveStroke(const QString& camera, bool shape);
    /// The drawing that the stroke belongs to; without a stroke, none. It may be gone.
    DrawingId GetStrokeDrawing() const;
    /// What the press of the stroke added.
    const PressAdditions& GetStrokeAdditions() const { return strokeAdditions_; }
    /// Whether the press of the stroke added the layer. It goes with a stroke that is dropped.
    bool IsLayerOfStroke(LayerId layer) const;
    /// Paints the stroke into its drawing, wherever that is now, and ends it. `undo` receives the bytes that
    /// take it back (TilePatch). Returns false if nothing was painted: then a stroke whose drawing is gone is
    /// cancelled, and one on another camera stays.
    bool CommitActiveStroke(const QString& camera, QByteArray& undo);
    /// Exchanges the active layer's current picture with the one that the buffer makes of it. The buffer
    /// holds bytes of CommitActiveStroke, which belong to one picture alone, or a whole picture as PNG; the
    /// next call takes the exchange back. Returns false, with nothing changed, if there is no current frame
    /// or the buffer does not hold what belongs to it.
    bool UndoStroke(const QString& camera, QByteArray& buffer);
    /// The same for any drawing.
    bool ExchangePicture(const DrawingId& drawing, QByteArray& buffer);
    /// Drops the stroke, with the layer and the frame that its press added.
    void CancelActiveStroke();
    /// Paints what is new in the stroke, whether its drawing is shown or not.
    void PaintActiveStroke();
    /// Notes what a press has added to the camera's active layer for the stroke that begins next, and whether
    /// the camera had a place before.
    void NotePress(const QString& camera, bool layerAdded, bool frameAdded, bool hadPlace);
    /// A step that added a layer is undone, but a stroke is being drawn on that layer: it goes with the
    /// stroke from now on. Does nothing if the stroke is elsewhere.
    void LeaveLayerToStroke(const PressAdditions& undone);
    /// Takes back what a press has added, if no stroke has begun since.
    void TakeBackPress();
    /// Whether the transform tool has copied something that can be pasted.
    bool PasteTransformImageAvailable() const;

    // The composed image.
    /// The camera's layers at the current time, with ghosts and the stroke being drawn. Composed again only
    /// if CacheUpdateRequired. Straight alpha, Format_RGBA8888; owned here; null for a camera without layers.
    /// When memory is short, logs an error and returns what was composed before.
    QImage* GetFlattenedImage(const QString& camera);
    bool CacheUpdateRequired(const QString& camera);
    bool MasterCacheUpdateRequired(const QString& camera) const;
    void QueueMasterCacheUpdate(const QString& camera);
    void MasterCacheUpdateCompleted(const QString& camera);
    void ForceCacheUpdate(const QString& camera, int index);
    /// Call when the user's ghosting settings have changed.
    void OnGhostingChanged();
    /// Composes the camera's layers at any frame, with the ghosts of the user's settings if `ghosting` is
    /// set. Leaves current frames, flags and caches unchanged. Returns a null image without layers.
    QImage ComposeFrame(const QString& camera, int frame, bool ghosting) const;

    /// The frames that the camera's visible layers show at a frame number; None for a layer without one. Two
    /// frame numbers with the same answer look the same, as long as the drawing does not change.
    std::vector<FrameId> GetShownFrames(const QString& camera, int frame) const;
    /// Decodes one drawing that the camera's visible layers show at a frame number and that the picture cache
    /// lacks. Returns false if it lacks none, or has no room. Throws std::bad_alloc when memory is short.
    bool ReadAhead(const QString& camera, int frame);

    // The light table (see LightTable), which changes what is seen and never the drawing.
    const LightTable& GetLightTable() const;
    void SetLayerMarked(LayerId layer, bool marked);
    void SetPinned(const DrawingId& drawing, bool pinned);
    void UnpinAll();
    /// Shows, in place of what the camera shows now, the drawing so many keys on (before, if negative) of its
    /// active layer, or the picture of all visible layers there; static layers then count no key. Past the
    /// first and the last key it stays there. Ghosts, pins and the stroke are not seen meanwhile. Lasts until
    /// EndFlip, or until the drawing, the time or the active layer or camera changes or a stroke begins.
    /// Returns false if there is no drawing to show.
    bool Flip(const QString& camera, int steps, bool allLayers);
    /// Shows the current drawings again.
    void EndFlip();

    /// Refills the layer manager panel; does nothing unless this is the master.
    void UpdateLayerManagerDialog();

    // Part of the interface for scripts and other tools; not called here.
    /// The frame number used for playback.
    int GetFrame() const;
    void QueueMasterCacheUpdateAll();
    /// Deletes the layers of every camera. Without `updatePanel` the layer manager panel is not refreshed.
    void DeleteAllLayers(bool updatePanel);
    /// Gives every pixel that is not fully transparent the colour's red, green and blue.
    static void OverrideImageColor(QImage& image, const QColor& color);

private:
    Frame* FindFrame(const DrawingId& drawing) const;
    bool StrokeIsShown(const LayerPlace& place) const;
    void SetStrokeAdditions(PressAdditions additions);
    std::unique_ptr<Layer> DetachLayer(const QString& camera, int index);

    using LayerList = std::vector<std::unique_ptr<Layer>>;
    /// What is stored for a camera. Without a place and without layers it is as if it were not there.
    struct Stack {
        LayerList layers; ///< from the bottom up
        bool keepsPlace = false;
    };

    Stack& MakeRoom(const QString& camera, int count);
    QList<const Layer*> FindFlippedLayers(const QString& camera, bool allLayers) const;
    QList<Frame*> FindFlippedFrames(const QString& camera) const;
    bool FlipIsStale(const QString& camera) const;

    const LayerList& FindLayers(const QString& camera) const;
    void Changed(DocumentChanges changes);
    void NotifyListener();
    void OnLastLayerRemoved(const QString& camera);

    /// What the way back of a rename needs.
    struct CameraRename {
        QString from;
        QString to;
        bool isShared = false;          ///< whether another camera has one of these names
        bool meetsOthers = false;       ///< whether layers have to be kept apart
        bool hadPlace = false;          ///< whether `from` had a place to keep
        bool wasPlaceTaken = false;     ///< whether `to` had one
        QString aside;                  ///< the name given to the layers that stood under `to`; or empty
        std::vector<LayerId> residents; ///< the layers that stood under `to`
        LayerId activeResident = LayerId::None;
        LayerId activeMover = LayerId::None;
        QString activeBefore; ///< the active camera before and after
        QString activeAfter;
    };

    std::vector<LayerId> GetLayerIds(const QString& camera) const;
    LayerId GetActiveLayerId(const QString& camera) const;
    QString GetUniqueCameraName(const QString& name) const;
    CameraRename Join(const QString& from, const QString& to);
    void Separate(const CameraRename& rename);
    static QString NameAfterSeparation(const QString& camera, const CameraRename& rename);
    void RenameStack(const QString& from, const QString& to);
    void ExchangeStacks(const QString& one, const QString& other);
    void MoveOnTop(const QString& from, const QString& to, const std::vector<LayerId>& staying);
    void ActivateOneOf(const QString& camera, LayerId preferred);
    void FollowCamera(const QString& from, const QString& to);

    std::map<QString, Stack> stacks_;
    std::vector<CameraRename> renames_; ///< in their order, without those that were undone
    QString activeCamera_;
    QString previousActiveCamera_;
    bool master_ = false;
    bool playing_ = false;
    bool cacheUpdateRequired_ = false;
    bool shortOfMemory_ = false; ///< so that the composed image is stale, as was reported
    int frame_ = 0;
    QStringList masterCacheQueue_;
    DocumentChanges changes_ = DocumentChange::None; ///< collected, not yet passed to the listener
    int changeScopes_ = 0;
    std::unique_ptr<StrokePainter> stroke_;
    PressAdditions strokeAdditions_; ///< what the press of the stroke added
    PressAdditions pressAdditions_;  ///< the same before the stroke begins
    std::unique_ptr<Compositor> compositor_;
    std::unique_ptr<LightTable> lightTable_;
};

} // namespace vellix
