#include "paint/StrokeRecording.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace vellix {
namespace {

const char* const STROKE =
    R"({"frame": 3, "tool": "brush", "size": 24, "opacity": 70, "hardness": 90, "color": [0, 90, 200],
        "samples": [[10.25, 20.5, 0.4, 0], [12, 21, 1, 8]]})";

QByteArray Recording(const QByteArray& strokes) {
    return R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [)" + strokes + "]}";
}

QByteArray With(const char* from, const char* to) {
    QByteArray stroke(STROKE);
    EXPECT_TRUE(stroke.contains(from)) << from;
    return stroke.replace(from, to);
}

TEST(StrokeRecordingTest, ReadsEveryField) {
    StrokeRecording recording;
    QString error;
    const QByteArray text = With("\"brush\"", R"("text", "text": "Añb", "font": "DejaVu Sans", "later": {})");
    ASSERT_TRUE(recording.Parse(Recording(QByteArray(STROKE) + "," + text), error)) << error.toStdString();
    ASSERT_EQ(recording.GetStrokes().size(), 2);
    const RecordedStroke& brush = recording.GetStrokes()[0];
    EXPECT_EQ(brush.frame, 3);
    EXPECT_EQ(brush.tool, ToolType::Brush);
    EXPECT_EQ(brush.size, 24);
    EXPECT_EQ(brush.opacity, 70);
    EXPECT_EQ(brush.hardness, 90);
    EXPECT_EQ(brush.color, QColor(0, 90, 200));
    ASSERT_EQ(brush.samples.size(), 2);
    EXPECT_EQ(brush.samples[0].position, QPointF(10.25, 20.5));
    EXPECT_FLOAT_EQ(brush.samples[0].pressure, 0.4f);
    EXPECT_EQ(brush.samples[1].milliseconds, 8.0);
    EXPECT_EQ(recording.GetStrokes()[1].text, QString::fromUtf8("Añb"));
    EXPECT_EQ(recording.GetStrokes()[1].font, "DejaVu Sans");
}

// A fault in the second stroke names it and the field, and nothing of the recording is kept.
TEST(StrokeRecordingTest, NamesTheStrokeAndTheField) {
    const struct {
        const char* from;
        const char* to;
        const char* named;
    } faults[] = {
        {"3", "3.5", "\"frame\""},
        {"3", "\"3\"", "\"frame\""},
        {"3", "1e300", "\"frame\""},
        {"\"brush\"", "\"crayon\"", "\"tool\""},
        {"\"brush\"", "7", "\"tool\""},
        {"24", "0", "\"size\""},
        {"24", "101", "\"size\""},
        {"\"brush\", \"size\": 24", "\"line\", \"size\": 51", "\"size\""},
        {"70", "0", "\"opacity\""},
        {"90,", "101,", "\"hardness\""},
        {"[0, 90, 200]", "[0, 90]", "\"color\""},
        {"[0, 90, 200]", "[0, 90, 256]", "\"color\""},
        {"\"brush\"", "\"text\"", "\"text\""},
        {"\"brush\"", R"("text", "text": "a\u0000b", "font": "f")", "\"text\""},
        {"\"brush\"", R"("text", "text": "a", "font": 1)", "\"font\""},
        {"[[10.25, 20.5, 0.4, 0], [12, 21, 1, 8]]", "[]", "\"samples\""},
        {"[12, 21, 1, 8]", "[12, 21, 1]", "sample 2"},
        {"[12, 21, 1, 8]", "[12, null, 1, 8]", "sample 2"},
        {"[12, 21, 1, 8]", "[12, 2049, 1, 8]", "sample 2"},
        {"[12, 21, 1, 8]", "[12, 21, 1.01, 8]", "sample 2"},
        {"[12, 21, 1, 8]", "[12, 21, 1, -8]", "sample 2"},
        {"[12, 21, 1, 8]", "\"here\"", "sample 2"},
    };
    for (const auto& fault : faults) {
        StrokeRecording recording;
        QString error;
        EXPECT_FALSE(recording.Parse(Recording(QByteArray(STROKE) + "," + With(fault.from, fault.to)), error))
            << fault.to;
        EXPECT_TRUE(error.startsWith("stroke 2: ")) << error.toStdString();
        EXPECT_TRUE(error.contains(fault.named)) << error.toStdString();
        EXPECT_FALSE(error.contains('\n'));
        EXPECT_TRUE(recording.GetStrokes().isEmpty());
    }
}

TEST(StrokeRecordingTest, RefusesWhatIsNoRecording) {
    const struct {
        QByteArray json;
        const char* named;
    } faults[] = {
        {"", "not JSON"},
        {"[]", "object"},
        {"{\"format\": \"vellix-strokes\", ", "not JSON"},
        {QByteArray(200000, '['), "not JSON"},
        {Recording("").replace("vellix-strokes", "other"), "\"format\""},
        {Recording("").replace("\"version\": 1", "\"version\": 2"), "\"version\""},
        {Recording("").replace("1024", "512"), "\"size\""},
        {Recording("").replace("[]", "{}"), "\"strokes\""},
        {Recording("17"), "stroke 1: "},
    };
    for (const auto& fault : faults) {
        StrokeRecording recording;
        QString error;
        EXPECT_FALSE(recording.Parse(fault.json, error)) << fault.named;
        EXPECT_TRUE(error.contains(fault.named)) << error.toStdString();
    }
    StrokeRecording recording;
    QString error;
    EXPECT_FALSE(recording.Read("/nowhere/walk.json", error));
    EXPECT_FALSE(recording.Read("/dev/zero", error)); // endless, and no file
}

// What a recording may ask for is bounded, so that replaying it ends and fits into memory.
TEST(StrokeRecordingTest, BoundsTheWholeRecording) {
    StrokeRecording recording;
    QString error;

    QByteArray everyFrame;
    for (int frame = 0; frame <= StrokeRecording::MAX_FRAMES; ++frame) {
        everyFrame += (frame ? "," : "") + With("3", QByteArray::number(frame));
    }
    EXPECT_FALSE(recording.Parse(Recording(everyFrame), error));
    EXPECT_TRUE(error.startsWith("stroke 2001: \"frame\"")) << error.toStdString();

    QByteArray zigzag = "[0,0,1,0]";
    for (int i = 0; i < StrokeRecording::MAX_PATH_LENGTH / 2000; ++i) {
        zigzag += i % 2 ? ",[0,0,1,0]" : ",[2001,0,1,0]";
    }
    EXPECT_FALSE(recording.Parse(Recording(With("[10.25, 20.5, 0.4, 0], [12, 21, 1, 8]", zigzag)), error));
    EXPECT_TRUE(error.startsWith("stroke 1: \"samples\"")) << error.toStdString();

    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(file.resize(StrokeRecording::MAX_FILE_SIZE + 1));
    EXPECT_FALSE(recording.Read(file.fileName(), error));
    EXPECT_TRUE(error.contains("larger")) << error.toStdString();
}

} // namespace
} // namespace vellix
