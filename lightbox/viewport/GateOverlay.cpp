#include "viewport/GateOverlay.h"

#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"

#include <algorithm>

namespace lightbox {

namespace {

const QColor GATE_LINE(0xc8, 0xcc, 0xd2, 210);
const QColor GUIDE_LINE(0xc8, 0xcc, 0xd2, 120);
/// The lines of the field chart; faint, because they cover the drawing.
const QColor CHART_LINE(0xc8, 0xcc, 0xd2, 70);
const QColor LABEL(0xe6, 0xe8, 0xea, 230);
constexpr unsigned LABEL_SIZE = 12;
/// The sides of the safe areas as shares of the gate's, as the host's documentation gives them.
constexpr double SAFE_ACTION = 0.9;
constexpr double SAFE_TITLE = 0.8;
constexpr int CHART_FIELDS = 12;

double Number(const DagNode& shape, const char* attribute) {
    return Plug::Of(shape, attribute).Number();
}

/// Collects the items; coordinates as in DrawItem.
class Drawing {
public:
    void Line(const QPointF& from, const QPointF& to, const QColor& color) {
        Add(DrawItem::Kind::Line, from, color).end = to;
    }
    void Frame(const QRectF& gate, const QColor& color) { AddBox(gate, color); }
    void Fill(const QRectF& area, const QColor& color) {
        if (area.width() > 0.0 && area.height() > 0.0) {
            AddBox(area, color).filled = true;
        }
    }
    void Label(const QPointF& position, const QString& text) {
        DrawItem& item = Add(DrawItem::Kind::Text, position, LABEL);
        item.text = text;
        item.fontSize = LABEL_SIZE;
        item.alignment = Qt::AlignHCenter;
    }
    DrawList items;

private:
    DrawItem& Add(DrawItem::Kind kind, const QPointF& position, const QColor& color) {
        DrawItem& item = items.emplace_back();
        item.kind = kind;
        item.position = position;
        item.color = color;
        return item;
    }
    DrawItem& AddBox(const QRectF& box, const QColor& color) {
        DrawItem& item = Add(DrawItem::Kind::Rectangle, box.center(), color);
        item.halfWidth = box.width() * 0.5;
        item.halfHeight = box.height() * 0.5;
        return item;
    }
};

QRectF Scaled(const QRectF& gate, double share) {
    const double dx = gate.width() * (1.0 - share) * 0.5;
    const double dy = gate.height() * (1.0 - share) * 0.5;
    return gate.adjusted(dx, dy, -dx, -dy);
}

/// Covers everything outside the gate.
void AddMask(Drawing& drawing, const DagNode& camera, const CameraView& view, const QRectF& gate) {
    const auto channel = [&](const char* name) {
        return static_cast<float>(std::clamp(Number(camera, name), 0.0, 1.0));
    };
    const QColor color =
        QColor::fromRgbF(channel("displayGateMaskColorR"), channel("displayGateMaskColorG"),
                         channel("displayGateMaskColorB"), channel("displayGateMaskOpacity"));
    const QRectF all(0.0, 0.0, view.Width(), view.Height());
    const QRectF inside = gate.intersected(all);
    if (inside.isEmpty()) {
        drawing.Fill(all, color);
        return;
    }
    drawing.Fill({QPointF(0.0, 0.0), QPointF(all.right(), inside.top())}, color);
    drawing.Fill({QPointF(0.0, inside.bottom()), all.bottomRight()}, color);
    drawing.Fill({QPointF(0.0, inside.top()), inside.bottomLeft()}, color);
    drawing.Fill({inside.topRight(), QPointF(all.right(), inside.bottom())}, color);
}

void AddFieldChart(Drawing& drawing, const QRectF& gate) {
    for (int field = 0; field <= CHART_FIELDS; ++field) {
        const double share = static_cast<double>(field) / CHART_FIELDS;
        const double x = gate.left() + gate.width() * share;
        const double y = gate.top() + gate.height() * share;
        drawing.Line({x, gate.top()}, {x, gate.bottom()}, CHART_LINE);
        drawing.Line({gate.left(), y}, {gate.right(), y}, CHART_LINE);
    }
    drawing.Line(gate.topLeft(), gate.bottomRight(), CHART_LINE);
    drawing.Line(gate.bottomLeft(), gate.topRight(), CHART_LINE);
}

/// The render size in pixels, such as "960 x 540".
QString ResolutionText(const Scene& scene) {
    const auto read = [&](const char* plug) {
        return scene.HasPlug(plug) ? QString::number(qRound(scene.FindPlug(plug).Number())) : QString("0");
    };
    return read("defaultResolution.width") + " x " + read("defaultResolution.height");
}

void AddGates(Drawing& drawing, const DagNode& camera, const CameraView& view) {
    const QRectF resolution = view.ResolutionGate();
    const QRectF film = view.FilmGate();
    const bool showsResolution = Number(camera, "displayResolution") != 0.0;
    const bool showsFilm = Number(camera, "displayFilmGate") != 0.0 && !view.IsOrthographic();
    const QRectF& gate = showsFilm && !showsResolution ? film : resolution;
    if (Number(camera, "displayGateMask") != 0.0 && (showsFilm || showsResolution)) {
        AddMask(drawing, camera, view, gate);
    }
    if (Number(camera, "displayFieldChart") != 0.0) {
        AddFieldChart(drawing, resolution);
    }
    if (Number(camera, "displaySafeAction") != 0.0) {
        drawing.Frame(Scaled(resolution, SAFE_ACTION), GUIDE_LINE);
    }
    if (Number(camera, "displaySafeTitle") != 0.0) {
        drawing.Frame(Scaled(resolution, SAFE_TITLE), GUIDE_LINE);
    }
    if (showsFilm) {
        drawing.Frame(film, GATE_LINE);
        const double aspect = film.height() > 0.0 ? film.width() / film.height() : 0.0;
        drawing.Label({film.center().x(), film.bottom() + 5.0}, QString::number(aspect, 'f', 2));
    }
    if (showsResolution) {
        drawing.Frame(resolution, GATE_LINE);
        drawing.Label({resolution.center().x(), resolution.bottom() + 5.0},
                      ResolutionText(*camera.InScene()));
    }
}

} // namespace

DrawList GateOverlay::Items(const DagNode& cameraShape, const CameraView& cameraView,
                            const ViewOptions& options) {
    Drawing drawing;
    AddGates(drawing, cameraShape, cameraView);
    if (options.cameraName && cameraShape.Parent()) {
        const bool isPanZoomed = Number(cameraShape, "panZoomEnabled") != 0.0;
        drawing.Label({cameraView.Width() * 0.5, 8.0}, QString::fromStdString(cameraShape.Parent()->Name()) +
                                                           (isPanZoomed ? " (2D Pan/Zoom)" : ""));
    }
    return drawing.items;
}

} // namespace lightbox
