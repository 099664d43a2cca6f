// Panels while memory is short: what they throw does not get into the event loop.
#include "host/GuardedConnect.h"
#include "plugin/FailingAllocation.h"
#include "plugin/ui/DialogFixture.h"
#include "ui/LayerItem.h"

#include <QAction>
#include <QApplication>
#include <QMouseEvent>

#include <gmock/gmock.h>
#include <new>
#include <stdexcept>

namespace vellix {

namespace {

using ::testing::HasSubstr;

class PanelFaultsTest : public DialogFixture {
protected:
    void SetUp() override {
        if (!FailingAllocation::IsPossible()) {
            GTEST_SKIP() << "this build's allocations cannot be replaced";
        }
        Run("qmVellixNode -l -c persp -ln Rough; qmVellixLayer -add -n Ink -ls 0 persp");
    }

    /// Does something while one allocation after the other fails, until none fails any more. Returns how many
    /// failed.
    template <typename Action>
    static int Sweep(Action action) {
        int number = 1;
        for (bool hasFailed = true; hasFailed; ++number) {
            const FailingAllocation failing(number);
            try {
                action();
            } catch (...) {
                const FailingAllocation::Pause pause;
                ADD_FAILURE() << "thrown at allocation " << number;
            }
            hasFailed = FailingAllocation::HasFailed();
        }
        return number - 2;
    }
};

} // namespace

// Not the buttons that show other texts or a dialog: Qt's widgets end the program when an allocation fails.
TEST_F(PanelFaultsTest, NoButtonThrowsIntoTheEventLoop) {
    int failures = 0;
    for (const WindowRow& row : WINDOWS) {
        const std::string title = row.title;
        if (row.isDialog || title == "Toolbox" || title == "Tool Options") {
            continue;
        }
        QWidget* const window = Open(row.flag, row.title);
        ASSERT_NE(window, nullptr);
        const ExecutedLines lines; // none of them is executed
        for (QAbstractButton* const button : window->findChildren<QAbstractButton*>()) {
            if (button->isVisible() && button->isEnabled() && !button->toolTip().startsWith("New Layer")) {
                SCOPED_TRACE(title + ": " + button->objectName().toStdString() + " " +
                             button->toolTip().toStdString());
                failures += Sweep([button] { button->click(); });
            }
        }
    }
    EXPECT_GT(failures, 100);
}

TEST_F(PanelFaultsTest, ARowThatIsClickedThrowsNothing) {
    QWidget* const window = Open("-layerManager", "Layer Manager");
    LayerItem* const row = window->findChildren<LayerItem*>().first();
    const ExecutedLines lines;
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(60, 5), Qt::LeftButton, Qt::LeftButton, {});
    EXPECT_GT(Sweep([&] { QCoreApplication::sendEvent(row, &press); }), 0);
}

TEST_F(PanelFaultsTest, WhatASlotThrowsIsSaid) {
    QAction action;
    ConnectGuarded(&action, &QAction::triggered, &action,
                   [](bool on) { throw std::runtime_error(on ? "on" : "off"); });
    ConnectGuarded(&action, &QAction::triggered, &action, [] { throw std::bad_alloc(); });
    std::string said;
    host_->output().SetSink(
        [&said](lightbox::Output::Kind, const std::string& text) { said += text + "\n"; });
    EXPECT_NO_THROW(action.trigger());
    host_->output().SetSink({});
    EXPECT_THAT(said, HasSubstr("The action failed: off"));
    EXPECT_THAT(said, HasSubstr("Out of memory: The action failed."));
}

} // namespace vellix
