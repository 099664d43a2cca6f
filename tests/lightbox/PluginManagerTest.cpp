#include "SceneFileFixture.h"
#include "mel/CommandRegistry.h"
#include "scene/EventBus.h"
#include "scene/Scene.h"
#include "scene/UndoQueue.h"
#include "text/Quoted.h"

#include <gmock/gmock.h>
#include <stdexcept>

using namespace lightbox;
using ::testing::HasSubstr;

namespace {

class PluginManagerTest : public SceneFileFixture {};

} // namespace

TEST_F(PluginManagerTest, AnswersWhatIsLoaded) {
    EXPECT_EQ(Typed("pluginInfo -q -listPlugins"), "string[] notes");
    EXPECT_EQ(Typed("pluginInfo -q -vendor notes") + Typed("pluginInfo -q -version notes"),
              "string Makerstring 1.5");
    EXPECT_EQ(Typed("pluginInfo -q -command notes") + Typed("pluginInfo -q -dependNode notes") +
                  Typed("pluginInfo -q -data notes"),
              "string[] turnPagestring[] notebookstring[] notes");
    EXPECT_EQ(Typed("pluginInfo -q -loaded nothing"), "int 0");
    EXPECT_THAT(ErrorOf("pluginInfo -q -version nothing"), HasSubstr("is not loaded"));
    EXPECT_EQ(Typed("loadPlugin -qt notes"), "string[] notes");
    EXPECT_EQ(Output(), "");
}

TEST_F(PluginManagerTest, WhatCannotBeLoadedIsSaid) {
    EXPECT_THAT(ErrorOf("loadPlugin nothing"), HasSubstr("was not found on MAYA_PLUG_IN_PATH"));
    EXPECT_THAT(ErrorOf("loadPlugin \"\""), HasSubstr("was not found"));
    Write("text.so", "no library");
    EXPECT_THAT(ErrorOf("loadPlugin " + Quoted("text.so")), HasSubstr("Could not load the plug-in"));
    EXPECT_EQ(Typed("pluginInfo -q -listPlugins"), "string[] notes");
    Run("unloadPlugin notes");
    EXPECT_THROW(host_.plugins().LoadBuiltin("bad", notes::InitializeBadly, notes::Uninitialize),
                 PluginError);
    EXPECT_FALSE(host_.scene().types().FindDataType("notes"))
        << "what a failing plug-in registered is taken out";
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the type of an entry point
    const auto throws = [](MObject) -> MStatus { throw std::runtime_error("no licence"); };
    EXPECT_THROW(host_.plugins().LoadBuiltin("bad", throws, notes::Uninitialize), PluginError);
    EXPECT_EQ(Typed("pluginInfo -q -listPlugins"), "string[] ");
    EXPECT_THAT(ErrorOf("unloadPlugin notes"), HasSubstr("is not loaded"));
}

TEST_F(PluginManagerTest, UnloadingIsRefusedWhileNodesNeedIt) {
    Run("createNode notebook -n book");
    EXPECT_THAT(ErrorOf("unloadPlugin notes"), HasSubstr("still in use: 1 of the scene's nodes"));
    EXPECT_EQ(Typed("setAttr book.pg -type notes 1 \"a\"; turnPage; objExists book"), "int 1");
    // A node that was deleted lives on in the undo queue, which goes with the plug-in.
    Run("delete book; unloadPlugin notes");
    EXPECT_EQ(notes::NodeCount() + notes::ValueCount(), 0);
    EXPECT_FALSE(host_.undo().CanUndo());
    EXPECT_THAT(ErrorOf("turnPage"), HasSubstr("turnPage"));
    EXPECT_NE(ErrorOf("createNode notebook"), "none");
}

TEST_F(PluginManagerTest, APluginThatFailsToCleanUpLeavesNothingBehind) {
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the type of an entry point
    const auto fails = [](MObject) -> MStatus { return MS::kFailure; };
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    const auto throws = [](MObject) -> MStatus { throw std::runtime_error("busy"); };
    Run("unloadPlugin notes");
    const std::size_t commands = host_.interpreter().Commands().Names().size();
    for (const auto& uninitialize : {PluginManager::EntryPoint(fails), PluginManager::EntryPoint(throws)}) {
        host_.plugins().LoadBuiltin("notes", notes::Initialize, uninitialize);
        Run("createNode notebook -n book");
        EXPECT_THAT(ErrorOf("unloadPlugin -f notes"), HasSubstr("failed to uninitialise itself"));
        EXPECT_EQ(Typed("pluginInfo -q -listPlugins") + Typed("objExists book"), "string[] int 1");
        EXPECT_EQ(host_.interpreter().Commands().Names().size(), commands);
        EXPECT_FALSE(host_.scene().types().FindDataType("notes"));
        EXPECT_EQ(notes::NodeCount(), 0);
        Run("file -f -new");
    }
    LoadNotes();
    EXPECT_EQ(Typed("createNode notebook -n book; nodeType book"), "string notebook");
}

TEST_F(PluginManagerTest, FiftyRoundsLeaveNothingBehind) {
    const std::size_t commands = host_.interpreter().Commands().Names().size();
    const std::size_t types = host_.scene().types().NodeTypeNames().size();
    const std::size_t callbacks = host_.events().CallbackCount();
    for (int round = 0; round < 50; ++round) {
        Run("createNode notebook -n book; setAttr book.pg -type notes 1 \"a\"; turnPage; unloadPlugin -f "
            "notes");
        ASSERT_EQ(notes::NodeCount() + notes::ValueCount(), 0);
        Run("file -f -new");
        LoadNotes();
    }
    EXPECT_EQ(host_.interpreter().Commands().Names().size(), commands);
    EXPECT_EQ(host_.scene().types().NodeTypeNames().size(), types);
    EXPECT_EQ(host_.events().CallbackCount(), callbacks);
}
