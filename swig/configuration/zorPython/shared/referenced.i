// Shared ownership. A proxy made by a constructor holds one reference, which its death gives back: through the
// class's own delete_ where its destructor is public, else through the one of zor::Referenced.

%feature("ref") zor::Referenced "$this->reference();"
%feature("unref") zor::Referenced "$this->unreference();"

// A class whose proxies release through a delete_ of their own. It clears the ownership flag and gives the reference
// back; the last one destroys the object, through the toolkit's delete handler if one is installed.
%define ZOR_RELEASED_BY_DELETE(NAMESPACE, CLASS)
%extend NAMESPACE::CLASS {
  ~CLASS() { $self->unreference(); }
}
%enddef

%{
#include <zor/Referenced.h>
#include "runtime/DynamicType.h"

// The Python object of a toolkit object: the one that overrides it if there is one, else a new proxy of its
// concrete class, as far as that is registered, which holds a reference of its own.
template <class Object>
static PyObject* zorWrapShared(Object const* constObject, swig_type_info* type) {
  Object* object = const_cast<Object*>(constObject);
  if (!object) Py_RETURN_NONE;
  if (PyObject* known = zorDirectorObject(object)) return known;
  void* address = object;
  std::string const& name = zorBinding::pointerTypeName(typeid(*object));
  swig_type_info* concrete = SWIG_TypeQuery(name.c_str());
  if (concrete && concrete->clientdata) {
    type = concrete;
    address = dynamic_cast<void*>(object);
  }
  object->reference();
  return SWIG_NewPointerObj(address, type, SWIG_POINTER_OWN);
}

template <class Vector>
static PyObject* zorWrapSharedList(Vector const& objects, swig_type_info* type) {
  PyObject* list = PyList_New(static_cast<Py_ssize_t>(objects.size()));
  for (std::size_t i = 0; list && i < objects.size(); ++i) {
    PyObject* item = zorWrapShared(objects[i].get(), type);
    if (!item) {
      Py_CLEAR(list);
      break;
    }
    PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), item);
  }
  return list;
}
%}

// In the modules of simulation objects, results hold a reference: a body that leaves its simulation stays usable
// in Python. The visualisation layer's results are borrowed, and it defines ZOR_BORROWED_RESULTS.
%define ZOR_SHARED(CLASS)
#ifndef ZOR_BORROWED_RESULTS
%typemap(out) CLASS*, CLASS const* {
  if ($owner & SWIG_POINTER_OWN) {
    $result = SWIG_NewPointerObj(SWIG_as_voidptr($1), $descriptor(CLASS*), $owner);
  } else {
    $result = zorWrapShared($1, $descriptor(CLASS*));
  }
}
#endif
%typemap(out) zor::Vector<zor::ref_ptr<CLASS> > const& {
  $result = zorWrapSharedList(*$1, $descriptor(CLASS*));
}
%enddef

namespace zor {
template <class T>
class ref_ptr;
}
