#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace vellix {

/// Watches the view in which a stroke is drawn, and tells when the release that ends the stroke will not
/// come: the view has been hidden or closed, a dialog has taken the pointer away, or it moves with no button
/// held. That the window is no longer the active one is no reason: the pointer stays with it.
class StrokeGuard : public QObject {
    Q_OBJECT

public:
    /// `interrupted` is called from the event loop, once, after what has happened; never after Release().
    explicit StrokeGuard(std::function<void()> interrupted);

    void Watch(QWidget* view);
    void Release();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_interrupted;
    QPointer<QWidget> m_view;
    QPointer<QWidget> m_window;
    QTimer m_due;
};

} // namespace vellix
