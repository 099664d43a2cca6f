#pragma once

#include "paint/NonCopyable.h"

#include <QByteArray>
#include <QImage>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>

namespace vellix {

/// Reads the pictures of a movie one after the other, through the program ffmpeg. No more than one is in
/// memory.
class MovieReader : private NonCopyable {
public:
    /// Takes every `every`th frame of the movie as it is at `rate` frames per second.
    /// `goesOn` is asked while the decoder is waited for; when it returns false, reading ends with a fault.
    MovieReader(const QString& path, double rate, int every, std::function<bool()> goesOn);
    /// Kills a decoder that still runs.
    ~MovieReader();

    /// Reads the next picture, Format_RGBA8888. Returns false at the end, and on a fault. Throws
    /// std::bad_alloc when memory is short.
    bool Next(QImage& image);
    /// What is wrong, in a sentence without a full stop; empty while nothing is.
    const QString& Fault() const { return fault_; }
    /// What does not come along, in sentences.
    const QStringList& Warnings() const { return warnings_; }

private:
    bool Start();
    QStringList DecoderArguments(const QString& program);
    QByteArray WordsOf(const QString& program, const QStringList& arguments) const;
    bool ReadHead(int& width, int& height);
    bool ReadBytes(char* bytes, qint64 count);
    bool Fail(const QString& fault);
    void CheckEnd();

    bool WaitFor(bool (MovieReader::*isDone)());
    bool HasBytes();
    bool HasEnded();

    QString path_;
    double rate_;
    int every_;
    std::function<bool()> goesOn_;
    bool hasPictures_ = false;
    QProcess decoder_;
    QString fault_;
    QStringList warnings_;
};

} // namespace vellix
