#include "host/Settings.h"
#include "host/entry/PluginMain.h"
#include "plugin/PluginTest.h"
#include "scene/EventBus.h"
#include "scene/PluginLoader.h"
#include "scene/Scene.h"

#include <QFile>

#include <gmock/gmock.h>

namespace vellix {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;

using LoadTest = PluginTest;

namespace {

struct Leftovers {
    size_t callbacks;
    std::string jobs;
    size_t commands;
    std::vector<std::string> nodeTypes;

    bool operator==(const Leftovers& other) const {
        return callbacks == other.callbacks && jobs == other.jobs && commands == other.commands &&
               nodeTypes == other.nodeTypes;
    }
};

// Another plug-in, which has taken the name of one of our commands.
// NOLINTBEGIN(performance-unnecessary-value-param): the host looks for this signature
MStatus LoadOther(MObject object) {
    return MFnPlugin(object).registerCommand("qmVellixStroke", [] { return static_cast<void*>(nullptr); });
}

MStatus UnloadOther(MObject object) {
    return MFnPlugin(object).deregisterCommand("qmVellixStroke");
}
// NOLINTEND(performance-unnecessary-value-param)

} // namespace

TEST_F(LoadTest, UnloadingLeavesNothingBehind) {
    lightbox::PluginManager& plugins = Plugins();
    const auto state = [&] {
        return Leftovers{Host().events().CallbackCount(), Ask("size(`scriptJob -listJobs`)"),
                         Host().interpreter().Commands().Names().size(),
                         Host().scene().types().NodeTypeNames()};
    };
    const Leftovers loaded = state();
    plugins.Unload("vellix2", false);
    const Leftovers unloaded = state();
    // Ten events, two of references, four kinds of changes of nodes, and the script job's condition.
    EXPECT_EQ(unloaded.callbacks + 19, loaded.callbacks);
    EXPECT_EQ(Ask("whatIs qmVellixNode"), "Unknown");
    EXPECT_THAT(unloaded.nodeTypes, Not(Contains("qmVellix")));

    for (int round = 0; round < 50; ++round) {
        plugins.LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        ASSERT_TRUE(Run("qmVellixNode -l -f -c persp")) << round;
        ASSERT_TRUE(Run("undo; redo; undo"));
        plugins.Unload("vellix2", false);
        ASSERT_TRUE(state() == unloaded) << round;
    }
    plugins.LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    EXPECT_TRUE(state() == loaded);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(LoadTest, SettingsAreWrittenOnUnloadingAndReadOnLoading) {
    QFile::remove(Settings::GetUserConfigPath());
    Settings::lineSize = 23;
    Plugins().Unload("vellix2", false);
    EXPECT_TRUE(QFile::exists(Settings::GetUserConfigPath()));
    Settings::lineSize = 6;
    Plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    EXPECT_EQ(Settings::lineSize, 23);
    Settings::lineSize = 6;
}

TEST_F(LoadTest, ANameThatIsTakenStopsTheRegistration) {
    lightbox::PluginManager& plugins = Plugins();
    plugins.Unload("vellix2", false);
    const size_t callbacks = Host().events().CallbackCount();
    plugins.LoadBuiltin("other", LoadOther, UnloadOther);
    std::string error;
    try {
        plugins.LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    } catch (const lightbox::PluginError& failure) {
        error = failure.what();
    }
    EXPECT_THAT(error, ::testing::EndsWith("could not be initialised. The message before says why."));
    EXPECT_THAT(Messages(), Contains(::testing::StartsWith("Failed to register 'qmVellixStroke' command: ")));
    EXPECT_EQ(Host().events().CallbackCount(), callbacks);
    EXPECT_THAT(Host().scene().types().NodeTypeNames(), Not(Contains("qmVellix")));
    plugins.Unload("other", false);
    EXPECT_NO_THROW(plugins.LoadBuiltin("vellix2", initializePlugin, uninitializePlugin));
}

} // namespace vellix
