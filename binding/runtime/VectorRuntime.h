#pragma once

#include "runtime/BufferView.h"
#include "runtime/StandardVector.h"
#include "runtime/Values.h"
#include "runtime/VectorWatch.h"

#include <zor/Vector.h>

#include <algorithm>
#include <memory>
#include <string>

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

/** Receives the texts of a Python object. */
class TextSink {
public:
  virtual ~TextSink() = default;
  virtual void add(std::string text) = 0;
};

/** Reads an iterable of texts. Throws std::runtime_error with a Python TypeError pending. */
void readTexts(PyObject* values, TextSink& sink);

/**
 * Reads an iterable of numbers (rowSize 0) or of rows of up to rowSize numbers. A buffer of the same shape
 * and element type is copied at once.
 * \param values - the Python object
 * \param rowSize - numbers in a row
 * \param fewest - numbers that a row must have; the others keep their value
 * \param format - element type in the codes of the struct module
 * \param sink - receives the numbers
 * Throws std::runtime_error with a Python TypeError, ValueError or OverflowError pending.
 */
void readNumbers(PyObject* values, int rowSize, int fewest, char format, NumberSink& sink);

inline void readNumbers(PyObject* values, int rowSize, char format, NumberSink& sink) {
  readNumbers(values, rowSize, rowSize, format, sink);
}

/** Reads one row as readNumbers() does. \param place - memory of rowSize elements */
void readRow(PyObject* row, int rowSize, int fewest, char format, void* place);

/**
 * Reads a matrix from rows, or from all its numbers in a row. Throws as readNumbers().
 * \param numbers - memory of rows * columns numbers
 */
void readMatrix(PyObject* values, int rows, int columns, double* numbers);

/** \return a new tuple of numbers, null with an error set */
PyObject* newTuple(void const* numbers, char format, int count);

/** \return a slice of numbers as a new tuple; throws std::runtime_error with a Python error pending */
PyObject* newTupleSlice(void const* numbers, char format, int count, PyObject* slice);

/** Replaces a slice of numbers by as many others; throws as readNumbers(). */
void assignNumbers(void* numbers, char format, int count, PyObject* slice, PyObject* values);

/** \return a new iterator over numbers, which don't change while it walks; null with an error set */
PyObject* newNumberIterator(void const* numbers, char format, int count);

/**
 * What a number of a list would be after a failed conversion: nothing. Clears a pending TypeError, ValueError
 * or OverflowError, which say that something isn't a value at all.
 * \return false if another error is pending
 */
bool clearConversionError();

/** \return the positions of a slice object, by the rules of list. Throws as readSlice(). */
SliceRange listSlice(PyObject* slice, std::size_t size);

/** How many components the rows and sequences must have that a value is made of. */
template <class Value, int Count>
inline constexpr int FEWEST_COMPONENTS = Count;

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
  readNumbers(values, 0, 0, formatOf<Scalar>()[0], sink);
  return vector.release();
}

template <class Value>
using ScalarOf = std::remove_cvref_t<decltype(*components(std::declval<Value&>()))>;

/** Makes a value of a sequence of its components; throws as readNumbers(). */
template <int Count, class Value>
void readValue(PyObject* sequence, Value& value) {
  readRow(sequence, Count, FEWEST_COMPONENTS<Value, Count>, formatOf<ScalarOf<Value>>()[0],
          components(value));
}

template <class Value, int Count>
zor::Vector<Value>* newValueVector(PyObject* values) {
  static_assert(sizeof(Value) == Count * sizeof(ScalarOf<Value>));
  auto vector = std::make_unique<zor::Vector<Value>>();
  VectorSink<Value> sink(*vector);
  readNumbers(values, Count, FEWEST_COMPONENTS<Value, Count>, formatOf<ScalarOf<Value>>()[0], sink);
  return vector.release();
}

