#include "exchange/PictureFileReader.h"

#include "exchange/ReadableSize.h"
#include "paint/PngStructure.h"

#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QSize>

#include <new>

namespace vellix {

namespace {

/// No PNG of the largest size is longer, by far.
constexpr qint64 MAX_FILE_SIZE = qint64(1) << 30;
constexpr qint64 PICTURE_HEAD = 33; ///< bytes, up to the end of the header

bool RefusePicture(QString& fault, const QString& reason) {
    fault = reason;
    return false;
}

bool CheckSize(const QSize& size, QString& fault) {
    return IsReadableSize(size) || RefusePicture(fault, "it has " + UnreadableSize(size));
}

bool ReadPng(QFile& file, const PictureFit& fit, QByteArray& png, QString& fault) {
    const QByteArray bytes = file.readAll();
    if (bytes.size() < file.size()) {
        return RefusePicture(fault, QStringLiteral("it cannot be read: ") + file.errorString());
    }
    const PngStructure::Header header = PngStructure::HeaderOf(bytes);
    const QSize size(header.width, header.height);
    if (header.depth != 0 && !CheckSize(size, fault)) {
        return false;
    }
    png = PngStructure::IsSound(bytes) ? fit.For(size).Place(bytes, QPoint()) : QByteArray();
    return !png.isEmpty() || RefusePicture(fault, QStringLiteral("the PNG is damaged"));
}

bool ReadByQt(QFile& file, const PictureFit& fit, QByteArray& png, QString& fault) {
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead() || !reader.size().isValid()) {
        return RefusePicture(fault, QStringLiteral("it is no picture that can be read"));
    }
    if (!CheckSize(reader.size(), fault)) {
        return false;
    }
    const QImage image = reader.read();
    if (image.isNull()) {
        return RefusePicture(fault, QStringLiteral("it cannot be read: ") + reader.errorString());
    }
    png = fit.For(image.size()).Place(image, QPoint());
    return true;
}

} // namespace

bool PictureFileReader::Read(const QString& path, const PictureFit& fit, QByteArray& png, QString& fault) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return RefusePicture(fault, QStringLiteral("it cannot be read: ") + file.errorString());
    }
    if (file.size() > MAX_FILE_SIZE) {
        return RefusePicture(fault, QStringLiteral("it is too large for a picture"));
    }
    return PngStructure::IsPng(file.peek(8)) ? ReadPng(file, fit, png, fault)
                                             : ReadByQt(file, fit, png, fault);
}

qint64 PictureFileReader::PixelCount(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray begin = file.peek(PICTURE_HEAD);
    QSize size;
    if (PngStructure::IsPng(begin)) {
        const PngStructure::Header header = PngStructure::HeaderOf(begin);
        size = QSize(header.width, header.height);
    } else {
        size = QImageReader(&file).size();
    }
    return size.isValid() ? qint64(size.width()) * size.height() : 0;
}

std::vector<QString> PictureFileReader::Suffixes() {
    std::vector<QString> suffixes;
    for (const QByteArray& format : QImageReader::supportedImageFormats()) {
        // What has no pixels has no size of its own.
        if (!format.startsWith("svg") && format != "pdf") {
            suffixes.push_back(QString::fromLatin1(format).toLower());
        }
    }
    return suffixes;
}

} // namespace vellix
