#pragma once

#include <memory>

namespace lightbox {

class Host;

/// A change of the current time by dragging: however many frames it passes, it is undone in one step. It goes
/// onto the undo queue with its first frame, before anything that the way there brings about.
class TimeChange {
public:
    explicit TimeChange(Host& host);

    void MoveTo(double frame);

private:
    struct Way {
        double from;
        double to;
    };

    Host& host_;
    std::shared_ptr<Way> way_;
    bool isRecorded_ = false;
};

} // namespace lightbox
