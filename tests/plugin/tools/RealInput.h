#pragma once

#include <QPoint>

#include <memory>

struct xcb_connection_t;

namespace vellix {

/// Moves the pointer of the display, and presses its buttons and keys as hardware does. The events arrive
/// through the event loop. Positions are screen pixels.
class RealInput {
public:
    RealInput();
    ~RealInput();
    RealInput(const RealInput&) = delete;
    RealInput& operator=(const RealInput&) = delete;

    /// False if the display does not allow that.
    bool IsAvailable() const { return available_; }
    void MoveTo(const QPoint& position);
    /// 1 left, 2 middle, 3 right.
    void Press(int button = 1);
    void Release(int button = 1);
    /// Presses a key, given by its X11 key symbol. For a Latin-1 character this is the character's code.
    void PressKey(unsigned symbol);
    void ReleaseKey(unsigned symbol);

private:
    void Send(unsigned char type, unsigned char detail, const QPoint& position = QPoint());
    unsigned char KeyCode(unsigned symbol) const;

    xcb_connection_t* connection_ = nullptr;
    unsigned root_ = 0;
    bool available_ = false;
};

} // namespace vellix
