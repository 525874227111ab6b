#include <zorOSG/Lookup.h>

#include "Ancestry.h"
#include "SceneIndex.h"
#include "renderers/FrameTrajectoryDrawable.h"
#include "renderers/RigidBodySystemDrawable.h"

namespace zorOSG {

zorOSG::GeometryNode* asGeometryNode(osg::Node* node) {
  return dynamic_cast<GeometryNode*>(node);
}

zorOSG::GeometryNode* findGeometryNode(zorCollide::Geometry const* geometry, osg::Group* root) {
  GeometryNode* node = geometry && root ? firstFollowing(*geometry) : nullptr;
  while (node && !isAtOrBelow(node, root))
    node = nextFollowing(*node);
  return node;
}

zorOSG::GeometryNodePtrVector findGeometryNodes(zorCollide::Geometry const* geometry, osg::Group* root) {
  GeometryNodePtrVector found;
  GeometryNode* node = geometry && root ? firstFollowing(*geometry) : nullptr;
  for (; node; node = nextFollowing(*node))
    if (isAtOrBelow(node, root))
      found.push_back(node);
  return found;
}

zorOSG::ParticleSystemDrawable* findParticleSystemDrawable(osg::Group* root) {
  return findFirstBelow<ParticleSystemDrawable>(root);
}

zorOSG::RigidBodySystemDrawable* findRigidBodySystemDrawable(osg::Group* root) {
  return findFirstBelow<RigidBodySystemDrawable>(root);
}

zorOSG::FrameTrajectoryDrawable* findFrameTrajectoryDrawable(osg::Group* root) {
  return findFirstBelow<FrameTrajectoryDrawable>(root);
}

} // namespace zorOSG
