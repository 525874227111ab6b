// Part of every generated wrapper, placed before the generator's SWIG_Python_UnpackTuple.
// Taking a tuple of a right size apart in place; all else is the generator's.

static Py_ssize_t SWIG_Python_UnpackTuple_generated(PyObject* tuple, char const* name, Py_ssize_t least,
                                                    Py_ssize_t greatest, PyObject** items);

[[gnu::always_inline]] static inline Py_ssize_t SWIG_Python_UnpackTuple(PyObject* tuple, char const* name,
                                                                        Py_ssize_t least, Py_ssize_t greatest,
                                                                        PyObject** items) {
  if (least == greatest && tuple && Py_IS_TYPE(tuple, &PyTuple_Type) && PyTuple_GET_SIZE(tuple) == least) {
    for (Py_ssize_t i = 0; i < least; ++i)
      items[i] = PyTuple_GET_ITEM(tuple, i);
    return least + 1;
  }
  return SWIG_Python_UnpackTuple_generated(tuple, name, least, greatest, items);
}
