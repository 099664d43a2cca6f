#include "journeys/Lightbox.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

TEST(EditsJourney, TheDemoOfEditsPrintsWhatItsCommentsSay) {
    QFile script(VELLIX_SOURCE_FOLDER "/demo/edits.mel");
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    QByteArray noted;
    for (const QByteArray& line : script.readAll().split('\n')) {
        if (line.startsWith("//> ")) {
            noted += line.mid(4) + "\n";
        }
    }
    const Lightbox lightbox;
    const auto result = lightbox.Run({"-script", script.fileName()});
    EXPECT_EQ(result.status, 0) << result.errors.toStdString();
    EXPECT_EQ(result.output.toStdString(), noted.toStdString());
    EXPECT_TRUE(noted.endsWith("is as it was at the start\n"));
    EXPECT_TRUE(result.errors.contains("Move Failed. A frame already exists at time 20"));
    EXPECT_TRUE(result.errors.contains("Cannot remove frames from a locked layer"));
}

} // namespace
