#include "scene/CameraView.h"

#include "HostFixture.h"
#include "scene/CameraFilm.h"
#include "scene/DagNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"

#include <cmath>

using namespace lightbox;
using Imath::V3d;

namespace {

enum Fit { Fill, Horizontal, Vertical, Overscan };

struct Shot {
    Fit fit;
    double overscan;
    double filmAspect;
    double renderAspect;
    int width;
    int height;
    bool orthographic;
    bool panZoom;
};

std::ostream& operator<<(std::ostream& out, const Shot& shot) {
    return out << "fit " << shot.fit << " overscan " << shot.overscan << " film " << shot.filmAspect
               << " render " << shot.renderAspect << " view " << shot.width << "x" << shot.height
               << (shot.orthographic ? " orthographic" : "") << (shot.panZoom ? " pan and zoom" : "");
}

std::vector<Shot> AllShots() {
    std::vector<Shot> shots;
    for (const Fit fit : {Fill, Horizontal, Vertical, Overscan}) {
        for (const double overscan : {1.0, 1.3}) {
            for (const double film : {1.33, 1.5, 2.2}) {
                for (const double render : {1.0, 16.0 / 9.0, 2.35}) {
                    for (const auto& [width, height] : {std::pair(1280, 720), std::pair(500, 900)}) {
                        for (const int kind : {0, 1, 2, 3}) {
                            shots.push_back({fit, overscan, film, render, width, height, (kind & 1) != 0,
                                             (kind & 2) != 0});
                        }
                    }
                }
            }
        }
    }
    return shots;
}

constexpr double ZOOM = 0.4;

/// The side of a picture that is laid over the gate, at zoom 1, as a drawing program computes it from what a
/// camera publishes.
double GateSide(const Shot& shot) {
    const double width = shot.width;
    const double height = shot.height;
    const double view = width / height;
    double k = 1.0;
    if (view < shot.filmAspect) {
        k = shot.renderAspect <= shot.filmAspect ? shot.renderAspect / view : shot.filmAspect / view;
    } else if (shot.renderAspect < shot.filmAspect) {
        k = shot.renderAspect / shot.filmAspect;
    }
    const bool byHeight = shot.fit == Vertical || (shot.fit == Overscan && shot.orthographic);
    if (byHeight) {
        return height / shot.overscan * shot.renderAspect;
    }
    if (shot.fit == Horizontal || shot.orthographic) {
        return width / shot.overscan;
    }
    return shot.fit == Fill ? width / shot.overscan * k : height / shot.overscan / k * shot.renderAspect;
}

} // namespace

class CameraViewTest : public HostFixture {
protected:
    DagNode& Camera() { return static_cast<DagNode&>(*host_.scene().Find("perspShape")); }
    void Set(const char* plug, double value) { host_.scene().FindPlug(plug).Store(value); }

    void Take(const Shot& shot) {
        Set("perspShape.filmFit", shot.fit);
        Set("perspShape.overscan", shot.overscan);
        Set("perspShape.verticalFilmAperture", 0.9);
        Set("perspShape.horizontalFilmAperture", 0.9 * shot.filmAspect);
        Set("perspShape.orthographic", shot.orthographic);
        Set("perspShape.panZoomEnabled", shot.panZoom);
        Set("perspShape.horizontalPan", 0.21);
        Set("perspShape.verticalPan", -0.13);
        Set("perspShape.zoom", ZOOM);
        Set("defaultResolution.width", std::round(1080 * shot.renderAspect));
        Set("defaultResolution.height", 1080);
    }
};

TEST_F(CameraViewTest, ViewToWorldAndBackIsTheSamePixel) {
    const std::vector<Shot> shots = AllShots();
    ASSERT_GE(shots.size(), 200U);
    for (const Shot& shot : shots) {
        Take(shot);
        const CameraView view(Camera(), shot.width, shot.height);
        for (const auto& [x, y] : {std::pair(0.0, 0.0), std::pair(17.5, 300.25), std::pair(499.0, 719.0)}) {
            V3d nearPoint;
            V3d farPoint;
            view.ViewToWorld(x, y, nearPoint, farPoint);
            bool isInFront = false;
            const V3d atNear = view.WorldToView(nearPoint, &isInFront);
            const V3d between = view.WorldToView(nearPoint + (farPoint - nearPoint) * 0.3);
            EXPECT_TRUE(isInFront);
            EXPECT_NEAR(atNear.x, x, 1e-4) << shot;
            EXPECT_NEAR(atNear.y, y, 1e-4) << shot;
            EXPECT_NEAR(atNear.z, 0.0, 1e-6) << shot;
            EXPECT_NEAR(between.x, x, 1e-4) << shot;
            EXPECT_NEAR(between.y, y, 1e-4) << shot;
            EXPECT_NEAR(view.WorldToView(farPoint).z, 1.0, 1e-6) << shot;
        }
    }
}

