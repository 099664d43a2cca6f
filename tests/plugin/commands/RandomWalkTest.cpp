#include "core/Frame.h"
#include "core/LayerState.h"
#include "host/MayaUtil.h"
#include "node/LayerDataAsciiWriter.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/commands/DrawingModel.h"
#include "scene/UndoQueue.h"

#include <functional>
#include <random>
#include <sstream>
#include <string_view>

namespace vellix {
namespace {

// A long way through the commands that edit a drawing, chosen at random, each held against a plain model of
// layers and times; then back to the start and forth again. VELLIX_WALK_SEED and VELLIX_WALK_STEPS give
// another way.

const char* const CAMERAS[] = {"persp", "top", "side"};
const char* const NAMES[] = {"", "Rough", "Clean up", "Layer", "Layer 2"};
constexpr int LATEST = 16;
const char STROKES[] = "abcdefghijkl";

struct Line {
    QString text;
    /// What the model says to it.
    std::function<bool(DrawingModel&)> apply;
    /// Checks the result after it was done; may be empty.
    std::function<void(const lightbox::mel::Value&, const DrawingModel&)> check;
};

class RandomWalkTest : public CommandFixture {
protected:
    void SetUp() override {
        CommandFixture::SetUp();
        Mel("undoInfo -infinity on; playbackOptions -min 1 -max 16; currentTime 1; flushUndo;");
        int y = 40;
        for (const char* stroke = STROKES; *stroke != '\0'; ++stroke, y += 80) {
            const QString points = QString("[100, %1, 1, 0], [700, %1, 1, 8]").arg(y);
            const QString recorded =
                R"({"frame": 0, "tool": "line", "size": 3, "opacity": 100, "hardness": 100,
                    "color": [200, 30, 10], "samples": [%1]})";
            WriteFile(QString(*stroke) + ".json",
                      R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [)" +
                          recorded.arg(points).toUtf8() + "]}");
        }
    }

    int Random(int first, int last) { return std::uniform_int_distribution<int>(first, last)(random_); }
    bool Chance(int percent) { return Random(1, 100) <= percent; }
    std::string RandomCamera() { return CAMERAS[Random(0, 2)]; }
    /// Mostly one that is there.
    int RandomIndex(const std::string& camera) {
        return Random(0, std::max(int(model_.Layers(camera).size()) - (Chance(90) ? 1 : 0), 0));
    }
    DrawingModel::Range SliderRange() const {
        return range_ ? *range_ : DrawingModel::Range(model_.time, model_.time + 1);
    }

    Line RandomLine();
    Line RandomLayerLine();
    Line RandomStackLine(const std::string& camera);
    Line RandomPropertyLine(const std::string& camera);
    Line RandomFrameLine();
    Line RandomQuery();
    Line RandomStroke();

    void Take(const Line& line);
    void TakeBack();
    void TakeAgain();
    void Compare(const QString& line);
    void ComparePictures(const Layer& layer, const DrawingModel::ModelLayer& expected);
    static std::size_t Written();

    std::mt19937 random_;
    DrawingModel model_;
    std::optional<DrawingModel::Range> range_;
    DrawingModel::Keys clipboard_;
    /// What was done, and what there was before each of them and after the last.
    QStringList done_;
    std::vector<DrawingModel> models_;
    std::vector<std::size_t> written_;
    int place_ = 0;
    /// Which digest a picture was seen with, both ways.
    std::map<std::string, std::size_t> digests_;
    std::map<std::size_t, std::string> pictures_;
};

