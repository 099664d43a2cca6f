#include "HostFixture.h"
#include "faults/DiskFault.h"
#include "mel/Interpreter.h"
#include "scene/EventBus.h"
#include "scene/IdleQueue.h"
#include "scene/OptionVars.h"
#include "scene/UndoQueue.h"

#include <maya/MArgList.h>
#include <maya/MCallbackIdArray.h>
#include <maya/MCommandResult.h>
#include <maya/MComputation.h>
#include <maya/MDGMessage.h>
#include <maya/MDagPath.h>
#include <maya/MDoubleArray.h>
#include <maya/MEventMessage.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MNodeMessage.h>
#include <maya/MPxCommand.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>
#include <maya/MSyntax.h>

#include <gmock/gmock.h>

using namespace lightbox;

namespace {

int g_count = 0;
int g_alive = 0;

/// Counts up by its argument.
class CountCommand : public MPxCommand {
public:
    CountCommand() { ++g_alive; }
    ~CountCommand() override { --g_alive; }
    MStatus doIt(const MArgList& args) override {
        amount_ = args.asInt(0);
        if (amount_ == 0) {
            displayError("Nothing to count");
            return MS::kFailure;
        }
        return redoIt();
    }
    MStatus redoIt() override {
        g_count += amount_;
        setResult(g_count);
        return MS::kSuccess;
    }
    MStatus undoIt() override {
        g_count -= amount_;
        return amount_ == 13 ? MS::kFailure : MS::kSuccess;
    }
    bool isUndoable() const override { return true; }
    static void* Create() { return new CountCommand; }

private:
    int amount_ = 0;
};

/// Counts twice through other commands, without and with recording them.
class OuterCommand : public CountCommand {
public:
    MStatus doIt(const MArgList&) override {
        int inner = 0;
        MStatus status = MGlobal::executeCommand("count 10", inner, false, false);
        appendToResult(inner);
        // NOLINTNEXTLINE(performance-*): the macro keeps what a call may answer
        CHECK_MSTATUS_AND_RETURN_IT(status);
        status = MGlobal::executeCommand("count 100", inner, false, true);
        appendToResult(inner);
        return status;
    }
    MStatus undoIt() override {
        g_count -= 10;
        return MS::kSuccess;
    }
    MStatus redoIt() override { return MGlobal::executeCommand("count 10", false, false); }
    static void* Create() { return new OuterCommand; }
};

/// Has the line that it is given executed, which it could not undo itself.
class PassOnCommand : public MPxCommand {
public:
    MStatus doIt(const MArgList& args) override { return MGlobal::executeCommand(args.asString(0)); }
    static void* Create() { return new PassOnCommand; }
};

class KindCommand : public MPxCommand {
public:
    MStatus doIt(const MArgList& args) override {
        const MString kind = args.asString(0);
        if (kind == "double") {
            setResult(2.5);
        } else if (kind == "doubles") {
            const double values[] = {1.5, 2.5};
            setResult(MDoubleArray(values, 2));
        } else if (kind == "string") {
            setResult("text");
        } else if (kind == "strings") {
            appendToResult(MString("a"));
            appendToResult(MString("b"));
            EXPECT_TRUE(appendToResult(7).error());
        } else if (kind == "int") {
            setResult(true);
        }
        return MS::kSuccess;
    }
    static void* Create() { return new KindCommand; }
};

} // namespace

class MGlobalTest : public HostFixture {
protected:
    MGlobalTest() {
        g_count = 0;
        plugin_.name = "counter";
        handle_ = PluginHandle::MakeObject(plugin_);
        MFnPlugin fn(handle_);
        EXPECT_TRUE(fn.registerCommand("count", CountCommand::Create));
        EXPECT_TRUE(fn.registerCommand("outer", OuterCommand::Create));
        EXPECT_TRUE(fn.registerCommand("passOn", PassOnCommand::Create));
        EXPECT_TRUE(fn.registerCommand("kind", KindCommand::Create));
        EXPECT_TRUE(fn.registerCommand("count", CountCommand::Create).error());
    }

