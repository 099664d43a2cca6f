#pragma once

#include "app/PluginManager.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/Settings.h"
#include "host/entry/PluginMain.h"
#include "lightbox/window/WindowFixture.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"
#include "plugin/tools/RealInput.h"
#include "scene/ToolContexts.h"
#include "viewport/ViewOptions.h"

#include <stdexcept>

namespace vellix {

/// The plug-in in a window, with a pointer that really moves. The gate of persp is as wide as the view, 1024
/// pixels, so that pixels of the view and of the image have the same size.
class DrawToolFixture : public WindowFixture {
protected:
    DrawToolFixture() {
        host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        Settings::ghostPrev = Settings::ghostNext = false;
        Settings::ignore2dPanZoom = false;
        for (int tool = 0; tool <= static_cast<int>(ToolType::Rectangle); ++tool) {
            Settings::SetToolSize(static_cast<ToolType>(tool), 6);
            Settings::SetToolOpacity(static_cast<ToolType>(tool), 100);
        }
        Settings::activeColor = QColor(20, 60, 240);
        Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1");
        Run("qmVellixNode -l -f -c persp");
        Show();
        for (int round = 0; round < 5 && View().size() != QSize(1024, 576); ++round) {
            Window().resize(Window().size() + QSize(1024, 576) - View().size());
            Settle();
        }
        Window().activateWindow();
        Settle();
    }
    ~DrawToolFixture() override {
        for (const int button : {1, 2, 3}) {
            input_.Release(button); // a failed test may leave a button down
        }
        Settle(30);
        Stop();
    }

    void Use(lightbox::ViewOptions::Renderer renderer) {
        lightbox::ViewOptions options = View().Options();
        options.renderer = renderer;
        View().SetOptions(options);
    }
    static BaseNode& Node() { return *BaseNode::GetMaster(); }
    /// The image of the active layer at the current time.
    static QImage Drawing(const QString& camera = "persp") {
        return Node().GetActiveLayer(camera)->GetCurrentFrame()->GetImage();
    }

    /// The screen position of a point of the view, which counts from the top left.
    QPoint OnScreen(const QPoint& point) { return View().mapToGlobal(point); }
    void MoveTo(const QPoint& point) { input_.MoveTo(OnScreen(point)); }
    void Press(const QPoint& point, int button = 1) {
        MoveTo(point);
        Settle(20);
        input_.Press(button);
        Settle(30);
    }
    void Release(int button = 1) {
        input_.Release(button);
        Settle(30);
    }
    /// The stroke being drawn, or null.
    static Stroke* ActiveStroke() {
        return Node().HasActiveStroke() ? Node().GetActiveStroke("persp", false) : nullptr;
    }
    static int PointCount() { return ActiveStroke() ? ActiveStroke()->points.size() : 0; }
    /// Presses and waits for the first two samples; for one, if it is text.
    void PressAndWait(const QPoint& point) {
        MoveTo(point);
        Settle(20);
        input_.Press();
        if (!WaitFor([] { return PointCount() >= (IsText() ? 1 : 2); })) {
            throw std::runtime_error("no stroke was begun");
        }
    }
    /// Moves and waits until the stroke has the sample. The points of a freehand stroke must lie farther
    /// apart than a tenth of its size.
    void MoveAndWait(const QPoint& point) {
        const Stroke before = *ActiveStroke();
        MoveTo(point);
        const bool isThere = WaitFor([&] {
            const QList<StrokePoint>& points = ActiveStroke()->points;
            return points.size() > before.points.size() ||
                   points.last().position != before.points.last().position;
        });
        if (!isThere) {
            throw std::runtime_error("the pointer was not sampled");
        }
    }
    void Drag(const QList<QPoint>& points) {
        PressAndWait(points.first());
        for (int i = 1; i < points.size(); ++i) {
            MoveAndWait(points.at(i));
        }
        Release();
    }
    static bool IsText() { return ActiveStroke() != nullptr && ActiveStroke()->tool == ToolType::Text; }
    void Type(unsigned symbol) {
        input_.PressKey(symbol);
        input_.ReleaseKey(symbol);
        Settle(20);
    }

    void TypeWithControl(unsigned key, bool shift = false) {
        constexpr unsigned control = 0xffe3;
        constexpr unsigned shiftKey = 0xffe1;
        input_.PressKey(control);
        if (shift) {
            input_.PressKey(shiftKey);
        }
        Type(key);
        if (shift) {
            input_.ReleaseKey(shiftKey);
        }
        input_.ReleaseKey(control);
        Settle(20);
    }

    RealInput input_;
};

} // namespace vellix
