// The drawing over a view: where it lies, and how the legacy viewport draws it.

#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/LegacyOutline.h"

#include <maya/M3dView.h>
#include <maya/MCommonRenderSettingsData.h>
#include <maya/MDagPath.h>
#include <maya/MFnCamera.h>
#include <maya/MFrameContext.h>
#include <maya/MMatrix.h>
#include <maya/MRenderUtil.h>

#include <qopengl.h>

#include <cmath>

namespace vellix {

namespace {

double GetRenderAspect() {
    MCommonRenderSettingsData settings;
    MRenderUtil::getCommonRenderSettings(settings);
    return settings.height > 0 ? static_cast<double>(settings.width) / settings.height : 1.0;
}

/// The point in the world that 2D pan brings to the middle of the view.
MPoint GetPanPoint(const MDagPath& cameraPath) {
    const MFnCamera camera(cameraPath);
    if (camera.isOrtho()) {
        return camera.eyePoint(MSpace::kWorld);
    }
    return MPoint(camera.horizontalPan(), camera.verticalPan(), camera.farClippingPlane(), 1.0) *
           cameraPath.inclusiveMatrix();
}

} // namespace

void BaseNode::UpdateOverlayValues(const MDagPath& cameraPath, int width, int height, bool) {
    const MFnCamera fn(cameraPath);
    OverlayCamera camera;
    camera.filmFit = fn.filmFit();
    camera.orthographic = fn.isOrtho();
    camera.overscan = fn.overscan();
    camera.filmAspect = fn.aspectRatio();
    camera.renderAspect = GetRenderAspect();
    camera.panZoomEnabled = fn.panZoomEnabled();
    camera.zoom = fn.zoom();
    m_overlay.Update(camera, width, height);

    if (const std::shared_ptr<LayerManager> layers = GetLayerManager()) {
        layers->SetFrame(MayaUtil::GetPlaybackTimeValue());
    }
}

void BaseNode::UpdateOverlayValues(M3dView& view) {
    MDagPath cameraPath;
    if (!view.getCamera(cameraPath)) {
        return;
    }
    UpdateOverlayValues(cameraPath, view.portWidth(), view.portHeight(),
                        view.getRendererName() == M3dView::kViewport2Renderer);
    UpdateOverlayPan(cameraPath, view);
}

void BaseNode::UpdateOverlayPan(const MDagPath& cameraPath, const M3dView& view) {
    if (!m_overlay.IsPanZoomActive()) {
        m_overlay.ClearPan();
        return;
    }
    short x = 0;
    short y = 0;
    view.worldToView(GetPanPoint(cameraPath), x, y);
    m_overlay.SetPan(x, y);
}

void BaseNode::UpdateOverlayPan(const MDagPath& cameraPath, const MHWRender::MFrameContext& frameContext) {
    if (!m_overlay.IsPanZoomActive()) {
        m_overlay.ClearPan();
        return;
    }
    double x = 0.0;
    double y = 0.0;
    frameContext.worldToViewport(GetPanPoint(cameraPath), x, y);
    m_overlay.SetPan(x, y);
}

QPoint BaseNode::ScreenCoordsToTexCoords(const QPoint& point) const {
    return m_overlay.ToImage(point);
}

MPoint BaseNode::TexCoordsToScreenCoords(const QPoint& pixel) const {
    return m_overlay.ToView(pixel);
}

float BaseNode::TextureToScreenScale() const {
    return m_overlay.Scale();
}

MPoint BaseNode::GetOverlayCenter() const {
    return m_overlay.Center();
}

float BaseNode::GetOverlayScale() const {
    return m_overlay.HalfSize();
}

void BaseNode::SetTransformOutline(const QString& camera, const QPoint& p0, const QPoint& p1,
                                   const QPoint& p2, const QPoint& p3) {
    m_outlineCamera = camera;
    m_outline = {{p0, p1, p2, p3}};
    m_drawOutline = true;
}

void BaseNode::ClearTransformOutline() {
    m_drawOutline = false;
}

bool BaseNode::DrawTransformOutline(const QString& camera) const {
    return m_drawOutline && m_outlineCamera == camera;
}

void BaseNode::TransformOutlinePoints(MPoint& p0, MPoint& p1, MPoint& p2, MPoint& p3) const {
    p0 = m_overlay.ToView(m_outline[0]);
    p1 = m_overlay.ToView(m_outline[1]);
    p2 = m_overlay.ToView(m_outline[2]);
    p3 = m_overlay.ToView(m_outline[3]);
}

void BaseNode::draw(M3dView& view, const MDagPath&, M3dView::DisplayStyle, M3dView::DisplayStatus) {
    const QImage* image = GetFinalImage(MayaUtil::GetCameraName(view));
    if (image == nullptr) {
        return;
    }
    UpdateOverlayValues(view);
    LegacyOpenGlBegin(view);
    // Contexts come and go with their views, and take their textures along.
    if (m_legacyTexture == 0 || glIsTexture(m_legacyTexture) == GL_FALSE) {
        InitializeLegacyViewport();
        m_legacyTextureKey = 0;
    }
    glBindTexture(GL_TEXTURE_2D, m_legacyTexture);
    if (m_legacyTextureKey != image->cacheKey()) {
        m_legacyTextureKey = image->cacheKey();
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, image->width(), image->height(), GL_RGBA, GL_UNSIGNED_BYTE,
                        image->constBits());
    }
    glColor4f(1.0f, 1.0f, 1.0f, GetOpacity());
    DrawLegacyQuad();
    if (s_transformContext != nullptr && IsMaster()) {
        s_transformContext->OnViewDrawn(view);
    }
    LegacyOpenGlEnd(view);
}

