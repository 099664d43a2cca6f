#pragma once

#include "ui/GuardedWidget.h"

#include <QAbstractButton>

namespace vellix {

/// A small box with one letter or none, in a row of the layer manager. 20 by 14 pixels, larger with a large
/// font.
class LayerToggle : public GuardedWidget<QAbstractButton> {
    Q_OBJECT

public:
    explicit LayerToggle(QWidget* parent = nullptr);

    /// Sets the letter. `meaning` becomes the tooltip.
    void Show(const QString& letter, const QString& meaning);

    /// The colour of letter and edge, whatever palette and style sheet say.
    void SetTextColor(const QColor& color);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QColor textColor_;
};

} // namespace vellix
