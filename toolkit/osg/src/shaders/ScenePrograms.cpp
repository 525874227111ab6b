#include "ScenePrograms.h"

#include "SurfaceSource.h"

namespace zorOSG {

namespace {

char const* const DEFINES = R"(#version 130
#extension GL_ARB_texture_gather : enable
#pragma import_defines(ZOR_UNLIT, ZOR_TEXTURE, ZOR_VERTEXCOLOR, ZOR_FLAT, ZOR_UNSHADOWED)
#pragma import_defines(ZOR_SHADOW, ZOR_SHADOWKIND)
#pragma import_defines(ZOR_LIGHT0, ZOR_LIGHT1, ZOR_LIGHT2, ZOR_SPECULAR0, ZOR_SPECULAR1, ZOR_SPECULAR2)
#pragma import_defines(ZOR_NOLIGHT0, ZOR_NOLIGHT1, ZOR_NOLIGHT2)
#pragma import_defines(ZOR_LIGHT3, ZOR_LIGHT4, ZOR_LIGHT5, ZOR_LIGHT6, ZOR_LIGHT7)
#pragma import_defines(ZOR_GAMMA, ZOR_METALLIC, ZOR_ROUGHNESS, ZOR_REFLECTION, ZOR_SURROUNDINGS)
#pragma import_defines(ZOR_STOREDSHADOW, ZOR_JITTER, ZOR_NORMALMAP, ZOR_HEIGHTMAP, ZOR_ROUGHNESSMAP, ZOR_METALLICMAP)
#if defined(ZOR_SHADOW) && !defined(ZOR_UNSHADOWED) && !defined(ZOR_UNLIT)
#define SHADOWED
#if ZOR_SHADOWKIND == 1 || ZOR_SHADOWKIND == 2 || ZOR_SHADOWKIND == 4
#define ONE_MAP // whose coordinates are interpolated
#endif
#endif
#if defined(ZOR_SPHERE) || defined(ZOR_BALLS)
#define PARTICLES
#undef ZOR_UNLIT
#undef ZOR_TEXTURE
#ifdef ZOR_BALLS
#undef ZOR_FLAT
#ifndef ZOR_VERTEXCOLOR
#define ZOR_VERTEXCOLOR
#endif
#endif
#endif
#if defined(PARTICLES) || defined(ZOR_UNLIT)
#undef ZOR_STOREDSHADOW
#undef ZOR_NORMALMAP
#undef ZOR_HEIGHTMAP
#undef ZOR_ROUGHNESSMAP
#undef ZOR_METALLICMAP
#endif
#ifdef ZOR_UNLIT
#undef ZOR_SURROUNDINGS
#else
#if defined(ZOR_METALLIC) || defined(ZOR_ROUGHNESS) || defined(ZOR_METALLICMAP) || defined(ZOR_ROUGHNESSMAP)
#define PHYSICAL
#endif
#if defined(ZOR_NORMALMAP) || defined(ZOR_HEIGHTMAP)
#define BENT // the surface is not as flat as its triangles
#endif
#ifdef ZOR_SHADOW
#define SHADOW_LIGHT ZOR_SHADOW
#else
#define SHADOW_LIGHT 0
#endif
#if defined(BENT) || defined(ZOR_STOREDSHADOW) || defined(ZOR_ROUGHNESSMAP) || defined(ZOR_METALLICMAP)
#define ROLES // textures beside the colour
#endif
#endif
#ifdef PARTICLES
varying vec3 zorAxis; // about which the band runs
#endif
#ifdef ZOR_SPHERE
vec3 zorEye;
vec4 zorShadowCoord;
varying vec4 zorColor;
#else
#ifndef ZOR_UNLIT
varying vec3 zorEye;
#ifndef ZOR_FLAT
varying vec3 zorNormal;
#endif
#endif
#if defined(ZOR_UNLIT) || defined(ZOR_VERTEXCOLOR)
varying vec4 zorColor;
#endif
#if defined(ZOR_TEXTURE) || defined(ROLES)
varying vec2 zorTexCoord;
#endif
#ifdef ONE_MAP
varying vec4 zorShadowCoord;
#endif
#endif
)";

// Particles: the quad or point only bounds the picture of a sphere, which each fragment works out exactly.
char const* const SPHERE_VERTEX = R"(
uniform bool zor_particlePoints;
uniform float zor_pointScale;
varying vec3 zorCenter;
varying vec3 zorOnQuad;
varying float zorRadius;

void main() {
  vec3 center = (gl_ModelViewMatrix * gl_Vertex).xyz;
  float radius = gl_MultiTexCoord0.z * length(gl_ModelViewMatrix[0].xyz);
  bool flatView = gl_ProjectionMatrix[3][3] > 0.5;
  float range = max(length(center), 1.0e-6);
  // Seen from near, the outline of a sphere is larger than its radius.
  float wide = flatView ? radius : radius * range / sqrt(max(range * range - radius * radius, 0.05 * radius * radius));
  vec3 toEye = flatView ? vec3(0.0, 0.0, 1.0) : -center / range;
  vec3 right = normalize(abs(toEye.y) < 0.99 ? cross(vec3(0.0, 1.0, 0.0), toEye) : cross(vec3(1.0, 0.0, 0.0), toEye));
  vec3 up = cross(toEye, right);
  zorCenter = center;
  zorRadius = radius;
  zorColor = gl_Color;
  zorAxis = normalize(gl_NormalMatrix * gl_Normal);
  zorOnQuad = zor_particlePoints ? center : center + (right * gl_MultiTexCoord0.x + up * gl_MultiTexCoord0.y) * wide;
  gl_Position = gl_ProjectionMatrix * vec4(zorOnQuad, 1.0);
  gl_ClipVertex = vec4(zorOnQuad, 1.0);
  gl_PointSize = 1.1 * wide * gl_ProjectionMatrix[1][1] * zor_pointScale / max(gl_Position.w, 1.0e-6);
}
)";

