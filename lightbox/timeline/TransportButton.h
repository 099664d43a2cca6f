#pragma once

#include <QAbstractButton>

namespace lightbox {

/// A button of the playback controls. Its sign is painted as a vector, so it is sharp at every screen scale.
class TransportButton : public QAbstractButton {
    Q_OBJECT

public:
    enum class Sign {
        ToStart,
        StepBack,
        KeyBack,
        PlayBack,
        PlayForward,
        KeyForward,
        StepForward,
        ToEnd,
        Stop,
        LoopOnce,
        LoopContinuous,
        LoopOscillate
    };

    TransportButton(Sign sign, const QString& tip, QWidget* parent = nullptr);

    void SetSign(Sign sign);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Sign sign_;
};

} // namespace lightbox
