#pragma once

// First, as the interpreter's own rule has it.
#include <Python.h>

#include <zor/Types.h>

#include <utility>

namespace zorPython {

/** Holds one reference of a Python object; for code that holds the interpreter lock throughout. */
class PythonReference {
public:
  PythonReference() = default;
  /** \param owned - a new reference, taken over; may be null */
  explicit PythonReference(PyObject* owned) : m_object(owned) {}
  PythonReference(PythonReference&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  PythonReference(PythonReference const&) = delete;
  PythonReference& operator=(PythonReference&& other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  PythonReference& operator=(PythonReference const&) = delete;
  ~PythonReference() { Py_XDECREF(m_object); }

  PyObject* get() const { return m_object; }
  PyObject* release() { return std::exchange(m_object, nullptr); }
  explicit operator bool() const { return m_object != nullptr; }

private:
  PyObject* m_object = nullptr;
};

/** Sets a Python error aside that is pending where a scope begins, and brings it back at the end. */
class PendingErrorGuard {
public:
  PendingErrorGuard() : m_error(PyErr_GetRaisedException()) {}
  PendingErrorGuard(PendingErrorGuard const&) = delete;
  PendingErrorGuard& operator=(PendingErrorGuard const&) = delete;
  ~PendingErrorGuard() {
    if (m_error) {
      PyErr_SetRaisedException(m_error.release());
    } else {
      PyErr_Clear();
    }
  }

private:
  PythonReference m_error;
};

/** \return the text of a str object; what UTF-8 can't hold is written with backslashes. Never leaves an
 * error. */
zor::String toText(PyObject* unicode);

/** \return what str() gives for an object, or an empty text if it fails. Never leaves an error. */
zor::String describe(PyObject* object);

/** \return the text as a str object; bytes that are no UTF-8 become lone surrogates */
inline PythonReference fromText(zor::String const& text) {
  return PythonReference(
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
}

} // namespace zorPython
