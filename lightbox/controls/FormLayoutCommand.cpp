// formLayout.

#include "controls/AttachLayout.h"
#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

namespace lightbox {

namespace {

using mel::CommandCall;
using Edge = AttachLayout::Edge;
using To = AttachLayout::To;

class FormLayoutControl : public Control {
public:
    explicit FormLayoutControl(const ControlCreation& creation)
        : Control(creation, new QWidget)
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
    return MultiFlag(
        shortName, longName, std::move(arguments),
        [longName, to](Control& control, const CommandCall& call, unsigned use) {
            const auto& form = dynamic_cast<FormLayoutControl&>(control);
            Control& child = form.ChildNamed(call, call.String(longName, 0, use));
            AttachLayout::Attachment attachment;
            attachment.to = to;
            attachment.offset = to == To::None ? 0 : call.Int(longName, 2, use);
            if (to == To::Widget || to == To::OppositeWidget) {
                attachment.widget = form.ChildNamed(call, call.String(longName, 3, use)).Widget();
            } else if (to == To::Position) {
                attachment.position = call.Int(longName, 3, use);
            }
            form.Layout().Attach(*child.Widget(), EdgeNamed(call, call.String(longName, 1, use)), attachment);
            child.ApplySize();
        });
}

ControlFlags FormFlags() {
    return {
        ValueFlag<FormLayoutControl, int>(
            "-nd", "-numberOfDivisions",
            [](const FormLayoutControl& form, int count) {
                form.Layout().divisions = std::max(1, count);
                form.Layout().invalidate();
            },
            [](const FormLayoutControl& form) { return form.Layout().divisions; }),
        AttachFlag("-af", "-attachForm", To::Form, {TEXT, TEXT, INT}),
        AttachFlag("-aof", "-attachOppositeForm", To::OppositeForm, {TEXT, TEXT, INT}),
        AttachFlag("-ac", "-attachControl", To::Widget, {TEXT, TEXT, INT, TEXT}),
        AttachFlag("-aoc", "-attachOppositeControl", To::OppositeWidget, {TEXT, TEXT, INT, TEXT}),
        AttachFlag("-ap", "-attachPosition", To::Position, {TEXT, TEXT, INT, INT}),
        AttachFlag("-an", "-attachNone", To::None, {TEXT, TEXT}),
    };
}

} // namespace

void RegisterFormLayoutCommand(WindowCommandTable& table) {
    table.Add(
        {"formLayout", ControlType::Family::Layout, FormFlags() + LayoutFlags(), Make<FormLayoutControl>});
}

} // namespace lightbox
