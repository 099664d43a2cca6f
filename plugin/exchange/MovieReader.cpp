#include "exchange/MovieReader.h"

#include "exchange/ReadableSize.h"
#include "paint/Composite.h"
#include "paint/Ffmpeg.h"
#include "paint/ImageSize.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QList>
#include <QRegularExpression>
#include <QStringList>

#include <utility>

namespace vellix {

namespace {

/// A decoder that gives nothing for this long is taken to hang.
constexpr int DECODER_TIMEOUT_MS = 60000;
constexpr int POLL_MS = 50; ///< between two looks at whether reading goes on
constexpr int ANSWER_TIMEOUT_MS = 10000;
constexpr int MAX_HEAD_SIZE = 1024;

/// The number behind a keyword in the head of a picture; 0 for none.
int NumberIn(const QByteArray& head, const char* keyword) {
    for (const QByteArray& line : head.split('\n')) {
        if (line.startsWith(keyword)) {
            return line.mid(static_cast<int>(qstrlen(keyword))).trimmed().toInt();
        }
    }
    return 0;
}

} // namespace

MovieReader::MovieReader(const QString& path, double rate, int every, std::function<bool()> goesOn)
    : path_(path)
    , rate_(rate)
    , every_(every)
    , goesOn_(std::move(goesOn)) {}

MovieReader::~MovieReader() {
    if (decoder_.state() != QProcess::NotRunning) {
        decoder_.kill();
        decoder_.waitForFinished();
    }
}

bool MovieReader::Fail(const QString& fault) {
    if (fault_.isEmpty()) {
        fault_ = fault;
    }
    return false;
}

/// What ffmpeg says about something, on both of its outputs.
QByteArray MovieReader::WordsOf(const QString& program, const QStringList& arguments) const {
    QProcess asked;
    asked.setProcessChannelMode(QProcess::MergedChannels);
    asked.setProcessEnvironment(ffmpeg::Environment());
    asked.start(program, QStringList{"-hide_banner", "-nostdin"} + arguments);
    if (!asked.waitForFinished(ANSWER_TIMEOUT_MS)) {
        asked.kill();
        asked.waitForFinished();
    }
    return asked.readAll();
}

/// WebM keeps the alpha of VP8 and VP9 in a stream of its own, which ffmpeg's own decoders leave out.
QStringList MovieReader::DecoderArguments(const QString& program) {
    const QString suffix = QFileInfo(path_).suffix().toLower();
    if (suffix != QLatin1String("webm") && suffix != QLatin1String("mkv")) {
        return QStringList();
    }
    const QString words =
        QString::fromUtf8(WordsOf(program, {"-protocol_whitelist", "file", "-i",
                                            QStringLiteral("file:") + QFileInfo(path_).absoluteFilePath()}));
    static const QRegularExpression hasAlpha(QStringLiteral("alpha_mode\\s*: 1\\b"),
                                             QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression codecOf(QStringLiteral("Video: (vp[89])\\b"));
    const QRegularExpressionMatch codec = codecOf.match(words);
    if (!codec.hasMatch() || !hasAlpha.match(words).hasMatch()) {
        return QStringList();
    }
    const QString decoder =
        codec.captured(1) == QLatin1String("vp9") ? QStringLiteral("libvpx-vp9") : QStringLiteral("libvpx");
    if (!WordsOf(program, {"-h", QStringLiteral("decoder=") + decoder}).startsWith("Decoder ")) {
        warnings_.append(
            QStringLiteral("Its transparency does not come along: this ffmpeg is without %1.").arg(decoder));
        return QStringList();
    }
    return {"-c:v", decoder};
}

/// Has each picture written as a Netpbm PAM, which tells its size and needs no compression.
bool MovieReader::Start() {
    const QFileInfo file(path_);
    if (!file.isFile() || !file.isReadable()) {
        return Fail(file.exists() ? QStringLiteral("it cannot be read")
                                  : QStringLiteral("the file does not exist"));
    }
    const QString program = ffmpeg::Find();
    if (program.isEmpty()) {
        return Fail(QStringLiteral(
            "movies are read by ffmpeg, which is not installed; install it (the package ffmpeg, "
            "or from ffmpeg.org) so that it is on the PATH"));
    }
    const qint64 largest = qint64(MAX_PNG_SIDE) * MAX_PNG_SIDE;
    QStringList arguments{"-hide_banner", "-nostdin", "-loglevel", "error", "-xerror"};
    // The movie is this file alone: a playlist may not lead anywhere else.
    arguments << "-protocol_whitelist"
              << "file"
              << "-max_pixels" << QString::number(largest) << DecoderArguments(program) << "-i"
              << QStringLiteral("file:") + file.absoluteFilePath();
    arguments << "-map"
              << "0:v:0"
              << "-vf" << QStringLiteral("fps=%1,framestep=%2").arg(ffmpeg::RateText(rate_)).arg(every_);
    arguments << "-f"
              << "image2pipe"
              << "-c:v"
              << "pam"
              << "-pix_fmt"
              << "rgba"
              << "-";
    decoder_.setProcessEnvironment(ffmpeg::Environment());
    decoder_.start(program, arguments);
    return decoder_.waitForStarted() ||
           Fail(QStringLiteral("\"%1\" cannot be started: %2").arg(program, decoder_.errorString()));
}

bool MovieReader::Next(QImage& image) {
    if (!fault_.isEmpty() || (decoder_.program().isEmpty() && !Start())) {
        return false;
    }
    int width = 0;
    int height = 0;
    if (!ReadHead(width, height)) {
        return false;
    }
    if (!IsReadableSize(QSize(width, height))) {
        return Fail("it has " + UnreadableSize(QSize(width, height)));
    }
    QImage picture = composite::OrBadAlloc(QImage(width, height, QImage::Format_RGBA8888));
    for (int y = 0; y < height; ++y) {
        if (!ReadBytes(reinterpret_cast<char*>(picture.scanLine(y)), qint64(width) * 4)) {
            return Fail(QStringLiteral("it ends in the middle of a picture"));
        }
    }
    hasPictures_ = true;
    image = picture;
    return true;
}

bool MovieReader::ReadHead(int& width, int& height) {
    QByteArray head;
    while (!head.endsWith("ENDHDR\n")) {
        char letter = 0;
        if (head.size() > MAX_HEAD_SIZE || !ReadBytes(&letter, 1)) {
            CheckEnd();
            return false;
        }
        head.append(letter);
    }
    width = NumberIn(head, "WIDTH");
    height = NumberIn(head, "HEIGHT");
    return (head.startsWith("P7\n") && NumberIn(head, "DEPTH") == 4 && NumberIn(head, "MAXVAL") == 255) ||
           Fail(QStringLiteral("ffmpeg gives no pictures of eight bits"));
}

bool MovieReader::ReadBytes(char* bytes, qint64 count) {
    while (count > 0) {
        const qint64 got = decoder_.read(bytes, count);
        if (got < 0) {
            return false;
        }
        bytes += got;
        count -= got;
        if (got == 0 && !WaitFor(&MovieReader::HasBytes) && decoder_.bytesAvailable() == 0) {
            return false;
        }
    }
    return true;
}

bool MovieReader::HasBytes() {
    return decoder_.waitForReadyRead(POLL_MS);
}

bool MovieReader::HasEnded() {
    return decoder_.state() == QProcess::NotRunning || decoder_.waitForFinished(POLL_MS);
}

/// Waits for the decoder. Returns false if it has ended before or hangs, and fails if reading is to end.
bool MovieReader::WaitFor(bool (MovieReader::*isDone)()) {
    QElapsedTimer waited;
    waited.start();
    while (!(this->*isDone)()) {
        if (goesOn_ && !goesOn_()) {
            return Fail(QStringLiteral("interrupted"));
        }
        if (decoder_.state() == QProcess::NotRunning || waited.hasExpired(DECODER_TIMEOUT_MS)) {
            return false;
        }
    }
    return true;
}

/// Tells the end of a movie from a fault.
void MovieReader::CheckEnd() {
    const bool ended = fault_.isEmpty() && WaitFor(&MovieReader::HasEnded);
    const bool isGood = ended && decoder_.exitStatus() == QProcess::NormalExit && decoder_.exitCode() == 0;
    const QString words = QString::fromLocal8Bit(decoder_.readAllStandardError()).simplified().right(300);
    if (!isGood) {
        Fail(QStringLiteral("it is no movie that can be read. ffmpeg says: %1").arg(words));
    } else if (!hasPictures_) {
        Fail(QStringLiteral("there are no pictures in it"));
    }
}

} // namespace vellix
