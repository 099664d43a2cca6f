// menu, popupMenu, menuBarLayout.

#include "controls/BoxLayoutControl.h"
#include "controls/ControlMenu.h"
#include "controls/ControlRegistry.h"
#include "controls/MenuControl.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"

#include <QMenuBar>
#include <QVBoxLayout>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

/// The flag -deleteAllItems, which empties a menu.
ControlFlag DeleteAllItems(ControlRegistry* registry) {
    return {"-dai",
            "-deleteAllItems",
            {},
            [registry](Control& control, const CommandCall&) {
                // A copy, since each deletion changes the list.
                const auto children = std::vector<Control*>(control.Children());
                for (auto child = children.rbegin(); child != children.rend(); ++child) {
                    registry->Delete(**child);
                }
            },
            nullptr};
}

/// The menu bar of the control or its nearest ancestor that has one. Throws mel::Error when there is none.
QMenuBar* BarFor(Control* parent) {
    for (; parent; parent = parent->Parent()) {
        if (QMenuBar* const bar = parent->MenuBar()) {
            return bar;
        }
    }
    throw mel::Error("There is no window with a menu bar for the menu.");
}

std::unique_ptr<Control> CreateMenu(const ControlCreation& creation) {
    QMenuBar* const bar = BarFor(creation.parent);
    auto* const menu = new ControlMenu(bar);
    auto control = std::make_unique<MenuControl>(creation, menu);
    bar->addMenu(menu);
    bar->show();
    creation.registry.SetCurrentMenu(control.get());
    return control;
}

ControlType MenuType(ControlRegistry* registry) {
    ControlType type;
    type.name = "menu";
    type.family = ControlType::Family::Menu;
    type.flags = MenuFlags() +
                 ControlFlags{DeleteAllItems(registry), NoteFlag("-mn", "-mnemonic", MSyntax::kString),
                              NoteFlag("-hm", "-helpMenu", MSyntax::kBoolean),
                              NoteFlag("-scr", "-scrollable", MSyntax::kBoolean)} +
                 CommonFlags();
    type.alsoFor = {"menuItem", "popupMenu"};
    type.create = CreateMenu;
    return type;
}

ControlFlag ModifierFlag(const char* shortName, const char* longName, Qt::KeyboardModifier modifier) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {MSyntax::kBoolean},
            [flag, modifier](Control& control, const CommandCall& call) {
                auto* const menu = control.As<ControlMenu>();
                menu->openingModifiers.setFlag(modifier, call.Bool(flag.c_str()));
            },
            [modifier](Control& control) {
                return Value(control.As<ControlMenu>()->openingModifiers.testFlag(modifier));
            }};
}

ControlFlag ButtonFlag() {
    return {"-b",
            "-button",
            {MSyntax::kLong},
            [](Control& control, const CommandCall& call) {
                const int button = call.Int("-button");
                control.As<ControlMenu>()->openingButton = button == 1   ? Qt::LeftButton
                                                           : button == 2 ? Qt::MiddleButton
                                                                         : Qt::RightButton;
            },
            [](Control& control) {
                const Qt::MouseButton button = control.As<ControlMenu>()->openingButton;
                return Value(button == Qt::LeftButton ? 1 : button == Qt::MiddleButton ? 2 : 3);
            }};
}

/// The owner of a popup menu: without -parent, the control that was made last, as scripts expect.
Control& PopupOwner(const ControlCreation& creation) {
    Control* owner = creation.parent;
    if (!creation.call.Has("-parent") && owner && !owner->Children().empty()) {
        owner = owner->Children().back();
    }
    if (!owner || !owner->Widget()) {
        creation.call.Fail("There is no control for the popup menu.");
    }
    return *owner;
}

std::unique_ptr<Control> CreatePopup(const ControlCreation& creation) {
    Control& owner = PopupOwner(creation);
    auto* const menu = new ControlMenu(owner.Widget());
    menu->OpenOn(*owner.Widget());
    ControlCreation placed = creation;
    placed.parent = &owner;
    auto control = std::make_unique<MenuControl>(placed, menu);
    creation.registry.SetCurrentMenu(control.get());
    return control;
}

ControlType PopupType(ControlRegistry* registry) {
    ControlType type;
    type.name = "popupMenu";
    type.family = ControlType::Family::Menu;
    type.flags = MenuFlags() +
                 ControlFlags{DeleteAllItems(registry),
                              ButtonFlag(),
                              ModifierFlag("-ctl", "-ctrlModifier", Qt::ControlModifier),
                              ModifierFlag("-alt", "-altModifier", Qt::AltModifier),
                              ModifierFlag("-sh", "-shiftModifier", Qt::ShiftModifier),
                              NoteFlag("-mm", "-markingMenu", MSyntax::kBoolean)} +
                 CommonFlags();
    type.create = CreatePopup;
    return type;
}

class MenuBarLayoutControl : public BoxLayoutControl {
public:
    explicit MenuBarLayoutControl(const ControlCreation& creation)
        : BoxLayoutControl(creation, Qt::Vertical)
        , bar_(new QMenuBar(Widget())) {
        Box().setMenuBar(bar_);
        SetStretches(true, true);
    }
    QMenuBar* MenuBar() override { return bar_; }

private:
    QMenuBar* bar_;
};

ControlType MenuBarLayoutType() {
    ControlType type;
    type.name = "menuBarLayout";
    type.family = ControlType::Family::Layout;
    type.flags =
        ControlFlags{
            ValueFlag<QWidget, bool>(
                "-mbv", "-menuBarVisible",
                [](QWidget& widget, bool on) { widget.layout()->menuBar()->setVisible(on); },
                [](const QWidget& widget) { return !widget.layout()->menuBar()->isHidden(); }),
            QueryFlag("-ma", "-menuArray",
                      [](Control& control) {
                          Value::StringArray names;
                          for (const Control* const child : control.Children()) {
                              if (child->Menu()) {
                                  names.push_back(child->Name());
                              }
                          }
                          return Value(std::move(names));
                      }),
        } +
        LayoutFlags();
    type.create = [](const ControlCreation& creation) {
        return std::make_unique<MenuBarLayoutControl>(creation);
    };
    return type;
}

} // namespace

void RegisterMenuCommands(WindowCommandTable& table) {
    table.Add(MenuType(table.Controls()));
    table.Add(PopupType(table.Controls()));
    table.Add(MenuBarLayoutType());
}

} // namespace lightbox
