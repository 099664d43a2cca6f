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

class FrameLayoutControl : public Control {
public:
    explicit FrameLayoutControl(const ControlCreation& creation)
        : Control(creation, new CollapsibleFrame) {
        auto& frame = *As<CollapsibleFrame>();
        frame.Title().setText(ToQt(creation.name));
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
    return ValueFlag<CollapsibleFrame, int>(
        shortName, longName,
        [isWidth](const CollapsibleFrame& frame, int value) {
            QLayout& layout = *frame.Content().layout();
            const QMargins margins = layout.contentsMargins();
            const int pixels = std::max(0, value);
            layout.setContentsMargins(isWidth ? QMargins(pixels, margins.top(), pixels, margins.bottom())
                                              : QMargins(margins.left(), pixels, margins.right(), pixels));
        },
        [isWidth](const CollapsibleFrame& frame) {
            const QMargins margins = frame.Content().layout()->contentsMargins();
            return isWidth ? margins.left() : margins.top();
        });
}

ControlFlags FrameLayoutFlags() {
    using Frame = CollapsibleFrame;
    return {
        ValueFlag<Frame, QString>(
            "-l", "-label", [](Frame& frame, const QString& text) { frame.Title().setText(text); },
            [](const Frame& frame) { return frame.Title().text(); }),
        ValueFlag<Frame, bool>("-lv", "-labelVisible", &Frame::SetTitleVisible,
                               [](const Frame& frame) { return !frame.Title().isHidden(); }),
        ValueFlag<Frame, bool>("-cll", "-collapsable", &Frame::SetCollapsable, &Frame::IsCollapsable),
        ValueFlag<Frame, bool>("-cl", "-collapse", &Frame::SetCollapsed, &Frame::IsCollapsed),
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
    };
}

class ScrollLayoutControl : public Control {
public:
    explicit ScrollLayoutControl(const ControlCreation& creation)
        : Control(creation, new QScrollArea) {
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

ControlFlags ScrollLayoutFlags() {
    const auto scrollTo = [](Control& control, const CommandCall& call) {
        const std::string& where = call.String("-scrollPage");
        QScrollBar* const bar = control.As<QScrollArea>()->verticalScrollBar();
        bar->triggerAction(where == "up" ? QScrollBar::SliderPageStepSub : QScrollBar::SliderPageStepAdd);
    };
    return {
        ValueFlag<ScrollLayoutControl, bool>("-cr", "-childResizable", &ScrollLayoutControl::SetResizesChild,
                                             &ScrollLayoutControl::ResizesChild),
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
                  [](Control& control) { return control.As<QScrollArea>()->viewport()->width(); }),
        QueryFlag("-sah", "-scrollAreaHeight",
                  [](Control& control) { return control.As<QScrollArea>()->viewport()->height(); }),
        NoteFlag("-mcw", "-minChildWidth", INT),
        NoteFlag("-hst", "-horizontalScrollBarThickness", INT),
        NoteFlag("-vst", "-verticalScrollBarThickness", INT),
        NoteFlag("-bv", "-borderVisible", ON),
    };
}

} // namespace

void RegisterFrameLayoutCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    table.Add({"frameLayout", Family::Layout, FrameLayoutFlags() + LayoutFlags(), Make<FrameLayoutControl>});
    table.Add(
        {"scrollLayout", Family::Layout, ScrollLayoutFlags() + LayoutFlags(), Make<ScrollLayoutControl>});
}

} // namespace lightbox
