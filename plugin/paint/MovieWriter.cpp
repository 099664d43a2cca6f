#include "paint/MovieWriter.h"

#include "paint/Ffmpeg.h"
#include "paint/WholeFile.h"

#include <QColor>
#include <QFileInfo>
#include <QPainter>

#include <memory>

namespace vellix {

namespace {

/// Bytes that may wait for the encoder. Enough for several frames, so that neither side idles.
constexpr qint64 MAX_BYTES_WAITING = 32 * 1024 * 1024;
/// An encoder that accepts no data for this long is taken to hang.
constexpr int TIMEOUT_MS = 60000;

/// ffmpeg's name for the format of a file. It cannot tell by the name of the temporary file.
QString FormatOf(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("mkv") ? QStringLiteral("matroska") : suffix;
}

} // namespace

const QStringList MovieWriter::SUFFIXES = {"mp4", "mov", "mkv", "avi", "webm"};

MovieWriter::MovieWriter(const QString& path, double rate, Paper paper)
    : path_(path)
    , rate_(rate)
    , isTransparent_(paper == Paper::Transparent && CanBeTransparent(path)) {}

MovieWriter::~MovieWriter() {
    if (encoder_.state() != QProcess::NotRunning) {
        encoder_.kill();
        encoder_.waitForFinished();
    }
}

bool MovieWriter::CanBeTransparent(const QString& path) {
    const QString format = FormatOf(path);
    return format == QLatin1String("webm") || format == QLatin1String("mov");
}

/// Of the coded pixels. ProRes has no frames between others, so that it is quick to edit; VP9 has an alpha
/// channel only without its alternate reference frames.
QStringList MovieWriter::CodecArguments() const {
    if (!isTransparent_) {
        return {"-pix_fmt", "yuv420p"};
    }
    if (FormatOf(path_) == QLatin1String("mov")) {
        return {"-c:v", "prores_ks", "-profile:v", "4444", "-pix_fmt", "yuva444p10le"};
    }
    return {"-c:v", "libvpx-vp9", "-pix_fmt", "yuva420p", "-auto-alt-ref", "0", "-crf", "20",
            "-b:v", "0",          "-row-mt",  "1",        "-cpu-used",     "4"};
}

bool MovieWriter::Fail(const QString& fault) {
    if (fault_.isEmpty()) {
        fault_ = fault;
    }
    return false;
}

QString MovieWriter::EncoderErrors() {
    // The last output of a program may arrive only after it has closed its input.
    encoder_.waitForFinished(1000);
    const QString words = QString::fromLocal8Bit(encoder_.readAllStandardError()).trimmed();
    return words.isEmpty() ? QString() : QString(" ffmpeg says: %1").arg(words.right(500));
}

bool MovieWriter::Start(const QSize& size) {
    const QString encoder = ffmpeg::Find();
    if (encoder.isEmpty()) {
        return Fail("ffmpeg is not installed.");
    }
    file_ = std::make_unique<WholeFile>(path_);
    if (!file_->Fault().isEmpty()) {
        return Fail(QString("\"%1\" cannot be written: %2.").arg(path_, file_->Fault()));
    }
    QStringList arguments{"-y", "-xerror",  "-hide_banner", "-loglevel", "error",
                          "-f", "rawvideo", "-pix_fmt",     "rgba"};
    arguments << "-s" << QString("%1x%2").arg(size.width()).arg(size.height());
    arguments << "-framerate" << ffmpeg::RateText(rate_) << "-i"
              << "-"
              << "-an";
    const char* const edge = isTransparent_ ? ":color=black@0" : "";
    arguments << "-vf" << QString("pad=ceil(iw/2)*2:ceil(ih/2)*2%1").arg(edge);
    arguments << CodecArguments() << "-f" << FormatOf(path_) << file_->TemporaryPath();
    encoder_.setProcessEnvironment(ffmpeg::Environment());
    encoder_.setStandardOutputFile(QProcess::nullDevice());
    encoder_.start(encoder, arguments);
    return encoder_.waitForStarted() ||
           Fail(QString("\"%1\" cannot be started: %2.").arg(encoder, encoder_.errorString()));
}

bool MovieWriter::Write(const QImage& image) {
    if (!fault_.isEmpty() || (!file_ && !Start(image.size()))) {
        return false;
    }
    QImage frame;
    if (isTransparent_) {
        frame = image.convertToFormat(QImage::Format_RGBA8888);
    } else {
        frame = QImage(image.size(), QImage::Format_RGBX8888);
        frame.fill(Qt::white);
        QPainter(&frame).drawImage(0, 0, image);
    }
    encoder_.write(reinterpret_cast<const char*>(frame.constBits()),
                   static_cast<qint64>(frame.bytesPerLine()) * frame.height());
    while (encoder_.bytesToWrite() > MAX_BYTES_WAITING) {
        if (!encoder_.waitForBytesWritten(TIMEOUT_MS)) {
            return Fail(QString("\"%1\" was not written.%2").arg(path_, EncoderErrors()));
        }
    }
    return encoder_.state() == QProcess::Running ||
           Fail(QString("\"%1\" was not written.%2").arg(path_, EncoderErrors()));
}

QString MovieWriter::Finish() {
    if (!fault_.isEmpty() || !file_) {
        return fault_;
    }
    while (encoder_.bytesToWrite() > 0 && encoder_.waitForBytesWritten(TIMEOUT_MS)) {
    }
    encoder_.closeWriteChannel();
    // Finishing a long movie may mean rewriting the whole file.
    const bool ended = encoder_.state() == QProcess::NotRunning || encoder_.waitForFinished(10 * TIMEOUT_MS);
    if (!ended || encoder_.exitStatus() != QProcess::NormalExit || encoder_.exitCode() != 0 ||
        QFileInfo(file_->TemporaryPath()).size() == 0) {
        Fail(QString("\"%1\" was not written.%2").arg(path_, EncoderErrors()));
        return fault_;
    }
    if (!file_->Commit()) {
        Fail(QString("\"%1\" cannot be written: %2.").arg(path_, file_->Fault()));
    }
    file_.reset();
    return fault_;
}

} // namespace vellix
