#include "paint/StrokeRecording.h"

#include "paint/ImageSize.h"
#include "paint/ToolTable.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

#include <cmath>

namespace vellix {

namespace {

/// Lists the words of all tools for a message: "a, b or c".
QString AnyTool() {
    QStringList words;
    for (const ToolRow& tool : AllTools()) {
        words.append(QLatin1String(tool.word));
    }
    const QString last = words.takeLast();
    return words.join(", ") + " or " + last;
}

/// Reads the fields of one JSON object and keeps the first fault.
class FieldReader {
public:
    FieldReader(const QJsonObject& object, const QString& where)
        : object_(object)
        , where_(where) {}

    const QString& GetError() const { return error_; }

    bool Fail(const QString& field, const QString& fault) {
        if (error_.isEmpty()) {
            error_ = QString("%1\"%2\" %3").arg(where_, field, fault);
        }
        return false;
    }

    bool ReadWhole(const QString& field, int low, int high, int& out) {
        const double value = object_.value(field).toDouble(std::nan(""));
        if (!(value >= low && value <= high) || value != std::floor(value)) {
            return Fail(field, low == high
                                   ? QString("must be %1").arg(low)
                                   : QString("must be a whole number from %1 to %2").arg(low).arg(high));
        }
        out = static_cast<int>(value);
        return true;
    }

    bool Has(const QString& field) const { return object_.contains(field); }

    bool ReadSwitch(const QString& field, bool& out) {
        const QJsonValue value = object_.value(field);
        if (!value.isBool()) {
            return Fail(field, "must be true or false");
        }
        out = value.toBool();
        return true;
    }

    bool ReadText(const QString& field, int maxLength, QString& out) {
        const QJsonValue value = object_.value(field);
        if (!value.isString()) {
            return Fail(field, "must be a string");
        }
        out = value.toString();
        if (out.size() > maxLength || out.contains(QChar(0))) {
            return Fail(field, QString("must have at most %1 characters, none of them NUL").arg(maxLength));
        }
        return true;
    }

