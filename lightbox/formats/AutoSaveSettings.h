#pragma once

#include <string>

namespace lightbox {

class Host;
class OptionVars;

/// The user's settings for automatic saves. They are option variables, so they outlive the session.
struct AutoSaveSettings {
    static constexpr double MIN_INTERVAL = 1.0;     ///< seconds
    static constexpr double MAX_INTERVAL = 86400.0; ///< seconds
    static constexpr int MAX_BACKUPS = 9999;

    /// Where the files go: into the folder "autosave" of the workspace, into `folder`, or into the folder
    /// that the environment variable MAYA_AUTOSAVE_FOLDER names. The values are those of `autoSave
    /// -destination`.
    enum class Destination { Workspace, Folder, Environment };

    bool isEnabled = true;
    double interval = 600.0; ///< seconds
    Destination destination = Destination::Folder;
    std::string folder; ///< relative to the workspace; empty stands for "autosave" in the preference folder
    bool limitsBackups = true;
    int maxBackups = 10; ///< files that are kept of each scene
    bool prompts = false;

    /// Reads the option variables. One that is missing or out of its range counts as not set.
    static AutoSaveSettings Load(const OptionVars& variables);
    void Store(OptionVars& variables) const;
    bool operator==(const AutoSaveSettings& other) const;
    bool operator!=(const AutoSaveSettings& other) const { return !(*this == other); }

    /// The absolute path of the folder, with a slash at its end. The folder may not exist.
    std::string DestinationFolder(const std::string& prefsFolder) const;
};

} // namespace lightbox