TEST_F(CameraViewTest, APictureLaidOverTheGateLiesOnTheGate) {
    for (const Shot& shot : AllShots()) {
        Take(shot);
        const CameraView view(Camera(), shot.width, shot.height);
        const double renderAspect = std::round(1080 * shot.renderAspect) / 1080;
        Shot exact = shot;
        exact.renderAspect = renderAspect;
        const double side = GateSide(exact) / (shot.panZoom ? ZOOM : 1.0);
        EXPECT_NEAR(view.ResolutionGate().width(), side, 0.01) << shot;
        EXPECT_NEAR(view.ResolutionGate().height(), side / renderAspect, 0.01) << shot;
        if (shot.fit == Horizontal) {
            EXPECT_NEAR(view.FilmGate().width(), side, 0.01) << shot;
        } else if (shot.fit == Vertical) {
            EXPECT_NEAR(view.FilmGate().height(), side / renderAspect, 0.01) << shot;
        }

        // Where the host's clients look for the centre of the gate: they project the pan point.
        const CameraFilm film(Camera());
        const Imath::M44d world = Camera().WorldMatrix();
        const V3d panPoint = shot.orthographic
                                 ? world.translation()
                                 : V3d(film.HorizontalPan(), film.VerticalPan(), film.FarClip()) * world;
        const V3d center = view.WorldToView(panPoint);
        EXPECT_NEAR(center.x, view.FilmGate().center().x(), 0.5) << shot;
        EXPECT_NEAR(center.y, view.FilmGate().center().y(), 0.5) << shot;
        EXPECT_NEAR(center.x, view.ResolutionGate().center().x(), 0.5) << shot;
        if (!shot.panZoom) {
            EXPECT_NEAR(view.FilmGate().center().x(), shot.width * 0.5, 1e-9) << shot;
        }
    }
}

/// What stands at the edge of the film is drawn at the edge of the gate.
TEST_F(CameraViewTest, TheSceneSitsInTheGateAsItIsRendered) {
    for (const Shot& shot : AllShots()) {
        Take(shot);
        const CameraView view(Camera(), shot.width, shot.height);
        const CameraFilm film(Camera());
        const double renderAspect = std::round(1080 * shot.renderAspect) / 1080;
        const Frustum rendered = film.FrustumOf(renderAspect, {});
        const V3d corner = V3d(rendered.right, rendered.top, -film.NearClip()) * Camera().WorldMatrix();
        const V3d pixel = view.WorldToView(corner);
        const QRectF gate = view.ResolutionGate();
        EXPECT_NEAR(pixel.x, gate.x() + gate.width(), 0.01) << shot;
        EXPECT_NEAR(pixel.y, gate.y() + gate.height(), 0.01) << shot;
    }
}

TEST_F(CameraViewTest, FilmOffsetAndSqueezeMoveThePicture) {
    Take({Horizontal, 1.0, 1.5, 1.5, 900, 600, false, false});
    Set("perspShape.focalLength", 50);
    Set("perspShape.nearClipPlane", 1);
    const Frustum plain = CameraFilm(Camera()).FrustumOf(1.5, {});
    // 1.35 inches of film 50 mm behind the lens, seen 1 cm in front of it.
    EXPECT_NEAR(plain.right, 1.35 * 25.4 / 50 / 2, 1e-12);
    EXPECT_NEAR(plain.top, 0.9 * 25.4 / 50 / 2, 1e-12);
    Set("perspShape.horizontalFilmOffset", 0.1);
    Set("perspShape.shakeEnabled", 1);
    Set("perspShape.verticalShake", -0.2);
    const Frustum moved = CameraFilm(Camera()).FrustumOf(1.5, {});
    EXPECT_NEAR(moved.left - plain.left, 0.1 * 25.4 / 50, 1e-12);
    EXPECT_NEAR(moved.top - plain.top, -0.2 * 25.4 / 50, 1e-12);
    Set("perspShape.lensSqueezeRatio", 2);
    const Frustum squeezed = CameraFilm(Camera()).FrustumOf(3.0, {});
    EXPECT_NEAR(squeezed.right - squeezed.left, 2 * (plain.right - plain.left), 1e-12);
    EXPECT_NEAR(squeezed.top - squeezed.bottom, plain.top - plain.bottom, 1e-12);
}

TEST_F(CameraViewTest, PointsBehindTheEyeAreToldAndMirrored) {
    Take({Horizontal, 1.0, 1.5, 1.5, 900, 600, false, false});
    const CameraView view(Camera(), 900, 600);
    bool isInFront = true;
    const V3d pixel = view.WorldToView(V3d(1.0, 0.0, 10.0) * Camera().WorldMatrix(), &isInFront);
    EXPECT_FALSE(isInFront);
    EXPECT_LT(pixel.x, 450);
    EXPECT_TRUE(std::isfinite(view.WorldToView(Camera().WorldMatrix().translation()).x));
}

/// Values that make no picture are replaced, never divided by.
TEST_F(CameraViewTest, SenselessCamerasStillShowSomething) {
    for (const char* attribute : {"overscan", "focalLength", "horizontalFilmAperture", "nearClipPlane",
                                  "cameraScale", "orthographicWidth", "zoom", "lensSqueezeRatio"}) {
        for (const double orthographic : {0.0, 1.0}) {
            Take({Fill, 1.3, 1.5, 1.5, 900, 600, false, true});
            Set("perspShape.orthographic", orthographic);
            const std::string plug = std::string("perspShape.") + attribute;
            const Plug kept = host_.scene().FindPlug(plug);
            const auto before = kept.Stored();
            Set(plug.c_str(), 0.0);
            const CameraView view(Camera(), 0, 600);
            const V3d pixel = view.WorldToView(V3d(1, 2, 3));
            EXPECT_TRUE(std::isfinite(pixel.x) && std::isfinite(view.FilmGate().width())) << attribute;
            kept.Store(before);
        }
    }
}