Line RandomWalkTest::RandomStackLine(const std::string& camera) {
    const QString at = QString::fromStdString(camera);
    const int index = RandomIndex(camera);
    const int other = Random(-1, int(model_.Layers(camera).size()));
    const std::string target = RandomCamera();
    const int count = int(model_.Layers(camera).size());
    const int kind = count > 3 ? 1 : Random(0, 5);
    if (kind == 0) {
        const std::string name = NAMES[Random(0, 4)];
        const int state = Random(0, 3);
        const QString named = name.empty() ? QString() : QString("-name \"%1\"").arg(name.c_str());
        if (Chance(60)) {
            return {QString("qmVellixLayer -add %1 -ls %2 %3").arg(named).arg(state).arg(at),
                    [=](DrawingModel& model) { return model.Add(camera, name, state); },
                    [=](const lightbox::mel::Value& result, const DrawingModel& model) {
                        EXPECT_EQ(result.AsInt(), int(model.Layers(camera).size()) - 1);
                    }};
        }
        return {QString("qmVellixLayer %1 -ls %2 -insert %3 %4").arg(named).arg(state).arg(other).arg(at),
                [=](DrawingModel& model) { return model.Insert(camera, other, name, state); },
                {}};
    }
    if (kind == 1 && Chance(60)) {
        return {QString("qmVellixLayer -del %1 %2").arg(index).arg(at),
                [=](DrawingModel& model) { return model.Delete(camera, index); },
                {}};
    }
    if (kind <= 2 && Chance(10)) {
        return {"qmVellixLayer -deleteAll " + at,
                [=](DrawingModel& model) { return model.DeleteAll(camera); },
                {}};
    }
    if (kind == 3 && Chance(30)) {
        return {QString("qmVellixLayer -moveAll %1 %2").arg(target.c_str()).arg(at),
                [=](DrawingModel& model) { return model.MoveAll(camera, target); },
                {}};
    }
    if (kind == 4) {
        return {QString("qmVellixLayer -newCamera %1 -move %2 %3 %4")
                    .arg(target.c_str())
                    .arg(index)
                    .arg(other)
                    .arg(at),
                [=](DrawingModel& model) { return model.MoveAcross(camera, index, target, other); },
                {}};
    }
    return {
        QString("qmVellixLayer -mv %1 %2 %3").arg(index).arg(other).arg(at),
        [=](DrawingModel& model) { return model.Move(camera, index, other); },
        [=](const lightbox::mel::Value& result, const DrawingModel&) { EXPECT_EQ(result.AsInt(), other); }};
}

Line RandomWalkTest::RandomPropertyLine(const std::string& camera) {
    const QString at = QString::fromStdString(camera);
    const int index = RandomIndex(camera);
    using ModelLayer = DrawingModel::ModelLayer;
    const auto change = [=](const std::function<void(ModelLayer&)>& how) {
        return [=](DrawingModel& model) {
            ModelLayer* const layer = model.Find(camera, index);
            if (layer) {
                how(*layer);
            }
            return layer != nullptr;
        };
    };
    const int value = Random(0, 3);
    switch (Random(0, 4)) {
    case 0: {
        const std::string name = NAMES[Random(1, 4)];
        return {QString("qmVellixLayer -editName \"%1\" %2 %3").arg(name.c_str()).arg(index).arg(at),
                change([=](ModelLayer& layer) { layer.name = name; }),
                {}};
    }
    case 1:
        return {QString("qmVellixLayer -ev %1 %2 %3").arg(value == 0 ? "off" : "on").arg(index).arg(at),
                change([=](ModelLayer& layer) { layer.isVisible = value != 0; }),
                {}};
    case 2:
        return {QString("qmVellixLayer %1 -editOpacity %2 %3").arg(at).arg(value * 0.5 - 0.25).arg(index),
                change([=](ModelLayer& layer) { layer.opacity = std::clamp(value * 0.5 - 0.25, 0.0, 1.0); }),
                {}};
    case 3: {
        const auto set = change([=](ModelLayer& layer) { layer.state = value; });
        return {QString("qmVellixLayer -es %1 %2 %3").arg(value).arg(index).arg(at),
                [=](DrawingModel& model) { return value <= 2 && set(model); },
                {}};
    }
    default:
        return {QString("qmVellixLayer -e -active %1 %2").arg(index).arg(at),
                [=](DrawingModel& model) { return model.Activate(camera, index); },
                {}};
    }
}

