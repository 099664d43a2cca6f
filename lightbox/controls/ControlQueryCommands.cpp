// The commands that work on controls of any type: deleteUI, setParent, control, layout, lsUI and so on.

#include "controls/ControlRegistry.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/SyntaxBuilder.h"

#include <QApplication>
#include <QWidget>

#include <memory>
#include <set>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;
using Family = ControlType::Family;

bool IsMenu(const Control& control) {
    return control.Menu() != nullptr;
}

/// A flag of deleteUI and lsUI that restricts the call to some controls.
struct FilterRow {
    const char* shortFlag;
    const char* longFlag;
    bool (*matches)(const Control&);
};

constexpr FilterRow DELETE_FILTERS[] = {
    {"-wnd", "-window", [](const Control& c) { return c.Type().family == Family::Window; }},
    {"-m", "-menu", IsMenu},
    {"-mi", "-menuItem", [](const Control& c) { return c.Type().family == Family::MenuItem; }},
    {"-c", "-control", [](const Control& c) { return c.Widget() && !IsMenu(c); }},
    {"-lay", "-layout", [](const Control& c) { return c.Type().family == Family::Layout; }},
    {"-ctc", "-toolContext", [](const Control&) { return false; }},
    {"-ric", "-radioMenuItemCollection",
     [](const Control& c) { return c.Type().name == "radioMenuItemCollection"; }},
    {"-rc", "-radioCollection", [](const Control& c) { return c.Type().name == "radioCollection"; }},
    {"-pnl", "-panel", [](const Control& c) { return c.Type().family == Family::Panel; }},
    {"-ed", "-editor", [](const Control& c) { return c.Type().family == Family::Panel; }},
};

/// Whether the call's flags select the control; without any of the flags, every control is selected.
template <std::size_t Count>
bool IsWanted(const CommandCall& call, const FilterRow (&rows)[Count], const Control& control) {
    bool isAny = true;
    for (const FilterRow& row : rows) {
        if (call.Has(row.longFlag)) {
            isAny = false;
            if (row.matches(control)) {
                return true;
            }
        }
    }
    return isAny;
}

Value DeleteUi(CommandCall& call, ControlRegistry& registry) {
    for (const std::string& name : call.ObjectNames()) {
        Control* const control = registry.Find(name);
        if (!control || !IsWanted(call, DELETE_FILTERS, *control)) {
            call.Fail("Object '" + name + "' not found.");
        }
        if (control == &registry.MainWindow()) {
            call.Fail("The main window cannot be deleted.");
        }
        registry.Delete(*control);
    }
    return Value();
}

Control* Above(const Control* control) {
    return control ? control->Parent() : nullptr;
}

Value SetMenuParent(const CommandCall& call, ControlRegistry& registry) {
    if (call.IsQuery()) {
        return registry.CurrentMenu() ? registry.CurrentMenu()->Path() : std::string();
    }
    const bool isUp = call.Has("-upLevel") || (!call.Objects().empty() && call.Object(0).AsString() == "..");
    Control* menu = registry.CurrentMenu();
    if (call.Has("-topLevel")) {
        while (menu && Above(menu) && Above(menu)->Menu()) {
            menu = Above(menu);
        }
    } else if (isUp) {
        Control* const above = Above(menu);
        if (!above) {
            call.Fail("There is no menu above the current one.");
        }
        menu = above->ItemHost() ? above : nullptr;
    } else {
        menu = &registry.Named(call.Object(0).AsString());
        if (!menu->ItemHost()) {
            call.Fail("\"" + call.Object(0).AsString() + "\" is not a menu.");
        }
    }
    registry.SetCurrentMenu(menu);
    return menu ? menu->Path() : std::string();
}

Value SetParent(CommandCall& call, ControlRegistry& registry) {
    if (call.Has("-menu")) {
        return SetMenuParent(call, registry);
    }
    Control* current = registry.CurrentParent();
    if (call.IsQuery()) {
        return current ? current->Path() : std::string("NONE");
    }
    if (call.Has("-topLevel")) {
        current = current ? current->Window() : nullptr;
    } else if (call.Has("-upLevel") || (!call.Objects().empty() && call.Object(0).AsString() == "..")) {
        if (!Above(current)) {
            call.Fail("There is no layout above the current one.");
        }
        current = Above(current);
    } else {
        Control& named = registry.Named(call.Object(0).AsString());
        // For layouts, the parent of a menu is its window.
        current = named.Menu() ? named.Window() : &named;
        if (named.Menu()) {
            registry.SetCurrentMenu(&named);
        }
    }
    if (!current || !current->TakesChildren()) {
        call.Fail("\"" + (current ? current->Path() : std::string()) + "\" cannot hold controls.");
    }
    registry.SetCurrentParent(current);
    return current->Path();
}

constexpr FilterRow LIST_FILTERS[] = {
    {"-wnd", "-windows", [](const Control& c) { return c.Type().family == Family::Window; }},
    {"-p", "-panels", [](const Control& c) { return c.Type().family == Family::Panel; }},
    {"-ed", "-editors", [](const Control& c) { return c.Type().family == Family::Panel; }},
    {"-m", "-menus", IsMenu},
    {"-mi", "-menuItems", [](const Control& c) { return c.Type().family == Family::MenuItem; }},
    {"-ctl", "-controls", [](const Control& c) { return c.Type().family == Family::Control; }},
    {"-cl", "-controlLayouts", [](const Control& c) { return c.Type().family == Family::Layout; }},
    {"-col", "-collection", [](const Control& c) { return c.Type().family == Family::Collection; }},
    {"-rc", "-radioMenuItemCollections",
     [](const Control& c) { return c.Type().name == "radioMenuItemCollection"; }},
};

