#pragma once

#include "scene/EventSubscriptions.h"

#include <QLineEdit>

namespace lightbox {

class Host;

/// A field that shows and sets one of the timeline's frames: the current time, or an end of one of the
/// ranges. A typed time ("12", "2sec") is set through the MEL command. An invalid text shows an error and
/// changes nothing.
class FrameField : public QLineEdit {
    Q_OBJECT

public:
    enum class Role { CurrentTime, AnimationStart, PlaybackStart, PlaybackEnd, AnimationEnd };

    FrameField(Host& host, Role role, QWidget* parent = nullptr);

    QSize sizeHint() const override;

private:
    double Frame() const;
    void ShowFrame();
    void Commit();

    Host& host_;
    EventSubscriptions events_;
    Role role_;
};

} // namespace lightbox
