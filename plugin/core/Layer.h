#pragma once

#include "core/DocumentListener.h"
#include "core/LayerState.h"
#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <QImage>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace vellix {

class Frame;

using FrameList = std::vector<std::unique_ptr<Frame>>;

/// An ordered list of keyed frames. At any time a layer shows the last frame keyed at or before it. Times are
/// whole frames in the host's current time unit; no two frames share one.
class Layer : private NonCopyable {
public:
    Layer();
    ~Layer();

    /// What is told of the layer's changes from now on; an empty function for nobody.
    void SetChangeTeller(std::function<void(DocumentChange)> tell);

    void SetName(const QString& name);
    QString GetName() const;
    void SetVisible(bool visible);
    bool IsVisible() const;
    /// 0..1, clamped. Kept with the layer, not applied to its picture.
    void SetOpacity(float opacity);
    float GetOpacity() const;
    void SetState(LayerState state);
    LayerState GetState() const;
    void SetActive(bool active);
    bool IsActive() const;

    int FrameCount() const;
    /// Has the layer's picture changed since it was last read with GetImage?
    bool CacheUpdateRequired() const;
    void ForceCacheUpdate();
    /// After times of frames have changed without the layer: finds the current frame anew.
    void FramesChanged();

    /// The frame `offset` keys after the current one (before it when negative), borrowed; null when there is
    /// none or the layer is hidden. Counts as reading the picture.
    Frame* ReadFrame(int offset);

    /// Borrowed; null when out of range.
    Frame* GetFrame(int index) const;
    /// The frame shown now; null before the first key.
    Frame* GetCurrentFrame() const;
    int GetCurrentFrameIndex() const;
    /// Index of the frame shown at a time; -1 before the first key.
    int FindFrameIndex(int frame) const;
    void UpdateCurrentFrameIndex(int frame);
    void UpdateCurrentFrameIndex();

    bool FrameExists(int frame) const;
    bool FrameExists(const MTime& time) const;
    /// At the playback time; for a static layer, at or before it.
    bool FrameExists() const;
    bool StaticFrameExists() const;
    /// The key nearest before or after the playback time, borrowed; beyond the first or last one null, or
    /// with `wrap` the key at the other end.
    Frame* GetPreviousFrame(bool wrap) const;
    Frame* GetNextFrame(bool wrap) const;
    /// A packed copy of the frame keyed at the time; null when there is none.
    std::unique_ptr<Frame> GetFrameCopy(const MTime& time) const;
    void GetFrameTimes(QList<int>& times) const;
    /// Sets the times of the first frames. The caller keeps them in order and refreshes what depends on them.
    void SetFrameTimes(const QList<int>& times);

    /// Takes ownership of the frame, also when it refuses; returns its index, or -1 for null or a time that
    /// is taken.
    int InsertFrame(Frame* frame);
    int AddFrame(const MTime& time);
    int AddFrame();
    /// Hands the frame at the time to the caller; null when there is none.
    std::unique_ptr<Frame> RemoveFrame(const MTime& time);
    std::unique_ptr<Frame> RemoveFrame();
    /// Hands over all frames at those times, which rise, in their order. Many frames cost one pass.
    FrameList TakeFrames(const std::vector<int>& times);
    /// Takes the frames whose times are free, in one pass, and returns these times, rising; the others stay
    /// in the list.
    std::vector<int> PutFrames(FrameList& frames);

    // Part of the interface for scripts and other tools; not called here.
    /// Pixels of the frame that ReadFrame() gives, owned by the frame; a shared null image for none.
    QImage* GetImage(int offset);
    /// Replaces the pixels of the current frame, if there is one.
    void SetImage(const QImage& image);
    /// The current frame index stays as it was, for the caller to update.
    void RemoveAllFrames();

private:
    int FindKey(int frame) const;
    void Changed(DocumentChange change);

    std::function<void(DocumentChange)> tell_;
    QString name_;
    bool active_ = false;
    bool visible_ = true;
    bool cacheUpdateRequired_ = true;
    float opacity_ = 1.0f;
    LayerState state_ = LayerState::Animated;
    int currentFrameIndex_ = -1;
    FrameList frames_; ///< by rising time
};

} // namespace vellix
