// The extension module _zorCalls: see README.md.

#include <Python.h>

#include <algorithm>
#include <array>
#include <memory>

namespace {

/** The arguments of a call as a tuple that lives on the stack. Callees must not keep it; wrappers only unpack
 * it. */
class ArgumentTuple {
public:
  static constexpr Py_ssize_t capacity = 16;

  ArgumentTuple(PyObject* const* arguments, Py_ssize_t count)
      : m_head{{PyObject_HEAD_INIT(&PyTuple_Type) count}, -1} {
    // Most calls have few arguments; a loop of unknown length would be made into more than a copy of two is
    // worth.
    switch (count) {
    default:
      std::copy_n(arguments + 4, count - 4, m_items + 4);
      [[fallthrough]];
    case 4:
      m_items[3] = arguments[3];
      [[fallthrough]];
    case 3:
      m_items[2] = arguments[2];
      [[fallthrough]];
    case 2:
      m_items[1] = arguments[1];
      [[fallthrough]];
    case 1:
      m_items[0] = arguments[0];
      [[fallthrough]];
    case 0:
      break;
    }
  }

  PyObject* get() { return reinterpret_cast<PyObject*>(this); }

private:
  struct {
    PyVarObject base;
    Py_hash_t hash;
  } m_head;
  PyObject* m_items[capacity];
};

static_assert(sizeof(ArgumentTuple) ==
              sizeof(PyTupleObject) + (ArgumentTuple::capacity - 1) * sizeof(PyObject*));

/** Calls a function that takes an argument tuple with any number of arguments. */
PyObject* callWithLongTuple(PyCFunctionObject* function, PyObject* const* arguments, Py_ssize_t count) {
  PyObject* tuple = PyTuple_New(count);
  for (Py_ssize_t i = 0; tuple && i < count; ++i)
    PyTuple_SET_ITEM(tuple, i, Py_NewRef(arguments[i]));
  PyObject* result = tuple ? function->m_ml->ml_meth(function->m_self, tuple) : nullptr;
  Py_XDECREF(tuple);
  return result;
}

/** Calls a function that takes an argument tuple. */
PyObject* callWithTuple(PyObject* callable, PyObject* const* arguments, std::size_t flaggedCount,
                        PyObject* names) {
  auto* function = reinterpret_cast<PyCFunctionObject*>(callable);
  Py_ssize_t const count = PyVectorcall_NARGS(flaggedCount);
  if (names && PyTuple_GET_SIZE(names) > 0) {
    return PyErr_Format(PyExc_TypeError, "%.200s() takes no keyword arguments", function->m_ml->ml_name);
  }
  if (count > ArgumentTuple::capacity)
    return callWithLongTuple(function, arguments, count);
  ArgumentTuple tuple(arguments, count);
  return function->m_ml->ml_meth(function->m_self, tuple.get());
}

/** Calls a flat function of any kind. */
inline PyObject* callFlat(PyCFunctionObject* function, PyObject* const* arguments, Py_ssize_t count) {
  PyMethodDef const* method = function->m_ml;
  if (method->ml_flags == METH_O && count == 1)
    return method->ml_meth(function->m_self, arguments[0]);
  if (method->ml_flags == METH_VARARGS && count <= ArgumentTuple::capacity) {
    ArgumentTuple tuple(arguments, count);
    return method->ml_meth(function->m_self, tuple.get());
  }
  return function->vectorcall(reinterpret_cast<PyObject*>(function), arguments, count, nullptr);
}

/** How the interpreter calls Python functions. */
vectorcallfunc callPython = nullptr;

/** What a shadow function stands for. */
struct Forwarding {
  Forwarding() = default;
  Forwarding(Forwarding const&) = delete;
  Forwarding& operator=(Forwarding const&) = delete;
  ~Forwarding() {
    Py_XDECREF(function);
    Py_XDECREF(initialiser);
  }

  bool takes(Py_ssize_t count) const { return count >= least && (greatest < 0 || count <= greatest); }

