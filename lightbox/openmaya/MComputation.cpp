#include "openmaya/ApiBridge.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/UserInterface.h"

#include <maya/MComputation.h>

#include <algorithm>

using lightbox::ApiBridge;
using lightbox::Host;

struct MComputation::State {
    ~State() { End(); }

    bool shows = false;
    bool canBeInterrupted = false;
    int min = 0;
    int max = 100;
    int amount = 0;
    int shownTenth = -1;
    std::string status;

    /// Shows one line per tenth of the progress, to keep a log short.
    void Show() {
        const int tenth = max > min ? static_cast<int>(10LL * (amount - min) / (max - min)) : 10;
        if (shows && tenth != shownTenth) {
            shownTenth = tenth;
            const std::string label = status.empty() ? std::string("Progress") : status;
            Host::Get().output().Progress(label + ": " + std::to_string(tenth * 10) + "%");
        }
        if (this == inWindow) {
            const int percent = max > min ? static_cast<int>(100LL * (amount - min) / (max - min)) : 100;
            Host::Get().ui()->ShowProgress(status, percent);
        }
    }

    /// Takes the window's display, if nobody has it.
    void TakeWindow() {
        if (shows && !inWindow && Host::Get().ui()) {
            inWindow = this;
            Host::Get().ui()->ShowProgress(status, 0);
        }
    }

    void End() {
        shows = false;
        if (this == inWindow) {
            inWindow = nullptr;
            if (Host::Current() && Host::Current()->ui()) {
                Host::Current()->ui()->EndProgress();
            }
        }
    }

    /// The computation that the window shows; null for none.
    static State* inWindow;
};

MComputation::State* MComputation::State::inWindow = nullptr;

MComputation::MComputation()
    : state_(std::make_unique<State>()) {}
MComputation::~MComputation() = default;

void MComputation::beginComputation(bool showProgressBar, bool isInterruptable, bool) {
    state_ = std::make_unique<State>();
    state_->shows = showProgressBar;
    state_->canBeInterrupted = isInterruptable;
    state_->TakeWindow();
}

bool MComputation::isInterruptRequested() {
    return state_->shows && state_->canBeInterrupted && Host::Get().ui() &&
           Host::Get().ui()->IsInterruptRequested();
}

void MComputation::endComputation() {
    state_->End();
}

void MComputation::setProgressRange(int min, int max) {
    state_->min = min;
    state_->max = std::max(min, max);
}

int MComputation::progressMin() {
    return state_->min;
}
int MComputation::progressMax() {
    return state_->max;
}

void MComputation::setProgress(int amount) {
    state_->amount = std::clamp(amount, state_->min, state_->max);
    state_->Show();
}

int MComputation::progress() {
    return state_->amount;
}

void MComputation::setProgressStatus(const MString& statusMessage) {
    state_->status = ApiBridge::Text(statusMessage);
}
