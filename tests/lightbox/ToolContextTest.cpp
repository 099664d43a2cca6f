#include "FakeWindow.h"
#include "HostFixture.h"
#include "app/PluginManager.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "openmaya/ToolEvents.h"
#include "scene/ToolContexts.h"

#include <maya/MArgParser.h>
#include <maya/MColor.h>
#include <maya/MDrawRegistry.h>
#include <maya/MFrameContext.h>
#include <maya/MGlobal.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>
#include <maya/MUIDrawManager.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QThread>

#include <gmock/gmock.h>

using namespace lightbox;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// What happened to the tools, and what they run in the middle of a press.
std::vector<std::string> g_log;
std::string g_onPress;
int g_contexts = 0;

std::string Describe(const char* what, const MEvent& event) {
    short x = 0;
    short y = 0;
    event.getPosition(x, y);
    std::string text = std::string(what) + " " + std::to_string(x) + "," + std::to_string(y);
    text += event.mouseButton() == MEvent::kLeftMouse     ? " left"
            : event.mouseButton() == MEvent::kMiddleMouse ? " middle"
                                                          : "";
    text += event.isModifierShift() ? " shift" : "";
    text += event.isModifierControl() ? " control" : "";
    return text;
}

/// A tool that tells what it is told, and that draws a line while it is dragged in Viewport 2.0.
class PointerContext : public MPxContext {
public:
    PointerContext() {
        ++g_contexts;
        setTitleString("Pointer");
        setImage("pointer.png", kImage1);
        setCursor(MCursor::crossHairCursor);
    }
    ~PointerContext() override { --g_contexts; }

    void toolOnSetup(MEvent&) override {
        g_log.emplace_back("on");
        setHelpString("Point at something");
    }
    void toolOffCleanup() override { g_log.emplace_back("off"); }
    MStatus doEnterRegion(MEvent&) override { return Log("enter"); }
    MStatus doPress(MEvent& event) override {
        MStatus status = Log(Describe("press", event));
        if (!g_onPress.empty()) {
            MGlobal::executeCommand(g_onPress.c_str());
        }
        return status;
    }
    MStatus doDrag(MEvent& event) override { return Log(Describe("drag", event)); }
    MStatus doDrag(MEvent& event, MHWRender::MUIDrawManager& drawMgr,
                   const MHWRender::MFrameContext& context) override {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        context.getViewportDimensions(x, y, width, height);
        drawMgr.beginDrawable();
        drawMgr.setColor(MColor(1.0f, 0.0f, 0.0f));
        drawMgr.line2d(MPoint(0, 0), MPoint(width, height));
        drawMgr.endDrawable();
        drawMgr.line2d(MPoint(), MPoint(1, 1)); // outside a drawable, so it is not drawn
        return Log(Describe("drag2", event));
    }
    MStatus doRelease(MEvent& event) override { return Log(Describe("release", event)); }
    MStatus doHold(MEvent& event) override { return Log(Describe("hold", event)); }
    void deleteAction() override { g_log.emplace_back("delete"); }
    void completeAction() override { g_log.emplace_back("complete"); }
    void abortAction() override { g_log.emplace_back("abort"); }
    void getClassName(MString& name) const override { name = "pointer"; }

    int size = 5;

private:
    static MStatus Log(const std::string& what) {
        g_log.push_back(what);
        return MS::kSuccess;
    }
};

class PointerCommand : public MPxContextCommand {
public:
    static void* Create() { return new PointerCommand; }
    MStatus appendSyntax() override { return syntax().addFlag("-s", "-size", MSyntax::kLong); }
    MPxContext* makeObj() override { return context_ = new PointerContext; }
    MStatus doEditFlags() override {
        return parser().isFlagSet("-size") ? parser().getFlagArgument("-size", 0, context_->size)
                                           : MStatus(MS::kSuccess);
    }
    MStatus doQueryFlags() override {
        if (parser().isFlagSet("-size")) {
            setResult(context_->size);
        }
        return MS::kSuccess;
    }

private:
    PointerContext* context_ = nullptr;
};

// NOLINTBEGIN(performance-unnecessary-value-param): the host looks for this signature
MStatus LoadTool(MObject object) {
    return MFnPlugin(object).registerContextCommand("pointerCtx", PointerCommand::Create);
}
MStatus UnloadTool(MObject object) {
    return MFnPlugin(object).deregisterContextCommand("pointerCtx");
}
// NOLINTEND(performance-unnecessary-value-param)

class ToolContextTest : public HostFixture {
protected:
    ToolContextTest()
        : window_(FakeWindow::Open(host_))
        , view_("modelPanel4", "perspShape", QSize(400, 300)) {
        g_log.clear();
        g_onPress.clear();
        window_.views = {&view_};
        host_.plugins().LoadBuiltin("tool", LoadTool, UnloadTool);
    }
    ~ToolContextTest() override { window_.views.clear(); }

    std::string Ask(const std::string& mel) { return host_.interpreter().Execute(mel).Shown(); }
    static std::vector<std::string> Log() { return std::exchange(g_log, {}); }

