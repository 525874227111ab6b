// std::vector of values that are copied in and out. The declarations, and so names, order and messages, are those of
// SWIG's library; as in iterators.i other C++ code stands behind them, through fragments that are defined first,
// through guards and through typemaps that name their parameter. What is different:
//  - element proxies stand for their position, wherever the storage moves, and own a copy once the position is gone;
//  - whatever moves, grows or shrinks the storage raises BufferError while a buffer shows it;
//  - positions in `insert` and `erase` must lie in that very vector, `front`, `back` and `pop_back` need an element;
//  - the overload test does not use up an iterable that can be read only once, and what an iterable raises is what
//    the caller gets;
//  - slices read any bounds safely, and a vector may be assigned to a slice of itself.

%include "shared/iterators.i"

%{
#include "runtime/StandardVector.h"
#include "runtime/Values.h"
#include <vector>
%}

// Slices and positions, under the names that the library's declarations use.
%fragment("SwigPySequence_Base", "header", fragment="<stddef.h>", fragment="StdTraits") %{
// The library reads slice objects with this function, which leaves some bounds unset.
#undef PySlice_GetIndices
#define PySlice_GetIndices zorBinding::readSlice

namespace swig {

template <class Sequence>
struct traits_reserve {
  static void reserve(Sequence&, typename Sequence::size_type) {}
};

template <class T>
std::vector<T>* getslice(std::vector<T> const* vector, ptrdiff_t start, ptrdiff_t stop, ptrdiff_t step) {
  return new std::vector<T>(
      zorBinding::slice(*vector, zorBinding::readableSlice(start, stop, step, vector->size())));
}

template <class T>
void setslice(std::vector<T>* vector, ptrdiff_t start, ptrdiff_t stop, ptrdiff_t step, std::vector<T> const& items) {
  zorBinding::assignSlice(*vector, zorBinding::changeableSlice(start, stop, step, vector->size()), items);
}

template <class T>
void delslice(std::vector<T>* vector, ptrdiff_t start, ptrdiff_t stop, ptrdiff_t step) {
  zorBinding::deleteSlice(*vector, zorBinding::changeableSlice(start, stop, step, vector->size()));
}

template <class T>
typename std::vector<T>::iterator getpos(std::vector<T>* vector, ptrdiff_t index) {
  return vector->begin() + static_cast<ptrdiff_t>(zorBinding::checkedIndex(index, vector->size()));
}

template <class T>
typename std::vector<T>::const_iterator cgetpos(std::vector<T> const* vector, ptrdiff_t index) {
  return vector->begin() + static_cast<ptrdiff_t>(zorBinding::checkedIndex(index, vector->size()));
}

template <class T>
void erase(std::vector<T>* vector, typename std::vector<T>::iterator position) {
  zorBinding::Resizing<T> const resizing(*vector);
  vector->erase(position);
}

} // namespace swig
%}

// Element proxies: keep their vector alive, and are told when its storage changes.
%fragment("reference_container_owner", "header") %{
namespace swig {

template <class Category>
struct container_owner {
  static void back_reference(PyObject* child, PyObject* owner) {
    static PyObject* const name = PyUnicode_InternFromString("__swig_container");
    SwigPyObject* const element = SWIG_Python_GetSwigThis(child);
    SwigPyObject* const container = SWIG_Python_GetSwigThis(owner);
    if (!element || !container) return;
    zorBinding::watchElement(container->ptr, {reinterpret_cast<PyObject*>(element), &element->ptr, &element->own});
    if (PyObject_SetAttr(child, name, owner) != 0) PyErr_Clear(); // a plain wrapped object
  }
};

} // namespace swig
%}

