#include "ScenePrograms.h"

namespace zorOSG {

namespace {

char const* const DEFINES = R"(#version 120
#pragma import_defines(ZOR_UNLIT, ZOR_TEXTURE, ZOR_VERTEXCOLOR, ZOR_FLAT, ZOR_UNSHADOWED)
#pragma import_defines(ZOR_SHADOW, ZOR_SOFTSHADOW)
#pragma import_defines(ZOR_LIGHT0, ZOR_LIGHT1, ZOR_LIGHT2, ZOR_SPECULAR0, ZOR_SPECULAR1, ZOR_SPECULAR2)
#if defined(ZOR_SHADOW) && !defined(ZOR_UNSHADOWED) && !defined(ZOR_UNLIT)
#define SHADOWED
#endif
#ifndef ZOR_UNLIT
varying vec3 zorEye;
#ifndef ZOR_FLAT
varying vec3 zorNormal;
#endif
#endif
#if defined(ZOR_UNLIT) || defined(ZOR_VERTEXCOLOR)
varying vec4 zorColor;
#endif
#ifdef ZOR_TEXTURE
varying vec2 zorTexCoord;
#endif
#ifdef SHADOWED
varying vec4 zorShadowCoord;
#endif
)";

char const* const SCENE_VERTEX = R"(
#ifdef SHADOWED
uniform mat4 zor_shadowMatrix;
uniform float zor_shadowOffset;
#endif

void main() {
  gl_Position = ftransform();
#if defined(ZOR_UNLIT) || defined(ZOR_VERTEXCOLOR)
  zorColor = gl_Color;
#endif
#ifdef ZOR_TEXTURE
  zorTexCoord = (gl_TextureMatrix[0] * gl_MultiTexCoord0).st;
#endif
#ifndef ZOR_UNLIT
  vec3 eye = (gl_ModelViewMatrix * gl_Vertex).xyz;
  zorEye = eye;
#ifndef ZOR_FLAT
  zorNormal = gl_NormalMatrix * gl_Normal;
#endif
#ifdef SHADOWED
  vec4 coord = zor_shadowMatrix * vec4(eye, 1.0);
#ifndef ZOR_FLAT
  // Looking the shadow up a little above the surface keeps a surface from shadowing itself.
  vec3 normal = normalize(zorNormal);
  normal = dot(normal, eye) > 0.0 ? -normal : normal;
  coord = zor_shadowMatrix * vec4(eye + normal * (zor_shadowOffset * coord.w), 1.0);
#endif
  zorShadowCoord = coord;
#endif
#endif
}
)";

char const* const SCENE_FRAGMENT = R"(
#ifdef ZOR_TEXTURE
uniform sampler2D zor_texture;
#endif

#ifdef SHADOWED
uniform sampler2DShadow zor_shadowMap;
uniform vec2 zor_shadowMapSize;

float tap(vec2 at, float depth) { return shadow2D(zor_shadowMap, vec3(at, depth)).r; }

// The part of the light that gets through. The soft one is a filter five texels wide out of nine taps, each
// between four texels; the weights are those of a triangle in both directions.
float lightThrough() {
  if (zorShadowCoord.w <= 0.0)
    return 1.0;
  vec3 coord = zorShadowCoord.xyz / zorShadowCoord.w;
  float depth = clamp(coord.z, 0.0, 1.0);
#ifdef ZOR_SOFTSHADOW
  vec2 texel = 1.0 / zor_shadowMapSize;
  vec2 at = coord.xy * zor_shadowMapSize;
  vec2 base = floor(at + 0.5);
  vec2 f = at + 0.5 - base;
  base = (base - 0.5) * texel;
  vec2 w0 = 4.0 - 3.0 * f;
  vec2 w2 = 1.0 + 3.0 * f;
  vec2 p0 = base + ((3.0 - 2.0 * f) / w0 - 2.0) * texel;
  vec2 p1 = base + ((3.0 + f) / 7.0) * texel;
  vec2 p2 = base + (f / w2 + 2.0) * texel;
  float sum = w0.y * (w0.x * tap(p0, depth) + 7.0 * tap(vec2(p1.x, p0.y), depth) + w2.x * tap(vec2(p2.x, p0.y), depth));
  sum += 7.0 * (w0.x * tap(vec2(p0.x, p1.y), depth) + 7.0 * tap(p1, depth) + w2.x * tap(vec2(p2.x, p1.y), depth));
  sum += w2.y * (w0.x * tap(vec2(p0.x, p2.y), depth) + 7.0 * tap(vec2(p1.x, p2.y), depth) + w2.x * tap(p2, depth));
  return sum / 144.0;
#else
  return tap(coord.xy, depth);
#endif
}
#endif

