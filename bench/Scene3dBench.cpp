// Measures a scene of 50,000 polygons in a viewport of 1280 x 720 with the available OpenGL (Mesa's software
// renderer under Xvfb): a frame while the camera orbits, compared with only drawing the same buffers; the
// part of the frame that finds what to draw; and the cost of changing one mesh.
#include "app/LightboxHost.h"
#include "mel/Interpreter.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Material.h"
#include "scene/MeshNode.h"
#include "scene/MeshTessellation.h"
#include "scene/Scene.h"
#include "scene/VisibleShapes.h"
#include "viewport/DrawnScene.h"
#include "viewport/MeshBuffers.h"
#include "viewport/SceneRenderer.h"

#include <QApplication>
#include <QMatrix4x4>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <iostream>

namespace {

using namespace lightbox;

constexpr int WIDTH = 1280;
constexpr int HEIGHT = 720;
/// Degrees per frame.
constexpr double STEP = 3.0;

void Mel(const std::string& text) {
    Host::Get().interpreter().Execute(text);
}

/// Makes a sphere of 10,000 faces under its own transform.
void AddSphere(int index) {
    const std::string number = std::to_string(index);
    Mel("polySphere -sx 100 -sy 100 -r 2 -n ball" + number + "; move " + std::to_string(4 * index - 8) +
        " 2 0; group -n above" + number + " ball" + number);
}

void BuildScene() {
    for (int i = 0; i < 5; ++i) {
        AddSphere(i);
    }
    Mel("select -clear; camera -n shot; setAttr shot1.rx -15");
}

/// Orbits the camera around the origin.
CameraView Orbit(double degrees) {
    const double angle = degrees * M_PI / 180.0;
    Scene& scene = Host::Get().scene();
    scene.FindPlug("shot1.ry").Store(degrees);
    scene.FindPlug("shot1.tx").Store(22.0 * std::sin(angle));
    scene.FindPlug("shot1.ty").Store(7.0);
    scene.FindPlug("shot1.tz").Store(22.0 * std::cos(angle));
    return CameraView(static_cast<DagNode&>(*scene.Find("shotShape1")), WIDTH, HEIGHT);
}

DagNode& CameraShape() {
    return static_cast<DagNode&>(*Host::Get().scene().Find("shotShape1"));
}

/// An OpenGL context with a framebuffer to draw into.
struct Canvas {
    Canvas() {
        surface.create();
        if (!context.create() || !context.makeCurrent(&surface)) {
            std::cerr << "bench_scene3d needs OpenGL.\n";
            std::exit(1);
        }
        buffer = std::make_unique<QOpenGLFramebufferObject>(WIDTH, HEIGHT, QOpenGLFramebufferObject::Depth);
        buffer->bind();
    }
    QOpenGLFunctions& Gl() { return *context.functions(); }

    QOffscreenSurface surface;
    QOpenGLContext context;
    std::unique_ptr<QOpenGLFramebufferObject> buffer;
};

std::unique_ptr<Canvas> g_canvas;

void OrbitFrames(benchmark::State& state, DisplayOptions::Shading shading) {
    SceneRenderer renderer;
    renderer.Initialize();
    DisplayOptions options;
    options.shading = shading;
    double degrees = 0.0;
    const auto frame = [&] {
        const CameraView view = Orbit(degrees += STEP);
        renderer.Draw(DrawnScene(Host::Get().scene(), view, CameraShape(), options), 1.0);
        g_canvas->Gl().glFinish();
    };
    frame();
    const unsigned before = renderer.UploadCount();
    for (auto _ : state) {
        frame();
    }
    state.counters["uploads"] = renderer.UploadCount() - before;
}

void Orbit50000(benchmark::State& state) {
    OrbitFrames(state, DisplayOptions::Shading::Smooth);
}
BENCHMARK(Orbit50000)->Unit(benchmark::kMillisecond)->UseRealTime();

void OrbitWireframe(benchmark::State& state) {
    OrbitFrames(state, DisplayOptions::Shading::Wireframe);
}
BENCHMARK(OrbitWireframe)->Unit(benchmark::kMillisecond)->UseRealTime();

QMatrix4x4 Columns(const Imath::M44d& rows) {
    QMatrix4x4 matrix;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            matrix(column, row) = static_cast<float>(rows[row][column]);
        }
    }
    return matrix;
}

