#pragma once

#include <maya/MStatus.h>

/// A pointer event of a tool context. Positions are view pixels from the bottom left, y upward.
class MEvent {
public:
    enum MouseButtonType { kLeftMouse = 1 << 6, kMiddleMouse = 1 << 7 };
    enum ModifierType { shiftKey = 1 << 0, controlKey = 1 << 2 };

    MEvent() = default;

    MStatus getPosition(short& x_pos, short& y_pos) const;
    /// From the top left, y downward.
    MStatus getWindowPosition(short& x_pos, short& y_pos) const;
    MStatus setPosition(short& x_pos, short& y_pos);
    /// The button pressed, released, or held in a drag; fails if it is neither the left nor the middle
    /// button.
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