Line RandomWalkTest::RandomFrameLine() {
    // Without a camera the command acts on the active one.
    const bool names = Chance(50);
    const std::string camera = names ? RandomCamera() : model_.activeCamera;
    const QString command = "qmVellixFrame " + (names ? QString::fromStdString(camera) + " " : QString());
    const DrawingModel::Range range = SliderRange();
    const auto at = [=](const char* flags, const std::function<bool(DrawingModel&)>& apply) {
        return Line{
            command + flags, [=](DrawingModel& model) { return !camera.empty() && apply(model); }, {}};
    };
    switch (Random(0, 11)) {
    case 0:
    case 1:
        return at("-insert", [=](DrawingModel& model) { return model.InsertFrames(camera, range); });
    case 2:
        return at("-dup", [=](DrawingModel& model) { return model.Duplicate(camera); });
    case 3:
        return at("-delete", [=](DrawingModel& model) { return model.DeleteFrames(camera, range); });
    case 4:
    case 5: {
        const bool cuts = Chance(30);
        return at(cuts ? "-cutFrame" : "-copy", [=](DrawingModel& model) {
            const DrawingModel::Keys copied = model.Copied(camera, range);
            const bool isDone = !cuts || model.DeleteFrames(camera, range);
            clipboard_ = isDone ? copied : clipboard_;
            return isDone;
        });
    }
    case 6:
        return at("-pst", [=, copied = clipboard_](DrawingModel& model) {
            return model.Paste(camera, copied, range.first);
        });
    case 7:
        return at("-clear", [=](DrawingModel& model) { return model.ClearFrames(camera, range); });
    case 8: {
        const bool forward = Chance(50);
        return at(forward ? "-sf" : "-stepBack",
                  [=](DrawingModel& model) { return model.Step(camera, forward); });
    }
    case 9: {
        const int amount = Random(-1, 5);
        const bool relative = Chance(50);
        const bool toNext = Chance(50);
        const QString flags = QString("%1 -retime %2 %3")
                                  .arg(relative ? "-relative" : "")
                                  .arg(amount)
                                  .arg(toNext ? "-mvn" : "");
        return at(flags.toUtf8(),
                  [=](DrawingModel& model) { return model.Retime(camera, range, amount, relative, toNext); });
    }
    default: {
        const int offset = Random(-4, 4);
        const int first = Random(1, LATEST);
        const int last = first + Random(-1, 8);
        return at(QString("-move %1 %2 %3").arg(offset).arg(first).arg(last).toUtf8(),
                  [=](DrawingModel& model) { return model.MoveFrames(camera, offset, first, last); });
    }
    }
}

Line RandomWalkTest::RandomStroke() {
    const std::string camera = RandomCamera();
    const int frame = Random(1, LATEST);
    std::string used;
    const int active = model_.ActiveIndex(camera);
    if (active >= 0) {
        for (const auto& [t, picture] : model_.Layers(camera)[std::size_t(active)].keys) {
            used += picture;
        }
    }
    // The same line twice over itself has darker edges: no picture gets one twice.
    const std::size_t at = std::string(STROKES).find_first_not_of(used);
    if (at == std::string::npos) {
        return RandomFrameLine();
    }
    const char stroke = STROKES[at];
    return {QString("qmVellixReplay -camera %1 -frameOffset %2 -file \"%3\"")
                .arg(camera.c_str())
                .arg(frame)
                .arg(folder_.filePath(QString(stroke) + ".json")),
            [=](DrawingModel& model) { return model.Draw(camera, frame, stroke); },
            {}};
}