/// The reference: draws the same triangles from the same buffers, lit by a lamp at the eye, and looks up
/// nothing.
void PlainBuffers(benchmark::State& state) {
    QOpenGLFunctions& gl = g_canvas->Gl();
    QOpenGLShaderProgram program;
    program.addShaderFromSourceCode(QOpenGLShader::Vertex,
                                    "attribute vec3 position; attribute vec3 normal; uniform mat4 matrix;"
                                    "uniform mat3 turn; varying vec3 n; void main() {"
                                    "n = turn * normal; gl_Position = matrix * vec4(position, 1.0); }");
    program.addShaderFromSourceCode(QOpenGLShader::Fragment,
                                    "varying vec3 n; void main() {"
                                    "gl_FragColor = vec4(vec3(abs(normalize(n).z) * 0.4), 1.0); }");
    program.link();
    const int position = program.attributeLocation("position");
    const int normal = program.attributeLocation("normal");
    MeshBuffers meshes;
    std::vector<std::pair<MeshBuffers::Buffers*, Imath::M44d>> drawn;
    for (const VisibleShape& visible : FindVisibleShapes(Host::Get().scene())) {
        if (MeshNode::Is(*visible.shape)) {
            drawn.emplace_back(&meshes.Get(*MeshNode::Evaluate(*visible.shape)), visible.world);
        }
    }
    double degrees = 0.0;
    for (auto _ : state) {
        const CameraView view = Orbit(degrees += STEP);
        gl.glViewport(0, 0, WIDTH, HEIGHT);
        gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.glEnable(GL_DEPTH_TEST);
        program.bind();
        program.enableAttributeArray(position);
        program.enableAttributeArray(normal);
        for (const auto& [buffers, world] : drawn) {
            program.setUniformValue("matrix", Columns(world * view.View() * view.Projection()));
            program.setUniformValue("turn", Columns(world * view.View()).normalMatrix());
            buffers->corners.bind();
            program.setAttributeBuffer(position, GL_FLOAT, 0, 3, 6 * sizeof(float));
            program.setAttributeBuffer(normal, GL_FLOAT, 3 * sizeof(float), 3, 6 * sizeof(float));
            buffers->triangles.bind();
            gl.glDrawElements(GL_TRIANGLES, buffers->triangleIndexes, GL_UNSIGNED_INT, nullptr);
            buffers->triangles.release();
            buffers->corners.release();
        }
        program.release();
        gl.glDisable(GL_DEPTH_TEST);
        gl.glFinish();
    }
}
BENCHMARK(PlainBuffers)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The part of a frame before drawing: looks up shapes, meshes, materials and matrices.
void FindWhatIsDrawn(benchmark::State& state) {
    double degrees = 0.0;
    for (auto _ : state) {
        const CameraView view = Orbit(degrees += STEP);
        const DrawnScene scene(Host::Get().scene(), view, CameraShape(), {});
        benchmark::DoNotOptimize(scene.surfaces.data());
    }
}
BENCHMARK(FindWhatIsDrawn)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// Changes one of the five meshes in every frame: the mesh is rebuilt, tessellated, uploaded and drawn.
void ChangeOneMesh(benchmark::State& state) {
    SceneRenderer renderer;
    renderer.Initialize();
    const CameraView view = Orbit(30.0);
    const Plug radius = Host::Get().scene().FindPlug("polySphere1.radius");
    double size = 2.0;
    const auto draw = [&] { renderer.Draw(DrawnScene(Host::Get().scene(), view, CameraShape(), {}), 1.0); };
    draw();
    const unsigned before = renderer.UploadCount();
    for (auto _ : state) {
        radius.Store(size = size < 2.5 ? size + 0.001 : 2.0);
        draw();
        g_canvas->Gl().glFinish();
    }
    state.counters["uploads_a_frame"] =
        static_cast<double>(renderer.UploadCount() - before) / static_cast<double>(state.iterations());
    radius.Store(2.0);
}
BENCHMARK(ChangeOneMesh)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QTemporaryDir preferences;
    const LightboxHost host({true, preferences.path().toStdString()});
    g_canvas = std::make_unique<Canvas>();
    BuildScene();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    g_canvas.reset();
    return 0;
}
