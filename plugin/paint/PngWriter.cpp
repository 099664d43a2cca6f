#include "paint/PngWriter.h"

#include <QBuffer>
#include <QMutexLocker>
#include <QRunnable>
#include <QSaveFile>

#include <algorithm>

namespace vellix {

namespace {

QString WriteFile(const QByteArray& content, const QString& path) {
    QSaveFile file(path);
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit();
    return written ? QString() : QString("\"") + path + "\" cannot be written: " + file.errorString();
}

QString WriteFiles(const QImage& image, const QStringList& paths) {
    QByteArray content;
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) {
        return "The image cannot be encoded.";
    }
    for (const QString& path : paths) {
        const QString fault = WriteFile(content, path);
        if (!fault.isEmpty()) {
            return fault;
        }
    }
    return QString();
}

} // namespace

class PngWriter::Job : public QRunnable {
public:
    Job(PngWriter& writer, const QImage& image, const QStringList& paths)
        : m_writer(writer)
        , m_image(image)
        , m_paths(paths) {}

    void run() override { m_writer.Done(WriteFiles(m_image, m_paths)); }

private:
    PngWriter& m_writer;
    QImage m_image;
    QStringList m_paths;
};

PngWriter::PngWriter()
    : m_freeSlots(2 * std::max(1, QThread::idealThreadCount())) {
    m_threads.setMaxThreadCount(std::max(1, QThread::idealThreadCount()));
}

PngWriter::~PngWriter() {
    m_threads.waitForDone();
}

bool PngWriter::Write(const QImage& image, const QStringList& paths) {
    m_freeSlots.acquire();
    {
        const QMutexLocker lock(&m_mutex);
        if (!m_fault.isEmpty()) {
            m_freeSlots.release();
            return false;
        }
    }
    m_threads.start(new Job(*this, image, paths)); // the pool owns it
    return true;
}

void PngWriter::Done(const QString& fault) {
    {
        const QMutexLocker lock(&m_mutex);
        if (m_fault.isEmpty()) {
            m_fault = fault;
        }
    }
    m_freeSlots.release();
}

QString PngWriter::Finish() {
    m_threads.waitForDone();
    const QMutexLocker lock(&m_mutex);
    return m_fault;
}

} // namespace vellix
