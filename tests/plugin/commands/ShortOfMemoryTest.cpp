// Memory that runs out at any allocation: a step is done, or it says so and has changed nothing.

#include "app/PluginManager.h"
#include "commands/LayerCommand.h"
#include "core/Frame.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/entry/GuardedCommand.h"
#include "host/entry/PluginMain.h"
#include "node/BaseNodeLayerData.h"
#include "openmaya/PluginHandle.h"
#include "paint/Stroke.h"
#include "plugin/FailingAllocation.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/exchange/MadeArchive.h"
#include "scene/EventBus.h"
#include "scene/Output.h"
#include "scene/Plugin.h"

#include <maya/MCallbackIdArray.h>
#include <maya/MFn.h>
#include <maya/MNodeMessage.h>
#include <maya/MString.h>

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <ostream>
#include <streambuf>
#include <string>

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

    /// Keeps in said_ whether an error is shown from now on.
    void Listen() {
        said_ = false;
        lastError_.clear();
        Host::Get().output().SetSink([this](lightbox::Output::Kind kind, const std::string& text) {
            const FailingAllocation::Pause pause;
            said_ = said_ || kind == lightbox::Output::Kind::Error;
            lastError_ += kind == lightbox::Output::Kind::Error ? text + "\n" : std::string();
        });
    }
    /// Runs a line while an allocation fails. Returns whether it was asked for.
    bool RunShort(const std::string& line, int number) {
        Listen();
        isDone_ = true;
        const FailingAllocation failing(number);
        try {
            Host::Get().interpreter().Execute(line);
        } catch (const lightbox::mel::Error& error) {
            const FailingAllocation::Pause pause;
            isDone_ = false;
            said_ = said_ || !error.Described().empty(); // the host shows it
        } catch (const std::bad_alloc&) {
            isDone_ = false;
            said_ = true; // so does it show this
        }
        return FailingAllocation::HasFailed();
    }
    void SweepLine(const std::string& line, int first);
    void SweepStep(const std::string& step, const QString& start, const QString& goal);

    bool said_ = false;
    bool isDone_ = false;
    std::string lastError_;
    int failures_ = 0;
};

/// Runs the line, with one allocation after the other failing, until none fails any more. Then it is done.
void ShortOfMemoryTest::SweepLine(const std::string& line, int first) {
    const QString before = Drawing();
    const std::string nodes = Mel("sort(`ls`)").Shown();
    const std::size_t callbacks = Host::Get().events().CallbackCount();
    for (int number = first; RunShort(line, number); ++number, ++failures_) {
        const QString after = Drawing();
        if (isDone_) {
            Mel("undo");
            ASSERT_EQ(Drawing().toStdString(), before.toStdString()) << "undone after allocation " << number;
        } else {
            ASSERT_EQ(after.toStdString(), before.toStdString()) << "at allocation " << number;
            ASSERT_TRUE(said_) << "at allocation " << number;
        }
        ASSERT_EQ(Mel("sort(`ls`)").Shown(), nodes) << "at allocation " << number << " " << lastError_;
        ASSERT_EQ(Host::Get().events().CallbackCount(), callbacks) << "at allocation " << number;
    }
    ASSERT_TRUE(isDone_) << lastError_;
    ASSERT_NE(Drawing().toStdString(), before.toStdString());
}

/// The same for undo or redo, which leads from one drawing to another.
void ShortOfMemoryTest::SweepStep(const std::string& step, const QString& start, const QString& goal) {
    for (int number = 1; RunShort(step, number); ++number, ++failures_) {
        const QString after = Drawing();
        ASSERT_TRUE(after == goal || (after == start && said_)) << step << " at allocation " << number << "\n"
                                                                << after.toStdString() << "is neither\n"
                                                                << start.toStdString() << "nor\n"
                                                                << goal.toStdString();
        // A step that failed has left the queue all the same; the way back has nothing to do then.
        Mel(step == "undo" ? "redo" : "undo");
        ASSERT_EQ(Drawing().toStdString(), start.toStdString()) << step << " at allocation " << number;
    }
    ASSERT_EQ(Drawing().toStdString(), goal.toStdString());
}

