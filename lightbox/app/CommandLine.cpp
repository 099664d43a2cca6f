#include "app/CommandLine.h"

#include <QCommandLineParser>

namespace lightbox {

CommandLine CommandLine::Parse(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions({{{"batch", "b"}, {}},
                       {{"help", "h"}, {}},
                       {{"version", "v"}, {}},
                       {"noAutoloadPlugins", {}},
                       {{"file", "f"}, {}, "SCENE"},
                       {{"script", "s"}, {}, "FILE"},
                       {{"command", "c"}, {}, "MEL"},
                       {"demo", {}, "FOLDER"},
                       {"prefs", {}, "FOLDER"}});

    CommandLine line;
    line.asGiven = arguments.join(' ');
    if (!parser.parse(QStringList{"lightbox"} + arguments)) {
        // Some of Qt's messages end with a full stop.
        const QString reason = parser.errorText();
        line.error = reason.left(reason.size() - (reason.endsWith('.') ? 1 : 0)).toStdString() +
                     ". \"lightbox -help\" lists the options.";
        return line;
    }
    line.batch = parser.isSet("batch");
    line.help = parser.isSet("help");
    line.version = parser.isSet("version");
    line.autoloadPlugins = !parser.isSet("noAutoloadPlugins");
    line.sceneFile = parser.value("file").toStdString();
    line.prefsFolder = parser.value("prefs").toStdString();
    line.demoFolder = parser.value("demo").toStdString();
    for (const char* option : {"file", "prefs", "demo"}) {
        if (parser.isSet(option) && parser.value(option).isEmpty()) {
            line.error = std::string("-") + option + " needs a path.";
            return line;
        }
    }

    int scripts = 0;
    int commands = 0;
    for (const QString& name : parser.optionNames()) {
        if (name == "script" || name == "s") {
            line.steps.push_back({Step::Kind::Script, parser.values("script").at(scripts++).toStdString()});
        } else if (name == "command" || name == "c") {
            line.steps.push_back(
                {Step::Kind::Command, parser.values("command").at(commands++).toStdString()});
        }
    }
    // As in Maya, a scene may be given without its option.
    for (const QString& argument : parser.positionalArguments()) {
        if (!line.sceneFile.empty()) {
            line.error = "More than one scene: " + argument.toStdString() +
                         ". Open one, and import others with -command 'file -import \"...\"'.";
            return line;
        }
        line.sceneFile = argument.toStdString();
    }
    return line;
}

const char* CommandLine::HelpText() {
    return "usage: lightbox [options] [SCENE]\n"
           "\n"
           "  -batch               run without a window, then end\n"
           "  -file SCENE          open this scene first (.ma or .lbx)\n"
           "  -script FILE.mel     run a script file\n"
           "  -command MEL         run MEL commands\n"
           "  -noAutoloadPlugins   load no plug-in unless a script asks for it\n"
           "  -prefs FOLDER        folder of the user's preferences and of the log\n"
           "                       (else $LIGHTBOX_APP_DIR, else the platform's)\n"
           "  -demo FOLDER         draw the demo's pencil test, with its pictures and scene in this folder\n"
           "  -help                show this\n"
           "  -version             show the version\n"
           "\n"
           "Scripts and commands run in the order given. The exit status is 0, or 1 after the first\n"
           "error, or what quit -exitCode asks for. Plug-ins are found through MAYA_PLUG_IN_PATH and\n"
           "beside the program. Options may begin with two hyphens, too; -h, -v, -b, -f, -s and -c are "
           "short\n"
           "for the first letters. What went wrong is in lightbox.log in the folder of the preferences.\n";
}

} // namespace lightbox
