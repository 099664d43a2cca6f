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

/// The flag -deleteAllItems, which empties a menu.
ControlFlag DeleteAllItems(ControlRegistry* registry) {
    return ActionFlag<Control>("-dai", "-deleteAllItems", [registry](const Control& control) {
        // A copy, since each deletion changes the list.
        const auto children = std::vector<Control*>(control.Children());
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            registry->Delete(**child);
        }
    });
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

ControlFlags BarMenuFlags(ControlRegistry* registry) {
    return MenuFlags() +
           ControlFlags{DeleteAllItems(registry), NoteFlag("-mn", "-mnemonic", MSyntax::kString),
                        NoteFlag("-hm", "-helpMenu", MSyntax::kBoolean),
                        NoteFlag("-scr", "-scrollable", MSyntax::kBoolean)} +
           CommonFlags();
}

ControlFlag ModifierFlag(const char* shortName, const char* longName, Qt::KeyboardModifier modifier) {
    return ValueFlag<ControlMenu, bool>(
        shortName, longName,
        [modifier](ControlMenu& menu, bool on) { menu.openingModifiers.setFlag(modifier, on); },
        [modifier](const ControlMenu& menu) { return menu.openingModifiers.testFlag(modifier); });
}

ControlFlag ButtonFlag() {
    return ValueFlag<ControlMenu, int>(
        "-b", "-button",
        [](ControlMenu& menu, int button) {
            menu.openingButton = button == 1   ? Qt::LeftButton
                                 : button == 2 ? Qt::MiddleButton
                                               : Qt::RightButton;
        },
        [](const ControlMenu& menu) {
            return menu.openingButton == Qt::LeftButton ? 1 : menu.openingButton == Qt::MiddleButton ? 2 : 3;
        });
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

ControlFlags PopupFlags(ControlRegistry* registry) {
    return MenuFlags() +
           ControlFlags{DeleteAllItems(registry),
                        ButtonFlag(),
                        ModifierFlag("-ctl", "-ctrlModifier", Qt::ControlModifier),
                        ModifierFlag("-alt", "-altModifier", Qt::AltModifier),
                        ModifierFlag("-sh", "-shiftModifier", Qt::ShiftModifier),
                        NoteFlag("-mm", "-markingMenu", MSyntax::kBoolean)} +
           CommonFlags();
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

ControlFlags MenuBarLayoutFlags() {
    return ControlFlags{
               ValueFlag<QWidget, bool>(
                   "-mbv", "-menuBarVisible",
                   [](const QWidget& widget, bool on) { widget.layout()->menuBar()->setVisible(on); },
                   [](const QWidget& widget) { return !widget.layout()->menuBar()->isHidden(); }),
               QueryFlag("-ma", "-menuArray",
                         ChildNames([](const Control& child) { return child.Menu() != nullptr; })),
           } +
           LayoutFlags();
}

} // namespace

void RegisterMenuCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    table.Add({"menu", Family::Menu, BarMenuFlags(table.Controls()), CreateMenu, {"menuItem", "popupMenu"}});
    table.Add({"popupMenu", Family::Menu, PopupFlags(table.Controls()), CreatePopup});
    table.Add({"menuBarLayout", Family::Layout, MenuBarLayoutFlags(), Make<MenuBarLayoutControl>});
}

} // namespace lightbox