TEST_F(ShortOfMemoryTest, ACommandItsUndoAndItsRedoAreDoneWholeOrNotAtAll) {
    struct Row {
        const char* before; ///< how the scene comes to be; stays so for the next rows
        QString line;
    };
    const QString replay = "qmVellixReplay -file \"" + Recording(3, 700, 3) + "\" -camera ";
    for (const char* const name : {"walk.0003.png", "walk.0005.png"}) {
        WriteFile(name, MadeArchive::Png(1024, 1024, QColor(9, 8, 7, name[8])));
    }
    const QString import =
        QString("qmVellixImport -file \"%1\" -camera ").arg(folder_.filePath("walk.*.png"));
    const QString other = folder_.filePath("other.");
    for (const char* const suffix : {"ora", "pclx"}) {
        Mel(QString("qmVellixExport -camera persp -layered \"%1%2\" -startTime 3 -endTime 3")
                .arg(other, suffix));
    }
    const QString layers = "qmVellixImport -camera persp -startTime 1 -file \"" + other;
    Mel(QString("file -force -type mayaAscii -exportAll \"%1ma\"").arg(other));
    const QString scene = QString("qmVellixImport -scene \"%1ma\"").arg(other);
    const Row rows[] = {
        // More frames than the layer has room for, in the place of one.
        {"timeControl -e -rangeArray 3 23 $gPlayBackSlider; qmVellixFrame -insert top;"
         "qmVellixFrame -copy top; undo; timeControl -e -rangeArray 3 4 $gPlayBackSlider",
         "qmVellixFrame -paste persp"},
        {"timeControl -e -rangeVisible 0 $gPlayBackSlider; qmVellixFrame -copy persp",
         "qmVellixLayer -add -n New -ls 2 persp"},
        {"", "qmVellixLayer -add -n New -ls 0 side"},
        {"", "qmVellixLayer -insert 1 -n New -ls 1 persp"},
        {"", "qmVellixLayer -delete 0 persp"},
        {"", "qmVellixLayer -delete 1 persp"},
        {"", "qmVellixLayer -deleteAll persp"},
        {"", "qmVellixLayer -move 0 1 persp"},
        {"", "qmVellixLayer -newCamera top -move 1 0 persp"},
        {"", "qmVellixLayer -newCamera side -move 0 0 persp"},
        {"", "qmVellixLayer -moveAll top persp"},
        {"", "qmVellixLayer -moveAll side persp"},
        {"", "qmVellixLayer -e -active 0 persp"},
        {"", "qmVellixLayer -e -active 0 top"},
        {"", "qmVellixLayer -editName Other 1 persp"},
        {"", "qmVellixLayer -editVis 0 1 persp"},
        {"", "qmVellixLayer -editOpacity 0.5 1 persp"},
        {"", "qmVellixLayer -editState 2 1 persp"},
        {"", "qmVellixFrame -delete persp"},
        {"", "qmVellixFrame -cut persp"},
        {"", "qmVellixFrame -clear persp"},
        {"", "qmVellixFrame -paste top"},
        {"", "qmVellixFrame -insert top"},
        {"", "qmVellixFrame -insert side"},
        {"", "qmVellixFrame -stepBack persp"},
        {"", "qmVellixFrame -move 4 1 3 persp"},
        {"", "qmVellixFrame -move -1 3 3 persp"},
        {"", replay + "persp"},
        {"", replay + "side"},
        {"", import + "persp -layer B"}, // into a layer, at times that it has and others
        {"", import + "side"},
        {"currentTime 1", "qmVellixFrame -paste persp"},
        {"", "qmVellixFrame -retime 6 persp"},
        {"currentTime 2", "qmVellixFrame -duplicate persp"},
        {"", "qmVellixFrame -insert persp"},
        {"", "qmVellixFrame -stepForward persp"},
        {"", "qmVellixFrame -retime 2 -relative persp"},
        {"file -f -new", "qmVellixNode -layer -camera side -frame"},
        {"", replay + "persp"},
        {"", import + "persp"},
        {"file -f -new; camera; rename camera1 other; qmVellixNode -layer -camera persp", layers + "ora\""},
        {"", layers + "pclx\""},
        {"", scene + " -camera persp"},
        {"delete vellix", scene},
    };
    // Qt's reader of JSON ends the program when an allocation of it fails. It is done when the camera is
    // found to be missing.
    RunShort((replay + "nowhere").toStdString(), std::numeric_limits<int>::max());
    const int afterReading = FailingAllocation::Count();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line.toStdString());
        Mel(row.before);
        const QString before = Drawing();
        ASSERT_NO_FATAL_FAILURE(
            SweepLine(row.line.toStdString(), row.line.startsWith(replay) ? afterReading : 1));
        const QString done = Drawing();
        ASSERT_NO_FATAL_FAILURE(SweepStep("undo", done, before));
        ASSERT_NO_FATAL_FAILURE(SweepStep("redo", before, done));
        Mel("undo");
        ASSERT_EQ(Drawing().toStdString(), before.toStdString());
    }
    std::printf("%d allocations failed\n", failures_);
}

