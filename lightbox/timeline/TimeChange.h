#pragma once

#include <memory>

namespace lightbox {

class Host;

/// A change of the current time by dragging. The whole drag is one undo step, however many frames it passes.
/// It goes on the undo queue with its first frame, before any edits that the time changes cause.
class TimeChange {
public:
    explicit TimeChange(Host& host);

    void MoveTo(double frame);

private:
    struct Span {
        double from;
        double to;
    };

    Host& host_;
    std::shared_ptr<Span> span_;
    bool isRecorded_ = false;
};

} // namespace lightbox
