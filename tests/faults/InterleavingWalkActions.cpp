#include "core/LayerManager.h"
#include "faults/InterleavingWalk.h"
#include "host/MayaUtil.h"
#include "mel/Value.h"
#include "paint/Stroke.h"
#include "scene/CameraView.h"
#include "scene/IdleQueue.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"
#include "timeline/Playback.h"
#include "tools/TransformContext.h"

#include <QClipboard>
#include <QColor>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTest>

#include <climits>

namespace vellix {

namespace {

constexpr unsigned LATEST = 12;

int TimeOf(unsigned number) {
    return 1 + static_cast<int>(number % LATEST);
}

} // namespace

const std::vector<InterleavingWalk::Action>& InterleavingWalk::Actions() {
    using W = InterleavingWalk;
    static const std::vector<Action> actions = {
        {"a drawing tool", 60, &W::UseDrawTool},
        {"another tool", 25, &W::UseOtherTool},
        {"press", 160, &W::Press},
        {"drag", 140, &W::Drag},
        {"release", 160, &W::Release},
        {"type", 90, &W::TypeText},
        {"key", 70, &W::PressKey},
        {"paste text", 15, &W::PasteText},
        {"transform", 60, &W::TransformStep},
        {"transform the whole", 25, &W::TransformWhole},
        {"time", 110, &W::SetTime},
        {"play", 40, &W::Play},
        {"look through", 40, &W::LookThrough},
        {"stack", 70, &W::StackLine},
        {"property", 60, &W::PropertyLine},
        {"frame", 120, &W::FrameLine},
        {"refused", 30, &W::RefusedLine},
        {"light table", 40, &W::LightTableLine},
        {"commit by script", 12, &W::CommitByScript},
        {"replay", 30, &W::Replay},
        {"import", 20, &W::Import},
        {"import layers", 20, &W::ImportLayers},
        {"take layers", 6, &W::TakeLayers},
        {"export", 5, &W::Export},
        {"line style", 40, &W::LineStyleLine},
        {"camera", 40, &W::CameraLine},
        {"scene", 25, &W::SceneLine},
        {"undo", 140, &W::Undo},
        {"redo", 100, &W::Redo},
        {"save", 8, &W::SaveAndReopen},
        {"delete the node", 3, &W::DeleteNode},
    };
    return actions;
}

std::string InterleavingWalk::UseDrawTool(const Numbers& n) {
    const char* const tools[] = {"text",   "text", "text",  "pencil",  "pencil",
                                 "pencil", "line", "brush", "ellipse", "eraser"};
    std::string line = std::string("qmVellixUtil -") + tools[n[0] % 10] + "Tool; qmVellixUtil -draw";
    permission_.endsQuietly = TransformTool() != nullptr; // leaving the transform tool cancels it
    Line(line);
    return line;
}

std::string InterleavingWalk::UseOtherTool(const Numbers& n) {
    permission_.endsQuietly = TransformTool() != nullptr;
    std::string line = n[0] % 4 == 0 ? "setToolTo selectSuperContext" : "qmVellixUtil -transform";
    Line(line);
    return line;
}

std::string InterleavingWalk::Press(const Numbers& n) {
    pointer_ = InView(n[0], n[1]);
    ++strokes_;
    Settings::activeColor = QColor((strokes_ * 37) % 256, (strokes_ * 101) % 256, (strokes_ / 7 * 13) % 256);
    const bool draws = QString::fromStdString(Run("currentCtx").AsString()).startsWith("qmVxDrawCtx");
    const Qt::MouseButton button =
        TransformTool() && TransformTool()->GetStage() == TransformContext::TRANSFORM_STAGE && n[2] % 4 == 0
            ? Qt::MiddleButton
            : Qt::LeftButton;
    SendMouse(QEvent::MouseButtonPress, pointer_, button, button,
              n[2] % 7 == 0 ? Qt::ShiftModifier : Qt::NoModifier);
    isButtonDown_ = true;
    isWholeSelected_ = isWholeSelected_ && TransformTool() && pending_;
    if (draws && HasStroke()) {
        isNewStroke_ = true;
        const auto* stroke = Node().GetActiveStroke(Node().GetActiveCamera(), false);
        const int least = stroke->tool == ToolType::Text ? 1 : 2;
        WaitFor([&] { return !HasStroke() || stroke->points.size() >= least; }, 1000);
    }
    return "press at " + std::to_string(pointer_.x()) + " " + std::to_string(pointer_.y()) +
           (draws ? " with the draw tool" : "");
}

std::string InterleavingWalk::Drag(const Numbers& n) {
    const QPoint by(10 + static_cast<int>(n[0] % 30), static_cast<int>(n[1] % 40) - 20);
    const QPoint to = InView(static_cast<unsigned>(std::max(0, pointer_.x() + by.x() - 20)),
                             static_cast<unsigned>(std::max(0, pointer_.y() + by.y() - 20)));
    const bool moves = to != pointer_;
    if (isButtonDown_) {
        pointer_ = to;
        SendMouse(QEvent::MouseMove, pointer_, Qt::NoButton, Qt::LeftButton);
        if (pending_ && HasStroke() && !TransformTool()) {
            const auto tool = Node().GetActiveStroke(Node().GetActiveCamera(), false)->tool;
            Sample(pointer_);
            pending_->marks =
                pending_->marks || (moves && tool != ToolType::Eraser && tool != ToolType::Text);
        }
    }
    return "drag to " + std::to_string(pointer_.x()) + " " + std::to_string(pointer_.y());
}

std::string InterleavingWalk::Release(const Numbers& n) {
    if (!isButtonDown_ && n[0] % 8 != 0) {
        return Press(n);
    }
    SendMouse(QEvent::MouseButtonRelease, pointer_, Qt::LeftButton, Qt::NoButton);
    isButtonDown_ = false;
    return "release";
}

std::string InterleavingWalk::TypeText(const Numbers& n) {
    if (!IsTextOpen() || isButtonDown_) {
        return "nothing to type into";
    }
    const auto key = static_cast<Qt::Key>(Qt::Key_A + n[0] % 26);
    QTest::keyClick(&View(), key);
    if (pending_) {
        pending_->marks = true;
    }
    return std::string("type ") + static_cast<char>('a' + n[0] % 26);
}

std::string InterleavingWalk::PressKey(const Numbers& n) {
    const struct {
        const char* name;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    } keys[] = {{"Escape", Qt::Key_Escape, Qt::NoModifier},       {"Escape", Qt::Key_Escape, Qt::NoModifier},
                {"Backspace", Qt::Key_Backspace, Qt::NoModifier}, {"Return", Qt::Key_Return, Qt::NoModifier},
                {"Return", Qt::Key_Return, Qt::NoModifier},       {"Ctrl+Z", Qt::Key_Z, Qt::ControlModifier}};
    const auto& key = keys[n[0] % 6];
    const bool takesBack = key.key == Qt::Key_Z;
    // While the button is down no text is open yet, and Ctrl+Z is the host's.
    const bool isTyping = IsTextOpen() && !isButtonDown_;
    permission_.everything = takesBack && !isTyping;
    permission_.endsQuietly = isTyping ? takesBack : key.key != Qt::Key_Return;
    if (!isTyping && (key.key == Qt::Key_Backspace || key.key == Qt::Key_Return) && !TransformTool()) {
        return "no key"; // deletes what is selected in the scene
    }
    View().setFocus();
    QTest::keyClick(&View(), key.key, key.modifiers);
    if (isTyping && HasStroke() &&
        Node().GetActiveStroke(Node().GetActiveCamera(), false)->text.trimmed().isEmpty()) {
        pending_->marks = false;
    }
    return key.name;
}

std::string InterleavingWalk::PasteText(const Numbers& n) {
    if (!IsTextOpen() || isButtonDown_) {
        return "nothing to paste into";
    }
    QGuiApplication::clipboard()->setText(QString::number(n[0] % 1000));
    QTest::keyClick(&View(), Qt::Key_V, Qt::ControlModifier);
    return "paste text";
}

std::string InterleavingWalk::TransformStep(const Numbers& n) {
    TransformContext* const tool = TransformTool();
    if (!tool) {
        return UseOtherTool(n);
    }
    isWholeSelected_ = false;
    switch (n[0] % 7) {
    case 0:
        tool->Copy(false); // keeping the copied pixels is half of a cut
        return "copy in the picture";
    case 1:
        tool->Cut();
        if (const Layer* layer = NodeIfAny() ? Node().GetActiveLayer(CameraOfView()) : nullptr) {
            if (const Frame* frame = layer->GetCurrentFrame()) {
                permission_.frames.insert(frame->GetId());
            }
        }
        return "cut in the picture";
    case 2:
    case 3: {
        const bool transforms = n[1] % 2 == 0;
        tool->Paste(transforms, InView(n[2], n[3]));
        if (const Layer* layer = NodeIfAny() ? Node().GetActiveLayer(CameraOfView()) : nullptr) {
            if (const Frame* frame = layer->GetCurrentFrame()) {
                permission_.frames.insert(frame->GetId());
            }
        }
        return transforms ? "paste and transform" : "paste in the picture";
    }
    case 4:
        n[1] % 2 == 0 ? tool->FlipHorizontal() : tool->FlipVertical();
        return "flip";
    case 5:
        tool->Transform(n[1] % 2 == 0);
        return n[1] % 2 == 0 ? "transform a copy" : "transform";
    default:
        tool->completeAction();
        return "complete";
    }
}

/// Everything of the drawing, moved to the right: what is committed differs from what was there.
std::string InterleavingWalk::TransformWhole(const Numbers& n) {
    if (isButtonDown_ || pending_ || !NodeIfAny()) {
        return "no transform in the middle of something";
    }
    Line("qmVellixUtil -transform");
    Rest();
    TransformContext* const tool = TransformTool();
    if (!tool) {
        return "no transform tool";
    }
    tool->completeAction();
    Rest();
    if (tool->GetStage() != TransformContext::TRANSFORM_STAGE) {
        return "no transform of the whole";
    }
    const QPoint from(100, 100);
    const QPoint to(120 + static_cast<int>(n[0] % 30), 100);
    SendMouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    SendMouse(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
    SendMouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
    SendMouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    const Layer* layer = Node().GetActiveLayer(CameraOfView());
    const Frame* frame = layer ? layer->GetCurrentFrame() : nullptr;
    const auto* key = frame ? before_.FindKey(frame->GetId()) : nullptr;
    strokeMarks_ = HasStroke() && key && !key->hash.isEmpty();
    return "transform the whole";
}

std::string InterleavingWalk::SetTime(const Numbers& n) {
    std::string line = "currentTime " + std::to_string(TimeOf(n[0]));
    Line(line);
    return line;
}

std::string InterleavingWalk::Play(const Numbers& n) {
    lightbox::Timeline& time = host_->time();
    if (!time.IsPlaying()) {
        time.SetPlaying(n[0] % 2 == 0 ? 1 : -1);
        return "play";
    }
    if (n[0] % 3 == 0) {
        time.SetPlaying(0);
        return "stop";
    }
    // What the timer of playback does, without its clock.
    const auto next = lightbox::Playback::Advance(time, time.CurrentTime(), time.PlayingDirection(), 1);
    time.SetCurrentTime(next.frame);
    return "playback shows " + std::to_string(static_cast<int>(next.frame));
}

std::string InterleavingWalk::LookThrough(const Numbers& n) {
    const std::string line = "lookThru modelPanel4 " + CameraAt(n[0]).toStdString();
    Line(line);
    if (n[1] % 2 == 0) {
        Line("qmVellixNode -refresh");
    }
    return line + (n[1] % 2 == 0 ? "; qmVellixNode -refresh" : "");
}

std::string InterleavingWalk::StackLine(const Numbers& n) {
    const QString camera = CameraAt(n[1]);
    const auto layers = before_.LayersOf(camera);
    const int count = static_cast<int>(layers.size());
    const int index = static_cast<int>(n[2] % static_cast<unsigned>(count + 1));
    const int other = static_cast<int>(n[3] % static_cast<unsigned>(count + 2)) - 1;
    const auto permitLayer = [&](const DrawingSnapshot::LayerRow& layer) {
        permission_.layers.insert(layer.id);
        for (const auto& key : layer.keys) {
            permission_.frames.insert(key.id);
        }
    };
    QString line;
    switch (n[0] % (count > 4 ? 8 : 12)) {
    case 0:
    case 1:
        line = QString("qmVellixLayer -del %1 %2").arg(index).arg(camera);
        if (index < count) {
            permitLayer(*layers[static_cast<std::size_t>(index)]);
        }
        break;
    case 2:
        if (n[2] % 3 != 0) {
            line = QString("qmVellixLayer -count %1").arg(camera);
            break;
        }
        line = "qmVellixLayer -deleteAll " + camera;
        for (const auto* layer : layers) {
            permitLayer(*layer);
        }
        break;
    case 3:
    case 4:
        line = QString("qmVellixLayer -mv %1 %2 %3").arg(index).arg(other).arg(camera);
        break;
    case 5:
        line = QString("qmVellixLayer -newCamera %1 -move %2 %3 %4")
                   .arg(CameraAt(n[3]))
                   .arg(index)
                   .arg(other)
                   .arg(camera);
        break;
    case 6:
        line = QString("qmVellixLayer -moveAll %1 %2").arg(CameraAt(n[3])).arg(camera);
        break;
    case 7:
        line = QString("qmVellixLayer -e -active %1 %2").arg(index).arg(camera);
        break;
    case 8:
        line = QString("qmVellixLayer -insert %1 -ls %2 %3").arg(other).arg(n[2] % 2).arg(camera);
        break;
    default:
        line = QString("qmVellixLayer -add -ls %1 %2").arg(n[2] % 5 == 0 ? 1 : 0).arg(camera);
    }
    Line(line.toStdString());
    return line.toStdString();
}

std::string InterleavingWalk::PropertyLine(const Numbers& n) {
    const QString camera = CameraAt(n[1]);
    const auto count = static_cast<unsigned>(before_.LayersOf(camera).size());
    const unsigned index = n[2] % (count + 1);
    QString line;
    switch (n[0] % 6) {
    case 0:
        line = QString("qmVellixLayer -editName \"Layer %1\" %2 %3").arg(n[3] % 3).arg(index).arg(camera);
        break;
    case 1:
    case 2:
        line = QString("qmVellixLayer -ev %1 %2 %3").arg(n[3] % 3 == 0 ? "off" : "on").arg(index).arg(camera);
        break;
    case 3:
        line = QString("qmVellixLayer -eo %1 %2 %3").arg((n[3] % 5) * 0.25).arg(index).arg(camera);
        break;
    default:
        line = QString("qmVellixLayer -es %1 %2 %3")
                   .arg(n[3] % 4 == 0   ? 2
                        : n[3] % 8 == 1 ? 1
                                        : 0)
                   .arg(index)
                   .arg(camera);
    }
    Line(line.toStdString());
    return line.toStdString();
}

std::string InterleavingWalk::FrameLine(const Numbers& n) {
    const QString camera = CameraAt(n[1]);
    const int now = static_cast<int>(host_->time().CurrentTime());
    QString flags;
    switch (n[0] % 12) {
    case 0:
        flags = "-delete";
        PermitActiveKeys(camera, now, now);
        break;
    case 1:
        flags = "-cutFrame";
        PermitActiveKeys(camera, now, now);
        break;
    case 2:
    case 3:
        flags = "-copy";
        break;
    case 4:
    case 5:
        flags = "-paste";
        PermitActiveKeys(camera, now, now);
        break;
    case 6:
        flags = "-clear";
        PermitActiveKeys(camera, now, now);
        break;
    case 7:
        flags = n[2] % 2 == 0 ? "-stepForward" : "-stepBack";
        break;
    case 8:
        flags = QString("%1 -retime %2")
                    .arg(n[2] % 2 == 0 ? "-relative" : "")
                    .arg(static_cast<int>(n[3] % 6) - 1);
        break;
    case 9:
        flags = QString("-move %1 %2 %3")
                    .arg(static_cast<int>(n[2] % 9) - 4)
                    .arg(TimeOf(n[3]))
                    .arg(TimeOf(n[3]) + static_cast<int>(n[2] / 9 % 6));
        break;
    case 10:
        flags = "-duplicate";
        break;
    default:
        flags = "-insert";
    }
    const QString line = "qmVellixFrame " + flags + " " + camera;
    Line(line.toStdString());
    return line.toStdString();
}

/// What is only seen: nothing of it may change the drawing or end what is being drawn.
std::string InterleavingWalk::LightTableLine(const Numbers& n) {
    const char* const flags[] = {"-flip -1",          "-flip 1",          "-roll 1",   "-flip 0",
                                 "-e -pinDrawing -1", "-e -markLayer -1", "-unpinAll", "-flip -2"};
    std::string line = std::string("qmVellixUtil ") + flags[n[0] % std::size(flags)];
    Line(line);
    return line;
}

std::string InterleavingWalk::RefusedLine(const Numbers& n) {
    const QString camera = CameraAt(n[1]);
    const QString lines[] = {
        "qmVellixLayer -del 99 " + camera,
        "qmVellixLayer -mv 0 99 " + camera,
        "qmVellixLayer -es 9 0 " + camera,
        "qmVellixLayer -add -ls 0 noSuchCamera",
        "qmVellixLayer -moveAll noSuchCamera " + camera,
        "qmVellixLayer -newCamera noSuchCamera -move 0 0 " + camera,
        "qmVellixFrame -move 1 " + camera,
        "qmVellixFrame -retime 0 " + camera,
        "qmVellixFrame -insert noSuchCamera",
        "qmVellixReplay -camera " + camera + " -file \"/none/such.json\"",
        "qmVellixStroke noSuchCamera",
        "qmVellixNode",
    };
    const std::size_t which = n[0] % (std::size(lines) + 2);
    if (which >= std::size(lines)) {
        const QString line = "qmVellixLayer -ins 0 " + camera;
        permission_.leavesLayer = true;
        Line(line.toStdString());
        return line.toStdString();
    }
    Line(lines[which].toStdString());
    return lines[which].toStdString();
}

std::string InterleavingWalk::CommitByScript(const Numbers& n) {
    const QString line =
        "qmVellixStroke " + (n[0] % 3 == 0 || !NodeIfAny() ? CameraAt(n[1]) : Node().GetActiveCamera());
    permission_.endsQuietly = true;
    Line(line.toStdString());
    return line.toStdString();
}

std::string InterleavingWalk::Replay(const Numbers& n) {
    ++strokes_;
    const QString camera = CameraAt(n[0]);
    const int frame = TimeOf(n[1]);
    const QString path = prefs_.filePath("stroke.json");
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(QString(R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [
        {"frame": 0, "tool": "line", "size": %1, "opacity": 100, "hardness": 100, "color": [%2, %3, 90],
         "samples": [[100, %4, 1, 0], [900, %5, 1, 8]]}]})")
                   .arg(3 + strokes_ % 20)
                   .arg(strokes_ * 37 % 256)
                   .arg(strokes_ * 101 % 256)
                   .arg(200 + n[2] % 600)
                   .arg(200 + n[3] % 600)
                   .toUtf8());
    file.close();
    if (const auto* layer = before_.ActiveLayer(camera)) {
        FrameId shown = FrameId::None;
        for (const auto& key : layer->keys) {
            if (key.time <= frame) {
                shown = key.id;
            }
        }
        permission_.frames.insert(shown);
    }
    const QString line =
        QString("qmVellixReplay -camera %1 -frameOffset %2 -file \"%3\"").arg(camera).arg(frame).arg(path);
    Line(line.toStdString());
    return QString("qmVellixReplay -camera %1 -frameOffset %2").arg(camera).arg(frame).toStdString();
}

/// A picture onto the active layer, or onto one of its own.
std::string InterleavingWalk::Import(const Numbers& n) {
    ++strokes_;
    const QString camera = CameraAt(n[0]);
    const int frame = TimeOf(n[1]);
    const QString path = prefs_.filePath("picture.png");
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(QColor(strokes_ * 37 % 256, strokes_ * 101 % 256, 30));
    image.save(path);
    const auto* const active = before_.ActiveLayer(camera);
    const QString name = active && n[2] % 3 != 0 ? active->name : QString("Reference");
    for (const auto& layer : before_.layers) {
        for (const auto& key : layer.keys) {
            if (layer.camera == camera && layer.name == name && key.time == frame) {
                permission_.frames.insert(key.id);
            }
        }
    }
    const QString line = QString("qmVellixImport -camera %1 -startTime %2 -layer \"%3\" -file ")
                             .arg(camera)
                             .arg(frame)
                             .arg(MayaUtil::EscapeString(name));
    Line(QString(line + "\"" + path + "\"").toStdString());
    return line.toStdString();
}

/// The layers of a file, or of another scene.
std::string InterleavingWalk::ImportLayers(const Numbers& n) {
    const QString camera = CameraAt(n[0]);
    const int frame = TimeOf(n[1]);
    QString line;
    if (n[2] % 3 == 0) {
        line = QString("qmVellixImport -fromCamera persp -camera %1 -scene other.ma").arg(camera);
    } else {
        line = QString("qmVellixImport -camera %1 -startTime %2 -file other.%3")
                   .arg(camera)
                   .arg(frame)
                   .arg(n[2] % 3 == 1 ? "ora" : "pclx");
        PermitKeysAt(camera, frame);
        PermitKeysAt(camera, frame + 3);
    }
    Line(QString(line).replace("other.", prefs_.filePath("other.")).toStdString());
    return line.toStdString();
}

/// What the layer manager's menu does with another drawing in the scene.
std::string InterleavingWalk::TakeLayers(const Numbers&) {
    if (!NodeIfAny() || before_.layers.size() > 12) {
        return "no layers to take";
    }
    // One step of the queue, as that of the menu is.
    const std::string line = "string $d[] = `duplicate vellix`; string $s[] = `listRelatives -s -path $d[0]`;"
                             "qmVellixImport -node $s[0]; delete $d[0];";
    Line("proc takeLayers() { " + line + "} takeLayers();");
    return "take the layers of a duplicate";
}

/// Reads the drawing and changes nothing of it.
std::string InterleavingWalk::Export(const Numbers& n) {
    const QString line = QString("qmVellixExport -camera %1 -startTime %2 -endTime %2 -layered walk.%3")
                             .arg(CameraAt(n[0]))
                             .arg(TimeOf(n[1]))
                             .arg(n[2] % 3 == 0   ? "ora"
                                  : n[2] % 3 == 1 ? "psd"
                                                  : "pclx");
    Line(QString(line).replace("walk.", prefs_.filePath("walk.")).toStdString());
    return line.toStdString();
}

/// Switches of the line that take hold of the next stroke: one in progress goes on as it began.
std::string InterleavingWalk::LineStyleLine(const Numbers& n) {
    const QString line = n[0] % 3 == 0   ? QString("qmVellixUtil -preset %1").arg(1 + n[1] % 10)
                         : n[0] % 3 == 1 ? QString("qmVellixUtil -e -smoothCurves %1").arg(n[1] % 2)
                                         : QString("qmVellixUtil -e -stabiliser %1").arg(n[1] % 4 * 5);
    permission_.endsQuietly = TransformTool() != nullptr; // a preset takes the draw tool
    Line(line.toStdString());
    return line.toStdString();
}

std::string InterleavingWalk::CameraLine(const Numbers& n) {
    const QString camera = CameraAt(n[1]);
    const QString names[] = {"walkA", "walkB", "walkC", "walkD"};
    QString line;
    if (cameras_.size() < 6 || (n[0] % 5 == 0 && cameras_.size() < 9)) {
        line = "camera -n " + names[n[2] % 4];
        Line(line.toStdString());
    } else if (n[0] % 3 == 0) {
        line = "delete " + camera;
        Line(line.toStdString());
    } else {
        line = "rename " + camera + " " + names[n[2] % 4];
        try {
            const QString name = QString::fromStdString(Run(line.toStdString()).AsString());
            // Of cameras that share a name, one keeps the layers.
            if (!name.contains('|') && !camera.contains('|')) {
                permission_.renamedTo = name;
                permission_.renamedFrom = camera;
            }
        } catch (const std::exception&) {
            permission_.isRefused = true;
        }
    }
    FindCameras();
    return line.toStdString();
}

/// What else happens to the scene around the drawing.
std::string InterleavingWalk::SceneLine(const Numbers& n) {
    const QString camera = CameraAt(n[1]);
    const bool hasNode = NodeIfAny() != nullptr;
    const QString master = hasNode ? Node().GetPath() : QString();
    QString line;
    switch (n[0] % 8) {
    case 0:
    case 1:
        line = QString("currentUnit -time %1").arg(n[2] % 3 == 0 ? "ntsc" : n[2] % 3 == 1 ? "film" : "pal");
        break;
    case 2:
        line = QString("group -n walkGroup %1").arg(camera);
        break;
    case 3:
        line = QString("parent -w %1").arg(camera);
        break;
    case 4:
        line = QString("duplicate %1").arg(camera);
        break;
    case 5:
        line = hasNode ? QString("rename `listRelatives -parent -fullPath \"%1\"` walkDrawing").arg(master)
                       : QString("select -all");
        break;
    case 6:
        line = hasNode ? QString("group -n walkGroup `listRelatives -parent -fullPath \"%1\"`").arg(master)
                       : QString("select -clear");
        break;
    default:
        line = QString("select %1; lockNode -lock %2 %1; lockNode -lock off %1").arg(camera).arg(n[2] % 2);
    }
    Line(line.toStdString());
    permission_.isRefused = false; // of several, the first ones may be done
    FindCameras();
    return line.toStdString();
}

std::string InterleavingWalk::Undo(const Numbers& n) {
    const unsigned times = n[0] % 4 == 0 ? 1 + n[1] % 4 : 1;
    permission_.everything = true;
    for (unsigned i = 0; i < times && host_->undo().CanUndo(); ++i) {
        Line("undo");
    }
    FindCameras();
    return "undo " + std::to_string(times);
}

std::string InterleavingWalk::Redo(const Numbers& n) {
    const unsigned times = n[0] % 4 == 0 ? 1 + n[1] % 4 : 1;
    permission_.everything = true;
    for (unsigned i = 0; i < times && host_->undo().CanRedo(); ++i) {
        Line("redo");
    }
    FindCameras();
    return "redo " + std::to_string(times);
}

std::string InterleavingWalk::SaveAndReopen(const Numbers& n) {
    const bool isAscii = n[0] % 2 == 0;
    std::string said = isAscii ? "save as Maya ASCII and open" : "save as .lbx and open";
    if (!isButtonDown_ && !pending_) {
        fault_ = ToTheStartAndBack();
        if (!fault_.empty()) {
            return said;
        }
        before_ = ledger_.Take(NodeIfAny()); // that of the end of the queue
    }
    const QString path = prefs_.filePath(isAscii ? "walk.ma" : "walk.lbx");
    if (!Line(QString("file -rename \"%1\"; file -save").arg(path).toStdString())) {
        fault_ = "Saving failed";
        return said;
    }
    Rest();
    const DrawingSnapshot saved = ledger_.Take(NodeIfAny());
    const bool isInTheMiddle = HasStroke();
    // Drawings that a time unit put on one frame are read as on frames of their own, with a warning.
    const bool movesFrames = NodeIfAny() && Node().GetLayerManager()->CountCoveredFrames() > 0;
    std::set<FrameId> mayGo;
    if (pending_) {
        mayGo.insert(pending_->frame);
        if (IsTextOpen() && pending_->marks && !isButtonDown_) {
            fault_ = "A save left the open text out";
        }
    }
    const std::string lost = LostPicture(before_, saved, mayGo);
    if (!lost.empty()) {
        fault_ = "A save lost a picture: " + lost;
    }
    if (!Line(QString("file -force -open \"%1\"").arg(path).toStdString())) {
        fault_ = "Opening failed: " + (messages_.empty() ? "" : messages_.back());
        return said;
    }
    Rest();
    const DrawingSnapshot opened = ledger_.Take(NodeIfAny());
    openedAt_ = step_;
    opened_ = prefs_.filePath("opened." + QFileInfo(path).suffix());
    QFile::remove(opened_);
    QFile::copy(path, opened_);
    const std::string other =
        isInTheMiddle || movesFrames ? LostPicture(saved, opened, {}) : opened.Difference(saved, false);
    if (!other.empty() && fault_.empty()) {
        fault_ = "Opened it differs from what was saved: " + other;
    }
    pending_.reset();
    ForgetQueue();
    permission_.everything = true;
    Line("undoInfo -infinity on; playbackOptions -playbackSpeed 0.0001");
    FindCameras();
    return said;
}

std::string InterleavingWalk::DeleteNode(const Numbers&) {
    if (!NodeIfAny()) {
        return "no node";
    }
    permission_.everything = true;
    Line("delete vellix");
    return "delete vellix";
}

} // namespace vellix