// Also across the library that makes the archives, which knows no exceptions. Qt converts the thumbnail of an
// .ora on threads that do not outlive a failure.
TEST_F(ShortOfMemoryTest, AFileOfLayersIsWrittenWholeOrNotAtAll) {
    const QString drawing = Drawing();
    for (const char* const name : {"a.pclx", "a.psd"}) {
        SCOPED_TRACE(name);
        const QString path = folder_.filePath(name);
        const QString line =
            QString("qmVellixExport -camera persp -layered \"%1\" -startTime 3 -endTime 3").arg(path);
        const auto written = [&path] {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        Mel(line);
        const QByteArray whole = written();
        const int files = QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden).size();
        bool hasFailed = true;
        for (int number = 1; hasFailed; number += 1 + number / 50, ++failures_) {
            QFile::remove(path);
            hasFailed = RunShort(line.toStdString(), number);
            const bool isThere = QFile::exists(path); // also when only the answer could not be made
            ASSERT_TRUE(isDone_ ? isThere : said_) << "at allocation " << number;
            ASSERT_TRUE(!isThere || written() == whole) << "at allocation " << number;
            ASSERT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden).size(),
                      files - (isThere ? 0 : 1));
        }
        ASSERT_TRUE(isDone_);
        ASSERT_EQ(Drawing(), drawing);
    }
    std::printf("%d allocations failed\n", failures_);
}

// What is only seen changes nothing, and is seen once there is memory.
TEST_F(ShortOfMemoryTest, TheLightTableLeavesTheDrawing) {
    Mel("currentTime 3");
    const QString before = Drawing();
    for (const char* flags :
         {"-flip -1", "-flip 0", "-roll 1", "-roll 0", "-e -pinDrawing 1", "-e -markLayer 1"}) {
        SCOPED_TRACE(flags);
        for (int number = 1; RunShort(std::string("qmVellixUtil ") + flags, number); ++number, ++failures_) {
            ASSERT_TRUE(isDone_ || said_) << "at allocation " << number;
        }
        EXPECT_TRUE(isDone_);
        EXPECT_EQ(Drawing(), before);
    }
    Mel("qmVellixUtil -e -ghostPrevious 1; qmVellixUtil -e -ghostNext 1; currentTime 9");
    QImage wanted;
    bool hasFailed = true;
    for (int number = 0; hasFailed; ++number) {
        Mel("qmVellixUtil -e -ghostLayers 0");
        Node().GetFinalImage("persp"); // without what is kept of the ghosts
        Mel("qmVellixUtil -e -ghostLayers 2");
        if (number > 0) {
            const FailingAllocation failing(number);
            try {
                Node().GetFinalImage("persp");
            } catch (const std::bad_alloc&) {
                // as the view does
            }
            hasFailed = FailingAllocation::HasFailed();
        }
        const QImage seen = Node().GetFinalImage("persp")->copy();
        wanted = number == 0 ? seen : wanted;
        ASSERT_EQ(seen, wanted) << "after allocation " << number;
    }
    Mel("qmVellixUtil -e -ghostLayers 0; qmVellixUtil -e -ghostPrevious 0; qmVellixUtil -e -ghostNext 0");
}

