// optionMenu and optionMenuGrp.

#include "controls/ControlRegistry.h"
#include "controls/GroupControl.h"
#include "controls/MenuControl.h"
#include "controls/OptionMenu.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <QAction>
#include <QLabel>

namespace lightbox {

namespace {

using mel::CommandCall;
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

OptionMenu& MenuOf(Control& control) {
    return dynamic_cast<OptionMenuControl&>(control).Menu();
}

Value ItemNames(Control& control, bool whole) {
    Value::StringArray names;
    for (const Control* const item : ItemsOf(control)) {
        names.push_back(whole ? item->Path() : item->Name());
    }
    return names;
}

ControlFlags OptionFlags(ControlRegistry* registry) {
    return {
        {"-sl",
         "-select",
         {MSyntax::kLong},
         [](Control& control, const CommandCall& call) {
             const int index = call.Int("-select");
             if (index < 1 || index > MenuOf(control).count()) {
                 call.Fail("\"" + control.Path() + "\" has no item " + std::to_string(index) + ".");
             }
             MenuOf(control).setCurrentIndex(index - 1);
         },
         [](Control& control) { return Value(MenuOf(control).currentIndex() + 1); }},
        {"-v",
         "-value",
         {MSyntax::kString},
         [](Control& control, const CommandCall& call) {
             const int index = MenuOf(control).findText(ToQt(call.String("-value")));
             if (index < 0) {
                 call.Fail("\"" + control.Path() + "\" has no item \"" + call.String("-value") + "\".");
             }
             MenuOf(control).setCurrentIndex(index);
         },
         [](Control& control) { return Value(MenuOf(control).currentText().toStdString()); }},
        {"-dai",
         "-deleteAllItems",
         {},
         [registry](Control& control, const CommandCall&) {
             for (Control* const item : ItemsOf(control)) {
                 // Remove the entry now, not when the event loop runs next.
                 MenuOf(control).removeAction(item->Action());
                 registry->Delete(*item);
             }
         },
         nullptr},
        QueryFlag("-ni", "-numberOfItems", [](Control& control) { return Value(MenuOf(control).count()); }),
        QueryFlag("-ill", "-itemListLong", [](Control& control) { return ItemNames(control, true); }),
        QueryFlag("-ils", "-itemListShort", [](Control& control) { return ItemNames(control, false); }),
        ScriptFlag("-cc", "-changeCommand"),
    };
}

} // namespace

void RegisterOptionMenuCommands(WindowCommandTable& table) {
    for (const char* const name : {"optionMenu", "optionMenuGrp"}) {
        ControlType type;
        type.name = name;
        type.flags = OptionFlags(table.Controls()) + GroupFlags();
        type.create = [](const ControlCreation& creation) {
            auto control = std::make_unique<OptionMenuControl>(creation);
            creation.registry.SetCurrentMenu(control.get());
            return control;
        };
        table.Add(std::move(type));
    }
}

} // namespace lightbox
