// textField, textFieldGrp, textFieldButtonGrp, scrollField.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/GroupControl.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <utility>

namespace lightbox {

namespace {

using mel::Value;

/// The line edit of a control: its widget, or the first part of its group.
QLineEdit* LineOf(Control& control) {
    if (auto* const group = dynamic_cast<GroupControl*>(&control)) {
        return group->PartAs<QLineEdit>(1);
    }
    return control.As<QLineEdit>();
}

/// A flag with one value of the control's line edit.
template <class Value>
ControlFlag LineFlag(const char* shortName, const char* longName,
                     std::function<void(QLineEdit&, const Value&)> set,
                     std::function<Value(QLineEdit&)> get) {
    return ValueFlag<QLineEdit, Value>(shortName, longName, std::move(set), std::move(get), LineOf);
}

ControlFlags LineFlags() {
    return {
        LineFlag<QString>("-tx", "-text", &QLineEdit::setText, &QLineEdit::text),
        LineFlag<QString>("-fi", "-fileName", &QLineEdit::setText, &QLineEdit::text),
        LineFlag<QString>("-it", "-insertText", &QLineEdit::insert, &QLineEdit::selectedText),
        LineFlag<QString>("-pht", "-placeholderText", &QLineEdit::setPlaceholderText,
                          &QLineEdit::placeholderText),
        LineFlag<bool>(
            "-ed", "-editable", [](QLineEdit& line, bool on) { line.setReadOnly(!on); },
            [](const QLineEdit& line) { return !line.isReadOnly(); }),
        LineFlag<int>(
            "-ip", "-insertionPosition",
            [](QLineEdit& line, int position) {
                line.setCursorPosition(position > 0 ? position - 1 : static_cast<int>(line.text().size()));
            },
            [](const QLineEdit& line) { return line.cursorPosition() + 1; }),
        LineFlag<bool>("-sf", "-searchField", &QLineEdit::setClearButtonEnabled,
                       &QLineEdit::isClearButtonEnabled),
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

std::unique_ptr<Control> CreateTextField(const ControlCreation& creation) {
    auto* const line = new QLineEdit;
    auto control = std::make_unique<Control>(creation, line);
    ConnectLine(*line, *control, creation.registry);
    return control;
}

ControlFlags FieldButtonFlags() {
    return {ValueFlag<QPushButton, QString>(
                "-bl", "-buttonLabel", &QPushButton::setText, &QPushButton::text,
                [](Control& control) { return Group(control).PartAs<QPushButton>(2); }),
            ScriptFlag("-bc", "-buttonCommand")};
}

std::unique_ptr<Control> CreateTextGroup(const ControlCreation& creation, bool hasButton) {
    auto group = std::make_unique<GroupControl>(creation);
    auto* const line = new QLineEdit;
    group->AddPart(line);
    ConnectLine(*line, *group, creation.registry);
    if (hasButton) {
        auto* const button = new QPushButton;
        group->AddPart(button);
        QObject::connect(
            button, &QPushButton::clicked, button,
            [&registry = creation.registry, made = group.get()] { registry.Run(*made, "-buttonCommand"); });
    }
    group->Finish();
    return group;
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

ControlFlags ScrollFieldFlags() {
    using Edit = QPlainTextEdit;
    return {
        ActionFlag<Edit>("-cl", "-clear", &Edit::clear),
        ValueFlag<Edit, QString>("-tx", "-text", &Edit::setPlainText, &Edit::toPlainText),
        ValueFlag<Edit, QString>("-it", "-insertText", &Edit::insertPlainText,
                                 [](const Edit& edit) { return edit.textCursor().selectedText(); }),
        ValueFlag<Edit, bool>(
            "-ed", "-editable", [](Edit& edit, bool on) { edit.setReadOnly(!on); },
            [](const Edit& edit) { return !edit.isReadOnly(); }),
        ValueFlag<Edit, bool>(
            "-ww", "-wordWrap",
            [](Edit& edit, bool on) { edit.setLineWrapMode(on ? Edit::WidgetWidth : Edit::NoWrap); },
            [](const Edit& edit) { return edit.lineWrapMode() != Edit::NoWrap; }),
        ValueFlag<Edit, int>(
            "-ip", "-insertionPosition",
            [](Edit& edit, int position) {
                edit.moveCursor(QTextCursor::End);
                if (position > 0) {
                    QTextCursor cursor = edit.textCursor();
                    cursor.setPosition(std::min(position - 1, cursor.position()));
                    edit.setTextCursor(cursor);
                }
            },
            [](const Edit& edit) { return edit.textCursor().position() + 1; }),
        QueryFlag("-nl", "-numberOfLines",
                  [](const Control& control) { return control.As<Edit>()->blockCount(); }),
        QueryFlag("-sl", "-selection",
                  [](const Control& control) {
                      return control.As<Edit>()->textCursor().selectedText().toStdString();
                  }),
        NoteFlag("-fn", "-font", TEXT),
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-ec", "-enterCommand"),
        ScriptFlag("-kpc", "-keyPressCommand"),
    };
}

std::unique_ptr<Control> CreateScrollField(const ControlCreation& creation) {
    auto* const edit = new ScrollField;
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto control = std::make_unique<Control>(creation, edit);
    edit->run = [&registry = creation.registry, made = control.get(), edit](const char* flag) {
        registry.Run(*made, flag, {Value(edit->toPlainText().toStdString())});
    };
    return control;
}

} // namespace

void RegisterTextFieldCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    table.Add({"textField", Family::Control, LineFlags() + CommonFlags(), CreateTextField});
    table.Add({"textFieldGrp", Family::Control, LineFlags() + GroupFlags(),
               [](const auto& creation) { return CreateTextGroup(creation, false); }});
    table.Add({"textFieldButtonGrp", Family::Control, LineFlags() + FieldButtonFlags() + GroupFlags(),
               [](const auto& creation) { return CreateTextGroup(creation, true); }});
    table.Add({"scrollField", Family::Control, ScrollFieldFlags() + CommonFlags(), CreateScrollField});
}

} // namespace lightbox
