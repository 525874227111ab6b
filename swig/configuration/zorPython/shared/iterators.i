// Iterators of standard vectors. The declarations are those of SWIG's library; this file puts other C++ code behind
// them by defining the library's fragments first. What is different:
//  - `next` and `previous` hold the interpreter lock through the toolkit's guard;
//  - an iterator is a position in a vector that it keeps alive: nothing dangles when the vector changes, and reading
//    outside of it stops the iteration;
//  - steps are arithmetic, so that any count takes no time;
//  - handles on an iterator keep it alive, and += and -= give the very object back.
// The virtual functions of the base are in the library's order: other modules hand their iterators in.

%include "shared/standard_docs.i"

%{
#include <zorPython/ScriptManager.h>
#include <algorithm>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <typeinfo>
#include <vector>

// The registered type of a class; set at start-up, which spares the library's search by name.
template <class T>
static swig_type_info* zorTypeOf = nullptr;
%}

%fragment("SwigPyIterator", "header", fragment="<stddef.h>") %{
namespace swig {

struct stop_iteration {};

struct SwigPyIterator {
private:
  SwigPtr_PyObject _seq;

protected:
  explicit SwigPyIterator(PyObject* sequence) : _seq(sequence) {}

public:
  virtual ~SwigPyIterator() = default;
  virtual PyObject* value() const = 0;
  virtual SwigPyIterator* incr(size_t n = 1) = 0;
  virtual SwigPyIterator* decr(size_t = 1) { throw stop_iteration(); }
  virtual ptrdiff_t distance(SwigPyIterator const&) const { throw std::invalid_argument("operation not supported"); }
  virtual bool equal(SwigPyIterator const&) const { throw std::invalid_argument("operation not supported"); }
  virtual SwigPyIterator* copy() const = 0;

  PyObject* next() {
    zorPython::ScriptManager::PyGILGuard const lock;
    PyObject* const element = value();
    if (element) incr();
    return element;
  }
  PyObject* __next__() { return next(); }
  PyObject* previous() {
    zorPython::ScriptManager::PyGILGuard const lock;
    decr();
    return value();
  }

  SwigPyIterator* advance(ptrdiff_t n) { return n > 0 ? incr(size_t(n)) : decr(size_t(0) - size_t(n)); }
  bool operator==(SwigPyIterator const& other) const { return equal(other); }
  bool operator!=(SwigPyIterator const& other) const { return !equal(other); }
  SwigPyIterator& operator+=(ptrdiff_t n) { return *advance(n); }
  SwigPyIterator& operator-=(ptrdiff_t n) { return *retreat(n); }
  SwigPyIterator* operator+(ptrdiff_t n) const {
    std::unique_ptr<SwigPyIterator> moved(copy());
    moved->advance(n);
    return moved.release();
  }
  SwigPyIterator* operator-(ptrdiff_t n) const {
    std::unique_ptr<SwigPyIterator> moved(copy());
    moved->retreat(n);
    return moved.release();
  }
  ptrdiff_t operator-(SwigPyIterator const& other) const { return other.distance(*this); }

  static swig_type_info* descriptor() {
    static swig_type_info* const type = SWIG_TypeQuery("swig::SwigPyIterator *");
    return type;
  }

private:
  // As advance(-n), for every n.
  SwigPyIterator* retreat(ptrdiff_t n) { return n < 0 ? incr(size_t(0) - size_t(n)) : decr(size_t(n)); }
};

} // namespace swig
%}