bool IsOfType(const CommandCall& call, const Control& control) {
    for (unsigned use = 0; use < call.UseCount("-type"); ++use) {
        if (call.String("-type", 0, use) == control.Type().name) {
            return true;
        }
    }
    return call.UseCount("-type") == 0;
}

Value ListUi(CommandCall& call, ControlRegistry& registry) {
    Value::StringArray names;
    for (const Control* const control : registry.All()) {
        if (IsOfType(call, *control) && IsWanted(call, LIST_FILTERS, *control)) {
            names.push_back(call.Has("-long") ? control->Path() : control->Name());
        }
    }
    return names;
}

Value ObjectType(CommandCall& call, ControlRegistry& registry) {
    const Control& control = registry.Named(call.Object(0).AsString());
    if (!call.Has("-isType")) {
        return control.Type().name;
    }
    return Value(control.Type().name == call.String("-isType"));
}

Value SetFocus(CommandCall& call, ControlRegistry& registry) {
    const Control& control = registry.Named(call.Object(0).AsString());
    if (QWidget* const widget = control.Widget()) {
        if (control.Type().family != Family::Panel) {
            widget->activateWindow();
        }
        widget->setFocus(Qt::OtherFocusReason);
    }
    return Value();
}

Value WaitCursor(CommandCall& call, ControlRegistry&) {
    if (call.IsQuery()) {
        return Value(QApplication::overrideCursor() != nullptr);
    }
    if (call.Has("-state")) {
        call.Bool("-state") ? QApplication::setOverrideCursor(Qt::WaitCursor)
                            : QApplication::restoreOverrideCursor();
    }
    return Value();
}

/// The names of the UI templates that scripts set. Templates have no effect: the theme sets the style.
class Templates {
public:
    Value Define(const CommandCall& call) {
        const std::string name = call.Objects().empty() ? "uiTemplate1" : call.Object(0).AsString();
        if (call.Has("-exists")) {
            return Value(names_.count(name) != 0);
        }
        names_.insert(name);
        return name;
    }
    Value Set(const CommandCall& call) {
        if (call.IsQuery()) {
            return stack_.empty() ? std::string() : stack_.back();
        }
        if (call.Has("-popTemplate")) {
            if (!stack_.empty()) {
                stack_.pop_back();
            }
            return Value();
        }
        const std::string name = call.StringOr(
            "-pushTemplate", call.ObjectNames().empty() ? std::string() : call.ObjectNames().front());
        if (names_.count(name) == 0) {
            call.Fail("There is no template \"" + name + "\".");
        }
        stack_.push_back(name);
        return Value();
    }

private:
    std::set<std::string> names_{"DefaultTemplate", "OptionBoxTemplate"};
    std::vector<std::string> stack_;
};

template <std::size_t Count>
SyntaxBuilder FilterSyntax(const FilterRow (&rows)[Count]) {
    SyntaxBuilder syntax;
    for (const FilterRow& row : rows) {
        syntax.Flag(row.shortFlag, row.longFlag);
    }
    return syntax;
}

} // namespace

void RegisterControlQueryCommands(WindowCommandTable& table) {
    // These two edit and query the common flags of any control.
    table.Add({"control", Family::Control, CommonFlags(), nullptr, {"*"}});
    table.Add({"layout", Family::Layout, LayoutFlags(), nullptr, {"*"}});
    table.Add("deleteUI", FilterSyntax(DELETE_FILTERS).Objects(1), DeleteUi);
    table.Add("setParent",
              SyntaxBuilder()
                  .Flag("-m", "-menu")
                  .Flag("-top", "-topLevel")
                  .Flag("-u", "-upLevel")
                  .Query()
                  .Objects(0, 1),
              SetParent);
    table.Add(
        "lsUI",
        FilterSyntax(LIST_FILTERS).Flag("-l", "-long").Flag("-typ", "-type", MSyntax::kString).MultiUse(),
        ListUi);
    table.Add("objectTypeUI", SyntaxBuilder().Flag("-i", "-isType", MSyntax::kString).Objects(1, 1),
              ObjectType);
    const auto templates = std::make_shared<Templates>();
    table.Add("uiTemplate", SyntaxBuilder().Flag("-ex", "-exists").Objects(0, 1),
              [templates](CommandCall& call, ControlRegistry&) { return templates->Define(call); });
    table.Add("setUITemplate",
              SyntaxBuilder()
                  .Flag("-pst", "-pushTemplate", MSyntax::kString)
                  .Flag("-ppt", "-popTemplate")
                  .Query()
                  .Objects(0, 1),
              [templates](CommandCall& call, ControlRegistry&) { return templates->Set(call); });
    table.Add("setFocus", SyntaxBuilder().Objects(1, 1), SetFocus);
    table.Add("waitCursor", SyntaxBuilder().Flag("-st", "-state", MSyntax::kBoolean).Query(), WaitCursor);
}

} // namespace lightbox
