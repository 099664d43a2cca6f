#include "commands/Registration.h"
#include "formats/AutoSave.h"
#include "formats/SceneFiles.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"

namespace lightbox::mel {
namespace {

using Settings = AutoSaveSettings;

Value Query(const CommandCall& call, const Settings& settings) {
    if (call.Has("-enable")) {
        return settings.isEnabled;
    }
    if (call.Has("-interval")) {
        return settings.interval;
    }
    if (call.Has("-destination")) {
        return static_cast<int>(settings.destination);
    }
    if (call.Has("-folder")) {
        return settings.folder;
    }
    if (call.Has("-destinationFolder")) {
        return settings.DestinationFolder(call.GetHost().options().prefsFolder);
    }
    if (call.Has("-limitBackups")) {
        return settings.limitsBackups;
    }
    if (call.Has("-maxBackups")) {
        return settings.maxBackups;
    }
    if (call.Has("-prompt")) {
        return settings.prompts;
    }
    call.Fail("Nothing was asked for.");
}

/// The settings with the call's flags. Fails when a value is out of its range.
Settings Changed(const CommandCall& call, Settings settings) {
    if (call.Has("-enable")) {
        settings.isEnabled = call.Bool("-enable");
    }
    if (call.Has("-interval")) {
        settings.interval = call.Float("-interval");
        if (!(settings.interval >= Settings::MIN_INTERVAL && settings.interval <= Settings::MAX_INTERVAL)) {
            call.Fail("The interval lasts from 1 to 86400 seconds.");
        }
    }
    if (call.Has("-destination")) {
        const int destination = call.Int("-destination");
        if (destination < 0 || destination > static_cast<int>(Settings::Destination::Environment)) {
            call.Fail("The destination is 0 for the workspace, 1 for the folder of -folder, or 2 for that of "
                      "MAYA_AUTOSAVE_FOLDER.");
        }
        settings.destination = static_cast<Settings::Destination>(destination);
    }
    if (call.Has("-folder")) {
        settings.folder = call.String("-folder");
    }
    if (call.Has("-limitBackups")) {
        settings.limitsBackups = call.Bool("-limitBackups");
    }
    if (call.Has("-maxBackups")) {
        settings.maxBackups = call.Int("-maxBackups");
        if (settings.maxBackups < 1 || settings.maxBackups > Settings::MAX_BACKUPS) {
            call.Fail("The number of files is from 1 to 9999.");
        }
    }
    if (call.Has("-prompt")) {
        settings.prompts = call.Bool("-prompt");
    }
    return settings;
}

Value RunAutoSave(CommandCall& call) {
    AutoSave& autoSave = call.GetHost().files().autoSave();
    const Settings settings = autoSave.Settings();
    if (call.IsQuery()) {
        return Query(call, settings);
    }
    if (call.Has("-destinationFolder")) {
        call.Fail("-destinationFolder can only be queried; -folder sets the folder.");
    }
    const Settings changed = Changed(call, settings);
    if (changed != settings) {
        autoSave.SetSettings(changed);
    }
    if (call.Has("-perform") && autoSave.IsNeeded()) {
        autoSave.Perform();
    }
    return {};
}

} // namespace

void RegisterAutoSaveCommand(CommandRegistry& registry) {
    registry.Register("autoSave",
                      SyntaxBuilder()
                          .Flag("-en", "-enable", SWITCH)
                          .Flag("-int", "-interval", NUMBER)
                          .Flag("-prm", "-prompt", SWITCH)
                          .Flag("-lim", "-limitBackups", SWITCH)
                          .Flag("-max", "-maxBackups", MSyntax::kLong)
                          .Flag("-dst", "-destination", MSyntax::kLong)
                          .Flag("-fol", "-folder", TEXT)
                          .Flag("-p", "-perform")
                          .Flag("-df", "-destinationFolder")
                          .Query(),
                      RunAutoSave);
}

} // namespace lightbox::mel
