#include "plugin/ui/DialogFixture.h"
#include "ui/LayerPropertiesDialog.h"
#include "ui/NewLayerDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class LayerDialogsTest : public DialogFixture {
protected:
    QWidget& NewLayer() { return *Open("-newLayer", "New Layer"); }
    QWidget& Properties() { return *Open("-layerProperties", "Layer Properties"); }

    static QLineEdit& Name(const QWidget& dialog) { return *dialog.findChild<QLineEdit*>(); }
    static QComboBox& Camera(const QWidget& dialog) { return *dialog.findChild<QComboBox*>(); }
    static void Type(QWidget& dialog, const char* name) {
        Name(dialog).clear();
        QTest::keyClicks(&Name(dialog), QString::fromUtf8(name));
    }
};

} // namespace

TEST_F(LayerDialogsTest, TheFirstLayerComesWithTheNode) {
    QWidget& dialog = NewLayer();
    EXPECT_EQ(Name(dialog).selectedText(), Settings::DEFAULT_LAYER_NAME);
    EXPECT_EQ(Camera(dialog).currentText(), QStringLiteral("persp")) << "the camera that is looked through";
    Type(dialog, "Rough \"1\"");
    Camera(dialog).setCurrentText(QStringLiteral("side"));
    {
        const ExecutedLines lines;
        Click(&dialog, "OK");
        EXPECT_THAT(lines.Lines(), ElementsAre("qmVellixNode -l -c side -ln \"Rough \\\"1\\\"\" -ls 0",
                                               "evalDeferred(\"qmVellixUtil -draw\")"));
    }
    Settle();
    EXPECT_EQ(FindWindow(QStringLiteral("New Layer")), nullptr);
    QTest::keyClick(&Name(NewLayer()), Qt::Key_Return);
    ASSERT_TRUE(WaitFor([&] { return Ask("qmVellixNode -exists") == "1"; }));
    EXPECT_EQ(Ask("qmVellixLayer -qn 0 persp"), "Layer");
    Run("undo");
    EXPECT_EQ(Ask("qmVellixNode -exists"), "0");
}

