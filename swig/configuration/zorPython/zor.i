%module(directors="1", threads="1", docstring="Values, containers, bodies and constraints of the toolkit.") zor

%{
#include "headers/zor.h"
%}

%include "shared/toolkit.i"
%include "shared/interpreter.i"
%include "zor/errors.i"
%include "zor/values.i"
%include "zor/objects.i"
%include "zor/bodies.i"
%include "zor/particles.i"

// Scripts that the toolkit runs get their arguments as proxies, and what they return is unwrapped, through the
// type registry that all modules share.
%{
#include <zorPython/ScriptManager.h>

// The registered type of a class; imports the module that wraps its namespace if nobody has yet.
static swig_type_info* zorFindType(std::string const& name) {
  std::string const pointer = zorBinding::pointerTypeName(name);
  swig_type_info* type = SWIG_TypeQuery(pointer.c_str());
  std::string const module = name.substr(0, name.find("::"));
  if ((!type || !type->clientdata) && module != name) {
    if (PyObject* imported = PyImport_ImportModule(module.c_str())) {
      Py_DECREF(imported);
      type = SWIG_TypeQuery(pointer.c_str());
    } else {
      PyErr_Clear();
    }
  }
  return type;
}

static PyObject* zorToPython(std::string const& name, void* pointer) {
  swig_type_info* type = zorFindType(name);
  if (!type) {
    PyErr_Format(PyExc_TypeError, "no Python module wraps the type %s", name.c_str());
    return nullptr;
  }
  swig_cast_info* shared = SWIG_TypeCheck(type->name, SWIGTYPE_p_zor__Referenced);
  if (!shared) {
    return SWIG_NewPointerObj(pointer, type, 0);
  }
  int newMemory = 0;
  auto* object = static_cast<zor::Referenced*>(SWIG_TypeCast(shared, pointer, &newMemory));
  if (PyObject* known = zorDirectorObject(object)) return known;
  object->reference();
  return SWIG_NewPointerObj(pointer, type, SWIG_POINTER_OWN);
}

static void* zorFromPython(std::string const& name, PyObject* object) {
  swig_type_info* type = zorFindType(name);
  void* pointer = nullptr;
  if (!type || !SWIG_IsOK(SWIG_ConvertPtr(object, &pointer, type, 0))) {
    PyErr_Clear();
    return nullptr;
  }
  return pointer;
}
%}

%init %{
  zorPython::ScriptManager::registerToPython("", zorToPython);
  zorPython::ScriptManager::registerFromPython("", zorFromPython);
%}
