#include "commands/StrokeCommit.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/FrameTime.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <memory>

namespace vellix {

StrokeCommit::StrokeCommit(const QString& camera, int layerAdded, bool frameAdded)
    : m_camera(camera)
    , m_addedLayer(layerAdded)
    , m_frameAdded(frameAdded) {}

bool StrokeCommit::Commit(BaseNode& node) {
    if (m_addedLayer >= 0 && node.LayerCount(m_camera) == 1) {
        const QString previous = node.GetPreviousActiveCamera();
        if (!previous.isEmpty() && previous != m_camera) {
            m_previousCamera = previous;
            m_previousActiveLayer = node.GetActiveLayerIndex(previous);
        }
    }
    Layer* layer = node.GetActiveLayer(m_camera);
    if (layer == nullptr) {
        return false;
    }
    if (m_frameAdded) {
        m_frameTime = layer->GetState() == LayerState::Static
                          ? FromWholeFrames(Settings::defaultStaticFrameTime)
                          : MayaUtil::GetPlaybackTime();
    }
    if (const Frame* frame = layer->GetCurrentFrame()) {
        m_paintedFrame = frame->GetTimeValue();
    }
    return node.CommitActiveStroke(m_camera, m_image);
}

bool StrokeCommit::Undo(BaseNode& node) {
    if (!ExchangeImage(node)) {
        return false;
    }
    if (m_frameAdded) {
        node.RemoveFrame(m_camera, m_frameTime);
        if (Layer* layer = node.GetActiveLayer(m_camera)) {
            layer->UpdateCurrentFrameIndex(); // RemoveFrame left it at the removed frame's time
        }
    }
    if (m_addedLayer >= 0) {
        node.RemoveLayer(m_camera, m_addedLayer);
        if (m_previousActiveLayer >= 0) {
            node.SetActiveLayer(m_previousCamera, m_previousActiveLayer, true);
        }
    }
    return true;
}

bool StrokeCommit::Redo(BaseNode& node) {
    if (m_addedLayer >= 0) {
        if (node.InsertLayer(m_camera, m_addedLayer, QString()) < 0) {
            return false;
        }
        node.SetActiveLayer(m_camera, m_addedLayer, true);
    }
    if (m_frameAdded && node.AddFrame(m_camera, m_frameTime) < 0) {
        return false;
    }
    return !m_image.isEmpty() && ExchangeImage(node);
}

bool StrokeCommit::ExchangeImage(BaseNode& node) {
    Layer* layer = node.GetActiveLayer(m_camera);
    if (layer == nullptr || !layer->FrameExists(m_paintedFrame)) {
        return false;
    }
    layer->UpdateCurrentFrameIndex(m_paintedFrame);
    const bool exchanged = node.UndoStroke(m_camera, m_image);
    layer->UpdateCurrentFrameIndex();
    return exchanged;
}

} // namespace vellix
