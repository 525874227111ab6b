#pragma once

#include <deque>
#include <unordered_map>

#include <osg/Callback>

#include <zor/ParticleSystem.h>
#include <zor/ref_ptr.h>

#include "ChangingLines.h"
#include "TrailReach.h"

namespace zorOSG {

/** Draws where some particles of a system have been, as lines that fade towards their older ends. */
class ParticleTrails : public osg::NodeCallback {
public:
  /** \param sampling - part of the particles, 0 to 1 \param numPositions - that a trail has at most */
  ParticleTrails(zor::ParticleSystem& particles, zor::Real sampling, zor::UInt numPositions);

  osg::Geometry& geometry() const { return m_lines.geometry(); }

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;

private:
  struct Place {
    osg::Vec3 position;
    bool begins; // was put here
  };

  struct Trail {
    std::deque<Place> places; // newest first
    double speed = 0.0;       // in the newest (m/s)
    zor::UInt round = 0;      // in which it was last added to
  };

  void update();
  void addPositions(TrailReach const& reach);
  void write();
  void writeTrail(Trail const& trail, zor::Vec4f const& color);

  zor::ref_ptr<zor::ParticleSystem> m_particles;
  zor::Real m_sampling;
  zor::UInt m_numPositions;
  std::unordered_map<zor::UInt, Trail> m_trails; // by the particles' numbers; looked up only
  zor::UInt m_round = 0;
  double m_time = -1.0; // of the simulation, at the last position
  ChangingLines m_lines;
};

} // namespace zorOSG
