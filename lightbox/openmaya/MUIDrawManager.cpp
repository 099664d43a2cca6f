#include "openmaya/ApiBridge.h"
#include "openmaya/DrawList.h"
#include "openmaya/DrawState.h"

#include <maya/MUIDrawManager.h>

#include <algorithm>
#include <cmath>

using lightbox::ApiBridge;
using lightbox::DrawItem;

namespace {

QPointF PointOf(const MPoint& point) {
    return QPointF(point.x, point.y);
}

bool IsFinite(std::initializer_list<double> numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
}

float Fraction(float value) {
    return std::isnan(value) ? 0.0f : std::clamp(value, 0.0f, 1.0f);
}

} // namespace

namespace MHWRender {

MUIDrawManager::MUIDrawManager(std::unique_ptr<State> state)
    : state_(std::move(state)) {}

MUIDrawManager::~MUIDrawManager() = default;

void MUIDrawManager::beginDrawable(Selectability, unsigned int) {
    state_->next = DrawItem();
    state_->next.color = Qt::black;
    state_->isOpen = true;
}

void MUIDrawManager::endDrawable() {
    state_->isOpen = false;
}

void MUIDrawManager::setColor(const MColor& color) {
    state_->next.color =
        QColor::fromRgbF(Fraction(color.r), Fraction(color.g), Fraction(color.b), Fraction(color.a));
}

void MUIDrawManager::setLineWidth(float value) {
    state_->next.lineWidth = value > 0.0f ? value : 1.0f;
}

void MUIDrawManager::setDepthPriority(unsigned int priority) {
    state_->next.depthPriority = priority;
}

void MUIDrawManager::setFontSize(unsigned int fontSize) {
    state_->next.fontSize = fontSize;
}

void MUIDrawManager::setTexture(MTexture* texture) {
    state_->next.texture = texture ? ApiBridge::TextureOf(*texture) : nullptr;
}

void MUIDrawManager::setTextureSampler(MSamplerState::TextureFilter filter, MSamplerState::TextureAddress) {
    // A rectangle shows its texture once, so the address mode matters only at its edge, where the renderer
    // clamps.
    constexpr int magnifyLinear = MSamplerState::kMinPoint_MagLinear_MipPoint;
    state_->next.smooth = (filter & magnifyLinear) != 0;
}

void MUIDrawManager::setTextureMask(MBlendState::ChannelMask mask) {
    state_->next.channels = static_cast<unsigned>(mask);
}

void MUIDrawManager::line2d(const MPoint& startPoint, const MPoint& endPoint) {
    if (!state_->isOpen || !IsFinite({startPoint.x, startPoint.y, endPoint.x, endPoint.y})) {
        return;
    }
    DrawItem item = state_->next;
    item.kind = DrawItem::Kind::Line;
    item.position = PointOf(startPoint);
    item.end = PointOf(endPoint);
    state_->list.push_back(std::move(item));
}

void MUIDrawManager::rect2d(const MPoint& center, const MVector& up, double scaleX, double scaleY,
                            bool filled) {
    const double length = std::hypot(up.x, up.y);
    if (!state_->isOpen || length <= 0.0 || !IsFinite({center.x, center.y, length, scaleX, scaleY})) {
        return;
    }
    DrawItem item = state_->next;
    item.kind = DrawItem::Kind::Rectangle;
    item.position = PointOf(center);
    item.up = QPointF(up.x / length, up.y / length);
    item.halfWidth = scaleX;
    item.halfHeight = scaleY;
    item.filled = filled;
    state_->list.push_back(std::move(item));
}

void MUIDrawManager::circle2d(const MPoint& center, double radius, bool filled) {
    if (!state_->isOpen || !IsFinite({center.x, center.y, radius}) || radius <= 0.0) {
        return;
    }
    DrawItem item = state_->next;
    item.kind = DrawItem::Kind::Circle;
    item.position = PointOf(center);
    item.radius = radius;
    item.filled = filled;
    state_->list.push_back(std::move(item));
}

void MUIDrawManager::text2d(const MPoint& position, const MString& text, TextAlignment alignment,
                            const int* backgroundSize, const MColor* backgroundColor, bool) {
    if (!state_->isOpen || !IsFinite({position.x, position.y})) {
        return;
    }
    DrawItem item = state_->next;
    item.kind = DrawItem::Kind::Text;
    item.position = PointOf(position);
    item.text = QString::fromStdString(ApiBridge::Text(text));
    item.alignment = alignment == kCenter  ? Qt::AlignHCenter
                     : alignment == kRight ? Qt::AlignRight
                                           : Qt::AlignLeft;
    if (backgroundSize && backgroundColor) {
        DrawItem background = item;
        background.kind = DrawItem::Kind::Rectangle;
        background.filled = true;
        background.texture = nullptr;
        background.color = QColor::fromRgbF(Fraction(backgroundColor->r), Fraction(backgroundColor->g),
                                            Fraction(backgroundColor->b), Fraction(backgroundColor->a));
        background.halfWidth = backgroundSize[0] / 2.0;
        background.halfHeight = backgroundSize[1] / 2.0;
        const double side = alignment == kCenter ? 0.0 : alignment == kRight ? -1.0 : 1.0;
        background.position += QPointF(side * background.halfWidth, background.halfHeight);
        state_->list.push_back(std::move(background));
    }
    state_->list.push_back(std::move(item));
}

} // namespace MHWRender

std::unique_ptr<MHWRender::MUIDrawManager> ApiBridge::MakeDrawManager(DrawList& list) {
    std::unique_ptr<MHWRender::MUIDrawManager::State> state(
        new MHWRender::MUIDrawManager::State{list, DrawItem(), false});
    return std::unique_ptr<MHWRender::MUIDrawManager>(new MHWRender::MUIDrawManager(std::move(state)));
}