TEST_F(LayerDialogsTest, FurtherLayersAreAddedAndUndoneByThemselves) {
    Run("qmVellixNode -l -c front -ln Base");
    const auto set = [](int state) { Settings::defaultLayerState = state; };
    set(1);
    QWidget& dialog = NewLayer();
    set(0);
    EXPECT_TRUE(FindButton(&dialog, QStringLiteral("Static"))->isChecked());
    EXPECT_EQ(Camera(dialog).currentText(), QStringLiteral("front"));
    Click(&dialog, "OK");
    Settle();
    EXPECT_EQ(Ask("qmVellixLayer -cnt front"), "2");
    EXPECT_EQ(Ask("qmVellixLayer -qs 1 front"), "1");
    // The dialog was opened by a command; the layer is undone all the same.
    Run("undo");
    EXPECT_EQ(Ask("qmVellixLayer -cnt front"), "1");
    EXPECT_EQ(Ask("qmVellixLayer -qn 0 front"), "Base");

    QWidget& other = NewLayer();
    EXPECT_TRUE(FindButton(&other, QStringLiteral("Anim"))->isChecked());
    const ExecutedLines lines;
    Click(&other, "Cancel");
    QTest::keyClick(&NewLayer(), Qt::Key_Escape);
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST_F(LayerDialogsTest, PropertiesIssueOneLineForEachChange) {
    Run("qmVellixNode -l -c persp -ln Ink; qmVellixLayer -es 2 0 persp");
    const auto name = [](const char* text) { return [text](QWidget& dialog) { Type(dialog, text); }; };
    const auto press = [](const char* text) { return [text](QWidget& dialog) { Click(&dialog, text); }; };
    const auto hide = press("Visible");
    const auto move = [](QWidget& dialog) { Camera(dialog).setCurrentText(QStringLiteral("top")); };
    const auto both = [](auto first, auto second) {
        return [first, second](QWidget& dialog) {
            first(dialog);
            second(dialog);
        };
    };
    const std::string rename = "qmVellixLayer -en \"Inks\" 0 persp";
    const std::string moveLine = "qmVellixLayer -newCamera top -move 0 -1 persp";
    const struct {
        std::function<void(QWidget&)> change;
        std::vector<std::string> lines;
    } rows[] = {
        {[](QWidget&) {}, {}},
        {name(""), {}},
        {press("Anim"), {"qmVellixLayer -es 0 0 persp"}},
        {press("Static"), {"qmVellixLayer -es 1 0 persp"}},
        {both(press("Static"), press("Locked")), {}},
        {hide, {"qmVellixLayer -ev 0 0 persp"}},
        {both(move, name("Inks")), {rename, moveLine}},
        {both(both(move, press("Anim")), both(name("Inks"), hide)),
         {rename, "qmVellixLayer -ev 0 0 persp", "qmVellixLayer -es 0 0 persp", moveLine}},
    };
    for (const auto& row : rows) {
        QWidget& dialog = Properties();
        EXPECT_TRUE(FindButton(&dialog, QStringLiteral("Locked"))->isChecked());
        row.change(dialog);
        const ExecutedLines lines;
        Click(&dialog, "OK");
        EXPECT_EQ(lines.Lines(), row.lines);
        Settle();
    }
    QWidget& dialog = Properties();
    rows[7].change(dialog);
    Click(&dialog, "Cancel");
    EXPECT_EQ(Ask("qmVellixLayer -qn 0 persp"), "Ink");
}

TEST_F(LayerDialogsTest, PropertiesOfNothingAreAnError) {
    LayerPropertiesDialog::Open(QStringLiteral("persp"), 0, &Window());
    EXPECT_THAT(messages_, Contains(HasSubstr("Node not found")));
    Run("qmVellixNode -l -c persp -ln Ink");
    LayerPropertiesDialog::Open(QStringLiteral("persp"), 4, &Window());
    EXPECT_THAT(messages_, Contains(HasSubstr("Layer does not exist.")));
    EXPECT_EQ(FindWindow(QStringLiteral("Layer Properties")), nullptr);
    // A camera that went keeps its layers: its name is still offered.
    Run("camera; qmVellixLayer -add -n Far -ls 0 camera1; delete camera1");
    const ExecutedLines lines;
    QWidget& dialog = *[&] {
        LayerPropertiesDialog::Open(QStringLiteral("camera1"), 0, &Window());
        Settle();
        return FindWindow(QStringLiteral("Layer Properties"));
    }();
    EXPECT_EQ(Camera(dialog).currentText(), QStringLiteral("camera1"));
    Click(&dialog, "OK");
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST_F(LayerDialogsTest, UnloadingThePluginTakesAnOpenDialogWithIt) {
    NewLayer();
    host_->plugins().Unload("vellix2", true);
    Settle();
    EXPECT_EQ(FindWindow(QStringLiteral("New Layer")), nullptr);
}

TEST_F(LayerDialogsTest, FollowWhatAScriptDoesMeanwhile) {
    Run("qmVellixNode -l -c persp -ln Base; camera -name shotA; camera -name shotB");
    for (const char* const title : {"New Layer", "Layer Properties"}) {
        SCOPED_TRACE(title);
        QWidget& dialog = title[0] == 'N' ? NewLayer() : Properties();
        EXPECT_GE(Camera(dialog).findText(QStringLiteral("shotB1")), 0);
        Camera(dialog).setCurrentText(QStringLiteral("shotA1"));
        Type(dialog, "Typed");
        Run("delete shotB1");
        Settle();
        EXPECT_LT(Camera(dialog).findText(QStringLiteral("shotB1")), 0);
        EXPECT_EQ(Camera(dialog).currentText(), QStringLiteral("shotA1"));
        EXPECT_EQ(Name(dialog).text(), QStringLiteral("Typed"));
        Run("delete shotA1");
        Settle();
        EXPECT_EQ(Camera(dialog).currentText(), QStringLiteral("persp"));
        Run("undo; undo");
        Settle();
        EXPECT_GE(Camera(dialog).findText(QStringLiteral("shotB1")), 0);
        Click(&dialog, "Cancel");
        Settle();
    }
    // The properties of a layer go with it; a new layer can be made still.
    Properties();
    Run("delete vellix");
    Settle();
    EXPECT_EQ(FindWindow(QStringLiteral("Layer Properties")), nullptr);
    NewLayer();
    Run("undo");
    Settle();
    EXPECT_NE(FindWindow(QStringLiteral("New Layer")), nullptr);
}

} // namespace vellix
