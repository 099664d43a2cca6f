#pragma once

#include "scene/View.h"
#include "viewport/SelectTool.h"
#include "viewport/ViewNavigation.h"
#include "viewport/ViewOptions.h"

#include <QOpenGLWidget>
#include <QPointer>

#include <memory>
#include <string>
#include <vector>

class QOpenGLContext;
class QSurface;

namespace lightbox {

class CameraView;
class DrawListRenderer;
class Host;
class Scene;
class SceneRenderer;
class ViewFrame;
class ViewRefresh;
struct DrawItem;

/// The view in a model panel, which draws the scene.
class ViewportWidget : public QOpenGLWidget, public View {
    Q_OBJECT
public:
    /// `refresh` decides when the view is drawn and has to outlive it.
    ViewportWidget(Host& host, ViewRefresh& refresh, std::string panelName, QWidget* parent = nullptr);
    ~ViewportWidget() override;

    std::string PanelName() const override { return panelName_; }
    QWidget& Widget() override { return *this; }
    int Width() const override { return width(); }
    int Height() const override { return height(); }
    std::shared_ptr<DagNode> Camera() const override;
    void SetCamera(const std::shared_ptr<DagNode>& camera) override;
    bool IsViewport2() const override { return options_.renderer == ViewOptions::Renderer::Viewport2; }
    void Refresh(bool now) override;
    void BeginGl() override;
    void EndGl() override;
    void Present() override;

    const ViewOptions& Options() const { return options_; }
    void SetOptions(const ViewOptions& options);
    /// The camera shape with that transform or shape name; null when there is none.
    static std::shared_ptr<DagNode> FindCamera(const Scene& scene, const std::string& name);
    /// The camera's current projection and view matrices, for the widget's size.
    CameraView LookThrough() const;
    /// The number of frames drawn so far.
    unsigned FrameCount() const { return frameCount_; }
    /// The number of texture uploads so far.
    unsigned UploadCount() const;

Q_SIGNALS:
    /// The user pressed the pointer in the view, or it got the keyboard focus.
    void Activated();
    /// The view looks through another camera.
    void CameraChanged();
    void OptionsChanged();
    /// A frame was drawn, and the camera may have changed.
    void Drawn();

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;
    void enterEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    enum class Drag { None, Navigation, Tool, Selection };

    void ReleaseGl();
    void DrawFrame();
    /// Redraws only what changed since the last frame.
    void DrawViewport2(std::unique_ptr<ViewFrame> frame);
    void DrawLegacy(const ViewFrame& frame);
    void AddMarquee(std::vector<DrawItem>& list) const;
    void EndDrag();
    bool OfferKey(QKeyEvent& event);
    void SettleCamera() const;
    /// Converts a position in the widget to view pixels from the bottom left.
    QPointF ToView(const QPointF& position) const;

    Host& host_;
    ViewRefresh& refresh_;
    std::string panelName_;
    /// The current camera and its transform's name. After the scene is opened again, the name finds the new
    /// camera.
    mutable std::shared_ptr<DagNode> camera_;
    mutable std::string cameraName_;
    ViewOptions options_;
    ViewNavigation navigation_;
    SelectTool selectTool_;
    Drag drag_ = Drag::None;
    Qt::MouseButton dragButton_ = Qt::NoButton;
    bool is2dKeyHeld_ = false;
    std::unique_ptr<SceneRenderer> sceneRenderer_;
    std::unique_ptr<DrawListRenderer> drawListRenderer_;
    unsigned frameCount_ = 0;
    /// The content of the framebuffer; null when unknown.
    std::unique_ptr<ViewFrame> shown_;
    /// The context that was current before each BeginGl().
    struct Current {
        QPointer<QOpenGLContext> context;
        QSurface* surface;
    };
    std::vector<Current> glStack_;
};

} // namespace lightbox
