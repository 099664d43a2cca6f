// hotkey and nameCommand: keys that scripts bind, with a press and a release.
#include "WindowFixture.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace {

class HotkeysTest : public WindowFixture {
protected:
    HotkeysTest() {
        Show();
        Run("global string $log = \"\"; nameCommand -annotation \"a\" -command \"$log += \\\"+\\\"\" press; "
            "nameCommand -command \"$log += \\\"-\\\"\" release");
    }
    ~HotkeysTest() override { Stop(); }

    std::string TakeLog() {
        std::string log = Run("$log = $log").AsString();
        Run("$log = \"\"");
        return log;
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyPress(Receiver(), key, modifiers);
    }
    void Release(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyRelease(Receiver(), key, modifiers);
        QTest::qWait(60); // no press follows
    }
    QWidget* Receiver() { return QApplication::focusWidget() ? QApplication::focusWidget() : &Window(); }
    void Repeat(Qt::Key key) {
        for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::ShortcutOverride, QEvent::KeyPress}) {
            QKeyEvent event(type, key, Qt::NoModifier, QString(), true);
            QApplication::sendEvent(Receiver(), &event);
        }
    }
};

TEST_F(HotkeysTest, RunOneScriptAtThePressAndOneAtTheRelease) {
    Run("hotkey -keyShortcut \",\" -name \"press\" -releaseName \"release\"");
    Press(Qt::Key_Comma);
    EXPECT_EQ(TakeLog(), "+");
    Repeat(Qt::Key_Comma);
    EXPECT_EQ(TakeLog(), "");
    Release(Qt::Key_Comma);
    EXPECT_EQ(TakeLog(), "-");
    Release(Qt::Key_Comma);
    EXPECT_EQ(TakeLog(), "") << "it is not held";

    Run("hotkey -k \",\" -pressCommandRepeat true");
    Press(Qt::Key_Comma);
    Repeat(Qt::Key_Comma);
    Repeat(Qt::Key_Comma);
    Release(Qt::Key_Comma);
    EXPECT_EQ(TakeLog(), "+++-");
    EXPECT_EQ(Run("hotkey -q -k \",\" -name").AsString(), "press");
    EXPECT_EQ(Run("hotkey -q -k \",\" -releaseName").AsString(), "release");

    // A key that is freed while it is held still ends what it has begun.
    Press(Qt::Key_Comma);
    Run("hotkey -k \",\" -name \"\" -releaseName \"\"");
    Release(Qt::Key_Comma);
    EXPECT_EQ(TakeLog(), "+-");
    Press(Qt::Key_Comma);
    Release(Qt::Key_Comma);
    EXPECT_EQ(TakeLog(), "");
    EXPECT_EQ(Run("hotkey -q -k \",\" -name").AsString(), "");
    EXPECT_THROW(Run("hotkey -k \"nonsense\" -name \"press\""), lightbox::mel::Error);
    EXPECT_THROW(Run("hotkey -name \"press\""), lightbox::mel::Error);
}

TEST_F(HotkeysTest, TellModifiersApart) {
    Run("hotkey -k \"x\" -name press; hotkey -k \"X\" -name release; "
        "hotkey -k \"F7\" -ctl -alt -name press; hotkey -k \"Page_Up\" -sht -name \"$log += \\\"up\\\"\"");
    Press(Qt::Key_X);
    EXPECT_EQ(TakeLog(), "+");
    Release(Qt::Key_X);
    Press(Qt::Key_X, Qt::ShiftModifier);
    EXPECT_EQ(TakeLog(), "-");
    Release(Qt::Key_X, Qt::ShiftModifier);
    Press(Qt::Key_X, Qt::ControlModifier);
    Release(Qt::Key_X, Qt::ControlModifier);
    Press(Qt::Key_F7);
    Release(Qt::Key_F7);
    EXPECT_EQ(TakeLog(), "");
    Press(Qt::Key_F7, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(TakeLog(), "+");
    Release(Qt::Key_F7);
    Press(Qt::Key_PageUp, Qt::ShiftModifier);
    EXPECT_EQ(TakeLog(), "up") << "what has no name is a script";
    Release(Qt::Key_PageUp);
}

// A key of a script comes before those of the program, and after a field that takes text.
TEST_F(HotkeysTest, ComeAfterTextFieldsAndBeforeShortcuts) {
    const auto shading = View().Options().display.shading;
    Run("hotkey -k \"4\" -name press -releaseName release; hotkey -k \".\" -name press");
    Press(Qt::Key_4);
    Release(Qt::Key_4);
    EXPECT_EQ(TakeLog(), "+-");
    EXPECT_EQ(View().Options().display.shading, shading) << "4 is wireframe otherwise";

    QLineEdit field(&Window());
    field.show();
    field.setFocus();
    Settle(20);
    ASSERT_TRUE(field.hasFocus());
    QTest::keyClick(&field, Qt::Key_4, Qt::NoModifier);
    QTest::keyClick(&field, '.');
    EXPECT_EQ(field.text(), "4.");
    EXPECT_EQ(TakeLog(), "");
}

TEST_F(HotkeysTest, AreReleasedWhenTheProgramLosesTheFocus) {
    Run("hotkey -k \"x\" -name press -releaseName release");
    Press(Qt::Key_X);
    QEvent lost(QEvent::ApplicationDeactivate);
    QApplication::sendEvent(qApp, &lost);
    EXPECT_EQ(TakeLog(), "+-");
    Release(Qt::Key_X);
    EXPECT_EQ(TakeLog(), "");
}

TEST_F(HotkeysTest, ARepetitionThatIsNotMarkedAsOneIsNoRelease) {
    Run("hotkey -k \"x\" -name press -releaseName release");
    Press(Qt::Key_X);
    for (int repetition = 0; repetition < 3; ++repetition) {
        QTest::keyRelease(Receiver(), Qt::Key_X);
        Press(Qt::Key_X);
    }
    QTest::qWait(60);
    EXPECT_EQ(TakeLog(), "+");
    Release(Qt::Key_X);
    EXPECT_EQ(TakeLog(), "-");
}

} // namespace