void BaseNode::InitializeLegacyViewport() {
    glGenTextures(1, &m_legacyTexture);
    glBindTexture(GL_TEXTURE_2D, m_legacyTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, Settings::FINAL_IMAGE_WIDTH, Settings::FINAL_IMAGE_WIDTH, 0,
                 GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    // To the edge: plain clamping would mix the border's colour in.
    constexpr GLint clampToEdge = 0x812F;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, clampToEdge);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, clampToEdge);
}

void BaseNode::LegacyOpenGlBegin(M3dView& view) {
    view.beginGL();
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0.0, view.portWidth(), 0.0, view.portHeight(), -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    for (const GLenum capability : {GL_DEPTH_TEST, GL_LIGHTING, GL_CULL_FACE, GL_ALPHA_TEST}) {
        glDisable(capability);
    }
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
}

void BaseNode::DrawLegacyQuad() const {
    const double size = 2.0 * m_overlay.HalfSize();
    double left = m_overlay.Center().x - m_overlay.HalfSize();
    double top = m_overlay.Center().y + m_overlay.HalfSize();
    if (size == Settings::FINAL_IMAGE_WIDTH) {
        // Pixel for pixel: half a pixel beside, as in a view of odd size, all would be blurred. Halves go to
        // the left and upward, as ScreenCoordsToTexCoords() rounds.
        left = std::ceil(left - 0.5);
        top = std::floor(top + 0.5);
    }
    const double corners[][2] = {{0.0, 1.0}, {1.0, 1.0}, {1.0, 0.0}, {0.0, 0.0}};
    glBegin(GL_QUADS);
    for (const auto& corner : corners) {
        // The image's first row is at the top.
        glTexCoord2d(corner[0], corner[1]);
        glVertex2d(left + corner[0] * size, top - corner[1] * size);
    }
    glEnd();
}

void BaseNode::LegacyOpenGlEnd(M3dView& view) {
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glPopClientAttrib();
    glPopAttrib();
    view.endGL();
}

void BaseNode::DeleteLegacyTexture() {
    MStatus status;
    M3dView view = m_legacyTexture != 0 ? M3dView::active3dView(&status) : M3dView();
    if (m_legacyTexture != 0 && status && view.beginGL()) {
        glDeleteTextures(1, &m_legacyTexture);
        view.endGL();
    }
    m_legacyTexture = 0;
}

} // namespace vellix
