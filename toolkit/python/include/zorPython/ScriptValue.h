#pragma once

#include <zor/Types.h>

struct _object;

namespace zorPython {

typedef struct ::_object PyObjectType; ///< the interpreter's object type

/**
 * A Python object held from C++: argument or result of a script function. Every operation takes the
 * interpreter lock itself. What a conversion cannot do leaves no Python error behind.
 */
class ScriptValue {
public:
  /** No value at all, which is not the same as Python's None. */
  ScriptValue() = default;

  ScriptValue(ScriptValue const& other);
  ScriptValue(ScriptValue&& other) noexcept;
  ScriptValue& operator=(ScriptValue other) noexcept;
  ~ScriptValue();

  /** \param object - its reference is taken over; null gives no value */
  static ScriptValue fromNewReference(PyObjectType* object) noexcept;

  /** \param object - a reference of its own is taken; null gives no value */
  static ScriptValue fromBorrowed(PyObjectType* object);

  /**
   * Wraps a toolkit object with the converter registered for its type.
   * \param typeName - for instance "zorSDK::Simulation"
   * \param pointer - the object; null gives None. The Python object does not own it.
   * \throws std::runtime_error if no converter is registered or it fails
   */
  static ScriptValue fromPointer(zor::String const& typeName, void* pointer);

  static ScriptValue fromBool(bool value);
  static ScriptValue fromInt(zor::Int value);
  static ScriptValue fromReal(zor::Real value);
  static ScriptValue fromString(zor::String const& value);

  /** \return true if there is a value, None included */
  bool isValid() const { return m_object != nullptr; }

  /** \return true if the value is None */
  bool isNone() const;

  /**
   * \param typeName - for instance "osg::Group"
   * \return the toolkit object that the value wraps, or null for None, no value and other objects
   * \throws std::runtime_error if no converter is registered for the type
   */
  void* toPointer(zor::String const& typeName) const;

  /** \return the value's truth; false for no value \throws std::runtime_error if it can't be told */
  bool toBool() const;
  /** \throws std::runtime_error if the value is no integer or too large */
  zor::Int toInt() const;
  /** \throws std::runtime_error if the value is no number */
  zor::Real toReal() const;
  /** \return the text that Python's str() gives \throws std::runtime_error if it fails or there is no value
   */
  zor::String toString() const;

  /** \return the object, borrowed; null for no value */
  PyObjectType* get() const { return m_object; }

private:
  PyObjectType* m_object = nullptr;
};

} // namespace zorPython
