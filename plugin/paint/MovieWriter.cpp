#include "paint/MovieWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cmath>

namespace vellix {

namespace {

/// Bytes that may wait for the encoder. Enough for several frames, so that neither side idles.
constexpr qint64 MAX_BYTES_WAITING = 32 * 1024 * 1024;
/// An encoder that accepts no data for this long is taken to hang.
constexpr int TIMEOUT_MS = 60000;

/// The process environment for the encoder, without the host's own library paths.
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
    // A host that was started from the desktop may lack the shell's search path.
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

QString MovieWriter::EncoderErrors() {
    // The last output of a program may arrive only after it has closed its input.
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
    // The encoder picks the format by the suffix, so the random letters stand before it.
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
    while (m_encoder.bytesToWrite() > MAX_BYTES_WAITING) {
        if (!m_encoder.waitForBytesWritten(TIMEOUT_MS)) {
            return Fail(QString("\"%1\" was not written.%2").arg(m_path, EncoderErrors()));
        }
    }
    return m_encoder.state() == QProcess::Running ||
           Fail(QString("\"%1\" was not written.%2").arg(m_path, EncoderErrors()));
}

QString MovieWriter::Finish() {
    if (!m_fault.isEmpty() || m_partPath.isEmpty()) {
        return m_fault;
    }
    while (m_encoder.bytesToWrite() > 0 && m_encoder.waitForBytesWritten(TIMEOUT_MS)) {
    }
    m_encoder.closeWriteChannel();
    // Finishing a long movie may mean rewriting the whole file.
    const bool ended =
        m_encoder.state() == QProcess::NotRunning || m_encoder.waitForFinished(10 * TIMEOUT_MS);
    if (!ended || m_encoder.exitStatus() != QProcess::NormalExit || m_encoder.exitCode() != 0 ||
        QFileInfo(m_partPath).size() == 0) {
        Fail(QString("\"%1\" was not written.%2").arg(m_path, EncoderErrors()));
        return m_fault;
    }
    // QTemporaryFile lets only the owner read it. A movie gets the usual permissions.
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
