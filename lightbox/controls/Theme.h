#pragma once

#include <QColor>

class QApplication;

namespace lightbox {

/// The style of the windows: dark greys with one accent colour.
class Theme {
public:
    static void Apply(QApplication& application);

    static QColor Window() { return {0x3a, 0x3a, 0x3c}; }
    static QColor Dark() { return {0x2a, 0x2a, 0x2c}; }
    static QColor Line() { return {0x24, 0x24, 0x26}; }
    static QColor Text() { return {0xd6, 0xd6, 0xd6}; }
    static QColor FaintText() { return {0x8c, 0x8c, 0x90}; }
    static QColor Accent() { return {0x52, 0x85, 0xa6}; }
};

} // namespace lightbox
