#pragma once

#include <osg/Callback>

#include <zor/ParticleSystem.h>
#include <zor/ref_ptr.h>

#include "ChangingLines.h"

namespace zorOSG {

/** Draws the contacts of a particle system as lines in the colours of their forces, again after every step.
 */
class ParticleContactGraph : public osg::NodeCallback {
public:
  /** Forces in N: what is drawn blue, and what red. */
  ParticleContactGraph(zor::ParticleSystem& particles, zor::Real minForce, zor::Real maxForce);

  osg::Geometry& geometry() const { return m_lines.geometry(); }

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;

private:
  void write();
  osg::Vec4ub colorOf(zor::Real force) const;

  zor::ref_ptr<zor::ParticleSystem> m_particles;
  zor::Real m_minForce, m_maxForce;
  ChangingLines m_lines;
};

} // namespace zorOSG
