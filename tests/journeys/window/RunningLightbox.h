#pragma once

#include "journeys/Lightbox.h"
#include "plugin/tools/RealInput.h"

#include <QElapsedTimer>
#include <QImage>
#include <QLocalSocket>
#include <QProcess>
#include <QRect>

/// The program with its window on the display. Tests use it as a person does, with the pointer and the
/// keyboard, and query it through a command port.
class RunningLightbox {
public:
    enum Key : unsigned {
        Return = 0xff0d,
        Escape = 0xff1b,
        ArrowRight = 0xff53,
        ArrowDown = 0xff54,
        Shift = 0xffe1,
        Control = 0xffe3,
        Alt = 0xffe9,
        Backslash = 0x5c
    };
    enum Button { Left = 1, Middle, Right };

    /// Starts the program in the folder, with the folder's preferences, and waits until it listens. `scale`
    /// is the number of screen pixels for each pixel of the program.
    RunningLightbox(const Lightbox& folder, const QStringList& arguments, double scale = 1.0);
    /// Ends the program if it still runs.
    ~RunningLightbox();

    /// Returns the result of a line of MEL, with tabs between the elements of an array.
    QString Mel(const QString& line);
    /// Waits until a line of MEL returns the answer. False if it does not within some seconds.
    bool Becomes(const QString& line, const QString& answer);
    /// Waits for a control, a panel, a menu title or an item of an open menu. Returns its rectangle on the
    /// screen, in pixels of the program.
    QRect Place(const QString& control);
    bool IsShown(const QString& control);
    /// Grabs the window or one control, in screen pixels.
    QImage Grab(const QString& control = QString());
    /// Exports the drawing of the camera at frame 1.
    QImage Drawing(const QString& camera = "persp");
    /// Waits until the drawing differs from `before`, and returns it; returns `before` after a timeout. On a
    /// busy machine a key may take effect later than Settle().
    QImage ChangedDrawing(const QImage& before, const QString& camera = "persp");

    void MoveTo(const QPoint& position);
    void Click(const QPoint& position, Button button = Left);
    void Click(const QString& control) { Click(Place(control).center()); }
    /// Opens the menus one after the other and chooses the last item.
    void Choose(const QStringList& items);
    void Press(const QPoint& position, Button button = Left);
    void Release(Button button = Left);
    /// Presses at one place and moves to the other in steps, as a hand does. Does not release.
    void DragTo(const QPoint& from, const QPoint& to, Button button = Left);
    void Drag(const QPoint& from, const QPoint& to, Button button = Left);
    void Hold(unsigned key) { input_.PressKey(key); }
    void LetGo(unsigned key) { input_.ReleaseKey(key); }
    void Type(unsigned key, unsigned modifier = 0);

    /// Types a key into a dialog until it is gone: right after it is shown, keys may still go elsewhere.
    void Dismiss(const QString& dialog, unsigned key);
    /// Sends the program a signal.
    void Signal(int signal);

    /// Waits for the program's end and returns its exit status; -1 if it does not end.
    int WaitForEnd();
    /// Returns the program's standard error since the last call.
    QByteArray Messages();

    /// Waits until the program has handled all input, and its deferred work after that.
    void Settle();
    /// Pauses as a hand does between two actions.
    static void Rest(int milliseconds = 60);

private:
    vellix::RealInput input_;
    const Lightbox& folder_;
    double scale_;
    QProcess process_;
    QLocalSocket port_;
    QElapsedTimer sincePress_;
    QPoint lastPress_;
    Button lastButton_ = Left;
};
