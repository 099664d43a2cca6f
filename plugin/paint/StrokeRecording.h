#pragma once

#include "paint/LineStyle.h"
#include "paint/PenPressure.h"
#include "paint/ToolType.h"

#include <QByteArray>
#include <QColor>
#include <QPointF>
#include <QString>
#include <QVector>

namespace vellix {

/// One sample of a recorded pen: its position in image pixels (y down), its raw pressure (0..1, as the tablet
/// reported it) and its time in milliseconds from the start of the recording.
struct RecordedSample {
    QPointF position;
    float pressure = 1.0f;
    double milliseconds = 0.0;
};

/// One recorded stroke: the tool with its options as the user sees them (size in image pixels,
/// opacity 1..100, hardness 0..100), how the line followed the pen and its pressure, and at least one sample.
/// Text strokes carry their text and font family.
struct RecordedStroke {
    int frame = 0;
    ToolType tool = ToolType::Pencil;
    int size = 1;
    int opacity = 100;
    int hardness = 100;
    QColor color;
    QString text;
    QString font;
    LineStyle lineStyle;
    /// Whether pressure sets the opacity.
    enum class OpacityPressure {
        AsTheTool, ///< as the tool's tablet switch says
        Off,
        On,
    } opacityPressure = OpacityPressure::AsTheTool;
    PenPressure pressure;
    QVector<RecordedSample> samples;
};

/// A recording of pen strokes, read from JSON of the format "vellix-strokes", version 1. Reads all of it or
/// nothing: any fault leaves the object empty and gives a one-line error that names the stroke (from 1) and
/// the field. Ignores unknown fields.
class StrokeRecording {
public:
    /// Bytes. Longer files are refused. At 125 samples per second this is hours of drawing.
    static constexpr qint64 MAX_FILE_SIZE = 32 * 1024 * 1024;
    static constexpr int MAX_STROKES = 10000;
    static constexpr int MAX_SAMPLES_PER_STROKE = 100000;
    /// Every frame with strokes holds a four-megabyte image while it is worked on.
    static constexpr int MAX_FRAMES = 2000;
    static constexpr int MAX_FRAME_NUMBER = 1000000;
    static constexpr int MAX_TEXT_LENGTH = 2000;
    /// Image pixels. A pen may leave the image, but by no more than the image's width on any side.
    static constexpr int MAX_DISTANCE_OUTSIDE = 1024;
    /// Length of all strokes together, in image pixels. The time to paint is proportional to it.
    static constexpr int MAX_PATH_LENGTH = 4000000;

    /// Reads the file. On a fault returns false and sets `error`, which does not name the file.
    bool Read(const QString& path, QString& error);
    /// Read() for data in memory.
    bool Parse(const QByteArray& json, QString& error);

    const QVector<RecordedStroke>& GetStrokes() const { return strokes_; }

private:
    QVector<RecordedStroke> strokes_;
};

} // namespace vellix
