#pragma once

#include "controls/Control.h"
#include "controls/ControlType.h"

class QActionGroup;

namespace lightbox {

class ControlMenu;
class ControlRegistry;

/// A menu, submenu or popup menu of MEL. It runs its -postMenuCommand when it is about to be seen.
class MenuControl : public Control {
public:
    /// Takes the menu over.
    MenuControl(const ControlCreation& creation, ControlMenu* menu);

    bool TakesChildren() const override { return false; }

private:
    void AboutToShow();

    ControlRegistry& registry_;
};

/// The flags of everything that is a menu.
const ControlFlags& MenuFlags();

/// A label as Qt takes it: an ampersand is one.
QString MenuLabel(const QString& text);
QString PlainLabel(QString label);

/// The items of a menu or option menu, dividers included, in their order.
std::vector<Control*> ItemsOf(const Control& menu);

} // namespace lightbox
