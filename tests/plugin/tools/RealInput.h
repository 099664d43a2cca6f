#pragma once

#include <QPoint>

#include <memory>

struct xcb_connection_t;

namespace vellix {

/// Moves the pointer of the display and presses its buttons and keys as hardware does; what comes of it
/// arrives through the event loop. Positions are of the screen.
class RealInput {
public:
    RealInput();
    ~RealInput();
    RealInput(const RealInput&) = delete;
    RealInput& operator=(const RealInput&) = delete;

    /// False when the display lets nobody do that.
    bool IsAvailable() const { return available_; }
    void MoveTo(const QPoint& position);
    /// 1 left, 2 middle, 3 right.
    void Press(int button = 1);
    void Release(int button = 1);
    /// A key by its symbol of X11: for characters of Latin-1 the character's code.
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
