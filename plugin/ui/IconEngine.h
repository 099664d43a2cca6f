#pragma once

#include "ui/Icons.h"

#include <QIconEngine>

namespace vellix {

/// Draws an icon for Qt, at the size and in the colours that are needed.
class IconEngine : public QIconEngine {
public:
    explicit IconEngine(Icon icon)
        : icon_(icon) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new IconEngine(*this); }

private:
    Icon icon_;
};

} // namespace vellix
