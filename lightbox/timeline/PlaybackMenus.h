#pragma once

#include "scene/EventSubscriptions.h"

#include <QWidget>

class QMenu;
class QToolButton;

namespace lightbox {

class Host;
class TransportButton;

/// The controls beside the range slider: a button for the loop mode, and a menu for the time unit and the
/// playback speed.
class PlaybackMenus : public QWidget {
    Q_OBJECT

public:
    explicit PlaybackMenus(Host& host, QWidget* parent = nullptr);

private:
    void NextLoop();
    void FillMenu();
    void AddSpeed(const QString& label, double speed, double maxSpeed);
    void ShowState();

    Host& host_;
    EventSubscriptions events_;
    TransportButton* loop_;
    QToolButton* rate_;
    QMenu* menu_;
};

} // namespace lightbox
