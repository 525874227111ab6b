#pragma once

#include <osg/Material>
#include <osg/Node>
#include <osg/StateSet>
#include <osg/ref_ptr>

// State of single nodes. What several nodes share is copied before it is changed, so that an edit of one node
// never shows on another.

namespace zorOSG {

/** The node's state set, made or copied so that no other node has it. */
osg::StateSet& ownState(osg::Node& node);

/** The values of a material; each may be set to win over materials further down. */
enum class MaterialValue { NONE = 0, DIFFUSE = 1, AMBIENT = 2, SPECULAR = 4, SHININESS = 8, ALPHA = 16 };

/**
 * The material of the node's own state set, made or copied so that nothing else has it. A new one starts with
 * the look that the node has from above. Default looks further down are dropped, else they would hide it.
 * \param value - what is about to be set
 * \param override - whether it shall win over materials further down; a material does as long as one of its
 * values shall
 */
osg::Material& ownMaterial(osg::Node& node, bool override, MaterialValue value = MaterialValue::NONE);

/** The material of visuals that were given no colour; one object for all of them. */
osg::Material& defaultMaterial();
/** State sets with nothing but a default look, for GeometryNode::setDefaultLook. */
osg::StateSet& defaultLook();
/** As defaultLook(), for planes and landscapes: what rests on the ground stands out from it. */
osg::StateSet& groundLook();

/** True if a node, or one above it, says how what is below it looks; default looks say nothing. */
bool hasLook(osg::Node const& node);

/** True for a state whose things are drawn sorted, after all others: what lies behind shines through. */
bool isTransparent(osg::StateSet const& state);

/** Turns blending and sorted drawing on for an alpha below 1, else off. */
void setTransparency(osg::StateSet& state, float alpha, bool override);

/** ON, or ON and winning over nodes further down. */
osg::StateAttribute::GLModeValue onValue(bool override);

/** Labels: no light, and no shadow on or of them. */
void drawWithoutLight(osg::Node& node);

/** Lines: drawn in the colours of their vertices, whatever shading the scene has. */
void drawWithVertexColors(osg::Node& node);

/** Node mask bit of what casts shadows. */
constexpr osg::Node::NodeMask castsShadowsMask = 64;
/** Node mask bit of what shadows fall on. */
constexpr osg::Node::NodeMask receivesShadowsMask = 128;

} // namespace zorOSG
