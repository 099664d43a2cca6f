// textField, textFieldGrp, textFieldButtonGrp, scrollField.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/GroupControl.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

/// The line edit of a control: its widget, or the first part of its group.
QLineEdit* LineOf(Control& control) {
    if (auto* const group = dynamic_cast<GroupControl*>(&control)) {
        return group->PartAs<QLineEdit>(1);
    }
    return control.As<QLineEdit>();
}

ControlFlag LineText(const char* shortName, const char* longName, void (*set)(QLineEdit&, const QString&),
                     QString (*get)(const QLineEdit&)) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {TEXT},
            [flag, set](Control& control, const CommandCall& call) {
                set(*LineOf(control), ToQt(call.String(flag.c_str())));
            },
            [get](Control& control) { return Value(get(*LineOf(control)).toStdString()); }};
}

ControlFlags LineFlags() {
    return {
        LineText(
            "-tx", "-text", [](QLineEdit& line, const QString& text) { line.setText(text); },
            [](const QLineEdit& line) { return line.text(); }),
        LineText(
            "-fi", "-fileName", [](QLineEdit& line, const QString& text) { line.setText(text); },
            [](const QLineEdit& line) { return line.text(); }),
        LineText(
            "-it", "-insertText", [](QLineEdit& line, const QString& text) { line.insert(text); },
            [](const QLineEdit& line) { return line.selectedText(); }),
        LineText(
            "-pht", "-placeholderText",
            [](QLineEdit& line, const QString& text) { line.setPlaceholderText(text); },
            [](const QLineEdit& line) { return line.placeholderText(); }),
        {"-ed",
         "-editable",
         {ON},
         [](Control& control, const CommandCall& call) {
             LineOf(control)->setReadOnly(!call.Bool("-editable"));
         },
         [](Control& control) { return Value(!LineOf(control)->isReadOnly()); }},
        {"-ip",
         "-insertionPosition",
         {INT},
         [](Control& control, const CommandCall& call) {
             const int position = call.Int("-insertionPosition");
             QLineEdit& line = *LineOf(control);
             line.setCursorPosition(position > 0 ? position - 1 : static_cast<int>(line.text().size()));
         },
         [](Control& control) { return Value(LineOf(control)->cursorPosition() + 1); }},
        {"-sf",
         "-searchField",
         {ON},
         [](Control& control, const CommandCall& call) {
             LineOf(control)->setClearButtonEnabled(call.Bool("-searchField"));
         },
         [](Control& control) { return Value(LineOf(control)->isClearButtonEnabled()); }},
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-ec", "-enterCommand"),
        ScriptFlag("-tcc", "-textChangedCommand"),
        ScriptFlag("-rfc", "-receiveFocusCommand"),
        NoteFlag("-aie", "-alwaysInvokeEnterCommandOnReturn", ON),
        NoteFlag("-fn", "-font", TEXT),
    };
}

/// Runs the field's scripts: -changeCommand when editing ends with a changed text, -enterCommand on Enter,
/// and -textChangedCommand on every edit.
void ConnectLine(QLineEdit& line, Control& control, ControlRegistry& registry) {
    QObject::connect(&line, &QLineEdit::editingFinished, &line, [&line, &control, &registry] {
        if (line.isModified()) {
            line.setModified(false);
            registry.Run(control, "-changeCommand", {Value(line.text().toStdString())});
        }
    });
    QObject::connect(&line, &QLineEdit::returnPressed, &line, [&line, &control, &registry] {
        registry.Run(control, "-enterCommand", {Value(line.text().toStdString())});
    });
    QObject::connect(&line, &QLineEdit::textEdited, &line, [&control, &registry](const QString& text) {
        registry.Run(control, "-textChangedCommand", {Value(text.toStdString())});
    });
}

ControlType TextFieldType() {
    ControlType type;
    type.name = "textField";
    type.flags = LineFlags() + CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const line = new QLineEdit;
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, line);
        ConnectLine(*line, *control, creation.registry);
        return control;
    };
    return type;
}

