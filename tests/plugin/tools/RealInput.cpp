#include "plugin/tools/RealInput.h"

#include <cstdlib>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace vellix {

RealInput::RealInput()
    : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        return;
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(connection_, &xcb_test_id);
    available_ = extension != nullptr && extension->present != 0;
}

RealInput::~RealInput() {
    xcb_disconnect(connection_);
}

void RealInput::MoveTo(const QPoint& position) {
    Send(XCB_MOTION_NOTIFY, 0, position);
}

void RealInput::Press(int button) {
    Send(XCB_BUTTON_PRESS, static_cast<unsigned char>(button));
}

void RealInput::Release(int button) {
    Send(XCB_BUTTON_RELEASE, static_cast<unsigned char>(button));
}

void RealInput::PressKey(unsigned symbol) {
    Send(XCB_KEY_PRESS, KeyCode(symbol));
}

void RealInput::ReleaseKey(unsigned symbol) {
    Send(XCB_KEY_RELEASE, KeyCode(symbol));
}

void RealInput::Send(unsigned char type, unsigned char detail, const QPoint& position) {
    xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root_, static_cast<short>(position.x()),
                        static_cast<short>(position.y()), 0);
    // Answered once the display has done it.
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

unsigned char RealInput::KeyCode(unsigned symbol) const {
    const xcb_setup_t* const setup = xcb_get_setup(connection_);
    const auto count = static_cast<unsigned char>(setup->max_keycode - setup->min_keycode + 1);
    xcb_get_keyboard_mapping_reply_t* const reply = xcb_get_keyboard_mapping_reply(
        connection_, xcb_get_keyboard_mapping(connection_, setup->min_keycode, count), nullptr);
    unsigned char code = 0;
    for (int key = 0; reply != nullptr && key < count && code == 0; ++key) {
        if (xcb_get_keyboard_mapping_keysyms(reply)[key * reply->keysyms_per_keycode] == symbol) {
            code = static_cast<unsigned char>(setup->min_keycode + key);
        }
    }
    std::free(reply);
    return code;
}

} // namespace vellix
