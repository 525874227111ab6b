#include <zorOSG/Trajectories.h>

#include <stdexcept>
#include <string>

#include "FrameTrajectoryDrawable.h"
#include "RigidBodySystemDrawable.h"
#include "scene/Checks.h"
#include "scene/Convert.h"

namespace zorOSG {

namespace {

void requirePositions(char const* function, zor::UInt numPositions) {
  if (numPositions > TrailDrawable::MAX_POSITIONS)
    throw std::invalid_argument(std::string(function) + ": numPositions must be at most " +
                                std::to_string(TrailDrawable::MAX_POSITIONS) + ", but is " +
                                std::to_string(numPositions));
}

osg::Geode* addTrails(osg::ref_ptr<osg::Drawable> const& trails, std::string const& name, osg::Group& root) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->setName(name);
  geode->addDrawable(trails);
  root.addChild(geode);
  return geode.get();
}

} // namespace

osg::Geode* createRigidBodyTrajectoriesVisual(zorSDK::Simulation* simulation, osg::Group* root,
                                              zor::Real sampling, zor::UInt numPositions,
                                              ScalarColorMap* colorMap) {
  if (!(sampling >= 0 && sampling <= 1)) // NaN as well
    throw std::invalid_argument("createRigidBodyTrajectoriesVisual: sampling must be 0 to 1, but is " +
                                std::to_string(sampling));
  requirePositions("createRigidBodyTrajectoriesVisual", numPositions);
  if (!simulation || !root)
    return nullptr;
  return addTrails(new RigidBodySystemDrawable(*simulation, sampling, numPositions, colorMap),
                   "body trajectories", *root);
}

osg::Geode* createFrameTrajectoryDrawable(zorSDK::Simulation* simulation, osg::Group* root,
                                          zor::UInt numPositions, zor::Vec4f const& defaultColor) {
  requirePositions("createFrameTrajectoryDrawable", numPositions);
  requireFinite("createFrameTrajectoryDrawable", "defaultColor", defaultColor);
  if (!simulation || !root)
    return nullptr;
  return addTrails(new FrameTrajectoryDrawable(*simulation, numPositions, toOsg(defaultColor)),
                   "frame trajectories", *root);
}

} // namespace zorOSG
