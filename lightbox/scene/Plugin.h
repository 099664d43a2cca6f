#pragma once

#include <string>
#include <vector>

namespace lightbox {

/// One loaded plug-in: what it says of itself and what it has registered. MFnPlugin fills it while the
/// plug-in's entry points run; the plug-in manager owns it. Its address stays the same as long as the plug-in
/// is loaded.
struct Plugin {
    std::string name;                ///< the file's name without folder and suffix: "sketch"
    std::string path;                ///< whole path; "builtin" for one that is linked into the program
    std::string vendor = "Unknown";  ///< as given to MFnPlugin
    std::string version = "Unknown"; ///< as given to MFnPlugin
    std::string apiVersion = "Any";  ///< required API version as given to MFnPlugin
    bool autoload = false;           ///< loaded at start because it was found, not because it was asked for

    std::vector<std::string> commands; ///< in order of registration, as are the following
    std::vector<std::string> contextCommands;
    std::vector<std::string> dataTypes;
    std::vector<std::string> nodeTypes;
    std::vector<std::string> drawOverrides; ///< registrant ids
};

} // namespace lightbox