Line RandomWalkTest::RandomQuery() {
    const std::string camera = RandomCamera();
    const QString at = QString::fromStdString(camera);
    const int index = RandomIndex(camera);
    const auto isThere = [=](DrawingModel& model) { return model.Find(camera, index) != nullptr; };
    const auto always = [](DrawingModel&) { return true; };
    using Value = lightbox::mel::Value;
    switch (Random(0, 3)) {
    case 0:
        return {"qmVellixLayer -count " + at, always, [=](const Value& result, const DrawingModel& model) {
                    EXPECT_EQ(result.AsInt(), int(model.Layers(camera).size()));
                }};
    case 1:
        return {"qmVellixLayer -q -active " + at, always,
                [=](const Value& result, const DrawingModel& model) {
                    EXPECT_EQ(result.AsInt(), model.ActiveIndex(camera));
                }};
    case 2:
        return {QString("qmVellixLayer -queryName %1 %2").arg(index).arg(at), isThere,
                [=](const Value& result, const DrawingModel& model) {
                    EXPECT_EQ(result.AsString(), model.Layers(camera)[std::size_t(index)].name);
                }};
    default:
        return {QString("qmVellixLayer -qs %1 %2").arg(index).arg(at), isThere,
                [=](const Value& result, const DrawingModel& model) {
                    EXPECT_EQ(result.AsInt(), model.Layers(camera)[std::size_t(index)].state);
                }};
    }
}

Line RandomWalkTest::RandomLine() {
    const int kind = Random(1, 100);
    if (kind <= 22) {
        return RandomStackLine(RandomCamera());
    }
    if (kind <= 36) {
        return RandomPropertyLine(RandomCamera());
    }
    if (kind <= 76) {
        return RandomFrameLine();
    }
    if (kind <= 84) {
        return RandomStroke();
    }
    if (kind <= 88) {
        return RandomQuery();
    }
    const int frame = Random(1, LATEST);
    if (kind <= 94) {
        return {QString("currentTime %1").arg(frame),
                [=](DrawingModel& model) {
                    model.time = frame;
                    return true;
                },
                {}};
    }
    const int end = frame + Random(1, 6);
    const bool highlights = Chance(60);
    return {highlights ? QString("timeControl -e -rangeArray %1 %2 $gPlayBackSlider").arg(frame).arg(end)
                       : QString("timeControl -e -rangeVisible 0 $gPlayBackSlider"),
            [=](DrawingModel&) {
                range_ = highlights ? std::optional<DrawingModel::Range>({frame, end}) : std::nullopt;
                return true;
            },
            {}};
}

/// What is stored of the drawing.
std::size_t RandomWalkTest::Written() {
    std::ostringstream out;
    LayerDataAsciiWriter(*Node().GetLayerManager(), out).Write();
    return std::hash<std::string>()(out.str());
}

void RandomWalkTest::ComparePictures(const Layer& layer, const DrawingModel::ModelLayer& expected) {
    ASSERT_EQ(layer.FrameCount(), int(expected.keys.size()));
    int index = 0;
    for (const auto& [t, picture] : expected.keys) {
        const Frame& frame = *layer.GetFrame(index++);
        ASSERT_EQ(frame.GetTimeValue(), t);
        const QByteArray png = frame.GetPackedImage();
        const std::size_t digest = std::hash<std::string_view>()({png.constData(), std::size_t(png.size())});
        ASSERT_EQ(digests_.emplace(picture, digest).first->second, digest) << "at " << t;
        ASSERT_EQ(pictures_.emplace(digest, picture).first->second, picture) << "at " << t;
    }
}

