#include "window/SceneShaders.h"

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

// A lamp at the eye; surfaces are lit on both sides.
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
        float facing = abs(dot(normalize(eyeNormal), toEye));
        lit = color * diffuse * (0.06 + 0.94 * facing) + incandescence + vec3(0.5 * specular * pow(facing, 30.0));
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
    gl_Position.z -= towardsEye * gl_Position.w;
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
