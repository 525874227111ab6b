// Pointers that the scene graph gives: a proxy of the object's concrete class, as far as that is registered,
// which holds a reference of its own.

%{
#include "runtime/DynamicType.h"

template <class Object>
static PyObject* zorWrapNode(Object const* constObject, swig_type_info* type) {
  Object* object = const_cast<Object*>(constObject);
  if (!object) Py_RETURN_NONE;
  void* address = object;
  std::string name = zorBinding::pointerTypeName(typeid(*object));
  // Arrays are instances of one template; their own name is the one by which they are registered.
  if (auto* array = dynamic_cast<osg::Array*>(object)) name = zorBinding::pointerTypeName(std::string("osg::") + array->className());
  swig_type_info* concrete = SWIG_TypeQuery(name.c_str());
  if (concrete && concrete->clientdata) {
    type = concrete;
    address = dynamic_cast<void*>(object);
  }
  // Other drawables' proxies don't give a reference back: see the head of the node section.
  bool const isLoose = dynamic_cast<osg::Drawable*>(object) && typeid(*object) != typeid(osg::Geometry) &&
                       typeid(*object) != typeid(osg::ShapeDrawable);
  if (isLoose) return SWIG_NewPointerObj(address, type, 0);
  object->ref();
  return SWIG_NewPointerObj(address, type, SWIG_POINTER_OWN);
}
%}

%define OSG_SHARED(CLASS)
#ifndef ZOR_BORROWED_RESULTS
%typemap(out) osg::CLASS*, osg::CLASS const* {
  if ($owner & SWIG_POINTER_OWN) {
    $result = SWIG_NewPointerObj(SWIG_as_voidptr($1), $descriptor(osg::CLASS*), $owner);
  } else {
    $result = zorWrapNode($1, $descriptor(osg::CLASS*));
  }
}
#endif
%enddef
