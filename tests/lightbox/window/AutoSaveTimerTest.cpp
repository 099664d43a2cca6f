// When the window saves automatically, what it says when it cannot, and what it asks at the start.

#include "shell/AutoSaveTimer.h"

#include "WindowFixture.h"
#include "formats/AutoSave.h"
#include "formats/SceneFiles.h"
#include "scene/Timeline.h"
#include "shell/CrashRecovery.h"

#include <QAbstractButton>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <algorithm>

using lightbox::AutoSaveTimer;

namespace {

class AutoSaveTimerTest : public WindowFixture {
protected:
    AutoSaveTimerTest() { Show(); }

    AutoSaveTimer& Timer() { return *Window().findChild<AutoSaveTimer*>(); }
    QStringList Files() const { return QDir(prefs_.filePath("autosave")).entryList(QDir::Files); }
    QStringList Records() const { return QDir(prefs_.filePath("sessions")).entryList({"*.session"}); }
    /// Clicks on that button of the next message box.
    static void Answer(const char* button) {
        QTimer::singleShot(50, qApp, [button] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box) {
                box->findChild<QAbstractButton*>(button)->click();
            } else {
                Answer(button);
            }
        });
    }
};

TEST_F(AutoSaveTimerTest, WaitsWhileSomebodyIsAtWork) {
    ASSERT_TRUE(WaitFor([this] { return !Timer().IsBusy(); }));
    QMenu menu;
    menu.addAction("item");
    struct Row {
        const char* what;
        std::function<void()> begin;
        std::function<void()> end;
    };
    const Row rows[] = {
        {"a button", [this] { QTest::mousePress(&View(), Qt::LeftButton); },
         [this] { QTest::mouseRelease(&View(), Qt::LeftButton); }},
        {"a key", [this] { QTest::keyPress(&Window(), Qt::Key_Control); },
         [this] { QTest::keyRelease(&Window(), Qt::Key_Control); }},
        {"text in a view", [this] { View().setAttribute(Qt::WA_InputMethodEnabled, true); },
         [this] { View().setAttribute(Qt::WA_InputMethodEnabled, false); }},
        {"a menu",
         [&] {
             menu.popup({10, 10});
         },
         [&] { menu.close(); }},
        {"playback", [this] { Run("play -state on"); }, [this] { Run("play -state off"); }},
    };
    for (const Row& row : rows) {
        row.begin();
        EXPECT_TRUE(Timer().IsBusy()) << row.what;
        row.end();
        EXPECT_TRUE(WaitFor([this] { return !Timer().IsBusy(); })) << row.what;
    }
    // A command that waits in its own event loop.
    bool isBusy = false;
    QTimer::singleShot(50, qApp, [&] {
        QApplication::activeModalWidget()->hide();
        isBusy = Timer().IsBusy();
    });
    Run("confirmDialog -title \"Wait\" -message \"for me\" -button \"OK\"");
    EXPECT_TRUE(isBusy);
}

TEST_F(AutoSaveTimerTest, SavesWhenTheHandIsOff) {
    Run("autoSave -interval 1; createNode transform");
    QTest::mousePress(&View(), Qt::LeftButton);
    Settle(2500);
    EXPECT_EQ(Files(), QStringList()) << "the button is down";
    QTest::mouseRelease(&View(), Qt::LeftButton);
    EXPECT_TRUE(WaitFor([this] { return Files().size() == 1; }));
    Settle(2500);
    EXPECT_EQ(Files().size(), 1) << "nothing has changed since";
    Run("createNode transform");
    EXPECT_TRUE(WaitFor([this] { return Files().size() == 2; }));
    Run("autoSave -enable off; createNode transform");
    Settle(2500);
    EXPECT_EQ(Files().size(), 2);
}

TEST_F(AutoSaveTimerTest, ADialogThatIsLeftOpenHoldsUpNoSave) {
    QDialog dialog;
    Run("autoSave -interval 1; createNode transform");
    dialog.open();
    EXPECT_TRUE(WaitFor([this] { return Files().size() == 1; }));
    Run("autoSave -prompt on; createNode transform");
    Settle(2500);
    EXPECT_EQ(Files().size(), 1);
    EXPECT_EQ(QApplication::activeModalWidget(), &dialog) << "no question over another";
    dialog.close();
    Answer("autoSaveNow");
    EXPECT_TRUE(WaitFor([this] { return Files().size() == 2; }));
}