// How a particle is coloured where its surface faces a direction.
char const* const PARTICLE_SOURCE = R"(
uniform int zor_particleShader;

vec4 particleColor(vec4 color, vec3 normal, vec3 toEye) {
  if (zor_particleShader == 1)
    color.rgb *= mix(0.62, 1.0, smoothstep(0.16, 0.24, abs(dot(normal, normalize(zorAxis)))));
  if (zor_particleShader == 2)
    color.a *= max(dot(normal, toEye), 0.0);
  return color;
}
)";

char const* const SPHERE_FRAGMENT = R"(
uniform bool zor_particlePoints;
uniform float zor_pointScale;
varying vec3 zorCenter;
varying vec3 zorOnQuad;
varying float zorRadius;
vec3 zorSphereNormal;
vec4 zorSphereColor;
#ifdef ONE_MAP
uniform mat4 zor_shadowMatrix;
uniform vec2 zor_shadowOffset; // along the normal, times w
#endif

void meetSphere() {
  bool flatView = gl_ProjectionMatrix[3][3] > 0.5;
  vec3 place = zorOnQuad;
  if (zor_particlePoints) {
    float size = 1.1 * zorRadius;
    place += vec3((2.0 * gl_PointCoord.x - 1.0) * size, (1.0 - 2.0 * gl_PointCoord.y) * size, 0.0);
  }
  float left;
  if (flatView) {
    vec2 aside = place.xy - zorCenter.xy;
    left = zorRadius * zorRadius - dot(aside, aside);
    zorEye = vec3(place.xy, zorCenter.z + sqrt(max(left, 0.0)));
  } else {
    vec3 ray = normalize(place);
    float along = dot(ray, zorCenter);
    left = along * along - dot(zorCenter, zorCenter) + zorRadius * zorRadius;
    zorEye = ray * (along - sqrt(max(left, 0.0)));
  }
  if (left < 0.0)
    discard;
  zorSphereNormal = (zorEye - zorCenter) / zorRadius;
  // A little behind itself where it is drawn for a shadow, so that it does not darken itself.
  vec4 clip = gl_ProjectionMatrix * vec4(zorEye.xy, flatView ? zorEye.z - 0.4 * zorRadius : zorEye.z, 1.0);
  gl_FragDepth = clamp(0.5 * clip.z / clip.w + 0.5, 0.0, 1.0);
  zorSphereColor = particleColor(zorColor, zorSphereNormal, normalize(-zorEye));
#ifdef ONE_MAP
  vec4 coord = zor_shadowMatrix * vec4(zorEye, 1.0);
  zorShadowCoord = zor_shadowMatrix * vec4(zorEye + zorSphereNormal * (zor_shadowOffset.x * coord.w), 1.0);
#endif
}
)";

