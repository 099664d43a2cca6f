#include "core/Layer.h"

#include "core/Frame.h"
#include "core/FrameTable.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"

#include <QImage>

#include <algorithm>
#include <iterator>
#include <utility>

namespace vellix {

namespace {

/// By the exact times: a change of the time unit can put two frames on one whole frame.
bool IsEarlier(const std::unique_ptr<Frame>& frame, const std::unique_ptr<Frame>& other) {
    return frame->GetTime() < other->GetTime();
}

void SortFrames(FrameList& frames) {
    if (!std::is_sorted(frames.begin(), frames.end(), IsEarlier)) {
        std::stable_sort(frames.begin(), frames.end(), IsEarlier);
    }
}

std::function<bool(const std::unique_ptr<Frame>&)> HasId(FrameId id) {
    return [id](const std::unique_ptr<Frame>& frame) { return frame->GetId() == id; };
}

LayerId NewLayerId() {
    static quint64 last = 0;
    return static_cast<LayerId>(++last);
}

} // namespace

Layer::Layer()
    : id_(NewLayerId())
    , name_(QStringLiteral("New Layer")) {}

Layer::~Layer() = default;

LayerId Layer::GetId() const {
    return id_;
}

std::unique_ptr<Layer> Layer::Copy() const {
    auto copy = std::make_unique<Layer>();
    copy->name_ = name_;
    copy->active_ = active_;
    copy->visible_ = visible_;
    copy->opacity_ = opacity_;
    copy->state_ = state_;
    for (const std::unique_ptr<Frame>& frame : frames_) {
        copy->frames_.push_back(std::make_unique<Frame>(*frame));
    }
    copy->currentFrameIndex_ = currentFrameIndex_;
    return copy;
}

void Layer::SetChangeCallback(std::function<void(DocumentChange)> onChange) {
    onChange_ = std::move(onChange);
}

void Layer::Changed(DocumentChange change) {
    if (onChange_) {
        onChange_(change);
    }
}

void Layer::SetName(const QString& name) {
    name_ = name;
    Changed(DocumentChange::LayerSettings);
}

QString Layer::GetName() const {
    return name_;
}

void Layer::SetVisible(bool visible) {
    if (visible_ != visible) {
        visible_ = visible;
        cacheUpdateRequired_ = true;
        Changed(DocumentChange::LayerSettings);
    }
}

bool Layer::IsVisible() const {
    return visible_;
}

void Layer::SetOpacity(float opacity) {
    // This order of the comparison turns NaN into 0.
    const float clamped = opacity > 0.0f ? std::min(opacity, 1.0f) : 0.0f;
    if (opacity_ != clamped) {
        opacity_ = clamped;
        cacheUpdateRequired_ = true;
        Changed(DocumentChange::LayerSettings);
    }
}

float Layer::GetOpacity() const {
    return opacity_;
}

void Layer::SetState(LayerState state) {
    state_ = state;
    Changed(DocumentChange::LayerSettings);
}

LayerState Layer::GetState() const {
    return state_;
}

void Layer::SetActive(bool active) {
    active_ = active;
}

bool Layer::IsActive() const {
    return active_;
}

int Layer::FrameCount() const {
    return static_cast<int>(frames_.size());
}

bool Layer::CacheUpdateRequired() const {
    return cacheUpdateRequired_;
}

void Layer::ForceCacheUpdate() {
    cacheUpdateRequired_ = true;
    Changed(DocumentChange::Pictures);
}

QImage* Layer::GetImage(int offset) {
    static QImage nullImage;
    if (Frame* frame = ReadFrame(offset)) {
        return &frame->GetImage();
    }
    nullImage = QImage();
    return &nullImage;
}

Frame* Layer::ReadFrame(int offset) {
    cacheUpdateRequired_ = false;
    const qint64 index = static_cast<qint64>(currentFrameIndex_) + offset;
    return visible_ && index >= 0 && index < FrameCount() ? GetFrame(static_cast<int>(index)) : nullptr;
}

void Layer::ReportDamage(const Frame* frame) const {
    if (frame && frame->TakeNewDamage()) {
        Logger::Error(QStringLiteral("The picture of layer %1 at frame %2 cannot be decoded. It is shown as "
                                     "empty; its data is kept and saved as it is.")
                          .arg(name_, QString::number(frame->GetTimeValue())));
    }
}

void Layer::SetImage(const QImage& image) {
    if (Frame* frame = GetCurrentFrame()) {
        frame->SetImage(image);
        ForceCacheUpdate();
    }
}

Frame* Layer::GetFrame(int index) const {
    return index >= 0 && index < FrameCount() ? frames_[static_cast<std::size_t>(index)].get() : nullptr;
}

Frame* Layer::FindFrame(FrameId id) const {
    const auto found = std::find_if(frames_.begin(), frames_.end(), HasId(id));
    return found == frames_.end() ? nullptr : found->get();
}

Frame* Layer::GetCurrentFrame() const {
    return GetFrame(currentFrameIndex_);
}

int Layer::GetCurrentFrameIndex() const {
    return currentFrameIndex_;
}

int Layer::FindFrameIndex(int frame) const {
    const auto later =
        std::partition_point(frames_.begin(), frames_.end(),
                             [frame](const std::unique_ptr<Frame>& f) { return f->GetTimeValue() <= frame; });
    return static_cast<int>(later - frames_.begin()) - 1;
}

void Layer::UpdateCurrentFrameIndex(int frame) {
    const int index = FindFrameIndex(frame);
    if (currentFrameIndex_ != index) {
        currentFrameIndex_ = index;
        cacheUpdateRequired_ = true;
    }
}

void Layer::UpdateCurrentFrameIndex() {
    UpdateCurrentFrameIndex(MayaUtil::GetPlaybackTimeValue());
}

bool Layer::FrameExists(int frame) const {
    return FindKey(frame) >= 0;
}

int Layer::FindKey(int frame) const {
    const auto found =
        std::partition_point(frames_.begin(), frames_.end(),
                             [frame](const std::unique_ptr<Frame>& f) { return f->GetTimeValue() < frame; });
    return found == frames_.end() || (*found)->GetTimeValue() != frame
               ? -1
               : static_cast<int>(found - frames_.begin());
}

bool Layer::FrameExists(const MTime& time) const {
    return FrameExists(ToWholeFrames(time));
}

bool Layer::FrameExists() const {
    if (state_ == LayerState::Static && StaticFrameExists()) {
        return true;
    }
    return FrameExists(MayaUtil::GetPlaybackTimeValue());
}

bool Layer::StaticFrameExists() const {
    return currentFrameIndex_ >= 0;
}

Frame* Layer::GetPreviousFrame(bool wrap) const {
    const int now = MayaUtil::GetPlaybackTimeValue();
    const auto found = std::find_if(frames_.rbegin(), frames_.rend(), [now](const std::unique_ptr<Frame>& f) {
        return f->GetTimeValue() < now;
    });
    if (found != frames_.rend()) {
        return found->get();
    }
    return wrap && !frames_.empty() ? frames_.back().get() : nullptr;
}

Frame* Layer::GetNextFrame(bool wrap) const {
    const int now = MayaUtil::GetPlaybackTimeValue();
    const auto found = std::find_if(frames_.begin(), frames_.end(), [now](const std::unique_ptr<Frame>& f) {
        return f->GetTimeValue() > now;
    });
    if (found != frames_.end()) {
        return found->get();
    }
    return wrap && !frames_.empty() ? frames_.front().get() : nullptr;
}

std::unique_ptr<Frame> Layer::GetFrameCopy(const MTime& time) const {
    const Frame* frame = GetFrame(FindKey(ToWholeFrames(time)));
    return frame ? std::make_unique<Frame>(*frame) : nullptr;
}

void Layer::GetFrameTimes(QList<int>& times) const {
    times.clear();
    for (const auto& frame : frames_) {
        const int time = frame->GetTimeValue();
        // Changing the time unit can put two frames on the same time.
        if (times.isEmpty() || times.last() != time) {
            times.append(time);
        }
    }
}

void Layer::SetFrameTimes(const QList<int>& times) {
    const int count = std::min(times.size(), FrameCount());
    for (int i = 0; i < count; ++i) {
        frames_[static_cast<std::size_t>(i)]->SetTimeValue(times[i]);
    }
}

int Layer::InsertFrame(Frame* frame) {
    std::unique_ptr<Frame> owned(frame);
    if (!owned) {
        return -1;
    }
    MakeRoomAt(owned->GetTimeValue());
    if (FrameExists(owned->GetTimeValue())) {
        return -1;
    }
    const int index = FindFrameIndex(owned->GetTimeValue()) + 1;
    frames_.insert(frames_.begin() + index, std::move(owned));
    FramesChanged();
    return index;
}

int Layer::AddFrame(const MTime& time) {
    return FrameExists(time) ? -1 : InsertFrame(new Frame(time));
}

int Layer::AddFrame() {
    return AddFrame(MayaUtil::GetPlaybackTime());
}

std::unique_ptr<Frame> Layer::RemoveFrame(const MTime& time) {
    const int frame = ToWholeFrames(time);
    MakeRoomAt(frame);
    const int index = FindKey(frame);
    if (index < 0) {
        return nullptr;
    }
    std::unique_ptr<Frame> removed = std::move(frames_[static_cast<std::size_t>(index)]);
    frames_.erase(frames_.begin() + index);
    UpdateCurrentFrameIndex(frame);
    cacheUpdateRequired_ = true; // even if the current drawing is the same, the ghosts have changed
    Changed(DocumentChange::Frames);
    return removed;
}

std::unique_ptr<Frame> Layer::RemoveFrame() {
    return RemoveFrame(MayaUtil::GetPlaybackTime());
}

std::unique_ptr<Frame> Layer::RemoveFrame(FrameId id) {
    const auto found = std::find_if(frames_.begin(), frames_.end(), HasId(id));
    if (found == frames_.end()) {
        return nullptr;
    }
    std::unique_ptr<Frame> removed = std::move(*found);
    frames_.erase(found);
    FramesChanged();
    return removed;
}

FrameList Layer::TakeFrames(const std::vector<FrameId>& ids) {
    FrameTable<FrameId> wanted(ids);
    FrameList taken;
    taken.reserve(wanted.Size()); // what follows needs no memory
    const auto first =
        std::stable_partition(frames_.begin(), frames_.end(), [&wanted](const std::unique_ptr<Frame>& frame) {
            return !wanted.Find(frame->GetId());
        });
    std::move(first, frames_.end(), std::back_inserter(taken));
    frames_.erase(first, frames_.end());
    FramesChanged();
    return taken;
}

void Layer::MoveFrames(std::vector<FrameTime> times) {
    if (provisional_ != FrameId::None) { // saves converting the times
        for (const FrameTime& time : times) {
            MakeRoomAt(ToWholeFrames(time.time));
        }
    }
    FrameTable<FrameTime> table(std::move(times));
    for (const std::unique_ptr<Frame>& frame : frames_) {
        if (const FrameTime* const time = table.Find(frame->GetId())) {
            frame->SetTime(time->time);
        }
    }
    SortFrames(frames_);
    FramesChanged();
}

void Layer::ReserveFrames(std::size_t count) {
    frames_.reserve(frames_.size() + count);
}

void Layer::PutFrames(FrameList& frames) {
    ReserveFrames(frames.size());
    if (provisional_ != FrameId::None) { // saves converting the times
        for (const std::unique_ptr<Frame>& frame : frames) {
            MakeRoomAt(frame->GetTimeValue());
        }
    }
    SortFrames(frames);
    const auto middle = frames_.insert(frames_.end(), std::make_move_iterator(frames.begin()),
                                       std::make_move_iterator(frames.end()));
    std::inplace_merge(frames_.begin(), middle, frames_.end(), IsEarlier);
    frames.clear();
    FramesChanged();
}

void Layer::SetProvisionalFrame(FrameId id) {
    provisional_ = id;
}

FrameId Layer::GetProvisionalFrame() const {
    return provisional_;
}

bool Layer::IsBeingDrawn(int frame) const {
    if (provisional_ == FrameId::None) {
        return false;
    }
    const Frame* const there = GetFrame(FindKey(frame));
    return there != nullptr && there->GetId() == provisional_;
}

void Layer::DropProvisionalFrame() {
    if (provisional_ != FrameId::None) {
        RemoveFrame(std::exchange(provisional_, FrameId::None));
    }
}

/// A frame is put where a press has only just added an empty one.
void Layer::MakeRoomAt(int frame) {
    if (IsBeingDrawn(frame)) {
        DropProvisionalFrame();
    }
}

void Layer::FramesChanged() {
    UpdateCurrentFrameIndex();
    cacheUpdateRequired_ = true; // even if the current drawing is the same, the ghosts have changed
    Changed(DocumentChange::Frames);
}

void Layer::RemoveAllFrames() {
    frames_.clear();
    cacheUpdateRequired_ = true;
    Changed(DocumentChange::Frames);
}

} // namespace vellix
