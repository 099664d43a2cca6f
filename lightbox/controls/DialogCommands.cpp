// confirmDialog, promptDialog, fileDialog2, colorEditor: modal dialogs, which wait for the user's answer.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Interpreter.h"
#include "mel/SyntaxBuilder.h"
#include "scene/NonCopyable.h"
#include "text/Quoted.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontMetrics>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSize>
#include <QStringList>
#include <QTreeView>
#include <QVBoxLayout>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;

/// The parent window of a dialog: the one that -parent names, else the active one.
QWidget* Owner(const CommandCall& call, const ControlRegistry& registry) {
    QWidget* named = call.Has("-parent") ? registry.FindWidget(call.String("-parent")) : nullptr;
    if (!named) {
        named = QApplication::activeWindow();
    }
    return named ? named : registry.MainWindow().Widget();
}

QMessageBox::Icon IconNamed(const std::string& name) {
    return name == "question"      ? QMessageBox::Question
           : name == "warning"     ? QMessageBox::Warning
           : name == "critical"    ? QMessageBox::Critical
           : name == "information" ? QMessageBox::Information
                                   : QMessageBox::NoIcon;
}

/// The texts of the buttons in the order of the flags.
std::vector<QString> ButtonTexts(const CommandCall& call, const std::vector<QString>& usual) {
    std::vector<QString> texts;
    for (unsigned use = 0; use < call.UseCount("-button"); ++use) {
        texts.push_back(ToQt(call.String("-button", 0, use)));
    }
    return texts.empty() ? usual : texts;
}

/// The result of a dialog that was closed without an answer.
std::string Dismissed(const CommandCall& call) {
    return call.StringOr("-dismissString", call.StringOr("-cancelButton", "dismiss"));
}

Value ConfirmDialog(CommandCall& call, ControlRegistry& registry) {
    QMessageBox box(Owner(call, registry));
    box.setObjectName("confirmDialog");
    box.setWindowTitle(ToQt(call.StringOr("-title", "Confirm")));
    box.setTextFormat(Qt::PlainText);
    box.setText(ToQt(call.StringOr("-message", "")));
    box.setIcon(IconNamed(call.StringOr("-icon", "")));
    const QString usual = ToQt(call.StringOr("-defaultButton", ""));
    const QString cancel = ToQt(call.StringOr("-cancelButton", ""));
    for (const QString& text : ButtonTexts(call, {QStringLiteral("Confirm")})) {
        QPushButton* const button = box.addButton(text, QMessageBox::AcceptRole);
        if (text == usual) {
            box.setDefaultButton(button);
        }
        if (text == cancel) {
            box.setEscapeButton(button);
        }
    }
    // Without an escape button the box would refuse to close.
    QAbstractButton* escape = box.escapeButton();
    QPushButton hidden;
    if (!escape) {
        box.addButton(&hidden, QMessageBox::RejectRole);
        hidden.hide();
        box.setEscapeButton(&hidden);
    }
    box.exec();
    const QAbstractButton* const clicked = box.clickedButton();
    box.removeButton(&hidden);
    return clicked && clicked != &hidden ? clicked->text().toStdString() : Dismissed(call);
}

/// Asks for a text and keeps the last one for -query.
class Prompt {
public:
    Value Run(const CommandCall& call, ControlRegistry& registry) {
        if (call.IsQuery()) {
            return text_;
        }
        QDialog dialog(Owner(call, registry));
        dialog.setObjectName("promptDialog");
        dialog.setWindowTitle(ToQt(call.StringOr("-title", "")));
        auto* const box = new QVBoxLayout(&dialog);
        auto* const message = new QLabel(ToQt(call.StringOr("-message", "")));
        message->setTextFormat(Qt::PlainText);
        box->addWidget(message);
        const bool hasLines = call.Has("-scrollableField") && call.Bool("-scrollableField");
        auto* const line = hasLines ? nullptr : new QLineEdit(ToQt(call.StringOr("-text", "")));
        auto* const lines = hasLines ? new QPlainTextEdit(ToQt(call.StringOr("-text", ""))) : nullptr;
        box->addWidget(hasLines ? static_cast<QWidget*>(lines) : line);
        std::string answer = Dismissed(call);
        AddButtons(call, dialog, *box, answer);
        dialog.exec();
        text_ = (hasLines ? lines->toPlainText() : line->text()).toStdString();
        return answer;
    }

private:
    static void AddButtons(const CommandCall& call, QDialog& dialog, QVBoxLayout& box, std::string& answer) {
        const QString usual = ToQt(call.StringOr("-defaultButton", ""));
        auto* const row = new QDialogButtonBox;
        for (const QString& text : ButtonTexts(call, {QStringLiteral("OK")})) {
            QPushButton* const button = row->addButton(text, QDialogButtonBox::ActionRole);
            button->setDefault(text == usual);
            button->setAutoDefault(text == usual);
            QObject::connect(button, &QPushButton::clicked, &dialog, [&dialog, &answer, text] {
                answer = text.toStdString();
                dialog.accept();
            });
        }
        box.addWidget(row);
    }

