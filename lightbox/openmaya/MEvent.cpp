#include "openmaya/ApiBridge.h"

#include <maya/MEvent.h>

#include <algorithm>
#include <limits>

using lightbox::ApiBridge;

namespace {

short Clamped(int value) {
    return static_cast<short>(
        std::clamp<int>(value, std::numeric_limits<short>::min(), std::numeric_limits<short>::max()));
}

bool Has(unsigned int modifiers, unsigned int bit, MStatus* status) {
    ApiBridge::Report(status, MS::kSuccess);
    return (modifiers & bit) != 0;
}

} // namespace

MEvent ApiBridge::MakeEvent(int x, int y, int viewHeight, unsigned button, unsigned modifiers) {
    MEvent event;
    event.x_ = Clamped(x);
    event.y_ = Clamped(y);
    event.viewHeight_ = viewHeight;
    event.button_ = button;
    event.modifiers_ = modifiers;
    return event;
}

MStatus MEvent::getPosition(short& x_pos, short& y_pos) const {
    x_pos = x_;
    y_pos = y_;
    return MS::kSuccess;
}

MStatus MEvent::getWindowPosition(short& x_pos, short& y_pos) const {
    x_pos = x_;
    y_pos = Clamped(viewHeight_ - 1 - y_);
    return MS::kSuccess;
}

MStatus MEvent::setPosition(short& x_pos, short& y_pos) {
    x_ = x_pos;
    y_ = y_pos;
    return MS::kSuccess;
}

MEvent::MouseButtonType MEvent::mouseButton(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, button_ != 0 ? MS::kSuccess : MS::kFailure);
    return static_cast<MouseButtonType>(button_);
}

MStatus MEvent::setModifiers(unsigned int modifiers) {
    modifiers_ = modifiers;
    return MS::kSuccess;
}

unsigned int MEvent::modifiers(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return modifiers_;
}

bool MEvent::isModifierNone(MStatus* ReturnStatus) const {
    return !Has(modifiers_, shiftKey | controlKey, ReturnStatus);
}
bool MEvent::isModifierShift(MStatus* ReturnStatus) const {
    return Has(modifiers_, shiftKey, ReturnStatus);
}
bool MEvent::isModifierControl(MStatus* ReturnStatus) const {
    return Has(modifiers_, controlKey, ReturnStatus);
}
bool MEvent::isModifierLeftMouseButton(MStatus* ReturnStatus) const {
    return Has(modifiers_, kLeftMouse, ReturnStatus);
}
bool MEvent::isModifierMiddleMouseButton(MStatus* ReturnStatus) const {
    return Has(modifiers_, kMiddleMouse, ReturnStatus);
}
