#include "viewport/ViewportWidget.h"

#include "openmaya/ToolEvents.h"
#include "openmaya/ViewDrawing.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/UserInterface.h"
#include "viewport/DrawListRenderer.h"
#include "viewport/GateOverlay.h"
#include "viewport/SceneRenderer.h"
#include "viewport/ViewFrame.h"
#include "viewport/ViewRefresh.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QWheelEvent>

#include <Imath/ImathMatrix.h>

namespace lightbox {

namespace {

const char* const FALLBACK_CAMERA = "persp";

void LoadMatrix(GLenum which, const Imath::M44d& matrix) {
    glMatrixMode(which);
    glLoadMatrixd(&matrix[0][0]);
}

} // namespace

ViewportWidget::ViewportWidget(Host& host, ViewRefresh& refresh, std::string panelName, QWidget* parent)
    : QOpenGLWidget(parent)
    , host_(host)
    , refresh_(refresh)
    , panelName_(std::move(panelName))
    , cameraName_(FALLBACK_CAMERA)
    , navigation_(host.files())
    , selectTool_(host) {
    // A grey on which dark pencil and white paint are equally visible. All of it lies below mid-grey, so that
    // what a tool inverts has one colour everywhere.
    options_.display.backgroundTop = QColor(0x79, 0x7c, 0x7f);
    options_.display.backgroundBottom = QColor(0x6b, 0x6e, 0x72);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(64, 48);
    // Keep what tools of the legacy viewport draw between two frames.
    setUpdateBehavior(QOpenGLWidget::PartialUpdate);
    refresh_.Add(*this);
}

ViewportWidget::~ViewportWidget() {
    ViewDrawing::Forget(*this);
    ReleaseGl();
    if (context()) {
        // The context is destroyed after this part of the widget.
        disconnect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &ViewportWidget::ReleaseGl);
    }
}

std::shared_ptr<DagNode> ViewportWidget::FindCamera(const Scene& scene, const std::string& name) {
    for (const std::shared_ptr<Node>& node : scene.FindAll(name)) {
        auto dag = std::dynamic_pointer_cast<DagNode>(node);
        if (dag && dag->Type().IsA("camera")) {
            return dag;
        }
        for (DagNode* const shape : dag ? dag->Shapes() : std::vector<DagNode*>()) {
            if (shape->Type().IsA("camera")) {
                return std::static_pointer_cast<DagNode>(shape->Shared());
            }
        }
    }
    return nullptr;
}

std::shared_ptr<DagNode> ViewportWidget::Camera() const {
    SettleCamera();
    return camera_;
}

/// If the camera was deleted or its scene closed, finds one of the same name; without one, the usual camera,
/// and if that has another name by now, the first of the scene.
void ViewportWidget::SettleCamera() const {
    if (camera_ && camera_->InScene()) {
        return;
    }
    camera_ = FindCamera(host_.scene(), cameraName_);
    if (!camera_) {
        camera_ = FindCamera(host_.scene(), FALLBACK_CAMERA);
        cameraName_ = FALLBACK_CAMERA;
    }
    if (!camera_) {
        for (const std::shared_ptr<Node>& node : host_.scene().Nodes()) {
            if (node->Type().IsA("camera")) {
                camera_ = std::static_pointer_cast<DagNode>(node);
                cameraName_ = camera_->Parent()->Name();
                return;
            }
        }
    }
}

void ViewportWidget::SetCamera(const std::shared_ptr<DagNode>& camera) {
    if (!camera || !camera->InScene() || camera == camera_) {
        return;
    }
    camera_ = camera;
    cameraName_ = camera->Parent()->Name();
    navigation_.End();
    Refresh(false);
    Q_EMIT CameraChanged();
    host_.events().Fire("cameraChange");
}

void ViewportWidget::SetOptions(const ViewOptions& options) {
    options_ = options;
    Refresh(false);
    Q_EMIT OptionsChanged();
}

CameraView ViewportWidget::LookThrough() const {
    return CameraView(*Camera(), width(), height());
}

unsigned ViewportWidget::UploadCount() const {
    return drawListRenderer_ ? drawListRenderer_->UploadCount() : 0;
}

void ViewportWidget::Refresh(bool now) {
    refresh_.Redraw(*this, now);
}

void ViewportWidget::Present() {
    refresh_.Present(*this);
}

