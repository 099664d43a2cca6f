#include "paint/PngWriter.h"

#include "paint/PngCodec.h"
#include "paint/WholeFile.h"

#include <QMutexLocker>
#include <QRunnable>

#include <algorithm>
#include <new>

namespace vellix {

namespace {

QString WriteFiles(const QImage& image, const QStringList& paths) {
    QByteArray content;
    if (!PngCodec::Encode(image, content)) {
        return "The image cannot be encoded.";
    }
    for (const QString& path : paths) {
        const QString fault = WholeFile::Write(path, content);
        if (!fault.isEmpty()) {
            return '"' + path + "\" cannot be written: " + fault + '.';
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

    void run() override {
        QString fault;
        try {
            fault = WriteFiles(image_, paths_);
        } catch (const std::bad_alloc&) {
            fault = QStringLiteral("Out of memory.");
        }
        writer_.Done(fault);
    }

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
