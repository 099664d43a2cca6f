#pragma once

#include "scene/EventSubscriptions.h"
#include "timeline/TransportButton.h"

#include <QWidget>

namespace lightbox {

class Host;

/// The buttons beside the time slider: go to the start or end, step by a frame or by a key of the selected
/// nodes, and play backward or forward. The button of the current direction stops playback. Steps wrap around
/// at the ends of the range.
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
