#include "openmaya/ToolEvents.h"

#include "openmaya/ApiBridge.h"
#include "openmaya/PluginContext.h"
#include "scene/CameraView.h"
#include "scene/View.h"

#include <maya/MFrameContext.h>
#include <maya/MPxContext.h>
#include <maya/MUIDrawManager.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>

#include <cmath>
#include <map>

namespace lightbox {

namespace {

/// How long a button must be held before the tool gets a hold event, in milliseconds.
constexpr int HOLD_DELAY = 300;

struct Drawing {
    /// The tool's name, since the tool may have been deleted.
    std::string tool;
    DrawList list;
};

/// The current press. The serial number tells presses apart.
struct PressInProgress {
    const View* view = nullptr;
    /// The tool that got the press; a tool that becomes current later gets no events of it.
    std::string tool;
    Qt::MouseButton button = Qt::NoButton;
    bool hasMoved = false;
    unsigned serial = 0;
};

std::map<const View*, Drawing>& Drawings() {
    static std::map<const View*, Drawing> drawings;
    return drawings;
}

PressInProgress& CurrentPress() {
    static PressInProgress press;
    return press;
}

bool IsPressed(const PluginContext* tool) {
    return tool && tool->Name() == CurrentPress().tool;
}

constexpr unsigned NO_BITS = 0;

unsigned ButtonOf(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return MEvent::kLeftMouse;
    case Qt::MiddleButton:
        return MEvent::kMiddleMouse;
    default:
        return NO_BITS;
    }
}

unsigned ModifiersOf(Qt::KeyboardModifiers keys, Qt::MouseButtons buttons) {
    unsigned modifiers = NO_BITS;
    modifiers |= keys.testFlag(Qt::ShiftModifier) ? static_cast<unsigned>(MEvent::shiftKey) : NO_BITS;
    modifiers |= keys.testFlag(Qt::ControlModifier) ? static_cast<unsigned>(MEvent::controlKey) : NO_BITS;
    modifiers |= buttons.testFlag(Qt::LeftButton) ? static_cast<unsigned>(MEvent::kLeftMouse) : NO_BITS;
    modifiers |= buttons.testFlag(Qt::MiddleButton) ? static_cast<unsigned>(MEvent::kMiddleMouse) : NO_BITS;
    return modifiers;
}

/// Makes a tool's event. Widget rows count from the top, view pixels from the bottom.
MEvent EventOf(View& view, const QMouseEvent& event, Qt::MouseButton button) {
    const int x = static_cast<int>(std::floor(event.localPos().x()));
    const int y = view.Height() - 1 - static_cast<int>(std::floor(event.localPos().y()));
    return ApiBridge::MakeEvent(x, y, view.Height(), ButtonOf(button),
                                ModifiersOf(event.modifiers(), event.buttons()));
}

using LegacyForm = MStatus (MPxContext::*)(MEvent&);
using Viewport2Form = MStatus (MPxContext::*)(MEvent&, MHWRender::MUIDrawManager&,
                                              const MHWRender::MFrameContext&);

/// Whether what the tool drew before stays when it draws nothing this time.
enum class EmptyDrawing { Replaces, Keeps };

/// Calls the tool in the form for the view's renderer, and stores the items it draws.
void Deliver(PluginContext& tool, View& view, MEvent& event, LegacyForm legacy, Viewport2Form viewport2,
             EmptyDrawing empty = EmptyDrawing::Replaces) {
    if (!view.IsViewport2()) {
        tool.Run([&](MPxContext& context) { (context.*legacy)(event); });
        return;
    }
    // The event may make another tool current.
    const std::string name = tool.Name();
    DrawList list;
    const CameraView camera(*view.Camera(), view.Width(), view.Height());
    const auto frameContext = ApiBridge::MakeFrameContext(view, camera);
    const auto manager = ApiBridge::MakeDrawManager(list);
    tool.Run([&](MPxContext& context) { (context.*viewport2)(event, *manager, *frameContext); });
    if (list.empty() && empty == EmptyDrawing::Keeps) {
        return;
    }
    Drawing& drawing = Drawings()[&view];
    const bool changed = !drawing.list.empty() || !list.empty();
    drawing = Drawing{name, std::move(list)};
    if (changed) {
        view.Refresh(false);
    }
}

void Hold(View& view, MEvent event, unsigned serial) {
    const PressInProgress& press = CurrentPress();
    PluginContext* tool = PluginContext::Current();
    if (IsPressed(tool) && press.serial == serial && press.view == &view && !press.hasMoved) {
        // Most tools know no hold.
        Deliver(*tool, view, event, &MPxContext::doHold, &MPxContext::doHold, EmptyDrawing::Keeps);
    }
}

} // namespace