    std::string text_;
};

/// The field with the name of the file, and its label.
void HideNameEdit(const QFileDialog& dialog) {
    for (const char* name : {"fileNameEdit", "fileNameLabel"}) {
        if (auto* const part = dialog.findChild<QWidget*>(QString::fromLatin1(name))) {
            part->hide();
        }
    }
}

/// Size, kind and date of the files are shown whole, and their names get the rest of a larger dialog.
void MakeRoomForFiles(QFileDialog& dialog) {
    auto* const files = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    if (!files) {
        return;
    }
    QHeaderView& header = *files->header();
    header.setStretchLastSection(false);
    for (int section = 0; section < header.count(); ++section) {
        header.setSectionResizeMode(section,
                                    section == 0 ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
    }
    const QSize letters(95, 30);
    const QFontMetrics font = dialog.fontMetrics();
    dialog.resize(dialog.size().expandedTo(
        QSize(letters.width() * font.averageCharWidth(), letters.height() * font.lineSpacing())));
}

QFileDialog::FileMode ModeOf(int fileMode) {
    return fileMode == 0   ? QFileDialog::AnyFile
           : fileMode == 4 ? QFileDialog::ExistingFiles
           : fileMode == 1 ? QFileDialog::ExistingFile
                           : QFileDialog::Directory;
}

void SetUpFileDialog(QFileDialog& dialog, const CommandCall& call) {
    const int mode = call.IntOr("-fileMode", 0);
    if (mode < 0 || mode > 4) {
        call.Fail("-fileMode takes 0 to 4.");
    }
    dialog.setObjectName("fileDialog");
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    MakeRoomForFiles(dialog);
    // -fileMode 3 shows only folders.
    dialog.setOption(QFileDialog::ShowDirsOnly, mode == 3);
    dialog.setFileMode(ModeOf(mode));
    dialog.setAcceptMode(mode == 0 ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setWindowTitle(ToQt(call.StringOr("-caption", mode == 0 ? "Save" : "Open")));
    if (call.Has("-fileFilter")) {
        dialog.setNameFilters(ToQt(call.String("-fileFilter")).split(QStringLiteral(";;")));
    }
    if (call.Has("-selectFileFilter")) {
        const QString wanted = ToQt(call.String("-selectFileFilter"));
        for (const QString& filter : dialog.nameFilters()) {
            if (filter == wanted || filter.startsWith(wanted + QLatin1Char(' '))) {
                dialog.selectNameFilter(filter);
            }
        }
    }
    if (call.Has("-startingDirectory")) {
        const QFileInfo start(ToQt(call.String("-startingDirectory")));
        dialog.setDirectory(start.isDir() ? start.absoluteFilePath() : start.absolutePath());
        if (!start.isDir()) {
            dialog.selectFile(start.fileName());
        }
    }
    if (call.Has("-hideNameEdit") && call.Bool("-hideNameEdit")) {
        HideNameEdit(dialog);
    }
    if (call.Has("-okCaption")) {
        dialog.setLabelText(QFileDialog::Accept, ToQt(call.String("-okCaption")));
    }
    if (call.Has("-cancelCaption")) {
        dialog.setLabelText(QFileDialog::Reject, ToQt(call.String("-cancelCaption")));
    }
}

/// The path with the suffix of the chosen filter.
QString WithSuffix(const QString& path, const QString& filter) {
    if (!QFileInfo(path).suffix().isEmpty()) {
        return path;
    }
    const int star = filter.indexOf(QLatin1String("*."));
    if (star < 0 || filter.mid(star + 2, 1) == QLatin1String("*")) {
        return path;
    }
    int end = star + 2;
    while (end < filter.size() && filter.at(end).isLetterOrNumber()) {
        ++end;
    }
    return path + filter.mid(star + 1, end - star - 1);
}

/// The procedures that -optionsUICreate and its kind name, and the column of controls that the first of them
/// fills, below the names of the files.
class FileDialogScripts : NonCopyable {
public:
    FileDialogScripts(const CommandCall& call, ControlRegistry& registry, QFileDialog& dialog)
        : call_(call)
        , registry_(registry) {
        if (call.Has("-optionsUICreate")) {
            AddColumn(dialog);
        }
        Run("-optionsUICreate", {});
        MakeRoom(dialog);
        Run("-optionsUIInit", {dialog.selectedNameFilter()});
        QObject::connect(&dialog, &QFileDialog::currentChanged, &dialog,
                         [this](const QString& path) { Run("-selectionChanged", {path}); });
        QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                         [this](const QString& filter) { Run("-fileTypeChanged", {filter}); });
    }
    ~FileDialogScripts() {
        if (Control* const window = registry_.Find(window_)) {
            registry_.Delete(*window);
        }
    }

    /// Call before the dialog is gone.
    void Finish(const QStringList& files) {
        if (files.isEmpty()) {
            RunPlain("-optionsUICancel");
            return;
        }
        Run("-optionsUICommit", {});
        Run("-optionsUICommit2", {files.first()});
    }

private:
    /// The column is made in a window that stays hidden, and moves into the dialog.
    void AddColumn(QFileDialog& dialog) {
        mel::Interpreter& interpreter = call_.GetInterpreter();
        Control* const parent = registry_.CurrentParent();
        window_ = interpreter.Execute("window").AsString();
        column_ = interpreter.Execute("columnLayout -adjustableColumn true").AsString();
        registry_.SetCurrentParent(parent);
        QWidget* const column = registry_.FindWidget(column_);
        if (auto* const grid = qobject_cast<QGridLayout*>(dialog.layout()); grid && column) {
            grid->addWidget(column, grid->rowCount(), 0, 1, -1);
        }
    }

    /// Leaves the list of files its height.
    void MakeRoom(QFileDialog& dialog) const {
        if (const QWidget* const column = registry_.FindWidget(column_)) {
            dialog.resize(dialog.width(), dialog.height() + column->sizeHint().height());
        }
    }

    /// Runs the procedure of a flag with the name of the column and these texts.
    void Run(const char* flag, const QStringList& texts) {
        if (!call_.Has(flag)) {
            return;
        }
        std::string arguments = Quoted(column_);
        for (const QString& text : texts) {
            arguments += ", " + Quoted(text.toStdString());
        }
        registry_.RunScript(call_.String(flag) + "(" + arguments + ")");
    }
    void RunPlain(const char* flag) {
        if (call_.Has(flag)) {
            registry_.RunScript(call_.String(flag));
        }
    }

    const CommandCall& call_;
    ControlRegistry& registry_;
    std::string window_;
    std::string column_;
};

Value FileDialog(CommandCall& call, ControlRegistry& registry) {
    QFileDialog dialog(Owner(call, registry));
    SetUpFileDialog(dialog, call);
    FileDialogScripts scripts(call, registry, dialog);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    scripts.Finish(isAccepted ? dialog.selectedFiles() : QStringList());
    if (!isAccepted) {
        return Value::StringArray();
    }
    Value::StringArray answer;
    for (const QString& file : dialog.selectedFiles()) {
        const bool isNew = dialog.acceptMode() == QFileDialog::AcceptSave;
        answer.push_back((isNew ? WithSuffix(file, dialog.selectedNameFilter()) : file).toStdString());
    }
    if (call.Has("-returnFilter") && call.Bool("-returnFilter")) {
        answer.push_back(dialog.selectedNameFilter().toStdString());
    }
    return answer;
}

/// Asks for a colour and keeps the answer for -query.
class ColorEditor {
public:
    Value Run(const CommandCall& call, ControlRegistry& registry) {
        if (call.IsQuery()) {
            return call.Has("-result")
                       ? Value(isAccepted_)
                       : Value(Value::FloatArray{color_.redF(), color_.greenF(), color_.blueF()});
        }
        if (call.Has("-rgbValue")) {
            const auto part = [&call](unsigned index) {
                return qBound(0.0, call.Float("-rgbValue", index), 1.0);
            };
            color_ = QColor::fromRgbF(part(0), part(1), part(2));
        }
        QColorDialog dialog(color_, Owner(call, registry));
        dialog.setObjectName("colorEditor");
        isAccepted_ = dialog.exec() == QDialog::Accepted;
        if (isAccepted_) {
            color_ = dialog.currentColor();
        }
        return Value(std::to_string(color_.redF()) + " " + std::to_string(color_.greenF()) + " " +
                     std::to_string(color_.blueF()) + " " + (isAccepted_ ? "1" : "0"));
    }

private:
    QColor color_ = Qt::white;
    bool isAccepted_ = false;
};

} // namespace

