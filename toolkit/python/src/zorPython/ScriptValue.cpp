#include "PythonReference.h"

#include <zorPython/ScriptManager.h>
#include <zorPython/ScriptValue.h>

#include <stdexcept>

namespace zorPython {

namespace {
typedef ScriptManager::PyGILGuard Guard;

void requireInterpreter(Guard const& guard) {
  if (!guard.isHeld()) {
    throw std::runtime_error("no Python interpreter is running");
  }
}

void requireValue(PyObject* object, char const* what) {
  if (!object) {
    throw std::runtime_error(zor::String("a script value that is empty can't be read as ") + what);
  }
}

[[noreturn]] void throwPending(zor::String const& what) {
  PythonReference const error(PyErr_GetRaisedException());
  throw std::runtime_error(what + (error ? ": " + describe(error.get()) : zor::String()));
}

// Makes a value from a new reference; the makers below differ only in the call that gives it.
template <class Make>
ScriptValue make(Make makeObject) {
  Guard const guard;
  requireInterpreter(guard);
  PendingErrorGuard const pending;
  PyObject* object = makeObject();
  if (!object) {
    throwPending("can't make a Python object");
  }
  return ScriptValue::fromNewReference(object);
}
} // namespace

ScriptValue::ScriptValue(ScriptValue const& other) : m_object(other.m_object) {
  Guard const guard;
  if (guard.isHeld()) {
    Py_XINCREF(m_object);
  } else {
    m_object = nullptr; // the interpreter has ended, and the object with it
  }
}

ScriptValue::ScriptValue(ScriptValue&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}

ScriptValue& ScriptValue::operator=(ScriptValue other) noexcept {
  std::swap(m_object, other.m_object);
  return *this;
}

ScriptValue::~ScriptValue() {
  if (m_object) {
    Guard const guard;
    if (guard.isHeld()) {
      Py_DECREF(m_object);
    }
  }
}

ScriptValue ScriptValue::fromNewReference(PyObjectType* object) noexcept {
  ScriptValue value;
  value.m_object = object;
  return value;
}

ScriptValue ScriptValue::fromBorrowed(PyObjectType* object) {
  Guard const guard;
  requireInterpreter(guard);
  return fromNewReference(Py_XNewRef(object));
}

ScriptValue ScriptValue::fromPointer(zor::String const& typeName, void* pointer) {
  if (!pointer) {
    return make([] { return Py_NewRef(Py_None); });
  }
  ScriptManager::ToPython const convert = ScriptManager::getToPython(typeName);
  if (!convert) {
    throw std::runtime_error("no conversion to Python is registered for the type " + typeName);
  }
  return make([&] { return convert(typeName, pointer); });
}

ScriptValue ScriptValue::fromBool(bool value) {
  return make([&] { return PyBool_FromLong(value); });
}

ScriptValue ScriptValue::fromInt(zor::Int value) {
  return make([&] { return PyLong_FromLongLong(value); });
}

ScriptValue ScriptValue::fromReal(zor::Real value) {
  return make([&] { return PyFloat_FromDouble(value); });
}

ScriptValue ScriptValue::fromString(zor::String const& value) {
  return make([&] { return fromText(value).release(); });
}

bool ScriptValue::isNone() const {
  return m_object && Py_IsNone(m_object);
}

void* ScriptValue::toPointer(zor::String const& typeName) const {
  if (!m_object || isNone()) {
    return nullptr;
  }
  ScriptManager::FromPython const convert = ScriptManager::getFromPython(typeName);
  if (!convert) {
    throw std::runtime_error("no conversion from Python is registered for the type " + typeName);
  }
  Guard const guard;
  requireInterpreter(guard);
  PendingErrorGuard const pending;
  return convert(typeName, m_object);
}

bool ScriptValue::toBool() const {
  if (!m_object) {
    return false;
  }
  Guard const guard;
  requireInterpreter(guard);
  PendingErrorGuard const pending;
  int const truth = PyObject_IsTrue(m_object);
  if (truth < 0) {
    throwPending("can't tell the truth of a script value");
  }
  return truth != 0;
}

zor::Int ScriptValue::toInt() const {
  Guard const guard;
  requireInterpreter(guard);
  requireValue(m_object, "an integer");
  PendingErrorGuard const pending;
  long long const value = PyLong_AsLongLong(m_object);
  if (value == -1 && PyErr_Occurred()) {
    throwPending("script value is no integer");
  }
  return value;
}

zor::Real ScriptValue::toReal() const {
  Guard const guard;
  requireInterpreter(guard);
  requireValue(m_object, "a number");
  PendingErrorGuard const pending;
  double const value = PyFloat_AsDouble(m_object);
  if (value == -1.0 && PyErr_Occurred()) {
    throwPending("script value is no number");
  }
  return value;
}

zor::String ScriptValue::toString() const {
  Guard const guard;
  requireInterpreter(guard);
  requireValue(m_object, "text");
  PendingErrorGuard const pending;
  PythonReference const text(PyObject_Str(m_object));
  if (!text) {
    throwPending("script value can't be written as text");
  }
  return toText(text.get());
}

} // namespace zorPython
