#include "core/LayerManager.h"
#include "host/Settings.h"
#include "plugin/ui/DrawingFixture.h"
#include "ui/TimeControlOverlay.h"

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DocumentFollowerTest : public DrawingFixture {
protected:
    DocumentFollowerTest() {
        Show();
        Settings::timelineFrameDisplay = 0; // always
        // persp is active, with frames at 2 and at 4; top has a layer without frames.
        Run("playbackOptions -min 1 -max 10; qmVellixNode; qmVellixLayer -add -ls 0 top;"
            "qmVellixLayer -add -ls 0 persp; currentTime 2; qmVellixFrame -insert persp;"
            "qmVellixLayer -add -ls 0 persp; currentTime 4; qmVellixFrame -insert persp; currentTime 1");
    }

    /// The marked ones of the first ten frames.
    std::vector<int> Marks() {
        auto* overlay = Window().findChild<TimeControlOverlay*>();
        if (!overlay || !overlay->isVisible()) {
            return {};
        }
        overlay->resize(overlay->parentWidget()->size()); // as painting does
        QImage image(overlay->size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        overlay->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
        std::vector<int> marked;
        for (int frame = 1; frame <= 10; ++frame) {
            const int x = 5 + int((frame - 0.5) * (image.width() - 10) / 10);
            if (qAlpha(image.pixel(x, image.height() - 4)) != 0) {
                marked.push_back(frame);
            }
        }
        return marked;
    }
};

} // namespace

TEST_F(DocumentFollowerTest, MarksAreThoseOfTheActiveLayerWhateverChangesIt) {
    EXPECT_THAT(Marks(), ElementsAre(4));
    const struct {
        const char* line;
        std::vector<int> marks;
    } rows[] = {
        {"qmVellixLayer -delete 1 persp", {2}},
        {"qmVellixLayer -deleteAll persp", {}},
        {"qmVellixLayer -insert 0 -ls 0 front", {}},
        {"qmVellixLayer -newCamera front -move 0 -1 persp", {2}},
        {"qmVellixLayer -newCamera top -move 1 -1 persp", {4}},
        {"qmVellixLayer -moveAll front persp", {4}},
        {"qmVellixLayer -edit -active 0 persp", {2}},
    };
    for (const auto& row : rows) {
        Run(row.line);
        const std::vector<int> marks = Marks();
        EXPECT_EQ(marks, row.marks) << row.line;
        Run("qmVellixUtil -refreshTimelineDisplay");
        EXPECT_EQ(Marks(), marks) << row.line;
        Run("undo");
        EXPECT_THAT(Marks(), ElementsAre(4)) << row.line;
    }
    Run("lookThru modelPanel4 top; setFocus modelPanel4; qmVellixNode -r");
    EXPECT_EQ(Node().GetActiveCamera(), "top");
    EXPECT_THAT(Marks(), IsEmpty());
}

TEST_F(DocumentFollowerTest, GhostingChangesThePictureOfEveryCamera) {
    for (const char* camera : {"persp", "top"}) {
        Node().GetFinalImage(camera);
        EXPECT_FALSE(Node().ImageUpdateRequired(camera));
    }
    Run("qmVellixUtil -e -ghostPrevious 1");
    EXPECT_TRUE(Node().ImageUpdateRequired("persp"));
    EXPECT_TRUE(Node().ImageUpdateRequired("top"));
}

} // namespace vellix
