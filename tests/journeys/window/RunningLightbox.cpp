#include "journeys/window/RunningLightbox.h"

#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>

namespace {

constexpr int PATIENCE = 20000; ///< milliseconds
/// A dialog that was opened from work put off holds up what is put off after it.
constexpr int LONGEST_SETTLE = 300;
/// The program's own, and a little more.
constexpr int DOUBLE_CLICK_TIME = 450;
constexpr int DOUBLE_CLICK_DISTANCE = 20;
const char* const PORT = "port";

} // namespace

RunningLightbox::RunningLightbox(const Lightbox& folder, const QStringList& arguments, double scale)
    : folder_(folder)
    , scale_(scale) {
    EXPECT_TRUE(input_.IsAvailable()) << "the display takes no input from tests";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("QT_QPA_PLATFORM");
    environment.insert("QT_SCALE_FACTOR", QString::number(scale));
    process_.setProcessEnvironment(environment);
    process_.setWorkingDirectory(folder.Path("."));
    const QString port = folder.Path(PORT);
    process_.start(LIGHTBOX_PROGRAM, QStringList{"-prefs", folder.Path("preferences")} + arguments +
                                         QStringList{"-command", "commandPort -name \"" + port + "\""});
    QElapsedTimer timer;
    timer.start();
    do {
        Rest(20);
        port_.connectToServer(port);
    } while (!port_.waitForConnected(100) && timer.elapsed() < PATIENCE &&
             process_.state() != QProcess::NotRunning);
    EXPECT_EQ(port_.state(), QLocalSocket::ConnectedState) << Messages().toStdString();
    Becomes("control -q -visible MayaWindow", "1");
    Rest(200);
}

RunningLightbox::~RunningLightbox() {
    if (process_.state() != QProcess::NotRunning) {
        process_.kill();
        process_.waitForFinished();
    }
}

QString RunningLightbox::Mel(const QString& line) {
    port_.write(line.toUtf8() + '\n');
    QByteArray answer;
    while (!answer.endsWith('\0') && port_.state() == QLocalSocket::ConnectedState &&
           port_.waitForReadyRead(PATIENCE)) {
        answer += port_.readAll();
    }
    answer.chop(1);
    return QString::fromUtf8(answer).trimmed();
}

bool RunningLightbox::Becomes(const QString& line, const QString& answer) {
    QElapsedTimer timer;
    timer.start();
    QString last;
    do {
        last = Mel(line);
        if (last == answer) {
            return true;
        }
        Rest(30);
    } while (timer.elapsed() < PATIENCE && process_.state() == QProcess::Running);
    ADD_FAILURE() << line.toStdString() << " answers " << last.toStdString() << ", the program is in state "
                  << process_.state() << " " << process_.exitStatus() << " " << process_.exitCode();
    return false;
}

QRect RunningLightbox::Place(const QString& control) {
    QElapsedTimer timer;
    timer.start();
    QString answer;
    do {
        answer = Mel("lightboxWidget -query -geometry \"" + control + "\"");
        const QStringList numbers = answer.split('\t');
        if (numbers.size() == 4) {
            return {numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt()};
        }
        Rest(30);
    } while (timer.elapsed() < PATIENCE);
    ADD_FAILURE() << answer.toStdString();
    return {};
}

bool RunningLightbox::IsShown(const QString& control) {
    return Mel("lightboxWidget -query -geometry \"" + control + "\"").split('\t').size() == 4;
}

QImage RunningLightbox::Grab(const QString& control) {
    const QString file = folder_.Path("grab.png");
    Mel("lightboxGrab -file \"" + file + "\"" +
        (control.isEmpty() ? QString() : " -widget \"" + control + "\""));
    QImage image(file);
    EXPECT_FALSE(image.isNull());
    return image;
}

void RunningLightbox::MoveTo(const QPoint& position) {
    input_.MoveTo(
        QPoint(qRound((position.x() + 0.5) * scale_ - 0.5), qRound((position.y() + 0.5) * scale_ - 0.5)));
    Rest(15);
}

