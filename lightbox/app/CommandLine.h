#pragma once

#include <QStringList>

#include <string>
#include <vector>

namespace lightbox {

/// The parsed command line.
struct CommandLine {
    /// A script or command to run after the scene is loaded. Steps run in the order of the command line.
    struct Step {
        enum class Kind { Script, Command };
        Kind kind;
        std::string text; ///< path of the script, or the MEL itself
    };

    bool batch = false;
    bool help = false;
    bool version = false;
    bool autoloadPlugins = true;
    std::string sceneFile;
    std::string prefsFolder; ///< empty: the platform's
    std::string demoFolder;  ///< output folder of the demo; empty: no demo
    std::vector<Step> steps;
    QString asGiven;   ///< the whole line, for the log
    std::string error; ///< what is wrong with the command line; empty when nothing is

    /// Parses the arguments without the program's name. Qt's own options are rejected like any unknown
    /// option. After a mistake, `error` says what is wrong.
    static CommandLine Parse(const QStringList& arguments);
    static const char* HelpText();
};

} // namespace lightbox
