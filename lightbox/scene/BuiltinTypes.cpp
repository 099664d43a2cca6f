#include "scene/AnimCurveNode.h"
#include "scene/DagNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"
#include "scene/TypeTable.h"
#include "scene/UnitConversion.h"

#include <Imath/ImathMatrix.h>
#include <vector>

// The host's own node types, with the published attribute names and defaults. Includes attributes that the
// host does not use but scene files often set.

namespace lightbox {

namespace {

using Kind = AttributeKind;

std::vector<double> Cells(const Imath::M44d& matrix) {
    return {&matrix[0][0], &matrix[0][0] + 16};
}

/// Computes the matrix attributes of DAG nodes.
std::optional<AttributeValue> ComputeDag(const Node& node, const Attribute& attribute, int) {
    if (attribute.Kind() != Kind::Matrix) {
        return std::nullopt;
    }
    const auto& dag = static_cast<const DagNode&>(node);
    const Imath::M44d parent = dag.Parent() ? dag.Parent()->WorldMatrix() : Imath::M44d();
    const std::string& name = attribute.LongName();
    if (name == "matrix") {
        return Cells(dag.LocalMatrix());
    }
    if (name == "inverseMatrix") {
        return Cells(dag.LocalMatrix().inverse());
    }
    if (name == "worldMatrix") {
        return Cells(dag.WorldMatrix());
    }
    if (name == "worldInverseMatrix") {
        return Cells(dag.WorldMatrix().inverse());
    }
    if (name == "parentMatrix") {
        return Cells(parent);
    }
    return name == "parentInverseMatrix" ? std::optional<AttributeValue>(Cells(parent.inverse()))
                                         : std::nullopt;
}

std::optional<AttributeValue> ComputeTime(const Node& node, const Attribute& attribute, int) {
    if (node.InScene() && (attribute.LongName() == "outTime" || attribute.LongName() == "unwarpedTime")) {
        return node.InScene()->timeline().EvaluationTime();
    }
    return std::nullopt;
}

std::optional<AttributeValue> ComputeAnimCurve(const Node& node, const Attribute& attribute, int) {
    return attribute.LongName() == "output"
               ? std::optional<AttributeValue>(static_cast<const AnimCurveNode&>(node).Output())
               : std::nullopt;
}

void AddDagTypes(TypeRegistry& registry) {
    const auto dag =
        MakeType(registry, "dagNode", "node", MFn::kDagNode,
                 {{Kind::Matrix, "matrix", "m", 0, "oh"},
                  {Kind::Matrix, "inverseMatrix", "im", 0, "oh"},
                  {Kind::Matrix, "worldMatrix", "wm", 0, "ohm"},
                  {Kind::Matrix, "worldInverseMatrix", "wim", 0, "ohm"},
                  {Kind::Matrix, "parentMatrix", "pm", 0, "ohm"},
                  {Kind::Matrix, "parentInverseMatrix", "pim", 0, "ohm"},
                  {Kind::Bool, "visibility", "v", 1, "k"},
                  {Kind::Bool, "intermediateObject", "io"},
                  {Kind::Bool, "template", "tmp"},
                  {Kind::Message, "instObjGroups", "iog", 0, "hm"},
                  {Kind::Float, "objectColorRGB", "obcc", 0, "", "R:G:B"},
                  {Kind::Short, "objectColor", "oc"},
                  {Kind::Byte, "useObjectColor", "uoc"},
                  {Kind::Message, "drawOverride", "do", 0, "h"},
                  {Kind::Enum, "overrideDisplayType", "ovdt", 0, "", "Normal:Template:Reference"},
                  {Kind::Enum, "overrideLevelOfDetail", "ovlod", 0, "", "Full:Bounding Box"},
                  {Kind::Bool, "overrideShading", "ovs", 1},
                  {Kind::Bool, "overrideTexturing", "ovt", 1},
                  {Kind::Bool, "overridePlayback", "ovp", 1},
                  {Kind::Bool, "overrideEnabled", "ove"},
                  {Kind::Bool, "overrideVisibility", "ovv", 1},
                  {Kind::Bool, "hideOnPlayback", "hpb"},
                  {Kind::Byte, "overrideColor", "ovc"},
                  {Kind::Bool, "lodVisibility", "lodv", 1},
                  {Kind::Bool, "useOutlinerColor", "uocol"},
                  {Kind::Float, "outlinerColor", "oclr", 0, "", "R:G:B"},
                  {Kind::Bool, "hiddenInOutliner", "hio"}});
    dag->isAbstract = true;
    dag->SetCompute(ComputeDag);
    MakeType(registry, "world", "dagNode", MFn::kWorld, {})->isAbstract = true;
    MakeType(registry, "transform", "dagNode", MFn::kTransform,
             {{Kind::Distance, "translate", "t", 0, "k", "X:Y:Z"},
              {Kind::Angle, "rotate", "r", 0, "k", "X:Y:Z"},
              {Kind::Enum, "rotateOrder", "ro", 0, "", "xyz:yzx:zxy:xzy:yxz:zyx"},
              {Kind::Double, "scale", "s", 1, "k", "X:Y:Z"},
              {Kind::Double, "shear", "sh", 0, "", "XY:XZ:YZ"},
              {Kind::Distance, "rotatePivot", "rp", 0, "", "X:Y:Z"},
              {Kind::Distance, "rotatePivotTranslate", "rpt", 0, "", "X:Y:Z"},
              {Kind::Distance, "scalePivot", "sp", 0, "", "X:Y:Z"},
              {Kind::Distance, "scalePivotTranslate", "spt", 0, "", "X:Y:Z"},
              {Kind::Angle, "rotateAxis", "ra", 0, "", "X:Y:Z"},
              {Kind::Distance, "transMinusRotatePivot", "tmrp", 0, "oh", "X:Y:Z"},
              {Kind::Bool, "displayHandle", "dh"},
              {Kind::Distance, "selectHandle", "hdl", 0, "", "X:Y:Z"},
              {Kind::Bool, "displayRotatePivot", "drp"},
              {Kind::Bool, "displayScalePivot", "dsp"},
              {Kind::Bool, "displayLocalAxis", "dla"},
              {Kind::Bool, "inheritsTransform", "it", 1}});
    MakeType(registry, "joint", "transform", MFn::kJoint,
             {{Kind::Angle, "jointOrient", "jo", 0, "", "X:Y:Z"},
              {Kind::Double, "inverseScale", "is", 1, "", "X:Y:Z"},
              {Kind::Bool, "segmentScaleCompensate", "ssc", 1},
              {Kind::Angle, "preferredAngle", "pa", 0, "", "X:Y:Z"},
              {Kind::Enum, "drawStyle", "ds", 0, "", "Bone:Multi-child as Box:None"},
              {Kind::Float, "radius", "radi", 1, "c"}});
    MakeType(registry, "shape", "dagNode", MFn::kShape, {})->isAbstract = true;
    MakeType(registry, "locator", "shape", MFn::kLocator,
             {{Kind::Distance, "localPosition", "lp", 0, "c", "X:Y:Z"},
              {Kind::Distance, "localScale", "los", 1, "c", "X:Y:Z"},
              {Kind::Distance, "worldPosition", "wp", 0, "ohm", "X:Y:Z"}})
        ->defaultName = "locatorShape";
}

void AddCamera(TypeRegistry& registry) {
    const auto camera =
        MakeType(registry, "camera", "shape", MFn::kCamera,
                 {{Kind::Bool, "renderable", "rnd", 1},
                  {Kind::Bool, "motionBlurred", "mb", 1},
                  {Kind::Double, "lensSqueezeRatio", "lsr", 1, "k"},
                  {Kind::Enum, "filmFit", "ff", 1, "", "Fill:Horizontal:Vertical:Overscan"},
                  {Kind::Double, "filmFitOffset", "ffo", 0, "k"},
                  {Kind::Bool, "shakeEnabled", "se"},
                  {Kind::Double, "horizontalShake", "hs"},
                  {Kind::Double, "verticalShake", "vs"},
                  {Kind::Double, "postScale", "pts", 1},
                  {Kind::Double, "preScale", "psc", 1},
                  {Kind::Double, "filmTranslateH", "fth"},
                  {Kind::Double, "filmTranslateV", "ftv"},
                  {Kind::Double, "horizontalRollPivot", "hrp"},
                  {Kind::Double, "verticalRollPivot", "vrp"},
                  {Kind::Angle, "filmRollValue", "frv"},
                  {Kind::Enum, "filmRollOrder", "fro", 0, "", "Rotate-Translate:Translate-Rotate"},
                  {Kind::Double, "focalLength", "fl", 35, "k"},
                  {Kind::Double, "fStop", "fs", 5.6, "k"},
                  {Kind::Distance, "focusDistance", "fd", 5, "k"},
                  {Kind::Angle, "shutterAngle", "sa", 144, "k"},
                  {Kind::Distance, "centerOfInterest", "coi", 5, "k"},
                  {Kind::Distance, "nearClipPlane", "ncp", 0.1},
                  {Kind::Distance, "farClipPlane", "fcp", 10000},
                  {Kind::Double, "cameraScale", "cs", 1},
                  {Kind::Double, "overscan", "ovr", 1},
                  {Kind::Bool, "bestFitClippingPlanes", "bfc", 1},
                  {Kind::Bool, "depthOfField", "dof"},
                  {Kind::Bool, "displayResolution", "dr"},
                  {Kind::Bool, "displayFilmGate", "dfg"},
                  {Kind::Bool, "displayFieldChart", "dfc"},
                  {Kind::Bool, "displaySafeAction", "dsa"},
                  {Kind::Bool, "displaySafeTitle", "dst"},
                  {Kind::Bool, "displayFilmPivot", "dfp"},
                  {Kind::Bool, "displayFilmOrigin", "dfo"},
                  {Kind::Bool, "displayGateMask", "dgm"},
                  {Kind::Float, "displayGateMaskOpacity", "dgo", 0.7},
                  {Kind::Float, "displayGateMaskColor", "dgc", 0.5, "", "R:G:B"},
                  {Kind::Bool, "panZoomEnabled", "pze"},
                  {Kind::Bool, "renderPanZoom", "rpz"},
                  {Kind::Double, "zoom", "zom", 1},
                  {Kind::Bool, "image", "i", 1},
                  {Kind::Bool, "depth", "dep"},
                  {Kind::Bool, "transparencyBasedDepth", "tbd", 1},
                  {Kind::String, "imageName", "imn", 0, "", "camera"},
                  {Kind::String, "depthName", "den", 0, "", "camera_depth"},
                  {Kind::String, "maskName", "man", 0, "", "camera_mask"},
                  {Kind::Distance, "tumblePivot", "tp", 0, "", "X:Y:Z"},
                  {Kind::String, "homeCommand", "hc", 0, "", "viewSet -p %camera"},
                  {Kind::Bool, "usePivotAsLocalSpace", "upl"},
                  {Kind::Float, "backgroundColor", "col", 0, "", "R:G:B"},
                  {Kind::Bool, "orthographic", "o"},
                  {Kind::Distance, "orthographicWidth", "ow", 10},
                  {Kind::Double, "focusRegionScale", "frs", 1},
                  {Kind::Double, "locatorScale", "lls", 1},
                  {Kind::Message, "imagePlane", "ip", 0, "hm"},
                  {Kind::Message, "bookmarks", "b", 0, "hm"}});
    camera->defaultName = "cameraShape";
    // Apertures and offsets are in inches; the default is the 35 mm full aperture.
    const std::pair<AttributeRow, std::vector<AttributeRow>> pairs[] = {
        {{Kind::Compound, "cameraAperture", "cap"},
         {{Kind::Double, "horizontalFilmAperture", "hfa", 1.41732, "k"},
          {Kind::Double, "verticalFilmAperture", "vfa", 0.94488, "k"}}},
        {{Kind::Compound, "filmOffset", "fio"},
         {{Kind::Double, "horizontalFilmOffset", "hfo", 0, "k"},
          {Kind::Double, "verticalFilmOffset", "vfo", 0, "k"}}},
        {{Kind::Compound, "pan", "pn"},
         {{Kind::Double, "horizontalPan", "hpn"}, {Kind::Double, "verticalPan", "vpn"}}}};
    for (const auto& [row, children] : pairs) {
        const auto compound = MakeAttribute(row);
        for (const AttributeRow& child : children) {
            compound->AddChild(MakeAttribute(child));
        }
        camera->AddAttribute(compound);
    }
}

void AddSceneTypes(TypeRegistry& registry) {
    const char* const fullRender = "fields:lines";
    MakeType(registry, "time", "node", MFn::kTime,
             {{Kind::Time, "outTime", "o", 0, "k"},
              {Kind::Time, "unwarpedTime", "uwt"},
              {Kind::Bool, "enableTimewarp", "ewt"}})
        ->SetCompute(ComputeTime);
    MakeType(
        registry, "script", "node", MFn::kScript,
        {{Kind::String, "before", "b"},
         {Kind::String, "after", "a"},
         {Kind::Enum, "scriptType", "st", 0, "",
          "Demand:Open/Close:GUI Open/Close:UI Configuration:Software Render:Software Frame Render:Scene "
          "Configuration:Time Changed"},
         {Kind::Enum, "sourceType", "stp", 0, "", "MEL:Python"},
         {Kind::Bool, "ignoreReferenceEdits", "ire"}});
    MakeType(registry, "resolution", "node", MFn::kDependencyNode,
             {{Kind::Long, "width", "w", 960},
              {Kind::Long, "height", "h", 540},
              {Kind::Float, "pixelAspect", "pa", 1},
              {Kind::Bool, "aspectLock", "al"},
              {Kind::Float, "deviceAspectRatio", "dar", 16.0 / 9.0},
              {Kind::Bool, "lockDeviceAspectRatio", "ldar"},
              {Kind::Float, "dotsPerInch", "dpi", 72},
              {Kind::Bool, "oddFieldFirst", "off"},
              {Kind::Enum, "fields", "fld", 0, "", fullRender},
              {Kind::Short, "imageSizeUnits", "isu"},
              {Kind::Short, "pixelDensityUnits", "pdu"}});
    MakeType(registry, "renderGlobals", "node", MFn::kDependencyNode,
             {{Kind::Time, "startFrame", "fs", 1},
              {Kind::Time, "endFrame", "ef", 10},
              {Kind::Float, "byFrameStep", "bfs", 1},
              {Kind::Bool, "animation", "an"},
              {Kind::Short, "animationRange", "ar"},
              {Kind::Long, "imageFormat", "outf", 7},
              {Kind::String, "imageFilePrefix", "ifp"},
              {Kind::Short, "outFormatControl", "ofc"},
              {Kind::Bool, "putFrameBeforeExt", "pff"},
              {Kind::Bool, "periodInExt", "pie", 1},
              {Kind::Short, "extensionPadding", "ep", 1},
              {Kind::Bool, "enableDefaultLight", "edl", 1},
              {Kind::String, "currentRenderer", "ren", 0, "", "mayaSoftware"},
              {Kind::Message, "resolution", "res", 0, "h"}});
    MakeType(registry, "objectSet", "node", MFn::kDependencyNode,
             {{Kind::Message, "dagSetMembers", "dsm", 0, "hn"},
              {Kind::Message, "dnSetMembers", "dnsm", 0, "hn"},
              {Kind::Message, "groupNodes", "gn", 0, "hn"},
              {Kind::Message, "usedBy", "ub", 0, "hm"},
              {Kind::Message, "partition", "pa", 0, "h"},
              {Kind::Bool, "verticesOnlySet", "vo"},
              {Kind::Bool, "edgesOnlySet", "eo"},
              {Kind::Bool, "facetsOnlySet", "fo"},
              {Kind::Bool, "editPointsOnlySet", "epo"},
              {Kind::Bool, "renderableOnlySet", "ro"},
              {Kind::String, "annotation", "an"}})
        ->defaultName = "set";
    for (const char* name : {"unknown", "reference"}) {
        MakeType(registry, name, "node", MFn::kUnknown, {});
    }
    MakeType(registry, "unknownTransform", "transform", MFn::kUnknownTransform, {});
    MakeType(registry, "unknownDag", "shape", MFn::kUnknownDag, {});
}

void AddAnimationCurves(TypeRegistry& registry) {
    const char* const infinityModes = "Constant:Linear:Cycle=3:Cycle with Offset:Oscillate";
    const char* const rotationModes =
        "None=1:Linear:Cubic:Quaternion Slerp:Quaternion Tangent Dependent:Quaternion Squad";
    const char* const tangentTypes =
        "Fixed=1:Linear:Flat:Step=5:Slow:Fast:Spline=9:Clamped:Plateau=16:Step Next:Auto";
    MakeType(
        registry, "animCurve", "node", MFn::kAnimCurve,
        {{Kind::Enum, "tangentType", "tan", 0, "", tangentTypes}, {Kind::Bool, "weightedTangents", "wgt", 1}})
        ->isAbstract = true;
    // After the keys, as in scene files.
    const std::vector<AttributeRow> perKey{
        {Kind::Byte, "keyTanInType", "kit", 0, "hm"},
        {Kind::Byte, "keyTanOutType", "kot", 0, "hm"},
        {Kind::Double, "keyTanInX", "kix", 0, "hm"},
        {Kind::Double, "keyTanInY", "kiy", 0, "hm"},
        {Kind::Double, "keyTanOutX", "kox", 0, "hm"},
        {Kind::Double, "keyTanOutY", "koy", 0, "hm"},
        {Kind::Bool, "keyTanLocked", "ktl", 1, "hm"},
        {Kind::Bool, "keyWeightLocked", "kwl", 0, "hm"},
        {Kind::Bool, "keyBreakdown", "kbd", 0, "hm"},
        {Kind::Bool, "keyTickDrawSpecial", "ktds", 0, "hm"},
        {Kind::Enum, "preInfinity", "pre", 0, "", infinityModes},
        {Kind::Enum, "postInfinity", "pst", 0, "", infinityModes},
        {Kind::Enum, "rotationInterpolation", "roti", 1, "", rotationModes},
        {Kind::Bool, "useCurveColor", "ucc"},
        {Kind::Float, "curveColor", "cc", 0, "", "R:G:B"}};
    MakeType(registry, "unitConversion", "node", MFn::kDependencyNode,
             {{Kind::Double, "input", "i"},
              {Kind::Double, "output", "o", 0, "o"},
              {Kind::Double, "conversionFactor", "cf", 1}})
        ->SetCompute(ComputeUnitConversion);
    // The last two letters are the types of input and output: T time, U number, L length, A angle.
    struct CurveRow {
        const char* name;
        Kind input;
        Kind output;
    };
    for (const CurveRow& curve :
         {CurveRow{"animCurveTL", Kind::Time, Kind::Distance},
          CurveRow{"animCurveTA", Kind::Time, Kind::Angle}, CurveRow{"animCurveTT", Kind::Time, Kind::Time},
          CurveRow{"animCurveTU", Kind::Time, Kind::Double},
          CurveRow{"animCurveUL", Kind::Double, Kind::Distance},
          CurveRow{"animCurveUA", Kind::Double, Kind::Angle},
          CurveRow{"animCurveUT", Kind::Double, Kind::Time},
          CurveRow{"animCurveUU", Kind::Double, Kind::Double}}) {
        const auto type = MakeType(registry, curve.name, "animCurve", MFn::kAnimCurve,
                                   {{curve.input, "input", "i"}, {curve.output, "output", "o", 0, "o"}});
        auto keys = std::make_shared<Attribute>("keyTimeValue", "ktv", Kind::Compound);
        keys->multi = true;
        keys->givenType = "-at \"compound\""; // pairs without a type of their own, also of two like numbers
        keys->AddChild(std::make_shared<Attribute>("keyTime", "kt", curve.input));
        keys->AddChild(std::make_shared<Attribute>("keyValue", "kv", curve.output));
        type->AddAttribute(std::move(keys));
        for (const AttributeRow& row : perKey) {
            type->AddAttribute(MakeAttribute(row));
        }
        type->SetCompute(ComputeAnimCurve);
    }
}

} // namespace

void AddBuiltinTypes(TypeRegistry& registry) {
    const auto node = MakeType(registry, "node", "", MFn::kDependencyNode,
                               {{Kind::Message, "message", "msg", 0, "oh"},
                                {Kind::Bool, "caching", "cch", 0, "h"},
                                {Kind::Bool, "frozen", "fzn", 0, "h"},
                                {Kind::Byte, "isHistoricallyInteresting", "ihi", 2, "h"},
                                {Kind::Enum, "nodeState", "nds", 0, "h", "Normal:HasNoEffect:Blocking"},
                                {Kind::Message, "binMembership", "bnm", 0, "h"}});
    node->isAbstract = true;
    AddDagTypes(registry);
    AddCamera(registry);
    AddSceneTypes(registry);
    AddAnimationCurves(registry);
    AddMaterialTypes(registry);
    AddMeshTypes(registry);
}

} // namespace lightbox