#ifndef ZOR_UNLIT
vec3 surfaceNormal() {
#ifdef ZOR_FLAT
  vec3 normal = cross(dFdx(zorEye), dFdy(zorEye));
  return normalize(dot(normal, zorEye) > 0.0 ? -normal : normal);
#else
  vec3 normal = normalize(zorNormal);
  return gl_FrontFacing ? normal : -normal;
#endif
}
#endif

void main() {
#ifdef ZOR_TEXTURE
  vec4 image = texture2D(zor_texture, zorTexCoord);
#else
  vec4 image = vec4(1.0);
#endif
#ifdef ZOR_UNLIT
  gl_FragColor = zorColor * image;
#else
#ifdef ZOR_VERTEXCOLOR
  vec4 surface = zorColor;
#else
  vec4 surface = gl_FrontMaterial.diffuse;
#endif
  vec3 normal = surfaceNormal();
  vec3 toEye = normalize(-zorEye);
  vec3 flatLight = gl_FrontLightModelProduct.sceneColor.rgb;
  vec3 diffuse = vec3(0.0);
  vec3 specular = vec3(0.0);
@LIGHTS@
  gl_FragColor = vec4((flatLight + diffuse * surface.rgb) * image.rgb + specular, surface.a * image.a);
#endif
}
)";

char const* const ONE_LIGHT = R"(
#ifdef ZOR_LIGHT@
  {
#if ZOR_LIGHT@ == 1
    vec3 toLight = normalize(gl_LightSource[@].position.xyz);
    float reach = 1.0;
#else
    vec3 toLight = gl_LightSource[@].position.xyz - zorEye;
    float range = length(toLight);
    toLight /= range;
#if ZOR_LIGHT@ == 2
    float reach = 1.0;
#else
    float reach = 1.0 / (gl_LightSource[@].constantAttenuation + range * (gl_LightSource[@].linearAttenuation +
                         range * gl_LightSource[@].quadraticAttenuation));
#endif
#if ZOR_LIGHT@ == 4
    float axis = -dot(toLight, normalize(gl_LightSource[@].spotDirection));
    reach *= axis > gl_LightSource[@].spotCosCutoff ? pow(max(axis, 0.001), gl_LightSource[@].spotExponent) : 0.0;
#endif
#endif
    flatLight += reach * gl_FrontLightProduct[@].ambient.rgb;
    float facing = dot(normal, toLight);
#if defined(SHADOWED) && ZOR_SHADOW == @
    if (facing > 0.0)
      reach *= lightThrough();
#endif
    diffuse += (max(facing, 0.0) * reach) * gl_LightSource[@].diffuse.rgb;
#ifdef ZOR_SPECULAR@
    float shine = max(dot(normal, normalize(toLight + toEye)), 0.0001);
    specular += (facing > 0.0 ? reach * pow(shine, gl_FrontMaterial.shininess) : 0.0) *
                gl_FrontLightProduct[@].specular.rgb;
#endif
  }
#endif
)";

std::string replaced(std::string text, std::string const& what, std::string const& by) {
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

std::string sceneFragment() {
  std::string lights;
  for (unsigned int i = 0; i < LIGHT_COUNT; ++i)
    lights += replaced(ONE_LIGHT, "@", std::to_string(i));
  return replaced(SCENE_FRAGMENT, "@LIGHTS@", lights);
}

osg::ref_ptr<osg::Program> makeProgram(char const* name, std::string const& vertex,
                                       std::string const& fragment) {
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName(name);
  program->addShader(new osg::Shader(osg::Shader::VERTEX, vertex));
  program->addShader(new osg::Shader(osg::Shader::FRAGMENT, fragment));
  return program;
}

} // namespace

osg::ref_ptr<osg::Program> makeSceneProgram() {
  return makeProgram("scene", std::string(DEFINES) + SCENE_VERTEX, std::string(DEFINES) + sceneFragment());
}

osg::ref_ptr<osg::Program> makeDepthProgram() {
  return makeProgram("depth", R"(#version 120
void main() { gl_Position = ftransform(); }
)",
                     R"(#version 120
void main() {}
)");
}

osg::ref_ptr<osg::Program> makeBackgroundProgram() {
  return makeProgram("background", R"(#version 120
varying vec4 color;
void main() {
  gl_Position = vec4(gl_Vertex.xy, 0.0, 1.0);
  color = gl_Color;
}
)",
                     R"(#version 120
varying vec4 color;
void main() {
  // Less than one step of an 8-bit buffer, so that a faint gradient shows no bands.
  float noise = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715)))) - 0.5;
  gl_FragColor = vec4(color.rgb + noise / 255.0, color.a);
}
)");
}

} // namespace zorOSG
