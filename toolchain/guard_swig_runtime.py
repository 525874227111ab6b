#!/usr/bin/env python3
"""Closes the gaps of SWIG's run-time support through which Python code can crash the process.

- A wrapped object can be appended to its own chain; whatever walks the chain then never ends.
- `X_swiginit` on an object that has its `this` already drops a null reference when the second argument is none, and
  writes into the dictionary of a class that is given in place of an instance.
- An object that is its own `this` sends the search for the wrapped object into endless recursion.
- The run-time types can be called, which makes objects without a type.
- A comparison reads the other side as a wrapped object, whatever it is.
- A long chain is released link inside link, until the stack is used up.
- `own(flag)` goes on after a truth test that failed, and the deletion of a variable of `cvar` assigns null to it.
- A property `this` may hand out an object that nobody else holds.
- `X_swigregister` takes anything for a class, and the next result is made by calling through it.
- An overloaded operator with a wrong number of arguments returns NotImplemented and leaves the error of the number set.

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

OPERATOR = """\
fail:
  SWIG_Py_INCREF(Py_NotImplemented);
"""
OPERATOR_GUARDED = """\
fail:
  PyErr_Clear();
  SWIG_Py_INCREF(Py_NotImplemented);
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

COMPARE = """\
SWIGRUNTIME PyObject*
SwigPyObject_richcompare(SwigPyObject *v, SwigPyObject *w, int op)
{
  PyObject* res = NULL;
  if (!PyErr_Occurred()) {
    if (op != Py_EQ && op != Py_NE) {
"""
COMPARE_GUARDED = """\
SWIGRUNTIMEINLINE int SwigPyObject_Check(PyObject *op);

""" + COMPARE.replace("(op != Py_EQ && op != Py_NE)", "((op != Py_EQ && op != Py_NE) || !SwigPyObject_Check((PyObject *)w))")

RELEASE = """\
  SWIG_Py_XDECREF(next);
#ifdef SWIGPYTHON_BUILTIN
  SWIG_Py_XDECREF(sobj->dict);
"""
RELEASE_GUARDED = """\
  while (next && Py_REFCNT(next) == 1) {
    PyObject *after = ((SwigPyObject *)next)->next;
    ((SwigPyObject *)next)->next = NULL;
    SWIG_Py_DECREF(next);
    next = after;
  }
""" + RELEASE

OWN = """\
    if (val) {
      if (PyObject_IsTrue(val)) {
"""
OWN_GUARDED = """\
    int const truth = val ? PyObject_IsTrue(val) : 0;
    if (truth < 0) {
      SWIG_Py_XDECREF(obj);
      return NULL;
    }
    if (val) {
      if (truth) {
"""

VARIABLE = """\
      res = (*var->set_attr)(p);
"""
VARIABLE_GUARDED = """\
      if (!p) {
        PyErr_Format(PyExc_AttributeError, "C global variable '%s' can't be deleted", n);
        return 1;
      }
""" + VARIABLE

PROPERTY = """\
#else
  obj = PyObject_GetAttr(pyobj,SWIG_This());
  if (obj) {
    SWIG_Py_DECREF(obj);
"""
PROPERTY_GUARDED = """\
#else
  obj = PyObject_GetAttr(pyobj,SWIG_This());
  if (obj) {
    int const last = Py_REFCNT(obj) == 1;
    SWIG_Py_DECREF(obj);
    if (last) return 0;
"""

# What is replaced, by what, and how often it stands there; a module has any number of classes and operators.
GUARDS = ((APPEND, APPEND_GUARDED, 1), (INIT, INIT_GUARDED, 1), (THIS, THIS_GUARDED, 1),
          (TYPES, TYPES.replace("Py_TPFLAGS_DEFAULT", NOT_CALLED), 2),
          (BASE_TYPE, BASE_TYPE.replace("Py_TPFLAGS_DEFAULT", NOT_CALLED), 1), (REGISTER, REGISTER_GUARDED, None),
          (COMPARE, COMPARE_GUARDED, 1), (RELEASE, RELEASE_GUARDED, 1), (OWN, OWN_GUARDED, 1), (VARIABLE, VARIABLE_GUARDED, 1),
          (PROPERTY, PROPERTY_GUARDED, 1), (OPERATOR, OPERATOR_GUARDED, None))


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