    Plugin plugin_;
    MObject handle_;
};

TEST_F(MGlobalTest, CommandsFromOutsideAreRecordedWhateverTheFlagSays) {
    EXPECT_TRUE(MGlobal::executeCommand("count 1"));
    EXPECT_TRUE(MGlobal::executeCommand("count 2; count 3", false, true));
    EXPECT_EQ(g_count, 6);
    EXPECT_EQ(host_.undo().Names().size(), 3U) << "one chunk a statement";
    host_.undo().Undo();
    EXPECT_EQ(g_count, 3);
    host_.undo().Undo();
    host_.undo().Undo();
    EXPECT_EQ(g_count, 0);
    host_.undo().Redo();
    EXPECT_EQ(g_count, 1);
}

TEST_F(MGlobalTest, InsideACommandOnlyWhatIsAskedForIsRecorded) {
    MIntArray results;
    EXPECT_TRUE(MGlobal::executeCommand("outer", results));
    ASSERT_EQ(results.length(), 2U);
    EXPECT_EQ(results[0], 10);
    EXPECT_EQ(results[1], 110);
    EXPECT_EQ(host_.undo().Names().size(), 1U);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(host_.undo().Undo());
        EXPECT_EQ(g_count, 0);
        EXPECT_TRUE(host_.undo().Redo());
        EXPECT_EQ(g_count, 110);
    }
}

TEST_F(MGlobalTest, WhatACommandWithoutUndoHasOthersDoCanBeUndone) {
    EXPECT_TRUE(MGlobal::executeCommand("passOn \"count 1; passOn \\\"count 2\\\"\""));
    EXPECT_EQ(g_count, 3);
    EXPECT_EQ(host_.undo().Names().size(), 1U);
    EXPECT_TRUE(host_.undo().Undo());
    EXPECT_EQ(g_count, 0);
    EXPECT_TRUE(host_.undo().Redo());
    EXPECT_EQ(g_count, 3);
}

TEST_F(MGlobalTest, FailuresBecomeAStatusAndAMessage) {
    EXPECT_TRUE(MGlobal::executeCommand("count 0").error());
    EXPECT_TRUE(MGlobal::executeCommand("nosuchcommand 1").error());
    EXPECT_TRUE(MGlobal::executeCommand("count (1").error());
    EXPECT_EQ(g_count, 0);
    EXPECT_EQ(host_.undo().Names().size(), 0U);
    EXPECT_EQ(host_.output().ErrorCount(), 3) << "one for each line, also where the command has shown it";
    EXPECT_EQ(messages_.front(), "// Error: Nothing to count //\n");

    EXPECT_TRUE(MGlobal::executeCommand("count 13"));
    EXPECT_TRUE(host_.undo().Undo());
    EXPECT_EQ(messages_.back(), "// Warning: count could not be undone. //\n");
}

TEST_F(MGlobalTest, AResultOfAnotherKindLeavesItsPlaceAlone) {
    const auto run = [](const char* kind, auto& result) {
        return MGlobal::executeCommand(MString("kind ") + kind, result).statusCode() == MS::kSuccess;
    };
    const char* const kinds[] = {"int", "double", "doubles", "string", "strings", "none"};
    for (const MString kind : kinds) {
        int whole = -1;
        double number = -1;
        MDoubleArray numbers(3, 9.0);
        MString text = "before";
        MStringArray texts;
        EXPECT_EQ(run(kind.asChar(), whole), kind == "int");
        EXPECT_EQ(whole, kind == "int" ? 1 : -1);
        EXPECT_EQ(run(kind.asChar(), numbers), kind == "doubles");
        EXPECT_EQ(numbers.length(), kind == "doubles" ? 2U : 3U);
        EXPECT_EQ(run(kind.asChar(), text), kind == "string");
        EXPECT_EQ(text, kind == "string" ? "text" : "before");
        EXPECT_EQ(run(kind.asChar(), texts), kind == "strings");
        EXPECT_EQ(run(kind.asChar(), number), kind == "double");
    }
}

