#include "WindowFixture.h"

#include <maya/MComputation.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>

#include <functional>

class ProgressDisplayTest : public WindowFixture {
protected:
    static QWidget* Panel() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == "progressPanel") {
                return widget;
            }
        }
        return nullptr;
    }
    /// Computes for at most three seconds, and calls the function once the panel is there. Returns whether it
    /// was interrupted.
    static bool Compute(const std::function<void(QWidget&)>& act) {
        MComputation computation;
        computation.beginComputation(true);
        computation.setProgressStatus("Exporting frames");
        QElapsedTimer timer;
        timer.start();
        bool hasActed = false;
        while (!timer.hasExpired(3000)) {
            computation.setProgress(static_cast<int>(timer.elapsed() / 30));
            if (computation.isInterruptRequested()) {
                return true;
            }
            if (!hasActed && Panel()) {
                hasActed = true;
                act(*Panel());
            }
            QThread::msleep(2);
        }
        return false;
    }
};

TEST_F(ProgressDisplayTest, EscapeAndCancelInterrupt) {
    Show();
    EXPECT_TRUE(Compute([this](QWidget&) {
        QCoreApplication::postEvent(Window().windowHandle(),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    }));
    EXPECT_EQ(Panel(), nullptr) << "it is gone with the computation";
    EXPECT_TRUE(Compute([](QWidget& panel) {
        auto* const cancel = panel.findChild<QPushButton*>("progressCancel");
        QCoreApplication::postEvent(cancel, new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier));
        QCoreApplication::postEvent(cancel, new QKeyEvent(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier));
    }));
    // An interruption belongs to one computation.
    MComputation next;
    next.beginComputation(true);
    EXPECT_FALSE(next.isInterruptRequested());
    next.endComputation();
}

TEST_F(ProgressDisplayTest, NothingElseRunsMeanwhile) {
    Show();
    int fired = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&fired] { ++fired; });
    timer.start(1);
    Run("evalDeferred \"polyCube -n meanwhile\"");
    bool wasShown = false;
    EXPECT_FALSE(Compute([&](QWidget& panel) {
        wasShown = panel.isVisible();
        QCoreApplication::postEvent(&Window(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Z, Qt::NoModifier));
        fired = 0;
    }));
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(host_->scene().Find("meanwhile"), nullptr);
    EXPECT_TRUE(WaitFor([&] { return fired > 0 && host_->scene().Find("meanwhile"); })) << "they come later";
}
