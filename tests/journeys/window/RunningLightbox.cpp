#include "journeys/window/RunningLightbox.h"

#include <QFileInfo>
#include <QThread>

#include <algorithm>
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
    : m_folder(folder)
    , m_scale(scale) {
    EXPECT_TRUE(m_input.IsAvailable()) << "the display takes no input from tests";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("QT_QPA_PLATFORM");
    environment.insert("QT_SCALE_FACTOR", QString::number(scale));
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(folder.Path("."));
    const QString port = folder.Path(PORT);
    m_process.start(LIGHTBOX_PROGRAM, QStringList{"-prefs", folder.Path("preferences")} + arguments +
                                          QStringList{"-command", "commandPort -name \"" + port + "\""});
    QElapsedTimer timer;
    timer.start();
    do {
        Rest(20);
        m_port.connectToServer(port);
    } while (!m_port.waitForConnected(100) && timer.elapsed() < PATIENCE &&
             m_process.state() != QProcess::NotRunning);
    EXPECT_EQ(m_port.state(), QLocalSocket::ConnectedState) << Messages().toStdString();
    Becomes("control -q -visible MayaWindow", "1");
    Rest(200);
}

RunningLightbox::~RunningLightbox() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QString RunningLightbox::Mel(const QString& line) {
    m_port.write(line.toUtf8() + '\n');
    QByteArray answer;
    while (!answer.endsWith('\0') && m_port.state() == QLocalSocket::ConnectedState &&
           m_port.waitForReadyRead(PATIENCE)) {
        answer += m_port.readAll();
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
    } while (timer.elapsed() < PATIENCE / 4 && m_process.state() == QProcess::Running);
    ADD_FAILURE() << line.toStdString() << " answers " << last.toStdString() << ", the program is in state "
                  << m_process.state() << " " << m_process.exitStatus() << " " << m_process.exitCode();
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
    } while (timer.elapsed() < PATIENCE / 4);
    ADD_FAILURE() << answer.toStdString();
    return {};
}

QImage RunningLightbox::Grab(const QString& control) {
    const QString file = m_folder.Path("grab.png");
    Mel("lightboxGrab -file \"" + file + "\"" +
        (control.isEmpty() ? QString() : " -widget \"" + control + "\""));
    QImage image(file);
    EXPECT_FALSE(image.isNull());
    return image;
}

void RunningLightbox::MoveTo(const QPoint& position) {
    m_input.MoveTo(
        QPoint(qRound((position.x() + 0.5) * m_scale - 0.5), qRound((position.y() + 0.5) * m_scale - 0.5)));
    Rest(15);
}

void RunningLightbox::Press(const QPoint& position, Button button) {
    MoveTo(position);
    const bool isNear = (position - m_lastPress).manhattanLength() < DOUBLE_CLICK_DISTANCE;
    if (isNear && button == m_lastButton && m_sincePress.isValid()) {
        Rest(static_cast<int>(std::max<qint64>(0, DOUBLE_CLICK_TIME - m_sincePress.elapsed())));
    }
    m_lastPress = position;
    m_lastButton = button;
    m_sincePress.start();
    m_input.Press(button);
    Settle();
}

void RunningLightbox::Release(Button button) {
    m_input.Release(button);
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
        m_input.PressKey(modifier);
    }
    m_input.PressKey(key);
    m_input.ReleaseKey(key);
    if (modifier != 0) {
        m_input.ReleaseKey(modifier);
    }
    Settle();
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
               timer.elapsed() < LONGEST_SETTLE && m_port.state() == QLocalSocket::ConnectedState) {
            Rest(2);
        }
    }
}

QImage RunningLightbox::Drawing(const QString& camera) {
    const QString file = m_folder.Path("drawing.####.png");
    QFile::remove(m_folder.Path("drawing.0001.png"));
    Mel("qmVellixExport -file \"" + file + "\" -camera " + camera + " -startTime 1 -endTime 1");
    const QImage image(m_folder.Path("drawing.0001.png"));
    EXPECT_FALSE(image.isNull()) << Messages().toStdString();
    return image.convertToFormat(QImage::Format_ARGB32);
}

QImage RunningLightbox::ChangedDrawing(const QImage& before, const QString& camera) {
    QElapsedTimer timer;
    timer.start();
    QImage drawing = Drawing(camera);
    while (drawing == before && timer.elapsed() < PATIENCE / 4) {
        Rest(30);
        drawing = Drawing(camera);
    }
    return drawing;
}

int RunningLightbox::WaitForEnd() {
    const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(PATIENCE);
    return hasEnded && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QByteArray RunningLightbox::Messages() {
    m_process.waitForReadyRead(300);
    return m_process.readAllStandardError();
}

void RunningLightbox::Rest(int milliseconds) {
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}
