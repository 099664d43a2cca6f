#pragma once

#include "ui/GuardedWidget.h"
#include "ui/Icons.h"

#include <QAbstractButton>

namespace vellix {

/// A flat square button that looks the same when pressed or under the pointer, and shows a frame while it has
/// the keyboard focus. Its tooltip is also its accessible name.
class PlainIconButton : public GuardedWidget<QAbstractButton> {
    Q_OBJECT

public:
    PlainIconButton(const QIcon& icon, const QString& toolTip, QWidget* parent = nullptr);

    /// Draws the button as if disabled. Unlike a disabled button it keeps the focus.
    void SetDimmed(bool dimmed);
    bool IsDimmed() const { return dimmed_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool dimmed_ = false;
};

} // namespace vellix
