#pragma once

#include <QColor>

class QApplication;

namespace lightbox {

/// The colours of the windows, dark or light, with one accent. Text has a contrast of at least 4.5 to what it
/// stands on, the outlines of controls have 3 (WCAG 2.1, 1.4.3 and 1.4.11).
class Theme {
public:
    enum class Kind { Dark, Light };

    /// Gives the application this theme. Windows that are open follow.
    static void Apply(QApplication& application, Kind kind = Kind::Dark);
    /// The theme of the last Apply().
    static Kind Current();

    static QColor Window();
    /// The ground of fields and lists.
    static QColor Field();
    static QColor Line();
    static QColor Text();
    static QColor FaintText();
    /// The ground of what is selected.
    static QColor Accent();
    /// The colour for a word of a script that is `onDark` in the dark theme.
    static QColor Word(const QColor& onDark);
};

} // namespace lightbox