void RandomWalkTest::Compare(const QString& line) {
    SCOPED_TRACE("after " + line.toStdString());
    ASSERT_EQ(MayaUtil::GetPlaybackTimeValue(), model_.time);
    ASSERT_EQ(Node().GetActiveCamera().toStdString(), model_.activeCamera);
    for (const char* camera : CAMERAS) {
        SCOPED_TRACE(camera);
        const DrawingModel::Stack& expected = model_.Layers(camera);
        ASSERT_EQ(Node().LayerCount(camera), int(expected.size()));
        for (int i = 0; i < int(expected.size()); ++i) {
            const Layer& layer = *Node().GetLayer(camera, i);
            const DrawingModel::ModelLayer& is = expected[std::size_t(i)];
            SCOPED_TRACE("layer " + std::to_string(i) + " " + is.name);
            ASSERT_EQ(layer.GetName().toStdString(), is.name);
            ASSERT_EQ(layer.IsVisible(), is.isVisible);
            ASSERT_EQ(layer.GetOpacity(), float(is.opacity));
            ASSERT_EQ(static_cast<int>(layer.GetState()), is.state);
            ASSERT_EQ(layer.IsActive(), is.isActive);
            ASSERT_NO_FATAL_FAILURE(ComparePictures(layer, is));
            const auto later = is.keys.upper_bound(model_.time);
            ASSERT_EQ(layer.GetCurrentFrameIndex(), int(std::distance(is.keys.begin(), later)) - 1);
        }
    }
}

void RandomWalkTest::Take(const Line& line) {
    DrawingModel next = model_;
    const bool isAllowed = line.apply(next);
    const auto& queue = lightbox::Host::Get().undo();
    const std::uint64_t before = queue.State();
    if (!isAllowed) {
        Refused(line.text);
    } else {
        model_ = next;
        const lightbox::mel::Value result = Mel(line.text);
        if (line.check) {
            line.check(result, model_);
        }
    }
    ASSERT_NO_FATAL_FAILURE(Compare(line.text));
    if (queue.State() == before) {
        ASSERT_EQ(Written(), written_[std::size_t(place_)]) << line.text.toStdString();
        return;
    }
    // It stands in the queue; what could be redone until now is gone.
    done_ = done_.mid(0, place_++);
    written_.resize(std::size_t(place_));
    models_.resize(std::size_t(place_), model_);
    done_.append(line.text);
    models_.push_back(model_);
    written_.push_back(Written());
}

void RandomWalkTest::TakeBack() {
    Mel("undo");
    model_ = models_[std::size_t(--place_)];
    ASSERT_NO_FATAL_FAILURE(Compare("undo of " + done_[place_]));
    ASSERT_EQ(Written(), written_[std::size_t(place_)]) << "undo of " << done_[place_].toStdString();
}

void RandomWalkTest::TakeAgain() {
    Mel("redo");
    model_ = models_[std::size_t(++place_)];
    ASSERT_NO_FATAL_FAILURE(Compare("redo of " + done_[place_ - 1]));
    ASSERT_EQ(Written(), written_[std::size_t(place_)]) << "redo of " << done_[place_ - 1].toStdString();
}

TEST_F(RandomWalkTest, EveryStepIsWhatAPlainModelSaysAndGoesBackAndForth) {
    const int steps = qEnvironmentVariableIsSet("VELLIX_WALK_STEPS")
                          ? qEnvironmentVariableIntValue("VELLIX_WALK_STEPS")
                          : 2000;
    random_.seed(unsigned(qEnvironmentVariableIntValue("VELLIX_WALK_SEED")));
    models_.push_back(model_);
    written_.push_back(Written());
    for (int step = 0; step < steps; ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        const int turn = Random(1, 100);
        if (turn <= 3) {
            for (int back = Random(1, 8); back > 0 && place_ > 0; --back) {
                ASSERT_NO_FATAL_FAILURE(TakeBack());
            }
        } else if (turn <= 6) {
            for (int forth = Random(1, 8); forth > 0 && place_ < done_.size(); --forth) {
                ASSERT_NO_FATAL_FAILURE(TakeAgain());
            }
        } else {
            ASSERT_NO_FATAL_FAILURE(Take(RandomLine()));
        }
    }
    while (place_ > 0) {
        ASSERT_NO_FATAL_FAILURE(TakeBack());
    }
    while (place_ < done_.size()) {
        ASSERT_NO_FATAL_FAILURE(TakeAgain());
    }
}

} // namespace
} // namespace vellix
