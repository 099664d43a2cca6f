#include "node/IdleWork.h"

#include "core/Frame.h"
#include "plugin/ShortOfMemory.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/paint/PngBytes.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QImage>
#include <QKeyEvent>

#include <functional>

namespace vellix {
namespace {

class IdleWorkTest : public CommandFixture {
protected:
    // Ten keys from frame 1 on, each with pixels, of which the first is shown.
    void SetUp() override {
        CommandFixture::SetUp();
        Mel("qmVellixLayer -add -n Rough -ls 0 persp");
        for (int time = 1; time <= KEYS; ++time) {
            auto frame = std::make_unique<Frame>(MTime(time, MTime::uiUnit()));
            QImage image(1024, 1024, QImage::Format_RGBA8888);
            image.fill(QColor(20 * time, 0, 0, 255));
            frame->SetImage(image);
            GetLayer().InsertFrame(frame.release());
        }
        Mel("currentTime 1");
        IdleWork::Start();
    }
    void TearDown() override {
        IdleWork::Stop();
        CommandFixture::TearDown();
    }

    static constexpr int KEYS = 10;

    static LayerManager& Layers() { return *Node().GetLayerManager(); }
    static Layer& GetLayer() { return *Layers().GetActiveLayer("persp"); }
    static Frame& Key(int time) { return *GetLayer().GetFrame(time - 1); }

    // Turns the event loop until something holds, or some seconds are over.
    static bool Until(const std::function<bool()>& holds, int milliseconds = 20000) {
        QElapsedTimer timer;
        timer.start();
        while (!holds() && timer.elapsed() < milliseconds) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        return holds();
    }
    static bool IsFarPacked() { return !Key(KEYS).IsUnpacked(); }
};

TEST_F(IdleWorkTest, PacksWhatWasDrawn) {
    const QString before = Drawing();
    EXPECT_TRUE(Key(KEYS).IsUnpacked());
    Key(2).SetImage(Key(2).GetImage().copy()); // pixels that were never packed
    GetLayer().SetImage(Key(1).GetImage().copy());
    ASSERT_TRUE(Until(IsFarPacked));
    for (int time = 1; time <= KEYS; ++time) {
        EXPECT_EQ(Key(time).IsUnpacked(), time <= 3)
            << "those near the current time keep their pixels " << time;
    }
    {
        const ShortOfMemory shortage;
        if (shortage.IsShort()) {
            EXPECT_FALSE(Key(2).GetPackedImage().isEmpty()) << "the bytes are at hand";
        }
    }
    EXPECT_EQ(Drawing(), before);
}

TEST_F(IdleWorkTest, DecodesWhatComesNext) {
    for (int time = 1; time <= KEYS; ++time) {
        Key(time).PackImage();
    }
    Key(KEYS).SetPackedImage(png_bytes::NotInflating()); // which shows when it is decoded
    ASSERT_TRUE(Layers().ReadAhead("persp", 9)) << "nothing is decoded before";
    IdleWork::Schedule();
    ASSERT_TRUE(Until([] { return Key(KEYS).IsDamaged(); }));
    for (int time = 2; time <= KEYS; ++time) {
        EXPECT_FALSE(Layers().ReadAhead("persp", time)) << time;
        EXPECT_FALSE(Key(time).IsUnpacked()) << time;
    }
    EXPECT_TRUE(Messages().isEmpty()) << "damage is reported when it is met";
    Mel(QString("currentTime %1").arg(KEYS));
    Layers().GetFlattenedImage("persp");
    EXPECT_EQ(Messages().size(), 1);
}

TEST_F(IdleWorkTest, RestsWhileSomethingHappens) {
    IdleWork::Schedule();
    EXPECT_FALSE(Until(
        [] {
            QKeyEvent key(QEvent::KeyRelease, Qt::Key_F5, Qt::NoModifier);
            QCoreApplication::sendEvent(QCoreApplication::instance(), &key);
            return IsFarPacked();
        },
        800))
        << "during keys";
    ASSERT_NE(Layers().GetActiveStroke("persp", false), nullptr);
    EXPECT_FALSE(Until(IsFarPacked, 800)) << "during a stroke";
    Layers().CancelActiveStroke();
    EXPECT_TRUE(Until(IsFarPacked));
}

TEST_F(IdleWorkTest, TheDrawingMayBeGone) {
    IdleWork::Schedule();
    Until([] { return !Key(4).IsUnpacked(); });
    Mel("file -f -new");
    Until([] { return false; }, 500);
    EXPECT_EQ(BaseNode::GetMaster(), nullptr);
}

} // namespace
} // namespace vellix
