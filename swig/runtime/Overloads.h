// Part of every generated wrapper, placed after its run-time.
// What a dispatcher chose before. Its tests look at nothing but the count and the kinds of the arguments, so
// that the same kinds lead to the same prototype: a few recent findings are kept per name. Kinds that a test
// could tell apart are different keys; arguments whose kind can't be told exactly (lists, iterables, large
// integers, text that is not ASCII, null pointers, chains of wrapped objects) are tested every time.

#include <cfloat>
#include <cmath>
#include <cstdint>

struct ZorOverloadKey {
  static constexpr Py_ssize_t maxArguments = 8;

  Py_ssize_t count;
  struct {
    void const* type;
    uintptr_t kind;
  } arguments[maxArguments];
};

struct ZorOverloads {
  static constexpr unsigned size = 4;

  struct Finding {
    ZorOverloadKey key;
    int prototype;
  };
  Finding findings[size];
  /** Of the time of the findings: a module that joins the registry may add casts. */
  swig_module_info const* newestModule;
  unsigned used;
};

/** The link that a module changes when it joins the registry. */
static inline swig_module_info const* zorNewestModule() {
  static swig_module_info const* const first = SWIG_GetModule(nullptr);
  return first ? first->next : nullptr;
}

/** Integers by the ranges of C's types; 0 for those beyond 30 bits. */
static inline uintptr_t zorIntegerKind(PyObject* object) {
  auto* number = reinterpret_cast<PyLongObject*>(object);
  if (!PyUnstable_Long_IsCompact(number))
    return 0;
  Py_ssize_t const value = PyUnstable_Long_CompactValue(number);
  if (value < 0)
    return value >= INT8_MIN ? 8 : value >= INT16_MIN ? 9 : 10;
  return value <= INT8_MAX     ? 11
         : value <= UINT8_MAX  ? 12
         : value <= INT16_MAX  ? 13
         : value <= UINT16_MAX ? 14
                               : 15;
}

/** What tests can see of an argument besides its Python type; 0 if that can't be told. */
static inline uintptr_t zorArgumentKind(PyObject* object) {
  PyTypeObject const* type = Py_TYPE(object);
  if (type->tp_flags & Py_TPFLAGS_INLINE_VALUES) {
    SwigPyObject const* wrapped = zorQuickWrapped(object);
    // The iterators of all containers share one type, and tests look behind it.
    static swig_type_info const* const iterators = SWIG_TypeQuery("swig::SwigPyIterator *");
    bool const isPlain = wrapped && wrapped->ptr && !wrapped->next && wrapped->ty != iterators;
    return isPlain ? reinterpret_cast<uintptr_t>(wrapped->ty) : 0;
  }
  if (type == &PyLong_Type)
    return zorIntegerKind(object);
  if (type == &PyFloat_Type) {
    double const value = PyFloat_AS_DOUBLE(object);
    return !std::isfinite(value) ? 5 : std::fabs(value) <= FLT_MAX ? 6 : 7;
  }
  if (type == &PyUnicode_Type)
    return PyUnicode_IS_COMPACT_ASCII(object) ? 2 + (PyUnicode_GET_LENGTH(object) == 1) : 0;
  return object == Py_None || type == &PyBool_Type;
}

static inline bool zorSameKey(ZorOverloadKey const& one, ZorOverloadKey const& other) {
  if (one.count != other.count)
    return false;
  for (Py_ssize_t i = 0; i < one.count; ++i) {
    if (one.arguments[i].kind != other.arguments[i].kind || one.arguments[i].type != other.arguments[i].type)
      return false;
  }
  return true;
}

/** Fills the key; the prototype found before for it, or -1. A key that can't be used has the count -1. */
static int zorRecallOverload(ZorOverloads* overloads, ZorOverloadKey* key, Py_ssize_t count,
                             PyObject** arguments) {
  key->count = -1;
  if (count > ZorOverloadKey::maxArguments)
    return -1;
  for (Py_ssize_t i = 0; i < count; ++i) {
    key->arguments[i] = {Py_TYPE(arguments[i]), zorArgumentKind(arguments[i])};
    if (key->arguments[i].kind == 0)
      return -1;
  }
  key->count = count;
  if (overloads->newestModule != zorNewestModule()) {
    overloads->newestModule = zorNewestModule();
    overloads->used = 0;
  }
  unsigned const filled = overloads->used < ZorOverloads::size ? overloads->used : ZorOverloads::size;
  for (unsigned entry = 0; entry < filled; ++entry) {
    if (zorSameKey(overloads->findings[entry].key, *key))
      return overloads->findings[entry].prototype;
  }
  return -1;
}

static int zorRememberOverload(ZorOverloads* overloads, ZorOverloadKey const* key, int prototype) {
  if (key->count >= 0)
    overloads->findings[overloads->used++ % ZorOverloads::size] = {*key, prototype};
  return prototype;
}
