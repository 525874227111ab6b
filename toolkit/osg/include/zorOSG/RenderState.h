#pragma once

#include <string>

#include <osg/Group>
#include <osg/Image>
#include <osg/Node>
#include <osg/Texture2D>
#include <osg/TextureCubeMap>
#include <osg/ref_ptr>

#include <zor/RigidBody.h>
#include <zor/Vec4.h>
#include <zor/Vector.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/TextureData.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/Texture2D.h>
#include <zorRender/Color.h>

namespace zorOSG {

/** Texture units: which role a texture has for the shaders. */
enum TextureMode : int {
  DIFFUSE_TEXTURE = 0,       ///< Colour.
  SHADOW_TEXTURE = 1,        ///< Stored shadows: the part of the shadow light that arrives (red).
  SHADOW_JITTER_TEXTURE = 2, ///< Noise that moves the edges of shadows, a pixel of it a pixel of the view.
  NORMALMAP_TEXTURE = 3,     ///< Directions of the surface: red along the first texture coordinate, green
                             ///< along the second, blue outwards.
  HEIGHTMAP_TEXTURE = 4,     ///< Heights (red): 1 lies on the surface, 0 deepest below it.
  ROUGHNESS_TEXTURE = 5,     ///< Roughness (red), times what setRoughness says.
  CUBEMAP_TEXTURE = 6,       ///< Surroundings that are reflected: a cube map, or an image of a mirror ball.
  METALLIC_TEXTURE = 7       ///< How metallic the surface is (red), times what setMetallic says.
};

// The material setters change what one node looks like, and no other: nodes that share a drawable keep
// colours of their own. A node without a material gets one that looks as the node did, taken from the nodes
// above. Visuals of one look share its state set; see SharedState.h before you change one in C++. A null node
// throws std::invalid_argument.
//
// What is said to be for the shader pipeline needs a scene decorator whose shaders are on, as the
// application's is; the fixed pipeline leaves it out.

/**
 * Sets the diffuse colour of a node's material; a node without a material gets one.
 * \param node - the node to colour
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param override - true to win over materials further down in the scene graph
 */
void setDiffuseColor(osg::Node* node, zor::Vec4f const& color, bool override = false);

/**
 * Sets the diffuse colour of every geometry of a body that has a geometry node under a group.
 * \param body - the body
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param root - the group to search below
 */
void setDiffuseColor(zor::RigidBody* body, zor::Vec4f const& color, osg::Group* root);

/**
 * Sets the diffuse colour of a geometry's nodes; ignored if it has none under the group.
 * \param geometry - the geometry
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param root - the group to search below
 */
void setDiffuseColor(zorCollide::Geometry* geometry, zor::Vec4f const& color, osg::Group* root);

/**
 * Sets the ambient colour of a node's material.
 * \param node - the node
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param override - true to win over materials further down in the scene graph
 */
void setAmbientColor(osg::Node* node, zor::Vec4f const& color, bool override = false);

/**
 * Sets the colour of a node's highlights.
 * \param node - the node
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param override - true to win over materials further down in the scene graph
 */
void setSpecularColor(osg::Node* node, zor::Vec4f const& color, bool override = false);

/**
 * Sets the Phong exponent of a node's highlights.
 * \param node - the node
 * \param shininess - exponent, limited to [0, 128]; NaN throws std::invalid_argument
 * \param override - true to win over materials further down in the scene graph
 */
void setShininess(osg::Node* node, float shininess, bool override = false);

/**
 * Sets the opacity of a node. Less than 1 also turns on blending and sorted drawing.
 * \param node - the node
 * \param alpha - 0 fully transparent to 1 opaque, limited to that range; NaN throws std::invalid_argument
 * \param override - true to win over materials further down in the scene graph
 */
void setAlpha(osg::Node* node, float alpha, bool override = false);

/**
 * Makes light add up as it does in nature: colours and images count as shown by a monitor whose brightness is
 * the colour's value to the power of gamma. Meant for the root of the scene; for the shader pipeline.
 * \param node - the node
 * \param gamma - exponent of the monitor, 0.1 to 10, usually 2.2; 1 adds colour values as they are
 * \param override - true to win over values further down in the scene graph
 * \throws std::invalid_argument if gamma is not in its range
 */
void setGamma(osg::Node* node, float gamma, bool override = false);

/**
 * Sets how metallic a node is. The node is then drawn by its physics (see setRoughness): metals have no
 * colour but that of what they reflect. For the shader pipeline.
 * \param node - the node
 * \param metallic - 0 not metallic to 1 metal, limited to that range; NaN throws std::invalid_argument
 * \param override - true to win over values further down in the scene graph
 */
void setMetallic(osg::Node* node, float metallic, bool override = false);

/**
 * Sets how rough a node is. The shader pipeline then draws it as a surface of small mirrors that face
 * different ways, lit by the diffuse colours of lights and by the cube map, which also says from which side
 * ambient light comes; the diffuse colour is its base
 * colour, and specular colour and shininess have no part in it. The fixed pipeline gets the Phong exponent
 * that is most like it.
 * \param node - the node
 * \param roughness - 0 a mirror to 1 dull, limited to that range; NaN throws std::invalid_argument
 * \param override - true to win over values further down in the scene graph
 */
void setRoughness(osg::Node* node, float roughness, bool override = false);

/**
 * Sets how much of a cube map or sphere map a node reflects; without it, half. A node with metallic or
 * roughness reflects by its physics: there it is the brightness of the surroundings, 1 without it. For the
 * shader pipeline.
 * \param node - the node
 * \param coefficient - 0 none to 1 only reflection, limited to that range; NaN throws std::invalid_argument
 */
void setEnvMapReflectionCoefficient(osg::Node* node, float coefficient);

/**
 * Reads an image and draws it on the nodes of a geometry, over any texture further down.
 * \param geometry - the geometry, which must have a node below rootNode
 * \param rootNode - the group to search below
 * \param imagePath - image file, looked up on the resource path
 * \param repeat - true to repeat the image, false to stretch its edge
 * \param mode - the texture's role
 * \return false if the image cannot be read or the geometry has no node; the log says which
 */
bool setTexture(zorCollide::Geometry const* geometry, osg::Group* rootNode, std::string const& imagePath,
                bool repeat = false, zorOSG::TextureMode mode = zorOSG::DIFFUSE_TEXTURE);

/**
 * Reads an image and draws it on the nodes of every geometry of a body, over any texture further down.
 * \param rigidBody - the body
 * \param rootNode - the group to search below
 * \param imagePath - image file, looked up on the resource path
 * \param repeat - true to repeat the image, false to stretch its edge
 * \param mode - the texture's role
 * \return false if the image cannot be read or no geometry has a node; the log says which
 */
bool setTexture(zor::RigidBody const* rigidBody, osg::Group* rootNode, std::string const& imagePath,
                bool repeat = false, zorOSG::TextureMode mode = zorOSG::DIFFUSE_TEXTURE);

/**
 * Reads an image and draws it on a node.
 * \param node - the node
 * \param imagePath - image file, looked up on the resource path
 * \param repeat - true to repeat the image, false to stretch its edge
 * \param mode - the texture's role
 * \param scaleU - repetitions along the first texture coordinate
 * \param scaleV - repetitions along the second texture coordinate
 * \return false if the image cannot be read
 */
bool setTexture(osg::Node* node, std::string const& imagePath, bool repeat = false,
                zorOSG::TextureMode mode = zorOSG::DIFFUSE_TEXTURE, float scaleU = 1.0f, float scaleV = 1.0f);

/**
 * Draws texture data of the collision library on a node.
 * \param node - the node
 * \param texture - the pixels, or the name of their file, looked up on the resource path; null gives false
 * \param repeat - true to repeat the image, false to stretch its edge
 * \param mode - the texture's role
 * \param scaleU - repetitions along the first texture coordinate
 * \param scaleV - repetitions along the second texture coordinate
 * \return false if the image cannot be read
 */
bool setTexture(osg::Node* node, zorCollide::TextureDataRef const texture, bool repeat = false,
                zorOSG::TextureMode mode = zorOSG::DIFFUSE_TEXTURE, float scaleU = 1.0f, float scaleV = 1.0f);

/**
 * Draws a texture on a node.
 * \param node - the node
 * \param texture - the texture; null gives false
 * \param repeat - true to repeat the image, false to stretch its edge
 * \param mode - the texture's role
 * \param scaleU - repetitions along the first texture coordinate
 * \param scaleV - repetitions along the second texture coordinate
 * \return true if the texture was set
 */
bool setTexture(osg::Node* node, osg::Texture2D* texture, bool repeat = false,
                zorOSG::TextureMode mode = zorOSG::DIFFUSE_TEXTURE, float scaleU = 1.0f, float scaleV = 1.0f);

/**
 * Draws a texture on a node.
 * \param node - the node
 * \param texture - the texture; null gives false
 * \param repeat - true to repeat the image, false to stretch its edge
 * \param mode - the texture's role
 * \param scaleU - repetitions along the first texture coordinate
 * \param scaleV - repetitions along the second texture coordinate
 * \return true if the texture was set
 */
bool setTexture(osg::Node* node, zorOSG::Texture2D* texture, bool repeat = false,
                zorOSG::TextureMode mode = zorOSG::DIFFUSE_TEXTURE, float scaleU = 1.0f, float scaleV = 1.0f);

/**
 * Draws a texture on a geometry node.
 * \param node - the node
 * \param texture - the texture; null gives false
 * \param repeat - true to repeat the image, false to stretch its edge
 * \param mode - the texture's role
 * \param scaleU - repetitions along the first texture coordinate
 * \param scaleV - repetitions along the second texture coordinate
 * \return true if the texture was set
 */
bool setTexture(zorOSG::GeometryNode* node, zorOSG::Texture2D* texture, bool repeat = false,
                zorOSG::TextureMode mode = zorOSG::DIFFUSE_TEXTURE, float scaleU = 1.0f, float scaleV = 1.0f);

/**
 * Creates a texture from an image file.
 * \param filename - image file, looked up on the resource path
 * \return a new texture, or null if the image cannot be read
 */
osg::Texture2D* createTexture(std::string const& filename);

/**
 * Creates a texture from texture data of the collision library.
 * \param data - the pixels, or the name of their file, looked up on the resource path
 * \param linear - true to blend neighbouring pixels, false to show them as squares
 * \return a new texture, or null if the data is null or its image cannot be read
 */
osg::Texture2D* createTexture(zorCollide::TextureDataRef data, bool linear);

/**
 * Creates a cube map from images.
 * \param images - six square images of one size, as a camera in the middle with a field of view of 90 by 90
 * degrees takes them, in the order +x, -x, +y, -y, +z, -z of cube maps. Their axes point to the right, up and
 * ahead: +x is the scene's +x, +y lies above, +z is the scene's +y. The lower edge of the image above and the
 * upper edge of the one below adjoin the one ahead. An osg::TexMat on unit 6 turns what a node reflects. What
 * rough and dull surfaces see of the images is computed here, once: pixels that change later show in mirrors
 * only.
 * \return a new texture; null if the images will not do, and the log says why
 */
osg::TextureCubeMap* createTextureCubeMap(zor::Vector<osg::ref_ptr<osg::Image>>& images);

/**
 * Creates a cube map from image files: imagename with "_posx", "_negx", "_posy", "_negy", "_posz", "_negz"
 * and the file type.
 * \param imagename - what the file names have in common, looked up on the resource path
 * \param filetype - such as ".dds" or ".png", with or without the dot
 * \return a new texture; null if a file is missing or will not do, and the log says which
 */
osg::TextureCubeMap* createTextureCubeMap(std::string const& imagename, std::string const& filetype);

/**
 * Reads the six images of a cube map, named as createTextureCubeMap has them.
 * \param prefix - what the file names have in common, looked up on the resource path
 * \param filetype - such as ".dds" or ".png", with or without the dot
 * \param images - gets the images in the order +x, -x, +y, -y, +z, -z; emptied if one cannot be read
 * \return true if all six were read and fit together; else the log says which did not
 */
bool loadCubeMapImages(std::string const& prefix, std::string const& filetype,
                       zor::Vector<osg::ref_ptr<osg::Image>>& images);

/**
 * Has a node reflect a cube map, of the files posx, negx, posy, negy, posz and negz in a folder. For the
 * shader pipeline.
 * \param node - the node
 * \param imagePath - folder of the files, looked up on the resource path
 * \param imageType - such as ".dds" or ".png", with or without the dot
 * \return true if all six were read and the cube map assigned; else the log says which were not
 */
bool setCubeMapTexture(osg::Node* node, std::string const& imagePath, std::string const& imageType = ".dds");

/**
 * Switches a light on or off for a node and what is below it.
 * \param enable - true for on; lights of the scene decorator that are off for the whole scene stay off
 * \param lightNum - number of the OpenGL light, 0 to 7; the scene decorator's are 0 to 2
 * \param node - the node
 * \throws std::invalid_argument if there is no such light, or the node is null
 */
void setEnableLight(bool enable, int lightNum, osg::Node* node);

/**
 * Draws everything below a node as lines, or filled again.
 * \param node - the node; null gives false
 * \param flag - true for lines
 * \return whether the node is drawn as lines now
 */
bool setEnableWireFrameMode(osg::Node* node, bool flag);

/**
 * Switches between lines and filled faces.
 * \param node - the node; null gives false
 * \return whether the node is drawn as lines now
 */
bool toggleWireFrameMode(osg::Node* node);

/**
 * Draws everything below a node as lines, whatever nodes further down say.
 * \param node - the node; null gives false
 * \return whether the node is drawn as lines now
 */
bool forceWireFrameModeOn(osg::Node* node);

/**
 * Draws a line around what a node shows, wherever nothing hides it. A node that has one gets the new colour
 * and width. Labels and what else casts no shadow have no part in it.
 * \param node - the node; null gives false
 * \param enabled - true to draw the line, false to take it away
 * \param color - colour of the line; an alpha below 1 lets through what is behind it
 * \param width - its width (pixels), 0 to 100
 * \return whether the node has an outline now
 * \throws std::invalid_argument if the width is not in its range or the colour not finite
 */
bool setEnableOutline(osg::Node* node, bool enabled,
                      zorRender::Color const& color = zorRender::Color(1.0f, 1.0f, 0.0f, 1.0f),
                      float width = 2.0f);

/**
 * \param node - the node; null gives false
 * \return true if it has an outline of its own
 */
bool getEnableOutline(osg::Node* node);

} // namespace zorOSG
