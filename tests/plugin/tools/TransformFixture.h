#pragma once

#include "openmaya/PluginContext.h"
#include "paint/Composite.h"
#include "plugin/ui/DrawingFixture.h"
#include "scene/IdleQueue.h"
#include "tools/TransformContext.h"

#include <QMenu>
#include <QPainter>
#include <QTest>
#include <QTimer>

namespace vellix {

/// The transform tool over a drawing of persp, in a view whose pixels have the size of the image's pixels.
/// Positions are image pixels, as the tool maps them.
class TransformFixture : public DrawingFixture {
protected:
    static constexpr int WIDTH = 1024;
    static constexpr int HEIGHT = 600;
    /// The four quarters of the picture.
    static constexpr QRect QUARTERS{300, 400, 100, 60};

    void Begin(Renderer renderer = Renderer::Viewport2) {
        Run("qmVellixNode -l -c persp; currentTime 1; qmVellixFrame -insert");
        Draw(Picture());
        Show();
        Use(renderer);
        Activate();
        SizeView(WIDTH, HEIGHT);
    }
    void Activate() {
        Run("qmVellixUtil -transform");
        Rest();
    }
    /// Waits until deferred lines are executed and views are drawn.
    void Rest() {
        WaitFor([&] { return host_->idle().IsEmpty(); });
        Settle(30);
    }

    /// A picture with four differently coloured quarters from (300, 400) to (399, 459), and noise of every
    /// alpha beside them.
    static QImage Picture() {
        QImage image = composite::TransparentImage();
        for (int y = 400; y < 460; ++y) {
            for (int x = 300; x < 400; ++x) {
                const bool right = x >= 350;
                const bool bottom = y >= 430;
                image.setPixelColor(
                    x, y, right ? (bottom ? Qt::yellow : Qt::green) : (bottom ? Qt::blue : Qt::red));
            }
            for (int x = 600; x < 700; ++x) {
                image.setPixelColor(x, y, QColor(x % 256, y % 256, (x * y) % 256, (x + y * 7) % 256));
            }
        }
        return image;
    }

    static TransformContext& Tool() {
        return dynamic_cast<TransformContext&>(lightbox::PluginContext::Current()->Context());
    }
    static const Stroke* CurrentStroke() {
        return Node().HasActiveStroke() ? Node().GetActiveStroke("persp", false) : nullptr;
    }
    static QImage Current(const QString& camera = "persp") {
        return Node().GetActiveLayer(camera)->GetCurrentFrame()->GetImage().copy();
    }
    static QPoint InView(const QPoint& pixel) { return pixel - QPoint(0, (1024 - HEIGHT) / 2 + 1); }

    void Press(const QPoint& pixel, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(&View(), button, keys, InView(pixel));
    }
    void Move(const QPoint& pixel, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) {
        const QPoint position = InView(pixel);
        QMouseEvent event(QEvent::MouseMove, position, View().mapToGlobal(position), Qt::NoButton, button,
                          keys);
        QApplication::sendEvent(&View(), &event);
    }
    void Release(const QPoint& pixel, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers keys = {}) {
        QTest::mouseRelease(&View(), button, keys, InView(pixel));
    }
    void Drag(const QPoint& from, const QPoint& to, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers keys = {}) {
        Press(from, button, keys);
        Move((from + to) / 2, button, keys);
        Move(to, button, keys);
        Release(to, button, keys);
    }
    void Key(Qt::Key key) {
        View().setFocus();
        QTest::keyClick(&View(), key);
        Rest();
    }
    void Select(const QRect& region) { Drag(region.topLeft(), region.bottomRight()); }

    /// Opens the menu at a pixel and chooses an item, or none if `item` is empty. Returns the items: "-" for
    /// a separator, disabled items in brackets. Empty if no menu opens.
    QStringList ChooseFromMenu(const QString& item, const QPoint& pixel = {500, 500},
                               Qt::KeyboardModifiers keys = {}) {
        QStringList items;
        QTimer::singleShot(0, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            for (QAction* action : menu ? menu->actions() : QList<QAction*>()) {
                const QString text = action->isSeparator() ? "-" : action->text();
                items << (action->isEnabled() ? text : "[" + text + "]");
                if (action->text() == item && !item.isEmpty()) {
                    menu->setActiveAction(action);
                }
            }
            if (menu) {
                QTest::keyClick(menu, menu->activeAction() ? Qt::Key_Return : Qt::Key_Escape);
            }
        });
        Press(pixel, Qt::RightButton, keys);
        Rest();
        Release(pixel, Qt::RightButton, keys);
        return items;
    }
};

} // namespace vellix
