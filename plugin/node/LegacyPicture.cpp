#include "node/LegacyPicture.h"

#include "host/Settings.h"
#include "node/LegacyOutline.h"
#include "node/ViewPlacement.h"

#include <maya/M3dView.h>

#include <QImage>
#include <QLineF>
#include <qopengl.h>

#include <cmath>

namespace vellix {

LegacyPicture::~LegacyPicture() {
    MStatus status;
    M3dView view = texture_ != 0 ? M3dView::active3dView(&status) : M3dView();
    if (texture_ != 0 && status && view.beginGL()) {
        glDeleteTextures(1, &texture_);
        view.endGL();
    }
}

void LegacyPicture::Draw(M3dView& view, const QImage* image, const ViewPlacement& placement, float opacity,
                         const QLineF& penString, LegacyOutline* outline) {
    LegacyOpenGlBegin(view);
    if (image) {
        DrawImage(*image, placement, opacity);
    }
    if (!penString.isNull()) {
        DrawLine(penString);
    }
    if (outline) {
        BeginInverting();
        outline->OnViewDrawn(view);
    }
    LegacyOpenGlEnd(view);
}

void LegacyPicture::DrawImage(const QImage& image, const ViewPlacement& placement, float opacity) {
    // A view's OpenGL context, with its textures, ends with the view.
    if (texture_ == 0 || glIsTexture(texture_) == GL_FALSE) {
        InitializeLegacyViewport();
        imageKey_ = 0;
    }
    glBindTexture(GL_TEXTURE_2D, texture_);
    if (imageKey_ != image.cacheKey()) {
        imageKey_ = image.cacheKey();
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, image.width(), image.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                        image.constBits());
    }
    glColor4f(1.0f, 1.0f, 1.0f, opacity);
    DrawQuad(placement);
}

void LegacyPicture::DrawLine(const QLineF& line) {
    glDisable(GL_TEXTURE_2D);
    glLineWidth(1.0f);
    glColor4f(1.0f, 0.0f, 0.0f, 1.0f);
    glBegin(GL_LINES);
    glVertex2d(line.x1(), line.y1());
    glVertex2d(line.x2(), line.y2());
    glEnd();
}

/// Lines invert the bits of their colour in what is below them.
void LegacyPicture::BeginInverting() {
    for (const GLenum capability : {GL_TEXTURE_2D, GL_LINE_SMOOTH, GL_LINE_STIPPLE}) {
        glDisable(capability);
    }
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_XOR);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    glLineWidth(1.0f);
}

void LegacyPicture::InitializeLegacyViewport() {
    glGenTextures(1, &texture_);
    glBindTexture(GL_TEXTURE_2D, texture_);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, Settings::FINAL_IMAGE_WIDTH, Settings::FINAL_IMAGE_WIDTH, 0,
                 GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    // Clamp to the edge: plain clamping would mix in the border colour.
    constexpr GLint clampToEdge = 0x812F;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, clampToEdge);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, clampToEdge);
}

void LegacyPicture::LegacyOpenGlBegin(M3dView& view) {
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

void LegacyPicture::DrawQuad(const ViewPlacement& placement) {
    const double size = 2.0 * placement.HalfSize();
    double left = placement.Center().x - placement.HalfSize();
    double top = placement.Center().y + placement.HalfSize();
    if (size == Settings::FINAL_IMAGE_WIDTH) {
        // Drawn pixel for pixel. An offset of half a pixel, as in a view of odd size, would blur the image.
        // Round halves left and up, as ViewPlacement does.
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

void LegacyPicture::LegacyOpenGlEnd(M3dView& view) {
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glPopClientAttrib();
    glPopAttrib();
    view.endGL();
}

} // namespace vellix
