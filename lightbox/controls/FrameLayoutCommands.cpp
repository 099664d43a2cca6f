// frameLayout and scrollLayout.

#include "controls/CollapsibleFrame.h"
#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

class FrameLayoutControl : public Control {
public:
    explicit FrameLayoutControl(const ControlCreation& creation)
        : Control(creation.type, creation.name, creation.parent, new CollapsibleFrame) {
        auto& frame = *As<CollapsibleFrame>();
        ControlRegistry& registry = creation.registry;
        QObject::connect(&frame, &CollapsibleFrame::AboutToToggle, &frame, [this, &registry](bool collapses) {
            registry.Run(*this, collapses ? "-preCollapseCommand" : "-preExpandCommand");
        });
        QObject::connect(&frame, &CollapsibleFrame::Toggled, &frame, [this, &registry](bool collapsed) {
            registry.Run(*this, collapsed ? "-collapseCommand" : "-expandCommand");
        });
    }

    void AddChild(Control& child) override {
        As<CollapsibleFrame>()->Content().layout()->addWidget(child.Widget());
    }
    bool StretchesWidth(const Control&) const override { return true; }
    bool TakesChildren() const override { return true; }
};

/// The margin of the content on two sides.
ControlFlag MarginFlag(const char* shortName, const char* longName, bool isWidth) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {INT},
            [flag, isWidth](Control& control, const CommandCall& call) {
                QLayout& layout = *control.As<CollapsibleFrame>()->Content().layout();
                QMargins margins = layout.contentsMargins();
                const int pixels = std::max(0, call.Int(flag.c_str()));
                margins = isWidth ? QMargins(pixels, margins.top(), pixels, margins.bottom())
                                  : QMargins(margins.left(), pixels, margins.right(), pixels);
                layout.setContentsMargins(margins);
            },
            [isWidth](Control& control) {
                const QMargins margins =
                    control.As<CollapsibleFrame>()->Content().layout()->contentsMargins();
                return Value(isWidth ? margins.left() : margins.top());
            }};
}

ControlType FrameType() {
    ControlType type;
    type.name = "frameLayout";
    type.family = ControlType::Family::Layout;
    type.flags =
        ControlFlags{
            ValueFlag<CollapsibleFrame, QString>(
                "-l", "-label",
                [](CollapsibleFrame& frame, const QString& text) { frame.Title().setText(text); },
                [](const CollapsibleFrame& frame) { return frame.Title().text(); }),
            ValueFlag<CollapsibleFrame, bool>(
                "-lv", "-labelVisible", [](CollapsibleFrame& frame, bool on) { frame.SetTitleVisible(on); },
                [](const CollapsibleFrame& frame) { return !frame.Title().isHidden(); }),
            ValueFlag<CollapsibleFrame, bool>(
                "-cll", "-collapsable", [](CollapsibleFrame& frame, bool on) { frame.SetCollapsable(on); },
                [](const CollapsibleFrame& frame) { return frame.IsCollapsable(); }),
            ValueFlag<CollapsibleFrame, bool>(
                "-cl", "-collapse", [](CollapsibleFrame& frame, bool on) { frame.SetCollapsed(on); },
                [](const CollapsibleFrame& frame) { return frame.IsCollapsed(); }),
            MarginFlag("-mw", "-marginWidth", true),
            MarginFlag("-mh", "-marginHeight", false),
            ScriptFlag("-cc", "-collapseCommand"),
            ScriptFlag("-ec", "-expandCommand"),
            ScriptFlag("-pcc", "-preCollapseCommand"),
            ScriptFlag("-pec", "-preExpandCommand"),
            NoteFlag("-bv", "-borderVisible", ON),
            NoteFlag("-bs", "-borderStyle", MSyntax::kString),
            NoteFlag("-li", "-labelIndent", INT),
            NoteFlag("-la", "-labelAlign", MSyntax::kString),
            NoteFlag("-fn", "-font", MSyntax::kString),
        } +
        LayoutFlags();
    type.create = [](const ControlCreation& creation) {
        auto frame = std::make_unique<FrameLayoutControl>(creation);
        frame->As<CollapsibleFrame>()->Title().setText(ToQt(creation.name));
        return frame;
    };
    return type;
}

