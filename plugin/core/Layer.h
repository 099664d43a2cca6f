#pragma once

#include "core/DocumentListener.h"
#include "core/Identity.h"
#include "core/LayerState.h"
#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <QList>
#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

class QImage;

namespace vellix {

class Frame;

struct FrameTime {
    FrameId frame;
    MTime time;
};

inline FrameId FrameOf(const FrameTime& time) {
    return time.frame;
}

using FrameList = std::vector<std::unique_ptr<Frame>>;

/// An ordered list of keyed frames. A layer displays the last frame keyed at or before the current time.
/// Times are whole frames in the host's current time unit; no two frames share one.
class Layer : private NonCopyable {
public:
    Layer();
    ~Layer();

    /// Sets the function that is called after each change of the layer; an empty one for none.
    void SetChangeCallback(std::function<void(DocumentChange)> onChange);

    LayerId GetId() const;
    /// A layer of the same name and settings with copies of the frames, all with new identities.
    std::unique_ptr<Layer> Copy() const;

    void SetName(const QString& name);
    QString GetName() const;
    void SetVisible(bool visible);
    bool IsVisible() const;
    /// 0..1, clamped. Stored with the layer; composition does not apply it.
    void SetOpacity(float opacity);
    float GetOpacity() const;
    void SetState(LayerState state);
    LayerState GetState() const;
    void SetActive(bool active);
    bool IsActive() const;

    int FrameCount() const;
    /// Whether the layer's picture has changed since GetImage or ReadFrame last read it.
    bool CacheUpdateRequired() const;
    void ForceCacheUpdate();
    /// Call after the times of frames were changed directly: finds the current frame again and marks the
    /// picture as changed.
    void FramesChanged();

    /// The frame `offset` keys after the current one (before it if negative), borrowed. Null if there is none
    /// or the layer is hidden. Marks the layer's picture as read (see CacheUpdateRequired).
    Frame* ReadFrame(int offset);

    /// Logs an error, once, if the picture of one of this layer's frames was found not to decode. Null does
    /// nothing.
    void ReportDamage(const Frame* frame) const;

    /// The frame at an index, borrowed; null if the index is out of range.
    Frame* GetFrame(int index) const;
    /// The frame with this identity, borrowed; null if the layer does not hold it.
    Frame* FindFrame(FrameId id) const;
    /// The frame displayed now, borrowed; null before the first key.
    Frame* GetCurrentFrame() const;
    int GetCurrentFrameIndex() const;
    /// Index of the frame displayed at a time; -1 before the first key.
    int FindFrameIndex(int frame) const;
    /// Makes the frame displayed at the time the current one.
    void UpdateCurrentFrameIndex(int frame);
    /// The same for the playback time.
    void UpdateCurrentFrameIndex();

    /// Whether a frame is keyed at exactly this time.
    bool FrameExists(int frame) const;
    bool FrameExists(const MTime& time) const;
    /// Whether a frame is keyed at the playback time; for a static layer, at or before it.
    bool FrameExists() const;
    /// Whether a frame is keyed at or before the current time.
    bool StaticFrameExists() const;
    /// The nearest key before or after the playback time, borrowed. Past the first or last key: null or, with
    /// `wrap`, the key at the other end.
    Frame* GetPreviousFrame(bool wrap) const;
    Frame* GetNextFrame(bool wrap) const;
    /// A packed copy of the frame keyed at the time; null if there is none.
    std::unique_ptr<Frame> GetFrameCopy(const MTime& time) const;
    void GetFrameTimes(QList<int>& times) const;
    /// Sets the times of the first `times.size()` frames. The caller keeps them in order and calls
    /// FramesChanged.
    void SetFrameTimes(const QList<int>& times);

    /// Takes ownership of the frame, even if it is refused. Returns its index, or -1 for null or a time that
    /// is taken.
    int InsertFrame(Frame* frame);
    int AddFrame(const MTime& time);
    int AddFrame();
    /// Removes the frame at the time and hands it to the caller; null if there is none.
    std::unique_ptr<Frame> RemoveFrame(const MTime& time);
    std::unique_ptr<Frame> RemoveFrame();
    std::unique_ptr<Frame> RemoveFrame(FrameId id);
    /// Removes these frames in one pass, and hands them over in the order of their times. Frames that the
    /// layer does not hold are passed over.
    FrameList TakeFrames(const std::vector<FrameId>& ids);
    /// Inserts the frames in one pass, each after those of its time, and empties the list; the caller checks
    /// which times are free. The caller keeps the frames, and nothing is changed, if memory is too short.
    void PutFrames(FrameList& frames);
    /// Gives frames new times, at most one each, in one pass; the caller checks which times are free. Frames
    /// that the layer does not hold are passed over.
    void MoveFrames(std::vector<FrameTime> times);
    /// Makes room for so many more frames, to put them next: that needs no memory then.
    void ReserveFrames(std::size_t count);

    /// Names the frame that a press has added for a stroke that has not ended; None for none. The frame is
    /// empty and not yet part of an undo step, so it gives way when a frame is put at its time, and when the
    /// layer leaves the document.
    void SetProvisionalFrame(FrameId id);
    FrameId GetProvisionalFrame() const;
    /// Whether the provisional frame is keyed at this time.
    bool IsBeingDrawn(int frame) const;
    void DropProvisionalFrame();

    // Part of the interface for scripts and other tools; not called here.
    /// Pixels of the frame that ReadFrame() returns, owned by that frame; a shared null image if there is
    /// none.
    QImage* GetImage(int offset);
    /// Replaces the pixels of the current frame, if there is one.
    void SetImage(const QImage& image);
    /// Does not update the current frame index; the caller does.
    void RemoveAllFrames();

private:
    int FindKey(int frame) const;
    void MakeRoomAt(int frame);
    void Changed(DocumentChange change);

    const LayerId id_;
    std::function<void(DocumentChange)> onChange_;
    QString name_;
    bool active_ = false;
    bool visible_ = true;
    bool cacheUpdateRequired_ = true;
    float opacity_ = 1.0f;
    LayerState state_ = LayerState::Animated;
    int currentFrameIndex_ = -1;
    FrameList frames_; ///< ascending in time
    FrameId provisional_ = FrameId::None;
};

} // namespace vellix
