#include "core/Layer.h"

#include "core/Frame.h"
#include "host/FrameTime.h"
#include "host/MayaUtil.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vellix {

namespace {

bool IsEarlier(const std::unique_ptr<Frame>& frame, const std::unique_ptr<Frame>& other) {
    return frame->GetTimeValue() < other->GetTimeValue();
}

} // namespace

Layer::Layer()
    : m_name(QStringLiteral("New Layer")) {}

Layer::~Layer() = default;

void Layer::SetChangeTeller(std::function<void(DocumentChange)> tell) {
    m_tell = std::move(tell);
}

void Layer::Changed(DocumentChange change) {
    if (m_tell) {
        m_tell(change);
    }
}

void Layer::SetName(const QString& name) {
    m_name = name;
    Changed(DocumentChange::LayerSettings);
}

QString Layer::GetName() const {
    return m_name;
}

void Layer::SetVisible(bool visible) {
    if (m_visible != visible) {
        m_visible = visible;
        m_cacheUpdateRequired = true;
        Changed(DocumentChange::LayerSettings);
    }
}

bool Layer::IsVisible() const {
    return m_visible;
}

void Layer::SetOpacity(float opacity) {
    // Written so that a number that is none counts as 0.
    const float clamped = opacity > 0.0f ? std::min(opacity, 1.0f) : 0.0f;
    if (m_opacity != clamped) {
        m_opacity = clamped;
        m_cacheUpdateRequired = true;
        Changed(DocumentChange::LayerSettings);
    }
}

float Layer::GetOpacity() const {
    return m_opacity;
}

void Layer::SetState(LayerState state) {
    m_state = state;
    Changed(DocumentChange::LayerSettings);
}

LayerState Layer::GetState() const {
    return m_state;
}

void Layer::SetActive(bool active) {
    m_active = active;
}

bool Layer::IsActive() const {
    return m_active;
}

int Layer::FrameCount() const {
    return int(m_frames.size());
}

bool Layer::CacheUpdateRequired() const {
    return m_cacheUpdateRequired;
}

void Layer::ForceCacheUpdate() {
    m_cacheUpdateRequired = true;
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
    m_cacheUpdateRequired = false;
    const qint64 index = qint64(m_currentFrameIndex) + offset;
    return m_visible && index >= 0 && index < FrameCount() ? GetFrame(int(index)) : nullptr;
}

void Layer::SetImage(const QImage& image) {
    if (Frame* frame = GetCurrentFrame()) {
        frame->SetImage(image);
        ForceCacheUpdate();
    }
}

Frame* Layer::GetFrame(int index) const {
    return index >= 0 && index < FrameCount() ? m_frames[std::size_t(index)].get() : nullptr;
}

Frame* Layer::GetCurrentFrame() const {
    return GetFrame(m_currentFrameIndex);
}

int Layer::GetCurrentFrameIndex() const {
    return m_currentFrameIndex;
}

int Layer::FindFrameIndex(int frame) const {
    const auto later =
        std::partition_point(m_frames.begin(), m_frames.end(),
                             [frame](const std::unique_ptr<Frame>& f) { return f->GetTimeValue() <= frame; });
    return int(later - m_frames.begin()) - 1;
}

