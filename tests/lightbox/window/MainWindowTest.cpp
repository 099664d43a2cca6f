#include "WindowFixture.h"
#include "formats/SceneFiles.h"
#include "scene/IdleQueue.h"
#include "scene/Timeline.h"
#include "shell/RecentFiles.h"

#include <QAbstractButton>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

class MainWindowTest : public WindowFixture {
protected:
    /// Presses a button of the question about unsaved changes once it is there. Its text, or nothing.
    void Answer(QMessageBox::StandardButton button, QString& seen) {
        QTimer::singleShot(0, [&seen, button] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box) {
                seen = box->text();
                box->button(button)->click();
            }
        });
    }
};

TEST_F(MainWindowTest, IsFoundByTheNameThatScriptsKnow) {
    EXPECT_EQ(Window().objectName(), "MayaWindow");
    EXPECT_EQ(host_->ui()->FindControl("MayaWindow"), &Window());
    EXPECT_EQ(host_->ui()->FindControl("MayaWindow|viewPanes|modelPanel4"), &Panel("modelPanel4"));
    EXPECT_EQ(host_->ui()->FindControl("nothing"), nullptr);
    EXPECT_EQ(host_->ui()->FindControl(""), nullptr);
}

TEST_F(MainWindowTest, ClosingAsksOnlyAboutChangesAndDoesWhatIsAnswered) {
    const std::string file = prefs_.filePath("kept.ma").toStdString();
    struct Row {
        QMessageBox::StandardButton answer;
        bool goesOn;
        bool isSaved;
    };
    const Row rows[] = {{QMessageBox::Cancel, false, false},
                        {QMessageBox::Discard, true, false},
                        {QMessageBox::Save, true, true}};
    Show();
    for (const Row& row : rows) {
        Run("file -f -new; createNode transform -n box; file -rename \"" + file + "\"");
        QFile::remove(QString::fromStdString(file));
        QString seen;
        Answer(row.answer, seen);
        EXPECT_EQ(host_->ui()->SettleUnsavedChanges(), row.goesOn);
        EXPECT_EQ(seen, "Save changes to kept.ma?");
        EXPECT_EQ(QFile::exists(QString::fromStdString(file)), row.isSaved);
        EXPECT_TRUE(Window().isVisible());
    }
    Run("file -f -new");
    QString seen;
    Answer(QMessageBox::Cancel, seen);
    EXPECT_TRUE(host_->ui()->SettleUnsavedChanges());
    EXPECT_EQ(seen, "") << "nothing changed, nothing to ask";
    Settle();

    Run("createNode transform");
    Answer(QMessageBox::Cancel, seen);
    Window().close();
    EXPECT_FALSE(host_->QuitStatus()) << "the user stays";
    Answer(QMessageBox::Discard, seen);
    Window().close();
    EXPECT_EQ(host_->QuitStatus(), 0);
}

TEST_F(MainWindowTest, ASceneThatCannotBeWrittenIsNotGivenUp) {
    Show();
    Run("createNode transform; file -rename \"/nowhere/at/all.ma\"");
    QString question;
    QString complaint;
    QTimer::singleShot(0, [&] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        question = box->text();
        QTimer::singleShot(0, [&] {
            auto* const failed = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            complaint = failed->objectName();
            failed->button(QMessageBox::Ok)->click();
        });
        box->button(QMessageBox::Save)->click();
    });
    EXPECT_FALSE(host_->ui()->SettleUnsavedChanges());
    EXPECT_EQ(complaint, "saveFailed");
}

TEST_F(MainWindowTest, AFileThatWasReadWithErrorsIsReplacedOnlyOnAYes) {
    const QByteArray damaged = "//Maya ASCII 2018 scene\n//Name: bad.ma\ncreateNode transform -n \"box\";\n"
                               "\tsetAttr \".tx\" \"far\";\n// End of bad.ma\n";
    const QString path = prefs_.filePath("bad.ma");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(damaged);
    file.close();
    const auto content = [&] {
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QByteArray bytes = file.readAll();
        file.close();
        return bytes;
    };
    Show();
    EXPECT_THROW(Run("file -f -open \"" + path.toStdString() + "\""), lightbox::mel::Error);
    for (const bool yes : {false, true}) {
        QString question;
        QTimer::singleShot(0, [&] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(box);
            question = box->objectName() + box->text() + box->informativeText();
            QAbstractButton* const button =
                yes ? box->findChild<QAbstractButton*>("saveAnyway") : box->button(QMessageBox::Cancel);
            button->click();
        });
        Run("SaveScene");
        EXPECT_THAT(question.toStdString(), ::testing::AllOf(::testing::HasSubstr("replaceDamaged\"bad.ma\""),
                                                             ::testing::HasSubstr("line 4.2: A number was")));
        EXPECT_EQ(content() == damaged, !yes);
    }
    Run("setAttr box.ty 3; SaveScene");
    EXPECT_TRUE(content().contains("0 3 0")) << "no longer asked";
}