// A layer keeps the room that it once got, so each time has a new one.
TEST_F(ShortOfMemoryTest, FramesThatFindNoRoomLeaveTheDrawingThatTheyWouldReplace) {
    bool hasFailed = true;
    for (int number = 1; hasFailed; ++number) {
        SetUp();
        for (const char* const line :
             {"timeControl -e -rangeArray 3 23 $gPlayBackSlider", "qmVellixFrame -insert top",
              "qmVellixFrame -copy top", "undo", "timeControl -e -rangeArray 3 4 $gPlayBackSlider"}) {
            Mel(line);
        }
        const QString before = Drawing();
        hasFailed = RunShort("qmVellixFrame -paste persp", number);
        ASSERT_TRUE(isDone_ || said_);
        ASSERT_EQ(isDone_, Drawing() != before) << Drawing().toStdString() << "at allocation " << number;
    }
    EXPECT_EQ(Node().GetActiveLayer("persp")->FrameCount(), 21);
}

TEST_F(ShortOfMemoryTest, FramesAreCopiedAllTogetherOrThoseCopiedBeforeStay) {
    Mel("timeControl -e -rangeArray 1 4 $gPlayBackSlider");
    const auto copied = [] { return Node().GetClipboardFrames().size(); };
    ASSERT_EQ(copied(), 1);
    for (int number = 1; RunShort("qmVellixFrame -copy persp", number); ++number, ++failures_) {
        ASSERT_TRUE(isDone_ || said_);
        ASSERT_EQ(copied(), isDone_ ? 2 : 1) << "at allocation " << number;
        Mel("timeControl -e -rangeArray 3 4 $gPlayBackSlider; qmVellixFrame -copy persp;"
            "timeControl -e -rangeArray 1 4 $gPlayBackSlider");
    }
    EXPECT_EQ(copied(), 2);
    EXPECT_GT(failures_, 3);
}

// What the draw tool does at a press, while it is drawn, and at the release.
TEST_F(ShortOfMemoryTest, AStrokeIsKeptOrDroppedWithWhatItsPressAdded) {
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
            for (int number = 1;; ++number, ++failures_) {
                Listen();
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
            if (camera == std::string("persp")) {
                ASSERT_TRUE(draw());
                const QString done = Drawing();
                ASSERT_NO_FATAL_FAILURE(SweepStep("undo", done, before));
                ASSERT_NO_FATAL_FAILURE(SweepStep("redo", before, done));
                Mel("undo");
            }
        }
    }
    std::printf("%d allocations failed\n", failures_);
}

/// Has memory run out in the plug-in's own callback of a rename, by callbacks before and after it.
class RenameCallbacks {
public:
    /// The plug-in is loaded anew between the two.
    RenameCallbacks() {
        const std::string name = Host::Get().plugins().Find("vellix2")->name;
        Host::Get().plugins().Unload(name, false);
        ids_.append(MNodeMessage::addNameChangedCallback(MObject::kNullObj, Begin, this));
        static_cast<lightbox::PluginManager&>(Host::Get().plugins())
            .LoadBuiltin(name, initializePlugin, uninitializePlugin);
        ids_.append(MNodeMessage::addNameChangedCallback(MObject::kNullObj, End, this));
    }
    RenameCallbacks(const RenameCallbacks&) = delete;
    RenameCallbacks& operator=(const RenameCallbacks&) = delete;
    ~RenameCallbacks() { MMessage::removeCallbacks(ids_); }

