#pragma once

#include "ui/Icons.h"

#include <QToolButton>

namespace vellix {

/// A flat button with an icon. A checked one is filled with the highlight, whatever the host's style does.
/// Its tooltip is also its name for those who cannot see it.
class IconButton : public QToolButton {
    Q_OBJECT

public:
    /// `size` is the side of the icon in a font of usual size; in a larger font it grows with it.
    IconButton(Icon icon, const QString& toolTip, int size, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The right mouse button, or the keyboard's menu key; the place is global.
    void MenuWanted(const QPoint& place);

protected:
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int IconSide() const;

    int m_size;
};

} // namespace vellix
