#include "paint/MovieWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cmath>

namespace vellix {

namespace {

/// Bytes that may wait for the program; some frames, so that both sides have something to do.
constexpr qint64 MOST_WAITING = 32 * 1024 * 1024;
/// An encoder that takes nothing for so long does not work any more.
constexpr int PATIENCE_MS = 60000;

/// The program's surroundings, without the libraries that a host puts before those of the system.
QProcessEnvironment CleanEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"LD_LIBRARY_PATH", "LD_PRELOAD", "DYLD_LIBRARY_PATH"}) {
        environment.remove(QString::fromLatin1(name));
    }
    return environment;
}

} // namespace

const QStringList MovieWriter::SUFFIXES = {"mp4", "mov", "mkv", "avi", "webm"};

MovieWriter::MovieWriter(const QString& path, double rate)
    : m_path(path)
    , m_rate(rate) {}

MovieWriter::~MovieWriter() {
    if (m_encoder.state() != QProcess::NotRunning) {
        m_encoder.kill();
        m_encoder.waitForFinished();
    }
    if (!m_partPath.isEmpty()) {
        QFile::remove(m_partPath);
    }
}

QString MovieWriter::FindEncoder() {
    const QString found = QStandardPaths::findExecutable("ffmpeg");
    // Programs that are started from a desktop do not see the shell's path everywhere.
    return !found.isEmpty() ? found
                            : QStandardPaths::findExecutable(
                                  "ffmpeg", {"/usr/local/bin", "/opt/homebrew/bin", "/opt/local/bin"});
}

QString MovieWriter::RateText(double rate) {
    const double tolerance = 0.002;
    if (std::abs(rate - std::round(rate)) < tolerance) {
        return QString::number(std::lround(rate));
    }
    const double whole = std::round(rate * 1.001);
    if (std::abs(rate * 1.001 - whole) < tolerance) {
        return QString("%1/1001").arg(std::lround(whole) * 1000);
    }
    return QString::number(rate, 'f', 6);
}

bool MovieWriter::Fail(const QString& fault) {
    if (m_fault.isEmpty()) {
        m_fault = fault;
    }
    return false;
}

QString MovieWriter::LastWords() {
    // What a program says when it ends may come after its end of the pipe has gone.
    m_encoder.waitForFinished(1000);
    const QString words = QString::fromLocal8Bit(m_encoder.readAllStandardError()).trimmed();
    return words.isEmpty() ? QString() : QString(" ffmpeg says: %1").arg(words.right(500));
}

bool MovieWriter::Start(const QSize& size) {
    const QString encoder = FindEncoder();
    if (encoder.isEmpty()) {
        return Fail("ffmpeg is not installed.");
    }
    const QFileInfo file(m_path);
    // The encoder goes by the suffix, so the letters that make the name a new one stand before it.
    const QString letters(6, QLatin1Char('X'));
    QTemporaryFile part(
        QString("%1/.%2.%3.%4").arg(file.absolutePath(), file.completeBaseName(), letters, file.suffix()));
    part.setAutoRemove(false);
    if (!part.open()) {
        return Fail(QString("\"%1\" cannot be written: %2.").arg(m_path, part.errorString()));
    }
    m_partPath = part.fileName();
    part.close();
    QStringList arguments{"-y", "-hide_banner", "-loglevel", "error", "-f", "rawvideo", "-pix_fmt", "rgba"};
    arguments << "-s" << QString("%1x%2").arg(size.width()).arg(size.height());
    arguments << "-framerate" << RateText(m_rate) << "-i"
              << "-"
              << "-an";
    arguments << "-vf"
              << "pad=ceil(iw/2)*2:ceil(ih/2)*2"
              << "-pix_fmt"
              << "yuv420p" << m_partPath;
    m_encoder.setProcessEnvironment(CleanEnvironment());
    m_encoder.setStandardOutputFile(QProcess::nullDevice());
    m_encoder.start(encoder, arguments);
    return m_encoder.waitForStarted() ||
           Fail(QString("\"%1\" cannot be started: %2.").arg(encoder, m_encoder.errorString()));
}

bool MovieWriter::Write(const QImage& image) {
    if (!m_fault.isEmpty() || (m_partPath.isEmpty() && !Start(image.size()))) {
        return false;
    }
    QImage frame(image.size(), QImage::Format_RGBX8888);
    frame.fill(Qt::white);
    QPainter(&frame).drawImage(0, 0, image);
    m_encoder.write(reinterpret_cast<const char*>(frame.constBits()),
                    static_cast<qint64>(frame.bytesPerLine()) * frame.height());
    while (m_encoder.bytesToWrite() > MOST_WAITING) {
        if (!m_encoder.waitForBytesWritten(PATIENCE_MS)) {
            return Fail(QString("\"%1\" was not written.%2").arg(m_path, LastWords()));
        }
    }
    return m_encoder.state() == QProcess::Running ||
           Fail(QString("\"%1\" was not written.%2").arg(m_path, LastWords()));
}

QString MovieWriter::Finish() {
    if (!m_fault.isEmpty() || m_partPath.isEmpty()) {
        return m_fault;
    }
    while (m_encoder.bytesToWrite() > 0 && m_encoder.waitForBytesWritten(PATIENCE_MS)) {
    }
    m_encoder.closeWriteChannel();
    // The end of a long movie may be rewritten as a whole.
    const bool ended =
        m_encoder.state() == QProcess::NotRunning || m_encoder.waitForFinished(10 * PATIENCE_MS);
    if (!ended || m_encoder.exitStatus() != QProcess::NormalExit || m_encoder.exitCode() != 0 ||
        QFileInfo(m_partPath).size() == 0) {
        Fail(QString("\"%1\" was not written.%2").arg(m_path, LastWords()));
        return m_fault;
    }
    // A temporary file is its owner's alone; a movie is as open as other files.
    QFile::setPermissions(m_partPath,
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    QFile::remove(m_path);
    if (!QFile::rename(m_partPath, m_path)) {
        Fail(QString("\"%1\" cannot be written. Is it a folder, or open in another program?").arg(m_path));
        return m_fault;
    }
    m_partPath.clear();
    return {};
}

} // namespace vellix