char const* const SCENE_VERTEX = R"(
#ifdef ONE_MAP
uniform mat4 zor_shadowMatrix;
uniform vec2 zor_shadowOffset; // along the normal, times w
#endif

void main() {
  gl_Position = ftransform();
  gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex; // for clip planes
#if defined(ZOR_UNLIT) || defined(ZOR_VERTEXCOLOR)
  zorColor = gl_Color;
#endif
#ifdef ZOR_BALLS
  zorAxis = gl_NormalMatrix * gl_MultiTexCoord0.xyz;
#endif
#if defined(ROLES)
  zorTexCoord = gl_MultiTexCoord0.st;
#elif defined(ZOR_TEXTURE)
  zorTexCoord = (gl_TextureMatrix[0] * gl_MultiTexCoord0).st;
#endif
#ifndef ZOR_UNLIT
  vec3 eye = (gl_ModelViewMatrix * gl_Vertex).xyz;
  zorEye = eye;
#ifndef ZOR_FLAT
  zorNormal = gl_NormalMatrix * gl_Normal;
#endif
#ifdef ONE_MAP
  vec4 coord = zor_shadowMatrix * vec4(eye, 1.0);
#ifndef ZOR_FLAT
  // Looking the shadow up a little above the surface keeps a surface from shadowing itself.
  vec3 normal = normalize(zorNormal);
  normal = dot(normal, eye) > 0.0 ? -normal : normal;
  coord = zor_shadowMatrix * vec4(eye + normal * (zor_shadowOffset.x * coord.w), 1.0);
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
#if ZOR_SHADOWKIND != 5
uniform vec2 zor_shadowMapSize;
#ifdef ZOR_JITTER
uniform sampler2D zor_jitter;
const float UNREST = 3.0; // texels of the shadow map between the ends of the noise

vec2 moved(vec2 at) {
  vec2 noise = texture2D(zor_jitter, gl_FragCoord.xy / vec2(textureSize(zor_jitter, 0))).rg;
  return at + (noise - 0.5) * UNREST / zor_shadowMapSize;
}
#else
#define moved(at) (at)
#endif
#endif

#if ZOR_SHADOWKIND == 1
uniform sampler2DShadow zor_shadowMap;

float lightAt(vec2 at, float depth) { return shadow2D(zor_shadowMap, vec3(moved(at), depth)).r; }
#endif

#if ZOR_SHADOWKIND == 2 || ZOR_SHADOWKIND == 3 || ZOR_SHADOWKIND == 6
uniform sampler2D zor_shadowMap;

// Whether light reaches the four texels around a corner: left and right above it, right and left below.
vec4 lit(vec2 corner, float depth) {
#ifdef GL_ARB_texture_gather
  return step(depth, textureGather(zor_shadowMap, corner));
#else
  vec2 side = 0.5 / zor_shadowMapSize;
  return step(depth, vec4(texture2D(zor_shadowMap, corner + vec2(-side.x, side.y)).r,
                          texture2D(zor_shadowMap, corner + side).r,
                          texture2D(zor_shadowMap, corner + vec2(side.x, -side.y)).r,
                          texture2D(zor_shadowMap, corner - side).r));
#endif
}

// The mean of three by three lookups that each blend four texels.
float lightAt(vec2 at, float depth) {
  vec2 texel = 1.0 / zor_shadowMapSize;
  vec2 place = moved(at) * zor_shadowMapSize - 0.5;
  vec2 base = floor(place);
  vec2 f = place - base;
  vec2 corner = base * texel;
  vec4 lowLeft = lit(corner, depth);
  vec4 lowRight = lit(corner + vec2(2.0, 0.0) * texel, depth);
  vec4 highLeft = lit(corner + vec2(0.0, 2.0) * texel, depth);
  vec4 highRight = lit(corner + vec2(2.0, 2.0) * texel, depth);
  vec4 weights = vec4(1.0 - f.x, 1.0, 1.0, f.x);
  vec4 rows;
  rows.x = dot(weights, vec4(lowLeft.wz, lowRight.wz));
  rows.y = dot(weights, vec4(lowLeft.xy, lowRight.xy));
  rows.z = dot(weights, vec4(highLeft.wz, highRight.wz));
  rows.w = dot(weights, vec4(highLeft.xy, highRight.xy));
  return dot(rows, vec4(1.0 - f.y, 1.0, 1.0, f.y)) / 9.0;
}
#endif

#if ZOR_SHADOWKIND == 4
uniform sampler2D zor_shadowMap;
const float CLEARANCE = 0.004; // in depth, of what counts as behind all bodies

// The part of the neighbourhood that no body covers, for what lies behind the bodies.
float lightAt(vec2 at, float depth) {
  vec2 texel = 1.0 / zor_shadowMapSize;
  vec2 sum = vec2(0.0);
  at = moved(at);
  for (int y = -1; y <= 1; ++y)
    for (int x = -1; x <= 1; ++x)
      sum += texture2D(zor_shadowMap, at + vec2(x, y) * 1.5 * texel).rg;
  float farthest = sum.g / max(sum.r, 0.0001);
  return depth > farthest - CLEARANCE ? 1.0 - sum.r / 9.0 : 1.0;
}
#endif

#ifdef ONE_MAP
// The part of the light that gets through.
float lightThrough(vec3 normal) {
  vec3 coord = zorShadowCoord.xyz / zorShadowCoord.w;
  return zorShadowCoord.w > 0.0 ? lightAt(coord.xy, clamp(coord.z, 0.0, 1.0)) : 1.0;
}
#endif

#if ZOR_SHADOWKIND == 3
uniform mat4 zor_splitMatrix[3];
uniform float zor_splitOffset[3];
uniform float zor_splitEnd[3];

// The maps lie side by side; what would be read beyond the edge of one belongs to another.
float lightThrough(vec3 normal) {
  float depth = -zorEye.z;
  int part = depth < zor_splitEnd[0] ? 0 : (depth < zor_splitEnd[1] ? 1 : 2);
  if (zor_splitOffset[part] < 0.0)
    return 1.0;
  vec4 coord = zor_splitMatrix[part] * vec4(zorEye, 1.0);
  coord = zor_splitMatrix[part] * vec4(zorEye + normal * (zor_splitOffset[part] * coord.w), 1.0);
  vec3 at = coord.xyz / coord.w;
  vec2 edge = vec2(2.5 / zor_shadowMapSize.y);
  if (coord.w <= 0.0 || any(lessThan(at.xy, edge)) || any(greaterThan(at.xy, 1.0 - edge)))
    return 1.0;
  return lightAt(vec2((at.x + float(part)) / 3.0, at.y), clamp(at.z, 0.0, 1.0));
}
#endif

#if ZOR_SHADOWKIND == 6
uniform mat4 zor_shadowMatrix;
uniform vec2 zor_shadowOffset; // along the normal, times w and times w squared

// The size of texels is no linear function of the place, so that nothing can be interpolated.
float lightThrough(vec3 normal) {
  vec4 coord = zor_shadowMatrix * vec4(zorEye, 1.0);
  float offset = (zor_shadowOffset.x + zor_shadowOffset.y * coord.w) * coord.w;
  coord = zor_shadowMatrix * vec4(zorEye + normal * offset, 1.0);
  vec3 at = coord.xyz / coord.w;
  return coord.w > 0.0 ? lightAt(at.xy, clamp(at.z, 0.0, 1.0)) : 1.0;
}
#endif

#if ZOR_SHADOWKIND == 5
float lightThrough(vec3 normal) { return 0.0; }
#endif
#endif

#ifndef ZOR_UNLIT
vec3 surfaceNormal() {
#if defined(ZOR_SPHERE)
  return zorSphereNormal;
#elif defined(ZOR_FLAT)
  vec3 normal = cross(dFdx(zorEye), dFdy(zorEye));
  return normalize(dot(normal, zorEye) > 0.0 ? -normal : normal);
#else
  vec3 normal = normalize(zorNormal);
  return gl_FrontFacing ? normal : -normal;
#endif
}
#endif
@SURFACE@
@REFLECTION@
void main() {
#ifdef ZOR_SPHERE
  meetSphere();
#endif
#ifndef ZOR_UNLIT
  vec3 normal = surfaceNormal();
  vec3 toEye = normalize(-zorEye);
  vec3 flatNormal = normal; // of the surface as it is, which shadows fall on
#ifdef ROLES
  zorPlace = zorTexCoord;
#endif
#ifdef ZOR_HEIGHTMAP
  meetHeights(normal, toEye);
#endif
#if defined(ZOR_NORMALMAP)
  normal = normalOfMap(normal);
#elif defined(ZOR_HEIGHTMAP)
  normal = normalOfHeights(normal);
#endif
#endif
#ifdef ZOR_TEXTURE
  vec4 image = texture2D(zor_texture, COLOR_PLACE);
#else
  vec4 image = vec4(1.0);
#endif
#ifdef ZOR_UNLIT
  gl_FragColor = zorColor * image;
#else
#if defined(ZOR_SPHERE)
  vec4 surface = zorSphereColor;
#elif defined(ZOR_BALLS)
  vec4 surface = particleColor(zorColor, normal, toEye);
#elif defined(ZOR_VERTEXCOLOR)
  vec4 surface = zorColor;
#else
  vec4 surface = gl_FrontMaterial.diffuse;
#endif
  vec3 baseColor = decoded(surface.rgb);
  image.rgb = decoded(image.rgb);
#ifdef PHYSICAL
  Mirrors mirrors = findMirrors(baseColor * image.rgb);
  vec3 flatLight = decoded(gl_LightModel.ambient.rgb);
#else
  vec3 flatLight = decoded(gl_FrontLightModelProduct.sceneColor.rgb);
#endif
  vec3 diffuse = vec3(0.0);
  vec3 specular = vec3(0.0);
@LIGHTS@
#ifdef PARTICLES
#if !defined(ZOR_LIGHT0) && !defined(ZOR_LIGHT1) && !defined(ZOR_LIGHT2)
  flatLight = vec3(0.25); // nobody says which lights there are: one at the viewer's place
  diffuse = vec3(0.75 * max(dot(normal, toEye), 0.0));
#endif
#endif
#ifdef PHYSICAL
#if defined(ZOR_SPHERE) || defined(ZOR_VERTEXCOLOR)
  vec3 ambientColor = baseColor;
#else
  vec3 ambientColor = decoded(gl_FrontMaterial.ambient.rgb);
#endif
  vec3 around = flatLight;
#ifdef ZOR_SURROUNDINGS
  around = surroundings(reflect(-toEye, normal), mirrors.roughness) * zor_reflection;
#if ZOR_SURROUNDINGS == 3
  flatLight *= mix(vec3(1.0), tintAround(normal), zor_reflection);
#endif
#endif
  vec3 color = (flatLight * ambientColor + diffuse * baseColor) * image.rgb * (1.0 - mirrors.metallic);
  color += decoded(gl_FrontMaterial.emission.rgb) * image.rgb;
  vec3 reflection = specular + around * reflectedOfAll(mirrors, max(dot(normal, toEye), 0.0));
  // What is seen through reflects all the same.
  float opacity = surface.a * image.a;
  float covered = mix(opacity, 1.0, clamp(max(reflection.r, max(reflection.g, reflection.b)), 0.0, 1.0));
  color = (color * opacity + reflection) / max(covered, 0.001);
#else
  float covered = surface.a * image.a;
#if defined(ZOR_SPHERE) || defined(ZOR_VERTEXCOLOR)
  flatLight *= baseColor; // the material does not know the colour
#endif
  vec3 color = (flatLight + diffuse * baseColor) * image.rgb + specular;
#ifdef ZOR_SURROUNDINGS
  color = mix(color, surroundings(reflect(-toEye, normal), 0.0), zor_reflection);
#endif
#endif
  gl_FragColor = vec4(encoded(color), covered);
#endif
}
)";

