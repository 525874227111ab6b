// Pointers that the scene graph gives: a proxy of the object's concrete class, or the nearest that is registered,
// which holds a reference of its own.

%{
#include <cstring>
#include "runtime/DynamicType.h"
#include "runtime/Lent.h"
#include "runtime/NearestClass.h"

// Drawables of other classes have proxies that don't give a reference back: see the drawable section.
static bool zorIsLoose(osg::Object const* object, bool isNearest) {
  osg::Drawable const* drawable = dynamic_cast<osg::Drawable const*>(object);
  return drawable && !drawable->asGeometry() && (isNearest || std::strcmp(drawable->libraryName(), "osgText") != 0);
}

static PyObject* zorWrapObject(osg::Object* object, std::string const& concreteName, void* concrete) {
  swig_type_info* type = SWIG_TypeQuery(concreteName.c_str());
  bool const isNearest = !type || !type->clientdata;
  if (isNearest) {
    zorBinding::NearestClass const nearest = zorBinding::nearestClass(*object);
    type = SWIG_TypeQuery(zorBinding::pointerTypeName(std::string(nearest.name)).c_str());
    concrete = nearest.object;
  }
  if (zorIsLoose(object, isNearest)) {
    PyObject* proxy = SWIG_NewPointerObj(concrete, type, 0);
    zorBinding::keepLent(proxy, object);
    return proxy;
  }
  object->ref();
  return SWIG_NewPointerObj(concrete, type, SWIG_POINTER_OWN);
}

template <class Object>
static PyObject* zorWrapNode(Object const* constObject, swig_type_info* type) {
  Object* object = const_cast<Object*>(constObject);
  if (!object) Py_RETURN_NONE;
  if constexpr (std::is_base_of_v<osg::Object, Object>) {
    // Arrays are instances of one template; their own name is the one by which they are registered.
    auto* array = dynamic_cast<osg::Array*>(object);
    std::string const name = array ? zorBinding::pointerTypeName(std::string("osg::") + array->className())
                                   : zorBinding::pointerTypeName(typeid(*object));
    return zorWrapObject(object, name, dynamic_cast<void*>(object));
  } else {
    object->ref();
    return SWIG_NewPointerObj(object, type, SWIG_POINTER_OWN);
  }
}
%}

%define OSG_SHARED_CLASS(CLASS)
#ifndef ZOR_BORROWED_RESULTS
%typemap(out) CLASS*, CLASS const* {
  if ($owner & SWIG_POINTER_OWN) {
    $result = SWIG_NewPointerObj(SWIG_as_voidptr($1), $descriptor(CLASS*), $owner);
  } else {
    $result = zorWrapNode($1, $descriptor(CLASS*));
  }
}
#endif
%enddef

%define OSG_SHARED(CLASS)
OSG_SHARED_CLASS(osg::CLASS)
%enddef

// An object that a method can't do without.
%typemap(check) SWIGTYPE* NOT_NULL {
  if (!$1) {
    SWIG_exception_fail(SWIG_NullReferenceError, "invalid null reference in method '$symname', argument $argnum of type '$1_type'");
  }
}

// Reference counting. A proxy made by a constructor holds one reference, and the destroy hook gives it back.
%define OSG_OWNED_CLASS(NAMESPACE, CLASS)
%feature("ref") NAMESPACE::CLASS "$this->ref();"
%feature("notabstract") NAMESPACE::CLASS;
%extend NAMESPACE::CLASS {
  ~CLASS() { $self->unref(); }
}
%enddef

// The same for a class without a constructor in Python.
%define OSG_HELD_CLASS(NAMESPACE, CLASS)
%nodefaultctor NAMESPACE::CLASS;
%extend NAMESPACE::CLASS {
  ~CLASS() { $self->unref(); }
}
%enddef

%define OSG_OWNED(CLASS)
OSG_OWNED_CLASS(osg, CLASS)
%enddef

%define OSG_HELD(CLASS)
OSG_HELD_CLASS(osg, CLASS)
%enddef

// A class that is only somebody's base.
%define OSG_BASE_CLASS(NAMESPACE, CLASS)
%nodefaultctor NAMESPACE::CLASS;
%nodefaultdtor NAMESPACE::CLASS;
%enddef
