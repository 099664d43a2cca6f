#pragma once

#include "scene/EventSubscriptions.h"

#include <QLineEdit>

namespace lightbox {

class Host;

/// A field with one of the timeline's frames: the current time, or an end of one of the ranges. Typing a time
/// ("12", "2sec") sets it by the command that a script would use; what is no time leaves it as it was.
class FrameField : public QLineEdit {
    Q_OBJECT

public:
    enum class Kind { CurrentTime, AnimationStart, PlaybackStart, PlaybackEnd, AnimationEnd };

    FrameField(Host& host, Kind kind, QWidget* parent = nullptr);

    QSize sizeHint() const override;

private:
    double Frame() const;
    void ShowFrame();
    void Commit();

    Host& host_;
    EventSubscriptions events_;
    Kind kind_;
};

} // namespace lightbox
