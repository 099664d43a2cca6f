#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "commands/TransformArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Transformation.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <algorithm>

namespace lightbox::mel {
namespace {

using Imath::M44d;
using Imath::V3d;

constexpr std::size_t MATRIX_CELLS = 16;

const char* const ORDERS[] = {"xyz", "yzx", "zxy", "xzy", "yxz", "zyx"};

/// Flags with three numbers that set an attribute directly, in every space.
const std::pair<const char*, const char*> PLAIN_PARTS[] = {{"-rotateAxis", "rotateAxis"},
                                                           {"-shear", "shear"},
                                                           {"-rotateTranslation", "rotatePivotTranslate"},
                                                           {"-scaleTranslation", "scalePivotTranslate"}};
const char* const PIVOTS[] = {"rotatePivot", "scalePivot"};

Value::FloatArray Numbers(const V3d& vector) {
    return {vector.x, vector.y, vector.z};
}

V3d Triple(const CommandCall& call, const char* flag) {
    return V3d(call.Float(flag, 0), call.Float(flag, 1), call.Float(flag, 2));
}

/// Separates the 16 cells of -matrix from the objects' names. A flag has at most six arguments, so the parser
/// leaves the cells among the objects.
struct XformObjects {
    explicit XformObjects(const CommandCall& call);
    std::vector<double> cells;
    std::vector<std::string> names;
};

XformObjects::XformObjects(const CommandCall& call) {
    for (const Value& object : call.Objects()) {
        if (IsNumeric(object)) {
            cells.push_back(object.AsFloat());
        } else {
            names.push_back(object.AsString());
        }
    }
    const std::size_t wanted = call.Has("-matrix") && !call.IsQuery() ? MATRIX_CELLS : 0;
    if (cells.size() != wanted) {
        call.Fail("-matrix takes 16 numbers, and without it there must be none; " +
                  std::to_string(cells.size()) + " were given.");
    }
}

V3d WorldScale(DagNode& node) {
    Transformation world;
    world.SetMatrix(node.WorldMatrix());
    return world.scale;
}

V3d Pivot(DagNode& node, const char* pivot, bool isWorld) {
    V3d point = GetTriple(node, pivot);
    if (isWorld) {
        node.WorldMatrix().multVecMatrix(V3d(point), point);
    }
    return point;
}

Value QueryTransform(const CommandCall& call, DagNode& node) {
    const bool isWorld = call.Has("-worldSpace");
    if (call.Has("-matrix")) {
        const M44d matrix = isWorld ? node.WorldMatrix() : node.LocalMatrix();
        return Value::FloatArray(&matrix[0][0], &matrix[0][0] + MATRIX_CELLS);
    }
    if (call.Has("-translation")) {
        return Numbers(isWorld ? WorldPosition(node) : GetTriple(node, "translate"));
    }
    if (call.Has("-rotation")) {
        return Numbers(isWorld ? WorldAngles(node) : GetTriple(node, "rotate"));
    }
    if (call.Has("-scale")) {
        return Numbers(call.Has("-relative") || !isWorld ? GetTriple(node, "scale") : WorldScale(node));
    }
    if (call.Has("-rotateOrder")) {
        return ORDERS[std::clamp(RotateOrder(node), 0, 5)];
    }
    if (call.Has("-pivots")) {
        Value::FloatArray both = Numbers(Pivot(node, PIVOTS[0], isWorld));
        const Value::FloatArray second = Numbers(Pivot(node, PIVOTS[1], isWorld));
        both.insert(both.end(), second.begin(), second.end());
        return both;
    }
    for (const char* pivot : PIVOTS) {
        if (call.Has(pivot)) {
            return Numbers(Pivot(node, pivot, isWorld));
        }
    }
    for (const auto& [flag, attribute] : PLAIN_PARTS) {
        if (call.Has(flag)) {
            return Numbers(GetTriple(node, attribute));
        }
    }
    call.Fail("Nothing was asked for.");
}

/// Applies one call of xform to one node.
class XformEdit {
public:
    XformEdit(const CommandCall& call, DagNode& node)
        : call_(call)
        , node_(node)
        , isRelative_(call.Has("-relative"))
        , isWorld_(call.Has("-worldSpace")) {}