class ScrollLayoutControl : public Control {
public:
    explicit ScrollLayoutControl(const ControlCreation& creation)
        : Control(creation.type, creation.name, creation.parent, new QScrollArea) {
        auto& area = *As<QScrollArea>();
        auto* const content = new QWidget;
        auto* const box = new QVBoxLayout(content);
        box->setContentsMargins(0, 0, 0, 0);
        area.setWidget(content);
        area.setWidgetResizable(true);
        area.setFrameShape(QFrame::NoFrame);
    }

    void AddChild(Control& child) override {
        As<QScrollArea>()->widget()->layout()->addWidget(child.Widget());
    }
    bool StretchesWidth(const Control&) const override { return resizes_; }
    bool TakesChildren() const override { return true; }

    void SetResizesChild(bool on) {
        resizes_ = on;
        for (Control* const child : Children()) {
            child->ApplySize();
        }
    }
    bool ResizesChild() const { return resizes_; }

private:
    bool resizes_ = false;
};

ControlType ScrollLayoutType() {
    ControlType type;
    type.name = "scrollLayout";
    type.family = ControlType::Family::Layout;
    const auto scrollTo = [](Control& control, const CommandCall& call) {
        const std::string& where = call.String("-scrollPage");
        QScrollBar* const bar = control.As<QScrollArea>()->verticalScrollBar();
        bar->triggerAction(where == "up" ? QScrollBar::SliderPageStepSub : QScrollBar::SliderPageStepAdd);
    };
    type.flags =
        ControlFlags{
            {"-cr",
             "-childResizable",
             {ON},
             [](Control& control, const CommandCall& call) {
                 dynamic_cast<ScrollLayoutControl&>(control).SetResizesChild(call.Bool("-childResizable"));
             },
             [](Control& control) {
                 return Value(dynamic_cast<ScrollLayoutControl&>(control).ResizesChild());
             }},
            {"-sp", "-scrollPage", {MSyntax::kString}, scrollTo, nullptr},
            {"-sbp",
             "-scrollByPixel",
             {MSyntax::kString, INT},
             [](Control& control, const CommandCall& call) {
                 const std::string& where = call.String("-scrollByPixel");
                 auto& area = *control.As<QScrollArea>();
                 QScrollBar& bar = where == "left" || where == "right" ? *area.horizontalScrollBar()
                                                                       : *area.verticalScrollBar();
                 const int pixels = call.Int("-scrollByPixel", 1);
                 bar.setValue(bar.value() + (where == "up" || where == "left" ? -pixels : pixels));
             },
             nullptr},
            QueryFlag("-saw", "-scrollAreaWidth",
                      [](Control& control) { return Value(control.As<QScrollArea>()->viewport()->width()); }),
            QueryFlag(
                "-sah", "-scrollAreaHeight",
                [](Control& control) { return Value(control.As<QScrollArea>()->viewport()->height()); }),
            NoteFlag("-mcw", "-minChildWidth", INT),
            NoteFlag("-hst", "-horizontalScrollBarThickness", INT),
            NoteFlag("-vst", "-verticalScrollBarThickness", INT),
            NoteFlag("-bv", "-borderVisible", ON),
        } +
        LayoutFlags();
    type.create = [](const ControlCreation& creation) {
        return std::make_unique<ScrollLayoutControl>(creation);
    };
    return type;
}

} // namespace

void RegisterFrameLayoutCommands(WindowCommandTable& table) {
    table.Add(FrameType());
    table.Add(ScrollLayoutType());
}

} // namespace lightbox
