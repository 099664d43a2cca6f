#pragma once

#include <maya/MStatus.h>

/// What a tool context is told about the pointer. Positions are in view pixels, from the bottom left with y
/// upward.
class MEvent {
public:
    enum MouseButtonType { kLeftMouse = 1 << 6, kMiddleMouse = 1 << 7 };
    enum ModifierType { shiftKey = 1 << 0, controlKey = 1 << 2 };

    MEvent() = default;

    MStatus getPosition(short& x_pos, short& y_pos) const;
    /// From the top left with y downward.
    MStatus getWindowPosition(short& x_pos, short& y_pos) const;
    MStatus setPosition(short& x_pos, short& y_pos);
    /// The button that was pressed or released, or is held in a drag; fails when it is neither of the two.
    MouseButtonType mouseButton(MStatus* ReturnStatus = nullptr) const;

    MStatus setModifiers(unsigned int modifiers);
    unsigned int modifiers(MStatus* ReturnStatus = nullptr) const;
    bool isModifierNone(MStatus* ReturnStatus = nullptr) const;
    bool isModifierShift(MStatus* ReturnStatus = nullptr) const;
    bool isModifierControl(MStatus* ReturnStatus = nullptr) const;
    /// Whether the button is held down.
    bool isModifierLeftMouseButton(MStatus* ReturnStatus = nullptr) const;
    bool isModifierMiddleMouseButton(MStatus* ReturnStatus = nullptr) const;

private:
    friend class lightbox::ApiBridge;
    short x_ = 0;
    short y_ = 0;
    int viewHeight_ = 0;
    unsigned int button_ = 0;
    unsigned int modifiers_ = 0;
};
