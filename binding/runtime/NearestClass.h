#pragma once

#include <osg/Object>

#include <string>

namespace zorBinding {

/** A class of the scene graph that the module osg wraps, and an object as one of it. */
struct NearestClass {
  char const* name; ///< with its namespace
  void* object;
};

/** \return the most special class that an object of a class which no module wraps belongs to */
NearestClass nearestClass(osg::Object& object);

} // namespace zorBinding
