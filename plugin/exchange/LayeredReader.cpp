#include "exchange/LayeredReader.h"

#include "exchange/ReadableSize.h"
#include "paint/PngStructure.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

constexpr qint64 MAX_TEXT_SIZE = 64 << 20;
constexpr int MAX_DISTANCE = 1000000; ///< of a picture from the canvas's corner, in pixels
constexpr qint64 PNG_HEAD = 33;       ///< bytes, up to the end of the header

/// No PNG of this size needs more bytes: its pixels at 16 bits, uncompressed, and other chunks.
qint64 LargestPng(const PngStructure::Header& header) {
    return qint64(header.width) * header.height * 9 + (16 << 20);
}

PngStructure::Header HeaderOfBegin(const QByteArray& begin) {
    return PngStructure::IsPng(begin) ? PngStructure::HeaderOf(begin) : PngStructure::Header();
}

} // namespace

LayeredReader::LayeredReader(const QString& path)
    : archive_(path)
    , fault_(archive_.Fault()) {}

LayeredReader::LayeredReader(const QByteArray& bytes)
    : archive_(bytes)
    , fault_(archive_.Fault()) {}

LayeredReader::~LayeredReader() = default;

bool LayeredReader::Fail(const QString& fault) {
    if (fault_.isEmpty()) {
        fault_ = fault;
    }
    return false;
}

void LayeredReader::Warn(const QString& warning) {
    if (!warnings_.contains(warning)) {
        warnings_.append(warning);
    }
}

qint64 LayeredReader::ByteCount() const {
    qint64 count = 0;
    for (const PictureLayer& layer : drawing_.layers) {
        for (const LayeredPicture& picture : layer.pictures) {
            count += archive_.SizeOf(picture.source);
        }
    }
    return count;
}

bool LayeredReader::Read(const LayeredPicture& picture, QByteArray& png) {
    png.clear();
    if (!fault_.isEmpty() || picture.source.isEmpty()) {
        return fault_.isEmpty();
    }
    QByteArray begin;
    if (!archive_.ReadBegin(picture.source, PNG_HEAD, begin)) {
        return Fail(archive_.Fault());
    }
    const PngStructure::Header header = HeaderOfBegin(begin);
    const QSize size(header.width, header.height);
    if (header.depth == 0) {
        return Fail(QStringLiteral("its picture \"%1\" is no PNG").arg(picture.source));
    }
    if (!IsReadableSize(size)) {
        return Fail(QStringLiteral("its picture \"%1\" has %2").arg(picture.source, UnreadableSize(size)));
    }
    if (!archive_.Read(picture.source, LargestPng(header), png)) {
        return Fail(archive_.Fault());
    }
    return PngStructure::IsSound(png) ||
           Fail(QStringLiteral("its picture \"%1\" is damaged").arg(picture.source));
}

bool LayeredReader::ReadText(const QString& name, QByteArray& text) {
    return fault_.isEmpty() && (archive_.Read(name, MAX_TEXT_SIZE, text) || Fail(archive_.Fault()));
}

bool LayeredReader::CheckCanvas() {
    return IsReadableSize(drawing_.size) || Fail("its canvas has " + UnreadableSize(drawing_.size));
}

bool LayeredReader::ToPosition(const QString& text, int& position) {
    bool isNumber = false;
    const double number = text.isEmpty() ? 0.0 : text.toDouble(&isNumber);
    if ((!isNumber && !text.isEmpty()) || !(std::abs(number) <= MAX_DISTANCE)) {
        return Fail(QStringLiteral("\"%1\" is no position of a picture").arg(text));
    }
    position = static_cast<int>(std::lround(number));
    return true;
}

bool LayeredReader::ToOpacity(const QString& text, double& opacity) {
    bool isNumber = true;
    const double number = text.isEmpty() ? 1.0 : text.toDouble(&isNumber);
    if (!isNumber || std::isnan(number)) {
        return Fail(QStringLiteral("\"%1\" is no opacity").arg(text));
    }
    opacity = std::min(1.0, std::max(0.0, number));
    return true;
}

bool LayeredReader::CheckXml(const QXmlStreamReader& xml, const QString& member) {
    QString reason = xml.errorString();
    reason.chop(reason.endsWith(QLatin1Char('.')) ? 1 : 0); // a sentence goes on behind it
    return !xml.hasError() || Fail(QStringLiteral("its member \"%1\" is damaged in line %2: %3")
                                       .arg(member)
                                       .arg(xml.lineNumber())
                                       .arg(reason));
}

bool LayeredReader::NextTag(QXmlStreamReader& xml, const QString& member) {
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EntityReference ||
            (token == QXmlStreamReader::DTD && !xml.entityDeclarations().isEmpty())) {
            return Fail(
                QStringLiteral("its member \"%1\" has entities, which drawings do not need").arg(member));
        }
        if (token == QXmlStreamReader::StartElement || token == QXmlStreamReader::EndElement) {
            return true;
        }
    }
    CheckXml(xml, member);
    return false;
}

} // namespace vellix
