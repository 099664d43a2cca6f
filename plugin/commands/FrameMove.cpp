#include "commands/FrameMove.h"

#include "core/Frame.h"
#include "host/FrameTime.h"

#include <QString>

namespace vellix {

FrameMove::FrameMove(int offset, int first, int last)
    : m_offset(offset)
    , m_first(first)
    , m_last(last) {}

bool FrameMove::FindDestinations(const Layer& layer, QString& refusal) {
    m_from.clear();
    m_to.clear();
    for (int i = 0; i < layer.FrameCount(); ++i) {
        const int time = layer.GetFrame(i)->GetTimeValue();
        if (time < m_first || time > m_last) {
            continue;
        }
        const qint64 wanted = qint64(time) + m_offset;
        if (!IsWholeFrame(wanted)) {
            refusal = QString("Move Failed. Time %1 is out of range").arg(wanted);
            return false;
        }
        const int destination = int(wanted);
        const bool vacated = destination >= m_first && destination <= m_last;
        if (!vacated && layer.FrameExists(destination)) {
            refusal = QString("Move Failed. A frame already exists at time %1").arg(destination);
            return false;
        }
        m_from.push_back(time);
        m_to.push_back(destination);
    }
    return true;
}

bool FrameMove::Do(Layer& layer, QString& refusal) {
    if (!FindDestinations(layer, refusal)) {
        return false;
    }
    FrameList frames = layer.TakeFrames(m_from);
    m_before.clear();
    for (std::size_t i = 0; i < frames.size(); ++i) {
        m_before.push_back(frames[i]->GetTime());
        frames[i]->SetTimeValue(m_to[i]);
    }
    layer.PutFrames(frames);
    return true;
}

bool FrameMove::Undo(Layer& layer) {
    FrameList frames = layer.TakeFrames(m_to);
    for (std::size_t i = 0; i < frames.size() && i < m_before.size(); ++i) {
        frames[i]->SetTime(m_before[i]);
    }
    layer.PutFrames(frames);
    return frames.empty();
}

} // namespace vellix