// What a light does; one of these for each.
char const* const ONE_LIGHT = R"(
#if defined(ZOR_LIGHT@) && !defined(ZOR_NOLIGHT@)
  {
#if ZOR_LIGHT@ == 1
    vec3 toLight = normalize(gl_LightSource[@].position.xyz);
    float reach = 1.0;
#else
    vec3 toLight = gl_LightSource[@].position.xyz;
#if ZOR_LIGHT@ == 5
    float near = gl_LightSource[@].position.w == 0.0 ? 0.0 : 1.0;
    toLight -= near * zorEye;
#else
    toLight -= zorEye;
#endif
    float range = length(toLight);
    toLight /= range;
#if ZOR_LIGHT@ == 2
    float reach = 1.0;
#else
    float reach = 1.0 / (gl_LightSource[@].constantAttenuation + range * (gl_LightSource[@].linearAttenuation +
                         range * gl_LightSource[@].quadraticAttenuation));
#endif
#if ZOR_LIGHT@ == 5
    reach = near == 0.0 ? 1.0 : reach;
    if (near != 0.0 && gl_LightSource[@].spotCutoff < 180.0)
#endif
#if ZOR_LIGHT@ >= 4
    {
      float axis = -dot(toLight, normalize(gl_LightSource[@].spotDirection));
      reach *= axis > gl_LightSource[@].spotCosCutoff ? pow(max(axis, 0.001), gl_LightSource[@].spotExponent) : 0.0;
    }
#endif
#endif
#ifdef PHYSICAL
    flatLight += reach * decoded(gl_LightSource[@].ambient.rgb);
#else
    flatLight += reach * decoded(gl_FrontLightProduct[@].ambient.rgb);
#endif
    float facing = dot(normal, toLight);
#if defined(SHADOWED) && ZOR_SHADOW == @
    if (facing > 0.0)
      reach *= lightThrough(flatNormal);
#endif
#if defined(ZOR_STOREDSHADOW) && SHADOW_LIGHT == @
    reach *= storedLight();
#endif
#ifdef PHYSICAL
    addLight(mirrors, normal, toEye, toLight, reach * decoded(gl_LightSource[@].diffuse.rgb), diffuse, specular);
#else
    diffuse += (max(facing, 0.0) * reach) * decoded(gl_LightSource[@].diffuse.rgb);
#if defined(ZOR_SPECULAR@) || ZOR_LIGHT@ == 5
    float shine = max(dot(normal, normalize(toLight + toEye)), 0.0001);
    specular += (facing > 0.0 ? reach * pow(shine, gl_FrontMaterial.shininess) : 0.0) *
                decoded(gl_FrontLightProduct[@].specular.rgb);
#endif
#endif
  }
