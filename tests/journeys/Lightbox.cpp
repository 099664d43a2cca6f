#include "journeys/Lightbox.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

Lightbox::Result Lightbox::Run(const QStringList& arguments) const {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(folder_.path());
    program.start(LIGHTBOX_PROGRAM, QStringList({"-batch", "-prefs", Path("preferences")}) + arguments);
    Result result;
    if (program.waitForFinished(240000) && program.exitStatus() == QProcess::NormalExit) {
        result.status = program.exitCode();
    } else {
        program.kill();
        program.waitForFinished();
    }
    result.output = program.readAllStandardOutput();
    result.errors = program.readAllStandardError();
    return result;
}

Lightbox::Result Lightbox::RunScript(const QByteArray& mel) const {
    Write("journey.mel", mel);
    const Result result = Run({"-script", Path("journey.mel")});
    EXPECT_EQ(result.status, 0) << result.errors.toStdString();
    return result;
}

QByteArray Lightbox::Read(const QString& name) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

void Lightbox::Write(const QString& name, const QByteArray& content) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    file.write(content);
}

QByteArray Lightbox::ReadFolder(const QString& name) const {
    QByteArray content;
    for (const QString& file : QDir(Path(name)).entryList(QDir::Files, QDir::Name)) {
        content += file.toUtf8() + ": " + Read(name + "/" + file);
    }
    return content;
}

QByteArray Lightbox::ReadDrawing(const QString& scene) const {
    const QByteArray text = Read(scene);
    const int start = text.indexOf("setAttr \".ld\"");
    EXPECT_GE(start, 0) << scene.toStdString();
    return text.mid(start, text.indexOf(";\n", start) - start);
}
