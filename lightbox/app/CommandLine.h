#pragma once

#include <QStringList>

#include <string>
#include <vector>

namespace lightbox {

/// What the program was asked to do on its command line.
struct CommandLine {
    /// Something to run once the scene stands, in the order given.
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
    std::string demoFolder;  ///< where the demo is to be drawn; empty: nowhere
    std::vector<Step> steps;
    QString asGiven;   ///< the whole line, for the log
    std::string error; ///< what is wrong with the command line; empty when nothing is

    /// Reads the program's arguments, without the program's own name. Options that Qt itself takes from the
    /// command line are none of ours: only what this program knows is accepted.
    static CommandLine Parse(const QStringList& arguments);
    static const char* HelpText();
};

} // namespace lightbox