// Iterables of wrapped elements as vectors.
%fragment("StdSequenceTraits", "header", fragment="StdTraits", fragment="SwigPySequence_Base", fragment="SwigPyIterator") %{
namespace swig {

template <class T>
struct traits_asptr_stdseq {
  typedef typename T::value_type element;

  // The vector of an object, or a new one of its items. Without a place for it only tests, and then looks at the
  // items only where it can do so without using them up. May leave the error of an iterable pending.
  static int asptr(PyObject* object, T** vector) {
    void* wrapped = nullptr;
    if (SWIG_IsOK(SWIG_ConvertPtr(object, &wrapped, zorTypeOf<T>, 0))) {
      if (vector) *vector = static_cast<T*>(wrapped);
      return SWIG_OLDOBJ;
    }
    if (!isIterable(object)) return SWIG_TypeError;
    if (!vector) return isReadOnce(object) || read(object, nullptr) ? SWIG_OK : (PyErr_Clear(), SWIG_TypeError);
    std::unique_ptr<T> items(new T());
    if (!read(object, items.get())) return SWIG_TypeError;
    *vector = items.release();
    return SWIG_NEWOBJ;
  }

private:
  static bool isIterable(PyObject* object) {
    if (SWIG_Python_GetSwigThis(object)) {
      return SWIG_IsOK(SWIG_ConvertPtr(object, nullptr, SwigPyIterator::descriptor(), SWIG_POINTER_NO_NULL));
    }
    return Py_TYPE(object)->tp_iter || PySequence_Check(object);
  }

  static bool isReadOnce(PyObject* object) {
    if (PyObject_Size(object) >= 0) return false;
    PyErr_Clear();
    return true;
  }

  static bool read(PyObject* object, T* items) {
    SwigVar_PyObject iterator = PyObject_GetIter(object);
    if (!iterator) return false;
    while (true) {
      SwigVar_PyObject item = PyIter_Next(iterator);
      if (!item) return !PyErr_Occurred();
      void* value = nullptr;
      if (!SWIG_IsOK(SWIG_ConvertPtr(item, &value, zorTypeOf<element>, SWIG_POINTER_NO_NULL))) return false;
      if (items) items->push_back(*static_cast<element*>(value));
    }
  }
};

template <class T>
struct traits_from_stdseq {
  static PyObject* from(T const& vector) { return traits_from_ptr<T>::from(new T(vector), SWIG_POINTER_OWN); }
};

} // namespace swig
%}

%ignore std::vector::rbegin;
%ignore std::vector::rend;
%include <std_vector.i>

// What the library's declarations say they throw goes on to the guards below.
%typemap(throws, noblock=1) std::out_of_range, std::invalid_argument "throw;"

// An iterator as a place in a vector. False, with a Python error set, if it is none.
%fragment("ZorVectorPosition", "header", fragment="SwigPyIterator_T") %{
template <class T>
static bool zorReadPosition(PyObject* object, std::vector<T>* vector, typename std::vector<T>::iterator& position,
                            char const* message) {
  typedef swig::SwigPyIterator_T<typename std::vector<T>::iterator> Iterator;
  void* wrapped = nullptr;
  int const result = SWIG_ConvertPtr(object, &wrapped, swig::SwigPyIterator::descriptor(), 0);
  auto const* const iterator =
      SWIG_IsOK(result) ? dynamic_cast<Iterator*>(static_cast<swig::SwigPyIterator*>(wrapped)) : nullptr;
  if (!iterator) {
    PyErr_SetString(PyExc_TypeError, message);
    return false;
  }
  try {
    position = iterator->current(vector);
    return true;
  } catch (...) {
    zorBinding::setSequenceError();
    return false;
  }
}
%}

// An iterable as a vector. False, with a Python error set, if it is none; what the iterable raises stays the error.
%fragment("ZorVectorItems", "header", fragment="StdVectorTraits") %{
template <class T>
static bool zorReadItems(PyObject* object, std::vector<T>*& vector, int& result, char const* message) {
  result = SWIG_ERROR;
  try {
    result = swig::asptr(object, &vector);
  } catch (...) {
    zorBinding::setToolkitError();
  }
  if (SWIG_IsOK(result) && vector) return true;
  if (!PyErr_Occurred()) {
    PyErr_Format(PyExc_TypeError, "%s%s", SWIG_IsOK(result) ? "invalid null reference " : "", message);
  }
  return false;
}
%}

%define ZOR_VECTOR_GUARD(METHOD, CHECK...)
%exception std::vector::METHOD {
  try {
    CHECK
    $action
  } catch (...) {
    zorBinding::setSequenceError();
    SWIG_fail;
  }
}
%enddef
%define ZOR_VECTOR_RESIZES(METHOD)
ZOR_VECTOR_GUARD(METHOD, zorBinding::Resizing const resizing(*arg1);)
%enddef

