// Runs the tests inside a batch host, with the plug-in initialised in the same process and preferences of its
// own.
#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "host/entry/PluginMain.h"
#include "scene/Host.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <iostream>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS(); // the build asks for the list, perhaps where there is no display
    }
    QApplication application(argc, argv);
    const QTemporaryDir preferences;
    if (!preferences.isValid()) {
        std::cerr << "No temporary folder for the preferences\n";
        return 1;
    }
    lightbox::Host::Options options;
    options.batch = true;
    options.prefsFolder = preferences.path().toStdString();
    lightbox::LightboxHost host(options);
    try {
        host.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    } catch (const lightbox::PluginError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return RUN_ALL_TESTS();
}