void Layer::UpdateCurrentFrameIndex(int frame) {
    const int index = FindFrameIndex(frame);
    if (m_currentFrameIndex != index) {
        m_currentFrameIndex = index;
        m_cacheUpdateRequired = true;
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
        std::partition_point(m_frames.begin(), m_frames.end(),
                             [frame](const std::unique_ptr<Frame>& f) { return f->GetTimeValue() < frame; });
    return found == m_frames.end() || (*found)->GetTimeValue() != frame ? -1 : int(found - m_frames.begin());
}

bool Layer::FrameExists(const MTime& time) const {
    return FrameExists(ToWholeFrames(time));
}

bool Layer::FrameExists() const {
    if (m_state == LayerState::Static && StaticFrameExists()) {
        return true;
    }
    return FrameExists(MayaUtil::GetPlaybackTimeValue());
}

bool Layer::StaticFrameExists() const {
    return m_currentFrameIndex >= 0;
}

Frame* Layer::GetPreviousFrame(bool wrap) const {
    const int now = MayaUtil::GetPlaybackTimeValue();
    const auto found =
        std::find_if(m_frames.rbegin(), m_frames.rend(),
                     [now](const std::unique_ptr<Frame>& f) { return f->GetTimeValue() < now; });
    if (found != m_frames.rend()) {
        return found->get();
    }
    return wrap && !m_frames.empty() ? m_frames.back().get() : nullptr;
}

Frame* Layer::GetNextFrame(bool wrap) const {
    const int now = MayaUtil::GetPlaybackTimeValue();
    const auto found = std::find_if(m_frames.begin(), m_frames.end(), [now](const std::unique_ptr<Frame>& f) {
        return f->GetTimeValue() > now;
    });
    if (found != m_frames.end()) {
        return found->get();
    }
    return wrap && !m_frames.empty() ? m_frames.front().get() : nullptr;
}

std::unique_ptr<Frame> Layer::GetFrameCopy(const MTime& time) const {
    const Frame* frame = GetFrame(FindKey(ToWholeFrames(time)));
    return frame == nullptr ? nullptr : std::make_unique<Frame>(*frame);
}

void Layer::GetFrameTimes(QList<int>& times) const {
    times.clear();
    for (const auto& frame : m_frames) {
        const int time = frame->GetTimeValue();
        // After a change of the time unit two frames may fall on the same time.
        if (times.isEmpty() || times.last() != time) {
            times.append(time);
        }
    }
}

void Layer::SetFrameTimes(const QList<int>& times) {
    const int count = std::min(times.size(), FrameCount());
    for (int i = 0; i < count; ++i) {
        m_frames[std::size_t(i)]->SetTimeValue(times[i]);
    }
}

int Layer::InsertFrame(Frame* frame) {
    std::unique_ptr<Frame> owned(frame);
    if (owned == nullptr || FrameExists(owned->GetTimeValue())) {
        return -1;
    }
    const int index = FindFrameIndex(owned->GetTimeValue()) + 1;
    m_frames.insert(m_frames.begin() + index, std::move(owned));
    FramesChanged();
    return index;
}

int Layer::AddFrame(const MTime& time) {
    return InsertFrame(new Frame(time));
}

int Layer::AddFrame() {
    return AddFrame(MayaUtil::GetPlaybackTime());
}

std::unique_ptr<Frame> Layer::RemoveFrame(const MTime& time) {
    const int frame = ToWholeFrames(time);
    const int index = FindKey(frame);
    if (index < 0) {
        return nullptr;
    }
    std::unique_ptr<Frame> removed = std::move(m_frames[std::size_t(index)]);
    m_frames.erase(m_frames.begin() + index);
    UpdateCurrentFrameIndex(frame);
    m_cacheUpdateRequired = true; // the current drawing may be the same, the ghosts are not
    Changed(DocumentChange::Frames);
    return removed;
}

std::unique_ptr<Frame> Layer::RemoveFrame() {
    return RemoveFrame(MayaUtil::GetPlaybackTime());
}

FrameList Layer::TakeFrames(const std::vector<int>& times) {
    const auto first = std::stable_partition(
        m_frames.begin(), m_frames.end(), [&times](const std::unique_ptr<Frame>& frame) {
            return !std::binary_search(times.begin(), times.end(), frame->GetTimeValue());
        });
    FrameList taken(std::make_move_iterator(first), std::make_move_iterator(m_frames.end()));
    m_frames.erase(first, m_frames.end());
    FramesChanged();
    return taken;
}

std::vector<int> Layer::PutFrames(FrameList& frames) {
    const auto refused =
        std::stable_partition(frames.begin(), frames.end(), [this](const std::unique_ptr<Frame>& frame) {
            return !FrameExists(frame->GetTimeValue());
        });
    std::stable_sort(frames.begin(), refused, IsEarlier);
    std::vector<int> times;
    for (auto frame = frames.begin(); frame != refused; ++frame) {
        times.push_back((*frame)->GetTimeValue());
    }
    const auto middle = m_frames.insert(m_frames.end(), std::make_move_iterator(frames.begin()),
                                        std::make_move_iterator(refused));
    std::inplace_merge(m_frames.begin(), middle, m_frames.end(), IsEarlier);
    frames.erase(frames.begin(), refused);
    FramesChanged();
    return times;
}

void Layer::FramesChanged() {
    UpdateCurrentFrameIndex();
    m_cacheUpdateRequired = true; // the current drawing may be the same, the ghosts are not
    Changed(DocumentChange::Frames);
}

void Layer::RemoveAllFrames() {
    m_frames.clear();
    m_cacheUpdateRequired = true;
    Changed(DocumentChange::Frames);
}

} // namespace vellix