    void Run(const std::vector<double>& cells);

private:
    void Set(const char* attribute, const V3d& value) { SetTriple(call_.GetHost(), node_, attribute, value); }
    bool IsPreserving() const { return call_.Has("-preserve") && call_.Bool("-preserve"); }
    void SetOrder();
    void SetMatrix(const M44d& matrix);
    void SetTranslation();
    void SetRotation();
    void SetScale();
    void SetPivot(const char* pivot, V3d point);
    void ZeroPivots();

    const CommandCall& call_;
    DagNode& node_;
    bool isRelative_;
    bool isWorld_;
};

void XformEdit::SetOrder() {
    const std::string& name = call_.String("-rotateOrder");
    const auto found = std::find(std::begin(ORDERS), std::end(ORDERS), name);
    if (found == std::end(ORDERS)) {
        call_.Fail("Unknown rotate order: " + name);
    }
    const auto order = static_cast<int>(found - std::begin(ORDERS));
    const V3d angles = AnglesForOrder(node_, order);
    const Plug plug(node_.Shared(), node_.FindAttribute("rotateOrder"));
    edit::SetPlug(call_.GetHost(), plug, static_cast<double>(order));
    if (IsPreserving()) {
        Set("rotate", angles);
    }
}

void XformEdit::SetMatrix(const M44d& matrix) {
    Transformation parts = node_.LocalTransformation();
    if (!parts.SetMatrix(matrix)) {
        call_.Fail("The matrix flattens space and cannot be taken apart.");
    }
    Set("translate", parts.translate);
    Set("rotate", parts.rotate);
    Set("scale", parts.scale);
    Set("shear", parts.shear);
}

void XformEdit::SetTranslation() {
    const V3d given = Triple(call_, "-translation");
    const V3d before = GetTriple(node_, "translate");
    V3d moved = isRelative_ ? given : given - (isWorld_ ? WorldPosition(node_) : before);
    if (isWorld_) {
        moved = OffsetInParent(node_, moved);
    }
    Set("translate", before + moved);
}

void XformEdit::SetRotation() {
    const V3d given = Triple(call_, "-rotation");
    if (!isRelative_) {
        Set("rotate", isWorld_ ? AnglesForWorld(node_, given) : given);
    } else if (call_.Has("-euler")) {
        Set("rotate", GetTriple(node_, "rotate") + given);
    } else {
        Set("rotate", TurnedAngles(node_, given, RotateOrder(node_), isWorld_));
    }
}

void XformEdit::SetScale() {
    const V3d before = GetTriple(node_, "scale");
    V3d scale = Triple(call_, "-scale");
    if (isRelative_) {
        scale *= before;
    } else if (isWorld_) {
        const V3d world = WorldScale(node_);
        for (int i = 0; i < 3; ++i) {
            scale[i] *= world[i] == 0.0 ? 1.0 : before[i] / world[i];
        }
    }
    Set("scale", scale);
}

void XformEdit::SetPivot(const char* pivot, V3d point) {
    if (isWorld_ && isRelative_) {
        node_.WorldMatrix().inverse().multDirMatrix(V3d(point), point);
    } else if (isWorld_) {
        node_.WorldMatrix().inverse().multVecMatrix(V3d(point), point);
    }
    const M44d before = node_.LocalMatrix();
    Set(pivot, isRelative_ ? GetTriple(node_, pivot) + point : point);
    if (!isWorld_ && !IsPreserving()) {
        return;
    }
    // Placing a pivot in world space, or with -preserve, must not move the object: compensate the shift.
    V3d shift = before.translation() - node_.LocalMatrix().translation();
    const std::string translation = std::string(pivot) + "Translate";
    if (pivot == PIVOTS[1]) {
        shift = OffsetBeforeRotation(node_, shift);
    }
    Set(translation.c_str(), GetTriple(node_, translation.c_str()) + shift);
}

void XformEdit::ZeroPivots() {
    const M44d matrix = node_.LocalMatrix();
    for (const char* part : {"rotatePivot", "scalePivot", "rotatePivotTranslate", "scalePivotTranslate"}) {
        Set(part, V3d(0.0));
    }
    SetMatrix(matrix);
}

void XformEdit::Run(const std::vector<double>& cells) {
    if (call_.Has("-rotateOrder")) {
        SetOrder();
    }
    if (call_.Has("-matrix")) {
        M44d matrix;
        std::copy(cells.begin(), cells.end(), &matrix[0][0]);
        SetMatrix(isWorld_ ? matrix * ParentMatrix(node_).inverse() : matrix);
    }
    for (const auto& [flag, attribute] : PLAIN_PARTS) {
        if (call_.Has(flag)) {
            Set(attribute, (isRelative_ ? GetTriple(node_, attribute) : V3d(0.0)) + Triple(call_, flag));
        }
    }
    if (call_.Has("-rotation")) {
        SetRotation();
    }
    if (call_.Has("-scale")) {
        SetScale();
    }
    if (call_.Has("-translation")) {
        SetTranslation();
    }
    for (const char* pivot : PIVOTS) {
        if (call_.Has(pivot) || call_.Has("-pivots")) {
            SetPivot(pivot, Triple(call_, call_.Has(pivot) ? pivot : "-pivots"));
        }
    }
    if (call_.Has("-zeroTransformPivots")) {
        ZeroPivots();
    }
}

Value Xform(CommandCall& call) {
    const XformObjects objects(call);
    const std::vector<DagNode*> nodes = Transforms(call, objects.names);
    if (call.IsQuery()) {
        return QueryTransform(call, *nodes.front());
    }
    if (call.Has("-matrix") && call.Has("-relative")) {
        call.Fail("A matrix cannot be set with -relative.");
    }
    for (DagNode* node : nodes) {
        XformEdit(call, *node).Run(objects.cells);
    }
    return {};
}

} // namespace

void RegisterXformCommand(CommandRegistry& registry) {
    AddSceneCommand(registry, "xform",
                    SyntaxBuilder()
                        .Flag("-a", "-absolute")
                        .Flag("-r", "-relative")
                        .Flag("-ws", "-worldSpace")
                        .Flag("-os", "-objectSpace")
                        .Flag("-eu", "-euler")
                        .Flag("-t", "-translation", NUMBER, NUMBER, NUMBER)
                        .Flag("-ro", "-rotation", NUMBER, NUMBER, NUMBER)
                        .Flag("-roo", "-rotateOrder", MSyntax::kString)
                        .Flag("-p", "-preserve", MSyntax::kBoolean)
                        .Flag("-ra", "-rotateAxis", NUMBER, NUMBER, NUMBER)
                        .Flag("-s", "-scale", NUMBER, NUMBER, NUMBER)
                        .Flag("-sh", "-shear", NUMBER, NUMBER, NUMBER)
                        .Flag("-piv", "-pivots", NUMBER, NUMBER, NUMBER)
                        .Flag("-rp", "-rotatePivot", NUMBER, NUMBER, NUMBER)
                        .Flag("-sp", "-scalePivot", NUMBER, NUMBER, NUMBER)
                        .Flag("-rt", "-rotateTranslation", NUMBER, NUMBER, NUMBER)
                        .Flag("-st", "-scaleTranslation", NUMBER, NUMBER, NUMBER)
                        .Flag("-ztp", "-zeroTransformPivots")
                        .Flag("-m", "-matrix")
                        .Query()
                        .Objects(),
                    Xform);
}

} // namespace lightbox::mel
