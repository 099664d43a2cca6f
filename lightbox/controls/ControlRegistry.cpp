#include "controls/ControlRegistry.h"

#include "controls/ControlType.h"
#include "controls/MenuSets.h"
#include "controls/WindowControl.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/ScriptJobs.h"
#include "mel/StatementChunk.h"
#include "scene/Host.h"
#include "text/Quoted.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QWidget>

#include <algorithm>
#include <cctype>

namespace lightbox {

namespace {

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string ValidName(std::string name) {
    for (char& letter : name) {
        const auto byte = static_cast<unsigned char>(letter);
        if (byte < 0x80 && !std::isalnum(byte) && letter != '_') {
            letter = '_';
        }
    }
    if (!name.empty() && std::isdigit(static_cast<unsigned char>(name.front()))) {
        name.insert(name.begin(), '_');
    }
    return name;
}

/// The script with #1, #2 and so on replaced by the values. Strings are escaped, since scripts put them in
/// quotes.
std::string Filled(const std::string& script, const std::vector<mel::Value>& values) {
    std::string filled;
    for (std::size_t i = 0; i < script.size(); ++i) {
        const bool isPlace = script[i] == '#' && i + 1 < script.size() && script[i + 1] >= '1' &&
                             static_cast<std::size_t>(script[i + 1] - '0') <= values.size();
        if (!isPlace) {
            filled += script[i];
            continue;
        }
        const mel::Value& value = values[static_cast<std::size_t>(script[++i] - '1')];
        const std::string quoted = Quoted(value.AsString());
        filled += value.IsString() ? quoted.substr(1, quoted.size() - 2) : value.AsString();
    }
    return filled;
}

} // namespace

ControlRegistry::ControlRegistry(Host& host, QMainWindow& mainWindow)
    : host_(host)
    , menuSets_(std::make_unique<MenuSets>()) {
    mainWindow.setObjectName("MayaWindow");
    mainWindow_ = &Add(std::make_unique<MainWindowControl>(mainWindow));
    currentParent_ = mainWindow_;
}

ControlRegistry::~ControlRegistry() {
    // Delete the objects now, since no event loop may run any more. Windows come first: they delete their
    // contents.
    for (const std::unique_ptr<Control>& control : controls_) {
        if (QObject* const object = control->Object()) {
            object->disconnect(this);
        }
    }
    std::vector<std::unique_ptr<Control>> controls = std::move(controls_);
    controls_.clear();
    for (const std::unique_ptr<Control>& control : controls) {
        if (control.get() != mainWindow_ && !IsAdopted(*control)) {
            delete control->Object();
        }
    }
}

Control* ControlRegistry::Find(const std::string& name) const {
    const bool isPath = name.find('|') != std::string::npos;
    Control* first = nullptr;
    for (const std::unique_ptr<Control>& control : controls_) {
        if (!isPath && control->Name() != name) {
            continue;
        }
        if (isPath) {
            const std::string path = control->Path();
            if (path != name && !EndsWith(path, (name.front() == '|' ? "" : "|") + name)) {
                continue;
            }
        }
        if (control->Parent() == currentParent_ || control->Parent() == currentMenu_) {
            return control.get();
        }
        first = first ? first : control.get();
    }
    return name.empty() ? nullptr : first;
}

Control& ControlRegistry::Named(const std::string& name) const {
    Control* const control = Find(name);
    if (!control) {
        throw mel::Error("Object '" + name + "' not found.");
    }
    return *control;
}

QWidget* ControlRegistry::FindWidget(const std::string& name) const {
    if (const Control* const control = Find(name)) {
        return control->Widget();
    }
    const QString last = ToQt(name).section(QLatin1Char('|'), -1);
    if (last.isEmpty()) {
        return nullptr;
    }
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->objectName() == last) {
            return window;
        }
        if (auto* const found = window->findChild<QWidget*>(last)) {
            return found;
        }
    }
    return nullptr;
}

std::vector<Control*> ControlRegistry::All() const {
    std::vector<Control*> all;
    all.reserve(controls_.size());
    for (const std::unique_ptr<Control>& control : controls_) {
        all.push_back(control.get());
    }
    return all;
}

Control& ControlRegistry::Add(std::unique_ptr<Control> control) {
    Control& added = *control;
    controls_.push_back(std::move(control));
    if (added.Parent()) {
        added.Parent()->children_.push_back(&added);
    }
    if (QObject* const object = added.Object()) {
        object->setObjectName(ToQt(added.Name()));
        connect(object, &QObject::destroyed, this, [this, gone = &added] { Forget(*gone); });
    }
    return added;
}

