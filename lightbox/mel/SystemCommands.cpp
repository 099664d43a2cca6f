#include "mel/CommandRegistry.h"
#include "mel/Interpreter.h"
#include "mel/Registration.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"

#include <maya/MGlobal.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QSysInfo>

#include <chrono>
#include <thread>

namespace lightbox::mel {

namespace {

Value FromQt(const QString& text) {
    return text.toStdString();
}

std::string OperatingSystem() {
#if defined(_WIN32)
    return "win64";
#elif defined(__APPLE__)
    return "mac";
#else
    return "linux64";
#endif
}

/// A flag of `about` and its answer.
struct AboutRow {
    const char* shortFlag;
    const char* longFlag;
    Value (*answer)(const Host& host);
};

const AboutRow ABOUT_ROWS[] = {
    {"-b", "-batch", [](const Host& host) { return Value(host.IsBatch()); }},
    {"-v", "-version", [](const Host&) { return Value("2018"); }},
    {"-iv", "-installedVersion", [](const Host&) { return Value("Lightbox 2018"); }},
    {"-api", "-apiVersion", [](const Host&) { return Value(MGlobal::apiVersion()); }},
    {"-a", "-application", [](const Host&) { return Value("lightbox"); }},
    {"-p", "-product", [](const Host&) { return Value("Lightbox"); }},
    {"-os", "-operatingSystem", [](const Host&) { return Value(OperatingSystem()); }},
    {"-osv", "-operatingSystemVersion", [](const Host&) { return FromQt(QSysInfo::prettyProductName()); }},
    {"-li", "-linux", [](const Host&) { return Value(OperatingSystem() == "linux64"); }},
    {"-win", "-windows", [](const Host&) { return Value(OperatingSystem() == "win64"); }},
    {"-mac", "-macOS", [](const Host&) { return Value(OperatingSystem() == "mac"); }},
    {"-x64", "-is64", [](const Host&) { return Value(QSysInfo::WordSize == 64); }},
    {"-qt", "-qtVersion", [](const Host&) { return Value(qVersion()); }},
    {"-cd", "-currentDate", [](const Host&) { return FromQt(QDate::currentDate().toString(Qt::ISODate)); }},
    {"-ct", "-currentTime", [](const Host&) { return FromQt(QTime::currentTime().toString(Qt::ISODate)); }},
    {"-env", "-environmentFile",
     [](const Host& host) { return Value(host.options().prefsFolder + "/Lightbox.env"); }},
    {"-pd", "-preferences", [](const Host& host) { return Value(host.options().prefsFolder); }},
};

Value About(CommandCall& call) {
    for (const AboutRow& row : ABOUT_ROWS) {
        if (call.Has(row.longFlag)) {
            return row.answer(call.GetHost());
        }
    }
    call.Fail("One of the flags of \"about\" is missing.");
}

void RegisterAbout(CommandRegistry& registry) {
    SyntaxBuilder syntax;
    for (const AboutRow& row : ABOUT_ROWS) {
        syntax.Flag(row.shortFlag, row.longFlag);
    }
    registry.Register("about", syntax, About);
}

/// A folder name as scripts expect it, with a slash at the end.
std::string Folder(const QString& path) {
    const std::string folder = QDir::fromNativeSeparators(path).toStdString();
    return !folder.empty() && folder.back() == '/' ? folder : folder + '/';
}

struct FolderRow {
    const char* shortFlag;
    const char* longFlag;
    /// Path below the preference folder.
    const char* below;
};

constexpr FolderRow FOLDER_ROWS[] = {
    {"-upd", "-userPrefDir", ""},
    {"-uad", "-userAppDir", ""},
    {"-usd", "-userScriptDir", "/scripts"},
    {"-ush", "-userShelfDir", "/shelves"},
    {"-umm", "-userMarkingMenuDir", "/markingMenus"},
    {"-ups", "-userPresetsDir", "/presets"},
    {"-ubd", "-userBitmapsDir", "/icons"},
    {"-uwd", "-userWorkspaceDir", "/projects"},
};

Value InternalVariable(CommandCall& call) {
    const QString preferences = QString::fromStdString(call.GetHost().options().prefsFolder);
    for (const FolderRow& row : FOLDER_ROWS) {
        if (call.Has(row.longFlag)) {
            return Folder(preferences + QLatin1String(row.below));
        }
    }
    if (call.Has("-userTmpDir")) {
        return Folder(QDir::tempPath());
    }
    call.Fail("One of the flags of \"internalVar\" is missing.");
}

void RegisterInternalVariable(CommandRegistry& registry) {
    SyntaxBuilder syntax;
    for (const FolderRow& row : FOLDER_ROWS) {
        syntax.Flag(row.shortFlag, row.longFlag);
    }
    registry.Register("internalVar", syntax.Flag("-utd", "-userTmpDir"), InternalVariable);
}

/// Converts the pattern of `date -format`: YYYY, YY, MM, DD, hh, mm, ss.
QString DatePattern(const std::string& pattern) {
    QString text = QString::fromStdString(pattern);
    text.replace(QLatin1Char('Y'), QLatin1Char('y')).replace(QLatin1Char('D'), QLatin1Char('d'));
    return text.replace(QLatin1String("hh"), QLatin1String("HH"));
}

Value Date(CommandCall& call) {
    const QDateTime now = QDateTime::currentDateTime();
    if (call.Has("-format")) {
        return FromQt(now.toString(DatePattern(call.String("-format"))));
    }
    if (call.Has("-date")) {
        return FromQt(now.toString(QStringLiteral("yyyy/MM/dd")));
    }
    if (call.Has("-time")) {
        return FromQt(now.toString(QStringLiteral("HH:mm:ss")));
    }
    if (call.Has("-shortDate")) {
        return FromQt(now.toString(QStringLiteral("MM/dd")));
    }
    return FromQt(now.toString(QStringLiteral("yyyy/MM/dd HH:mm:ss")));
}

/// Seconds on a monotonic clock; with -startTime, since that time.
Value Timer(CommandCall& call) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const double seconds = std::chrono::duration<double>(now).count();
    return seconds - call.FloatOr("-startTime", 0.0);
}

Value Pause(CommandCall& call) {
    constexpr double longest = 3600.0;
    const double seconds = call.Float("-seconds");
    if (!(seconds >= 0.0 && seconds <= longest)) {
        call.Fail("A pause lasts from 0 to 3600 seconds.");
    }
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    return Value();
}

Value GetEnvironment(CommandCall& call) {
    return qgetenv(call.Object(0).AsString().c_str()).toStdString();
}

Value PutEnvironment(CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    const std::string value = call.Object(1).AsString();
    if (name.empty() || name.find('=') != std::string::npos) {
        call.Fail("\"" + name + "\" is not a valid name of an environment variable.");
    }
    qputenv(name.c_str(), QByteArray::fromStdString(value));
    return Value();
}

void RegisterClock(CommandRegistry& registry) {
    registry.Register("date",
                      SyntaxBuilder()
                          .Flag("-d", "-date")
                          .Flag("-t", "-time")
                          .Flag("-sd", "-shortDate")
                          .Flag("-f", "-format", MSyntax::kString),
                      Date);
    registry.Register("timerX", SyntaxBuilder().Flag("-st", "-startTime", MSyntax::kDouble), Timer);
    registry.Register("pause", SyntaxBuilder().Flag("-sec", "-seconds", MSyntax::kDouble), Pause);
}

} // namespace

void RegisterSystemCommands(CommandRegistry& registry) {
    RegisterAbout(registry);
    RegisterInternalVariable(registry);
    RegisterClock(registry);
    registry.RegisterRaw("getenv", 1, 1, GetEnvironment);
    registry.RegisterRaw("putenv", 2, 2, PutEnvironment);
    registry.RegisterRaw("getpid", 0, 0, [](CommandCall&) {
        return Value(static_cast<int>(QCoreApplication::applicationPid()));
    });
    registry.RegisterRaw("getApplicationVersionAsFloat", 0, 0, [](CommandCall&) { return Value(2018.0); });
}

} // namespace lightbox::mel