bool ToolEvents::Press(View& view, const QMouseEvent& event) {
    PluginContext* tool = PluginContext::Current();
    if (!tool || ButtonOf(event.button()) == 0) {
        return false;
    }
    PressInProgress& press = CurrentPress();
    if (press.view) {
        return true;
    }
    press = PressInProgress{&view, tool->Name(), event.button(), false, press.serial + 1};
    MEvent pressed = EventOf(view, event, event.button());
    QTimer::singleShot(HOLD_DELAY, &view.Widget(),
                       [&view, pressed, serial = press.serial] { Hold(view, pressed, serial); });
    Deliver(*tool, view, pressed, &MPxContext::doPress, &MPxContext::doPress);
    return true;
}

bool ToolEvents::Drag(View& view, const QMouseEvent& event) {
    PluginContext* tool = PluginContext::Current();
    PressInProgress& press = CurrentPress();
    if (!tool || press.view != &view) {
        return false;
    }
    press.hasMoved = true;
    if (!IsPressed(tool)) {
        return true;
    }
    MEvent dragged = EventOf(view, event, press.button);
    Deliver(*tool, view, dragged, &MPxContext::doDrag, &MPxContext::doDrag);
    return true;
}

bool ToolEvents::Release(View& view, const QMouseEvent& event) {
    PluginContext* tool = PluginContext::Current();
    PressInProgress& press = CurrentPress();
    if (press.view != &view) {
        return false;
    }
    if (event.button() != press.button) {
        return true;
    }
    press.view = nullptr;
    if (!IsPressed(tool)) {
        return tool != nullptr;
    }
    MEvent released = EventOf(view, event, event.button());
    Deliver(*tool, view, released, &MPxContext::doRelease, &MPxContext::doRelease);
    return true;
}

void ToolEvents::LoseRelease(const View& view) {
    if (CurrentPress().view == &view) {
        CurrentPress().view = nullptr;
    }
}

bool ToolEvents::Enter(View& view) {
    PluginContext* tool = PluginContext::Current();
    if (!tool) {
        return false;
    }
    // A view created after the tool does not have its cursor yet.
    view.Widget().setCursor(tool->Cursor());
    MEvent event;
    tool->Run([&](MPxContext& context) { context.doEnterRegion(event); });
    return true;
}

bool ToolEvents::Move(View& view, const QMouseEvent& event) {
    PluginContext* tool = PluginContext::Current();
    if (!tool || event.buttons() != Qt::NoButton) {
        return false;
    }
    MEvent moved = EventOf(view, event, Qt::NoButton);
    Deliver(*tool, view, moved, &MPxContext::doPtrMoved, &MPxContext::doPtrMoved);
    return true;
}

bool ToolEvents::Key(View&, const QKeyEvent& event) {
    PluginContext* tool = PluginContext::Current();
    if (!tool || (event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        return false;
    }
    void (MPxContext::*action)() = nullptr;
    switch (event.key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        action = &MPxContext::deleteAction;
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        action = &MPxContext::completeAction;
        break;
    case Qt::Key_Escape:
        action = &MPxContext::abortAction;
        break;
    default:
        return false;
    }
    tool->Run([&](MPxContext& context) { (context.*action)(); });
    return true;
}

const DrawList& ToolEvents::Drawn(const View& view) {
    static const DrawList nothing;
    const PluginContext* tool = PluginContext::Current();
    const auto found = Drawings().find(&view);
    return tool && found != Drawings().end() && found->second.tool == tool->Name() ? found->second.list
                                                                                   : nothing;
}

void ToolEvents::Forget(const View& view) {
    Drawings().erase(&view);
    LoseRelease(view);
}

} // namespace lightbox
