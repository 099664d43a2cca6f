#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <memory>

class QLabel;
class QProgressBar;

namespace lightbox {

/// How far a long computation is, with "Cancel". Closing the window cancels as well.
class ProgressPanel : public QDialog {
    Q_OBJECT

public:
    explicit ProgressPanel(QWidget& parent);

    void SetProgress(const QString& what, int percent);

private:
    QLabel* what_;
    QProgressBar* bar_;
};

/// Shows a computation that keeps the event loop from running, and notices that the user wants to cancel it.
/// Its window opens once the computation has taken a moment.
class ProgressDisplay : public QObject {
    Q_OBJECT

public:
    explicit ProgressDisplay(QWidget& parent);
    ~ProgressDisplay() override;

    /// Begins the display, or goes on with it.
    void Show(const QString& what, int percent);
    /// Whether Escape or "Cancel" was pressed since the display began. Delivers the user's input to the
    /// window, paints, and holds back everything else until the computation has ended. What is queued in the
    /// event loop without a timer has to look at IsRunning().
    bool IsInterruptRequested();
    void End();
    bool IsRunning() const { return isRunning_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ReceiveEvents();
    bool BelongsToPanel(const QObject* object) const;

    QWidget& parent_;
    std::unique_ptr<ProgressPanel> panel_;
    QString what_;
    int percent_ = 0;
    bool isRunning_ = false;
    bool isInterrupted_ = false;
    QElapsedTimer sinceBegin_;
    QElapsedTimer sinceEvents_;
};

} // namespace lightbox
