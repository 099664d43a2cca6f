#include "scene/TypeTable.h"

namespace lightbox {

namespace {

using Kind = AttributeKind;

void AddShaders(TypeRegistry& registry) {
    MakeType(registry, "shadingDependNode", "node", MFn::kDependencyNode, {})->isAbstract = true;
    MakeType(registry, "lambert", "shadingDependNode", MFn::kDependencyNode,
             {{Kind::Float, "color", "c", 0.5, "k", "R:G:B"},
              {Kind::Float, "transparency", "it", 0, "k", "R:G:B"},
              {Kind::Float, "ambientColor", "ambc", 0, "k", "R:G:B"},
              {Kind::Float, "incandescence", "ic", 0, "k", "R:G:B"},
              {Kind::Float, "diffuse", "dc", 0.8, "k"},
              {Kind::Float, "translucence", "tc", 0, "k"},
              {Kind::Float, "translucenceDepth", "trsd", 0.5, "k"},
              {Kind::Float, "translucenceFocus", "tcf", 0.5, "k"},
              {Kind::Float, "normalCamera", "n", 1, "", "X:Y:Z"},
              {Kind::Float, "glowIntensity", "gi", 0, "k"},
              {Kind::Bool, "hideSource", "hs"},
              {Kind::Float, "outColor", "oc", 0, "oh", "R:G:B"},
              {Kind::Float, "outTransparency", "ot", 0, "oh", "R:G:B"}});
    MakeType(registry, "reflect", "lambert", MFn::kDependencyNode,
             {{Kind::Float, "specularColor", "sc", 0.5, "k", "R:G:B"},
              {Kind::Float, "reflectivity", "rfl", 0.5, "k"},
              {Kind::Float, "reflectedColor", "rc", 0, "k", "R:G:B"}})
        ->isAbstract = true;
    MakeType(registry, "blinn", "reflect", MFn::kDependencyNode,
             {{Kind::Float, "eccentricity", "ec", 0.3, "k"},
              {Kind::Float, "specularRollOff", "sro", 0.7, "k"},
              {Kind::Bool, "reflectionRolloff", "rro"}});
    MakeType(registry, "phong", "reflect", MFn::kDependencyNode,
             {{Kind::Float, "cosinePower", "cp", 20, "k"}});
    MakeType(registry, "phongE", "reflect", MFn::kDependencyNode,
             {{Kind::Float, "roughness", "rn", 0.7, "k"},
              {Kind::Float, "highlightSize", "hls", 0.5, "k"},
              {Kind::Float, "whiteness", "wn", 0.5, "k", "R:G:B"}});
    MakeType(registry, "surfaceShader", "shadingDependNode", MFn::kDependencyNode,
             {{Kind::Float, "outColor", "oc", 0, "k", "R:G:B"},
              {Kind::Float, "outTransparency", "ot", 0, "k", "R:G:B"},
              {Kind::Float, "outGlowColor", "ogc", 0, "k", "R:G:B"},
              {Kind::Float, "outMatteOpacity", "omo", 1, "k", "R:G:B"}});
}

} // namespace

void AddMaterialTypes(TypeRegistry& registry) {
    AddShaders(registry);
    const auto engine = MakeType(registry, "shadingEngine", "objectSet", MFn::kDependencyNode,
                                 {{Kind::Float, "surfaceShader", "ss", 0, "", "R:G:B"},
                                  {Kind::Float, "volumeShader", "vs", 0, "", "R:G:B"},
                                  {Kind::Float, "displacementShader", "ds"},
                                  {Kind::Message, "defaultShadows", "dsh", 0, "h"}});
    engine->defaultName = "shadingEngine";
    MakeType(registry, "partition", "node", MFn::kDependencyNode, {{Kind::Message, "sets", "st", 0, "hn"}});
    MakeType(registry, "materialInfo", "node", MFn::kDependencyNode,
             {{Kind::Message, "shadingGroup", "sg", 0, "h"},
              {Kind::Message, "material", "m", 0, "h"},
              {Kind::Message, "texture", "t", 0, "hn"}});
}

} // namespace lightbox
