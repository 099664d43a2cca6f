#pragma once

#include <QLabel>

namespace vellix {

/// Plain text on one line, shortened at its end where there is no room. The tooltip then shows the full text.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    bool IsShortened() const;
};

} // namespace vellix
