#pragma once

#include "ui/GuardedWidget.h"
#include "ui/Icons.h"

#include <QWidget>

namespace vellix {

/// Shows an icon. Takes no input.
class IconView : public GuardedWidget<QWidget> {
    Q_OBJECT

public:
    /// `side` in pixels.
    IconView(Icon icon, int side, QWidget* parent = nullptr);

    void SetIcon(Icon icon);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Icon shown_;
    QIcon icon_;
};

} // namespace vellix
