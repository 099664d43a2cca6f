#include "node/Flipping.h"

#include "core/LayerManager.h"
#include "core/LightTable.h"
#include "host/Guarded.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"
#include "paint/ToolType.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <cstdlib>

namespace vellix {

namespace {

constexpr int MS_PER_SECOND = 1000;
constexpr int ROLL = 0; // steps
const char* const ROLLING = "Rolling the drawings";

std::unique_ptr<Flipping> g_flipping;

/// A transform waits for its end, and is seen again after a flip. Any other stroke is just being drawn.
bool IsDrawing(LayerManager& layers) {
    return layers.HasActiveStroke() && layers.GetActiveStroke(QString(), false)->tool != ToolType::Transform;
}

/// After these events the release of the key may not arrive, or what is seen has to be the current drawing.
bool EndsFlip(QEvent::Type type) {
    switch (type) {
    case QEvent::ApplicationDeactivate:
    case QEvent::WindowDeactivate:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TabletPress:
    case QEvent::TouchBegin:
        return true;
    default:
        return false;
    }
}

} // namespace

Flipping::~Flipping() = default;

/// Goes on with the flip of the master's drawing, or begins one. Null, with the reason logged, if that cannot
/// be.
Flipping* Flipping::Begin() {
    const BaseNode* const node = BaseNode::GetMaster();
    const std::shared_ptr<LayerManager> layers = node ? node->GetLayerManager() : nullptr;
    if (!layers) {
        Logger::Error("There is no drawing in the scene.");
        return nullptr;
    }
    if (MayaUtil::IsPlaying()) {
        Logger::Warning("The drawings cannot be flipped during playback. Stop it first.");
        return nullptr;
    }
    if (IsDrawing(*layers)) {
        Logger::Warning("The drawings cannot be flipped while one is being drawn. Finish the stroke first.");
        return nullptr;
    }
    if (!g_flipping) {
        g_flipping.reset(new Flipping);
    }
    if (g_flipping->layers_.lock() != layers) {
        End();
        QCoreApplication::instance()->installEventFilter(g_flipping.get());
        g_flipping->layers_ = layers;
    }
    g_flipping->timer_.stop();
    return g_flipping.get();
}

/// Makes this the last one held.
void Flipping::Hold(int steps) {
    held_.erase(std::remove(held_.begin(), held_.end(), steps), held_.end());
    held_.push_back(steps);
}

bool Flipping::Show(int steps) {
    Flipping* const flipping = Begin();
    if (!flipping) {
        return false;
    }
    flipping->Hold(steps);
    return flipping->Flip(steps);
}

bool Flipping::Roll() {
    Flipping* const flipping = Begin();
    if (!flipping) {
        return false;
    }
    flipping->Hold(ROLL);
    flipping->steps_ = 0;
    flipping->direction_ = -1;
    flipping->timer_.start(MS_PER_SECOND / Settings::rollRate, flipping);
    return flipping->RollOn();
}

void Flipping::LetGo(int steps) {
    if (!g_flipping) {
        return;
    }
    std::vector<int>& held = g_flipping->held_;
    held.erase(std::remove(held.begin(), held.end(), steps), held.end());
    const std::shared_ptr<LayerManager> layers = g_flipping->layers_.lock();
    if (held.empty() || !layers || !layers->GetLightTable().IsFlipped()) {
        End();
    } else if (held.back() == ROLL) {
        Roll();
    } else {
        Show(held.back());
    }
}

void Flipping::End() {
    if (!g_flipping) {
        return;
    }
    const std::shared_ptr<LayerManager> layers = g_flipping->layers_.lock();
    g_flipping->layers_.reset();
    g_flipping->held_.clear();
    g_flipping->timer_.stop();
    QCoreApplication::instance()->removeEventFilter(g_flipping.get());
    if (layers) {
        layers->EndFlip();
    }
}

void Flipping::Stop() {
    End();
    g_flipping.reset();
}

bool Flipping::Flip(int steps) {
    const std::shared_ptr<LayerManager> layers = layers_.lock();
    if (!layers || !layers->Flip(layers->GetActiveCamera(), steps, Settings::flipAllLayers)) {
        Logger::Warning("There is nothing to flip: the layer is hidden or has no drawings.");
        End();
        return false;
    }
    return true;
}

/// Rolls on, unless a change has ended that.
void Flipping::OnTimer() {
    const std::shared_ptr<LayerManager> layers = layers_.lock();
    if (layers && layers->GetLightTable().IsFlipped()) {
        RollOn();
    } else {
        End();
    }
}

bool Flipping::RollOn() {
    steps_ += direction_;
    if (std::abs(steps_) >= Settings::rollCount) {
        direction_ = steps_ > 0 ? -1 : 1;
    }
    return Flip(steps_);
}

void Flipping::timerEvent(QTimerEvent*) {
    RunGuarded(ROLLING, [this] { OnTimer(); });
}

bool Flipping::eventFilter(QObject*, QEvent* event) {
    if (EndsFlip(event->type())) {
        RunGuarded("Ending the flip", End);
    }
    return false;
}

} // namespace vellix
