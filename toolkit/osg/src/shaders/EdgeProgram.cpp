#include "EdgeProgram.h"

namespace zorOSG {

namespace {

constexpr char const* VERTEX = R"glsl(#version 120
varying vec2 at;

void main() {
  at = gl_MultiTexCoord0.xy;
  gl_Position = vec4(gl_Vertex.xy, 0.0, 1.0);
}
)glsl";

constexpr char const* FRAGMENT = R"glsl(#version 120
uniform sampler2D picture;
uniform vec2 pixelSize;
varying vec2 at;

const float LEAST_CONTRAST = 0.06;  // of the brightest neighbour
const float LONGEST = 6.0;          // pixels along an edge

float brightness(vec3 color) { return dot(color, vec3(0.299, 0.587, 0.114)); }

vec3 around(float x, float y) { return texture2D(picture, at + vec2(x, y) * pixelSize).rgb; }

void main() {
  vec4 center = texture2D(picture, at);
  float m = brightness(center.rgb);
  float nw = brightness(around(-1.0, 1.0));
  float ne = brightness(around(1.0, 1.0));
  float sw = brightness(around(-1.0, -1.0));
  float se = brightness(around(1.0, -1.0));
  float least = min(m, min(min(nw, ne), min(sw, se)));
  float most = max(m, max(max(nw, ne), max(sw, se)));
  if (most - least < max(0.02, LEAST_CONTRAST * most)) {
    gl_FragColor = center;
    return;
  }
  // Along the edge: at right angles to the way brightness changes.
  vec2 along = vec2((sw + se) - (nw + ne), (nw + sw) - (ne + se));
  float smaller = min(abs(along.x), abs(along.y)) + max((nw + ne + sw + se) * 0.03, 0.008);
  along = clamp(along / smaller, -LONGEST, LONGEST) * pixelSize;

  vec3 near = 0.5 * (texture2D(picture, at - along * (1.0 / 6.0)).rgb + texture2D(picture, at + along * (1.0 / 6.0)).rgb);
  vec3 far = 0.5 * near + 0.25 * (texture2D(picture, at - along * 0.5).rgb + texture2D(picture, at + along * 0.5).rgb);
  float b = brightness(far);
  // Samples that reached past the neighbourhood belong to something else.
  gl_FragColor = vec4(b < least || b > most ? near : far, center.a);
}
)glsl";

} // namespace

osg::Program* edgeProgram() {
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName("edge smoothing");
  program->addShader(new osg::Shader(osg::Shader::VERTEX, VERTEX));
  program->addShader(new osg::Shader(osg::Shader::FRAGMENT, FRAGMENT));
  return program.release();
}

} // namespace zorOSG
