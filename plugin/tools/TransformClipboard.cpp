#include "tools/TransformClipboard.h"

#include "node/BaseNode.h"
#include "paint/Stroke.h"

namespace vellix {

// --- stroke -----------------------------------------------------------------------------------------------

void TransformClipboard::Begin(bool paste) {
    paste_ = paste;
    cut_ = copy_ = false;
    ForgetCreated();
}

void TransformClipboard::ApplyTo(Stroke& stroke) const {
    stroke.liftedImageEmptied = cut_;
    stroke.copyToClipboard = copy_;
    stroke.pasted = paste_;
}

void TransformClipboard::End() {
    cut_ = copy_ = paste_ = false;
    ForgetCreated();
}

// --- copied rectangle -------------------------------------------------------------------------------------

void TransformClipboard::Remember(const Corners& corners, float scale) {
    left_ = corners[0].x();
    top_ = corners[0].y();
    right_ = corners[2].x();
    bottom_ = corners[2].y();
    scale_ = scale;
}

bool TransformClipboard::HasCopied() const {
    return left_ <= right_ && bottom_ <= top_;
}

TransformClipboard::Corners TransformClipboard::PlaceAt(const QPoint& leftTop, float scale) const {
    const float growth = scale / scale_;
    const int left = leftTop.x();
    const int top = leftTop.y();
    const int right = left + 1 + qRound(static_cast<float>(right_ - left_) * growth);
    const int bottom = top - (qRound(static_cast<float>(top_ - bottom_) * growth) + 1);
    return {{QPoint(left, top), QPoint(left, bottom), QPoint(right, bottom), QPoint(right, top)}};
}

// --- created layer and frame ------------------------------------------------------------------------------

bool TransformClipboard::PrepareToPaste(BaseNode& node, const QString& camera) {
    return node.PrepareForDraw(camera, createdLayer_, frameCreated_);
}

void TransformClipboard::ForgetCreated() {
    createdLayer_ = -1;
    frameCreated_ = false;
}

} // namespace vellix