TEST_F(MGlobalTest, IdleCommandsRunLaterAndAreRecorded) {
    MGlobal::executeCommandOnIdle("count 1");
    MGlobal::executeCommandOnIdle("nosuchcommand");
    MGlobal::executeCommandOnIdle("count 2");
    EXPECT_EQ(g_count, 0);
    host_.idle().Drain();
    EXPECT_EQ(g_count, 3);
    EXPECT_EQ(host_.undo().Names().size(), 2U);
}

TEST_F(MGlobalTest, DisplayEchoesTheLineAndItsResult) {
    MGlobal::executeCommand("count 4", true);
    EXPECT_EQ(messages_, (std::vector<std::string>{"count 4;\n", "// Result: 4 //\n"}));
}

TEST_F(MGlobalTest, DeregisteringACommandTakesItsInstancesAway) {
    MGlobal::executeCommand("count 5");
    EXPECT_EQ(g_alive, 1);
    MFnPlugin fn(handle_);
    EXPECT_TRUE(fn.deregisterCommand("count"));
    EXPECT_EQ(g_alive, 0);
    EXPECT_TRUE(fn.deregisterCommand("count").error());
    EXPECT_TRUE(MGlobal::executeCommand("count 5").error());
    EXPECT_EQ(plugin_.commands, (std::vector<std::string>{"outer", "passOn", "kind"}));
}

TEST_F(MGlobalTest, EventCallbacksAreRemovedTogether) {
    int calls = 0;
    MCallbackIdArray ids;
    MStatus status;
    const auto call = [](void* data) { ++*static_cast<int*>(data); };
    ids.append(MEventMessage::addEventCallback("timeChanged", call, &calls, &status));
    ids.append(MEventMessage::addEventCallback("Undo", call, &calls));
    EXPECT_TRUE(status);
    EXPECT_EQ(MEventMessage::addEventCallback("noSuchEvent", call, &calls, &status), 0);
    EXPECT_TRUE(status.error());
    host_.events().Fire("timeChanged");
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(MMessage::removeCallbacks(ids));
    EXPECT_TRUE(MMessage::removeCallbacks(ids).error());
    host_.events().Fire("timeChanged");
    EXPECT_EQ(calls, 1);
}

TEST_F(MGlobalTest, NodesThatComeAndGoAreToldOfByType) {
    std::vector<std::string> told;
    const auto add = [&](auto add, const char* type) {
        return add(
            [](MObject& node, void* data) {
                // It is in the scene still, or already: its path is known.
                MDagPath path;
                MDagPath::getAPathTo(node, path);
                static_cast<std::vector<std::string>*>(data)->push_back(path.fullPathName().asChar());
            },
            type, &told, nullptr);
    };
    MCallbackIdArray ids;
    ids.append(add(MDGMessage::addNodeAddedCallback, "camera"));
    ids.append(add(MDGMessage::addNodeRemovedCallback, "shape"));
    MGlobal::executeCommand("camera -name eye; createNode network");
    MGlobal::executeCommand("spaceLocator -name place");
    MGlobal::executeCommand("delete place");
    MGlobal::executeCommand("undo; undo; undo");
    EXPECT_EQ(told, (std::vector<std::string>{"|eye1|eyeShape1", "|place|placeShape", "|place|placeShape",
                                              "|eye1|eyeShape1"}));
    EXPECT_TRUE(MMessage::removeCallbacks(ids));
    MGlobal::executeCommand("camera");
    EXPECT_EQ(told.size(), 4U);
    MStatus status;
    EXPECT_EQ(MDGMessage::addNodeAddedCallback(nullptr, "camera", nullptr, &status), 0);
    EXPECT_TRUE(status.error());
}

