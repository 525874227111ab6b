#include "SurfaceSource.h"

namespace zorOSG {

char const* const SURFACE_SOURCE = R"(
#ifdef ZOR_GAMMA
uniform float zor_gamma;
vec3 decoded(vec3 color) { return pow(max(color, 0.0), vec3(zor_gamma)); }
vec3 encoded(vec3 color) { return pow(max(color, 0.0), vec3(1.0 / zor_gamma)); }
#else
#define decoded(color) (color)
#define encoded(color) (color)
#endif

#ifdef ROLES
vec2 zorPlace; // texture coordinates as the height map moves them

vec2 placeIn(mat4 scale) { return (scale * vec4(zorPlace, 0.0, 1.0)).st; }
#define COLOR_PLACE placeIn(gl_TextureMatrix[0])
#else
#define COLOR_PLACE zorTexCoord
#endif

#ifdef BENT
// The directions in which texture coordinates grow fastest; the steeper one has length 1 (C. Schueler, "Normal
// mapping without precomputed tangents", ShaderX 5, 2006).
void findSlopes(vec3 normal, vec2 place, out vec3 alongU, out vec3 alongV) {
  vec3 right = dFdx(zorEye), up = dFdy(zorEye);
  vec2 onRight = dFdx(place), onUp = dFdy(place);
  vec3 besideUp = cross(up, normal), besideRight = cross(normal, right);
  alongU = besideUp * onRight.x + besideRight * onUp.x;
  alongV = besideUp * onRight.y + besideRight * onUp.y;
  float steepest = max(dot(alongU, alongU), dot(alongV, alongV));
  float scale = steepest > 0.0 ? inversesqrt(steepest) : 0.0;
  alongU *= scale;
  alongV *= scale;
}
#endif

#ifdef ZOR_HEIGHTMAP
uniform sampler2D zor_heightMap;
uniform float zor_heightScale;
const int STEPS = 20;

// Where the line of sight meets the heights, which lie below the surface: moves zorPlace there.
void meetHeights(vec3 normal, vec3 toEye) {
  vec2 place = placeIn(gl_TextureMatrix[4]);
  vec2 onRight = dFdx(place), onUp = dFdy(place);
  vec3 alongU, alongV;
  findSlopes(normal, place, alongU, alongV);
  float steep = max(dot(toEye, normal), 0.2); // nearly along the surface, everything would smear
  vec2 whole = -vec2(dot(toEye, alongU), dot(toEye, alongV)) * (zor_heightScale / steep);
  float depth = 0.0, before = 0.0, above = 0.0, belowBefore = 0.0;
  for (int i = 0; i <= STEPS; ++i) {
    depth = float(i) / float(STEPS);
    float hollow = 1.0 - textureGrad(zor_heightMap, place + whole * depth, onRight, onUp).r;
    above = depth - hollow; // positive once the line has gone below
    if (above >= 0.0)
      break;
    before = depth;
    belowBefore = above;
  }
  float part = above - belowBefore > 0.0 ? -belowBefore / (above - belowBefore) : 1.0;
  vec2 moved = whole * mix(before, depth, clamp(part, 0.0, 1.0));
  zorPlace += moved / vec2(gl_TextureMatrix[4][0][0], gl_TextureMatrix[4][1][1]);
}

#ifndef ZOR_NORMALMAP
vec3 normalOfHeights(vec3 normal) {
  vec2 place = placeIn(gl_TextureMatrix[4]);
  vec2 size = vec2(textureSize(zor_heightMap, 0));
  vec3 alongU, alongV;
  findSlopes(normal, place, alongU, alongV);
  vec2 u = vec2(1.0 / size.x, 0.0), v = vec2(0.0, 1.0 / size.y);
  vec2 rise = vec2(texture2D(zor_heightMap, place + u).r - texture2D(zor_heightMap, place - u).r,
                   texture2D(zor_heightMap, place + v).r - texture2D(zor_heightMap, place - v).r);
  rise *= 0.5 * size * zor_heightScale;
  return normalize(normal - rise.x * alongU - rise.y * alongV);
}
#endif
#endif

#ifdef ZOR_NORMALMAP
uniform sampler2D zor_normalMap;

vec3 normalOfMap(vec3 normal) {
  vec2 place = placeIn(gl_TextureMatrix[3]);
  vec3 alongU, alongV;
  findSlopes(normal, place, alongU, alongV);
  vec3 bent = texture2D(zor_normalMap, place).xyz * (255.0 / 127.0) - (128.0 / 127.0); // 128 is straight
  vec3 found = bent.x * alongU + bent.y * alongV + max(bent.z, 0.0) * normal;
  return dot(found, found) > 0.0 ? normalize(found) : normal;
}
#endif

#ifdef ZOR_STOREDSHADOW
uniform sampler2D zor_storedShadow;
float storedLight() { return texture2D(zor_storedShadow, placeIn(gl_TextureMatrix[1])).r; }
#endif
)";

