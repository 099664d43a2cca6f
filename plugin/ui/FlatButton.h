#pragma once

#include "ui/GuardedWidget.h"

#include <QAbstractButton>
#include <QColor>

namespace vellix {

/// A flat button that shows a colour, 24 by 24 pixels unless resized. An invalid colour shows as an empty
/// field.
class FlatButton : public GuardedWidget<QAbstractButton> {
    Q_OBJECT

public:
    explicit FlatButton(QWidget* parent = nullptr);

    const QColor& GetColor() const { return color_; }
    void SetColor(const QColor& color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor color_;
};

} // namespace vellix