ZOR_VECTOR_GUARD(__getslice__)
ZOR_VECTOR_GUARD(__setslice__)
ZOR_VECTOR_GUARD(__delslice__)
ZOR_VECTOR_GUARD(__delitem__)
ZOR_VECTOR_GUARD(__getitem__)
ZOR_VECTOR_GUARD(__setitem__)
ZOR_VECTOR_GUARD(front, zorBinding::checkedIndex(0, arg1->size());)
ZOR_VECTOR_GUARD(back, zorBinding::checkedIndex(0, arg1->size());)
ZOR_VECTOR_RESIZES(append)
ZOR_VECTOR_RESIZES(push_back)
ZOR_VECTOR_RESIZES(pop)
ZOR_VECTOR_RESIZES(clear)
ZOR_VECTOR_RESIZES(reserve)
ZOR_VECTOR_RESIZES(resize)
ZOR_VECTOR_RESIZES(assign)
ZOR_VECTOR_RESIZES(insert)
ZOR_VECTOR_GUARD(erase(iterator pos),
  zorBinding::checkIsElement(*arg1, arg2);
  zorBinding::Resizing const resizing(*arg1);)
ZOR_VECTOR_GUARD(%arg(erase(iterator first, iterator last)),
  zorBinding::checkOrder(*arg1, arg2, arg3);
  zorBinding::Resizing const resizing(*arg1);)
ZOR_VECTOR_GUARD(pop_back,
  if (arg1->empty()) throw std::out_of_range("pop from empty container");
  zorBinding::Resizing const resizing(*arg1);)
ZOR_VECTOR_GUARD(swap,
  zorBinding::Resizing const resizing(*arg1);
  zorBinding::Resizing const otherResizing(*arg2);)
ZOR_VECTOR_GUARD(~vector, zorBinding::releaseElements(arg1, zorBinding::storageOf(*arg1));)

// MANGLED is the element type as the registry spells it.
// An allocator holds nothing: all share one, which nobody needs to destroy.
%define ZOR_STANDARD_VECTOR(NAME, MANGLED, TYPE...)
%init %{
  zorTypeOf< TYPE > = SWIGTYPE_p_ ## MANGLED;
  zorTypeOf<std::vector< TYPE > > = SWIGTYPE_p_std__vectorT_ ## MANGLED ## _t;
%}
%typemap(in, fragment="ZorVectorItems") std::vector< TYPE > const& other (int res = SWIG_OLDOBJ),
    std::vector< TYPE > const& v (int res = SWIG_OLDOBJ) {
  std::vector< TYPE >* vector = nullptr;
  if (!zorReadItems($input, vector, res, "in method '$symname', argument $argnum of type '$type'")) SWIG_fail;
  $1 = vector;
}
%typemap(freearg) std::vector< TYPE > const& other, std::vector< TYPE > const& v "if (SWIG_IsNewObj(res$argnum)) delete $1;"
%typemap(in, fragment="ZorVectorPosition") std::vector< TYPE >::iterator pos, std::vector< TYPE >::iterator first,
    std::vector< TYPE >::iterator last {
  std::vector< TYPE >::iterator position;
  if (!zorReadPosition($input, arg1, position, "in method '$symname', argument $argnum of type '$type'")) SWIG_fail;
  $1 = position;
}
%typemap(out) std::vector< TYPE >::iterator begin, std::vector< TYPE >::iterator end,
    std::vector< TYPE >::iterator insert, std::vector< TYPE >::iterator erase {
  $result = SWIG_NewPointerObj(swig::make_open_iterator(arg1, $1, swig_obj[0]), swig::SwigPyIterator::descriptor(),
                               SWIG_POINTER_OWN);
}
%typemap(out) std::vector< TYPE >::allocator_type get_allocator {
  static $type allocator;
  $result = SWIG_NewPointerObj(&allocator, $&descriptor, 0);
}
%template(NAME) std::vector< TYPE >;
%enddef