TEST_F(MainWindowTest, QuitAsksUnlessItIsForced) {
    Show();
    Run("createNode transform");
    QString seen;
    Answer(QMessageBox::Cancel, seen);
    Run("quit");
    EXPECT_FALSE(seen.isEmpty());
    EXPECT_FALSE(host_->QuitStatus());
    EXPECT_THROW(Run("quit -force -exitCode 7; createNode transform -n late"), lightbox::mel::Error);
    EXPECT_EQ(host_->scene().Find("late"), nullptr) << "nothing after it runs";
    EXPECT_EQ(host_->QuitStatus(), 7);
}

TEST_F(MainWindowTest, RunsUntilQuitAndAnswersItsStatus) {
    bool stood = false;
    const int status = session_->Run([&] {
        stood = Window().isVisible();
        host_->idle().Add([&] { host_->RequestQuit(3); });
    });
    EXPECT_TRUE(stood);
    EXPECT_EQ(status, 3);
}

TEST_F(MainWindowTest, GeometryComesBackInTheNextSession) {
    Show();
    Window().setGeometry(140, 90, 900, 700);
    Settle();
    const QRect before = Window().geometry();
    Window().SaveState();
    Restart();
    Window().RestoreState();
    Window().show();
    Settle();
    EXPECT_EQ(Window().geometry(), before);
}

TEST_F(MainWindowTest, TheTitleTellsTheSceneAndWhetherItChanged) {
    Show();
    EXPECT_EQ(Window().windowTitle(), "untitled[*] - Lightbox");
    EXPECT_FALSE(Window().isWindowModified());
    Run("createNode transform -n box");
    Settle();
    EXPECT_TRUE(Window().isWindowModified());
    Run("file -rename \"" + prefs_.filePath("a.ma").toStdString() + "\"; file -save -type mayaAscii");
    Settle();
    EXPECT_EQ(Window().windowTitle(), "a.ma[*] - Lightbox");
    EXPECT_FALSE(Window().isWindowModified());
}

TEST_F(MainWindowTest, RecentFilesAreTheLatestTenOnceEach) {
    Show();
    QStringList expected;
    for (int i = 0; i < 12; ++i) {
        const QString file = prefs_.filePath(QString("scene%1.ma").arg(i));
        Run("file -rename \"" + file.toStdString() + "\"; file -save -type mayaAscii");
        expected.prepend(file);
    }
    EXPECT_EQ(Window().Recent().List(), expected.mid(0, 10));
    Run("file -f -open \"" + expected[4].toStdString() + "\"");
    expected.move(4, 0);
    EXPECT_EQ(Window().Recent().List(), expected.mid(0, 10));
    Restart();
    EXPECT_EQ(Window().Recent().List(), expected.mid(0, 10));
}

TEST_F(MainWindowTest, KeysActOnThePanelInUseAndOnTheTime) {
    Show();
    Run("polyCube -n box; setAttr box.translateX 5; playbackOptions -min 1 -max 10; currentTime 3");
    const auto press = [this](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&View(), static_cast<Qt::Key>(key), modifiers);
        Settle();
    };
    press(Qt::Key_4);
    EXPECT_EQ(Run("modelEditor -q -displayAppearance modelPanel4").Text(), "wireframe");
    press(Qt::Key_5);
    EXPECT_EQ(Run("modelEditor -q -displayAppearance modelPanel4").Text(), "smoothShaded");
    const double before = Number("persp.translateX");
    press(Qt::Key_F);
    EXPECT_NE(Number("persp.translateX"), before);
    Run("undo");
    EXPECT_EQ(Number("persp.translateX"), before);
    press(Qt::Key_S);
    EXPECT_EQ(Run("keyframe -q -keyframeCount box.translateX").AsFloat(), 1.0);

    press(Qt::Key_Period, Qt::AltModifier);
    EXPECT_EQ(Run("currentTime -q").AsFloat(), 4.0);
    press(Qt::Key_Comma);
    EXPECT_EQ(Run("currentTime -q").AsFloat(), 3.0);
    press(Qt::Key_V, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(Run("currentTime -q").AsFloat(), 1.0);
    press(Qt::Key_V, Qt::AltModifier);
    EXPECT_NE(host_->time().PlayingDirection(), 0);
    press(Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(host_->time().PlayingDirection(), 0);
}

TEST_F(MainWindowTest, AFieldKeepsTheKeysThatItCanTake) {
    Show();
    Run("polyCube -n box; window field; columnLayout; textField name; showWindow field");
    Settle();
    auto* const field = qobject_cast<QLineEdit*>(host_->ui()->FindControl("name"));
    ASSERT_TRUE(field);
    QApplication::setActiveWindow(field->window());
    field->setFocus();
    QTest::keyClicks(field, "s4f.");
    EXPECT_EQ(field->text(), "s4f.");
    EXPECT_EQ(Run("keyframe -q -keyframeCount box.translateX").AsFloat(), 0.0);
}
