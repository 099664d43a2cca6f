#pragma once

#include <QMenu>

namespace lightbox {

/// A menu whose items can have an option box at the right edge.
class ControlMenu : public QMenu {
    Q_OBJECT

public:
    explicit ControlMenu(QWidget* parent)
        : QMenu(parent) {}

    /// Shows `box` as the small square beside `item`. The box disappears when its action is deleted.
    static void SetOptionBox(QAction& item, QAction& box);
    /// The action of an item's option box; null when the item has none.
    static QAction* OptionBoxOf(const QAction& item);
    /// The rectangle of an item's option box, in the menu's pixels.
    QRect OptionBoxRect(QAction& item) const;

    /// Opens the menu when `openingButton` is pressed on the widget with `openingModifiers`; the widget does
    /// not get that press. The right button without modifiers also stands for the menu key.
    void OpenOn(QWidget& widget);
    Qt::MouseButton openingButton = Qt::RightButton;
    Qt::KeyboardModifiers openingModifiers = Qt::NoModifier;

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

} // namespace lightbox