/** \return a new vector of texts, of any iterable but a text; throws as readNumbers() */
template <class Vector>
Vector* newTextVector(PyObject* values) {
  auto vector = std::make_unique<Vector>();
  struct Texts : TextSink {
    explicit Texts(Vector& all) : texts(all) {}
    void add(std::string text) override { texts.push_back(std::move(text)); }
    Vector& texts;
  } sink(*vector);
  readTexts(values, sink);
  return vector.release();
}

template <class Value, int Count>
PyObject* memoryOfValues(zor::Vector<Value>& vector, PyObject* owner) {
  auto* first = vector.data() ? components(*vector.data()) : nullptr;
  Memory memory = packedMemory(first, {static_cast<long>(vector.size()), Count});
  memory.owner = owner;
  memory.vector = &vector;
  return newMemoryView(memory);
}

template <class Scalar>
PyObject* memoryOfNumbers(zor::Vector<Scalar>& vector, PyObject* owner) {
  Memory memory = packedMemory(vector.data(), {static_cast<long>(vector.size())});
  memory.owner = owner;
  memory.vector = &vector;
  return newMemoryView(memory);
}

// ---- the operations of lists; whatever changes the size refuses while a buffer shows the vector

template <class Vector>
Vector* newSlice(Vector const& vector, PyObject* slice) {
  SliceRange const range = listSlice(slice, vector.size());
  auto part = std::make_unique<Vector>();
  part->reserve(range.count);
  for (std::size_t i = 0; i < range.count; ++i) {
    part->push_back(vector[static_cast<std::size_t>(range.position(i))]);
  }
  return part.release();
}

template <class Vector, class Element>
void insertElement(Vector& vector, std::ptrdiff_t index, Element const& element) {
  refuseIfShown(&vector);
  vector.insert(vector.begin() + static_cast<std::ptrdiff_t>(insertionIndex(index, vector.size())), element);
}

template <class Vector>
void insertAll(Vector& vector, std::size_t position, Vector const& added) {
  if (!added.empty()) {
    refuseIfShown(&vector);
    Vector const copy(added); // which may be the vector itself
    vector.insert(vector.begin() + static_cast<std::ptrdiff_t>(position), copy.begin(), copy.end());
  }
}

template <class Vector>
void assignElements(Vector& vector, PyObject* slice, Vector const& items) {
  SliceRange const range = listSlice(slice, vector.size());
  Vector const copy(items);
  if (range.step != 1) {
    checkSliceSize(copy.size(), range);
  } else if (copy.size() != range.count) {
    refuseIfShown(&vector);
    auto const first = vector.begin() + range.start;
    vector.erase(first, first + static_cast<std::ptrdiff_t>(range.count));
    vector.insert(vector.begin() + range.start, copy.begin(), copy.end());
    return;
  }
  for (std::size_t i = 0; i < copy.size(); ++i) {
    vector[static_cast<std::size_t>(range.position(i))] = copy[i];
  }
}

template <class Vector>
void eraseSlice(Vector& vector, PyObject* slice) {
  SliceRange range = listSlice(slice, vector.size());
  if (range.count == 0) {
    return;
  }
  refuseIfShown(&vector);
  if (range.step < 0) {
    range = {range.position(range.count - 1), -range.step, range.count};
  }
  std::size_t deleted = 0;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < vector.size(); ++i) {
    if (deleted < range.count && i == static_cast<std::size_t>(range.position(deleted))) {
      ++deleted;
    } else if (kept++ != i) {
      vector[kept - 1] = std::move(vector[i]);
    }
  }
  vector.erase(vector.begin() + static_cast<std::ptrdiff_t>(kept), vector.end());
}

template <class Vector>
auto popElement(Vector& vector, std::ptrdiff_t index) {
  if (vector.empty()) {
    throw std::out_of_range("pop from an empty vector");
  }
  auto const position = static_cast<std::ptrdiff_t>(checkedIndex(index, vector.size()));
  refuseIfShown(&vector);
  auto element = vector[static_cast<std::size_t>(position)];
  vector.erase(vector.begin() + position);
  return element;
}

