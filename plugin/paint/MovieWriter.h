#pragma once

#include "paint/NonCopyable.h"

#include <QImage>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace vellix {

/// Writes images of one size as a movie, through the program ffmpeg. The movie is written whole or not at
/// all: it grows in a file beside the one that was asked for, which is replaced when all of it is there.
/// Transparent parts are white, and a size that is odd gets a row or a column more, since movies hold
/// neither.
class MovieWriter : private NonCopyable {
public:
    /// The kinds of movies, by the ending of the file's name.
    static const QStringList SUFFIXES;

    /// `rate` is in frames a second.
    MovieWriter(const QString& path, double rate);
    /// Ends the program and takes back what is not finished.
    ~MovieWriter();

    /// Where ffmpeg is, or an empty string.
    static QString FindEncoder();
    /// The rate as ffmpeg takes it: "24", or "24000/1001" for the rates of television.
    static QString RateText(double rate);

    /// Hands on the next frame, waiting while the program has many to do. False once it has gone wrong.
    bool Write(const QImage& image);
    /// Waits for the program, and puts the movie into its place. Returns what went wrong, or an empty string.
    QString Finish();
    /// What has gone wrong so far.
    QString Fault() const { return m_fault; }

private:
    bool Start(const QSize& size);
    bool Fail(const QString& fault);
    /// What the program said last, for a message.
    QString LastWords();

    QString m_path;
    QString m_partPath; // empty while there is nothing to take back
    double m_rate;
    QProcess m_encoder;
    QString m_fault;
};

} // namespace vellix
