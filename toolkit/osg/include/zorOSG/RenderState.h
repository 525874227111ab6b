#pragma once

#include <string>

#include <osg/Group>
#include <osg/Node>
#include <osg/Texture2D>

#include <zor/RigidBody.h>
#include <zor/Vec4.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/TextureData.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/Texture2D.h>

namespace zorOSG {

/** Texture units: which role a texture has for the shaders. */
enum TextureMode : int {
  DIFFUSE_TEXTURE = 0,       ///< Colour.
  SHADOW_TEXTURE = 1,        ///< Shadow map.
  SHADOW_JITTER_TEXTURE = 2, ///< Offsets that soften the edges of shadows.
  NORMALMAP_TEXTURE = 3,     ///< Directions of the surface.
  HEIGHTMAP_TEXTURE = 4,     ///< Heights above the surface.
  ROUGHNESS_TEXTURE = 5,     ///< Roughness.
  CUBEMAP_TEXTURE = 6,       ///< Surroundings that are reflected.
  METALLIC_TEXTURE = 7       ///< How metallic the surface is.
};

// The material setters change the material of the node's own state. A material that is shared with other
// nodes is copied first, so that nodes that share a drawable keep colours of their own. A null node throws
// std::invalid_argument.

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
 * Smooths the normals of every mesh below a node.
 * \param node - the node; null gives 0
 * \param creaseAngle - edges sharper than this stay sharp (radians)
 * \return the number of meshes smoothed
 */
int smoothNormals(osg::Node* node, float creaseAngle = 1.48353f);

} // namespace zorOSG