void RunningLightbox::Press(const QPoint& position, Button button) {
    MoveTo(position);
    const bool isNear = (position - lastPress_).manhattanLength() < DOUBLE_CLICK_DISTANCE;
    if (isNear && button == lastButton_ && sincePress_.isValid()) {
        Rest(static_cast<int>(std::max<qint64>(0, DOUBLE_CLICK_TIME - sincePress_.elapsed())));
    }
    lastPress_ = position;
    lastButton_ = button;
    sincePress_.start();
    input_.Press(button);
    Settle();
}

void RunningLightbox::Release(Button button) {
    input_.Release(button);
    Settle();
}

void RunningLightbox::Click(const QPoint& position, Button button) {
    Press(position, button);
    Release(button);
}

void RunningLightbox::Choose(const QStringList& items) {
    for (const QString& item : items) {
        Click(item);
        Rest(150); // a menu in a menu opens a little later
    }
}

void RunningLightbox::DragTo(const QPoint& from, const QPoint& to, Button button) {
    Press(from, button);
    Rest(30); // a tool that samples the pointer begins now
    constexpr int steps = 6;
    for (int step = 1; step <= steps; ++step) {
        MoveTo(from + (to - from) * step / steps);
    }
    Settle();
    Rest(20);
}

void RunningLightbox::Drag(const QPoint& from, const QPoint& to, Button button) {
    DragTo(from, to, button);
    Release(button);
}

void RunningLightbox::Type(unsigned key, unsigned modifier) {
    if (modifier != 0) {
        input_.PressKey(modifier);
    }
    input_.PressKey(key);
    input_.ReleaseKey(key);
    if (modifier != 0) {
        input_.ReleaseKey(modifier);
    }
    Settle();
}

void RunningLightbox::Dismiss(const QString& dialog, unsigned key) {
    Place(dialog);
    QElapsedTimer timer;
    timer.start();
    do {
        Type(key);
        Rest(100);
    } while (IsShown(dialog) && timer.elapsed() < PATIENCE);
    EXPECT_FALSE(IsShown(dialog)) << dialog.toStdString();
}

void RunningLightbox::Signal(int signal) {
    EXPECT_EQ(::kill(static_cast<pid_t>(process_.processId()), signal), 0);
}

void RunningLightbox::Settle() {
    // What is put off now is done after what is put off already. The first time around, what hands have done
    // is on its way; the second time, what it has put off.
    Rest(5);
    for (int round = 0; round < 2; ++round) {
        Mel("global int $gSettled; $gSettled = 0; evalDeferred -lowestPriority "
            "\"global int $gSettled; $gSettled = 1\"");
        QElapsedTimer timer;
        timer.start();
        while (Mel("global int $gSettled; int $settled = $gSettled") != "1" &&
               timer.elapsed() < LONGEST_SETTLE && port_.state() == QLocalSocket::ConnectedState) {
            Rest(2);
        }
    }
}

QImage RunningLightbox::Drawing(const QString& camera) {
    const QString file = folder_.Path("drawing.####.png");
    QFile::remove(folder_.Path("drawing.0001.png"));
    Mel("qmVellixExport -file \"" + file + "\" -camera " + camera + " -startTime 1 -endTime 1");
    const QImage image(folder_.Path("drawing.0001.png"));
    EXPECT_FALSE(image.isNull()) << Messages().toStdString();
    return image.convertToFormat(QImage::Format_ARGB32);
}

QImage RunningLightbox::ChangedDrawing(const QImage& before, const QString& camera) {
    QElapsedTimer timer;
    timer.start();
    QImage drawing = Drawing(camera);
    while (drawing == before && timer.elapsed() < PATIENCE) {
        Rest(30);
        drawing = Drawing(camera);
    }
    return drawing;
}

int RunningLightbox::WaitForEnd() {
    const bool hasEnded = process_.state() == QProcess::NotRunning || process_.waitForFinished(PATIENCE);
    return hasEnded && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

QByteArray RunningLightbox::Messages() {
    process_.waitForReadyRead(300);
    return process_.readAllStandardError();
}

void RunningLightbox::Rest(int milliseconds) {
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}