TEST_F(MGlobalTest, RenamedNodesAreToldOfWithTheNameBefore) {
    MGlobal::executeCommand(
        "createNode transform -n a; createNode transform -n b; createNode transform -n g");
    std::vector<std::string> told;
    const auto tell = [](MObject& node, const MString& before, void* data) {
        const std::string now = MFnDependencyNode(node).name().asChar();
        static_cast<std::vector<std::string>*>(data)->push_back(before.asChar() + (">" + now));
    };
    MSelectionList list;
    list.add("b");
    MObject b;
    list.getDependNode(0, b);
    MCallbackIdArray ids;
    ids.append(MNodeMessage::addNameChangedCallback(MObject::kNullObj, tell, &told));
    std::vector<std::string> toldOfB;
    ids.append(MNodeMessage::addNameChangedCallback(b, tell, &toldOfB));
    for (const char* line : {"rename a c", "rename b \"ns:d\"", "undo", "redo", "rename c c", "undo",
                             "parent \"ns:d\" g", "createNode transform -n d; undo"}) {
        MGlobal::executeCommand(line);
    }
    EXPECT_EQ(told, (std::vector<std::string>{"a>c", "b>ns:d", "ns:d>b", "b>ns:d"}));
    EXPECT_EQ(toldOfB, (std::vector<std::string>{"b>ns:d", "ns:d>b", "b>ns:d"}));
    EXPECT_TRUE(MMessage::removeCallbacks(ids));
    MGlobal::executeCommand("rename g h");
    EXPECT_EQ(told.size(), 4U);
    MStatus status;
    EXPECT_EQ(MNodeMessage::addNameChangedCallback(b, nullptr, nullptr, &status), 0);
    EXPECT_TRUE(status.error());
}

TEST_F(MGlobalTest, OptionVariablesOutliveTheSession) {
    const std::string folder = prefs_.path().toStdString() + "/new/folder";
    {
        OptionVars vars(folder);
        vars.Set("int", 3);
        vars.Set("whole float", 3.0);
        vars.Set("text", std::string("\"quoted\" \xc3\xa4"));
        vars.Set("texts", std::vector<std::string>{"a", ""});
        vars.Set("ints", std::vector<int>{});
        {
            const DiskFault fault = DiskFault::Full(prefs_.path(), 3);
            EXPECT_THAT(vars.Save(), ::testing::HasSubstr("No space left on device"));
        }
        vars.Set("gone", 1);
        EXPECT_TRUE(vars.Remove("gone"));
        EXPECT_EQ(vars.Save(), "");
    }
    const OptionVars again(folder);
    EXPECT_EQ(again.Names(), (std::vector<std::string>{"int", "ints", "text", "texts", "whole float"}));
    EXPECT_EQ(*again.Find("whole float"), OptionVars::Value(3.0));
    EXPECT_EQ(*again.Find("text"), OptionVars::Value(std::string("\"quoted\" \xc3\xa4")));
    EXPECT_EQ(*again.Find("ints"), OptionVars::Value(std::vector<int>{}));

    bool exists = true;
    EXPECT_EQ(MGlobal::optionVarIntValue("cachedPlaybackEnable", &exists), 0);
    EXPECT_FALSE(exists);
    EXPECT_TRUE(MGlobal::setOptionVarValue("cachedPlaybackEnable", 1));
    EXPECT_EQ(MGlobal::optionVarIntValue("cachedPlaybackEnable"), 1);
}

TEST_F(MGlobalTest, ProgressIsALineForEveryTenth) {
    MComputation computation;
    computation.beginComputation(true);
    computation.setProgressStatus("Exporting");
    computation.setProgressRange(0, 400);
    for (int i = 0; i <= 400; ++i) {
        computation.setProgress(i);
    }
    computation.endComputation();
    EXPECT_EQ(messages_.size(), 11U);
    EXPECT_EQ(messages_[5], "Exporting: 50%\n");
}
