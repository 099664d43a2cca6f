// formLayout.

#include "controls/AttachLayout.h"
#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;
using Edge = AttachLayout::Edge;
using To = AttachLayout::To;

class FormLayoutControl : public Control {
public:
    explicit FormLayoutControl(const ControlCreation& creation)
        : Control(creation.type, creation.name, creation.parent, new QWidget)
        , layout_(new AttachLayout(Widget()))
        , registry_(creation.registry) {}

    void AddChild(Control& child) override { layout_->addWidget(child.Widget()); }
    void RemoveChild(Control& child) override {
        if (QWidget* const widget = child.Widget()) {
            layout_->removeWidget(widget);
        }
    }
    bool StretchesWidth(const Control& child) const override {
        return IsHeld(child, Edge::Left, Edge::Right);
    }
    bool StretchesHeight(const Control& child) const override {
        return IsHeld(child, Edge::Top, Edge::Bottom);
    }
    bool TakesChildren() const override { return true; }

    AttachLayout& Layout() const { return *layout_; }
    /// The child of that name. Ends the command with an error when there is none.
    Control& ChildNamed(const CommandCall& call, const std::string& name) const {
        Control* const named = registry_.Find(name);
        for (Control* const child : Children()) {
            if (child == named || child->Name() == name) {
                return *child;
            }
        }
        call.Fail("\"" + name + "\" is not a child of \"" + Path() + "\".");
    }

private:
    bool IsHeld(const Control& child, Edge low, Edge high) const {
        const QWidget* const widget = child.Widget();
        return widget && layout_->AttachmentOf(*widget, low).to != To::None &&
               layout_->AttachmentOf(*widget, high).to != To::None;
    }

    AttachLayout* layout_;
    ControlRegistry& registry_;
};

FormLayoutControl& Form(Control& control) {
    return dynamic_cast<FormLayoutControl&>(control);
}

Edge EdgeNamed(const CommandCall& call, const std::string& name) {
    const std::pair<const char*, Edge> edges[] = {
        {"left", Edge::Left}, {"right", Edge::Right}, {"top", Edge::Top}, {"bottom", Edge::Bottom}};
    for (const auto& [text, edge] : edges) {
        if (name == text) {
            return edge;
        }
    }
    call.Fail("\"" + name + "\" is not an edge: use left, right, top or bottom.");
}

/// A flag that attaches an edge: child, edge, offset, then a control or a position if `to` needs one.
ControlFlag AttachFlag(const char* shortName, const char* longName, To to,
                       std::vector<MSyntax::MArgType> arguments) {
    const std::string flag = longName;
    ControlFlag row{shortName, flag, std::move(arguments),
                    [flag, to](Control& control, const CommandCall& call) {
                        const FormLayoutControl& form = Form(control);
                        const char* const name = flag.c_str();
                        for (unsigned use = 0; use < call.UseCount(name); ++use) {
                            Control& child = form.ChildNamed(call, call.String(name, 0, use));
                            AttachLayout::Attachment attachment;
                            attachment.to = to;
                            attachment.offset = to == To::None ? 0 : call.Int(name, 2, use);
                            if (to == To::Widget || to == To::OppositeWidget) {
                                attachment.widget = form.ChildNamed(call, call.String(name, 3, use)).Widget();
                            } else if (to == To::Position) {
                                attachment.position = call.Int(name, 3, use);
                            }
                            form.Layout().Attach(*child.Widget(), EdgeNamed(call, call.String(name, 1, use)),
                                                 attachment);
                            child.ApplySize();
                        }
                    },
                    nullptr};
    row.isMultiUse = true;
    return row;
}

ControlType FormType() {
    ControlType type;
    type.name = "formLayout";
    type.family = ControlType::Family::Layout;
    type.flags =
        ControlFlags{
            {"-nd",
             "-numberOfDivisions",
             {INT},
             [](Control& control, const CommandCall& call) {
                 Form(control).Layout().divisions = std::max(1, call.Int("-numberOfDivisions"));
                 Form(control).Layout().invalidate();
             },
             [](Control& control) { return Value(Form(control).Layout().divisions); }},
            AttachFlag("-af", "-attachForm", To::Form, {TEXT, TEXT, INT}),
            AttachFlag("-aof", "-attachOppositeForm", To::OppositeForm, {TEXT, TEXT, INT}),
            AttachFlag("-ac", "-attachControl", To::Widget, {TEXT, TEXT, INT, TEXT}),
            AttachFlag("-aoc", "-attachOppositeControl", To::OppositeWidget, {TEXT, TEXT, INT, TEXT}),
            AttachFlag("-ap", "-attachPosition", To::Position, {TEXT, TEXT, INT, INT}),
            AttachFlag("-an", "-attachNone", To::None, {TEXT, TEXT}),
        } +
        LayoutFlags();
    type.create = [](const ControlCreation& creation) {
        return std::make_unique<FormLayoutControl>(creation);
    };
    return type;
}

} // namespace

void RegisterFormLayoutCommand(WindowCommandTable& table) {
    table.Add(FormType());
}

} // namespace lightbox
