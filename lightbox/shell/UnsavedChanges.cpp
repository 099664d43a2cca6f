#include "shell/UnsavedChanges.h"

#include "formats/FileError.h"
#include "formats/SceneFiles.h"
#include "scene/Output.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <new>

namespace lightbox {

namespace {

/// Number of faults that a question names.
constexpr std::size_t NAMED_FAULTS = 5;

void Complain(Output& output, QWidget* parent, const std::string& fault) {
    output.Error(fault);
    QMessageBox box(QMessageBox::Warning, "Save Scene", QString::fromStdString(fault), QMessageBox::Ok,
                    parent);
    box.setObjectName("saveFailed");
    box.exec();
}

/// Calls a function that saves. Returns false, after a message, when it fails.
template <class Function>
bool Saved(Output& output, QWidget* parent, const Function& save) {
    try {
        save();
        return true;
    } catch (const FileError& error) {
        Complain(output, parent, error.what());
    } catch (const std::bad_alloc&) {
        Complain(output, parent, "The scene was not saved: there is not enough memory.");
    }
    return false;
}

enum class Answer { Replace, SaveAs, Cancel };

/// Asks before a file is replaced that was read with errors.
Answer AskToReplace(const SceneFiles& files, QWidget* parent, const std::string& path) {
    const ReadFaults* faults = files.FaultsOf(path);
    if (!faults) {
        return Answer::Replace;
    }
    const QString name = QFileInfo(QString::fromStdString(path)).fileName();
    QMessageBox box(QMessageBox::Warning, "Save Scene",
                    "\"" + name + "\" was read with errors. Saving over it would lose for good:",
                    QMessageBox::Cancel, parent);
    box.setObjectName("replaceDamaged");
    box.setInformativeText(QString::fromStdString(faults->Summary(NAMED_FAULTS, "\n")));
    QPushButton* const replace = box.addButton("Save Anyway", QMessageBox::DestructiveRole);
    const QPushButton* const saveAs = box.addButton("Save As...", QMessageBox::AcceptRole);
    replace->setObjectName("saveAnyway");
    box.setEscapeButton(QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == replace  ? Answer::Replace
           : box.clickedButton() == saveAs ? Answer::SaveAs
                                           : Answer::Cancel;
}

} // namespace

bool UnsavedChanges::Settle(SceneFiles& files, Output& output, QWidget* parent) {
    if (!files.IsModified()) {
        return true;
    }
    const std::string& path = files.SceneName();
    const QString name =
        path.empty() ? QString("untitled scene") : QFileInfo(QString::fromStdString(path)).fileName();
    QMessageBox box(QMessageBox::Question, "Warning: Scene Not Saved", "Save changes to " + name + "?",
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
    box.setObjectName("unsavedChanges");
    box.button(QMessageBox::Discard)->setText("Don't Save");
    box.button(QMessageBox::Save)->setObjectName("saveChanges");
    box.button(QMessageBox::Discard)->setObjectName("discardChanges");
    box.button(QMessageBox::Cancel)->setObjectName("keepScene");
    box.setDefaultButton(QMessageBox::Save);
    box.setEscapeButton(QMessageBox::Cancel);
    switch (box.exec()) {
    case QMessageBox::Save:
        return Save(files, output, parent);
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

bool UnsavedChanges::Save(SceneFiles& files, Output& output, QWidget* parent) {
    const std::string path = files.SceneName();
    const Answer answer = path.empty() ? Answer::SaveAs : AskToReplace(files, parent, path);
    return answer == Answer::SaveAs    ? SaveAs(files, output, parent)
           : answer == Answer::Replace ? Saved(output, parent, [&files] { files.Save(true); })
                                       : false;
}

bool UnsavedChanges::SaveAs(SceneFiles& files, Output& output, QWidget* parent) {
    QFileDialog dialog(parent, "Save Scene As", QString::fromStdString(files.SceneName()));
    dialog.setObjectName("saveSceneAs");
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const QString ascii = "Maya ASCII (*.ma)";
    const QString binary = "Lightbox binary (*.lbx)";
    dialog.setNameFilters({ascii, binary});
    const bool isBinary = files.Format() == SceneFormat::LightboxBinary;
    dialog.selectNameFilter(isBinary ? binary : ascii);
    dialog.setDefaultSuffix(isBinary ? "lbx" : "ma");
    QObject::connect(&dialog, &QFileDialog::filterSelected, [&](const QString& filter) {
        dialog.setDefaultSuffix(filter == binary ? "lbx" : "ma");
    });
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    const std::string path = dialog.selectedFiles().value(0).toStdString();
    const Answer answer = AskToReplace(files, parent, path);
    if (answer != Answer::Replace) {
        return answer == Answer::SaveAs && SaveAs(files, output, parent);
    }
    // The dialog has already asked whether to replace an existing file.
    return Saved(output, parent, [&] { files.SaveAs(path, std::nullopt, true); });
}

} // namespace lightbox
