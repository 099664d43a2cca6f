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
