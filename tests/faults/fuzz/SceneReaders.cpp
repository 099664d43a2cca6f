#include "core/LayerManager.h"
#include "faults/fuzz/Readers.h"
#include "formats/FileError.h"
#include "formats/SceneFiles.h"
#include "host/Settings.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "node/BaseNodeLayerData.h"
#include "scene/Host.h"

#include <maya/MArgList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>

namespace readers {

namespace {

using vellix::BaseNodeLayerData;

/// Interrupts MEL that runs for longer than a second or two, for as long as it exists. One thread watches all
/// of them: to start one for each input would take longer than the input.
class TimeLimit {
public:
    TimeLimit() {
        static std::thread* const watch = new std::thread(Watch); // it ends with the process
        static_cast<void>(watch);
        const std::lock_guard<std::mutex> lock(mutex_);
        ++input_;
        runs_ = true;
    }
    ~TimeLimit() {
        const std::lock_guard<std::mutex> lock(mutex_);
        runs_ = false;
    }

private:
    static void Watch() {
        for (unsigned last = 0;;) {
            std::this_thread::sleep_for(std::chrono::seconds(1));
            const std::lock_guard<std::mutex> lock(mutex_);
            if (runs_ && input_ == last) {
                lightbox::Host::Get().interpreter().Interrupt();
            }
            last = input_;
        }
    }

    inline static std::mutex mutex_;
    inline static unsigned input_ = 0;
    inline static bool runs_ = false;
};

std::string Written(BaseNodeLayerData& data) {
    std::ostringstream out;
    return data.writeBinary(out) ? out.str() : std::string();
}

/// What was read has to come back the same when it is written and read again.
void CheckComesBack(BaseNodeLayerData& data) {
    const auto layers = data.GetLayerManager();
    if (!layers || layers->TotalLayerCount() == 0) {
        return;
    }
    if (layers->GetActiveCamera().isEmpty()) { // which a file cannot say of a camera without a name
        layers->SetActiveCamera(layers->GetCameras().last());
    }
    const std::string first = Written(data);
    BaseNodeLayerData again;
    std::istringstream in(first);
    if (!again.readBinary(in, static_cast<unsigned>(first.size())) || Written(again) != first) {
        std::abort();
    }
}

MArgList Tokens(const std::uint8_t* data, std::size_t size) {
    MArgList tokens;
    std::string token;
    bool isQuoted = false;
    bool isToken = false;
    const auto end = [&] {
        if (isToken) {
            tokens.addArg(MString(token.c_str()));
        }
        token.clear();
        isToken = false;
    };
    for (std::size_t i = 0; i < size; ++i) {
        const char letter = static_cast<char>(data[i]);
        if (letter == '"') {
            isQuoted = !isQuoted;
            isToken = true;
        } else if (!isQuoted && (letter == ' ' || letter == '\n' || letter == '\t')) {
            end();
        } else if (letter != '\0') {
            token += letter;
            isToken = true;
        }
    }
    end();
    return tokens;
}

void WriteFile(const QString& path, const std::uint8_t* data, std::size_t size) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size)) !=
            static_cast<qint64>(size)) {
        std::abort();
    }
}

/// Reads the input as a new scene.
void Open(const QString& suffix, const std::uint8_t* data, std::size_t size) {
    static const QTemporaryDir folder;
    const QString path = folder.filePath("input" + suffix);
    WriteFile(path, data, size);
    const TimeLimit limit;
    try {
        lightbox::Host::Get().files().Open(path.toStdString(), true);
    } catch (const lightbox::FileError&) {
        return; // a damaged file
    } catch (const lightbox::mel::Error&) {
        return; // a damaged file
    }
}

} // namespace

void DrawingAscii(const std::uint8_t* data, std::size_t size) {
    BaseNodeLayerData drawing;
    unsigned element = 0;
    drawing.readASCII(Tokens(data, size), element);
    CheckComesBack(drawing);
}

void DrawingBinary(const std::uint8_t* data, std::size_t size) {
    BaseNodeLayerData drawing;
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    drawing.readBinary(in, static_cast<unsigned>(size));
    CheckComesBack(drawing);
}

void Settings(const std::uint8_t* data, std::size_t size) {
    const QString path = vellix::Settings::GetUserConfigPath();
    QDir().mkpath(QFileInfo(path).path());
    WriteFile(path, data, size);
    vellix::Settings::ReadUserConfig();
    vellix::Settings::WriteUserConfig();
    vellix::Settings::ReadUserConfig();
}

void Mel(const std::uint8_t* data, std::size_t size) {
    const TimeLimit limit;
    try {
        lightbox::Host::Get().interpreter().Execute(std::string(reinterpret_cast<const char*>(data), size));
    } catch (const lightbox::mel::Error&) {
        return; // a damaged script
    }
}

void Ma(const std::uint8_t* data, std::size_t size) {
    Open(".ma", data, size);
}

void Lbx(const std::uint8_t* data, std::size_t size) {
    Open(".lbx", data, size);
}

void Confine(lightbox::Host& host, bool language) {
    using namespace lightbox::mel;
    std::set<std::string> refused = {
        "autoSave",       "chdir",          "commandPort", "evalDeferred", "fclose",    "fflush",
        "fgetline",       "fgetword",       "file",        "fopen",        "fprint",    "fread",
        "frewind",        "lightboxGrab",   "loadPlugin",  "pause",        "putenv",    "qmVellixExport",
        "qmVellixImport", "qmVellixReplay", "quit",        "savePrefs",    "scriptJob", "source",
        "sysFile",        "unloadPlugin",   "workspace"};
    CommandRegistry& registry = host.interpreter().Commands();
    if (language) {
        CommandRegistry ofLanguage;
        RegisterLanguageCommands(ofLanguage);
        for (const std::string& name : registry.Names()) {
            if (!ofLanguage.Find(name)) {
                refused.insert(name);
            }
        }
    }
    for (const std::string& name : refused) {
        registry.RegisterRaw(name, 0, ~0U, [name](CommandCall& call) -> Value {
            call.Fail("There is no " + name + " here.");
        });
    }
}

} // namespace readers
