#!/usr/bin/env python3
"""Closes the gaps of SWIG's run-time support through which Python code can crash the process.

- A wrapped object can be appended to its own chain; whatever walks the chain then never ends.
- `X_swiginit` on an object that has its `this` already drops a null reference when the second argument is none, and
  writes into the dictionary of a class that is given in place of an instance.
- An object that is its own `this` sends the search for the wrapped object into endless recursion.
- The run-time types can be called, which makes objects without a type.
- `X_swigregister` takes anything for a class, and the next result is made by calling through it.

Usage: guard_swig_runtime.py INPUT OUTPUT
"""

import sys

import wrapperstep

APPEND = """\
  ((SwigPyObject *)next)->next = sobj->next;
"""
APPEND_GUARDED = """\
  for (PyObject *link = v; link; link = ((SwigPyObject *)link)->next) {
    if (link == next) {
      PyErr_SetString(PyExc_ValueError, "Attempt to append a SwigPyObject to itself");
      return NULL;
    }
  }
""" + APPEND

INIT = """\
    SwigPyObject *sthis = SWIG_Python_GetSwigThis(obj[0]);
    if (sthis) {
      SWIG_Py_DECREF(SwigPyObject_append((PyObject*) sthis, obj[1]));
    } else {
"""
INIT_GUARDED = """\
    SwigPyObject *sthis;
    if (PyType_Check(obj[0])) {
      PyErr_SetString(PyExc_TypeError, "swiginit expects an instance");
      return NULL;
    }
    sthis = SWIG_Python_GetSwigThis(obj[0]);
    if (sthis) {
      PyObject *appended = SwigPyObject_append((PyObject*) sthis, obj[1]);
      if (!appended)
        return NULL;
      SWIG_Py_DECREF(appended);
    } else {
"""

THIS = """\
       SwigPyObject from it */ 
    return SWIG_Python_GetSwigThis(obj);
"""
THIS_GUARDED = """\
       SwigPyObject from it */
    SwigPyObject *inner;
    if (Py_EnterRecursiveCall(" while looking for a wrapped object")) {
      PyErr_Clear();
      return 0;
    }
    inner = SWIG_Python_GetSwigThis(obj);
    Py_LeaveRecursiveCall();
    return inner;
"""

REGISTER = """\
  if (!SWIG_Python_UnpackTuple(args, "swigregister", 1, 1, &obj)) return NULL;
"""
REGISTER_GUARDED = REGISTER + """\
  if (!PyType_Check(obj)) {
    PyErr_SetString(PyExc_TypeError, "swigregister expects a class");
    return NULL;
  }
"""

TYPES = """\
    Py_TPFLAGS_DEFAULT,
    slots
"""
BASE_TYPE = """\
    Py_TPFLAGS_DEFAULT|Py_TPFLAGS_BASETYPE,
    slots
"""
NOT_CALLED = "Py_TPFLAGS_DEFAULT|Py_TPFLAGS_DISALLOW_INSTANTIATION"

# What is replaced, by what, and how often it stands there; a module registers any number of classes.
GUARDS = ((APPEND, APPEND_GUARDED, 1), (INIT, INIT_GUARDED, 1), (THIS, THIS_GUARDED, 1),
          (TYPES, TYPES.replace("Py_TPFLAGS_DEFAULT", NOT_CALLED), 2),
          (BASE_TYPE, BASE_TYPE.replace("Py_TPFLAGS_DEFAULT", NOT_CALLED), 1), (REGISTER, REGISTER_GUARDED, None))


def guard(source: str) -> str:
    """Returns the guarded source; ValueError if a place to guard is missing."""
    for place, guarded, expected in GUARDS:
        count = source.count(place)
        if expected is not None and count != expected:
            raise ValueError(f"{count} places to guard, not {expected}, like this:\n{place}")
        source = source.replace(place, guarded)
    return source


if __name__ == "__main__":
    sys.exit(wrapperstep.run(sys.argv[1:], guard, __doc__))
