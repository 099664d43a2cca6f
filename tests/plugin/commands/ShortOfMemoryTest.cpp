// Memory that runs out at any allocation: a stroke is drawn, or it says so and has changed nothing.

#include "commands/LayerCommand.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/entry/GuardedCommand.h"
#include "paint/Stroke.h"
#include "plugin/FailingAllocation.h"
#include "plugin/commands/CommandFixture.h"
#include "scene/Output.h"

#include <cstdio>

namespace vellix {
namespace {

using lightbox::Host;

class ShortOfMemoryTest : public CommandFixture {
protected:
    // persp: A, B with B active, each with drawings at 1 and 3; top: X.
    void SetUp() override {
        if (!FailingAllocation::IsPossible()) {
            GTEST_SKIP() << "this build's allocations cannot be replaced";
        }
        CommandFixture::SetUp();
        Settings::defaultLayerState = 0;
        for (const char* line : {"-n X -ls 0 top", "-n A -ls 0 persp", "-n B -ls 0 persp"}) {
            Mel(QString("qmVellixLayer -add ") + line);
        }
        Record(1, 300);
        Record(3, 500);
        Mel("currentTime 3; qmVellixFrame -copy");
    }

    void Record(int frame, int y) {
        Mel("qmVellixReplay -camera persp -file \"" + Recording(frame, y, 1) + "\"");
    }
    /// A recording of short pencil strokes.
    QString Recording(int frame, int y, int strokes) const {
        QStringList rows;
        for (int i = 0; i < strokes; ++i) {
            rows.append(QString(R"({"frame": %1, "tool": "pencil", "size": 9, "opacity": 100, "hardness": 100,
                "color": [20, 60, 240], "samples": [[100, %2, 1, 0], [200, %3, 1, 8]]})")
                            .arg(frame + i)
                            .arg(y)
                            .arg(y + 30 * i));
        }
        return WriteFile(
            QString("%1-%2-%3.json").arg(frame).arg(y).arg(strokes),
            QString(R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [%1]})")
                .arg(rows.join(", "))
                .toUtf8());
    }

    /// The numbers of the allocations to let fail: each of the first, then fewer and fewer.
    static int Next(int number) { return number < 60 ? number + 1 : number + number / 16; }

    bool said_ = false;
};

// What the draw tool does at a press, while it is drawn, and at the release.
TEST_F(ShortOfMemoryTest, AStrokeIsKeptOrDroppedWithWhatItsPressAdded) {
    int failures = 0;
    for (const char* const camera : {"persp", "side"}) {
        for (const int time : {3, 4}) {
            SCOPED_TRACE(::testing::Message() << camera << " at " << time);
            Mel(QString("currentTime %1").arg(time));
            const QString before = Drawing();
            const auto draw = [camera] {
                int layer = -1;
                bool frameAdded = false;
                if (!Node().PrepareForDraw(camera, layer, frameAdded)) {
                    return false;
                }
                Stroke* const stroke = Node().GetActiveStroke(camera, false);
                if (!stroke) {
                    return false;
                }
                stroke->tool = ToolType::Pencil;
                for (int x = 100; x < 160; x += 20) {
                    stroke->points.append({20, 1.0f, 1.0f, QPoint(x, 800)});
                    stroke->changed = true;
                    Node().GetFinalImage(camera);
                }
                return Node().MayCommitStroke() && MayaUtil::PushStroke(camera, layer, frameAdded);
            };
            for (int number = 1;; number = Next(number), ++failures) {
                said_ = false;
                Host::Get().output().SetSink([this](lightbox::Output::Kind kind, const std::string&) {
                    const FailingAllocation::Pause pause;
                    said_ = said_ || kind == lightbox::Output::Kind::Error;
                });
                bool isDrawn = false;
                bool hasFailed = false;
                {
                    const FailingAllocation failing(number);
                    try {
                        isDrawn = draw();
                    } catch (const std::bad_alloc&) {
                        said_ = true; // the tool's guard says it
                    }
                    hasFailed = FailingAllocation::HasFailed();
                }
                Node().CancelActiveStroke();
                Node().GetLayerManager()->TakeBackPress();
                if (isDrawn) {
                    Mel("undo");
                } else {
                    ASSERT_TRUE(said_) << "at allocation " << number;
                }
                const auto compared = [camera](const QString& drawing) { // see StrokeTargetTest
                    return drawing.mid(camera == std::string("side") ? drawing.indexOf('\n') : 0)
                        .toStdString();
                };
                ASSERT_EQ(compared(Drawing()), compared(before)) << "at allocation " << number;
                if (!hasFailed) {
                    ASSERT_TRUE(isDrawn);
                    break;
                }
            }
        }
    }
    std::printf("%d allocations failed\n", failures);
}

// The host asks for it while the plug-in is loaded, and catches nothing.
TEST_F(ShortOfMemoryTest, ACommandThatCannotBeDescribedThrowsNothing) {
    bool hasFailed = true;
    int number = 0;
    while (hasFailed) {
        ++number;
        {
            const FailingAllocation failing(number);
            EXPECT_NO_THROW(GuardedCommand<LayerCommand>::CommandSyntax());
            hasFailed = FailingAllocation::HasFailed();
        }
        const int failures = hasFailed ? number : number - 1;
        EXPECT_EQ(Messages().filter("Describing the command failed").size(), failures);
    }
    EXPECT_GT(number, 1);
}

} // namespace
} // namespace vellix
