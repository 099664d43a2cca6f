#include "openmaya/ApiBridge.h"
#include "scene/Host.h"
#include "scene/Output.h"

#include <maya/MComputation.h>

#include <algorithm>

using lightbox::ApiBridge;
using lightbox::Host;

struct MComputation::State {
    bool shows = false;
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
    }
};

MComputation::MComputation()
    : state_(std::make_unique<State>()) {}
MComputation::~MComputation() = default;

void MComputation::beginComputation(bool showProgressBar, bool, bool) {
    *state_ = State();
    state_->shows = showProgressBar;
}

bool MComputation::isInterruptRequested() {
    return false;
}

void MComputation::endComputation() {
    state_->shows = false;
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