    bool ReadArray(const QString& field, int minCount, int maxCount, QJsonArray& out) {
        const QJsonValue value = object_.value(field);
        out = value.toArray();
        if (!value.isArray() || out.size() < minCount || out.size() > maxCount) {
            return Fail(field, minCount == maxCount
                                   ? QString("must be a list of %1").arg(minCount)
                                   : QString("must be a list of %1 to %2").arg(minCount).arg(maxCount));
        }
        return true;
    }

private:
    const QJsonObject& object_;
    QString where_;
    QString error_;
};

/// Recordings that say nothing of it have the plain style.
bool ReadLineStyle(FieldReader& reader, LineStyle& out) {
    return (!reader.Has("smoothCurves") || reader.ReadSwitch("smoothCurves", out.smoothCurves)) &&
           (!reader.Has("stabiliser") ||
            reader.ReadWhole("stabiliser", 0, LineStyle::MAX_STABILISER, out.stabiliser));
}

/// A list of three: least, pressure and value of the middle point.
bool ReadCurve(FieldReader& reader, const QString& field, PressureCurve& out) {
    if (!reader.Has(field)) {
        return true;
    }
    QJsonArray parts;
    if (!reader.ReadArray(field, 3, 3, parts)) {
        return false;
    }
    const auto whole = [&parts](int i) {
        const double value = parts.at(i).toDouble(-1.0);
        return value == std::floor(value) && value >= 0.0 && value <= 100.0 ? static_cast<int>(value) : -1;
    };
    const PressureCurve curve = {whole(0), whole(1), whole(2)};
    if (!curve.IsValid()) {
        return reader.Fail(field, QString("must be [least, pressure, value] of 0 to 100, 5 to 95, 0 to 100"));
    }
    out = curve;
    return true;
}

/// Recordings that say nothing of it have sizes without pressure, and straight curves.
bool ReadPressure(FieldReader& reader, RecordedStroke& out) {
    if (reader.Has("pressureToOpacity")) {
        bool isOn = false;
        if (!reader.ReadSwitch("pressureToOpacity", isOn)) {
            return false;
        }
        using Pressure = RecordedStroke::OpacityPressure;
        out.opacityPressure = isOn ? Pressure::On : Pressure::Off;
    }
    return (!reader.Has("pressureToSize") || reader.ReadSwitch("pressureToSize", out.pressure.setsSize)) &&
           ReadCurve(reader, "opacityCurve", out.pressure.opacity) &&
           ReadCurve(reader, "sizeCurve", out.pressure.size);
}

bool ReadColor(FieldReader& reader, QColor& out) {
    QJsonArray parts;
    if (!reader.ReadArray("color", 3, 3, parts)) {
        return false;
    }
    int rgb[3];
    for (int i = 0; i < 3; ++i) {
        const double value = parts.at(i).toDouble(-1.0);
        if (!(value >= 0.0 && value <= 255.0) || value != std::floor(value)) {
            return reader.Fail("color", "must hold whole numbers from 0 to 255");
        }
        rgb[i] = static_cast<int>(value);
    }
    out = QColor(rgb[0], rgb[1], rgb[2]);
    return true;
}

bool InRange(double value, double low, double high) {
    return value >= low && value <= high;
}

/// Reads one sample. Returns the fault, or an empty string.
QString ReadSample(const QJsonValue& value, RecordedSample& out) {
    const QJsonArray parts = value.toArray();
    if (parts.size() != 4) {
        return "must be [x, y, pressure, milliseconds]";
    }
    const double missing = std::nan("");
    const double low = -StrokeRecording::MAX_DISTANCE_OUTSIDE;
    const double high = IMAGE_WIDTH + StrokeRecording::MAX_DISTANCE_OUTSIDE;
    out.position = QPointF(parts.at(0).toDouble(missing), parts.at(1).toDouble(missing));
    if (!InRange(out.position.x(), low, high) || !InRange(out.position.y(), low, high)) {
        return QString("must have x and y from %1 to %2").arg(low).arg(high);
    }
    const double pressure = parts.at(2).toDouble(missing);
    if (!InRange(pressure, 0.0, 1.0)) {
        return "must have a pressure from 0 to 1";
    }
    out.pressure = static_cast<float>(pressure);
    out.milliseconds = parts.at(3).toDouble(missing);
    if (!(out.milliseconds >= 0.0)) {
        return "must have milliseconds from 0";
    }
    return QString();
}

bool ReadSamples(FieldReader& reader, QVector<RecordedSample>& out) {
    QJsonArray samples;
    if (!reader.ReadArray("samples", 1, StrokeRecording::MAX_SAMPLES_PER_STROKE, samples)) {
        return false;
    }
    out.resize(samples.size());
    for (int i = 0; i < out.size(); ++i) {
        const QString fault = ReadSample(samples.at(i), out[i]);
        if (!fault.isEmpty()) {
            return reader.Fail("samples", QString("sample %1 %2").arg(i + 1).arg(fault));
        }
    }
    return true;
}

bool ReadStroke(FieldReader& reader, RecordedStroke& out) {
    QString tool;
    if (!reader.ReadText("tool", 32, tool)) {
        return false;
    }
    const ToolRow* const known = FindTool(tool);
    if (!known) {
        return reader.Fail("tool", "must be " + AnyTool());
    }
    out.tool = known->type;
    const int lastFrame = StrokeRecording::MAX_FRAME_NUMBER;
    if (!reader.ReadWhole("frame", -lastFrame, lastFrame, out.frame) ||
        !reader.ReadWhole("size", 1, known->maximumSize, out.size) ||
        !reader.ReadWhole("opacity", 1, 100, out.opacity) ||
        !reader.ReadWhole("hardness", 0, 100, out.hardness) || !ReadColor(reader, out.color) ||
        !ReadLineStyle(reader, out.lineStyle) || !ReadPressure(reader, out)) {
        return false;
    }
    if (known->kind == ToolKind::Text &&
        (!reader.ReadText("text", StrokeRecording::MAX_TEXT_LENGTH, out.text) ||
         !reader.ReadText("font", 256, out.font))) {
        return false;
    }
    return ReadSamples(reader, out.samples);
}

double PathLength(const QVector<RecordedSample>& samples) {
    double length = 0.0;
    for (int i = 1; i < samples.size(); ++i) {
        const QPointF step = samples[i].position - samples[i - 1].position;
        length += std::hypot(step.x(), step.y());
    }
    return length;
}

/// Checks the fields of the whole recording and extracts the list of strokes. Returns the fault, or an empty
/// string.
QString ReadHeader(const QJsonObject& root, QJsonArray& strokes) {
    FieldReader reader(root, QString());
    QString format;
    int version = 0;
    int size = 0;
    if (!reader.ReadText("format", 32, format)) {
        return reader.GetError();
    }
    if (format != QLatin1String("vellix-strokes")) {
        reader.Fail("format", "must be \"vellix-strokes\"");
    } else if (reader.ReadWhole("version", 1, 1, version) &&
               reader.ReadWhole("size", IMAGE_WIDTH, IMAGE_WIDTH, size)) {
        reader.ReadArray("strokes", 0, StrokeRecording::MAX_STROKES, strokes);
    }
    return reader.GetError();
}

QString ReadStrokes(const QJsonArray& list, QVector<RecordedStroke>& out) {
    QSet<int> frames;
    double length = 0.0;
    out.resize(list.size());
    for (int i = 0; i < out.size(); ++i) {
        const QString where = QString("stroke %1: ").arg(i + 1);
        if (!list.at(i).isObject()) {
            return where + "must be an object";
        }
        const QJsonObject object = list.at(i).toObject();
        FieldReader reader(object, where);
        if (!ReadStroke(reader, out[i])) {
            return reader.GetError();
        }
        frames.insert(out[i].frame);
        if (frames.size() > StrokeRecording::MAX_FRAMES) {
            return where + QString("\"frame\" is one too many: a recording may draw on at most %1 frames")
                               .arg(StrokeRecording::MAX_FRAMES);
        }
        length += PathLength(out[i].samples);
        if (length > StrokeRecording::MAX_PATH_LENGTH) {
            return where + QString("\"samples\" make the recording longer than %1 pixels of line")
                               .arg(StrokeRecording::MAX_PATH_LENGTH);
        }
    }
    return QString();
}

} // namespace

bool StrokeRecording::Read(const QString& path, QString& error) {
    strokes_.clear();
    if (!QFileInfo(path).isFile()) {
        error = "the file does not exist";
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QString("the file cannot be opened: %1").arg(file.errorString());
        return false;
    }
    const QByteArray json = file.read(MAX_FILE_SIZE + 1);
    if (file.error() != QFileDevice::NoError) {
        error = QString("the file cannot be read: %1").arg(file.errorString());
        return false;
    }
    return Parse(json, error);
}

bool StrokeRecording::Parse(const QByteArray& json, QString& error) {
    strokes_.clear();
    if (json.size() > MAX_FILE_SIZE) {
        error = QString("the file is larger than %1 MB").arg(MAX_FILE_SIZE / (1024 * 1024));
        return false;
    }
    QJsonParseError fault;
    const QJsonDocument document = QJsonDocument::fromJson(json, &fault);
    if (!document.isObject()) {
        error = fault.error == QJsonParseError::NoError
                    ? QString("the file must hold one JSON object")
                    : QString("not JSON: %1 at byte %2").arg(fault.errorString()).arg(fault.offset);
        return false;
    }
    QJsonArray list;
    QVector<RecordedStroke> strokes;
    error = ReadHeader(document.object(), list);
    if (error.isEmpty()) {
        error = ReadStrokes(list, strokes);
    }
    if (!error.isEmpty()) {
        return false;
    }
    strokes_.swap(strokes);
    return true;
}

} // namespace vellix