TEST_F(AutoSaveTimerTest, AFailureIsSaidOnce) {
    const auto warnings = [this] {
        return std::count_if(messages_.begin(), messages_.end(), [](const std::string& message) {
            return message.find("Automatic save: ") != std::string::npos;
        });
    };
    QFile taken(prefs_.filePath("taken"));
    ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
    Run("autoSave -interval 1 -folder \"" + taken.fileName().toStdString() +
        "/saves\"; createNode transform");
    EXPECT_TRUE(WaitFor([&] { return warnings() == 1; }));
    Settle(2500);
    EXPECT_EQ(warnings(), 1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    Run("autoSave -folder \"\"");
    EXPECT_TRUE(WaitFor([this] { return Files().size() == 1; })) << "it tries again";
}

TEST_F(AutoSaveTimerTest, AsksFirstIfItIsToldTo) {
    Run("autoSave -interval 1 -prompt on; createNode transform");
    Answer("autoSaveNow");
    EXPECT_TRUE(WaitFor([this] { return Files().size() == 1; }));
}

TEST_F(AutoSaveTimerTest, TheStartOffersWhatWasLeftBehind) {
    // The record of a killed program has a lock that nobody holds: a copy of this one's.
    Run("createNode transform -n \"drawn\"; autoSave -perform");
    const auto leave = [this] {
        QFile::copy(prefs_.filePath("sessions/" + Records().at(0)), prefs_.filePath("left"));
        Run("file -f -new");
        QFile::rename(prefs_.filePath("left"), prefs_.filePath("sessions/left.session"));
    };
    leave();
    Answer("askLater");
    lightbox::CrashRecovery::Ask(host_->files(), host_->output(), &Window());
    EXPECT_EQ(Run("objExists drawn").AsInt(), 0);
    EXPECT_EQ(Records(), QStringList{"left.session"});
    Answer("openAutoSave");
    lightbox::CrashRecovery::Ask(host_->files(), host_->output(), &Window());
    EXPECT_EQ(Run("objExists drawn").AsInt(), 1);
    EXPECT_TRUE(host_->files().IsModified());
    EXPECT_FALSE(Records().contains("left.session"));
    leave();
    Answer("forgetAutoSave");
    lightbox::CrashRecovery::Ask(host_->files(), host_->output(), &Window());
    EXPECT_EQ(Records(), QStringList());
    EXPECT_EQ(Files().size(), 1) << "the file stays";
    lightbox::CrashRecovery::Ask(host_->files(), host_->output(), &Window()); // nothing to ask
}

TEST_F(AutoSaveTimerTest, ThePreferencesShowAndSetIt) {
    Run("PreferencesWindow");
    EXPECT_EQ(Run("floatFieldGrp -q -value1 lightboxAutoSaveInterval").AsFloat(), 10.0);
    Run("floatFieldGrp -e -value1 2.5 lightboxAutoSaveInterval; intFieldGrp -e -value1 4 lightboxAutoSaveMax;"
        "textFieldButtonGrp -e -text \"/tmp/my \\\"saves\\\"\" lightboxAutoSaveFolder; lightboxSetAutoSave");
    EXPECT_EQ(Run("autoSave -q -interval").AsFloat(), 150.0);
    EXPECT_EQ(Run("autoSave -q -maxBackups").AsInt(), 4);
    EXPECT_EQ(Run("autoSave -q -folder").AsString(), "/tmp/my \"saves\"");
    // A refused value takes no other with it, and the page shows what holds.
    Run("intFieldGrp -e -value1 -3 lightboxAutoSaveMax; checkBoxGrp -e -value1 0 lightboxAutoSave;"
        "lightboxSetAutoSave");
    EXPECT_EQ(Run("intFieldGrp -q -value1 lightboxAutoSaveMax").AsInt(), 4);
    EXPECT_EQ(Run("checkBoxGrp -q -value1 lightboxAutoSave").AsInt(), 1);
    Run("autoSave -enable off; PreferencesWindow");
    EXPECT_EQ(Run("intFieldGrp -q -enable lightboxAutoSaveMax").AsInt(), 0);
}

} // namespace