    QMouseEvent Mouse(QEvent::Type type, int x, int y, Qt::MouseButton button, Qt::MouseButtons buttons,
                      Qt::KeyboardModifiers keys = Qt::NoModifier) const {
        return QMouseEvent(type, QPointF(x, y), button, buttons, keys);
    }
    bool Press(int x, int y, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers keys = Qt::NoModifier) {
        return ToolEvents::Press(view_, Mouse(QEvent::MouseButtonPress, x, y, button, button, keys));
    }
    bool Drag(int x, int y, Qt::MouseButton button = Qt::LeftButton) {
        return ToolEvents::Drag(view_, Mouse(QEvent::MouseMove, x, y, Qt::NoButton, button));
    }
    bool Release(int x, int y, Qt::MouseButton button = Qt::LeftButton) {
        return ToolEvents::Release(view_, Mouse(QEvent::MouseButtonRelease, x, y, button, Qt::NoButton));
    }

    FakeWindow& window_;
    FakeView view_;
};

} // namespace

TEST_F(ToolContextTest, TheCommandMakesEditsAndQueriesContexts) {
    EXPECT_EQ(Ask("pointerCtx"), "pointerCtx1");
    EXPECT_EQ(Ask("pointerCtx"), "pointerCtx2");
    EXPECT_EQ(Ask("pointerCtx -size 9 mine"), "mine");
    EXPECT_EQ(Ask("pointerCtx -q -size mine"), "9");
    EXPECT_EQ(Ask("pointerCtx -e -size 12 -image2 \"two.png\" mine; pointerCtx -q -size mine"), "12");
    EXPECT_EQ(Ask("pointerCtx -q -size pointerCtx1"), "5") << "each context has its own";
    EXPECT_EQ(Ask("pointerCtx -exists mine"), "1");
    EXPECT_EQ(Ask("pointerCtx -exists yours"), "0");
    EXPECT_EQ(Ask("contextInfo -exists mine"), "1");
    EXPECT_EQ(Ask("contextInfo -class mine"), "pointer");
    EXPECT_EQ(Ask("contextInfo -title mine"), "Pointer");
    EXPECT_EQ(Ask("contextInfo -image1 mine"), "pointer.png");
    EXPECT_EQ(Ask("contextInfo -image2 mine"), "two.png");
    EXPECT_EQ(Ask("whatIs pointerCtx"), "Plug-in Command");
    for (const char* wrong : {"pointerCtx mine", "pointerCtx -q -size yours", "pointerCtx -e -size 1 persp",
                              "setToolTo yours", "pointerCtx -nosuch", "contextInfo -class yours"}) {
        EXPECT_THROW(host_.interpreter().Execute(wrong), mel::Error) << wrong;
    }
    EXPECT_EQ(g_contexts, 3);
}

TEST_F(ToolContextTest, RegistrationRefusesWhatIsTaken) {
    const auto load = [this](const char* name, PluginManager::EntryPoint entry) {
        // NOLINTNEXTLINE(performance-unnecessary-value-param): the type of an entry point
        host_.plugins().LoadBuiltin(name, entry, [](MObject) { return MStatus(); });
    };
    EXPECT_THROW(load("same", LoadTool), PluginError);
    EXPECT_THROW(load("command",
                      [](MObject object) {
                          return MFnPlugin(object).registerContextCommand("ls", PointerCommand::Create);
                      }),
                 PluginError);
    EXPECT_THROW(load("nothing",
                      [](MObject object) {
                          return MFnPlugin(object).registerContextCommand(
                              "nothingCtx", [] { return static_cast<void*>(nullptr); });
                      }),
                 PluginError);
    EXPECT_EQ(Ask("pointerCtx"), "pointerCtx1") << "the first is still there";
}

