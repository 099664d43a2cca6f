// Flipping with real keys, the pointer and the pen in the window.
#include "core/LightTable.h"
#include "plugin/tools/DrawToolFixture.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"

#include <QLineEdit>
#include <QPainter>
#include <QTest>

namespace vellix {

namespace {

class FlipKeysTest : public DrawToolFixture {
protected:
    // Keys at 1, 3 and 5, the second of which is shown. Each has a square at its own place.
    FlipKeysTest() {
        Run("qmVellixUtil -e -flipPreviousKey \",\"; qmVellixUtil -e -flipNextKey \".\"; "
            "qmVellixUtil -e -rollKey \"F7\"; qmVellixUtil -e -rollRate 30; qmVellixUtil -e -rollCount 1; "
            "qmVellixUtil -brushTool; currentTime 3; qmVellixFrame -insert; currentTime 5; "
            "qmVellixFrame -insert; currentTime 3");
        for (int key = 0; key < 3; ++key) {
            QImage image(1024, 1024, QImage::Format_RGBA8888);
            image.fill(Qt::transparent);
            QPainter(&image).fillRect(Square(key), Qt::red);
            Layer& layer = *Node().GetActiveLayer("persp");
            layer.GetFrame(key)->SetImage(image);
            layer.ForceCacheUpdate();
        }
        View().setFocus();
        Settle();
        Run("global int $times = 0; scriptJob -event timeChanged \"global int $times; $times++\"");
    }

    /// Of the image, in the part that the view shows.
    static QRect Square(int key) { return {200 + 200 * key, 480, 80, 80}; }
    /// The key whose square alone is seen on the screen; -1 for none, -2 for several.
    int SeenKey() {
        const QImage seen = View().grabFramebuffer();
        int found = -1;
        for (int key = 0; key < 3; ++key) {
            const QPoint middle = Square(key).center() - QPoint(0, (1024 - 576) / 2);
            const QColor color = seen.pixelColor(middle * seen.width() / View().width());
            if (color.red() > 200 && color.green() < 60) {
                found = found == -1 ? key : -2;
            }
        }
        return found;
    }
    bool Sees(int key) {
        return WaitFor([&] { return SeenKey() == key; }, 3000);
    }
    static bool IsFlipped() { return Node().GetLayerManager()->GetLightTable().IsFlipped(); }
    void Hold(unsigned symbol) {
        input_.PressKey(symbol);
        Settle(40);
    }
    void LetGo(unsigned symbol) {
        input_.ReleaseKey(symbol);
        Settle(40);
    }
};

constexpr unsigned F7 = 0xffc4;

} // namespace

TEST_F(FlipKeysTest, ADrawingIsSeenAsLongAsItsKeyIsHeld) {
    const auto names = host_->undo().Names();
    using Renderer = lightbox::ViewOptions::Renderer;
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        Use(renderer);
        EXPECT_TRUE(Sees(1));
        Hold(',');
        EXPECT_TRUE(Sees(0));
        Settle(900); // the key repeats itself
        EXPECT_EQ(SeenKey(), 0);
        LetGo(',');
        EXPECT_TRUE(Sees(1));
        Hold('.');
        EXPECT_TRUE(Sees(2));
        LetGo('.');
        EXPECT_TRUE(Sees(1));
        Hold(F7);
        EXPECT_TRUE(Sees(0));
        EXPECT_TRUE(Sees(2));
        EXPECT_TRUE(Sees(0));
        LetGo(F7);
        EXPECT_TRUE(Sees(1));
        Settle(200);
        EXPECT_EQ(SeenKey(), 1);
    }
    EXPECT_EQ(host_->time().CurrentTime(), 3.0);
    EXPECT_EQ(Run("$times = $times").AsInt(), 0);
    EXPECT_EQ(host_->undo().Names(), names);
}

TEST_F(FlipKeysTest, TheKeyThatIsStillHeldGoesOn) {
    Hold(',');
    EXPECT_TRUE(Sees(0));
    Hold('.');
    EXPECT_TRUE(Sees(2));
    LetGo(',');
    Settle(100);
    EXPECT_EQ(SeenKey(), 2) << "the other finger is up";
    Hold(',');
    EXPECT_TRUE(Sees(0));
    LetGo(',');
    EXPECT_TRUE(Sees(2));
    Hold(F7);
    EXPECT_TRUE(Sees(0));
    LetGo('.');
    EXPECT_TRUE(Sees(2)) << "it rolls on";
    EXPECT_TRUE(Sees(0));
    LetGo(F7);
    EXPECT_TRUE(Sees(1));
    EXPECT_FALSE(IsFlipped());

    // What has ended is not taken up again by another key's release.
    Hold(',');
    Hold('.');
    Run("currentTime 5");
    EXPECT_FALSE(IsFlipped());
    LetGo('.');
    EXPECT_FALSE(IsFlipped());
    LetGo(',');
    Run("currentTime 3");

    // A key that gets another meaning while it is held leaves nothing behind.
    Hold(',');
    EXPECT_TRUE(IsFlipped());
    Run("qmVellixUtil -e -flipPreviousKey \"F6\"");
    EXPECT_FALSE(IsFlipped());
    LetGo(',');
    EXPECT_FALSE(IsFlipped());
}

