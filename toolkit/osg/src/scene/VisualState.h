#pragma once

#include <cstdint>
#include <optional>

#include <osg/Material>
#include <osg/Node>
#include <osg/StateSet>
#include <osg/ref_ptr>

#include <zorOSG/Lookup.h>

#include "SharedLook.h"

// State of single nodes. What several nodes share is copied before it is changed, so that an edit of one node
// never shows on another.

namespace zorOSG {

/** The node's state set, made or copied so that no other node has it. */
osg::StateSet& exclusiveState(osg::Node& node);

/** The same for what a user has said of a node; std::invalid_argument for a mesh that visuals share. */
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

/** Turns blending and sorted drawing on for an alpha below 1, else off. */
void setTransparency(osg::StateSet& state, float alpha, bool override);

/** The bits of values that win, after one of them was set. */
std::uint32_t withOverride(std::uint32_t overrides, MaterialValue value, bool override);
/** Remembers them at a material. */
void setOverrides(osg::Material& material, std::uint32_t overrides);

/** Takes the default looks away from everything at and below a node. */
void dropDefaultLooks(osg::Node& node);
/** The same for a node that is known to be a visual, or with null to be none. */
void dropDefaultLooks(osg::Node& node, GeometryNode* visual);

/** The look of a visual that has no state but one that it shares, or none at all; else nothing. */
std::optional<LookValues> sharedLookOf(GeometryNode& visual);

/**
 * Changes what a node looks like. Visuals with no other state share that of equal looks.
 * \param edit - changes a material, or anything that has such values
 * \param alpha - below 1 turns blending and sorted drawing on, else off; nothing leaves them as they are
 */
template <class Edit>
void editLook(osg::Node& node, bool override, MaterialValue value, std::optional<float> alpha,
              Edit const& edit) {
  GeometryNode* const visual = asGeometryNode(&node);
  std::optional<LookValues> look = visual ? sharedLookOf(*visual) : std::nullopt;
  if (!look) {
    edit(ownMaterial(node, override, value));
    if (alpha)
      setTransparency(*node.getStateSet(), *alpha, override);
    return;
  }
  edit(*look);
  look->overrides = withOverride(look->overrides, value, override);
  if (alpha)
    look->blend = *alpha >= 1.0f ? Blend::OFF : override ? Blend::ON_AND_OVERRIDE : Blend::ON;
  SharedLook::give(*visual, *look);
  dropDefaultLooks(node, visual);
}

/** The material of visuals that were given no colour; one object for all of them. */
osg::Material& defaultMaterial();
/** The state sets of default looks. */
SharedLook& defaultLook();
/** As defaultLook(), for planes and landscapes: what rests on the ground stands out from it. */
SharedLook& groundLook();

/** True if a node, or one above it, says how what is below it looks; default looks say nothing. */
bool hasLook(osg::Node const& node);

/** True for a state whose things are drawn sorted, after all others: what lies behind shines through. */
bool isTransparent(osg::StateSet const& state);

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
