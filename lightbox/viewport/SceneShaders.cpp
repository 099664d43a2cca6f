#include "viewport/SceneShaders.h"

namespace lightbox {

namespace {

const char* const SURFACE_VERTEX = R"(#version 120
attribute vec3 position;
attribute vec3 normal;
uniform mat4 modelView;
uniform mat4 projection;
uniform mat3 normalMatrix;
varying vec3 eyeNormal;
varying vec3 eyePosition;
void main() {
    vec4 eye = modelView * vec4(position, 1.0);
    eyePosition = eye.xyz;
    eyeNormal = normalMatrix * normal;
    gl_Position = projection * eye;
}
)";

// A key light above and to the left of the eye, a weaker fill light to the right, and ambient light. The
// lights turn with the camera, so that the sides of a box differ. Both sides of a surface are lit. The light
// is summed in linear colours and converted to screen values with a gamma of 2.2, so the shaded side stays
// readable. The default grey is lighter than the background. The division compresses highlights, so that
// white surfaces stay below the screen's white.
const char* const SURFACE_FRAGMENT = R"(#version 120
uniform vec3 color;
uniform vec3 incandescence;
uniform float diffuse;
uniform float specular;
uniform float opacity;
uniform bool isFlat;
uniform bool isParallel;
varying vec3 eyeNormal;
varying vec3 eyePosition;
void main() {
    vec3 lit = color;
    if (!isFlat) {
        vec3 toEye = isParallel ? vec3(0.0, 0.0, 1.0) : normalize(-eyePosition);
        vec3 outward = normalize(eyeNormal);
        float facing = dot(outward, toEye);
        outward = facing < 0.0 ? -outward : outward;
        vec3 toKey = normalize(vec3(-0.30, 0.45, 1.0));
        vec3 toFill = normalize(vec3(0.90, -0.10, 0.45));
        float light = 0.45 + 1.80 * max(dot(outward, toKey), 0.0) + 0.30 * max(dot(outward, toFill), 0.0);
        vec3 reflected = pow(color, vec3(2.2)) * diffuse * light;
        vec3 shown = pow(reflected / (1.0 + 0.45 * reflected), vec3(1.0 / 2.2));
        float shine = max(dot(outward, normalize(toKey + toEye)), 0.0);
        lit = shown + incandescence + vec3(0.5 * specular * pow(shine, 40.0));
    }
    gl_FragColor = vec4(lit, opacity);
}
)";

const char* const LINE_VERTEX = R"(#version 120
attribute vec3 position;
attribute vec4 color;
uniform mat4 modelViewProjection;
uniform vec4 tint;
uniform float towardsEye;
varying vec4 lineColor;
void main() {
    lineColor = color * tint;
    gl_Position = modelViewProjection * vec4(position, 1.0);
    gl_Position.z -= towardsEye;
}
)";

const char* const LINE_FRAGMENT = R"(#version 120
varying vec4 lineColor;
void main() {
    gl_FragColor = lineColor;
}
)";

bool BuildOne(QOpenGLShaderProgram& program, const char* vertex, const char* fragment, const char* second) {
    program.bindAttributeLocation("position", SceneShaders::Position);
    program.bindAttributeLocation(second, 1);
    return program.addShaderFromSourceCode(QOpenGLShader::Vertex, vertex) &&
           program.addShaderFromSourceCode(QOpenGLShader::Fragment, fragment) && program.link();
}

} // namespace

bool SceneShaders::Build() {
    return BuildOne(surface_, SURFACE_VERTEX, SURFACE_FRAGMENT, "normal") &&
           BuildOne(lines_, LINE_VERTEX, LINE_FRAGMENT, "color");
}

} // namespace lightbox
