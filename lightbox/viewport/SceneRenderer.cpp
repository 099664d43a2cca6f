#include "viewport/SceneRenderer.h"

#include "scene/CameraView.h"
#include "viewport/DrawnScene.h"
#include "viewport/MeshBuffers.h"
#include "viewport/SceneLines.h"
#include "viewport/SceneShaders.h"

#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

using Imath::M44d;
using Imath::V3f;
using Imath::V4f;

/// The distance by which lines are moved towards the eye, in pixel sizes at their depth. It keeps lines
/// visible that lie on a slanted surface.
constexpr double LINES_FORWARD = 1.0;
constexpr double GRID_FORWARD = 3.0;
/// The length of an axis of the icon, and the icon's position, in view pixels.
constexpr float AXIS_LENGTH = 24.0f;
constexpr float ICON_CENTER = 44.0f;

/// Transposes the matrix, since OpenGL multiplies column vectors.
QMatrix4x4 Matrix(const M44d& rows) {
    QMatrix4x4 matrix;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            matrix(column, row) = static_cast<float>(rows[row][column]);
        }
    }
    return matrix;
}

QVector3D Vector(const V3f& v) {
    return {v.x, v.y, v.z};
}

V4f Vector(const QColor& color) {
    return {static_cast<float>(color.redF()), static_cast<float>(color.greenF()),
            static_cast<float>(color.blueF()), 1.0f};
}

/// The axis perpendicular to the grid: y for the ground, or the axis that an orthographic view looks along.
int GridAxis(const CameraView& view) {
    if (!view.IsOrthographic()) {
        return 1;
    }
    for (int axis = 0; axis < 3; ++axis) {
        if (std::abs(view.View()[axis][2]) > 0.9999) {
            return axis;
        }
    }
    return 1;
}

} // namespace

/// Draws frames and keeps the buffers and shaders between them.
class SceneRenderer::Private {
public:
    bool Build();
    void Draw();

    unsigned UploadCount() const { return meshes_.UploadCount(); }

    const DrawnScene* scene = nullptr;
    double devicePixelRatio = 1.0;
    bool isReady = false;

private:
    using Surface = DrawnScene::Surface;

    const CameraView& View() const { return scene->view; }
    void DrawBackground();
    /// Between BeginLines() and EndLines(), lines are antialiased and do not write depth.
    void BeginLines();
    void EndLines();
    void DrawAxisIcon();
    /// Draws either the transparent or the opaque surfaces.
    void DrawSurfaces(bool transparent);
    void DrawSurface(const Surface& surface);
    void DrawWires();
    void DrawOutlines();
    /// Draws lines or triangles with a colour per vertex from client memory.
    void DrawVertices(GLenum mode, const std::vector<LineVertex>& vertices, const QMatrix4x4& matrix,
                      float towardsEye);
    /// The clip-space depth to subtract so that lines lie this number of pixel sizes nearer.
    float TowardsEye(double pixels) const;
    void Restore();

    QOpenGLFunctions* gl_ = nullptr;
    SceneShaders shaders_;
    MeshBuffers meshes_;
    QMatrix4x4 viewMatrix_;
    QMatrix4x4 projection_;
};

bool SceneRenderer::Private::Build() {
    QOpenGLContext* context = QOpenGLContext::currentContext();
    gl_ = context ? context->functions() : nullptr;
    isReady = gl_ && shaders_.Build();
    return isReady;
}

void SceneRenderer::Private::Draw() {
    gl_->glViewport(0, 0, static_cast<int>(std::lround(View().Width() * devicePixelRatio)),
                    static_cast<int>(std::lround(View().Height() * devicePixelRatio)));
    viewMatrix_ = Matrix(View().View());
    projection_ = Matrix(View().Projection());
    gl_->glDisable(GL_CULL_FACE);
    gl_->glDepthMask(GL_TRUE);
    gl_->glDepthFunc(GL_LEQUAL);
    gl_->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl_->glLineWidth(static_cast<float>(std::max(1.0, devicePixelRatio)));
    // Keep the framebuffer's alpha at 1.
    gl_->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    DrawBackground();
    gl_->glEnable(GL_DEPTH_TEST);
    DrawSurfaces(false);
    BeginLines();
    if (scene->options.grid) {
        DrawVertices(GL_LINES, GridLines(GridAxis(View())), projection_ * viewMatrix_,
                     TowardsEye(GRID_FORWARD));
    }
    EndLines();
    DrawSurfaces(true);
    BeginLines();
    DrawWires();
    DrawOutlines();
    gl_->glDisable(GL_DEPTH_TEST);
    if (scene->options.axisIcon) {
        DrawAxisIcon();
    }
    EndLines();
    Restore();
    meshes_.EndFrame();
}

