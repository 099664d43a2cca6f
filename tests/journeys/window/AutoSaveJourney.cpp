// The program saves by itself, is killed, and offers what it has saved.

#include "journeys/window/RunningLightbox.h"

#include <QDir>
#include <QElapsedTimer>

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

/// Longer than the interval, the pause after the last input, and the timer's step together.
constexpr int DUE = 3500;

class AutoSaveJourney : public ::testing::Test {
protected:
    AutoSaveJourney() {
        folder_.RunScript(
            "autoSave -interval 1; qmVellixNode -l -c persp; file -rename \"shot.ma\"; file -save;");
    }

    QStringList Arguments() const {
        return {"-file", folder_.Path("shot.ma"), "-command", "qmVellixUtil -brushTool; qmVellixUtil -draw"};
    }
    QStringList Files() const { return QDir(folder_.Path("preferences/autosave")).entryList(QDir::Files); }
    bool IsSaved(int files) const {
        QElapsedTimer timer;
        timer.start();
        while (Files().size() < files && timer.elapsed() < 3 * DUE) {
            RunningLightbox::Rest(50);
        }
        return Files().size() == files;
    }

    Lightbox folder_;
};

TEST_F(AutoSaveJourney, AKilledProgramGivesTheDrawingBack) {
    const QByteArray saved = folder_.Read("shot.ma");
    QImage drawn;
    {
        RunningLightbox program(folder_, Arguments());
        const QImage empty = program.Drawing();
        const QPoint middle = program.Place("modelPanel4").center();
        program.Drag(middle, middle + QPoint(150, 60));
        drawn = program.ChangedDrawing(empty);
        ASSERT_NE(drawn, empty);
        ASSERT_TRUE(IsSaved(1));
        EXPECT_EQ(program.Mel("file -q -modified"), "1");
    } // killed
    EXPECT_EQ(folder_.Read("shot.ma"), saved);
    const Lightbox::Result batch = folder_.Run({"-command", "print 1"});
    EXPECT_EQ(batch.status, 0);
    EXPECT_EQ(batch.output, "1");
    EXPECT_THAT(batch.errors.toStdString(), HasSubstr("The last automatic save of shot.ma is"));
    {
        RunningLightbox program(folder_, {});
        program.Click("openAutoSave");
        EXPECT_TRUE(program.Becomes("file -q -sceneName", folder_.Path("shot.ma")));
        EXPECT_EQ(program.Mel("file -q -modified"), "1");
        EXPECT_EQ(program.Drawing(), drawn);
        EXPECT_EQ(folder_.Read("shot.ma"), saved);
    } // killed again, before anything else was saved
    {
        RunningLightbox program(folder_, Arguments());
        program.Click("openAutoSave");
        EXPECT_TRUE(program.Becomes("file -q -modified", "1"));
        EXPECT_EQ(program.Drawing(), drawn);
        program.Mel("SaveScene");
        EXPECT_TRUE(program.Becomes("file -q -modified", "0"));
        program.Mel("evalDeferred quit");
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    RunningLightbox program(folder_, Arguments());
    EXPECT_EQ(program.Drawing(), drawn);
    EXPECT_THAT(program.Mel("lightboxWidget -query -geometry \"openAutoSave\"").toStdString(),
                HasSubstr("Error"));
}

TEST_F(AutoSaveJourney, AProgramThatIsToldToEndLeavesWhatWasDrawn) {
    const QByteArray saved = folder_.Read("shot.ma");
    QImage drawn;
    {
        RunningLightbox program(folder_, Arguments());
        program.Mel("autoSave -enable 0");
        const QImage empty = program.Drawing();
        const QPoint middle = program.Place("modelPanel4").center();
        program.Drag(middle, middle + QPoint(150, 60));
        drawn = program.ChangedDrawing(empty);
        ASSERT_NE(drawn, empty);
        program.Signal(SIGTERM);
        EXPECT_EQ(program.WaitForEnd(), 0) << program.Messages().toStdString();
    }
    EXPECT_EQ(folder_.Read("shot.ma"), saved);
    {
        RunningLightbox program(folder_, {});
        program.Click("openAutoSave");
        EXPECT_TRUE(program.Becomes("file -q -sceneName", folder_.Path("shot.ma")));
        EXPECT_EQ(program.Mel("file -q -modified"), "1");
        EXPECT_EQ(program.Drawing(), drawn);
        program.Signal(SIGINT);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    {
        RunningLightbox program(folder_, {});
        program.Click("openAutoSave");
        EXPECT_TRUE(program.Becomes("file -q -modified", "1"));
        EXPECT_EQ(program.Drawing(), drawn);
        program.Mel("SaveScene");
        EXPECT_TRUE(program.Becomes("file -q -modified", "0"));
        program.Signal(SIGTERM);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    RunningLightbox program(folder_, Arguments());
    EXPECT_EQ(program.Drawing(), drawn);
    EXPECT_FALSE(program.IsShown("openAutoSave")) << "nothing was unsaved";
}

TEST_F(AutoSaveJourney, AProgramThatIsToldToEndKeepsTheTextThatIsTyped) {
    QImage empty;
    {
        RunningLightbox program(folder_, Arguments());
        program.Mel("autoSave -enable 0; qmVellixUtil -textTool");
        empty = program.Drawing();
        program.Click(program.Place("modelPanel4").center());
        ASSERT_EQ(program.Mel("file -q -modified"), "0");
        program.Type('w');
        ASSERT_TRUE(program.Becomes("file -q -modified", "1")) << "the key has arrived";
        ASSERT_EQ(program.Mel("undoInfo -q -undoName"), "") << "the text is open";
        program.Signal(SIGTERM);
        EXPECT_EQ(program.WaitForEnd(), 0) << program.Messages().toStdString();
    }
    RunningLightbox program(folder_, {});
    program.Click("openAutoSave");
    EXPECT_TRUE(program.Becomes("file -q -sceneName", folder_.Path("shot.ma")));
    const QImage drawn = program.Drawing();
    ASSERT_EQ(drawn.size(), empty.size());
    EXPECT_NE(drawn, empty) << "the text";
}

TEST_F(AutoSaveJourney, NothingIsSavedInTheMiddleOfAStrokeOrAText) {
    RunningLightbox program(folder_, Arguments());
    const QPoint middle = program.Place("modelPanel4").center();
    program.Mel("createNode transform"); // something to save
    program.DragTo(middle, middle + QPoint(100, 50));
    RunningLightbox::Rest(DUE);
    EXPECT_EQ(Files().size(), 0) << "the stroke is not done";
    program.Release();
    ASSERT_TRUE(IsSaved(1));

    program.Mel("qmVellixUtil -textTool");
    program.Click(middle - QPoint(150, 50));
    program.Type('a');
    program.Mel("createNode transform");
    RunningLightbox::Rest(DUE);
    EXPECT_EQ(Files().size(), 1) << "the text is open";
    program.Type('b');
    program.Type(RunningLightbox::Escape);
    EXPECT_TRUE(IsSaved(2));
    EXPECT_EQ(program.Mel("undoInfo -q -undoName").isEmpty(), false);
}

} // namespace
