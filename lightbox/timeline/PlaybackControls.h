#pragma once

#include "scene/EventSubscriptions.h"
#include "timeline/TransportButton.h"

#include <QWidget>

namespace lightbox {

class Host;

/// The buttons beside the time slider: to the start and the end, by a frame, by a key of what is selected,
/// and playback both ways, where a button that plays stops it again. They wrap round at the ends of the
/// range.
class PlaybackControls : public QWidget {
    Q_OBJECT

public:
    explicit PlaybackControls(Host& host, QWidget* parent = nullptr);

private:
    TransportButton* AddButton(TransportButton::Sign sign, const QString& tip, const char* name,
                               const char* key = "");
    void GoTo(double frame);
    void Step(int direction);
    void StepKey(int direction);
    void Play(int direction);
    void ShowState();

    Host& host_;
    EventSubscriptions events_;
    TransportButton* playBack_;
    TransportButton* playForward_;
};

} // namespace lightbox