void SceneRenderer::Private::DrawBackground() {
    const V4f top = Vector(scene->options.backgroundTop);
    const V4f bottom = Vector(scene->options.backgroundBottom);
    const std::vector<LineVertex> corners = {
        {V3f(-1, -1, 0), bottom}, {V3f(1, -1, 0), bottom}, {V3f(-1, 1, 0), top}, {V3f(1, 1, 0), top}};
    gl_->glDisable(GL_DEPTH_TEST);
    DrawVertices(GL_TRIANGLE_STRIP, corners, QMatrix4x4(), 0.0f);
}

void SceneRenderer::Private::DrawVertices(GLenum mode, const std::vector<LineVertex>& vertices,
                                          const QMatrix4x4& matrix, float towardsEye) {
    if (vertices.empty()) {
        return;
    }
    QOpenGLShaderProgram& program = shaders_.Lines();
    program.bind();
    program.setUniformValue("modelViewProjection", matrix);
    program.setUniformValue("tint", QVector4D(1, 1, 1, 1));
    program.setUniformValue("towardsEye", towardsEye);
    program.enableAttributeArray(SceneShaders::Position);
    program.enableAttributeArray(SceneShaders::Color);
    program.setAttributeArray(SceneShaders::Position, &vertices.front().position.x, 3, sizeof(LineVertex));
    program.setAttributeArray(SceneShaders::Color, &vertices.front().color.x, 4, sizeof(LineVertex));
    gl_->glDrawArrays(mode, 0, static_cast<int>(vertices.size()));
}

float SceneRenderer::Private::TowardsEye(double pixels) const {
    // The derivative of the projected depth with respect to the distance, times the size of a pixel at that
    // distance. The distance cancels out in both projections.
    const M44d& projection = View().Projection();
    const double pixelSize = 2.0 / (projection[1][1] * View().Height());
    return static_cast<float>(-projection[View().IsOrthographic() ? 2 : 3][2] * pixelSize * pixels);
}

void SceneRenderer::Private::BeginLines() {
    gl_->glEnable(GL_BLEND);
    gl_->glEnable(GL_LINE_SMOOTH);
    // The antialiased edge of a line would hide parts of later lines.
    gl_->glDepthMask(GL_FALSE);
}

void SceneRenderer::Private::EndLines() {
    gl_->glDepthMask(GL_TRUE);
    gl_->glDisable(GL_LINE_SMOOTH);
    gl_->glDisable(GL_BLEND);
}

void SceneRenderer::Private::DrawAxisIcon() {
    const M44d& m = View().View();
    const auto column = [&](int i) {
        return V3f(static_cast<float>(m[0][i]), static_cast<float>(m[1][i]), static_cast<float>(m[2][i]))
            .normalized();
    };
    QMatrix4x4 matrix;
    matrix.ortho(0.0f, static_cast<float>(View().Width()), 0.0f, static_cast<float>(View().Height()),
                 -1000.0f, 1000.0f);
    matrix.translate(ICON_CENTER, ICON_CENTER);
    matrix.scale(AXIS_LENGTH);
    DrawVertices(GL_LINES, AxisIconLines(column(0), column(1), column(2)), matrix, 0.0f);
}

void SceneRenderer::Private::DrawSurfaces(bool transparent) {
    QOpenGLShaderProgram& program = shaders_.Surface();
    program.bind();
    program.setUniformValue("projection", projection_);
    program.setUniformValue("isParallel", View().IsOrthographic());
    if (transparent) {
        // Transparent surfaces hide nothing, so they do not write depth.
        gl_->glEnable(GL_BLEND);
        gl_->glDepthMask(GL_FALSE);
    }
    for (const Surface& surface : scene->surfaces) {
        if (surface.IsTransparent() == transparent) {
            DrawSurface(surface);
        }
    }
    gl_->glDepthMask(GL_TRUE);
    gl_->glDisable(GL_BLEND);
}

