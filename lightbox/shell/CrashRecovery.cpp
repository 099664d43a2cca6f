#include "shell/CrashRecovery.h"

#include "formats/AutoSave.h"
#include "formats/SceneFiles.h"
#include "scene/Output.h"
#include "shell/UnsavedChanges.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

#include <exception>
#include <utility>

namespace lightbox {

namespace {

enum class Answer { Open, Later, Never };

/// The scene's file name; empty for an untitled scene.
QString SceneOf(const AutoSave::Unfinished& session) {
    return QFileInfo(QString::fromStdString(session.record->GetContent().sceneName)).fileName();
}

QString Explain(const AutoSave::Unfinished& session) {
    const QFileInfo file(QString::fromStdString(session.file));
    const QString scene = SceneOf(session);
    const QString time = QLocale().toString(file.lastModified(), QLocale::ShortFormat);
    const QString text =
        scene.isEmpty()
            ? QString(
                  "It holds an untitled scene, as it was on %1. Lightbox opens it as an untitled scene with "
                  "unsaved changes.")
                  .arg(time)
            : QString("It holds %2, as it was on %1. Lightbox opens it under that name, with unsaved "
                      "changes; the file %2 changes only when you save.")
                  .arg(time, scene);
    return text + "\n\nThe automatic save also stays in " + file.absolutePath() + '.';
}

Answer AskAbout(const AutoSave::Unfinished& session, QWidget* parent) {
    QMessageBox box(QMessageBox::Question, "Lightbox",
                    "Lightbox did not end properly. Open the last automatic save?", QMessageBox::NoButton,
                    parent);
    box.setObjectName("recovery");
    box.setInformativeText(Explain(session));
    QPushButton* const open = box.addButton("Open", QMessageBox::AcceptRole);
    QPushButton* const later = box.addButton("Not Now", QMessageBox::RejectRole);
    QPushButton* const never = box.addButton("Don't Ask Again", QMessageBox::DestructiveRole);
    open->setObjectName("openAutoSave");
    later->setObjectName("askLater");
    never->setObjectName("forgetAutoSave");
    box.setDefaultButton(open);
    box.setEscapeButton(later);
    box.exec();
    return box.clickedButton() == open    ? Answer::Open
           : box.clickedButton() == never ? Answer::Never
                                          : Answer::Later;
}

} // namespace

void CrashRecovery::Ask(SceneFiles& files, Output& output, QWidget* parent) {
    AutoSave& autoSave = files.autoSave();
    while (true) {
        AutoSave::Unfinished session = autoSave.FindUnfinished();
        if (!session.record) {
            return;
        }
        const Answer answer = AskAbout(session, parent);
        if (answer == Answer::Never) {
            session.record->Remove();
            continue;
        }
        if (answer == Answer::Open && UnsavedChanges::Settle(files, output, parent)) {
            try {
                autoSave.Recover(std::move(session));
            } catch (const std::exception& error) { // also when memory is short
                output.Error(error.what());
            }
        }
        return;
    }
}

void CrashRecovery::Report(SceneFiles& files, Output& output) {
    const AutoSave::Unfinished session = files.autoSave().FindUnfinished();
    if (session.record) {
        const std::string scene = SceneOf(session).toStdString();
        output.Info("Lightbox did not end properly. The last automatic save of " +
                    (scene.empty() ? "an untitled scene" : scene) + " is \"" + session.file +
                    "\"; Lightbox with a window offers to open it.");
    }
}

} // namespace lightbox
