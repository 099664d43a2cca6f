#pragma once

#include "ui/Icons.h"

#include <QAbstractButton>

namespace vellix {

/// A flat square button that shows nothing but its icon, neither pressed nor under the pointer, and a frame
/// while the keyboard is on it. Its tooltip is its name for screen readers too.
class PlainIconButton : public QAbstractButton {
    Q_OBJECT

public:
    PlainIconButton(const QIcon& icon, const QString& toolTip, QWidget* parent = nullptr);

    /// Shows that a press would do nothing. Unlike a disabled one the button keeps the focus.
    void SetDimmed(bool dimmed);
    bool IsDimmed() const { return m_dimmed; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_dimmed = false;
};

} // namespace vellix
