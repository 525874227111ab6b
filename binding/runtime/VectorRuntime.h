#pragma once

#include "runtime/BufferView.h"
#include "runtime/Values.h"

#include <zor/Vector.h>

#include <memory>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/** \return where list.insert() would put an element */
std::size_t insertionIndex(std::ptrdiff_t index, std::size_t size);

/** Receives the numbers of a Python object, row after row. */
class NumberSink {
public:
  virtual ~NumberSink() = default;
  /** \return where the next row's numbers go, of the sink's element type */
  virtual void* addRow() = 0;
};

/**
 * Reads an iterable of numbers (rowSize 0) or of rows of rowSize numbers. A buffer of the same shape and
 * element type is copied at once.
 * \param values - the Python object
 * \param rowSize - numbers in a row
 * \param format - element type in the codes of the struct module
 * \param sink - receives the numbers
 * Throws std::runtime_error with a Python TypeError, ValueError or OverflowError pending.
 */
void readNumbers(PyObject* values, int rowSize, char format, NumberSink& sink);

template <class Element>
class VectorSink : public NumberSink {
public:
  explicit VectorSink(zor::Vector<Element>& vector) : m_vector(vector) {}
  void* addRow() override {
    m_vector.push_back(Element());
    return &m_vector.back();
  }

private:
  zor::Vector<Element>& m_vector;
};

template <class Scalar>
zor::Vector<Scalar>* newNumberVector(PyObject* values) {
  auto vector = std::make_unique<zor::Vector<Scalar>>();
  VectorSink<Scalar> sink(*vector);
  readNumbers(values, 0, formatOf<Scalar>()[0], sink);
  return vector.release();
}

template <class Value>
using ScalarOf = std::remove_cvref_t<decltype(*components(std::declval<Value&>()))>;

template <class Value, int Count>
zor::Vector<Value>* newValueVector(PyObject* values) {
  static_assert(sizeof(Value) == Count * sizeof(ScalarOf<Value>));
  auto vector = std::make_unique<zor::Vector<Value>>();
  VectorSink<Value> sink(*vector);
  readNumbers(values, Count, formatOf<ScalarOf<Value>>()[0], sink);
  return vector.release();
}

template <class Value, int Count>
PyObject* memoryOfValues(zor::Vector<Value>& vector) {
  auto* first = vector.data() ? components(*vector.data()) : nullptr;
  return memoryOf(first, {static_cast<long>(vector.size()), Count});
}

template <class Object>
Object* plainPointer(Object* pointer) {
  return pointer;
}

template <class Object, class Pointer>
Object* plainPointer(Pointer const& pointer) {
  return pointer.get();
}

} // namespace zorBinding
