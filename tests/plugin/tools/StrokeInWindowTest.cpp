// Strokes and text go into the drawing they began on, whatever changes under them.
#include "formats/SceneFiles.h"
#include "plugin/tools/DrawToolFixture.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"
#include "timeline/TimeSlider.h"
#include "tools/ThreadManager.h"

#include <QClipboard>
#include <QMap>

namespace vellix {

namespace {

constexpr unsigned KEY_ESCAPE = 0xff1b;
constexpr unsigned KEY_TAB = 0xff09;

/// The layer of persp has drawings at 1 and 5, a layer Top has one at 1; the time is 3.
class StrokeInWindowTest : public DrawToolFixture {
protected:
    StrokeInWindowTest() {
        Run("playbackOptions -min 1 -max 12");
        Begin();
    }
    void Begin() {
        Run("file -force -new; playbackOptions -min 1 -max 12; qmVellixNode -l -f -c persp; currentTime 5; "
            "qmVellixFrame -insert; qmVellixLayer -add -n Top -ls 0 persp; currentTime 1; qmVellixFrame "
            "-insert; "
            "qmVellixLayer -e -active 0 persp");
        Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1");
        int color = 0;
        for (Layer* layer : Node().GetLayers("persp")) {
            for (int i = 0; i < layer->FrameCount(); ++i) {
                QImage image(1024, 1024, QImage::Format_RGBA8888);
                image.fill(Qt::transparent);
                ++color;
                for (int x = 0; x < 50; ++x) {
                    image.setPixelColor(x, 10 * color, QColor::fromHsv(40 * color, 200, 200));
                }
                layer->GetFrame(i)->SetImage(image);
            }
        }
        Run("currentTime 3; flushUndo; lookThru modelPanel4 persp; qmVellixUtil -draw");
        Settle();
        messages_.clear();
    }
    void BeginText() {
        Run("qmVellixUtil -textTool; qmVellixUtil -textOptions 30 100 \"DejaVu Sans\"");
        PressAndWait({300, 200});
        Release();
    }
    QString Text() { return ActiveStroke() ? ActiveStroke()->text : QString("<none>"); }
    /// The pictures, by "layer/time".
    static QMap<QString, QImage> Pictures() {
        QMap<QString, QImage> pictures;
        for (const Layer* layer : Node().GetLayers("persp")) {
            for (int i = 0; i < layer->FrameCount(); ++i) {
                const QString place =
                    QString("%1/%2").arg(layer->GetName()).arg(layer->GetFrame(i)->GetTimeValue());
                pictures[place] = layer->GetFrame(i)->PeekImage();
            }
        }
        return pictures;
    }
    std::size_t Steps() { return host_->undo().Names().size(); }
    void ClickOnFrame(double frame) {
        auto& slider = *Window().findChild<lightbox::TimeSlider*>();
        const auto x = static_cast<int>(slider.Scale().X(frame) + slider.Scale().PixelsPerFrame() / 2.0);
        input_.MoveTo(slider.mapToGlobal(QPoint(x, slider.height() / 2)));
        Settle(20);
        input_.Press();
        Settle(20);
        input_.Release();
        Settle(40);
    }
    std::vector<std::string> Errors() {
        std::vector<std::string> errors;
        std::copy_if(messages_.begin(), messages_.end(), std::back_inserter(errors),
                     [](const std::string& line) { return line.find("Error") != std::string::npos; });
        return errors;
    }
};

} // namespace

TEST_F(StrokeInWindowTest, WhatChangesUnderTheTextCommitsItFirst) {
    const struct {
        const char* what;
        std::function<void()> change;
    } rows[] = {
        {"a click on the time slider", [this] { ClickOnFrame(5); }},
        {"a line of MEL", [this] { Run("currentTime 5"); }},
        {"a step", [this] { Run("qmVellixFrame -stepForward"); }},
        {"playback",
         [this] {
             Run("play -forward 1");
             WaitFor([this] { return host_->time().CurrentTime() >= 5; });
             Run("play -state off; currentTime 5");
         }},
        {"another layer", [this] { Run("qmVellixLayer -e -active 1 persp"); }},
        {"a new layer", [this] { Run("qmVellixLayer -add -n New -ls 0 persp"); }},
        {"another camera", [this] { Run("lookThru modelPanel4 top"); }},
        {"its frame is deleted", [this] { Run("qmVellixFrame -delete"); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Begin();
        const QMap<QString, QImage> before = Pictures();
        BeginText();
        Type('w');
        Type('w');
        row.change();
        EXPECT_FALSE(Node().HasActiveStroke());
        Type(KEY_ESCAPE);
        QMap<QString, QImage> now = Pictures();
        const QImage text = now.take("Layer/3");
        now.remove("New/3");
        EXPECT_EQ(now, before);
        EXPECT_EQ(text.isNull(), std::string(row.what).find("deleted") != std::string::npos);
        if (!text.isNull()) {
            EXPECT_NE(text, QImage(text.size(), text.format())) << "it holds the text";
        }
        while (Steps() > 0) {
            Run("undo");
        }
        EXPECT_EQ(Pictures(), before);
        while (!host_->undo().RedoName().empty()) {
            Run("redo");
        }
        EXPECT_EQ(Pictures().value("Layer/3"), text);
        EXPECT_EQ(Pictures().value("Layer/5"), before.value("Layer/5"));
        EXPECT_EQ(Errors(), std::vector<std::string>());
    }
}

// A press elsewhere is a step before the one of what was pressed.
TEST_F(StrokeInWindowTest, TheTextIsAStepOfItsOwn) {
    const QMap<QString, QImage> before = Pictures();
    BeginText();
    Type('w');
    ClickOnFrame(5);
    ASSERT_EQ(Steps(), 2U);
    Run("undo");
    EXPECT_EQ(host_->time().CurrentTime(), 3);
    EXPECT_TRUE(Pictures().contains("Layer/3"));
    Run("undo");
    EXPECT_EQ(Pictures(), before);

    // Undo itself may change the time. Then the text is committed after it, and can still be undone.
    Run("currentTime 1; currentTime 3");
    BeginText();
    Type('w');
    Run("undo");
    EXPECT_FALSE(Node().HasActiveStroke());
    EXPECT_TRUE(Pictures().contains("Layer/3"));
    Run("undo");
    EXPECT_EQ(Pictures(), before);
}

TEST_F(StrokeInWindowTest, KeysOfUndoAndPasteActOnTheText) {
    Run("currentTime 1; qmVellixUtil -brushTool");
    Drag({{100, 100}, {200, 100}});
    const QMap<QString, QImage> drawn = Pictures();
    const std::size_t steps = Steps();
    BeginText();
    for (const char key : {'a', 'b', 'c'}) {
        Type(static_cast<unsigned>(key));
    }
    QGuiApplication::clipboard()->setText(QString("one\r\ntwo\x01\tthree"));
    TypeWithControl('v');
    EXPECT_EQ(Text(), "abcone\ntwo\tthree");
    Type(KEY_TAB);
    EXPECT_EQ(Text(), "abcone\ntwo\tthree\t");
    TypeWithControl('a');
    TypeWithControl('k');
    EXPECT_EQ(Text(), "abcone\ntwo\tthree\t") << "no control characters";
    TypeWithControl('z');
    EXPECT_EQ(Text(), "abcone\ntwo\tthree");
    TypeWithControl('z');
    EXPECT_EQ(Text(), "abc");
    TypeWithControl('z', true);
    EXPECT_EQ(Text(), "abcone\ntwo\tthree");
    for (int i = 0; i < 5; ++i) {
        TypeWithControl('z');
    }
    EXPECT_EQ(Text(), "");
    EXPECT_EQ(Pictures(), drawn) << "earlier strokes stay";
    EXPECT_EQ(Steps(), steps);
    Type('d');
    EXPECT_EQ(Text(), "d");

    QGuiApplication::clipboard()->setText(QString(5000, 'x'));
    TypeWithControl('v');
    EXPECT_EQ(Text().size(), 2000);
    Type(KEY_ESCAPE);
    EXPECT_NE(Pictures(), drawn);
}

TEST_F(StrokeInWindowTest, SavingTakesTheTextAlong) {
    for (const char* suffix : {"ma", "lbx"}) {
        Begin();
        const QString path = prefs_.filePath(QString("text.") + suffix);
        BeginText();
        Type('w');
        Run("file -rename \"" + path.toStdString() + "\"; file -save");
        EXPECT_FALSE(Node().HasActiveStroke());
        EXPECT_FALSE(host_->files().IsModified());
        const QMap<QString, QImage> saved = Pictures();
        ASSERT_TRUE(saved.contains("Layer/3"));
        Run("file -force -new; file -open \"" + path.toStdString() + "\"");
        EXPECT_EQ(Pictures(), saved);
        EXPECT_NE(saved["Layer/3"], QImage(1024, 1024, QImage::Format_RGBA8888));
    }
}

TEST_F(StrokeInWindowTest, OpenTextCountsAsUnsaved) {
    host_->files().SetModified(false);
    BeginText();
    EXPECT_FALSE(host_->files().IsModified());
    Type('w');
    EXPECT_TRUE(host_->files().IsModified());
    EXPECT_ANY_THROW(Run("file -new"));
    EXPECT_EQ(Text(), "w");
    Type(KEY_ESCAPE);
    EXPECT_TRUE(Pictures().contains("Layer/3"));
}

TEST_F(StrokeInWindowTest, APencilGoesOnInItsDrawingWhileTheTimeChanges) {
    const struct {
        const char* what;
        std::function<void()> change;
    } rows[] = {
        {"a step of the time", [this] { Run("currentTime 5"); }},
        {"playback",
         [this] {
             Run("play -forward 1");
             WaitFor([this] { return host_->time().CurrentTime() >= 5; });
         }},
        {"another layer", [this] { Run("qmVellixLayer -e -active 1 persp"); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Begin();
        Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 20 100 100 0");
        const QMap<QString, QImage> before = Pictures();
        PressAndWait({300, 200});
        MoveAndWait({340, 200});
        row.change();
        MoveAndWait({400, 200});
        MoveAndWait({460, 200});
        Run("play -state off");
        if (host_->time().CurrentTime() >= 5) {
            Run("currentTime 5");
            const auto layers = Node().GetLayerManager();
            EXPECT_EQ(*Node().GetFinalImage("persp"), layers->ComposeFrame("persp", 5, false))
                << "not shown here";
            Run("currentTime 4");
            EXPECT_NE(*Node().GetFinalImage("persp"), layers->ComposeFrame("persp", 4, false));
            Run("currentTime 5");
        }
        const QPoint end = ActiveStroke()->points.last().position;
        Release();
        QMap<QString, QImage> now = Pictures();
        EXPECT_GT(now["Layer/3"].pixelColor(end - QPoint(5, 0)).alpha(), 200);
        now.remove("Layer/3");
        EXPECT_EQ(now, before);
        while (Steps() > 0) {
            Run("undo");
        }
        EXPECT_EQ(Pictures(), before);
    }
}

TEST_F(StrokeInWindowTest, AStrokeThatCannotBeCommittedIsDroppedWithOneMessage) {
    const struct {
        const char* line;
        const char* message;
    } rows[] = {
        {"qmVellixLayer -es 2 0 persp", "the layer \"Layer\" is locked."},
        {"qmVellixLayer -ev 0 0 persp", "the layer \"Layer\" is not visible."},
        {"qmVellixLayer -delete 0 persp", "the drawing it began on is gone."},
        {"delete vellix", "the drawing it began on is gone."},
    };
    for (const auto& row : rows) {
        for (const bool isText : {false, true}) {
            const bool deletes = std::string(row.line).find("delete") != std::string::npos;
            if (isText && deletes) {
                continue; // the text is committed first
            }
            SCOPED_TRACE(::testing::Message() << row.line << isText);
            Begin();
            const QMap<QString, QImage> before = Pictures();
            if (isText) {
                BeginText();
                Type('w');
            } else {
                Run("qmVellixUtil -brushTool");
                PressAndWait({300, 200});
                MoveAndWait({340, 200});
            }
            messages_.clear();
            Run(row.line);
            if (isText) {
                Type(KEY_ESCAPE);
            } else {
                Release();
            }
            ASSERT_EQ(Errors().size(), 1U);
            EXPECT_NE(Errors()[0].find(row.message), std::string::npos) << Errors()[0];
            Run("undo");
            EXPECT_FALSE(Node().HasActiveStroke());
            EXPECT_EQ(Pictures(), before);
        }
    }
}

} // namespace vellix
