#include "faults/FaultFixture.h"

#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "host/entry/PluginMain.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "scene/Output.h"

#include <QDir>
#include <QFile>

using lightbox::Output;

FaultFixture::FaultFixture() {
    QDir(folder_.path()).mkdir("work");
    lightbox::Host::Options options;
    options.batch = true;
    options.prefsFolder = folder_.filePath("prefs").toStdString();
    host_ = std::make_unique<lightbox::LightboxHost>(options);
    host_->output().SetSink([this](Output::Kind kind, const std::string& text) {
        if (kind == Output::Kind::Error || kind == Output::Kind::Warning) {
            errors_.push_back(text);
        }
    });
    host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
}

FaultFixture::~FaultFixture() = default;

bool FaultFixture::Run(const QString& mel) {
    return Ask(mel) != "<failed>";
}

QString FaultFixture::Ask(const QString& mel) {
    try {
        return QString::fromStdString(host_->interpreter().Execute(mel.toStdString()).Shown());
    } catch (const lightbox::mel::Error& error) {
        errors_.push_back(error.Described());
        return "<failed>";
    }
}

bool FaultFixture::TakesErrors() {
    return !std::exchange(errors_, {}).empty();
}

std::string FaultFixture::Messages() const {
    std::string text;
    for (const std::string& error : errors_) {
        text += error + "\n";
    }
    return text;
}

void FaultFixture::Draw(int frames, int first) {
    for (int frame = first; frame < first + frames; ++frame) {
        ++drawn_;
        Write("stroke.json", QString(R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [
            {"frame": %1, "tool": "pencil", "size": 5, "opacity": 100, "hardness": 100, "color": [20, 60, 240],
             "samples": [[100, %2, 1, 0], [500, %3, 1, 8], [900, 300, 1, 16]]}]})")
                                 .arg(frame)
                                 .arg(100 + 37 * drawn_ % 800)
                                 .arg(900 - 53 * drawn_ % 800)
                                 .toUtf8());
        ASSERT_TRUE(Run("qmVellixReplay -camera persp -file \"" + Path("stroke.json") + "\"")) << Messages();
    }
    QFile::remove(Path("stroke.json"));
}

QByteArray FaultFixture::Read(const QString& name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void FaultFixture::Write(const QString& name, const QByteArray& content) const {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size())
        << name.toStdString();
}

QString FaultFixture::Names() const {
    return QDir(Path("")).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name).join(' ');
}

QByteArray WithoutTime(const QByteArray& scene) {
    QByteArray text;
    for (const QByteArray& line : scene.split('\n')) {
        if (!line.startsWith("//Last modified")) {
            text += line + '\n';
        }
    }
    return text;
}
