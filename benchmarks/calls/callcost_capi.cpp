// The same functions by hand: a type per class that holds its object in place, and functions that take the
// arguments as an array. Nothing more general than what is measured.
#include <Python.h>

#include <new>
#include <string_view>

#include "Probe.h"

using namespace callcost;

namespace {

template <class Object>
struct Holder {
  PyObject_HEAD Object object;

  static PyTypeObject* type;
};

template <class Object>
PyTypeObject* Holder<Object>::type = nullptr;

template <class Object>
Object* held(PyObject* self) {
  if (Py_IS_TYPE(self, Holder<Object>::type))
    return &reinterpret_cast<Holder<Object>*>(self)->object;
  PyErr_SetString(PyExc_TypeError, "wrong type");
  return nullptr;
}

template <class Object>
PyObject* make(Object object) {
  auto* self = PyObject_New(Holder<Object>, Holder<Object>::type);
  if (self)
    new (&self->object) Object(std::move(object));
  return reinterpret_cast<PyObject*>(self);
}

template <class Object>
PyObject* newObject(PyTypeObject*, PyObject*, PyObject*) {
  return make(Object());
}

template <class Object>
void destroy(PyObject* self) {
  PyTypeObject* type = Py_TYPE(self);
  reinterpret_cast<Holder<Object>*>(self)->object.~Object();
  PyObject_Free(self);
  Py_DECREF(type);
}

bool checkCount(Py_ssize_t count, Py_ssize_t expected) {
  if (count == expected)
    return true;
  PyErr_Format(PyExc_TypeError, "expected %zd arguments, got %zd", expected, count);
  return false;
}

PyObject* getFloat(PyObject*, PyObject* self) {
  Probe* probe = held<Probe>(self);
  return probe ? PyFloat_FromDouble(probe->getFloat()) : nullptr;
}

PyObject* setFloat(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  Probe* probe = checkCount(count, 2) ? held<Probe>(arguments[0]) : nullptr;
  if (!probe)
    return nullptr;
  double const value = PyFloat_AsDouble(arguments[1]);
  if (value == -1 && PyErr_Occurred())
    return nullptr;
  probe->setFloat(static_cast<float>(value));
  Py_RETURN_NONE;
}

PyObject* attach(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  Probe* probe = checkCount(count, 2) ? held<Probe>(arguments[0]) : nullptr;
  Probe* other = probe ? held<Probe>(arguments[1]) : nullptr;
  if (!other)
    return nullptr;
  probe->attach(other);
  Py_RETURN_NONE;
}

PyObject* getValue(PyObject*, PyObject* self) {
  Probe* probe = held<Probe>(self);
  return probe ? make(probe->getValue()) : nullptr;
}

PyObject* setName(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  Probe* probe = checkCount(count, 2) ? held<Probe>(arguments[0]) : nullptr;
  if (!probe)
    return nullptr;
  Py_ssize_t size = 0;
  char const* text = PyUnicode_AsUTF8AndSize(arguments[1], &size);
  if (!text)
    return nullptr;
  probe->setName(std::string(text, static_cast<std::size_t>(size)));
  Py_RETURN_NONE;
}

PyObject* pick(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  Probe* probe = checkCount(count, 2) ? held<Probe>(arguments[0]) : nullptr;
  if (!probe)
    return nullptr;
  if (PyFloat_Check(arguments[1]))
    return PyLong_FromLong(probe->pick(PyFloat_AS_DOUBLE(arguments[1])));
  long const value = PyLong_AsLong(arguments[1]);
  if (value == -1 && PyErr_Occurred())
    return nullptr;
  return PyLong_FromLong(probe->pick(static_cast<int>(value)));
}

/** The one of the thirty-one that is called, chosen by hand. */
PyObject* paint(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  Probe* probe = checkCount(count, 4) ? held<Probe>(arguments[0]) : nullptr;
  Value* target = probe ? held<Value>(arguments[1]) : nullptr;
  if (!target)
    return nullptr;
  Py_ssize_t size = 0;
  char const* text = PyUnicode_AsUTF8AndSize(arguments[2], &size);
  if (!text)
    return nullptr;
  long const unit = PyLong_AsLong(arguments[3]);
  if (unit == -1 && PyErr_Occurred())
    return nullptr;
  return PyLong_FromLong(
      probe->paintOne(*target, std::string(text, static_cast<std::size_t>(size)), static_cast<int>(unit)));
}

using Series = std::vector<Value>;

PyObject* append(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  Series* series = checkCount(count, 2) ? held<Series>(arguments[0]) : nullptr;
  Value* value = series ? held<Value>(arguments[1]) : nullptr;
  if (!value)
    return nullptr;
  series->push_back(*value);
  Py_RETURN_NONE;
}

PyObject* item(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  Series* series = checkCount(count, 2) ? held<Series>(arguments[0]) : nullptr;
  if (!series)
    return nullptr;
  std::size_t const index = PyLong_AsSize_t(arguments[1]);
  if (PyErr_Occurred())
    return nullptr;
  if (index >= series->size())
    return PyErr_SetString(PyExc_IndexError, "index"), nullptr;
  return make((*series)[index]);
}

PyObject* pop(PyObject*, PyObject* self) {
  Series* series = held<Series>(self);
  if (!series)
    return nullptr;
  series->pop_back();
  Py_RETURN_NONE;
}

/** A listener that calls the method of a Python object. */
class PyListener : public Listener {
public:
  explicit PyListener(PyObject* self) : m_self(self) {}
  void frame(int number) override {
    static PyObject* const name = PyUnicode_InternFromString("frame");
    PyObject* argument = PyLong_FromLong(number);
    Py_XDECREF(PyObject_CallMethodOneArg(m_self, name, argument));
    Py_DECREF(argument);
  }

private:
  PyObject* m_self;
};

PyObject* fireListener(PyObject*, PyObject* const* arguments, Py_ssize_t count) {
  if (!checkCount(count, 2))
    return nullptr;
  PyListener listener(arguments[0]);
  fire(listener, static_cast<int>(PyLong_AsLong(arguments[1])));
  if (PyErr_Occurred())
    return nullptr;
  Py_RETURN_NONE;
}

template <class Function>
PyCFunction fast(Function function) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyMethodDef methods[] = {
    {"getFloat", getFloat, METH_O, nullptr},
    {"setFloat", fast(setFloat), METH_FASTCALL, nullptr},
    {"attach", fast(attach), METH_FASTCALL, nullptr},
    {"getValue", getValue, METH_O, nullptr},
    {"setName", fast(setName), METH_FASTCALL, nullptr},
    {"pick", fast(pick), METH_FASTCALL, nullptr},
    {"paint", fast(paint), METH_FASTCALL, nullptr},
    {"append", fast(append), METH_FASTCALL, nullptr},
    {"item", fast(item), METH_FASTCALL, nullptr},
    {"pop", pop, METH_O, nullptr},
    {"fire", fast(fireListener), METH_FASTCALL, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef definition = {
    PyModuleDef_HEAD_INIT, "callcost_capi", nullptr, -1, methods, nullptr, nullptr, nullptr, nullptr};

template <class Object>
bool addType(PyObject* module, char const* name) {
  PyType_Slot slots[] = {{Py_tp_new, reinterpret_cast<void*>(newObject<Object>)},
                         {Py_tp_dealloc, reinterpret_cast<void*>(destroy<Object>)},
                         {0, nullptr}};
  PyType_Spec spec = {name, sizeof(Holder<Object>), 0, Py_TPFLAGS_DEFAULT, slots};
  Holder<Object>::type = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
  return Holder<Object>::type && PyModule_AddType(module, Holder<Object>::type) == 0;
}

} // namespace

PyMODINIT_FUNC PyInit_callcost_capi() {
  PyObject* module = PyModule_Create(&definition);
  bool const complete = module && addType<Probe>(module, "callcost_capi.Probe") &&
                        addType<Value>(module, "callcost_capi.Value") &&
                        addType<Series>(module, "callcost_capi.Series");
  if (complete)
    return module;
  Py_XDECREF(module);
  return nullptr;
}