TEST_F(ToolContextTest, SettingATool) {
    Ask("pointerCtx one; pointerCtx two");
    EXPECT_EQ(Ask("currentCtx"), "selectSuperContext");
    EXPECT_EQ(Ask("setToolTo one; currentCtx"), "one");
    EXPECT_THAT(Log(), ElementsAre("on"));
    EXPECT_EQ(window_.help, "Point at something");
    EXPECT_EQ(view_.Widget().cursor().shape(), Qt::CrossCursor);
    Ask("setToolTo one");
    EXPECT_THAT(Log(), ElementsAre("off", "on")) << "it is set up afresh";
    Ask("setToolTo two");
    EXPECT_THAT(Log(), ElementsAre("off", "on"));
    EXPECT_FALSE(host_.tools().Remove("two")) << "the current one stays";
    EXPECT_TRUE(host_.tools().Remove("one"));
    Ask("setToolTo selectSuperContext");
    EXPECT_THAT(Log(), ElementsAre("off"));
    EXPECT_EQ(window_.help, "");
    EXPECT_EQ(view_.Widget().cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(host_.tools().Remove("selectSuperContext"));
    EXPECT_EQ(g_contexts, 1);
}

TEST_F(ToolContextTest, EventsComeInTheFormOfTheRenderer) {
    EXPECT_FALSE(Press(10, 20)) << "the host's own tools are the view's concern";
    Ask("setToolTo `pointerCtx`");
    Log();
    EXPECT_TRUE(ToolEvents::Enter(view_));
    EXPECT_TRUE(Press(10, 20, Qt::LeftButton, Qt::ShiftModifier));
    EXPECT_TRUE(Press(10, 20, Qt::MiddleButton)) << "swallowed while the other is held";
    EXPECT_TRUE(Drag(30, 40));
    EXPECT_EQ(view_.refreshes, 1);
    const DrawList& drawn = ToolEvents::Drawn(view_);
    ASSERT_EQ(drawn.size(), 1U);
    EXPECT_EQ(drawn[0].end, QPointF(400, 300));
    EXPECT_EQ(drawn[0].color, QColor(255, 0, 0));
    EXPECT_TRUE(Release(31, 41, Qt::MiddleButton));
    EXPECT_TRUE(Release(31, 41));
    EXPECT_TRUE(ToolEvents::Drawn(view_).empty());
    EXPECT_EQ(view_.refreshes, 2);
    EXPECT_THAT(Log(),
                ElementsAre("enter", "press 10,279 left shift", "drag2 30,259 left", "release 31,258 left"));

    view_.isViewport2 = false;
    EXPECT_TRUE(Press(0, 0, Qt::MiddleButton, Qt::ControlModifier));
    EXPECT_TRUE(Drag(-5, 310, Qt::MiddleButton)) << "the pointer may leave the view";
    EXPECT_TRUE(Release(1, 1, Qt::MiddleButton));
    EXPECT_FALSE(Press(1, 1, Qt::RightButton)) << "the right button is the view's";
    EXPECT_FALSE(Drag(2, 2));
    EXPECT_THAT(Log(),
                ElementsAre("press 0,299 middle control", "drag -5,-11 middle", "release 1,298 middle"));
    EXPECT_EQ(view_.refreshes, 2) << "the tool refreshes where it wants to";
}

TEST_F(ToolContextTest, HoldComesOnceTheButtonIsHeldInPlace) {
    Ask("setToolTo `pointerCtx`");
    const auto wait = [] {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 450) {
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
    };
    Log();
    Press(10, 20);
    wait();
    EXPECT_THAT(Log(), ElementsAre("press 10,279 left", "hold 10,279 left"));
    Release(10, 20);
    Press(10, 20);
    Drag(11, 20);
    wait();
    Release(11, 20);
    EXPECT_THAT(Log(), ElementsAre("release 10,279 left", "press 10,279 left", "drag2 11,279 left",
                                   "release 11,279 left"));
}

TEST_F(ToolContextTest, KeysAreActions) {
    const auto key = [&](int code, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        return ToolEvents::Key(view_, QKeyEvent(QEvent::KeyPress, code, keys));
    };
    EXPECT_FALSE(key(Qt::Key_Return));
    Ask("setToolTo `pointerCtx`");
    Log();
    EXPECT_TRUE(key(Qt::Key_Return));
    EXPECT_TRUE(key(Qt::Key_Enter, Qt::KeypadModifier));
    EXPECT_TRUE(key(Qt::Key_Escape));
    EXPECT_TRUE(key(Qt::Key_Backspace));
    EXPECT_TRUE(key(Qt::Key_Delete));
    EXPECT_FALSE(key(Qt::Key_Return, Qt::ControlModifier));
    EXPECT_FALSE(key(Qt::Key_A));
    EXPECT_THAT(Log(), ElementsAre("complete", "complete", "abort", "delete", "delete"));
}

TEST_F(ToolContextTest, AToolThatIsUnloadedGoesCleanly) {
    Ask("pointerCtx; setToolTo `pointerCtx`");
    Log();
    g_onPress = "unloadPlugin tool";
    Press(1, 1);
    EXPECT_EQ(g_contexts, 2) << "not in the middle of its own event";
    g_onPress = "setToolTo selectSuperContext";
    Release(1, 1);
    Press(2, 2);
    EXPECT_EQ(Ask("currentCtx"), "selectSuperContext") << "a tool may end itself";
    EXPECT_FALSE(Release(2, 2));
    Ask("setToolTo pointerCtx1");
    g_onPress = "setToolTo pointerCtx2";
    Press(3, 3);
    Log();
    EXPECT_TRUE(Drag(4, 4));
    EXPECT_TRUE(Release(4, 4));
    EXPECT_THAT(Log(), IsEmpty()) << "the new tool was not pressed";

    Ask("setToolTo pointerCtx2");
    Log();
    host_.plugins().Unload("tool", false);
    EXPECT_THAT(Log(), ElementsAre("off"));
    EXPECT_EQ(g_contexts, 0);
    EXPECT_EQ(Ask("currentCtx"), "selectSuperContext");
    EXPECT_EQ(Ask("contextInfo -exists pointerCtx1"), "0");
    EXPECT_EQ(Ask("whatIs pointerCtx"), "Unknown");
    host_.plugins().LoadBuiltin("tool", LoadTool, UnloadTool);
    EXPECT_EQ(Ask("pointerCtx"), "pointerCtx1");
}