char const* const REFLECTION_SOURCE = R"(
#ifdef ZOR_SURROUNDINGS
#if ZOR_SURROUNDINGS != 2
uniform samplerCube zor_surroundings;
uniform mat4 zor_eyeToScene;

vec3 cubePlace(vec3 direction) {
  return (mat3(gl_TextureMatrix[6]) * (mat3(zor_eyeToScene) * direction)).xzy; // y points up, z ahead
}
#endif
#if ZOR_SURROUNDINGS == 3
// Smaller images are what rougher surfaces see. The number of the one for 0.25 rough:
float quarterRough() { return ceil(log2(float(textureSize(zor_surroundings, 0).x) / 128.0) - 0.001); }

vec3 surroundings(vec3 direction, float roughness) {
  float steps = 4.0 * roughness;
  float level = steps < 1.0 ? steps * quarterRough() : quarterRough() + steps - 1.0;
  return decoded(textureLod(zor_surroundings, cubePlace(direction), level).rgb);
}

// What falls on a dull surface, in parts of the mean from all sides: ambient light keeps its strength, which belongs
// to the lights of the scene, and gets a direction.
vec3 tintAround(vec3 normal) {
  vec3 place = cubePlace(normal);
  float level = quarterRough() + 4.0;
  vec3 here = decoded(textureLod(zor_surroundings, place, level).rgb);
  vec3 behind = decoded(textureLod(zor_surroundings, -place, level).rgb);
  return here / max(dot(here + behind, vec3(0.5 / 3.0)), 0.001);
}
#elif ZOR_SURROUNDINGS == 1

// What lies in a direction, blurred as much as a rough mirror does. Four places make up for coarse texels.
vec3 surroundings(vec3 direction, float roughness) {
  vec3 toward = cubePlace(direction);
  float side = float(textureSize(zor_surroundings, 0).x);
  float spread = roughness * roughness;
  if (spread * side < 1.0)
    return decoded(textureLod(zor_surroundings, toward, 0.0).rgb);
  float level = log2(0.6 * spread * side);
  vec3 aside = normalize(cross(toward, abs(toward.z) < 0.9 ? vec3(0.0, 0.0, 1.0) : vec3(1.0, 0.0, 0.0)));
  vec3 other = cross(toward, aside);
  float reach = 0.5 * spread;
  vec3 sum = textureLod(zor_surroundings, toward + aside * reach, level).rgb;
  sum += textureLod(zor_surroundings, toward - aside * reach, level).rgb;
  sum += textureLod(zor_surroundings, toward + other * reach, level).rgb;
  sum += textureLod(zor_surroundings, toward - other * reach, level).rgb;
  return decoded(0.25 * sum);
}
#else
uniform sampler2D zor_surroundings;

// The image of a mirror ball, seen from the eye, as the fixed pipeline's sphere maps.
vec3 surroundings(vec3 direction, float roughness) {
  vec3 halfway = direction + vec3(0.0, 0.0, 1.0);
  vec2 place = halfway.xy / max(2.0 * length(halfway), 1.0e-4) + 0.5;
  float side = float(textureSize(zor_surroundings, 0).x);
  return decoded(textureLod(zor_surroundings, place, log2(max(0.3 * roughness * roughness * side, 1.0))).rgb);
}
#endif

