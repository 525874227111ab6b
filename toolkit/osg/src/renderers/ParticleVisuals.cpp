#include <zorOSG/ParticleVisuals.h>

#include <stdexcept>
#include <string>

#include "ParticleContactGraph.h"
#include "ParticleTrails.h"
#include "scene/Checks.h"

namespace zorOSG {

namespace {

/** A node with the lines that a callback keeps up to date. */
template <class Lines>
osg::Geode* addLines(osg::ref_ptr<Lines> const& lines, std::string const& name, osg::Group& root) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->setName(name);
  geode->addDrawable(&lines->geometry());
  geode->setUpdateCallback(lines);
  root.addChild(geode);
  return geode.get();
}

} // namespace

osg::Geode* createParticleContactGraph(zor::ParticleSystem* particleSystem, osg::Group* root,
                                       zor::Real minForce, zor::Real maxForce) {
  requireFinite("createParticleContactGraph", "minForce", minForce);
  requireFinite("createParticleContactGraph", "maxForce", maxForce);
  if (minForce < 0 || maxForce <= minForce)
    throw std::invalid_argument("createParticleContactGraph: minForce must not be negative and maxForce must "
                                "be larger, but they are " +
                                std::to_string(minForce) + " and " + std::to_string(maxForce));
  if (!particleSystem || !root)
    return nullptr;
  osg::ref_ptr<ParticleContactGraph> const lines =
      new ParticleContactGraph(*particleSystem, minForce, maxForce);
  return addLines(lines, particleSystem->getName() + " contacts", *root);
}

osg::Geode* createParticleTrajectoriesVisual(zor::ParticleSystem* particleSystem, osg::Group* root,
                                             zor::Real sampling, zor::UInt numPositions) {
  if (!(sampling >= 0 && sampling <= 1)) // NaN as well
    throw std::invalid_argument("createParticleTrajectoriesVisual: sampling must be 0 to 1, but is " +
                                std::to_string(sampling));
  if (!particleSystem || !root)
    return nullptr;
  osg::ref_ptr<ParticleTrails> const trails = new ParticleTrails(*particleSystem, sampling, numPositions);
  return addLines(trails, particleSystem->getName() + " trajectories", *root);
}

} // namespace zorOSG
