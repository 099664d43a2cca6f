#pragma once

#include <string>
#include <vector>

namespace lightbox {

class Control;

/// The sets of menus that the main window's menu bar switches between. A menu that belongs to a set is seen
/// while that set is the current one; all others always.
class MenuSets {
public:
    struct MenuSet {
        std::string name;
        std::string label;
        std::vector<Control*> menus;
    };

    MenuSets();

    const std::vector<MenuSet>& All() const { return sets_; }
    /// Null when there is none.
    MenuSet* Find(const std::string& name);
    MenuSet& Current() { return *Find(current_); }
    /// False when there is no such set.
    bool SetCurrent(const std::string& name);
    MenuSet& Add(const std::string& name, const std::string& label);
    /// False for the set that is current.
    bool RemoveSet(const std::string& name);

    /// Puts a menu into the current set, at the end or at an index.
    void AddMenu(Control& menu, int index = -1);
    void RemoveMenu(Control& menu);
    /// A control goes: no set has it any more.
    void Remove(Control& menu);

private:
    void Refresh();

    std::vector<MenuSet> sets_;
    std::string current_;
};

} // namespace lightbox
