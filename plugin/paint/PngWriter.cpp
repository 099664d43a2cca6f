#include "paint/PngWriter.h"

#include "paint/PngCodec.h"

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
    if (!PngCodec::Encode(image, content)) {
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
        : writer_(writer)
        , image_(image)
        , paths_(paths) {}

    void run() override { writer_.Done(WriteFiles(image_, paths_)); }

private:
    PngWriter& writer_;
    QImage image_;
    QStringList paths_;
};

PngWriter::PngWriter()
    : freeSlots_(2 * std::max(1, QThread::idealThreadCount())) {
    threads_.setMaxThreadCount(std::max(1, QThread::idealThreadCount()));
}

PngWriter::~PngWriter() {
    threads_.waitForDone();
}

bool PngWriter::Write(const QImage& image, const QStringList& paths) {
    freeSlots_.acquire();
    {
        const QMutexLocker lock(&mutex_);
        if (!fault_.isEmpty()) {
            freeSlots_.release();
            return false;
        }
    }
    threads_.start(new Job(*this, image, paths)); // the pool owns it
    return true;
}

void PngWriter::Done(const QString& fault) {
    {
        const QMutexLocker lock(&mutex_);
        if (fault_.isEmpty()) {
            fault_ = fault;
        }
    }
    freeSlots_.release();
}

QString PngWriter::Finish() {
    threads_.waitForDone();
    const QMutexLocker lock(&mutex_);
    return fault_;
}

} // namespace vellix
