#pragma once

#include <cstddef>
#include <vector>

#include <osg/Drawable>
#include <osg/ref_ptr>

#include <zor/Types.h>
#include <zor/observer_ptr.h>
#include <zorSDK/Simulation.h>

#include "TrailLayer.h"

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

private:
  TrailLayer& nextLayer();
  void clear();

  zor::observer_ptr<zorSDK::Simulation> m_simulation;
  size_t m_numLayers;
  double m_time = -1.0; // of the simulation, at the last position
  std::vector<osg::ref_ptr<TrailLayer>> m_layers;
  size_t m_newest = 0;
  osg::BoundingBox m_box;
};

} // namespace zorOSG
