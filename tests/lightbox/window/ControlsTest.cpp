// Windows that scripts build, and what they answer when they are asked.

#include "ControlsFixture.h"
#include "shell/Registration.h"
#include "text/Quoted.h"

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

namespace {

class ControlsTest : public ControlsFixture {};

TEST_F(ControlsTest, AnswerWhatTheyWereTold) {
    struct Case {
        const char* build;
        const char* query;
        const char* answer;
    };
    const Case cases[] = {
        {"button -label \"Go\" b", "button -q -label b", "Go"},
        {"button b", "button -q -fullPathName b", "w|c|b"},
        {"button -en 0 b", "control -q -enable b", "0"},
        {"button -w 77 -h 30 b; showWindow w", "button -q -width b", "77"},
        {"button -ann \"Tip\" b", "button -q -annotation b", "Tip"},
        {"button b; control -e -manage 0 b", "button -q -visible b", "0"},
        {"text -label \"a & b\" -align \"right\" t", "text -q -label t", "a & b"},
        {"separator -style \"none\" s", "separator -q -style s", "none"},
        {"textField -text \"x\" f; textField -e -text \"y\" f", "textField -q -text f", "y"},
        {"textField -editable false f", "textField -q -editable f", "0"},
        {"scrollField -text \"a\\nb\" f", "scrollField -q -text f", "a\nb"},
        {"intField -minValue 2 -maxValue 5 -value 9 f", "intField -q -value f", "5"},
        {"floatField -precision 1 -value 0.123 f", "floatField -q -value f", "0.123"},
        {"checkBox -value 1 c1", "checkBox -q -value c1", "1"},
        {"intSlider -min -5 -max 5 -value 3 s", "intSlider -q -value s", "3"},
        {"floatSlider -value 0.25 -max 1 s", "floatSlider -q -value s", "0.25"},
        {"floatSliderGrp -label \"L\" -field true -min 0 -max 1 -fieldMaxValue 10 -value 4 s",
         "floatSliderGrp -q -value s", "4"},
        {"intSliderGrp -field 1 -min 1 -max 9 s", "intSliderGrp -q -fieldMaxValue s", "9"},
        {"intFieldGrp -numberOfFields 3 -value1 1 -value2 2 -value3 3 g", "intFieldGrp -q -value g", "1 2 3"},
        {"intField -value 2.7 f; intFieldGrp -nf 2 -value1 2.7 -value2 -2.7 g; intSliderGrp -value 2.7 s",
         "`intField -q -value f` + \" \" + `intFieldGrp -q -value1 g` + `intFieldGrp -q -value2 g` + \" \" + "
         "`intSliderGrp -q -value s`",
         "2 2-2 2"},
        {"intFieldGrp -nf 2 g; intFieldGrp -e -value 1.9 -1.9 0 0 g", "intFieldGrp -q -value g", "1 -1"},
        {"floatFieldGrp -label \"L\" -nf 2 -value 1 2 3 4 g", "floatFieldGrp -q -value g", "1 2"},
        {"textFieldGrp -label \"Name\" -text \"n\" -columnWidth2 60 90 g", "textFieldGrp -q -label g",
         "Name"},
        {"checkBoxGrp -ncb 3 -labelArray3 \"a\" \"b\" \"c\" -valueArray3 1 0 1 g",
         "checkBoxGrp -q -valueArray3 g", "1 0 1"},
        {"radioButtonGrp -nrb 3 -labelArray3 \"a\" \"b\" \"c\" -select 2 g", "radioButtonGrp -q -select g",
         "2"},
        {"radioCollection r; radioButton r1; radioButton r2; radioCollection -e -select r2 r",
         "radioCollection -q -select r", "r2"},
        {"optionMenu o; menuItem -label \"A\"; menuItem -label \"B\"; optionMenu -e -select 2 o",
         "optionMenu -q -value o", "B"},
        {"optionMenuGrp -label \"L\" o; menuItem -label \"A\"; menuItem -label \"B\"",
         "optionMenuGrp -q -numberOfItems o", "2"},
        {"textScrollList -append \"a\" -append \"b\" -ams true -selectItem \"b\" l",
         "textScrollList -q -selectIndexedItem l", "2"},
        {"colorSliderGrp -rgb 1 0.5 0 k", "colorSliderGrp -q -rgbValue k", "1 0.5 0"},
        {"progressBar -maxValue 10 -progress 4 p; progressBar -e -step 3 p", "progressBar -q -progress p",
         "7"},
        {"iconTextButton -style \"iconAndTextVertical\" -image \"cube\" -label \"C\" i",
         "iconTextButton -q -image i", "cube"},
        {"frameLayout -label \"F\" -collapsable true -collapse true f; button b",
         "frameLayout -q -collapse f", "1"},
        {"tabLayout t; columnLayout one; setParent ..; columnLayout two; setParent ..; "
         "tabLayout -e -tabLabel one \"One\" -tabLabel two \"Two\" -selectTab two t",
         "tabLayout -q -selectTabIndex t", "2"},
        {"formLayout f; button x; button y; formLayout -e -attachForm x \"left\" 5 -attachControl y \"top\" "
         "2 x f",
         "formLayout -q -childArray f", "x y"},
        {"rowLayout -numberOfColumns 2 -columnWidth2 50 60 r; button x; button y", "rowLayout -q -nch r",
         "2"},
        {"gridLayout -numberOfColumns 2 -cellWidthHeight 30 20 g", "gridLayout -q -cellWidthHeight g",
         "30 20"},
        {"paneLayout -configuration \"quad\" p", "paneLayout -q -numberOfVisiblePanes p", "4"},
        {"columnLayout inner; setParent ..", "setParent -q", "w|c"},
        {"button b; popupMenu m; menuItem -label \"I\"", "button -q -popupMenuArray b", "m"},
        {"menuBarLayout m; menu -label \"M\" mm", "menuBarLayout -q -menuArray m", "mm"},
        {"button b", "objectTypeUI b", "button"},
        {"button b", "layout -q -childArray c", "b"},
        {"button b; deleteUI b", "control -exists b", "0"},
        {"button b", "button -exists c", "0"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.build);
        Run("window -title \"T\" -widthHeight 300 200 w; columnLayout c;");
        EXPECT_EQ(ErrorOf(test.build), "none");
        EXPECT_EQ(ErrorOf(test.query), "none");
        EXPECT_EQ(Shown(test.query), test.answer);
        Run("deleteUI -window w; windowPref -removeAll");
        Settle(1);
    }
}

TEST_F(ControlsTest, RefuseWhatDoesNotFit) {
    const std::pair<const char*, const char*> cases[] = {
        {"button -q -label nothing", "Object 'nothing' not found."},
        {"window w; window w", "Object's name 'w' is not unique."},
        {"deleteUI MayaWindow", "The main window cannot be deleted."},
        {"setParent nothing", "Object 'nothing' not found."},
        {"window w2; button b; button -parent b x", "\"w2|b\" cannot hold controls."},
        {"menuSet -cms \"noMenuSet\"", "There is no menu set \"noMenuSet\"."},
        {"button -noSuchFlag", "Invalid flag '-noSuchFlag'"},
        {"modelEditor -e -camera \"nobody\" modelPanel4", "There is no camera \"nobody\"."},
        {"tabLayout t; tabLayout -e -selectTab x t", "\"x\" is not a tab of \"w2|t\"."},
    };
    for (const auto& [script, error] : cases) {
        EXPECT_EQ(ErrorOf(script), error);
    }
    // Half-made controls do not stay.
    EXPECT_EQ(Shown("button -exists x"), "0");
}

TEST_F(ControlsTest, ClicksRunScriptsAsOneStep) {
    Show();
    Run("window w; columnLayout; button -command \"createNode transform -n a; createNode transform -n b\" "
        "go; "
        "button -command \"error \\\"no\\\"\" bad; button -command \"deleteUI w\" end; showWindow w");
    Settle();
    QTest::mouseClick(&Widget<QPushButton>("go"), Qt::LeftButton);
    EXPECT_EQ(Shown("objExists b"), "1");
    Run("undo");
    EXPECT_EQ(Shown("objExists a"), "0");
    QTest::mouseClick(&Widget<QPushButton>("bad"), Qt::LeftButton);
    EXPECT_NE(messages_.back().find("no"), std::string::npos);
    const QPointer<QWidget> window = Controls().FindWidget("w");
    QTest::mouseClick(&Widget<QPushButton>("end"), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(Shown("window -exists w"), "0");
}

TEST_F(ControlsTest, ValuesStandInScripts) {
    Show();
    Run("global string $said; window w; columnLayout; "
        "textField -changeCommand \"$said = \\\"#1\\\"\" f; checkBox -changeCommand \"$said = #1\" c; "
        "intSliderGrp -field true -max 10 -changeCommand \"$said = #1\" s; "
        "radioCollection; radioButton -onCommand \"$said += \\\"+1\\\"\" -offCommand \"$said += \\\"-1\\\"\" "
        "r1; "
        "radioButton -onCommand \"$said += \\\"+2\\\"\" r2; showWindow w");
    Settle();
    QTest::keyClicks(&Widget<QLineEdit>("f"), "a\"b\\");
    QTest::keyClick(&Widget<QLineEdit>("f"), Qt::Key_Return);
    EXPECT_EQ(host_->interpreter().GetGlobal("said").AsString(), "a\"b\\");
    QTest::mouseClick(&Widget<QWidget>("c"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_EQ(host_->interpreter().GetGlobal("said").AsString(), "1");
    auto* const field = Widget<QWidget>("s").findChild<QLineEdit*>();
    field->selectAll();
    QTest::keyClicks(field, "7");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(host_->interpreter().GetGlobal("said").AsString(), "7");
    Run("$said = \"\"");
    QTest::mouseClick(&Widget<QWidget>("r1"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    QTest::mouseClick(&Widget<QWidget>("r2"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_EQ(host_->interpreter().GetGlobal("said").AsString(), "+1-1+2");
}

TEST_F(ControlsTest, WindowsCloseAndComeBackWhereTheyWere) {
    Show();
    Run("window -retain -closeCommand \"$gone = 1\" kept; showWindow kept; window -closeCommand \"$gone = "
        "2\" lost; "
        "showWindow lost");
    Settle();
    Controls().FindWidget("kept")->close();
    Settle();
    EXPECT_EQ(Shown("window -exists kept"), "1");
    EXPECT_EQ(Shown("window -q -visible kept"), "0");
    EXPECT_EQ(host_->interpreter().GetGlobal("gone").AsInt(), 1);
    Controls().FindWidget("lost")->close();
    Settle();
    EXPECT_EQ(Shown("window -exists lost"), "0");
    EXPECT_EQ(host_->interpreter().GetGlobal("gone").AsInt(), 2);
    Run("windowPref -e -widthHeight 432 321 lost; window -widthHeight 100 100 lost; showWindow lost");
    Settle();
    EXPECT_EQ(Shown("window -q -widthHeight lost"), "432 321");
}

TEST_F(ControlsTest, FormsKeepTheirAttachments) {
    Show();
    Run("window -widthHeight 400 300 w; formLayout f; button -w 80 -h 30 a; button b; button c; "
        "formLayout -e -af a \"left\" 10 -af a \"top\" 5 -af b \"right\" 6 -ac b \"left\" 4 a -af b \"top\" "
        "5 "
        "-ap c \"left\" 0 25 -ap c \"right\" 0 75 -ac c \"top\" 7 a -af c \"bottom\" 8 f; showWindow w");
    Settle();
    const auto rect = [this](const char* name) { return Widget<QWidget>(name).geometry(); };
    const QSize form = Widget<QWidget>("f").size();
    EXPECT_EQ(rect("a"), QRect(10, 5, 80, 30));
    EXPECT_EQ(rect("b").left(), 10 + 80 + 4);
    EXPECT_EQ(rect("b").right() + 1, form.width() - 6);
    EXPECT_EQ(rect("c").left(), form.width() / 4);
    EXPECT_EQ(rect("c").top(), 5 + 30 + 7);
    EXPECT_EQ(rect("c").bottom() + 1, form.height() - 8);
}

TEST_F(ControlsTest, ControlsThatQtDeletesAreForgotten) {
    const std::size_t before = Controls().All().size();
    Run("window w; columnLayout; button b; colorSliderGrp k");
    delete Controls().FindWidget("w");
    EXPECT_EQ(Controls().All().size(), before);
    EXPECT_EQ(Shown("button -exists b"), "0");
}

TEST_F(ControlsTest, ScriptJobsDieWithTheirControl) {
    Run("window w; int $job = `scriptJob -parent w -event \"SelectionChanged\" \"print 1\"`");
    EXPECT_EQ(Shown("scriptJob -exists $job"), "1");
    Run("deleteUI w");
    EXPECT_EQ(Shown("scriptJob -exists $job"), "0");
}

TEST_F(ControlsTest, ColourSlidersAreMadeOfPartsByName) {
    Run("colorSliderGrp -columnWidth3 0 120 0 swatch; colorSliderGrp -e -rgbValue 0.2 0.4 1 swatch");
    QWidget* const control = host_->ui()->FindControl("swatch");
    ASSERT_NE(control, nullptr);
    EXPECT_NE(control->findChild<QWidget*>("slider"), nullptr);
    ASSERT_NE(control->findChild<QWidget*>("port"), nullptr);
    EXPECT_FALSE(control->findChild<QWidget*>("port")->isHidden());
    EXPECT_EQ(Shown("colorSliderGrp -q -rgb swatch"), "0.2 0.4 1");
}

TEST_F(ControlsTest, FloatingViewportsAreModelPanels) {
    Show();
    Run("camera -n side2; window -retain -widthHeight 300 280 fw; paneLayout -parent fw fp; "
        "modelPanel -parent fp floating; lookThroughModelPanel persp floating; showWindow fw");
    Settle();
    EXPECT_EQ(Shown("modelPanel -q -camera floating"), "persp");
    EXPECT_TRUE(Panel("floating").isVisible());
    Run("modelEditor -e -grid 0 -displayAppearance \"wireframe\" -rendererName \"base_OpenGL_Renderer\" "
        "floating");
    EXPECT_EQ(Shown("modelEditor -q -grid floating"), "0");
    EXPECT_FALSE(View("floating").IsViewport2());
    Run("deleteUI fw");
    Settle();
    EXPECT_EQ(Window().Panels().Find("floating"), nullptr);
}

/// A file dialog tells the procedures of its caller what is chosen, and shows the controls that they make.
TEST_F(ControlsTest, AFileDialogHasTheOptionsOfItsCaller) {
    Show();
    QFile file(prefs_.filePath("a.ma"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    Run("global string $gSaid = \"\"; global string $gParent;"
        "global proc made(string $p) { global string $gParent; $gParent = $p; setParent $p; checkBox -label "
        "\"L\" -v 1 mine; }"
        "global proc begun(string $p, string $t) { global string $gSaid; $gSaid += \"i\" + $t; }"
        "global proc chosen(string $p, string $f) { global string $gSaid; $gSaid += \" s\" + basename($f, "
        "\"\"); }"
        "global proc typed(string $p, string $t) { global string $gSaid; $gSaid += \" t\" + $t; }"
        "global proc taken(string $p) { global string $gSaid; $gSaid += \" c\" + `checkBox -q -v mine`; }"
        "global proc took(string $p, string $f) { global string $gSaid; $gSaid += \" \" + basename($f, "
        "\"\"); }"
        "global proc gone() { global string $gSaid; $gSaid += \" gone\"; }");
    const std::string ask =
        "fileDialog2 -fileMode 1 -fileFilter \"A (*.ma);;All (*.*)\" -returnFilter 1 -hideNameEdit 0 "
        "-ocr made -oin begun -sc chosen -ftc typed -ocm taken -oc2 took -oca gone -spe 0 -dir " +
        lightbox::Quoted(prefs_.path().toStdString());
    const auto answer = [this](const std::function<void(QFileDialog&)>& act) {
        QTimer::singleShot(200, qApp, [this, act] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            EXPECT_TRUE(Controls().FindWidget("mine") && Controls().FindWidget("mine")->isVisible());
            act(*dialog);
        });
    };
    answer([this](QFileDialog& dialog) {
        Run("checkBox -e -v 0 mine");
        const auto* const files = dialog.findChild<QTreeView*>("treeView");
        EXPECT_GE(files->columnWidth(3), files->fontMetrics().horizontalAdvance("22 Nov 2022 22:22:22"))
            << "a date is shown whole";
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(prefs_.filePath("a.ma"));
        Q_EMIT dialog.filterSelected("All (*.*)");
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    EXPECT_EQ(Shown(ask), prefs_.filePath("a.ma").toStdString() + " A (*.ma)");
    EXPECT_EQ(Shown("match(\"^iA [(]..ma[)]\", $gSaid) + match(\" tAll .* c0 a.ma$\", $gSaid)"),
              "iA (*.ma) tAll (*.*) c0 a.ma");
    EXPECT_EQ(Controls().Find("mine"), nullptr) << "the controls end with the dialog";
    Run("$gSaid = \"\"");
    answer([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(Shown("size(`" + ask + "`)"), "0");
    EXPECT_EQ(Shown("match(\" gone$\", $gSaid)"), " gone");
    EXPECT_EQ(ErrorOf("fileDialog2 -fileMode 5"), "-fileMode takes 0 to 4.");
    EXPECT_EQ(Controls().CurrentParent(), &Controls().MainWindow());
}

/// Without a window the commands are known, and say why they do nothing.
TEST(WindowCommandsInBatch, SayThatThereIsNoWindow) {
    lightbox::LightboxHost host({true, std::string()});
    lightbox::RegisterWindowCommands(host.interpreter().Commands(), nullptr, nullptr);
    for (const char* const script :
         {"window", "menu -label \"x\"", "confirmDialog", "commandPort -name \":7777\""}) {
        try {
            host.interpreter().Execute(script);
            FAIL() << script;
        } catch (const lightbox::mel::Error& error) {
            EXPECT_NE(std::string(error.what()).find("can not be used in batch mode"), std::string::npos);
        }
    }
}

} // namespace