void ViewportWidget::BeginGl() {
    QOpenGLContext* const current = QOpenGLContext::currentContext();
    glStack_.push_back({current, current ? current->surface() : nullptr});
    if (current != context() || !refresh_.IsDrawing(*this)) {
        makeCurrent();
    }
    shown_.reset(); // the caller draws over it
}

void ViewportWidget::EndGl() {
    if (glStack_.empty()) {
        return;
    }
    const Current before = glStack_.back();
    glStack_.pop_back();
    if (!glStack_.empty() || refresh_.IsDrawing(*this)) {
        return;
    }
    if (before.context && before.context != context()) {
        before.context->makeCurrent(before.surface);
    } else if (!before.context) {
        doneCurrent();
    }
}

void ViewportWidget::initializeGL() {
    // When the widget moves to another window, it may get a new context: release the objects of the old one.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &ViewportWidget::ReleaseGl,
            Qt::UniqueConnection);
    drawListRenderer_ = std::make_unique<DrawListRenderer>();
    sceneRenderer_ = std::make_unique<SceneRenderer>();
    sceneRenderer_->Initialize();
}

void ViewportWidget::ReleaseGl() {
    if (!drawListRenderer_) {
        return;
    }
    makeCurrent();
    shown_.reset();
    drawListRenderer_.reset();
    sceneRenderer_.reset();
    doneCurrent();
}

void ViewportWidget::resizeGL(int, int) {
    refresh_.Invalidate(*this);
    shown_.reset();
}

void ViewportWidget::paintGL() {
    refresh_.Draw(*this, [this] { DrawFrame(); });
}

void ViewportWidget::DrawFrame() {
    ++frameCount_;
    const std::shared_ptr<DagNode> camera = Camera();
    const CameraView cameraView(*camera, width(), height());
    DrawList list;
    if (options_.pluginShapes && IsViewport2()) {
        list = ViewDrawing::Collect(host_.scene(), *this, cameraView);
    }
    const DrawList over = GateOverlay::Items(*camera, cameraView, options_);
    list.insert(list.end(), over.begin(), over.end());
    AddMarquee(list);
    auto frame = std::make_unique<ViewFrame>(DrawnScene(host_.scene(), cameraView, *camera, options_.display),
                                             std::move(list), devicePixelRatioF());
    if (IsViewport2()) {
        DrawViewport2(std::move(frame));
    } else {
        DrawLegacy(*frame);
    }
    Q_EMIT Drawn();
}

void ViewportWidget::DrawViewport2(std::unique_ptr<ViewFrame> frame) {
    const QRect changed = shown_ ? frame->ChangedSince(*shown_) : frame->Area();
    if (!changed.isEmpty()) {
        glEnable(GL_SCISSOR_TEST);
        glScissor(changed.x(), changed.y(), changed.width(), changed.height());
        sceneRenderer_->Draw(frame->Scene(), frame->PixelRatio());
        drawListRenderer_->Draw(frame->Overlay(), size(), frame->PixelRatio());
        glDisable(GL_SCISSOR_TEST);
    }
    shown_ = std::move(frame);
}

/// Redraws everything, since the drawing of plug-ins may change in every frame.
void ViewportWidget::DrawLegacy(const ViewFrame& frame) {
    shown_.reset();
    glDisable(GL_SCISSOR_TEST); // a tool may have left it on
    sceneRenderer_->Draw(frame.Scene(), frame.PixelRatio());
    if (options_.pluginShapes) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        LoadMatrix(GL_PROJECTION, frame.Scene().view.Projection());
        LoadMatrix(GL_MODELVIEW, frame.Scene().view.View());
        ViewDrawing::DrawLegacy(host_.scene(), *this);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glPopAttrib();
        // Reset the framebuffer's alpha to 1: blending has reduced it, and the window would show through.
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    }
    drawListRenderer_->Draw(frame.Overlay(), size(), frame.PixelRatio());
}

void ViewportWidget::AddMarquee(DrawList& list) const {
    const QRectF marquee = selectTool_.Marquee();
    if (marquee.isEmpty()) {
        return;
    }
    DrawItem box;
    box.kind = DrawItem::Kind::Rectangle;
    box.position = marquee.center();
    box.halfWidth = marquee.width() * 0.5;
    box.halfHeight = marquee.height() * 0.5;
    box.color = QColor(255, 255, 255, 200);
    list.push_back(box);
}

QPointF ViewportWidget::ToView(const QPointF& position) const {
    return {position.x(), height() - 1 - position.y()};
}

