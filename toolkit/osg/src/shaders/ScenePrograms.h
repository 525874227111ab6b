#pragma once

#include <osg/Program>
#include <osg/ref_ptr>

#include <string>

// The shader programs of the scene decorator: GLSL 1.20, so that they run on the compatibility profile of
// every driver. State of the fixed pipeline reaches the scene's program as built-in uniforms and, where those
// leave out what they depend on, as the defines named here.

namespace zorOSG {

namespace define {

/** Drawn in the colours of the vertices, without light. */
inline std::string const UNLIT = "ZOR_UNLIT";
/** There is a texture on unit 0. */
inline std::string const TEXTURE = "ZOR_TEXTURE";
/** The colours of the vertices take the place of the material's diffuse colour. */
inline std::string const VERTEX_COLOR = "ZOR_VERTEXCOLOR";
/** There are no normals: faces are lit as flat. */
inline std::string const FLAT = "ZOR_FLAT";
/** No shadow falls here. */
inline std::string const UNSHADOWED = "ZOR_UNSHADOWED";
/** Colours are decoded and encoded for a monitor; `zor_gamma` is its exponent. */
inline std::string const GAMMA = "ZOR_GAMMA";
/** Values of a surface that is drawn by its physics: `zor_metallic`, `zor_roughness`. */
inline std::string const METALLIC = "ZOR_METALLIC";
inline std::string const ROUGHNESS = "ZOR_ROUGHNESS";
/** How much of the surroundings is reflected: `zor_reflection`. */
inline std::string const REFLECTION = "ZOR_REFLECTION";
/** Textures by their roles. */
inline std::string const STORED_SHADOW = "ZOR_STOREDSHADOW";
inline std::string const JITTER = "ZOR_JITTER";
inline std::string const NORMAL_MAP = "ZOR_NORMALMAP";
inline std::string const HEIGHT_MAP = "ZOR_HEIGHTMAP";
inline std::string const ROUGHNESS_MAP = "ZOR_ROUGHNESSMAP";
inline std::string const METALLIC_MAP = "ZOR_METALLICMAP";
/** There are surroundings to reflect; its values follow. */
inline std::string const SURROUNDINGS = "ZOR_SURROUNDINGS";
inline std::string const CUBE = "1";
inline std::string const MIRROR_BALL = "2";
inline std::string const FILTERED_CUBE = "3"; ///< smaller images are what rougher surfaces see
/** There are shadows; the value is the number of the light that casts them. */
inline std::string const SHADOW = "ZOR_SHADOW";
/** What the shadows of that light come from; its values follow. */
inline std::string const SHADOW_KIND = "ZOR_SHADOWKIND";
inline std::string const SHARP_MAP = "1";
inline std::string const SOFT_MAP = "2";
inline std::string const SPLIT_MAP = "3";
inline std::string const SILHOUETTES = "4";
inline std::string const IN_SHADOW = "5"; ///< all that is drawn lies in the shadow
inline std::string const WARPED_MAP = "6";

/** What a light needs of the shader; the value of its define. */
enum class LightKind { DIRECTIONAL = 1, POSITIONAL = 2, ATTENUATED = 3, SPOT = 4, ANY = 5 };

/** \return name of the define of a light that is on */
inline std::string light(unsigned int index) {
  return "ZOR_LIGHT" + std::to_string(index);
}

/** \return name of the define of a light of the decorator that is switched off for a node */
inline std::string lightOff(unsigned int index) {
  return "ZOR_NOLIGHT" + std::to_string(index);
}

/** \return name of the define of a light with highlights */
inline std::string specular(unsigned int index) {
  return "ZOR_SPECULAR" + std::to_string(index);
}

} // namespace define

/** Number of lights of the scene decorator. */
constexpr unsigned int LIGHT_COUNT = 3;

/** Number of lights that OpenGL and the scene's program know; what they are is found out as they are drawn.
 */
constexpr unsigned int ALL_LIGHTS = 8;

/** Texture unit of the shadow map; above those of the texture roles. */
constexpr unsigned int SHADOW_UNIT = 8;

/** \return program that lights the scene per pixel, with shadows where a map is bound */
osg::ref_ptr<osg::Program> makeSceneProgram();

/** \return as makeSceneProgram(), for quads and points that stand for spheres */
osg::ref_ptr<osg::Program> makeParticleProgram();

/** \return as makeSceneProgram(), for particles that are spheres of triangles */
osg::ref_ptr<osg::Program> makeBallProgram();

/** \return program that writes nothing but depth */
osg::ref_ptr<osg::Program> makeDepthProgram();

/** \return program that writes 1 and the depth as red and green */
osg::ref_ptr<osg::Program> makeSilhouetteProgram();

/** \return program that draws lines in the colours of their vertices, and lets them fade */
osg::ref_ptr<osg::Program> makeTrailProgram();

/** \return program that draws vertices in normalized device coordinates in their colours, dithered */
osg::ref_ptr<osg::Program> makeBackgroundProgram();

} // namespace zorOSG
