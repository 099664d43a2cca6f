#include "host/entry/PluginMain.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/entry/Callbacks.h"
#include "host/entry/PanelRegistration.h"
#include "host/entry/Registration.h"
#include "host/panels/DialogManager.h"

#include <maya/MGlobal.h>

#include <QByteArray>

using namespace vellix;

namespace {

void BuildMenu() {
    if (!MayaUtil::SourceScripts()) {
        MGlobal::displayError("Failed to source scripts");
        return;
    }
    if (!Settings::guiEnabled) {
        return;
    }
    if (!MayaUtil::CreateMainMenu()) {
        MGlobal::displayError("Failed to create main menu");
    }
    if (!MayaUtil::UpdateMainMenu()) {
        MGlobal::displayError("Failed to update main menu");
    }
}

using RegistrationStep = void (*)(MFnPlugin& plugin, MStatus& status);

/// Runs the steps in order and stops at the first failure.
template <size_t Count>
MStatus RunSteps(MFnPlugin& plugin, const RegistrationStep (&steps)[Count]) {
    MStatus status;
    for (const RegistrationStep step : steps) {
        step(plugin, status);
        if (!status) {
            break;
        }
    }
    return status;
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the host looks for this signature
MStatus initializePlugin(MObject obj) {
    const QByteArray vendor = Settings::AUTHOR.toUtf8();
    const QByteArray version = Settings::VERSION_STRING.toUtf8();
    MStatus status;
    MFnPlugin plugin(obj, vendor.constData(), version.constData(), "Any", &status);
    if (!status) {
        MGlobal::displayError(MString("Failed to initialize plugin: ") + status.errorString());
        return status;
    }
    Settings::guiEnabled = !MayaUtil::IsBatchMode();
    Settings::ReadUserConfig();
    BuildMenu();
    if (Settings::guiEnabled) {
        // Must precede the node type, which creates the frame marks over the time slider.
        RegisterPanels(MayaUtil::ToQString(plugin.loadPath()));
    }

    status = RunSteps(plugin, {RegisterCommands, RegisterContextCommands, RegisterDataTypes, RegisterNodes});
    if (status) {
        AddCallbacks();
        AddScriptJobs();
        if (Settings::guiEnabled) {
            DialogManager::ReopenPanels();
        }
    } else if (Settings::guiEnabled) {
        MayaUtil::DeleteMainMenu(); // its entries would run commands that are not there
    }
    return status;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the host looks for this signature
MStatus uninitializePlugin(MObject obj) {
    if (Settings::guiEnabled && !MayaUtil::DeleteMainMenu()) {
        MGlobal::displayError("Failed to delete main menu");
    }
    MStatus status = RemoveScriptJobs();
    if (!status) {
        MGlobal::displayError("Failed to remove scriptJobs");
        return status;
    }
    status = RemoveCallbacks();
    if (!status) {
        MGlobal::displayError("Failed to remove callbacks");
        return status;
    }
    const QByteArray vendor = Settings::AUTHOR.toUtf8();
    const QByteArray version = Settings::VERSION_STRING.toUtf8();
    MFnPlugin plugin(obj, vendor.constData(), version.constData(), "Any", &status);
    if (!status) {
        MGlobal::displayError(MString("Failed to uninitialize plugin: ") + status.errorString());
        return status;
    }
    return RunSteps(plugin,
                    {DeregisterNodes, DeregisterDataTypes, DeregisterContextCommands, DeregisterCommands});
}
