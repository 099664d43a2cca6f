// The toolbox, the ghosts' colours, the palette and the preferences, and what of them is left after a
// restart.

#include "journeys/window/RunningLightbox.h"

#include <QColor>
#include <QSettings>

#include <gtest/gtest.h>

namespace {

const char* const GHOST_COUNTS = "qmVellixUtil -q -ghostPreviousCount";

class ToolboxJourney : public ::testing::Test {
protected:
    /// The palette's colours are the toolkit's, in the user's configuration: here in the journey's folder.
    ToolboxJourney() { qputenv("XDG_CONFIG_HOME", folder_.Path("configuration").toLocal8Bit()); }
    ~ToolboxJourney() override { qunsetenv("XDG_CONFIG_HOME"); }

    /// Types into the field that has the focus, over what is selected there.
    static void TypeText(RunningLightbox& program, const char* text) {
        for (; *text != '\0'; ++text) {
            program.Type(static_cast<unsigned>(*text));
        }
    }
    /// Gives red, green and blue to the colour chooser that is open, each field by its letter.
    static void ChooseColor(RunningLightbox& program, const char* red, const char* green, const char* blue) {
        RunningLightbox::Rest(300);
        const std::pair<char, const char*> fields[] = {{'r', red}, {'g', green}, {'u', blue}};
        for (const auto& field : fields) {
            program.Type(static_cast<unsigned>(field.first), RunningLightbox::Alt);
            TypeText(program, field.second);
        }
        program.Type(RunningLightbox::Return);
        RunningLightbox::Rest(300);
    }
    QVariant Stored(const char* key) const {
        return QSettings(folder_.Path("preferences/vellix2.ini"), QSettings::IniFormat).value(key);
    }

    Lightbox folder_;
};

TEST_F(ToolboxJourney, EverythingIsAsItWasLeft) {
    QRect toolbox;
    QRect palette;
    {
        RunningLightbox program(folder_, {});
        program.Mel("qmVellixUtil -toolbox");
        toolbox = program.Place("qmVxToolbox");

        program.Click("qmVxToolboxPencil");
        EXPECT_TRUE(program.Becomes("currentCtx", "qmVxDrawCtx1"));
        const QRect size = program.Place("qmVxToolboxSizeSlider");
        program.Drag(QPoint(size.left() + size.width() * 26 / 100, size.center().y()),
                     QPoint(size.left() + size.width() / 2, size.center().y()));

        program.Click("qmVxToolboxColor");
        ChooseColor(program, "200", "40", "20");
        EXPECT_TRUE(program.Becomes("qmVellixUtil -q -drawColor", "200\t40\t20"));

        program.Click("qmVxToolboxGhostNext");
        EXPECT_TRUE(program.Becomes("qmVellixUtil -q -ghostNext", "1"));
        program.Click(program.Place("qmVxToolboxGhostPrevious").center(), RunningLightbox::Right);
        for (int item = 0; item < 3; ++item) {
            program.Type(RunningLightbox::ArrowDown);
        }
        program.Type(RunningLightbox::Return);
        const QRect count = program.Place("qmVxGhostingPreviousCount");
        RunningLightbox::Rest(200);
        program.Click(count.center());
        program.Type('a', RunningLightbox::Control);
        TypeText(program, "5");
        const QRect override = program.Place("qmVxGhostingColorOverride");
        program.Click(QPoint(override.left() + 8, override.center().y()));
        program.Click("qmGhostPrevOverrideColorBtn");
        ChooseColor(program, "250", "120", "10");
        EXPECT_EQ(program.Mel(GHOST_COUNTS), "3") << "not before OK";
        program.Click("qmVxGhostingOk");
        EXPECT_TRUE(program.Becomes(GHOST_COUNTS, "5"));

        program.Click("qmVxToolboxPalette");
        palette = program.Place("qmVxColorPalette");
        program.Click("qmVxColorPalette5");
        EXPECT_TRUE(program.Becomes("qmVellixUtil -q -drawColor", "255\t255\t255"));

        program.Mel("qmVellixUtil -preferences");
        const QRect menu = program.Place("qmVxPreferencesTimelineMenu");
        program.Click(QPoint(menu.left() + 8, menu.center().y()));
        program.Click("qmVxPreferencesOk");
        RunningLightbox::Rest(200);
        EXPECT_EQ(Stored("preferences/timelineContextMenu").toString(), "false");
        program.Mel("evalDeferred(\"quit -force\")");
        EXPECT_EQ(program.WaitForEnd(), 0) << program.Messages().toStdString();
    }
    EXPECT_EQ(Stored("tools/activeTool").toInt(), 0);
    EXPECT_NEAR(Stored("tools/pencilSize").toInt(), 27, 8) << "half way is a quarter of the range";

    RunningLightbox program(folder_, {});
    EXPECT_EQ(program.Mel(GHOST_COUNTS), "5");
    EXPECT_EQ(program.Mel("qmVellixUtil -q -ghostNext"), "1");
    EXPECT_EQ(program.Mel("qmVellixUtil -q -ghostColorOverride"), "1");
    EXPECT_EQ(program.Mel("qmVellixUtil -q -ghostColorPrevious"), "250\t120\t10");
    EXPECT_EQ(program.Mel("qmVellixUtil -q -drawColor"), "255\t255\t255");
    // They were open.
    EXPECT_EQ(program.Place("qmVxToolbox"), toolbox);
    EXPECT_EQ(program.Place("qmVxColorPalette"), palette);
    // Once a press draws again, the pencil is marked with the highlight.
    program.Mel("qmVellixUtil -draw");
    EXPECT_TRUE(program.Becomes("currentCtx", "qmVxDrawCtx1"));
    const QColor marked = program.Grab("qmVxToolboxPencil").pixelColor(4, 15);
    const QColor other = program.Grab("qmVxToolboxBrush").pixelColor(4, 15);
    EXPECT_NE(marked, other);
    EXPECT_GT(marked.blue(), marked.red());
}

} // namespace
