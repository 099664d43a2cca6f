#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace lightbox {

class Host;

/// Saves the scene automatically, at the user's interval after the first change that is not saved, but only
/// at a moment when nobody is at work: see IsBusy(). A save that is due waits for such a moment.
class AutoSaveTimer : public QObject {
    Q_OBJECT
public:
    explicit AutoSaveTimer(Host& host, QObject* parent = nullptr);

    /// Whether a save would disturb somebody or catch the scene half-way: a mouse button or a pen is down, or
    /// was used in the last second, as was a key; text is typed into a view; a menu or anything else has
    /// grabbed the input; a command, a tool's event, a file operation or playback runs. A dialog that is left
    /// open is no reason to wait, unless a command waits for it.
    ///
    /// A tool takes text in a view by switching on the view's input methods (Qt::WA_InputMethodEnabled),
    /// without which composed characters would not reach it. No other view has them on.
    bool IsBusy() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Tick();
    void Save();
    bool MayPrompt() const;
    bool IsTextOpen() const;

    Host& host_;
    QTimer timer_;
    QElapsedTimer sinceSaved_; ///< since the scene was last known to be saved, or since the last attempt
    QElapsedTimer sinceInput_;
    Qt::MouseButtons buttons_ = Qt::NoButton;
    bool hasWarned_ = false;
};

} // namespace lightbox
