#pragma once

#include <string>
#include <vector>

namespace lightbox {

/// A loaded plug-in: its description and its registrations. MFnPlugin fills it while the plug-in's entry
/// points run; the plug-in manager owns it. The address stays the same while the plug-in is loaded.
struct Plugin {
    std::string name;                ///< file name without folder and suffix: "sketch"
    std::string path;                ///< full path; "builtin" for a plug-in linked into the program
    std::string vendor = "Unknown";  ///< as given to MFnPlugin
    std::string version = "Unknown"; ///< as given to MFnPlugin
    std::string apiVersion = "Any";  ///< required API version as given to MFnPlugin
    bool autoload = false;           ///< loaded at start because it was in the search path, not on request

    std::vector<std::string> commands; ///< in order of registration, like the following lists
    std::vector<std::string> contextCommands;
    std::vector<std::string> dataTypes;
    std::vector<std::string> nodeTypes;
    std::vector<std::string> drawOverrides; ///< registrant ids
};

} // namespace lightbox
