#pragma once

#include <QColor>
#include <QWidget>

namespace lightbox {

/// A field filled with a colour. A click or the space bar opens a colour dialog.
class ColorSwatch : public QWidget {
    Q_OBJECT

public:
    ColorSwatch();

    const QColor& Color() const { return color_; }
    void SetColor(const QColor& color);

Q_SIGNALS:
    /// The user chose a colour in the dialog.
    void Chosen(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QSize sizeHint() const override;

private:
    void AskForColor();

    QColor color_ = Qt::black;
};

} // namespace lightbox