    void FailAt(int number) {
        number_ = number;
        hasFailed_ = false;
    }
    bool HasFailed() {
        number_ = 0;
        return hasFailed_;
    }

private:
    static void Begin(MObject& node, const MString&, void* self) {
        auto& callbacks = *static_cast<RenameCallbacks*>(self);
        if (callbacks.number_ > 0 && node.hasFn(MFn::kTransform)) { // the shape gets a name too
            callbacks.failing_ = std::make_unique<FailingAllocation>(callbacks.number_);
        }
    }
    static void End(MObject&, const MString&, void* self) {
        auto& callbacks = *static_cast<RenameCallbacks*>(self);
        callbacks.hasFailed_ = callbacks.hasFailed_ || (callbacks.failing_ && FailingAllocation::HasFailed());
        callbacks.failing_.reset();
    }

    MCallbackIdArray ids_;
    std::unique_ptr<FailingAllocation> failing_;
    int number_ = 0;
    bool hasFailed_ = false;
};

// The callback of a rename cannot refuse it. The layers come after it with the next thing that happens.
TEST_F(ShortOfMemoryTest, LayersFollowARenamedCameraInTheEnd) {
    Mel("file -f -new");
    RenameCallbacks callbacks;
    SetUp();
    const auto makeCamera = [this](const QString& name) {
        Mel(QString("createNode transform -n %1; createNode camera -n %1Shape -p %1").arg(name));
    };
    struct Row {
        const char* before; ///< stays so for the next rows
        const char* rename;
    };
    makeCamera("shot");
    makeCamera("other");
    Mel("qmVellixLayer -moveAll shot persp");
    const Row rows[] = {
        {"", "rename shot hero"},
        {"qmVellixLayer -deleteAll top", "rename top \"up\""}, // an empty place
        {"undo; rename top gone; rename gone top", "rename other hero"},
        // The layers of a deleted camera have the name, or its place does.
        {"qmVellixLayer -add -n O -ls 0 other; delete shot", "rename other shot"},
        {"undo; undo; delete shot", "rename other shot"},
        {"undo; qmVellixLayer -deleteAll shot; delete shot", "rename top shot"},
        // Two cameras of one name have one stack.
        {"undo; undo; qmVellixLayer -add -n O -ls 0 other; group -n g other", "rename \"g|other\" shot"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rename);
        Mel(row.before);
        const QString before = Drawing();
        Mel(row.rename);
        const QString after = Drawing();
        for (const char* const next :
             {"select side; select -clear", "qmVellixNode -exists", "currentTime 4; currentTime 3"}) {
            Mel("undo");
            ASSERT_EQ(Drawing().toStdString(), before.toStdString());
            int followed = 0;
            bool hasFailed = true;
            for (int number = 1; hasFailed; ++number) {
                hasFailed = false;
                for (const char* const step : {row.rename, "undo", "redo", "undo"}) {
                    const QString start = Drawing();
                    const bool isBack = step == std::string("undo");
                    Listen();
                    callbacks.FailAt(number);
                    Host::Get().interpreter().Execute(step);
                    if (callbacks.HasFailed()) {
                        hasFailed = true;
                        ++followed;
                        ASSERT_TRUE(said_ || Drawing() != start) << step << " at allocation " << number;
                    }
                    Mel(QString("undoInfo -stateWithoutFlush 0; %1; undoInfo -stateWithoutFlush 1")
                            .arg(next));
                    ASSERT_EQ(Drawing().toStdString(), (isBack ? before : after).toStdString())
                        << step << " at allocation " << number;
                }
            }
            EXPECT_GT(followed, 3);
            failures_ += followed;
            Mel(row.rename);
        }
        Mel("undo");
    }
    std::printf("%d allocations failed\n", failures_);
}

// Renames that wait come before the drawing is stored.
TEST_F(ShortOfMemoryTest, ASavedFileHasTheNewNamesOfTheCameras) {
    Mel("file -f -new");
    RenameCallbacks callbacks;
    SetUp();
    Mel("createNode transform -n shot; createNode camera -n shotShape -p shot;"
        "qmVellixLayer -moveAll shot persp");
    Mel("rename shot hero");
    const QString after = Drawing();
    Mel("undo");
    callbacks.FailAt(1);
    Mel("rename shot hero");
    ASSERT_TRUE(callbacks.HasFailed());
    ASSERT_NE(Drawing().toStdString(), after.toStdString());
    Mel(QString("file -rename \"%1\"; file -save; file -open \"%1\"").arg(folder_.filePath("named.ma")));
    EXPECT_EQ(Drawing().toStdString(), after.toStdString());
}

