#pragma once

#include "shaders/ScenePrograms.h"

#include <osg/BoundingSphere>
#include <osg/LightSource>
#include <osg/StateSet>
#include <osg/ref_ptr>

#include <array>

namespace osgUtil {
class CullVisitor;
}

namespace zorOSG {

/** The decorator's three lights: a key light from the upper left, a fill from the right and one from behind.
 */
class LightRig {
public:
  LightRig();

  /** Gives all lights their first colours and directions. */
  void reset();

  /** \param mask - bit i for light i */
  void setEnabled(int mask) { m_enabled = mask; }
  bool isEnabled(unsigned int index) const { return (m_enabled >> index & 1) != 0; }

  osg::LightSource& source(unsigned int index) const { return *m_sources[index]; }

  void setPlaced(unsigned int index, bool placed) { m_placed[index] = placed; }
  bool isPlaced(unsigned int index) const { return m_placed[index]; }

  /** Puts the lights that are to be placed around a sphere, in the directions they have by default. */
  void place(osg::BoundingSphered const& bound);

  /** Tells the shader and the fixed pipeline which lights there are; cheap if nothing has changed. */
  void apply(osg::StateSet& state) const;

  /** Adds the lights to the view that is being culled. */
  void cull(osgUtil::CullVisitor& visitor) const;

private:
  std::array<osg::ref_ptr<osg::LightSource>, LIGHT_COUNT> m_sources;
  std::array<bool, LIGHT_COUNT> m_placed{};
  int m_enabled = 0;
};

} // namespace zorOSG