  PyCFunctionObject* function{nullptr};
  /** For __init__: attaches what the function made to the instance. */
  PyCFunctionObject* initialiser{nullptr};
  Py_ssize_t least{0};
  Py_ssize_t greatest{0};
};

/** The index of our entry beside each code object. */
Py_ssize_t codeEntry() {
  static Py_ssize_t const index =
      PyUnstable_Eval_RequestCodeExtraIndex([](void* entry) { delete static_cast<Forwarding*>(entry); });
  return index;
}

PyObject* construct(Forwarding const& forwarding, PyObject* const* arguments, Py_ssize_t count) {
  PyObject* made = callFlat(forwarding.function, arguments + 1, count - 1);
  if (!made)
    return nullptr;
  std::array<PyObject*, 2> const pair{arguments[0], made};
  PyObject* result = callFlat(forwarding.initialiser, pair.data(), 2);
  Py_DECREF(made);
  return result;
}

PyObject* callForwarded(PyObject* shadow, PyObject* const* arguments, std::size_t flaggedCount,
                        PyObject* names) {
  Py_ssize_t const count = PyVectorcall_NARGS(flaggedCount);
  void* entry = nullptr;
  PyUnstable_Code_GetExtra(PyFunction_GET_CODE(shadow), codeEntry(), &entry);
  auto const* forwarding = static_cast<Forwarding const*>(entry);
  if (names || !forwarding || !forwarding->takes(count))
    return callPython(shadow, arguments, flaggedCount, names);
  if (forwarding->initialiser)
    return construct(*forwarding, arguments, count);
  return callFlat(forwarding->function, arguments, count);
}

/** Lets all functions of a module that take an argument tuple be called without making one. */
void shortenTupleCalls(PyObject* module) {
  PyObject* value = nullptr;
  for (Py_ssize_t place = 0; PyDict_Next(PyModule_GetDict(module), &place, nullptr, &value);) {
    if (!PyCFunction_CheckExact(value) || PyCFunction_GET_FLAGS(value) != METH_VARARGS)
      continue;
    auto* function = reinterpret_cast<PyCFunctionObject*>(value);
    if (!function->vectorcall)
      function->vectorcall = callWithTuple;
  }
}

/** A flat function, as a new reference; an error if it isn't there. */
PyCFunctionObject* flatFunction(PyObject* module, char const* name) {
  PyObject* function = PyObject_GetAttrString(module, name);
  if (function && PyCFunction_CheckExact(function) &&
      reinterpret_cast<PyCFunctionObject*>(function)->vectorcall) {
    return reinterpret_cast<PyCFunctionObject*>(function);
  }
  if (function)
    PyErr_Format(PyExc_TypeError, "%s is no flat function", name);
  Py_XDECREF(function);
  return nullptr;
}

/** The Python function of that name which was defined at that line, borrowed; null if it was replaced. */
PyObject* shadowFunction(PyObject* names, char const* scope, char const* name, int line) {
  PyObject* holder = *scope ? PyDict_GetItemString(names, scope) : nullptr;
  if (*scope && !(holder && PyType_Check(holder)))
    return nullptr;
  PyObject* members = holder ? PyType_GetDict(reinterpret_cast<PyTypeObject*>(holder)) : Py_NewRef(names);
  PyObject* found = PyDict_GetItemString(members, name);
  Py_DECREF(members);
  PyObject* inner = nullptr;
  if (found && Py_IS_TYPE(found, &PyStaticMethod_Type)) {
    inner = PyObject_GetAttrString(found, "__func__");
    found = inner;
  }
  Py_XDECREF(inner); // its static method holds it
  bool const original = found && PyFunction_Check(found) &&
                        reinterpret_cast<PyCodeObject*>(PyFunction_GET_CODE(found))->co_firstlineno == line;
  return original ? found : nullptr;
}

bool forwardOne(PyObject* names, PyObject* module, PyObject* entry) {
  char const* scope = nullptr;
  char const* name = nullptr;
  char const* flat = nullptr;
  char const* initialiser = nullptr;
  int line = 0;
  auto forwarding = std::make_unique<Forwarding>();
  if (!PyArg_ParseTuple(entry, "ssinns|s", &scope, &name, &line, &forwarding->least, &forwarding->greatest,
                        &flat, &initialiser)) {
    return false;
  }
  PyObject* shadow = shadowFunction(names, scope, name, line);
  if (!shadow)
    return !PyErr_Occurred();
  forwarding->function = flatFunction(module, flat);
  if (initialiser)
    forwarding->initialiser = flatFunction(module, initialiser);
  if (PyErr_Occurred() ||
      PyUnstable_Code_SetExtra(PyFunction_GET_CODE(shadow), codeEntry(), forwarding.get()) < 0)
    return false;
  forwarding.release(); // the code object owns it
  auto* function = reinterpret_cast<PyFunctionObject*>(shadow);
  if (!callPython)
    callPython = function->vectorcall;
  PyFunction_SetVectorcall(function, callForwarded);
  return true;
}

PyObject* forward(PyObject*, PyObject* arguments) {
  PyObject* names = nullptr;
  PyObject* module = nullptr;
  PyObject* entries = nullptr;
  if (!PyArg_ParseTuple(arguments, "O!O!O!", &PyDict_Type, &names, &PyModule_Type, &module, &PyTuple_Type,
                        &entries))
    return nullptr;
  shortenTupleCalls(module);
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(entries); ++i) {
    if (!forwardOne(names, module, PyTuple_GET_ITEM(entries, i)))
      return nullptr;
  }
  Py_RETURN_NONE;
}

PyMethodDef methods[] = {
    {"forward", forward, METH_VARARGS,
     "forward(names, module, entries)\n\nLets functions of the shadow module with these names be called as "
     "the flat functions of `module` that they\n"
     "forward to. An entry is (class or '', function, line, least count, greatest count or -1, flat name[, "
     "flat initialiser])."},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef definition = {PyModuleDef_HEAD_INIT,
                          "_zorCalls",
                          "Shorter calls: see forward().",
                          -1,
                          methods,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr};

} // namespace

PyMODINIT_FUNC PyInit__zorCalls() {
  return PyModule_Create(&definition);
}