void SceneRenderer::Private::DrawSurface(const Surface& surface) {
    const Material& material = surface.material;
    MeshBuffers::Buffers& buffers = meshes_.Get(*surface.mesh);
    const QMatrix4x4 modelView = viewMatrix_ * Matrix(surface.world);
    QOpenGLShaderProgram& program = shaders_.Surface();
    program.bind();
    program.setUniformValue("modelView", modelView);
    program.setUniformValue("normalMatrix", modelView.normalMatrix());
    program.setUniformValue("color", Vector(material.color));
    program.setUniformValue("incandescence", Vector(material.incandescence));
    program.setUniformValue("diffuse", material.diffuse);
    program.setUniformValue("specular", material.specular);
    program.setUniformValue("opacity", material.opacity);
    program.setUniformValue("isFlat", material.isFlat);
    program.enableAttributeArray(SceneShaders::Position);
    program.enableAttributeArray(SceneShaders::Normal);
    buffers.corners.bind();
    program.setAttributeBuffer(SceneShaders::Position, GL_FLOAT, 0, 3, 6 * sizeof(float));
    program.setAttributeBuffer(SceneShaders::Normal, GL_FLOAT, 3 * sizeof(float), 3, 6 * sizeof(float));
    buffers.triangles.bind();
    if (surface.hasLines) {
        // Push the surface back by its slope. Far sides may show through at the edges, but the lines cover
        // them there.
        gl_->glEnable(GL_POLYGON_OFFSET_FILL);
        gl_->glPolygonOffset(1.0f, 2.0f);
    }
    gl_->glDrawElements(GL_TRIANGLES, buffers.triangleIndexes, GL_UNSIGNED_INT, nullptr);
    gl_->glDisable(GL_POLYGON_OFFSET_FILL);
    buffers.triangles.release();
    buffers.corners.release();
}

void SceneRenderer::Private::DrawWires() {
    QOpenGLShaderProgram& program = shaders_.Lines();
    for (const DrawnScene::Wires& wires : scene->wires) {
        MeshBuffers::Buffers& buffers = meshes_.Get(*wires.mesh);
        const V4f& color = wires.color;
        program.bind();
        program.setUniformValue("modelViewProjection", projection_ * viewMatrix_ * Matrix(wires.world));
        program.setUniformValue("tint", QVector4D(color.x, color.y, color.z, color.w));
        program.setUniformValue("towardsEye", TowardsEye(LINES_FORWARD));
        program.enableAttributeArray(SceneShaders::Position);
        program.disableAttributeArray(SceneShaders::Color);
        program.setAttributeValue(SceneShaders::Color, QVector4D(1, 1, 1, 1));
        buffers.points.bind();
        program.setAttributeBuffer(SceneShaders::Position, GL_FLOAT, 0, 3);
        buffers.lines.bind();
        gl_->glDrawElements(GL_LINES, buffers.lineIndexes, GL_UNSIGNED_INT, nullptr);
        buffers.lines.release();
        buffers.points.release();
    }
}

void SceneRenderer::Private::DrawOutlines() {
    for (const DrawnScene::Outline& outline : scene->outlines) {
        std::vector<LineVertex> lines;
        for (const V3f& point : outline.points) {
            lines.push_back({point, outline.color});
        }
        DrawVertices(GL_LINES, lines, projection_ * viewMatrix_ * Matrix(outline.world),
                     TowardsEye(LINES_FORWARD));
    }
}

void SceneRenderer::Private::Restore() {
    shaders_.Lines().disableAttributeArray(SceneShaders::Position);
    shaders_.Lines().disableAttributeArray(SceneShaders::Color);
    shaders_.Lines().release();
    gl_->glDepthFunc(GL_LESS);
    gl_->glBlendFunc(GL_ONE, GL_ZERO);
    gl_->glLineWidth(1.0f);
}

SceneRenderer::SceneRenderer()
    : d_(std::make_unique<Private>()) {}

SceneRenderer::~SceneRenderer() = default;

unsigned SceneRenderer::UploadCount() const {
    return d_->UploadCount();
}

bool SceneRenderer::Initialize() {
    return d_->Build();
}

void SceneRenderer::Draw(const DrawnScene& scene, double devicePixelRatio) {
    if (!d_->isReady) {
        return;
    }
    d_->scene = &scene;
    d_->devicePixelRatio = devicePixelRatio;
    d_->Draw();
    d_->scene = nullptr;
}

} // namespace lightbox
