#include "commands/StrokePlayer.h"

#include "core/LayerManager.h"
#include "host/Logger.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/ScopeExit.h"
#include "paint/Stroke.h"
#include "paint/StrokeRecording.h"
#include "paint/StrokeSmoother.h"
#include "paint/TabletPressure.h"
#include "paint/ToolTable.h"

#include <cmath>

namespace vellix {

namespace {

/// Maps an image position to its pixel, by the same rule as for the pointer: floor(value + 0.5) in single
/// precision.
QPoint PixelOf(const QPointF& position) {
    return QPoint(static_cast<int>(std::floor(static_cast<float>(position.x()) + 0.5f)),
                  static_cast<int>(std::floor(static_cast<float>(position.y()) + 0.5f)));
}

} // namespace

StrokePlayer::StrokePlayer(BaseNode& node, const QString& camera)
    : node_(node)
    , camera_(camera)
    , restoreSettings_([tool = Settings::activeTool, color = Settings::activeColor,
                        eraser = Settings::tabletEraserEnabled] {
        Settings::activeTool = tool;
        Settings::activeColor = color;
        Settings::tabletEraserEnabled = eraser;
    }) {}

bool StrokePlayer::Draw(const RecordedStroke& recorded, int frame, Commits& commits) {
    ActiveLayers before;
    before.Remember(node_, {camera_});
    time_.GoTo(frame);
    int layerAdded = -1;
    bool frameAdded = false;
    Stroke* stroke = nullptr;
    const auto drop = [&] {
        if (stroke) {
            node_.CancelActiveStroke();
        } else {
            node_.GetLayerManager()->TakeBackPress();
        }
        if (layerAdded >= 0) {
            before.Restore(node_);
        }
    };
    try {
        stroke = Begin(recorded, layerAdded, frameAdded);
        if (stroke) {
            Feed(*stroke, recorded);
            if (Commit(layerAdded >= 0, frameAdded, commits)) {
                return true;
            }
        }
    } catch (...) {
        drop();
        throw;
    }
    drop();
    return false;
}

bool StrokePlayer::Commit(bool layerAdded, bool frameAdded, Commits& commits) {
    const FrameId picture = node_.GetLayerManager()->GetStrokeDrawing().frame;
    const auto known = drawn_.find(picture);
    if (known != drawn_.end()) {
        return known->second->CommitNext(node_);
    }
    commits.reserve(commits.size() + 1); // before the picture changes
    auto first = std::make_unique<StrokeCommit>(camera_, layerAdded, frameAdded);
    drawn_.emplace(picture, first.get());
    bool isCommitted = false;
    const ScopeExit forget([&] {
        if (!isCommitted) {
            drawn_.erase(picture);
        }
    });
    isCommitted = first->Commit(node_);
    if (isCommitted) {
        commits.push_back(std::move(first));
    }
    return isCommitted;
}

// Sets the tool settings first: the tool and colour decide what a new stroke is painted into.
Stroke* StrokePlayer::Begin(const RecordedStroke& recorded, int& layerAdded, bool& frameAdded) {
    if (node_.HasActiveStroke()) {
        Logger::Error("Another stroke is being drawn. Finish it first.");
        return nullptr;
    }
    Settings::activeTool = recorded.tool;
    Settings::activeColor = recorded.color;
    Settings::tabletEraserEnabled = false;
    if (!node_.PrepareForDraw(camera_, layerAdded, frameAdded)) {
        return nullptr;
    }
    Stroke* const stroke = node_.GetActiveStroke(camera_, false);
    if (stroke) {
        stroke->tool = recorded.tool;
        stroke->color = recorded.color;
    }
    return stroke;
}

void StrokePlayer::Feed(Stroke& stroke, const RecordedStroke& recorded) {
    using OpacityPressure = RecordedStroke::OpacityPressure;
    const bool isFreehand = KindOf(recorded.tool) == ToolKind::Freehand;
    const bool pressureCounts = recorded.opacityPressure == OpacityPressure::AsTheTool
                                    ? Settings::IsTabletPressureEnabled(recorded.tool)
                                    : isFreehand && recorded.opacityPressure == OpacityPressure::On;
    StrokeSmoother smoother;
    LineStyle style = recorded.lineStyle;
    style.sizeVaries = recorded.pressure.setsSize;
    smoother.Reset(style);
    StrokePoint point;
    point.hardness = recorded.hardness / 100.0f;
    float pressure = 1.0f;
    QPointF last;
    bool first = true;
    for (const RecordedSample& sample : recorded.samples) {
        pressure = TabletPressure::Curve(sample.pressure, pressure);
        point.opacity =
            recorded.opacity / 100.0f * (pressureCounts ? recorded.pressure.opacity.At(pressure) : 1.0f);
        point.size = isFreehand ? recorded.pressure.SizeAt(recorded.size, pressure) : recorded.size;
        point.position = PixelOf(sample.position);
        const QPointF exact = recorded.lineStyle.smoothCurves ? sample.position : QPointF(point.position);
        if (first) {
            // The draw tool reports a press twice, first one pixel to the left, so that a mere click leaves a
            // dot.
            StrokePoint touch = point;
            touch.position.rx() -= 1;
            smoother.Receive(stroke, touch, touch.position, sample.milliseconds, recorded.font);
        } else if (exact == last) {
            continue; // the draw tool reports only movement
        }
        smoother.Receive(stroke, point, exact, sample.milliseconds, recorded.font);
        last = exact;
        first = false;
    }
    smoother.Finish(stroke);
    if (recorded.tool == ToolType::Text) {
        stroke.text = recorded.text;
    }
    stroke.changed = true;
}

} // namespace vellix
