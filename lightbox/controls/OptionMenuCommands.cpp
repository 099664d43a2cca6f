// optionMenu and optionMenuGrp.

#include "controls/ControlRegistry.h"
#include "controls/GroupControl.h"
#include "controls/MenuControl.h"
#include "controls/OptionMenu.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"

#include <QAction>
#include <QLabel>

namespace lightbox {

namespace {

using mel::Value;

/// An option menu with its label; without a label it has no label column.
class OptionMenuControl : public GroupControl {
public:
    explicit OptionMenuControl(const ControlCreation& creation)
        : GroupControl(creation)
        , menu_(new OptionMenu) {
        AddPart(menu_);
        Finish();
        if (Label() && creation.type.name == "optionMenu") {
            // An optionMenu's label is as wide as its text.
            Label()->setMinimumWidth(0);
            Label()->setMaximumWidth(QWIDGETSIZE_MAX);
        }
        QObject::connect(
            menu_, QOverload<int>::of(&QComboBox::activated), menu_, [this, &registry = creation.registry] {
                registry.Run(*this, "-changeCommand", {Value(menu_->currentText().toStdString())});
            });
    }
    QWidget* ItemHost() const override { return menu_; }
    OptionMenu& Menu() const { return *menu_; }

private:
    OptionMenu* menu_;
};

Value ItemNames(const Control& control, bool whole) {
    Value::StringArray names;
    for (const Control* const item : ItemsOf(control)) {
        names.push_back(whole ? item->Path() : item->Name());
    }
    return names;
}

ControlFlags OptionFlags(ControlRegistry* registry) {
    return {
        ValueFlag<OptionMenuControl, int>(
            "-sl", "-select",
            [](const OptionMenuControl& control, int index) {
                if (index < 1 || index > control.Menu().count()) {
                    throw mel::Error("\"" + control.Path() + "\" has no item " + std::to_string(index) + ".");
                }
                control.Menu().setCurrentIndex(index - 1);
            },
            [](const OptionMenuControl& control) { return control.Menu().currentIndex() + 1; }),
        ValueFlag<OptionMenuControl, std::string>(
            "-v", "-value",
            [](const OptionMenuControl& control, const std::string& text) {
                const int index = control.Menu().findText(ToQt(text));
                if (index < 0) {
                    throw mel::Error("\"" + control.Path() + "\" has no item \"" + text + "\".");
                }
                control.Menu().setCurrentIndex(index);
            },
            [](const OptionMenuControl& control) { return control.Menu().currentText().toStdString(); }),
        ActionFlag<OptionMenuControl>("-dai", "-deleteAllItems",
                                      [registry](const OptionMenuControl& control) {
                                          for (Control* const item : ItemsOf(control)) {
                                              // Remove the entry now, not when the event loop runs next.
                                              control.Menu().removeAction(item->Action());
                                              registry->Delete(*item);
                                          }
                                      }),
        QueryFlag("-ni", "-numberOfItems",
                  [](Control& control) { return dynamic_cast<OptionMenuControl&>(control).Menu().count(); }),
        QueryFlag("-ill", "-itemListLong", [](Control& control) { return ItemNames(control, true); }),
        QueryFlag("-ils", "-itemListShort", [](Control& control) { return ItemNames(control, false); }),
        ScriptFlag("-cc", "-changeCommand"),
    };
}

std::unique_ptr<Control> CreateOptionMenu(const ControlCreation& creation) {
    auto control = std::make_unique<OptionMenuControl>(creation);
    creation.registry.SetCurrentMenu(control.get());
    return control;
}

} // namespace

void RegisterOptionMenuCommands(WindowCommandTable& table) {
    for (const char* const name : {"optionMenu", "optionMenuGrp"}) {
        table.Add({name, ControlType::Family::Control, OptionFlags(table.Controls()) + GroupFlags(),
                   CreateOptionMenu});
    }
}

} // namespace lightbox
