#include "node/IdleWork.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <new>

namespace vellix {

namespace {

constexpr int REST_MS = 300; ///< after the last event, so that no stroke waits
constexpr int STEP_MS = 3;   ///< a step goes on until it has taken so long; one drawing may take 30
constexpr int NEAR_KEYS = 2; ///< drawings so many keys from the current one keep their pixels
constexpr int FRAMES_AHEAD = 48;

std::unique_ptr<IdleWork> g_work;

bool IsInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TabletMove:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
        return true;
    default:
        return false;
    }
}

bool IsBusy(const LayerManager& layers) {
    // An open text is a stroke too.
    return QGuiApplication::mouseButtons() != Qt::NoButton || layers.HasActiveStroke() ||
           MayaUtil::IsPlaying() || MayaUtil::IsReadingScene();
}

enum class Step { Done, Packed, NotPossible };

/// Packs a layer's drawings until the time is up.
Step PackLayer(const Layer& layer, const QElapsedTimer& clock) {
    for (int index = 0; index < layer.FrameCount(); ++index) {
        Frame* const frame = layer.GetFrame(index);
        if (!frame->IsUnpacked()) {
            continue;
        }
        if (frame->GetPackedImage().isEmpty()) { // which remembers the bytes
            return Step::NotPossible;
        }
        if (std::abs(index - layer.GetCurrentFrameIndex()) > NEAR_KEYS) {
            frame->PackImage();
        }
        if (clock.elapsed() >= STEP_MS) {
            return Step::Packed;
        }
    }
    return Step::Done;
}

Step Pack(const LayerManager& layers, const QElapsedTimer& clock) {
    for (const QString& camera : layers.GetCameras()) {
        for (const Layer* layer : layers.GetLayers(camera)) {
            const Step step = PackLayer(*layer, clock);
            if (step != Step::Done) {
                return step;
            }
        }
    }
    return Step::Done;
}

/// Returns whether it decoded a drawing.
bool ReadAhead(LayerManager& layers) {
    const int now = MayaUtil::GetPlaybackTimeValue();
    for (int ahead = 1; ahead <= FRAMES_AHEAD; ++ahead) {
        if (layers.ReadAhead(layers.GetActiveCamera(), now + ahead)) {
            return true;
        }
    }
    return layers.ReadAhead(layers.GetActiveCamera(), now - 1);
}

} // namespace

void IdleWork::Start() {
    g_work.reset(new IdleWork);
}

void IdleWork::Stop() {
    g_work.reset();
}

void IdleWork::Schedule() {
    if (g_work) {
        g_work->Rest();
    }
}

IdleWork::IdleWork() {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { TakeStep(); });
}

IdleWork::~IdleWork() = default;

void IdleWork::Rest() {
    if (!timer_.isActive()) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    StepIn(REST_MS);
}

/// Without memory for a timer the next event tries again.
void IdleWork::StepIn(int milliseconds) noexcept {
    try {
        timer_.start(milliseconds);
    } catch (const std::bad_alloc&) {
        // Nothing is lost by not doing it ahead.
    }
}

bool IdleWork::eventFilter(QObject*, QEvent* event) {
    if (IsInput(event->type())) {
        StepIn(REST_MS);
    }
    return false;
}

void IdleWork::TakeStep() {
    BaseNode* const node = BaseNode::GetMaster();
    const std::shared_ptr<LayerManager> layers = node ? node->GetLayerManager() : nullptr;
    if (layers && IsBusy(*layers)) {
        StepIn(REST_MS);
        return;
    }
    bool goesOn = false;
    try {
        QElapsedTimer clock;
        clock.start();
        const Step packed = layers ? Pack(*layers, clock) : Step::Done;
        goesOn = packed == Step::Packed || (packed == Step::Done && layers && ReadAhead(*layers));
    } catch (const std::bad_alloc&) {
        // Nothing is lost by not doing it ahead.
    }
    if (goesOn) {
        StepIn(0);
    } else {
        QCoreApplication::instance()->removeEventFilter(this);
    }
}

} // namespace vellix
