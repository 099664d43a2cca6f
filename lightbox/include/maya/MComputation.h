#pragma once

#include <maya/MString.h>

#include <memory>

/// A long computation that shows its progress and can be interrupted by Escape. In batch, progress is a line
/// on standard error and nothing can interrupt. Of nested computations the outermost is shown; one without a
/// progress bar cannot be interrupted.
class MComputation {
public:
    MComputation();
    ~MComputation();
    MComputation(const MComputation&) = delete;
    MComputation& operator=(const MComputation&) = delete;

    void beginComputation(bool showProgressBar = false, bool isInterruptable = true,
                          bool useWaitCursor = true);
    bool isInterruptRequested();
    void endComputation();

    void setProgressRange(int min, int max);
    int progressMin();
    int progressMax();
    void setProgress(int amount);
    int progress();
    void setProgressStatus(const MString& statusMessage);

private:
    struct State;
    std::unique_ptr<State> state_;
};
