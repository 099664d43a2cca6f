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

/// Writes images as PNG files, several at a time on threads of its own. Every file is written whole or not at
/// all: the old file stays until the new one is complete.
class PngWriter : private NonCopyable {
public:
    PngWriter();
    /// Waits for what is still being written.
    ~PngWriter();

    /// Takes an image on, for one file or several that are to be the same, waiting while as many as can be
    /// held in memory are still unwritten. False, with nothing taken on, once a file could not be written.
    bool Write(const QImage& image, const QStringList& paths);
    /// Waits for all files. Returns what went wrong first, or an empty string.
    QString Finish();

private:
    class Job;

    void Done(const QString& fault);

    QThreadPool m_threads;
    QSemaphore m_room;
    QMutex m_mutex;
    QString m_fault;
};

} // namespace vellix