#endif
)";

// Where only the place counts.
char const* const POSITION_VERTEX = R"(#version 120
void main() {
  gl_Position = ftransform();
  gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;
}
)";

std::string replaced(std::string text, std::string const& what, std::string const& by) {
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

std::string sceneFragment() {
  std::string lights;
  for (unsigned int i = 0; i < ALL_LIGHTS; ++i)
    lights += replaced(ONE_LIGHT, "@", std::to_string(i));
  std::string const surface = replaced(SCENE_FRAGMENT, "@SURFACE@", SURFACE_SOURCE);
  return replaced(replaced(surface, "@REFLECTION@", REFLECTION_SOURCE), "@LIGHTS@", lights);
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

osg::ref_ptr<osg::Program> makeParticleProgram() {
  std::string const defines = replaced(DEFINES, "#version 130\n", "#version 130\n#define ZOR_SPHERE\n");
  return makeProgram("particles", defines + SPHERE_VERTEX,
                     defines + PARTICLE_SOURCE + SPHERE_FRAGMENT + sceneFragment());
}

osg::ref_ptr<osg::Program> makeBallProgram() {
  std::string const defines = replaced(DEFINES, "#version 130\n", "#version 130\n#define ZOR_BALLS\n");
  return makeProgram("particles of triangles", defines + SCENE_VERTEX,
                     defines + PARTICLE_SOURCE + sceneFragment());
}

osg::ref_ptr<osg::Program> makeDepthProgram() {
  return makeProgram("depth", POSITION_VERTEX,
                     R"(#version 120
void main() {}
)");
}

osg::ref_ptr<osg::Program> makeSilhouetteProgram() {
  return makeProgram("silhouette", POSITION_VERTEX,
                     R"(#version 120
void main() { gl_FragColor = vec4(1.0, gl_FragCoord.z, 0.0, 1.0); }
)");
}

osg::ref_ptr<osg::Program> makeTrailProgram() {
  return makeProgram("trails", R"(#version 130
uniform vec2 zor_trailFade; // what is left at the older end of each line, which is its first, and at the newer
varying vec4 color;
void main() {
  gl_Position = ftransform();
  gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;
  color = gl_Color;
  color.a *= (gl_VertexID & 1) == 0 ? zor_trailFade.x : zor_trailFade.y;
}
)",
                     R"(#version 130
varying vec4 color;
void main() { gl_FragColor = color; }
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
