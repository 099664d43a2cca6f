#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace vellix {

/// Watches the whole program for the press of a button outside one view. Reports it before the pressed widget
/// gets it, so that what was open in the view can be finished first.
class OutsidePress : public QObject {
public:
    explicit OutsidePress(std::function<void()> pressed);

    /// Watches until Stop() is called. The view is borrowed and may go.
    void Watch(QWidget* view);
    void Stop();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> pressed_;
    QPointer<QWidget> view_;
};

} // namespace vellix
