#include "FuzzHost.h"

#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "formats/FileError.h"
#include "formats/SceneFiles.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"
#include "node/BaseNodeLayerData.h"
#include "scene/Output.h"
#include "scene/UndoQueue.h"

#include <maya/MFnPlugin.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <QApplication>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <thread>

namespace fuzz {

namespace {

using lightbox::LightboxHost;

/// Commands that reach beyond the scene.
const char* const REFUSED[] = {
    "batchRender",  "chdir",          "commandPort",   "evalDeferred", "exec",    "fclose", "fgetline",
    "fgetword",     "file",           "fopen",         "fprint",       "fread",   "fwrite", "getFileList",
    "lightboxGrab", "loadPlugin",     "pause",         "popen",        "putenv",  "python", "pclose",
    "quit",         "savePrefs",      "scriptJob",     "source",       "sysFile", "system", "unloadPlugin",
    "workspace",    "qmVellixExport", "qmVellixReplay"};

void RefuseCommands(lightbox::mel::CommandRegistry& registry, bool languageOnly) {
    std::set<std::string> names(std::begin(REFUSED), std::end(REFUSED));
    if (languageOnly) {
        lightbox::mel::CommandRegistry language;
        lightbox::mel::RegisterLanguageCommands(language);
        for (const std::string& name : registry.Names()) {
            if (!language.Find(name)) {
                names.insert(name);
            }
        }
    }
    for (const std::string& name : names) {
        registry.RegisterRaw(name, 0, ~0U, [name](lightbox::mel::CommandCall& call) -> lightbox::mel::Value {
            call.Fail("There is no " + name + " here.");
        });
    }
}

/// The part of the plug-in that files hold: the drawing and its node.
MStatus RegisterDrawing(MObject object) {
    using namespace vellix;
    MFnPlugin plugin(object);
    const MStatus status = plugin.registerData(BaseNodeLayerData::GetTypeName(),
                                               BaseNodeLayerData::GetTypeID(), BaseNodeLayerData::Creator);
    return status ? plugin.registerNode(BaseNode::GetTypeName(), BaseNode::GetTypeID(), BaseNode::Creator,
                                        BaseNode::Initialize, MPxNode::kLocatorNode)
                  : status;
}

MStatus DeregisterNothing(MObject) {
    return MS::kSuccess;
}

LightboxHost* Make(bool languageOnly) {
    static int count = 1;
    static char program[] = "fuzzer";
    static char* arguments[] = {program, nullptr};
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    new QApplication(count, arguments); // these live until the process ends
    lightbox::Host::Options options;
    options.batch = true;
    options.prefsFolder = Folder().toStdString();
    auto* const host = new LightboxHost(options);
    host->output().SetSink([](lightbox::Output::Kind, const std::string&) {});
    host->plugins().LoadBuiltin("vellix2", RegisterDrawing, DeregisterNothing);
    RefuseCommands(host->interpreter().Commands(), languageOnly);
    host->undo().SetEnabled(false);
    return host;
}

std::atomic<int> g_run{0};
std::atomic<bool> g_runs{false};

void WatchRuns(LightboxHost& host) {
    std::thread([&host] {
        int last = -1;
        while (true) {
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
            if (g_runs && g_run == last) {
                host.interpreter().Interrupt();
            }
            last = g_run;
        }
    }).detach();
}

} // namespace

LightboxHost& Host(bool languageOnly) {
    static LightboxHost* const host = Make(languageOnly);
    return *host;
}

QString Folder() {
    static QTemporaryDir folder;
    return folder.path();
}

std::string WriteFile(const char* name, const std::uint8_t* data, std::size_t size) {
    const std::string path = Folder().toStdString() + "/" + name;
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0) {
        std::abort();
    }
    return path;
}

Limit::Limit() {
    static const bool watches = (WatchRuns(Host()), true);
    static_cast<void>(watches);
    ++g_run;
    g_runs = true;
}

Limit::~Limit() {
    g_runs = false;
}

void OpenScene(const char* name, const std::uint8_t* data, std::size_t size) {
    LightboxHost& host = Host();
    const std::string path = WriteFile(name, data, size);
    const Limit limit;
    try {
        host.files().Open(path, true);
    } catch (const lightbox::FileError&) {
        // a damaged file
    } catch (const lightbox::mel::Error&) {
        // a damaged file
    }
}

} // namespace fuzz
