#pragma once

#include "paint/NonCopyable.h"

#include <QImage>
#include <QMutex>
#include <QSemaphore>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QThreadPool>

namespace vellix {

/// Writes images as PNG files, several at a time on its own threads. Every file is written whole or not at
/// all (WholeFile).
class PngWriter : private NonCopyable {
public:
    PngWriter();
    /// Waits for pending writes.
    ~PngWriter();

    /// Queues an image for one file, or for several files with the same content. Blocks while the queue is
    /// full, which bounds the memory in use. Returns false, and queues nothing, once a write has failed.
    bool Write(const QImage& image, const QStringList& paths);
    /// Waits for all files. Returns the first error, or an empty string.
    QString Finish();

private:
    class Job;

    void Done(const QString& fault);

    QThreadPool threads_;
    QSemaphore freeSlots_;
    QMutex mutex_;
    QString fault_;
};

} // namespace vellix
