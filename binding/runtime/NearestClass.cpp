#include "runtime/NearestClass.h"

#include <osg/AutoTransform>
#include <osg/Billboard>
#include <osg/Camera>
#include <osg/ClipNode>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Image>
#include <osg/LOD>
#include <osg/LightSource>
#include <osg/MatrixTransform>
#include <osg/NodeVisitor>
#include <osg/PositionAttitudeTransform>
#include <osg/ShapeDrawable>
#include <osg/Switch>
#include <osg/Texture2D>
#include <osg/TextureCubeMap>

namespace zorBinding {
namespace {

template <class Class>
void* as(osg::Object& object) {
  return dynamic_cast<Class*>(&object);
}

struct Candidate {
  char const* name;
  void* (*as)(osg::Object& object);
};

#define CANDIDATE(CLASS) {"osg::" #CLASS, &as<osg::CLASS>}

// Derived classes before their bases.
Candidate const CANDIDATES[] = {
    CANDIDATE(Camera),        CANDIDATE(MatrixTransform), CANDIDATE(PositionAttitudeTransform),
    CANDIDATE(AutoTransform), CANDIDATE(Transform),       CANDIDATE(Switch),
    CANDIDATE(LOD),           CANDIDATE(Billboard),       CANDIDATE(Geode),
    CANDIDATE(ClipNode),      CANDIDATE(LightSource),     CANDIDATE(Group),
    CANDIDATE(ShapeDrawable), CANDIDATE(Geometry),        CANDIDATE(Drawable),
    CANDIDATE(Node),          CANDIDATE(Texture2D),       CANDIDATE(TextureCubeMap),
    CANDIDATE(Texture),       CANDIDATE(StateAttribute),  CANDIDATE(NodeCallback),
    CANDIDATE(Callback),      CANDIDATE(NodeVisitor),     CANDIDATE(Image)};

#undef CANDIDATE

} // namespace

NearestClass nearestClass(osg::Object& object) {
  for (Candidate const& candidate : CANDIDATES) {
    if (void* const found = candidate.as(object))
      return {candidate.name, found};
  }
  return {"osg::Object", &object};
}

} // namespace zorBinding
