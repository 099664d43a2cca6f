#include "host/entry/PluginMain.h"

#include "host/Guarded.h"
#include "host/HeldKeys.h"
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

const RegistrationStep DEREGISTRATION[] = {DeregisterNodes, DeregisterDataTypes, DeregisterContextCommands,
                                           DeregisterCommands};

/// Calls `function` with the plug-in as the host knows it, or shows that it cannot `what`.
template <typename Function>
MStatus WithPlugin(MObject& object, const char* what, Function function) {
    const QByteArray vendor = Settings::AUTHOR.toUtf8();
    const QByteArray version = Settings::VERSION_STRING.toUtf8();
    MStatus status;
    MFnPlugin plugin(object, vendor.constData(), version.constData(), "Any", &status);
    if (!status) {
        MGlobal::displayError(MString("Failed to ") + what + " plugin: " + status.errorString());
        return status;
    }
    return function(plugin);
}

MStatus Load(MFnPlugin& plugin) {
    Settings::guiEnabled = !MayaUtil::IsBatchMode();
    Settings::ReadUserConfig();
    BuildMenu();
    if (Settings::guiEnabled) {
        // Must precede the node type, which creates the frame marks over the time slider.
        RegisterPanels(MayaUtil::ToQString(plugin.loadPath()));
    }
    MStatus status =
        RunSteps(plugin, {RegisterCommands, RegisterContextCommands, RegisterDataTypes, RegisterNodes});
    if (status) {
        AddCallbacks();
        AddScriptJobs();
        if (Settings::guiEnabled) {
            DialogManager::ReopenPanels();
            HeldKeys::Bind();
        }
    }
    return status;
}

/// Takes back what a loading that failed has done so far. The host removes the plug-in's code next, so that
/// each step is tried whatever becomes of the others.
void TakeBack(MObject& object) {
    const char* const what = "Taking back what was loaded";
    RunGuarded(what, [] {
        if (Settings::guiEnabled) {
            MayaUtil::DeleteMainMenu(); // its entries would run commands that are not there
        }
    });
    RunGuarded(what, RemoveScriptJobs);
    RunGuarded(what, RemoveCallbacks);
    Guarded(what, [&] {
        return WithPlugin(object, "uninitialize", [&](MFnPlugin& plugin) {
            for (const RegistrationStep step : DEREGISTRATION) {
                RunGuarded(what, [&] {
                    MStatus status;
                    step(plugin, status);
                });
            }
            return MStatus();
        });
    });
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the host looks for this signature
MStatus initializePlugin(MObject obj) {
    MStatus status = Guarded("Loading the plug-in", [&] { return WithPlugin(obj, "initialize", Load); });
    if (!status) {
        TakeBack(obj);
    }
    return status;
}

/// After a failure it may be called again, and goes on where it stopped.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the host looks for this signature
MStatus uninitializePlugin(MObject obj) {
    return Guarded("Unloading the plug-in", [&] {
        if (Settings::guiEnabled) {
            HeldKeys::Unbind();
        }
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
        return WithPlugin(obj, "uninitialize",
                          [](MFnPlugin& plugin) { return RunSteps(plugin, DEREGISTRATION); });
    });
}
