#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include <osg/Drawable>
#include <osg/ref_ptr>

#include <zor/Types.h>
#include <zor/observer_ptr.h>
#include <zorSDK/Simulation.h>

#include "TrailLayer.h"
#include "TrailReach.h"
#include "application/Conversion.h"

namespace zorOSG {

/**
 * Paths of what moves in a simulation, as lines that fade towards their older ends. Base class: derived ones
 * say what moves.
 *
 * The lines are kept in a ring of layers, one for each step, with one piece of every path. So a step writes a
 * single layer, however long the paths are, and allocates nothing once the ring is full.
 */
class TrailDrawable : public osg::Drawable {
public:
  /** Most positions of a path: each is a draw call. */
  static constexpr zor::UInt MAX_POSITIONS = 10000;

  void drawImplementation(osg::RenderInfo& renderInfo) const override;
  osg::BoundingBox computeBoundingBox() const override { return m_box; }
  void releaseGLObjects(osg::State* state = nullptr) const override;
  void resizeGLObjectBuffers(unsigned int size) override;

  /** Adds a position to every path if the simulation has made a step since the last one. */
  void update();

protected:
  /** The end of a path. */
  struct Head {
    osg::Vec3 position;
    bool valid = false; // has a position
    double speed = 0.0; // there (m/s)
  };

  /** \param numPositions - that a path has at most; less than two draws nothing */
  TrailDrawable(zorSDK::Simulation& simulation, zor::UInt numPositions);
  ~TrailDrawable() override = default;

  /** Calls moveTo() for everything in the simulation that leaves a path. */
  virtual void addPositions(zorSDK::Simulation const& simulation) = 0;
  /** Takes the ends of all paths away. */
  virtual void forgetHeads() = 0;

  /** Goes on with a path; a position that is not finite ends it. \param color - of the new piece */
  void moveTo(Head& head, zor::Vec3 const& position, osg::Vec4 const& color);

  /**
   * Ends a path if what leaves it was put somewhere else.
   * \param speed - in the new position
   * \param radiusOf - gives its radius, which is only asked for where it matters
   */
  template <class RadiusOf>
  void endIfPut(Head& head, zor::Vec3 const& position, double speed, RadiusOf const& radiusOf) const {
    double const fastest = std::isfinite(speed) ? std::max(speed, head.speed) : head.speed;
    double const distance = (position - fromOsg(head.position)).length();
    if (head.valid && distance > m_reach.of(fastest, 0.0) && distance > m_reach.of(fastest, radiusOf()))
      head.valid = false;
    head.speed = std::isfinite(speed) ? speed : 0.0;
  }

private:
  TrailLayer& nextLayer();
  void clear();

  zor::observer_ptr<zorSDK::Simulation> m_simulation;
  size_t m_numLayers;
  double m_time = -1.0; // of the simulation, at the last position
  TrailReach m_reach;
  std::vector<osg::ref_ptr<TrailLayer>> m_layers;
  size_t m_newest = 0;
  osg::BoundingBox m_box;
};

} // namespace zorOSG
