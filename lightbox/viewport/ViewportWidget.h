#pragma once

#include "openmaya/DrawList.h"
#include "scene/CameraView.h"
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

class DrawListRenderer;
class Host;
class Scene;
class SceneRenderer;
class ViewFrame;
class ViewRefresh;

/// The part of a viewport's panel in which the scene is drawn.
class ViewportWidget : public QOpenGLWidget, public View {
    Q_OBJECT
public:
    /// `refresh` says when it is drawn.
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
    /// The shape of a camera by the name of its transform or of the shape itself; null when there is none.
    static std::shared_ptr<DagNode> FindCamera(const Scene& scene, const std::string& name);
    /// What the camera shows now.
    CameraView LookThrough() const;
    /// How often it was drawn; rises by one with every frame.
    unsigned FrameCount() const { return frameCount_; }
    /// Textures brought to the card since the start.
    unsigned UploadCount() const;

Q_SIGNALS:
    /// The pointer was pressed in it or the keyboard came to it.
    void Activated();
    /// It looks through another camera.
    void CameraChanged();
    void OptionsChanged();
    /// A frame was drawn: what others show of the camera may be another now.
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
    /// Draws what is another than in the picture that is there.
    void DrawViewport2(std::unique_ptr<ViewFrame> frame);
    void DrawLegacy(const ViewFrame& frame);
    void AddMarquee(DrawList& list) const;
    void EndDrag();
    bool OfferKey(QKeyEvent& event);
    void SettleCamera() const;
    /// From the widget's pixels to view pixels.
    QPointF ToView(const QPointF& position) const;

    Host& host_;
    ViewRefresh& refresh_;
    std::string panelName_;
    /// The camera as it was looked through last, and its transform's name: a scene that is opened anew brings
    /// another one of that name.
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
    /// What the picture that is there shows; null when it may show something else.
    std::unique_ptr<ViewFrame> shown_;
    /// What was current before each BeginGl().
    struct Current {
        QPointer<QOpenGLContext> context;
        QSurface* surface;
    };
    std::vector<Current> glStack_;
};

} // namespace lightbox