TEST_F(FlipKeysTest, AStrokeGoesToTheCurrentDrawing) {
    const QImage first = Node().GetActiveLayer("persp")->GetFrame(0)->GetImage().copy();
    const QImage current = Drawing();
    for (const unsigned key : {unsigned(','), F7}) {
        Hold(key);
        EXPECT_TRUE(WaitFor([this] { return SeenKey() == 0; }));
        PressAndWait({300, 100});
        EXPECT_FALSE(IsFlipped());
        EXPECT_TRUE(Sees(1)) << "seen while it is drawn on";
        MoveAndWait({500, 120});
        Settle(700); // the key repeats itself, and the roll would go on
        EXPECT_FALSE(IsFlipped());
        Release();
        LetGo(key);
        EXPECT_NE(Drawing(), current);
        EXPECT_EQ(Node().GetActiveLayer("persp")->GetFrame(0)->GetImage(), first);
        Run("undo");
        EXPECT_EQ(Drawing(), current);
    }
}

TEST_F(FlipKeysTest, AKeyTurnsNothingWhileAStrokeIsDrawn) {
    PressAndWait({300, 100});
    MoveAndWait({400, 120});
    Hold(',');
    EXPECT_FALSE(IsFlipped());
    MoveAndWait({500, 120});
    LetGo(',');
    Release();
    EXPECT_FALSE(Node().HasActiveStroke());
    EXPECT_FALSE(IsFlipped());
    Hold(',');
    EXPECT_TRUE(Sees(0));
    LetGo(',');
}

TEST_F(FlipKeysTest, KeysAreTypedIntoATextThatIsOpen) {
    Run("qmVellixUtil -textTool; qmVellixUtil -textOptions 30 100 \"DejaVu Sans\"");
    PressAndWait({300, 100});
    Release();
    Hold(',');
    LetGo(',');
    EXPECT_FALSE(IsFlipped());
    EXPECT_EQ(ActiveStroke()->text, ",");
    Type(0xff1b);
}

TEST_F(FlipKeysTest, ItEndsWhenAnotherWindowTakesTheFocus) {
    for (const unsigned key : {unsigned(','), F7}) {
        Hold(key);
        EXPECT_TRUE(IsFlipped());
        QWidget other;
        other.setGeometry(0, 0, 50, 50);
        other.show();
        other.activateWindow();
        QApplication::setActiveWindow(&other);
        EXPECT_TRUE(Sees(1));
        EXPECT_FALSE(IsFlipped());
        LetGo(key);
        other.close();
        QApplication::setActiveWindow(&Window());
        View().setFocus();
        Settle();
    }
}

TEST_F(FlipKeysTest, TheTimeAndPlaybackEndIt) {
    for (const char* line : {"currentTime 5", "play -forward true"}) {
        Run("play -state off; currentTime 3");
        Hold(F7);
        EXPECT_TRUE(IsFlipped());
        Run(line);
        EXPECT_TRUE(WaitFor([] { return !IsFlipped(); }));
        Settle(200);
        EXPECT_FALSE(IsFlipped());
        LetGo(F7);
    }
    Hold(',');
    EXPECT_FALSE(IsFlipped()) << "not during playback";
    LetGo(',');
    Run("play -state off");
}

TEST_F(FlipKeysTest, KeysGoWithThePlugin) {
    Hold(F7);
    host_->plugins().Unload("vellix2", true);
    Settle(200);
    LetGo(F7);
    EXPECT_EQ(Run("hotkey -q -k \",\" -name").AsString(), "");
    host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    EXPECT_EQ(Run("hotkey -q -k \",\" -name").AsString(), "qmVxFlipPrevious");
    EXPECT_EQ(Run("hotkey -q -k \"F7\" -releaseName").AsString(), "qmVxRollEnd");
    // What the user has bound to the key since is left alone.
    Run("hotkey -k \",\" -name \"mine\"; qmVellixUtil -e -flipPreviousKey \"\"");
    EXPECT_EQ(Run("hotkey -q -k \",\" -name").AsString(), "mine");
}

} // namespace vellix
