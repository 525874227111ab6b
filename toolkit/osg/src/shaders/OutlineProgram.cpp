#include "OutlineProgram.h"

#include <osg/ref_ptr>

namespace zorOSG {

namespace {

constexpr char const* VERTEX = R"(#version 150 compatibility
uniform bool zor_outlineAll;
const float NEARER = 0.01; // in parts of the distance, so that the ground a body stands on does not hide the line

void main() {
  vec4 eye = gl_ModelViewMatrix * gl_Vertex;
  vec4 place = gl_ProjectionMatrix * eye;
  if (zor_outlineAll) {
    vec4 nearer = gl_ProjectionMatrix * vec4(eye.xyz * (1.0 - NEARER), eye.w);
    place.z = max(nearer.z / nearer.w, -0.9999) * place.w;
  }
  gl_Position = place;
}
)";

constexpr char const* GEOMETRY = R"(#version 150 compatibility
layout(triangles) in;
layout(triangle_strip, max_vertices = 9) out;
uniform vec2 zor_outlineReach;
uniform bool zor_outlineAll;

vec2 outwards(vec2 from, vec2 to) {
  vec2 side = to - from;
  float size = length(side);
  return size > 1.0e-5 ? vec2(side.y, -side.x) / size : vec2(0.0);
}

// A point of the arc around a corner.
vec2 between(vec2 before, vec2 after, vec2 away) {
  vec2 middle = before + after + 1.0e-3 * away;
  return middle / max(length(middle), 1.0e-6);
}

void emit(vec2 at, vec4 place) {
  gl_Position = vec4(at * zor_outlineReach * place.w, place.zw);
  EmitVertex();
}

void main() {
  vec2 corner[3];
  for (int i = 0; i < 3; ++i) {
    if (gl_in[i].gl_Position.w <= 1.0e-6)
      return; // reaches behind the eye
    corner[i] = gl_in[i].gl_Position.xy / gl_in[i].gl_Position.w / zor_outlineReach;
  }
  vec2 a = corner[1] - corner[0], b = corner[2] - corner[0];
  bool facesAway = a.x * b.y < a.y * b.x;
  if (!zor_outlineAll && !facesAway)
    return;
  // Around to the left. Indices are constants, which every driver can do.
  vec4 place0 = gl_in[0].gl_Position;
  vec4 place1 = facesAway ? gl_in[2].gl_Position : gl_in[1].gl_Position;
  vec4 place2 = facesAway ? gl_in[1].gl_Position : gl_in[2].gl_Position;
  vec2 at0 = corner[0], at1 = facesAway ? corner[2] : corner[1], at2 = facesAway ? corner[1] : corner[2];
  vec2 normal0 = outwards(at0, at1), normal1 = outwards(at1, at2), normal2 = outwards(at2, at0);
  vec2 center = (at0 + at1 + at2) / 3.0;
  emit(at0 + normal2, place0);
  emit(at0 + between(normal2, normal0, at0 - center), place0);
  emit(at2 + normal2, place2);
  emit(at0 + normal0, place0);
  emit(at2 + between(normal1, normal2, at2 - center), place2);
  emit(at1 + normal0, place1);
  emit(at2 + normal1, place2);
  emit(at1 + between(normal0, normal1, at1 - center), place1);
  emit(at1 + normal1, place1);
  EndPrimitive();
}
)";

// Below clip planes: triangles are cut first, so that the line runs along the cut as well. Then a band is
// laid around what is left; what it surrounds has its mark, or lies in front.
constexpr char const* CUT_VERTEX = R"(#version 150 compatibility
void main() { gl_Position = gl_ModelViewMatrix * gl_Vertex; }
)";

constexpr char const* CUT_GEOMETRY = R"(#version 150 compatibility
layout(triangles) in;
layout(triangle_strip, max_vertices = 68) out;
uniform vec2 zor_outlineReach;
uniform bool zor_outlineAll;
uniform int zor_outlineCuts; // a bit for each clip plane
const float NEARER = 0.01;
const int CORNERS = 11; // three, and one more for each of eight planes

vec4 projected(vec4 eye) {
  vec4 place = gl_ProjectionMatrix * eye;
  if (zor_outlineAll) {
    vec4 nearer = gl_ProjectionMatrix * vec4(eye.xyz * (1.0 - NEARER), eye.w);
    place.z = max(nearer.z / nearer.w, -0.9999) * place.w;
  }
  return place;
}

