#include "app/Demo.h"

#include "scene/WholeFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lightbox {

QString Demo::Folder() {
    for (const char* below : {"/../share/lightbox/demo", "/demo", "/../../../demo"}) {
        const QFileInfo script(QCoreApplication::applicationDirPath() + below + "/pencil_test.mel");
        if (script.isFile()) {
            return QDir::cleanPath(script.absolutePath());
        }
    }
    return {};
}

void Demo::Prepare(CommandLine& line) {
    const QString demo = Folder();
    if (demo.isEmpty()) {
        line.error = "The demo is missing. It belongs in share/lightbox/demo beside the program's folder "
                     "bin; install Lightbox again.";
        return;
    }
    const QDir out(QDir(QString::fromStdString(line.demoFolder)).absolutePath());
    const QString preferences = out.filePath("preferences");
    if (!QDir().mkpath(preferences) || !QFileInfo(preferences).isWritable()) {
        line.error = "The folder \"" + out.path().toStdString() +
                     "\" cannot be written to. Name another one with -demo.";
        return;
    }
    if (line.prefsFolder.empty()) {
        line.prefsFolder = preferences.toStdString();
        const QString settings = out.filePath("preferences/vellix2.ini");
        QFile demoSettings(demo + "/vellix2.ini");
        demoSettings.open(QIODevice::ReadOnly);
        const std::string fault =
            WholeFile::Write(settings.toStdString(), demoSettings.readAll().toStdString());
        if (!fault.empty()) {
            line.error = "\"" + settings.toStdString() + "\" cannot be written: " + fault + ".";
            return;
        }
    }
    qputenv("VELLIX_DEMO", QFile::encodeName(demo));
    qputenv("VELLIX_OUT", QFile::encodeName(out.path()));
    line.steps.insert(line.steps.begin(),
                      {CommandLine::Step::Kind::Script, (demo + "/pencil_test.mel").toStdString()});
}

} // namespace lightbox
