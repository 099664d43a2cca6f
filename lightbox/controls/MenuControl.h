#pragma once

#include "controls/Control.h"
#include "controls/ControlType.h"

class QActionGroup;

namespace lightbox {

class ControlMenu;
class ControlRegistry;

/// A menu, submenu or popup menu of MEL. It runs its -postMenuCommand just before the menu is shown.
class MenuControl : public Control {
public:
    /// Takes ownership of the menu.
    MenuControl(const ControlCreation& creation, ControlMenu* menu);

    bool TakesChildren() const override { return false; }

private:
    void AboutToShow();

    ControlRegistry& registry_;
};

/// The common flags of all menus.
const ControlFlags& MenuFlags();

/// Escapes ampersands, which Qt would take for mnemonics. PlainLabel() undoes it.
QString MenuLabel(const QString& text);
QString PlainLabel(QString label);

/// The items of a menu or option menu in display order, dividers included.
std::vector<Control*> ItemsOf(const Control& menu);

} // namespace lightbox
