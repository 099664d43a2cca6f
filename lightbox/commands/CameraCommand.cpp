#include "commands/Registration.h"
#include "commands/ShapeArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

namespace lightbox::mel {
namespace {

/// A flag of `camera` and its attribute.
struct CameraFlag {
    const char* shortName;
    const char* longName;
    const char* attribute;
    MSyntax::MArgType type;
};

const CameraFlag FLAGS[] = {{"-fl", "-focalLength", "focalLength", NUMBER},
                            {"-hfa", "-horizontalFilmAperture", "horizontalFilmAperture", NUMBER},
                            {"-vfa", "-verticalFilmAperture", "verticalFilmAperture", NUMBER},
                            {"-hfo", "-horizontalFilmOffset", "horizontalFilmOffset", NUMBER},
                            {"-vfo", "-verticalFilmOffset", "verticalFilmOffset", NUMBER},
                            {"-ffo", "-filmFitOffset", "filmFitOffset", NUMBER},
                            {"-lsr", "-lensSqueezeRatio", "lensSqueezeRatio", NUMBER},
                            {"-cs", "-cameraScale", "cameraScale", NUMBER},
                            {"-ncp", "-nearClipPlane", "nearClipPlane", NUMBER},
                            {"-fcp", "-farClipPlane", "farClipPlane", NUMBER},
                            {"-coi", "-centerOfInterest", "centerOfInterest", NUMBER},
                            {"-ovr", "-overscan", "overscan", NUMBER},
                            {"-fs", "-fStop", "fStop", NUMBER},
                            {"-fd", "-focusDistance", "focusDistance", NUMBER},
                            {"-sa", "-shutterAngle", "shutterAngle", NUMBER},
                            {"-ow", "-orthographicWidth", "orthographicWidth", NUMBER},
                            {"-hpn", "-horizontalPan", "horizontalPan", NUMBER},
                            {"-vpn", "-verticalPan", "verticalPan", NUMBER},
                            {"-zom", "-zoom", "zoom", NUMBER},
                            {"-o", "-orthographic", "orthographic", SWITCH},
                            {"-mb", "-motionBlur", "motionBlurred", SWITCH},
                            {"-pze", "-panZoomEnabled", "panZoomEnabled", SWITCH},
                            {"-dr", "-displayResolution", "displayResolution", SWITCH},
                            {"-dfg", "-displayFilmGate", "displayFilmGate", SWITCH},
                            {"-dfc", "-displayFieldChart", "displayFieldChart", SWITCH},
                            {"-dsa", "-displaySafeAction", "displaySafeAction", SWITCH},
                            {"-dst", "-displaySafeTitle", "displaySafeTitle", SWITCH},
                            {"-dgm", "-displayGateMask", "displayGateMask", SWITCH}};

/// The arguments of `-filmFit`, in the order of the attribute's values.
const char* const FILM_FITS[] = {"fill", "horizontal", "vertical", "overscan"};

/// Sets the film back's width so that width / height is the given ratio.
void SetAspectRatio(const CommandCall& call, const std::shared_ptr<Node>& shape) {
    const double ratio = call.Float("-aspectRatio");
    if (!(ratio > 0.0)) {
        call.Fail("An aspect ratio must be greater than 0.");
    }
    edit::SetPlug(call.GetHost(), Plug::Of(*shape, "horizontalFilmAperture"),
                  ratio * Plug::Of(*shape, "verticalFilmAperture").Number());
}

/// Makes a camera a start-up camera, or an ordinary one. A start-up camera is part of every scene and cannot
/// be deleted.
void SetStartup(Host& host, const std::shared_ptr<Node>& node, bool isStartup) {
    edit::Replace(host, "camera", node->isShared, isStartup, [node](bool on) { node->isShared = on; });
}

void SetProperties(const CommandCall& call, const std::shared_ptr<Node>& transform,
                   const std::shared_ptr<Node>& shape) {
    Host& host = call.GetHost();
    for (const CameraFlag& property : FLAGS) {
        if (call.Has(property.longName)) {
            const double value =
                property.type == SWITCH ? call.Bool(property.longName) : call.Float(property.longName);
            edit::SetPlug(host, Plug::Of(*shape, property.attribute), value);
        }
    }
    if (call.Has("-aspectRatio")) {
        SetAspectRatio(call, shape);
    }
    if (call.Has("-startupCamera")) {
        SetStartup(host, transform, call.Bool("-startupCamera"));
        SetStartup(host, shape, call.Bool("-startupCamera"));
    }
    if (call.Has("-filmFit")) {
        int fit = 0;
        while (fit < 4 && call.String("-filmFit") != FILM_FITS[fit]) {
            ++fit;
        }
        if (fit == 4) {
            call.Fail("Unknown film fit: " + call.String("-filmFit"));
        }
        edit::SetPlug(host, Plug::Of(*shape, "filmFit"), static_cast<double>(fit));
    }
    const std::pair<const char*, const char*> placements[] = {{"-position", "translate"},
                                                              {"-rotation", "rotate"}};
    for (const auto& [flag, attribute] : placements) {
        if (call.Has(flag)) {
            edit::SetPlug(host, Plug::Of(*transform, attribute),
                          std::vector<double>{call.Float(flag, 0), call.Float(flag, 1), call.Float(flag, 2)});
        }
    }
}

Value QueryCamera(const CommandCall& call, const std::shared_ptr<Node>& transform,
                  const std::shared_ptr<Node>& shape) {
    for (const CameraFlag& property : FLAGS) {
        if (call.Has(property.longName)) {
            const double value = Plug::Of(*shape, property.attribute).Number();
            return property.type == SWITCH ? Value(value != 0.0) : Value(value);
        }
    }
    if (call.Has("-filmFit")) {
        return FILM_FITS[static_cast<int>(Plug::Of(*shape, "filmFit").Number()) & 3];
    }
    if (call.Has("-aspectRatio")) {
        return Plug::Of(*shape, "horizontalFilmAperture").Number() /
               Plug::Of(*shape, "verticalFilmAperture").Number();
    }
    for (const auto& [flag, attribute] :
         {std::pair("-position", "translate"), std::pair("-rotation", "rotate")}) {
        if (call.Has(flag)) {
            return std::get<std::vector<double>>(Plug::Of(*transform, attribute).Get());
        }
    }
    if (call.Has("-startupCamera")) {
        return transform->isShared;
    }
    call.Fail("Nothing was asked for.");
}

/// Returns the first free number for the base name. As in Maya, `camera` always appends a number to the name.
std::string NumberedName(const Scene& scene, const std::string& base) {
    int number = 1;
    while (scene.IsNameTaken(base + std::to_string(number))) {
        ++number;
    }
    return std::to_string(number);
}

Value Create(const CommandCall& call) {
    Host& host = call.GetHost();
    const std::string base = call.StringOr("-name", "camera");
    const std::string number = NumberedName(host.scene(), base);
    const std::shared_ptr<Node> transform = edit::CreateNode(host, "transform", base + number);
    const std::shared_ptr<Node> shape =
        edit::CreateNode(host, "camera", base + "Shape" + number, static_cast<DagNode*>(transform.get()));
    edit::SetPlug(host, Plug::Of(*shape, "imageName"), transform->Name());
    edit::SetPlug(host, Plug::Of(*shape, "depthName"), transform->Name() + "_depth");
    edit::SetPlug(host, Plug::Of(*shape, "maskName"), transform->Name() + "_mask");
    SetProperties(call, transform, shape);
    edit::Select(host, {transform});
    return ShownNames({transform, shape});
}

Value Camera(CommandCall& call) {
    if (call.IsCreate()) {
        return Create(call);
    }
    const auto [transform, shape] = ShapeOfCall(call, "camera");
    if (call.IsQuery()) {
        return QueryCamera(call, transform, shape);
    }
    if (call.Has("-name")) {
        edit::Rename(call.GetHost(), *transform, call.String("-name"));
    }
    SetProperties(call, transform, shape);
    return {};
}

} // namespace

void RegisterCameraCommand(CommandRegistry& registry) {
    SyntaxBuilder syntax;
    for (const CameraFlag& property : FLAGS) {
        syntax.Flag(property.shortName, property.longName, property.type);
    }
    AddSceneCommand(registry, "camera",
                    syntax.Flag("-n", "-name", MSyntax::kString)
                        .Flag("-ff", "-filmFit", MSyntax::kString)
                        .Flag("-p", "-position", NUMBER, NUMBER, NUMBER)
                        .Flag("-rot", "-rotation", NUMBER, NUMBER, NUMBER)
                        .Flag("-ar", "-aspectRatio", NUMBER)
                        .Flag("-sc", "-startupCamera", SWITCH)
                        .Query()
                        .Edit()
                        .Objects(0, 1),
                    Camera);
}

} // namespace lightbox::mel
