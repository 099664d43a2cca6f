#include "viewport/SelectTool.h"

#include "mel/Interpreter.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Picker.h"
#include "scene/Scene.h"
#include "scene/View.h"
#include "text/Quoted.h"

#include <algorithm>

namespace lightbox {

namespace {

/// View pixels: the largest movement of the pointer in a click, and the largest distance of a click from a
/// line.
constexpr double CLICK_SLACK = 3.0;
constexpr double LINE_TOLERANCE = 4.0;

const char* FlagFor(Qt::KeyboardModifiers modifiers) {
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    return shift && control ? "-add" : shift ? "-tgl" : control ? "-d" : "-r";
}

/// The `select` command for the transforms of the shapes; empty when there is nothing to do.
std::string SelectLine(const std::vector<DagNode*>& shapes, Qt::KeyboardModifiers modifiers) {
    const std::string flag = FlagFor(modifiers);
    if (shapes.empty()) {
        return flag == "-r" ? "select -cl" : "";
    }
    std::vector<const DagNode*> nodes;
    for (const DagNode* shape : shapes) {
        if (std::find(nodes.begin(), nodes.end(), shape->Parent()) == nodes.end()) {
            nodes.push_back(shape->Parent());
        }
    }
    std::string line = "select " + flag;
    for (const DagNode* node : nodes) {
        line += " " + Quoted(Scene::ShownName(*node));
    }
    return line;
}

} // namespace

void SelectTool::Press(const QPointF& position) {
    press_ = position;
    current_ = position;
}

bool SelectTool::Drag(const QPointF& position) {
    const QRectF before = Marquee();
    current_ = position;
    return Marquee() != before;
}

QRectF SelectTool::Marquee() const {
    const QPointF way = press_ ? current_ - *press_ : QPointF();
    const bool isDrag = std::max(std::abs(way.x()), std::abs(way.y())) > CLICK_SLACK;
    return isDrag ? QRectF(*press_, current_).normalized() : QRectF();
}

void SelectTool::Release(View& view, const QPointF& position, Qt::KeyboardModifiers modifiers,
                         const DisplayOptions& options) {
    if (!press_) {
        return;
    }
    current_ = position;
    const QRectF marquee = Marquee();
    press_.reset();
    const std::shared_ptr<DagNode> camera = view.Camera();
    Picker::Filter filter;
    filter.meshes = options.meshes;
    filter.cameras = options.cameras;
    filter.locators = options.locators;
    filter.surfaces = options.shading == DisplayOptions::Shading::Smooth;
    filter.lookThrough = camera.get();
    const Picker picker(host_.scene(), CameraView(*camera, view.Width(), view.Height()), filter);
    std::vector<DagNode*> picked;
    if (!marquee.isNull()) {
        picked = picker.Inside(marquee);
    } else if (DagNode* shape = picker.At(position.x(), position.y(), LINE_TOLERANCE)) {
        picked.push_back(shape);
    }
    const std::string line = SelectLine(picked, modifiers);
    if (line.empty() || (picked.empty() && host_.scene().selection().Get().empty())) {
        return;
    }
    host_.interpreter().ExecuteReporting(line);
}

} // namespace lightbox