TEST_F(ShortOfMemoryTest, ADrawingIsStoredWholeOrTheStoringFails) {
    /// Keeps what is written without memory of its own.
    class Checksum : public std::streambuf {
    public:
        quint64 sum = 0;

    protected:
        int overflow(int byte) override {
            Add(static_cast<char>(byte));
            return byte;
        }
        std::streamsize xsputn(const char* bytes, std::streamsize count) override {
            std::for_each(bytes, bytes + count, [this](char byte) { Add(byte); });
            return count;
        }

    private:
        void Add(char byte) { sum = sum * 1099511628211U + static_cast<unsigned char>(byte) + 1; }
    };
    BaseNodeLayerData data;
    data.SetLayerManager(Node().GetLayerManager());
    Frame& changed = *Node().GetLayer("persp", 1)->GetFrame(0);
    for (const auto write : {&BaseNodeLayerData::writeASCII, &BaseNodeLayerData::writeBinary}) {
        Checksum whole;
        std::ostream intoWhole(&whole);
        ASSERT_TRUE((data.*write)(intoWhole));
        bool hasFailed = true;
        int refused = 0;
        for (int number = 1; hasFailed; ++number) {
            changed.GetImage().bits(); // counts as changed, and so is encoded again
            Checksum written;
            std::ostream out(&written);
            Listen();
            MStatus status;
            {
                const FailingAllocation failing(number);
                status = (data.*write)(out);
                hasFailed = FailingAllocation::HasFailed();
            }
            if (status) {
                ASSERT_EQ(written.sum, whole.sum) << "at allocation " << number;
            } else {
                ASSERT_TRUE(said_) << "at allocation " << number;
                ++refused;
            }
        }
        EXPECT_GT(refused, 3);
    }
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

// The host unloads the code of a plug-in that could not be loaded.
TEST_F(ShortOfMemoryTest, ALoadingThatFailsTakesBackWhatItRegistered) {
    Mel("file -f -new");
    const lightbox::Plugin* const loaded = Host::Get().plugins().Find("vellix2");
    ASSERT_TRUE(loaded);
    const std::string name = loaded->name;
    Host::Get().plugins().Unload(name, false);
    const std::size_t callbacks = Host::Get().events().CallbackCount();
    const auto jobs = [] { return Host::Get().interpreter().Execute("size(`scriptJob -listJobs`)").Shown(); };
    const std::string jobsBefore = jobs();
    for (int number = 1;; ++number, ++failures_) {
        SCOPED_TRACE(::testing::Message() << "at allocation " << number);
        lightbox::Plugin plugin;
        plugin.name = name;
        const MObject object = lightbox::PluginHandle::MakeObject(plugin);
        Listen();
        MStatus status;
        bool hasFailed = false;
        {
            const FailingAllocation failing(number);
            EXPECT_NO_THROW(status = initializePlugin(object));
            hasFailed = FailingAllocation::HasFailed();
        }
        if (status) {
            EXPECT_TRUE(uninitializePlugin(object));
        } else {
            EXPECT_TRUE(said_);
        }
        EXPECT_TRUE(plugin.commands.empty() && plugin.contextCommands.empty() && plugin.dataTypes.empty() &&
                    plugin.nodeTypes.empty());
        EXPECT_EQ(Host::Get().events().CallbackCount(), callbacks);
        ASSERT_EQ(jobs(), jobsBefore);
        if (!hasFailed) {
            EXPECT_TRUE(status);
            break;
        }
    }
    std::printf("%d allocations failed\n", failures_);
    static_cast<lightbox::PluginManager&>(Host::Get().plugins())
        .LoadBuiltin(name, initializePlugin, uninitializePlugin);
}

} // namespace
} // namespace vellix