void RegisterDialogCommands(WindowCommandTable& table) {
    table.Add("confirmDialog",
              SyntaxBuilder()
                  .Flag("-t", "-title", TEXT)
                  .Flag("-m", "-message", TEXT)
                  .Flag("-ma", "-messageAlign", TEXT)
                  .Flag("-b", "-button", TEXT)
                  .MultiUse()
                  .Flag("-ann", "-annotation", TEXT)
                  .MultiUse()
                  .Flag("-db", "-defaultButton", TEXT)
                  .Flag("-cb", "-cancelButton", TEXT)
                  .Flag("-ds", "-dismissString", TEXT)
                  .Flag("-icn", "-icon", TEXT)
                  .Flag("-p", "-parent", TEXT)
                  .Flag("-bgc", "-backgroundColor", MSyntax::kDouble, MSyntax::kDouble, MSyntax::kDouble),
              ConfirmDialog);
    table.Add("promptDialog",
              SyntaxBuilder()
                  .Flag("-t", "-title", TEXT)
                  .Flag("-m", "-message", TEXT)
                  .Flag("-ma", "-messageAlign", TEXT)
                  .Flag("-tx", "-text", TEXT)
                  .Flag("-b", "-button", TEXT)
                  .MultiUse()
                  .Flag("-db", "-defaultButton", TEXT)
                  .Flag("-cb", "-cancelButton", TEXT)
                  .Flag("-ds", "-dismissString", TEXT)
                  .Flag("-sf", "-scrollableField", ON)
                  .Flag("-st", "-style", TEXT)
                  .Flag("-p", "-parent", TEXT)
                  .Query(),
              [prompt = std::make_shared<Prompt>()](CommandCall& call, ControlRegistry& registry) {
                  return prompt->Run(call, registry);
              });
    table.Add("fileDialog2",
              SyntaxBuilder()
                  .Flag("-fm", "-fileMode", INT)
                  .Flag("-ff", "-fileFilter", TEXT)
                  .Flag("-sff", "-selectFileFilter", TEXT)
                  .Flag("-cap", "-caption", TEXT)
                  .Flag("-dir", "-startingDirectory", TEXT)
                  .Flag("-okc", "-okCaption", TEXT)
                  .Flag("-cc", "-cancelCaption", TEXT)
                  .Flag("-ds", "-dialogStyle", INT)
                  .Flag("-rf", "-returnFilter", ON)
                  .Flag("-hne", "-hideNameEdit", ON)
                  .Flag("-ftc", "-fileTypeChanged", TEXT)
                  .Flag("-sc", "-selectionChanged", TEXT)
                  .Flag("-ocr", "-optionsUICreate", TEXT)
                  .Flag("-oin", "-optionsUIInit", TEXT)
                  .Flag("-ocm", "-optionsUICommit", TEXT)
                  .Flag("-oc2", "-optionsUICommit2", TEXT)
                  .Flag("-oca", "-optionsUICancel", TEXT)
                  .Flag("-spe", "-setProjectBtnEnabled", ON)
                  .Flag("-p", "-parent", TEXT),
              FileDialog);
    table.Add("colorEditor",
              SyntaxBuilder()
                  .Flag("-rgb", "-rgbValue", MSyntax::kDouble, MSyntax::kDouble, MSyntax::kDouble)
                  .Flag("-r", "-result")
                  .Flag("-p", "-parent", TEXT)
                  .Query(),
              [editor = std::make_shared<ColorEditor>()](CommandCall& call, ControlRegistry& registry) {
                  return editor->Run(call, registry);
              });
}

} // namespace lightbox
