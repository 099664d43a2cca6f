#pragma once

#include "journeys/Lightbox.h"
#include "plugin/tools/RealInput.h"

#include <QElapsedTimer>
#include <QImage>
#include <QLocalSocket>
#include <QProcess>
#include <QRect>

/// The program with its window on the display, used as a person does: by the pointer and the keyboard. What
/// is on the screen is found, and what came of it asked, through a command port.
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

    /// Starts it in the folder, with that folder's preferences, and waits until it listens. The program draws
    /// so many pixels of the screen for each of its own.
    RunningLightbox(const Lightbox& folder, const QStringList& arguments, double scale = 1.0);
    /// Ends it if it has not ended by itself.
    ~RunningLightbox();

    /// What a line of MEL answers, the elements of an array between tabs.
    QString Mel(const QString& line);
    /// Waits until a line of MEL answers so; false when it does not within some seconds.
    bool Becomes(const QString& line, const QString& answer);
    /// Where a control, a panel, a menu's title or an open menu's item is, in pixels of the program. Waits
    /// for it.
    QRect Place(const QString& control);
    /// What the user sees, in pixels of the screen.
    QImage Grab(const QString& control = QString());
    /// The drawing of the camera at frame 1, as it would be exported.
    QImage Drawing(const QString& camera = "persp");
    /// The same once it is another one than that; that one after a while in which it stays. On a busy machine
    /// what a key does may come after Settle().
    QImage ChangedDrawing(const QImage& before, const QString& camera = "persp");

    void MoveTo(const QPoint& position);
    void Click(const QPoint& position, Button button = Left);
    void Click(const QString& control) { Click(Place(control).center()); }
    /// Opens menu after menu and takes the last item.
    void Choose(const QStringList& items);
    void Press(const QPoint& position, Button button = Left);
    void Release(Button button = Left);
    /// Presses at one place, and moves to the other in steps, as a hand does.
    void DragTo(const QPoint& from, const QPoint& to, Button button = Left);
    void Drag(const QPoint& from, const QPoint& to, Button button = Left);
    void Hold(unsigned key) { input_.PressKey(key); }
    void LetGo(unsigned key) { input_.ReleaseKey(key); }
    void Type(unsigned key, unsigned modifier = 0);

    /// Waits for its end and answers its status; -1 when it does not end.
    int WaitForEnd();
    /// What it has said on standard error since it was asked last.
    QByteArray Messages();

    /// Until what hands have done has come to the program, and what it put off then is done.
    void Settle();
    /// As long as hands need between two things.
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
