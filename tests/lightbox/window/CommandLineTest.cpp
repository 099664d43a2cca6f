// The command line, the help line, the script editor and the pictures that scripts take.

#include "ControlsFixture.h"
#include "shell/CodeEdit.h"
#include "shell/CommandLineBar.h"
#include "shell/ScriptEditor.h"

#include <QImage>
#include <QPlainTextEdit>
#include <QStatusTipEvent>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

namespace {

class CommandLineTest : public ControlsFixture {
protected:
    lightbox::CommandLineBar& Line() { return Scripted().CommandLine(); }
    void Type(const QString& text) {
        QTest::keyClicks(&Line().Input(), text);
        QTest::keyClick(&Line().Input(), Qt::Key_Return);
    }
    QColor Background() {
        return Line().ResultLine().grab().toImage().pixelColor(Line().ResultLine().width() - 6, 6);
    }
};

TEST_F(CommandLineTest, ShowsResultsAndColoursErrors) {
    Show();
    const QColor usual = Background();
    Type("3 * 4");
    EXPECT_EQ(Line().ResultLine().text(), "// Result: 12 //");
    EXPECT_EQ(Background(), usual);
    Type("error \"broken\"");
    EXPECT_TRUE(Line().ResultLine().text().contains("broken"));
    const QColor red = Background();
    EXPECT_GT(red.red(), red.green() + 60);
    Type("warning \"careful\"");
    const QColor yellow = Background();
    EXPECT_GT(yellow.green(), yellow.blue() + 60);
    Type("1");
    EXPECT_EQ(Background(), usual);
    QTest::keyClicks(&Line().Input(), "draft");
    QTest::keyClick(&Line().Input(), Qt::Key_Up);
    QTest::keyClick(&Line().Input(), Qt::Key_Up);
    EXPECT_EQ(Line().Input().text(), "warning \"careful\"");
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(&Line().Input(), Qt::Key_Down);
    }
    EXPECT_EQ(Line().Input().text(), "draft");
}

TEST_F(CommandLineTest, TheHelpLineShowsAnnotationsAndTools) {
    QStatusTipEvent tip("Open a scene from a file");
    QApplication::sendEvent(&Window(), &tip);
    EXPECT_EQ(Line().Help(), "Open a scene from a file");
    host_->ui()->ShowHelp("Draw: drag");
    EXPECT_EQ(Line().Help(), "Draw: drag");
}

TEST_F(CommandLineTest, TheScriptEditorRunsTheSelectionOrAll) {
    Show();
    Run("ScriptEditor");
    Settle();
    lightbox::ScriptEditor& editor = Scripted().Editor();
    EXPECT_TRUE(editor.isVisible());
    editor.Input().setPlainText("global int $ran = 5;\n$ran = $ran + 1; /* two\nlines */ print \"x\\n\"");
    QTest::keyClick(&editor.Input(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(host_->interpreter().GetGlobal("ran").AsInt(), 6);
    EXPECT_TRUE(editor.History().toPlainText().contains("print \"x\\n\"\nx\n"));
    QTextCursor cursor(editor.Input().document()->findBlockByNumber(1));
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, 17);
    editor.Input().setTextCursor(cursor);
    editor.Run();
    EXPECT_EQ(host_->interpreter().GetGlobal("ran").AsInt(), 7);
}

TEST_F(CommandLineTest, ErrorsAreColouredInTheHistory) {
    lightbox::ScriptEditor& editor = Scripted().Editor();
    host_->output().Error("it broke");
    host_->output().Print("plain\n");
    const QTextDocument& document = *editor.History().document();
    const QTextBlock error = document.begin();
    EXPECT_EQ(error.text(), "// Error: it broke //");
    EXPECT_GT(error.begin().fragment().charFormat().foreground().color().red(), 200);
    EXPECT_EQ(error.next().begin().fragment().charFormat().foreground().style(), Qt::NoBrush);
}

TEST_F(CommandLineTest, MelIsHighlighted) {
    QPlainTextEdit& input = Scripted().Editor().Input();
    input.setPlainText("string $a = `ls -type \"x\"`; // end");
    Settle();
    QStringList coloured;
    const QTextBlock line = input.document()->begin();
    for (const QTextLayout::FormatRange& range : line.layout()->formats()) {
        coloured << line.text().mid(range.start, range.length);
    }
    EXPECT_EQ(coloured, (QStringList{"string", "$a", "ls", "-type", "\"x\"", "// end"}));
}

TEST_F(CommandLineTest, PicturesShowWhatTheUserSees) {
    Show();
    const std::string file = prefs_.filePath("window.png").toStdString();
    Run("window -title \"Over\" -widthHeight 200 100 over; columnLayout -bgc 1 0 0 -w 200 -h 100; showWindow "
        "over");
    QWidget* const over = Controls().FindWidget("over");
    over->move(Window().pos() + QPoint(300, 300));
    Settle();
    Run("lightboxGrab -file \"" + file + "\"");
    const QImage picture(QString::fromStdString(file));
    EXPECT_EQ(picture.size(), Window().size());
    const QPoint inside = over->mapToGlobal(QPoint(100, 50)) - Window().mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(picture.pixelColor(inside), QColor(255, 0, 0));
    // A viewport's picture has its background, not black.
    const QPoint centre = View().mapTo(&Window(), QPoint(20, 20));
    EXPECT_GT(picture.pixelColor(centre).value(), 20);
    EXPECT_EQ(Shown("lightboxWidget -query -geometry over"),
              std::to_string(over->mapToGlobal({0, 0}).x()) + " " +
                  std::to_string(over->mapToGlobal({0, 0}).y()) + " 200 100");
    EXPECT_NE(ErrorOf("lightboxGrab -file \"/nowhere/x.png\""), "none");
    EXPECT_NE(ErrorOf("lightboxGrab -file \"" + file + "\" -widget nobody"), "none");
}

} // namespace
