#include "tools/TransformClipboard.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"

#include <algorithm>

namespace vellix {

// --- stroke -----------------------------------------------------------------------------------------------

void TransformClipboard::Begin(bool paste) {
    m_paste = paste;
    m_cut = m_copy = false;
    ForgetCreated();
}

void TransformClipboard::ApplyTo(Stroke& stroke) const {
    stroke.liftedImageEmptied = m_cut;
    stroke.copyToClipboard = m_copy;
    stroke.pasted = m_paste;
}

void TransformClipboard::End() {
    m_cut = m_copy = m_paste = false;
    ForgetCreated();
}

// --- copied rectangle -------------------------------------------------------------------------------------

void TransformClipboard::Remember(const Corners& corners, float scale) {
    m_left = corners[0].x();
    m_top = corners[0].y();
    m_right = corners[2].x();
    m_bottom = corners[2].y();
    m_scale = scale;
}

bool TransformClipboard::HasCopied() const {
    return m_left <= m_right && m_bottom <= m_top;
}

TransformClipboard::Corners TransformClipboard::PlaceAt(const QPoint& leftTop, float scale) const {
    const float growth = scale / m_scale;
    const int left = leftTop.x();
    const int top = leftTop.y();
    const int right = left + 1 + qRound(static_cast<float>(m_right - m_left) * growth);
    const int bottom = top - (qRound(static_cast<float>(m_top - m_bottom) * growth) + 1);
    return {{QPoint(left, top), QPoint(left, bottom), QPoint(right, bottom), QPoint(right, top)}};
}

// --- created layer and frame ------------------------------------------------------------------------------

bool TransformClipboard::PrepareToPaste(BaseNode& node, const QString& camera) {
    const bool isPrepared = node.PrepareForDraw(camera, m_createdLayer, m_frameCreated);
    m_frameTime = MayaUtil::GetPlaybackTime();
    return isPrepared;
}

int TransformClipboard::RemoveCreated(LayerManager& layers, const QString& camera, const Layer* layer) const {
    if (m_createdLayer < 0 && !m_frameCreated) {
        return -1;
    }
    // Commands may have moved or removed the layer since, or made another one active.
    const QList<Layer*> stack = layers.GetLayers(camera);
    const auto found =
        std::find_if(stack.begin(), stack.end(), [&](const Layer* other) { return other == layer; });
    if (found == stack.end()) {
        return -1;
    }
    const auto index = static_cast<int>(found - stack.begin());
    if (m_frameCreated && (*found)->GetState() != LayerState::Locked) {
        const bool isStatic = (*found)->GetState() == LayerState::Static;
        (*found)->RemoveFrame(isStatic ? FromWholeFrames(Settings::defaultStaticFrameTime) : m_frameTime);
    }
    if (m_createdLayer >= 0) {
        layers.RemoveLayer(camera, index);
    }
    return index;
}

void TransformClipboard::ForgetCreated() {
    m_createdLayer = -1;
    m_frameCreated = false;
}

} // namespace vellix
