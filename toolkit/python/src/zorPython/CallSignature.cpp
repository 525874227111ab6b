#include <Python.h>

#include <zorPython/CallSignature.h>
#include <zorPython/ScriptManager.h>

namespace zorPython {

namespace {

/** Takes a reference over and gives it back at the end of the scope. */
class Owned {
public:
  explicit Owned(PyObject* object) : m_object(object) {}
  Owned(Owned const&) = delete;
  Owned& operator=(Owned const&) = delete;
  ~Owned() { Py_XDECREF(m_object); }

  PyObject* get() const { return m_object; }

private:
  PyObject* m_object;
};

/** \return 1 for a required positional parameter, 0 for another, -1 with an error set */
int isRequired(PyObject* parameter) {
  constexpr long LAST_POSITIONAL_KIND = 1; // positional only, positional or keyword
  Owned const kind(PyObject_GetAttrString(parameter, "kind"));
  Owned const byDefault(PyObject_GetAttrString(parameter, "default"));
  Owned const empty(PyObject_GetAttrString(parameter, "empty"));
  if (!kind.get() || !byDefault.get() || !empty.get())
    return -1;
  long const position = PyLong_AsLong(kind.get());
  if (position < 0)
    return -1;
  return position <= LAST_POSITIONAL_KIND && byDefault.get() == empty.get() ? 1 : 0;
}

int count(PyObject* function) {
  Owned const inspect(PyImport_ImportModule("inspect"));
  Owned const signature(inspect.get() ? PyObject_CallMethod(inspect.get(), "signature", "O", function)
                                      : nullptr);
  Owned const parameters(signature.get() ? PyObject_GetAttrString(signature.get(), "parameters") : nullptr);
  Owned const values(parameters.get() ? PyMapping_Values(parameters.get()) : nullptr);
  if (!values.get())
    return -1;
  int required = 0;
  for (Py_ssize_t i = 0; i < PyList_Size(values.get()); ++i) {
    int const counts = isRequired(PyList_GetItem(values.get(), i));
    if (counts < 0)
      return -1;
    required += counts;
  }
  return required;
}

} // namespace

int countRequiredParameters(ScriptValue const& function) {
  ScriptManager::PyGILGuard const lock;
  if (!lock.isHeld() || !function.isValid())
    return 0;
  int const required = count(function.get());
  if (required < 0)
    PyErr_Clear();
  return required < 0 ? 0 : required;
}

} // namespace zorPython
