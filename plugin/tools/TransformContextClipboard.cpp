// The transform tool's menu: transforming a copy, cutting, copying and pasting.

#include "core/Layer.h"
#include "node/BaseNode.h"
#include "tools/TransformContext.h"

namespace vellix {

void TransformContext::Transform(bool copy) {
    if (m_stage != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    m_copy = copy;
    if (!EnterTransformStage(true)) {
        m_copy = false;
    } else if (copy) {
        RememberCopiedRectangle(); // the duplicate is what can be pasted from now on
    }
}

void TransformContext::Copy(bool keep) {
    if (m_stage != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    m_copy = true;
    if (!EnterTransformStage(keep)) {
        m_cut = m_copy = false;
        return;
    }
    RememberCopiedRectangle();
    if (keep) {
        completeAction();
    } else {
        deleteAction();
    }
}

void TransformContext::Cut() {
    if (m_stage != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    m_cut = true;
    Copy(true);
}

bool TransformContext::PasteAvailable() const {
    const BaseNode* node = BaseNode::GetMaster();
    return node != nullptr && m_copiedLeft <= m_copiedRight && m_copiedBottom <= m_copiedTop &&
           node->PasteTransformImageAvailable();
}

void TransformContext::Paste(bool andTransform, const QPoint& position) {
    if (m_stage != SELECT_STAGE || !PasteAvailable()) {
        return;
    }
    if (!InitializeSelectStage(true)) {
        CancelStroke(); // a layer may have been created that cannot be pasted into
        return;
    }
    // As large as it was copied, in the image; in the view as it is now.
    const float scale = PlacementIn(*BaseNode::GetMaster(), m_view).scale / m_copiedScale;
    const int width = qRound(static_cast<float>(m_copiedRight - m_copiedLeft) * scale);
    const int height = qRound(static_cast<float>(m_copiedTop - m_copiedBottom) * scale);
    // One pixel larger each way than what was copied, which is intended.
    const int top = m_view.portHeight() - position.y();
    const int left = position.x();
    const int bottom = top - (height + 1);
    const int right = left + 1 + width;
    m_corners = {{QPoint(left, top), QPoint(left, bottom), QPoint(right, bottom), QPoint(right, top)}};
    completeAction();
    if (!andTransform && m_stage == TRANSFORM_STAGE) {
        completeAction();
    }
}

void TransformContext::RememberCopiedRectangle() {
    const BaseNode* node = GetSelectionNode();
    const Layer* layer = node != nullptr ? node->GetActiveLayer(m_camera) : nullptr;
    if (layer == nullptr || layer->GetCurrentFrame() == nullptr || m_placement.scale <= 0.0f) {
        return; // nothing was copied
    }
    m_copiedLeft = m_corners[0].x();
    m_copiedTop = m_corners[0].y();
    m_copiedRight = m_corners[2].x();
    m_copiedBottom = m_corners[2].y();
    m_copiedScale = m_placement.scale;
}

} // namespace vellix