/** \return the position of the first equal element in a range of list's rules; throws std::invalid_argument
 */
template <class Vector, class Element>
std::size_t indexOf(Vector const& vector, Element const& element, std::ptrdiff_t start, std::ptrdiff_t stop) {
  auto const first = static_cast<std::ptrdiff_t>(insertionIndex(start, vector.size()));
  auto const last = std::max(first, static_cast<std::ptrdiff_t>(insertionIndex(stop, vector.size())));
  auto const found = std::find(vector.begin() + first, vector.begin() + last, element);
  if (found == vector.begin() + last) {
    throw std::invalid_argument("the vector has no such element");
  }
  return static_cast<std::size_t>(found - vector.begin());
}

template <class Vector, class Element>
void removeElement(Vector& vector, Element const& element) {
  std::size_t const position = indexOf(vector, element, 0, static_cast<std::ptrdiff_t>(vector.size()));
  refuseIfShown(&vector);
  vector.erase(vector.begin() + static_cast<std::ptrdiff_t>(position));
}

/** Sorts numbers or texts; what is not a number goes to the end. */
template <class Vector>
void sortElements(Vector& vector, bool reverse) {
  typedef typename Vector::value_type Element;
  auto end = vector.end();
  if constexpr (std::is_floating_point_v<Element>) {
    end = std::stable_partition(vector.begin(), end, [](Element number) { return number == number; });
  }
  std::sort(vector.begin(), end,
            [reverse](Element const& a, Element const& b) { return reverse ? b < a : a < b; });
}

/** \return a vector as Python text that reads back; of many elements only how many. \param text - of one
 * element */
template <class Vector, class Text>
std::string vectorText(char const* name, Vector const& vector, Text text) {
  std::size_t const longest = 1000;
  if (vector.size() > longest) {
    return "<" + std::string(name) + " of " + std::to_string(vector.size()) + " elements>";
  }
  std::string all = std::string(name) + "([";
  for (std::size_t i = 0; i < vector.size(); ++i) {
    all += (i == 0 ? "" : ", ") + text(vector[i]);
  }
  return all + "])";
}

template <class Scalar>
std::string numberVectorText(char const* name, zor::Vector<Scalar> const& vector) {
  return vectorText(name, vector, [](Scalar number) { return elementText(number); });
}

/** \param name - of the vector: that of the value, followed by "Vector" */
template <std::size_t Count, class Value>
std::string valueVectorText(std::string const& name, zor::Vector<Value> const& vector) {
  std::string const valueName = name.substr(0, name.size() - std::string("Vector").size());
  return vectorText(name.c_str(), vector,
                    [&](Value const& value) { return valueText(valueName.c_str(), value, Count); });
}

/** \return a text as Python writes it */
std::string quotedText(std::string const& text);

/** \return an element as a result: a copy, or the object that a reference holds */
template <class Out, class Element>
Out elementOf(Element const& element) {
  if constexpr (std::is_pointer_v<Out> && !std::is_pointer_v<Element>) {
    return element.get();
  } else {
    return element;
  }
}

/** The object that an element of a vector is, or that it holds. */
template <class Element>
struct ObjectTrait {
  typedef Element Type;
};
template <class Element>
  requires requires(Element element) { element.get(); }
struct ObjectTrait<Element> {
  typedef std::remove_pointer_t<decltype(std::declval<Element>().get())> Type;
};
template <class Element>
using ObjectOf = typename ObjectTrait<Element>::Type;

/** \return an element that is a copy of an object or holds it */
template <class Element>
Element elementFor(ObjectOf<Element>* object) {
  if constexpr (std::is_same_v<Element, ObjectOf<Element>>) {
    return *object;
  } else {
    return Element(object);
  }
}

} // namespace zorBinding
