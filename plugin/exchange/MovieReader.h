#pragma once

#include "paint/NonCopyable.h"

#include <QByteArray>
#include <QImage>
#include <QProcess>
#include <QString>
#include <QtGlobal>

namespace vellix {

/// Reads the pictures of a movie one after the other, through the program ffmpeg. No more than one is in
/// memory.
class MovieReader : private NonCopyable {
public:
    /// Takes every `every`th frame of the movie as it is at `rate` frames per second.
    MovieReader(const QString& path, double rate, int every);
    /// Kills a decoder that still runs.
    ~MovieReader();

    /// Reads the next picture, Format_RGBA8888. Returns false at the end, and on a fault. Throws
    /// std::bad_alloc when memory is short.
    bool Next(QImage& image);
    /// What is wrong, in a sentence without a full stop; empty while nothing is.
    const QString& Fault() const { return fault_; }

private:
    bool Start();
    bool ReadHead(int& width, int& height);
    bool ReadBytes(char* bytes, qint64 count);
    bool Fail(const QString& fault);
    void CheckEnd();

    QString path_;
    double rate_;
    int every_;
    bool hasPictures_ = false;
    QProcess decoder_;
    QString fault_;
};

} // namespace vellix
