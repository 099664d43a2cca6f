#include "journeys/window/RunningLightbox.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include <gtest/gtest.h>

namespace {

constexpr int PATIENCE = 20000; ///< milliseconds
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
    ADD_FAILURE() << line.toStdString() << " answers " << last.toStdString();
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
    const QImage image(file);
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
    m_input.Press(button);
    Rest(30);
}

void RunningLightbox::Release(Button button) {
    m_input.Release(button);
    Rest();
}

void RunningLightbox::Click(const QPoint& position, Button button) {
    Press(position, button);
    Release(button);
}

void RunningLightbox::Choose(const QStringList& items) {
    for (const QString& item : items) {
        Click(item);
        Rest(150);
    }
}

void RunningLightbox::DragTo(const QPoint& from, const QPoint& to, Button button) {
    Press(from, button);
    // A tool looks where the pointer is once the press has come to it, which a busy machine may take long over.
    Rest(200);
    constexpr int steps = 12;
    for (int step = 1; step <= steps; ++step) {
        MoveTo(from + (to - from) * step / steps);
    }
    Rest();
}

void RunningLightbox::Drag(const QPoint& from, const QPoint& to, Button button) {
    DragTo(from, to, button);
    Release(button);
    // Two drags are no double click.
    Rest(450);
}

void RunningLightbox::Type(unsigned key, unsigned modifier) {
    if (modifier != 0) {
        m_input.PressKey(modifier);
    }
    m_input.PressKey(key);
    Rest(20);
    m_input.ReleaseKey(key);
    if (modifier != 0) {
        m_input.ReleaseKey(modifier);
    }
    Rest();
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
