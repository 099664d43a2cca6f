// The built program on scenes that other programs wrote.

#include "Lightbox.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

QByteArray WithoutStamps(const QByteArray& text) {
    QString lines = QString::fromUtf8(text);
    lines.remove(QRegularExpression("//(Name|Last modified|[ ]End of)[^\n]*\n"));
    return lines.toUtf8();
}

} // namespace

/// Opened with -file, saved, opened again: it says once what it does not know, ends well, and the second
/// saving is the first one.
TEST(ForeignSceneJourney, OpensSaysSavesAndComesBack) {
    const QDir data(QStringLiteral(VELLIX_SOURCE_FOLDER "/tests/data/foreign"));
    const Lightbox lightbox;
    const QStringList scenes = data.entryList({"*.ma"}, QDir::Files);
    ASSERT_GE(scenes.size(), 4);
    for (const QString& name : scenes) {
        ASSERT_TRUE(QFile::copy(data.filePath(name), lightbox.Path(name)));
    }
    for (const QString& name : scenes) {
        SCOPED_TRACE(name.toStdString());
        const auto pass = [&](const QString& from, const QString& to) {
            return lightbox.Run({"-batch", "-file", lightbox.Path(from), "-command",
                                 "file -rename \"" + lightbox.Path(to) + "\"; file -save;"});
        };
        const Lightbox::Result first = pass(name, "first-" + name);
        EXPECT_EQ(first.status, 0) << first.errors.constData();
        QList<QByteArray> lines = first.errors.split('\n');
        lines.removeAll(QByteArray());
        for (const QByteArray& line : lines) {
            EXPECT_TRUE(line.contains("Warning")) << line.constData();
            EXPECT_EQ(lines.count(line), 1) << line.constData();
        }
        const Lightbox::Result second = pass("first-" + name, "second-" + name);
        EXPECT_EQ(second.status, 0) << second.errors.constData();
        EXPECT_EQ(WithoutStamps(lightbox.Read("second-" + name)),
                  WithoutStamps(lightbox.Read("first-" + name)))
            << name.toStdString();
    }
}

/// A drawing that is put into such a scene comes back from it, in both formats, and the scene stays what it
/// was.
TEST(ForeignSceneJourney, ADrawingSurvivesInEachOfThem) {
    const QDir data(QStringLiteral(VELLIX_SOURCE_FOLDER "/tests/data/foreign"));
    const Lightbox lightbox;
    lightbox.Write("line.json",
                   R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [{"frame": 3,
                       "tool": "pencil", "size": 9, "opacity": 85, "hardness": 100, "color": [9, 90, 200],
                       "samples": [[100,100,0.5,0],[300,180,0.9,8],[500,150,0.4,16],[700,400,0.7,24]]}]})");
    const QStringList scenes = data.entryList({"*.ma"}, QDir::Files);
    for (const QString& name : scenes) {
        ASSERT_TRUE(QFile::copy(data.filePath(name), lightbox.Path(name)));
    }
    for (const QString& name : scenes) {
        SCOPED_TRACE(name.toStdString());
        const QByteArray scene = name.toUtf8();
        lightbox.RunScript("file -f -open \"" + scene + "\"; file -rename \"without.ma\"; file -save;" +
                           R"(qmVellixNode -l -f -c persp -ln "Rough"; qmVellixReplay -file "line.json";
                              file -rename "a.ma"; file -save; file -f -open "a.ma";
                              file -rename "b.lbx"; file -save; file -f -open "b.lbx";
                              file -rename "c.ma"; file -save; file -f -open "c.ma"; file -rename "d.ma"; file -save;)");
        const QByteArray drawing = lightbox.ReadDrawing("a.ma");
        EXPECT_GT(drawing.size(), 1000);
        EXPECT_TRUE(lightbox.ReadDrawing("c.ma") == drawing);
        EXPECT_EQ(WithoutStamps(lightbox.Read("d.ma")), WithoutStamps(lightbox.Read("c.ma")));
        // Every line of the scene without the drawing is in the one with it.
        const QList<QByteArray> with = WithoutStamps(lightbox.Read("c.ma")).split('\n');
        for (const QByteArray& line : WithoutStamps(lightbox.Read("without.ma")).split('\n')) {
            EXPECT_TRUE(with.contains(line)) << line.constData();
        }
    }
    EXPECT_TRUE(QDir(lightbox.Path("")).entryList({"trojan_*"}).isEmpty());
}
