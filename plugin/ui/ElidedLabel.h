#pragma once

#include "ui/GuardedWidget.h"

#include <QLabel>

namespace vellix {

/// Plain text on one line, shortened at its end where there is no room. The tooltip then shows the full text.
class ElidedLabel : public GuardedWidget<QLabel> {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// The colour of the text, whatever palette and style sheet say; an invalid colour is the palette's.
    void SetTextColor(const QColor& color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool HandleEvent(QEvent* event) override;

private:
    QString OneLine() const;
    bool IsShortened() const;

    QColor textColor_;
};

} // namespace vellix
