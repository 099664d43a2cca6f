#pragma once

#include <QIcon>
#include <QIconEngine>
#include <QString>

namespace lightbox {

/// An icon painted as vectors, so that its lines are sharp at every size and follow the palette.
class DrawnIcon : public QIconEngine {
public:
    /// Draws in a square of `side` units. The painter has a pen of the colour, and no brush.
    using Draw = void (*)(QPainter& painter, const QColor& color);

    DrawnIcon(Draw draw, double side, double lineWidth)
        : draw_(draw)
        , side_(side)
        , lineWidth_(lineWidth) {}

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new DrawnIcon(*this); }

private:
    Draw draw_;
    double side_;
    double lineWidth_;
};

/// The icons of buttons and menu items. Lightbox paints its own icons as vectors, so they are sharp at every
/// size and follow the palette.
class Icons {
public:
    /// An icon by the name that a script gives: a file, a file in the preferences' icons folder or in
    /// XBMLANGPATH, a resource, or a built-in icon ("draw", "transform", "scriptEditor", "cube", with or
    /// without ".png"). A null icon when there is none.
    static QIcon Named(const QString& name);
};

} // namespace lightbox