%fragment("SwigPyIterator_T", "header", fragment="SwigPyIterator", fragment="StdTraits") %{
namespace swig {

// A position in a vector, the same code for all element types. An open iterator moves freely; a closed one stays
// between the start and the end that the vector had when it was made.
class PositionIterator : public SwigPyIterator {
public:
  SwigPyIterator* incr(size_t n = 1) override {
    size_t const room = static_cast<size_t>(last() - std::min(m_position, last()));
    m_position += static_cast<ptrdiff_t>(std::min(n, room));
    if (n > room && m_isClosed) throw stop_iteration();
    return this;
  }
  SwigPyIterator* decr(size_t n = 1) override {
    size_t const room = static_cast<size_t>(m_position - first());
    m_position -= static_cast<ptrdiff_t>(std::min(n, room));
    if (n > room && m_isClosed) throw stop_iteration();
    return this;
  }
  ptrdiff_t distance(SwigPyIterator const& other) const override { return sameKind(other).m_position - m_position; }
  bool equal(SwigPyIterator const& other) const override {
    PositionIterator const& same = sameKind(other);
    return same.container() == container() && same.m_position == m_position;
  }

protected:
  PositionIterator(PyObject* sequence, ptrdiff_t position)
      : SwigPyIterator(sequence), m_position(position) {}

  virtual void const* container() const = 0;
  virtual ptrdiff_t size() const = 0;

  void close() {
    m_isClosed = true;
    m_end = size();
  }
  bool isOutside() const { return m_position < 0 || m_position >= std::min(last(), size()); }
  ptrdiff_t position() const { return m_position; }

private:
  static constexpr ptrdiff_t FAR = PTRDIFF_MAX / 4; // further than any vector reaches; two of them still add up

  ptrdiff_t first() const { return m_isClosed ? 0 : -FAR; }
  ptrdiff_t last() const { return m_isClosed ? std::min(m_end, size()) : FAR; }
  PositionIterator const& sameKind(SwigPyIterator const& other) const {
    if (typeid(other) != typeid(*this)) throw std::invalid_argument("bad iterator type");
    return static_cast<PositionIterator const&>(other);
  }

  ptrdiff_t m_position;
  ptrdiff_t m_end = 0;
  bool m_isClosed = false;
};

template <class OutIterator>
class SwigPyIterator_T : public PositionIterator {
public:
  typedef typename std::iterator_traits<OutIterator>::value_type value_type;
  typedef std::vector<value_type> sequence;

  SwigPyIterator_T(sequence* vector, OutIterator current, PyObject* owner)
      : PositionIterator(owner, current - vector->begin()), m_vector(vector) {}

  static SwigPyIterator* closed(sequence* vector, PyObject* owner) {
    auto* const result = new SwigPyIterator_T(vector, vector->begin(), owner);
    result->close();
    return result;
  }

  // The place in the given vector. Throws std::invalid_argument if it is another one, std::out_of_range.
  OutIterator current(sequence* vector) const {
    if (vector != m_vector) throw std::invalid_argument("iterator of another vector");
    if (position() < 0 || position() > size()) throw std::out_of_range("iterator out of range");
    return vector->begin() + position();
  }

  PyObject* value() const override {
    if (isOutside()) throw stop_iteration();
    auto* const element = new value_type((*m_vector)[static_cast<size_t>(position())]);
    return SWIG_NewPointerObj(element, zorTypeOf<value_type>, SWIG_POINTER_OWN);
  }
  SwigPyIterator* copy() const override { return new SwigPyIterator_T(*this); }

protected:
  void const* container() const override { return m_vector; }
  ptrdiff_t size() const override { return static_cast<ptrdiff_t>(m_vector->size()); }

private:
  sequence* m_vector;
};

template <class T>
SwigPyIterator* make_open_iterator(std::vector<T>* vector, typename std::vector<T>::iterator current, PyObject* owner) {
  return new SwigPyIterator_T<typename std::vector<T>::iterator>(vector, current, owner);
}

// What the library calls for `iterator()`, with the vector's Python object.
template <class OutIterator>
SwigPyIterator* make_output_iterator(OutIterator const&, OutIterator const&, OutIterator const&, PyObject* owner) {
  typedef typename SwigPyIterator_T<OutIterator>::sequence sequence;
  void* vector = nullptr;
  SWIG_ConvertPtr(owner, &vector, zorTypeOf<sequence>, 0);
  return SwigPyIterator_T<OutIterator>::closed(static_cast<sequence*>(vector), owner);
}

} // namespace swig
%}

// A handle on an iterator that something else owns: it keeps that object alive.
%fragment("ZorIteratorHandle", "header", fragment="SwigPyIterator") %{
static PyObject* zorIteratorHandle(swig::SwigPyIterator* iterator, PyObject* owner) {
  static PyObject* const name = PyUnicode_InternFromString("_owner");
  PyObject* const handle = SWIG_NewPointerObj(iterator, swig::SwigPyIterator::descriptor(), 0);
  if (!handle) return nullptr;
  // A handle's own owner instead of the handle: a loop of calls must not make a chain.
  PyObject* const first = PyObject_GetAttr(owner, name);
  PyErr_Clear();
  if (PyObject_SetAttr(handle, name, first ? first : owner) != 0) PyErr_Clear(); // a plain wrapped object
  Py_XDECREF(first);
  return handle;
}
%}
%typemap(out, fragment="ZorIteratorHandle") swig::SwigPyIterator* {
  if ($owner & SWIG_POINTER_OWN) {
    $result = SWIG_NewPointerObj($1, $descriptor, SWIG_POINTER_OWN);
  } else {
    $result = zorIteratorHandle($1, swig_obj[0]);
  }
}

// The object itself moves: no ownership changes hands, also when the step fails.
%typemap(out) swig::SwigPyIterator& "$result = Py_NewRef(swig_obj[0]);"
%feature("del", "0") swig::SwigPyIterator::operator +=;
%feature("del", "0") swig::SwigPyIterator::operator -=;
%feature("new", "0") swig::SwigPyIterator::operator +=;
%feature("new", "0") swig::SwigPyIterator::operator -=;
