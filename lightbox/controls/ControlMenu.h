#pragma once

#include <QMenu>

namespace lightbox {

/// A menu that can show an option box at the right edge of an item.
class ControlMenu : public QMenu {
    Q_OBJECT

public:
    explicit ControlMenu(QWidget* parent)
        : QMenu(parent) {}

    /// Shows `box` as the small square beside `item`. The box goes away when its action does.
    static void SetOptionBox(QAction& item, QAction& box);
    /// The action of the box beside an item; null when it has none.
    static QAction* OptionBoxOf(const QAction& item);
    /// Where the box of an item is.
    QRect OptionBoxRect(QAction& item) const;

    /// Opens it for the mouse button and modifiers where they are pressed on a widget, instead of what the
    /// widget does by itself. The right button without modifiers also takes the menu key.
    void OpenOn(QWidget& widget);
    Qt::MouseButton openingButton = Qt::RightButton;
    Qt::KeyboardModifiers openingModifiers = Qt::NoModifier;

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

} // namespace lightbox
