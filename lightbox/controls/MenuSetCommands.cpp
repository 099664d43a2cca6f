// menuSet and setMenuMode: which menus the main window shows.

#include "controls/ControlRegistry.h"
#include "controls/MenuSets.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/SyntaxBuilder.h"

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;

Control& MenuArgument(const CommandCall& call, const ControlRegistry& registry, const char* flag) {
    Control& menu = registry.Named(call.String(flag));
    if (!menu.Menu()) {
        call.Fail("\"" + call.String(flag) + "\" is not a menu.");
    }
    return menu;
}

void SetCurrent(const CommandCall& call, MenuSets& sets, const std::string& name) {
    if (!sets.SetCurrent(name)) {
        call.Fail("There is no menu set \"" + name + "\".");
    }
}

/// The set that the call's object names, else the current set.
MenuSets::MenuSet& SetOf(const CommandCall& call, MenuSets& sets) {
    if (call.Objects().empty()) {
        return sets.Current();
    }
    MenuSets::MenuSet* const set = sets.Find(call.Object(0).AsString());
    if (!set) {
        call.Fail("There is no menu set \"" + call.Object(0).AsString() + "\".");
    }
    return *set;
}

Value Query(const CommandCall& call, MenuSets& sets) {
    if (call.Has("-currentMenuSet")) {
        return sets.Current().name;
    }
    if (call.Has("-allMenuSets")) {
        Value::StringArray names;
        for (const MenuSets::MenuSet& set : sets.All()) {
            names.push_back(set.name);
        }
        return names;
    }
    const MenuSets::MenuSet& set = SetOf(call, sets);
    if (call.Has("-label")) {
        return set.label;
    }
    if (call.Has("-menuArray")) {
        Value::StringArray names;
        for (const Control* const menu : set.menus) {
            names.push_back(menu->Name());
        }
        return names;
    }
    if (call.Has("-numberOfMenus")) {
        return static_cast<int>(set.menus.size());
    }
    call.Fail("Nothing was asked for.");
}

void ChangeMenus(const CommandCall& call, ControlRegistry& registry) {
    MenuSets& sets = registry.menuSets();
    if (call.Has("-addMenu")) {
        sets.AddMenu(MenuArgument(call, registry, "-addMenu"));
    }
    if (call.Has("-insertMenu")) {
        sets.AddMenu(MenuArgument(call, registry, "-insertMenu"), call.Int("-insertMenu", 1));
    }
    if (call.Has("-moveMenu")) {
        Control& menu = MenuArgument(call, registry, "-moveMenu");
        sets.RemoveMenu(menu);
        sets.AddMenu(menu, call.Int("-moveMenu", 1));
    }
    if (call.Has("-removeMenu")) {
        sets.RemoveMenu(MenuArgument(call, registry, "-removeMenu"));
    }
}

Value MenuSetCommand(CommandCall& call, ControlRegistry& registry) {
    MenuSets& sets = registry.menuSets();
    if (call.Has("-exists")) {
        return Value(!call.Objects().empty() && sets.Find(call.Object(0).AsString()));
    }
    if (call.IsQuery()) {
        return Query(call, sets);
    }
    if (call.Has("-removeMenuSet")) {
        if (!sets.Find(call.String("-removeMenuSet")) || !sets.RemoveSet(call.String("-removeMenuSet"))) {
            call.Fail("The menu set \"" + call.String("-removeMenuSet") + "\" is current or does not exist.");
        }
        return Value();
    }
    std::string answer;
    if (call.Has("-label")) {
        const std::string& label = call.String("-label");
        if (call.IsEdit()) {
            SetOf(call, sets).label = label;
        } else {
            const std::string name = registry.NewName(
                call.Objects().empty() ? label : call.Object(0).AsString(), "menuSet", nullptr);
            if (sets.Find(name)) {
                call.Fail("Object's name '" + name + "' is not unique.");
            }
            answer = sets.Add(name, label).name;
        }
    }
    if (call.Has("-currentMenuSet")) {
        SetCurrent(call, sets, call.String("-currentMenuSet"));
    }
    ChangeMenus(call, registry);
    return answer.empty() ? sets.Current().name : answer;
}

} // namespace

void RegisterMenuSetCommands(WindowCommandTable& table) {
    constexpr auto text = MSyntax::kString;
    table.Add("menuSet",
              SyntaxBuilder()
                  .Flag("-cms", "-currentMenuSet", text)
                  .Flag("-ams", "-allMenuSets")
                  .Flag("-am", "-addMenu", text)
                  .Flag("-im", "-insertMenu", text, MSyntax::kLong)
                  .Flag("-mm", "-moveMenu", text, MSyntax::kLong)
                  .Flag("-rm", "-removeMenu", text)
                  .Flag("-rms", "-removeMenuSet", text)
                  .Flag("-l", "-label", text)
                  .Flag("-ma", "-menuArray")
                  .Flag("-nm", "-numberOfMenus")
                  .Flag("-hbv", "-hotBoxVisible", MSyntax::kBoolean)
                  .Flag("-per", "-permanent", MSyntax::kBoolean)
                  .Flag("-ex", "-exists")
                  .Query()
                  .Edit()
                  .Objects(0, 1),
              MenuSetCommand);
    table.Add("setMenuMode", SyntaxBuilder().Objects(1, 1), [](CommandCall& call, ControlRegistry& registry) {
        SetCurrent(call, registry.menuSets(), call.Object(0).AsString());
        return Value(registry.menuSets().Current().name);
    });
}

} // namespace lightbox