#ifdef ZOR_REFLECTION
uniform float zor_reflection;
#elif defined(PHYSICAL)
const float zor_reflection = 1.0;
#else
const float zor_reflection = 0.5;
#endif
#endif

#ifdef PHYSICAL
#ifdef ZOR_METALLIC
uniform float zor_metallic;
#elif defined(ZOR_METALLICMAP)
const float zor_metallic = 1.0;
#else
const float zor_metallic = 0.0;
#endif
#ifdef ZOR_ROUGHNESS
uniform float zor_roughness;
#elif defined(ZOR_ROUGHNESSMAP)
const float zor_roughness = 1.0;
#else
const float zor_roughness = 0.5;
#endif
#ifdef ZOR_METALLICMAP
uniform sampler2D zor_metallicMap;
#endif
#ifdef ZOR_ROUGHNESSMAP
uniform sampler2D zor_roughnessMap;
#endif

// A surface of small mirrors that face different ways.
struct Mirrors {
  float metallic;
  float roughness;
  vec3 straight; // what is reflected of light that comes straight on
};

Mirrors findMirrors(vec3 baseColor) {
  Mirrors found;
  found.metallic = zor_metallic;
  found.roughness = zor_roughness;
#ifdef ZOR_METALLICMAP
  found.metallic *= texture2D(zor_metallicMap, placeIn(gl_TextureMatrix[7])).r;
#endif
#ifdef ZOR_ROUGHNESSMAP
  found.roughness *= texture2D(zor_roughnessMap, placeIn(gl_TextureMatrix[5])).r;
#endif
  found.straight = mix(vec3(0.04), baseColor, found.metallic);
  return found;
}

// Adds what a light gives, without the base colour in diffuse. How many mirrors face halfway: B. Walter et al.,
// "Microfacet models for refraction through rough surfaces", 2007, equation 33. How many see both light and
// eye: E. Heitz, "Understanding the masking-shadowing function in microfacet-based BRDFs", 2014. How much each
// reflects: C. Schlick, "An inexpensive BRDF model for physically-based rendering", 1994. Roughness is squared
// as by B. Burley, "Physically-based shading at Disney", 2012.
void addLight(Mirrors mirrors, vec3 normal, vec3 toEye, vec3 toLight, vec3 light, inout vec3 diffuse, inout vec3 specular) {
  float facing = dot(normal, toLight);
  if (facing <= 0.0)
    return;
  vec3 halfway = normalize(toLight + toEye);
  float eye = max(dot(normal, toEye), 0.001);
  float middle = clamp(dot(normal, halfway), 0.0, 1.0);
  float width = max(mirrors.roughness * mirrors.roughness, 0.02); // lights are no points
  float square = width * width;
  float away = middle * middle * (square - 1.0) + 1.0;
  float facingHalfway = square / (away * away);
  float seen = 0.5 / (facing * sqrt(eye * eye * (1.0 - square) + square) +
                      eye * sqrt(facing * facing * (1.0 - square) + square));
  float slanting = pow(1.0 - clamp(dot(toEye, halfway), 0.0, 1.0), 5.0);
  vec3 reflected = mirrors.straight + (1.0 - mirrors.straight) * slanting;
  specular += light * (facing * facingHalfway * seen) * reflected;
  diffuse += light * facing * (1.0 - reflected);
}

// How much of surroundings that are alike everywhere is reflected (B. Karis, "Physically based shading on
// mobile", 2014).
vec3 reflectedOfAll(Mirrors mirrors, float eye) {
  vec4 r = mirrors.roughness * vec4(-1.0, -0.0275, -0.572, 0.022) + vec4(1.0, 0.0425, 1.04, -0.04);
  float bend = min(r.x * r.x, exp2(-9.28 * eye)) * r.x + r.y;
  vec2 parts = vec2(-1.04, 1.04) * bend + r.zw;
  return mirrors.straight * parts.x + parts.y;
}
#endif
)";

} // namespace zorOSG
