#pragma once

#include "paint/NonCopyable.h"

#include <QImage>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>

namespace vellix {

class WholeFile;

/// Writes images of one size as a movie, through the program ffmpeg. The movie is written whole or not at
/// all (WholeFile). Transparent parts become white, or stay transparent in a format that can have that. An
/// odd width or height is padded by one pixel, since the movie's pixel format needs even ones.
class MovieWriter : private NonCopyable {
public:
    /// The supported movie formats, by file suffix.
    static const QStringList SUFFIXES;

    enum class Paper { White, Transparent };

    /// Opens nothing yet; the first Write() starts the encoder. `rate` is in frames per second. Formats
    /// without transparency have white paper.
    MovieWriter(const QString& path, double rate, Paper paper = Paper::White);
    /// Kills an encoder that still runs and removes an unfinished movie.
    ~MovieWriter();

    /// Whether a movie of this name can be transparent: .webm (VP9) and .mov (ProRes 4444).
    static bool CanBeTransparent(const QString& path);

    /// Hands the next frame to the encoder. Blocks while many frames are waiting. Returns false once anything
    /// has failed.
    bool Write(const QImage& image);
    /// Waits for the encoder and moves the movie into place. Returns the first error, or an empty string.
    QString Finish();
    /// The first error so far, or an empty string.
    QString Fault() const { return fault_; }

private:
    bool Start(const QSize& size);
    QStringList CodecArguments() const;
    bool Fail(const QString& fault);
    /// The encoder's last output on standard error, for a message.
    QString EncoderErrors();

    QString path_;
    std::unique_ptr<WholeFile> file_; // the movie as the encoder writes it; null before and after
    double rate_;
    bool isTransparent_;
    QProcess encoder_;
    QString fault_;
};

} // namespace vellix