void ViewportWidget::mousePressEvent(QMouseEvent* event) {
    Q_EMIT Activated();
    if (event->buttons() == event->button() && drag_ != Drag::None) {
        // The release of an earlier press went to a dialog that opened meanwhile.
        EndDrag();
        ToolEvents::LoseRelease(*this);
    }
    const ViewNavigation::Mode mode =
        ViewNavigation::ModeFor(event->buttons(), event->modifiers(), is2dKeyHeld_);
    if (mode != ViewNavigation::Mode::None && (drag_ == Drag::None || drag_ == Drag::Navigation)) {
        drag_ = Drag::Navigation;
        navigation_.Begin(mode, Camera(), event->localPos(), size());
        return;
    }
    if (drag_ != Drag::None) {
        return;
    }
    if (ToolEvents::Press(*this, *event)) {
        drag_ = Drag::Tool;
    } else if (event->button() == Qt::LeftButton) {
        drag_ = Drag::Selection;
        selectTool_.Press(ToView(event->localPos()));
    }
    dragButton_ = event->button();
}

void ViewportWidget::mouseMoveEvent(QMouseEvent* event) {
    switch (drag_) {
    case Drag::Navigation:
        navigation_.Move(event->localPos());
        break;
    case Drag::Tool:
        refresh_.DuringDrag([&] { ToolEvents::Drag(*this, *event); });
        break;
    case Drag::Selection:
        if (selectTool_.Drag(ToView(event->localPos()))) {
            Refresh(false);
        }
        break;
    case Drag::None:
        ToolEvents::Move(*this, *event);
        break;
    }
}

void ViewportWidget::mouseReleaseEvent(QMouseEvent* event) {
    switch (drag_) {
    case Drag::Navigation: {
        // When one of two buttons is released, continue in the mode of the other.
        const ViewNavigation::Mode mode =
            ViewNavigation::ModeFor(event->buttons(), event->modifiers(), is2dKeyHeld_);
        if (mode == ViewNavigation::Mode::None) {
            EndDrag();
        } else {
            navigation_.Begin(mode, Camera(), event->localPos(), size());
        }
        break;
    }
    case Drag::Tool:
        if (event->button() == dragButton_) {
            drag_ = Drag::None;
            ToolEvents::Release(*this, *event);
        }
        break;
    case Drag::Selection:
        if (event->button() == dragButton_) {
            drag_ = Drag::None;
            selectTool_.Release(*this, ToView(event->localPos()), event->modifiers(), options_.display);
            Refresh(false);
        }
        break;
    case Drag::None:
        break;
    }
}

void ViewportWidget::EndDrag() {
    drag_ = Drag::None;
    navigation_.End();
}

void ViewportWidget::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    if (delta != 0 && drag_ == Drag::None) {
        Q_EMIT Activated();
        navigation_.Wheel(Camera(), delta);
    }
    event->accept();
}

void ViewportWidget::enterEvent(QEvent*) {
    // The view under the pointer gets the keys, unless the user is typing into a field.
    QWidget* const focused = QApplication::focusWidget();
    if (!focused || qobject_cast<ViewportWidget*>(focused)) {
        setFocus(Qt::MouseFocusReason);
    }
    ToolEvents::Enter(*this);
}

void ViewportWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Backslash && !event->isAutoRepeat()) {
        is2dKeyHeld_ = true;
    }
    if (!OfferKey(*event)) {
        ToolEvents::Key(*this, *event);
    }
    event->accept();
}

void ViewportWidget::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Backslash && !event->isAutoRepeat()) {
        is2dKeyHeld_ = false;
    }
    OfferKey(*event);
    event->accept();
}

bool ViewportWidget::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        return OfferKey(*static_cast<QKeyEvent*>(event));
    }
    return QOpenGLWidget::event(event);
}

/// Sends a key to the main window first, where tools filter events, even if the view is in a floating window.
/// Returns whether the main window accepted it.
bool ViewportWidget::OfferKey(QKeyEvent& event) {
    // A receiver has to accept a ShortcutOverride to get the key, but to ignore a key event that it does not
    // want.
    event.setAccepted(event.type() != QEvent::ShortcutOverride);
    QApplication::sendEvent(&host_.ui()->MainWindow(), &event);
    return event.isAccepted();
}

void ViewportWidget::focusInEvent(QFocusEvent* event) {
    Q_EMIT Activated();
    QOpenGLWidget::focusInEvent(event);
}

void ViewportWidget::focusOutEvent(QFocusEvent* event) {
    is2dKeyHeld_ = false;
    QOpenGLWidget::focusOutEvent(event);
}

} // namespace lightbox
