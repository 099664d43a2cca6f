// The common part of all control commands: create, edit, query, -exists.

#include "controls/WindowCommandTable.h"

#include "controls/ControlRegistry.h"
#include "mel/CommandRegistry.h"
#include "mel/Error.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

bool Accepts(const ControlType& type, const Control& control) {
    const std::string& name = control.Type().name;
    return type.name == name || std::any_of(type.alsoFor.begin(), type.alsoFor.end(),
                                            [&](const auto& other) { return other == name || other == "*"; });
}

std::string ObjectName(const CommandCall& call) {
    return call.Objects().empty() ? std::string() : call.Object(0).AsString();
}

/// The control that a call edits or queries. A layout or menu without a name is the current one.
Control& Edited(const ControlType& type, const CommandCall& call, const ControlRegistry& registry) {
    const std::string name = ObjectName(call);
    Control* control = registry.Find(name);
    if (name.empty() && type.family == ControlType::Family::Menu) {
        control = registry.CurrentMenu();
    } else if (name.empty() && type.family == ControlType::Family::Layout) {
        control = registry.CurrentParent();
    }
    if (!control || !Accepts(type, *control)) {
        call.Fail("Object '" + name + "' not found.");
    }
    return *control;
}

void Apply(const ControlType& type, Control& control, const CommandCall& call) {
    for (const ControlFlag& flag : type.flags) {
        if (!call.Has(flag.longName.c_str())) {
            continue;
        }
        if (flag.set) {
            flag.set(control, call);
        } else if (call.IsEdit()) {
            call.Fail("The flag '" + flag.longName + "' cannot be edited.");
        }
    }
}

Value Query(const ControlType& type, Control& control, const CommandCall& call) {
    for (const ControlFlag& flag : type.flags) {
        if (call.Has(flag.longName.c_str())) {
            if (!flag.get) {
                call.Fail("The flag '" + flag.longName + "' cannot be queried.");
            }
            return flag.get(control);
        }
    }
    if (call.Has("-parent")) {
        return control.Parent() ? control.Parent()->Path() : std::string();
    }
    call.Fail("Nothing was asked for.");
}

/// The parent of a new control: the one that -parent names, else the current layout or menu.
Control* ParentFor(const ControlType& type, const CommandCall& call, const ControlRegistry& registry) {
    using Family = ControlType::Family;
    if (type.family == Family::Window) {
        return nullptr;
    }
    if (call.Has("-parent")) {
        return &registry.Named(call.String("-parent"));
    }
    if (type.family == Family::MenuItem) {
        return registry.CurrentMenu();
    }
    return registry.CurrentParent();
}

Value Create(const ControlType& type, const CommandCall& call, ControlRegistry& registry) {
    Control* const parent = ParentFor(type, call, registry);
    const std::string name = registry.NewName(ObjectName(call), type.name, parent);
    Control& control = registry.Add(type.create({registry, type, call, name, parent}));
    try {
        Apply(type, control, call);
        const bool isPlaced = control.Widget() && !control.Menu() && control.Parent();
        if (isPlaced) {
            control.Parent()->AddChild(control);
            control.ApplySize();
        }
    } catch (...) {
        // Do not leave an incomplete control behind.
        registry.Delete(control);
        throw;
    }
    if (control.TakesChildren()) {
        registry.SetCurrentParent(&control);
    }
    return control.Path();
}

Value Run(const ControlType& type, const CommandCall& call, ControlRegistry& registry) {
    if (call.Has("-exists")) {
        const Control* const control = registry.Find(ObjectName(call));
        return Value(control && Accepts(type, *control));
    }
    if (call.IsCreate()) {
        if (!type.create) {
            call.Fail("\"" + type.name + "\" cannot create controls: it only edits and queries them.");
        }
        return Create(type, call, registry);
    }
    Control& control = Edited(type, call, registry);
    if (call.IsQuery()) {
        return Query(type, control, call);
    }
    Apply(type, control, call);
    return control.Path();
}

void AddFlag(MSyntax& syntax, const ControlFlag& flag) {
    const auto argument = [&flag](std::size_t index) {
        return index < flag.arguments.size() ? flag.arguments[index] : MSyntax::kNoArg;
    };
    if (!syntax.addFlag(flag.shortName.c_str(), flag.longName.c_str(), argument(0), argument(1), argument(2),
                        argument(3), argument(4), argument(5))) {
        throw std::logic_error("The flag " + flag.longName + " or its short name is taken or malformed.");
    }
    if (flag.isMultiUse) {
        syntax.makeFlagMultiUse(flag.longName.c_str());
    }
}

MSyntax SyntaxOf(const ControlType& type) {
    MSyntax syntax;
    for (const ControlFlag& flag : type.flags) {
        AddFlag(syntax, flag);
    }
    AddFlag(syntax, {"-ex", "-exists", {}, nullptr, nullptr});
    AddFlag(syntax, {"-p", "-parent", {MSyntax::kString}, nullptr, nullptr});
    syntax.enableQuery(true);
    syntax.enableEdit(true);
    syntax.setObjectType(MSyntax::kStringObjects, 0, 1);
    return syntax;
}

/// Removes flags whose name came before: a type's own flags override the common ones.
void DropRepeated(ControlFlags& flags) {
    std::set<std::string> names;
    flags.erase(std::remove_if(flags.begin(), flags.end(),
                               [&names](const ControlFlag& flag) {
                                   return !names.insert(flag.longName).second ||
                                          !names.insert(flag.shortName).second;
                               }),
                flags.end());
}

} // namespace

void WindowCommandTable::Add(ControlType controlType) {
    DropRepeated(controlType.flags);
    // Controls point to their type. The registered function owns it.
    const auto type = std::make_shared<const ControlType>(std::move(controlType));
    Add(type->name, SyntaxOf(*type),
        [type](CommandCall& call, ControlRegistry& registry) { return Run(*type, call, registry); });
}

void WindowCommandTable::Add(const std::string& name, const MSyntax& syntax,
                             std::function<Value(CommandCall&, ControlRegistry&)> function) {
    commands_.Register(
        name, syntax, [controls = controls_, function = std::move(function)](CommandCall& call) {
            if (!controls) {
                call.Fail("The command \"" + call.Name() + "\" can not be used in batch mode.");
            }
            return function(call, *controls);
        });
}

} // namespace lightbox