ControlType TextGroupType(bool hasButton) {
    ControlType type;
    type.name = hasButton ? "textFieldButtonGrp" : "textFieldGrp";
    type.flags = LineFlags();
    if (hasButton) {
        type.flags.push_back({"-bl",
                              "-buttonLabel",
                              {TEXT},
                              [](Control& control, const CommandCall& call) {
                                  Group(control).PartAs<QPushButton>(2)->setText(
                                      ToQt(call.String("-buttonLabel")));
                              },
                              [](Control& control) {
                                  return Value(Group(control).PartAs<QPushButton>(2)->text().toStdString());
                              }});
        type.flags.push_back(ScriptFlag("-bc", "-buttonCommand"));
    }
    type.flags = std::move(type.flags) + GroupFlags();
    type.create = [hasButton](const ControlCreation& creation) {
        auto group = std::make_unique<GroupControl>(creation);
        auto* const line = new QLineEdit;
        group->AddPart(line);
        ConnectLine(*line, *group, creation.registry);
        if (hasButton) {
            auto* const button = new QPushButton;
            group->AddPart(button);
            QObject::connect(button, &QPushButton::clicked, button,
                             [&registry = creation.registry, made = group.get()] {
                                 registry.Run(*made, "-buttonCommand");
                             });
        }
        group->Finish();
        return group;
    };
    return type;
}

/// An editor of several lines. Loss of focus or the keypad's Enter commits the text, as in a single-line
/// field.
class ScrollField : public QPlainTextEdit {
public:
    std::function<void(const char*)> run;

protected:
    void focusOutEvent(QFocusEvent* event) override {
        QPlainTextEdit::focusOutEvent(event);
        if (document()->isModified()) {
            document()->setModified(false);
            run("-changeCommand");
        }
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Enter) {
            document()->setModified(false);
            run("-enterCommand");
            return;
        }
        QPlainTextEdit::keyPressEvent(event);
        run("-keyPressCommand");
    }
};

ControlFlag ClearFlag() {
    return {"-cl",
            "-clear",
            {},
            [](Control& control, const CommandCall&) { control.As<QPlainTextEdit>()->clear(); },
            nullptr};
}

ControlType ScrollFieldType() {
    ControlType type;
    type.name = "scrollField";
    type.flags =
        ControlFlags{
            ClearFlag(),
            ValueFlag<QPlainTextEdit, QString>(
                "-tx", "-text", [](QPlainTextEdit& edit, const QString& text) { edit.setPlainText(text); },
                [](const QPlainTextEdit& edit) { return edit.toPlainText(); }),
            ValueFlag<QPlainTextEdit, QString>(
                "-it", "-insertText",
                [](QPlainTextEdit& edit, const QString& text) { edit.insertPlainText(text); },
                [](const QPlainTextEdit& edit) { return edit.textCursor().selectedText(); }),
            ValueFlag<QPlainTextEdit, bool>(
                "-ed", "-editable", [](QPlainTextEdit& edit, bool on) { edit.setReadOnly(!on); },
                [](const QPlainTextEdit& edit) { return !edit.isReadOnly(); }),
            ValueFlag<QPlainTextEdit, bool>(
                "-ww", "-wordWrap",
                [](QPlainTextEdit& edit, bool on) {
                    edit.setLineWrapMode(on ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
                },
                [](const QPlainTextEdit& edit) { return edit.lineWrapMode() != QPlainTextEdit::NoWrap; }),
            ValueFlag<QPlainTextEdit, int>(
                "-ip", "-insertionPosition",
                [](QPlainTextEdit& edit, int position) {
                    edit.moveCursor(QTextCursor::End);
                    if (position > 0) {
                        QTextCursor cursor = edit.textCursor();
                        cursor.setPosition(std::min(position - 1, cursor.position()));
                        edit.setTextCursor(cursor);
                    }
                },
                [](const QPlainTextEdit& edit) { return edit.textCursor().position() + 1; }),
            QueryFlag("-nl", "-numberOfLines",
                      [](Control& control) { return Value(control.As<QPlainTextEdit>()->blockCount()); }),
            QueryFlag("-sl", "-selection",
                      [](Control& control) {
                          return Value(
                              control.As<QPlainTextEdit>()->textCursor().selectedText().toStdString());
                      }),
            NoteFlag("-fn", "-font", TEXT),
            ScriptFlag("-cc", "-changeCommand"),
            ScriptFlag("-ec", "-enterCommand"),
            ScriptFlag("-kpc", "-keyPressCommand"),
        } +
        CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const edit = new ScrollField;
        edit->setLineWrapMode(QPlainTextEdit::NoWrap);
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, edit);
        edit->run = [&registry = creation.registry, made = control.get(), edit](const char* flag) {
            registry.Run(*made, flag, {Value(edit->toPlainText().toStdString())});
        };
        return control;
    };
    return type;
}

} // namespace

void RegisterTextFieldCommands(WindowCommandTable& table) {
    table.Add(TextFieldType());
    table.Add(TextGroupType(false));
    table.Add(TextGroupType(true));
    table.Add(ScrollFieldType());
}

} // namespace lightbox
