%module(directors="1", threads="1", docstring="Shapes, geometries, spaces, contacts and rays.") zorCollide

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
import zorRender
%}

%{
#include "headers/zor.h"
#include "headers/zorRender.h"
#include "headers/zorCollide.h"
%}

%include "shared/toolkit.i"
%import "zor.i"
%import "zorRender.i"

ZOR_SHARED(zorCollide::Shape)
ZOR_SHARED(zorCollide::Geometry)
ZOR_SHARED(zorCollide::Space)
ZOR_SHARED(zorCollide::TextureData)

ZOR_INNER_RESULT(zorCollide::Geometry::getGroups)
ZOR_INNER_RESULT(zorCollide::GeometryContact::getPoints)

%include <zorCollide/Shape.h>
%include <zorCollide/Box.h>
%include <zorCollide/Sphere.h>
%include <zorCollide/Capsule.h>
%include <zorCollide/Cylinder.h>
%include <zorCollide/Cone.h>
%include <zorCollide/Plane.h>
%include <zorCollide/Convex.h>
%include <zorCollide/Trimesh.h>
%include <zorCollide/HeightField.h>
%include <zorCollide/Compound.h>
%include <zorCollide/RenderData.h>
// A list, or a copy: pixels that changed their number behind the back of a texture would be read beyond their end.
ZOR_ITERABLE_ARGUMENT(zor::Vector<zor::UInt8>, zorBinding::newNumberVector<uint8_t>)
ZOR_COPIED_RESULT(zor::Vector<zor::UInt8>)
%include <zorCollide/TextureData.h>

// A reference as an object of its own, for functions that take one.
namespace zor {
template <class T>
class ref_ptr {
public:
  ref_ptr();
  /** \param object - what it refers to, or None */
  ref_ptr(T* object);
  /** \return what it refers to, or None */
  T* get() const;
};
}
%template(TextureDataRef) zor::ref_ptr<zorCollide::TextureData>;

%include <zorCollide/ContactPoint.h>

%{
#include "runtime/PythonFunction.h"

static PyObject* zorWrapGeometry(void* geometry) {
  return zorWrapShared(static_cast<zorCollide::Geometry*>(geometry), SWIGTYPE_p_zorCollide__Geometry);
}
%}
%rename(ShapeChangeListener) zorCollide::Geometry::ShapeChangeEvent::CallbackType;
%feature("flatnested") zorCollide::Geometry::ShapeChangeEvent;
%feature("flatnested") zorCollide::Geometry::ShapeChangeEvent::CallbackType;
%nodefaultctor zorCollide::Geometry::ShapeChangeEvent;
%newobject zorCollide::Geometry::ShapeChangeEvent::add;
%extend zorCollide::Geometry::ShapeChangeEvent {
  /**
   * Adds a function.
   * \param function - called with the geometry whose shapes have changed
   * \return the listener: the function listens as long as it is kept
   */
  zorCollide::Geometry::ShapeChangeEvent::CallbackType* add(PyObject* function) {
    auto const call = zorBinding::objectFunctionOf(function, zorWrapGeometry, "zorCollide::Geometry::ShapeChangeEvent");
    return new zorCollide::Geometry::ShapeChangeEvent::CallbackType(
        $self->add([call](zorCollide::Geometry* geometry) { call(geometry); }));
  }
}
%extend zorCollide::Geometry::ShapeChangeEvent {
  %pythoncode %{
    def __repr__(self):
        return f"<ShapeChangeEvent, {self.getNumListeners()} listening>"
  %}
}
%extend zorCollide::Geometry::ShapeChangeEvent::CallbackType {
  %pythoncode %{
    def __repr__(self):
        return f"<ShapeChangeListener, {'listening' if self.isValid() else 'reset'}>"
  %}
}
ZOR_INNER_RESULT(zorCollide::Geometry::getShapeChangeEvent)
%include <zorCollide/Geometry.h>
ZOR_OBJECT_VECTOR(ContactPointVector, zorCollide::ContactPoint)
%include <zorCollide/GeometryContact.h>
ZOR_OBJECT_VECTOR(LocalGeometryContactVector, zorCollide::GeometryContact)
%include <zorCollide/RayHit.h>
ZOR_OBJECT_VECTOR(RayHitVector, zorCollide::RayHit)
ZOR_INNER_RESULT(zorCollide::RayTable::getGeometryIndices)
%copyctor zorCollide::RayTable;
%include <zorCollide/RayTable.h>
%include <zorCollide/Space.h>
