#pragma once

#include "ui/GuardedWidget.h"
#include "ui/Icons.h"

#include <QToolButton>

namespace vellix {

/// A flat button with an icon. A checked button is filled with the highlight colour in every host style. The
/// tooltip is also its accessible name.
class IconButton : public GuardedWidget<QToolButton> {
    Q_OBJECT

public:
    /// `size` is the icon's side in pixels with a font of usual size; it grows with a larger font.
    IconButton(Icon icon, const QString& toolTip, int size, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// Emitted for the right mouse button or the keyboard's menu key. `place` is in screen coordinates.
    void MenuWanted(const QPoint& place);

protected:
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int IconSide() const;

    int size_;
};

} // namespace vellix
