#include "controls/MenuSets.h"

#include "controls/Control.h"

#include <QAction>

#include <algorithm>

namespace lightbox {

namespace {

bool Has(const MenuSets::MenuSet& set, const Control* menu) {
    return std::find(set.menus.begin(), set.menus.end(), menu) != set.menus.end();
}

} // namespace

MenuSets::MenuSets()
    : sets_{{"modelingMenuSet", "Modeling", {}},
            {"riggingMenuSet", "Rigging", {}},
            {"animationMenuSet", "Animation", {}},
            {"dynamicsMenuSet", "FX", {}},
            {"renderingMenuSet", "Rendering", {}}}
    , current_("animationMenuSet") {}

MenuSets::MenuSet* MenuSets::Find(const std::string& name) {
    const auto found =
        std::find_if(sets_.begin(), sets_.end(), [&](const MenuSet& set) { return set.name == name; });
    return found == sets_.end() ? nullptr : &*found;
}

bool MenuSets::SetCurrent(const std::string& name) {
    if (!Find(name)) {
        return false;
    }
    current_ = name;
    Refresh();
    return true;
}

MenuSets::MenuSet& MenuSets::Add(const std::string& name, const std::string& label) {
    sets_.push_back({name, label, {}});
    return sets_.back();
}

bool MenuSets::RemoveSet(const std::string& name) {
    if (name == current_) {
        return false;
    }
    sets_.erase(
        std::remove_if(sets_.begin(), sets_.end(), [&](const MenuSet& set) { return set.name == name; }),
        sets_.end());
    Refresh();
    return true;
}

void MenuSets::AddMenu(Control& menu, int index) {
    MenuSet& set = Current();
    if (!Has(set, &menu)) {
        const bool isInside = index >= 0 && static_cast<std::size_t>(index) < set.menus.size();
        set.menus.insert(isInside ? set.menus.begin() + index : set.menus.end(), &menu);
    }
    Refresh();
}

void MenuSets::RemoveMenu(Control& menu) {
    auto& menus = Current().menus;
    menus.erase(std::remove(menus.begin(), menus.end(), &menu), menus.end());
    if (QAction* const action = menu.Action()) {
        action->setVisible(true);
    }
    Refresh();
}

void MenuSets::Remove(Control& menu) {
    for (MenuSet& set : sets_) {
        set.menus.erase(std::remove(set.menus.begin(), set.menus.end(), &menu), set.menus.end());
    }
}

void MenuSets::Refresh() {
    const MenuSet& current = Current();
    for (const MenuSet& set : sets_) {
        for (const Control* const menu : set.menus) {
            if (QAction* const action = menu->Action()) {
                action->setVisible(Has(current, menu));
            }
        }
    }
}

} // namespace lightbox