Control& ControlRegistry::Adopt(const std::string& typeName, const std::string& name, QWidget& widget,
                                bool isPanel) {
    std::unique_ptr<ControlType>& type = adoptedTypes_[typeName];
    if (!type) {
        type = std::make_unique<ControlType>();
        type->name = typeName;
        type->family = isPanel ? ControlType::Family::Panel : ControlType::Family::Control;
        type->flags = CommonFlags();
    }
    return Add(std::make_unique<Control>(*type, name, mainWindow_, &widget));
}

bool ControlRegistry::IsAdopted(const Control& control) const {
    const auto type = adoptedTypes_.find(control.Type().name);
    return type != adoptedTypes_.end() && type->second.get() == &control.Type();
}

/// Removes all references to a control. Its children have to be deleted before.
void ControlRegistry::Detach(Control& control) {
    if (Control* const parent = control.parent_) {
        parent->RemoveChild(control);
        auto& siblings = parent->children_;
        siblings.erase(std::remove(siblings.begin(), siblings.end(), &control), siblings.end());
    }
    for (Control** const current :
         {&currentParent_, &currentMenu_, &currentItemCollection, &currentButtonCollection}) {
        if (*current == &control) {
            *current = current == &currentParent_ ? control.parent_ : nullptr;
        }
    }
    // Without a current parent, the next control goes into the main window.
    currentParent_ = currentParent_ ? currentParent_ : mainWindow_;
    menuSets_->Remove(control);
    host_.interpreter().Jobs().KillWithParent(control.Path());
    host_.interpreter().Jobs().KillWithParent(control.Name());
}

/// Deletes a control and its children, but not the control's own Qt object.
void ControlRegistry::Forget(Control& control) {
    while (!control.children_.empty()) {
        Delete(*control.children_.back());
    }
    Detach(control);
    controls_.erase(std::remove_if(controls_.begin(), controls_.end(),
                                   [&control](const auto& each) { return each.get() == &control; }),
                    controls_.end());
}

void ControlRegistry::Delete(Control& control) {
    if (QObject* const object = control.Object()) {
        object->disconnect(this);
    }
    QPointer<QObject> object = control.Object();
    const bool isOwned = !IsAdopted(control);
    while (!control.children_.empty()) {
        Delete(*control.children_.back());
    }
    if (object && isOwned) {
        object->setObjectName(QString());
        if (auto* const menu = qobject_cast<QMenu*>(object)) {
            menu->menuAction()->setVisible(false);
            menu->hideTearOffMenu();
        } else if (auto* const widget = qobject_cast<QWidget*>(object)) {
            widget->hide();
        } else if (auto* const action = qobject_cast<QAction*>(object)) {
            for (QWidget* const host : action->associatedWidgets()) {
                host->removeAction(action);
            }
        }
    }
    Forget(control);
    if (object && isOwned) {
        // The object may be handling an event just now.
        object->deleteLater();
    }
}

bool ControlRegistry::IsTaken(const std::string& name, const Control* parent) const {
    return std::any_of(controls_.begin(), controls_.end(), [&](const auto& control) {
        return control->Name() == name && control->Parent() == parent;
    });
}

std::string ControlRegistry::NewName(const std::string& wanted, const std::string& typeName,
                                     const Control* parent) const {
    if (!wanted.empty()) {
        // Drop the path before the name: the parent is given separately.
        std::string name = ValidName(wanted.substr(wanted.rfind('|') + 1));
        if (name.empty() || IsTaken(name, parent)) {
            throw mel::Error("Object's name '" + wanted + "' is not unique.");
        }
        return name;
    }
    int& number = lastNumbers_[typeName];
    std::string name;
    do {
        name = typeName + std::to_string(++number);
    } while (Find(name));
    return name;
}

void ControlRegistry::Run(const Control& control, const std::string& flag,
                          const std::vector<mel::Value>& values) {
    const auto script = control.scripts.find(flag);
    if (script != control.scripts.end() && !script->second.empty()) {
        RunScript(script->second, values);
    }
}

void ControlRegistry::RunScript(const std::string& script, const std::vector<mel::Value>& values) {
    const std::string text = Filled(script, values);
    mel::Interpreter& interpreter = host_.interpreter();
    const mel::StatementChunk chunk(host_.undo(), !interpreter.IsRunning());
    interpreter.ExecuteReporting(text);
}

} // namespace lightbox
