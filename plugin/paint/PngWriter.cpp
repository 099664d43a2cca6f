#include "paint/PngWriter.h"

#include <QImageWriter>
#include <QMutexLocker>
#include <QRunnable>
#include <QSaveFile>

#include <algorithm>

namespace vellix {

namespace {

QString WriteFile(const QImage& image, const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    QImageWriter writer(&file, "png");
    if (!writer.write(image)) {
        return file.error() == QFileDevice::NoError ? writer.errorString() : file.errorString();
    }
    return file.commit() ? QString() : file.errorString();
}

} // namespace

class PngWriter::Job : public QRunnable {
public:
    Job(PngWriter& writer, const QImage& image, const QString& path)
        : m_writer(writer)
        , m_image(image)
        , m_path(path) {}

    void run() override {
        const QString fault = WriteFile(m_image, m_path);
        m_writer.Done(fault.isEmpty() ? fault : QString("\"") + m_path + "\" cannot be written: " + fault);
    }

private:
    PngWriter& m_writer;
    QImage m_image;
    QString m_path;
};

PngWriter::PngWriter()
    : m_room(2 * std::max(1, QThread::idealThreadCount())) {
    m_threads.setMaxThreadCount(std::max(1, QThread::idealThreadCount()));
}

PngWriter::~PngWriter() {
    m_threads.waitForDone();
}

bool PngWriter::Write(const QImage& image, const QString& path) {
    m_room.acquire();
    {
        const QMutexLocker lock(&m_mutex);
        if (!m_fault.isEmpty()) {
            m_room.release();
            return false;
        }
    }
    m_threads.start(new Job(*this, image, path)); // the pool owns it
    return true;
}

void PngWriter::Done(const QString& fault) {
    {
        const QMutexLocker lock(&m_mutex);
        if (m_fault.isEmpty()) {
            m_fault = fault;
        }
    }
    m_room.release();
}

QString PngWriter::Finish() {
    m_threads.waitForDone();
    const QMutexLocker lock(&m_mutex);
    return m_fault;
}

} // namespace vellix