vec2 outwards(vec2 from, vec2 to) {
  vec2 side = to - from;
  float size = length(side);
  return size > 1.0e-5 ? vec2(side.y, -side.x) / size : vec2(0.0);
}

void emit(vec2 at, vec4 place) {
  gl_Position = vec4(at * zor_outlineReach * place.w, place.zw);
  EmitVertex();
}

void main() {
  vec4 eye[CORNERS], rest[CORNERS];
  int count = 3;
  for (int i = 0; i < 3; ++i)
    eye[i] = gl_in[i].gl_Position;
  for (int number = 0; number < 8; ++number) {
    if ((zor_outlineCuts & (1 << number)) == 0)
      continue;
    vec4 plane = gl_ClipPlane[number];
    int left = 0;
    for (int i = 0; i < count; ++i) {
      vec4 here = eye[i], next = eye[i + 1 < count ? i + 1 : 0];
      float height = dot(plane, here), then = dot(plane, next);
      if (height >= 0.0 && left < CORNERS)
        rest[left++] = here;
      if ((height < 0.0) != (then < 0.0) && left < CORNERS)
        rest[left++] = mix(here, next, height / (height - then));
    }
    count = left;
    for (int i = 0; i < count; ++i)
      eye[i] = rest[i];
  }
  if (count < 3)
    return;
  vec2 at[CORNERS];
  vec2 center = vec2(0.0);
  for (int i = 0; i < count; ++i) {
    eye[i] = projected(eye[i]);
    if (eye[i].w <= 1.0e-6)
      return; // reaches behind the eye
    at[i] = eye[i].xy / eye[i].w / zor_outlineReach;
    center += at[i];
  }
  center /= float(count);
  float area = 0.0;
  for (int i = 0; i < count; ++i) {
    vec2 a = at[i] - center, b = at[i + 1 < count ? i + 1 : 0] - center;
    area += a.x * b.y - a.y * b.x;
  }
  if (!zor_outlineAll && area >= 0.0)
    return;
  float turn = area < 0.0 ? -1.0 : 1.0; // corners that run around to the right have their outside on the left
  vec2 before = turn * outwards(at[count - 1], at[0]);
  for (int i = 0; i <= count; ++i) {
    int k = i < count ? i : 0;
    vec2 after = turn * outwards(at[k], at[k + 1 < count ? k + 1 : 0]);
    vec2 middle = before + after + 1.0e-3 * (at[k] - center);
    emit(at[k] + before, eye[k]);
    emit(at[k], eye[k]);
    if (i == count)
      break;
    emit(at[k] + middle / max(length(middle), 1.0e-6), eye[k]);
    emit(at[k], eye[k]);
    emit(at[k] + after, eye[k]);
    emit(at[k], eye[k]);
    before = after;
  }
  EndPrimitive();
}
)";

constexpr char const* FRAGMENT = R"(#version 150 compatibility
uniform vec4 zor_outlineColor;
void main() { gl_FragColor = zor_outlineColor; }
)";

osg::ref_ptr<osg::Program> makeProgram(char const* name, char const* vertex, char const* geometry,
                                       GLint mostVertices) {
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName(name);
  program->addShader(new osg::Shader(osg::Shader::VERTEX, vertex));
  program->addShader(new osg::Shader(osg::Shader::GEOMETRY, geometry));
  program->addShader(new osg::Shader(osg::Shader::FRAGMENT, FRAGMENT));
  program->setParameter(GL_GEOMETRY_VERTICES_OUT_EXT, mostVertices);
  program->setParameter(GL_GEOMETRY_INPUT_TYPE_EXT, GL_TRIANGLES);
  program->setParameter(GL_GEOMETRY_OUTPUT_TYPE_EXT, GL_TRIANGLE_STRIP);
  return program;
}

} // namespace

osg::Program& outlineProgram() {
  static osg::ref_ptr<osg::Program> const program = makeProgram("outline", VERTEX, GEOMETRY, 9);
  return *program;
}

osg::Program& cutOutlineProgram() {
  static osg::ref_ptr<osg::Program> const program = makeProgram("cut outline", CUT_VERTEX, CUT_GEOMETRY, 68);
  return *program;
}

} // namespace zorOSG
