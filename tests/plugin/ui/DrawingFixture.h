#pragma once

#include "app/PluginManager.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "host/Settings.h"
#include "host/entry/PluginMain.h"
#include "lightbox/window/WindowFixture.h"
#include "node/BaseNode.h"
#include "viewport/ViewOptions.h"

namespace vellix {

/// The plug-in in a window. The test sets the size of the viewport. In persp the image is as wide as the
/// view.
class DrawingFixture : public WindowFixture {
protected:
    using Renderer = lightbox::ViewOptions::Renderer;

    DrawingFixture() {
        host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        Settings::ghostPrev = Settings::ghostNext = false;
        Settings::ignore2dPanZoom = false;
        Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1");
    }
    ~DrawingFixture() override { Stop(); }

    static BaseNode& Node() { return *BaseNode::GetMaster(); }

    /// Replaces the first drawing of the camera's active layer.
    static void Draw(const QImage& image, const QString& camera = "persp") {
        Node().GetActiveLayer(camera)->GetFrame(0)->SetImage(image);
        Node().ForceCacheUpdate(camera, Node().GetActiveLayerIndex(camera));
        Node().QueueRefresh();
    }
    void SizeView(int width, int height) {
        Show();
        for (int round = 0; round < 5 && View().size() != QSize(width, height); ++round) {
            Window().resize(Window().size() + QSize(width, height) - View().size());
            Settle();
        }
        ASSERT_EQ(View().size(), QSize(width, height));
    }
    void Use(Renderer renderer, const char* panel = "modelPanel4") {
        lightbox::ViewOptions options = View(panel).Options();
        options.renderer = renderer;
        options.display = lightbox::DisplayOptions();
        options.display.grid = options.display.axisIcon = false;
        options.cameraName = false;
        View(panel).SetOptions(options);
    }
    QImage Grab(const char* panel = "modelPanel4") {
        View(panel).Refresh(true);
        return View(panel).grabFramebuffer().convertToFormat(QImage::Format_RGB32);
    }
};

} // namespace vellix
