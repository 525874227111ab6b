// Part of every generated wrapper, placed before the generator's SwigPyObject_Check.
// Wrapped objects on the short way. A proxy keeps its wrapped object as the attribute `this`; most are
// ordinary instances, where it can be read without a call by name, and most arguments are of exactly the type
// asked for.

#include "runtime/InstanceAttribute.h"

static int SwigPyObject_Check_generated(PyObject* object);
static SwigPyObject* SWIG_Python_GetSwigThis_generated(PyObject* object);
static int SWIG_Python_ConvertPtrAndOwn_generated(PyObject* object, void** pointer, swig_type_info* type,
                                                  int flags, int* own);
static PyObject* SWIG_Python_NewShadowInstance_generated(SwigPyClientData* data, PyObject* wrapped);
static PyObject* SWIG_Python_InitShadowInstance_generated(PyObject* arguments);

/** The name under which proxies keep their wrapped object. */
static inline PyObject* zorThisName() {
  static PyObject* const name = PyUnicode_InternFromString("this");
  return name;
}

/** Whether an object is a wrapped one, of this module or of a sibling: each has a type object of its own for
 * them. */
static inline int SwigPyObject_Check(PyObject* object) {
  constexpr unsigned slots = 16;
  static PyTypeObject* known[slots];
  PyTypeObject* type = Py_TYPE(object);
  PyTypeObject*& slot = known[(reinterpret_cast<uintptr_t>(type) >> 5) % slots];
  if (slot == type)
    return 1;
  if (!SwigPyObject_Check_generated(object))
    return 0;
  slot = type;
  return 1;
}

/** The wrapped object of a proxy (or the object itself), borrowed; null where there is none or the way there
 * is long. */
static inline SwigPyObject* zorQuickWrapped(PyObject* object) {
  PyObject* held = nullptr;
  if (zorReadInstanceAttribute(object, zorThisName(), &held) == ZOR_ATTRIBUTE_FOUND) {
    return SwigPyObject_Check(held) ? reinterpret_cast<SwigPyObject*>(held) : nullptr;
  }
  return SwigPyObject_Check(object) ? reinterpret_cast<SwigPyObject*>(object) : nullptr;
}

static SwigPyObject* SWIG_Python_GetSwigThis(PyObject* object) {
  SwigPyObject* wrapped = zorQuickWrapped(object);
  return wrapped ? wrapped : SWIG_Python_GetSwigThis_generated(object);
}

/** The cast from a type to another, found by address: entries of the registry are shared by all modules. */
static inline swig_cast_info* zorFindCast(swig_type_info const* from, swig_type_info const* to) {
  for (swig_cast_info* cast = to->cast; cast; cast = cast->next) {
    if (cast->type == from)
      return cast;
  }
  return nullptr;
}

static int SWIG_Python_ConvertPtrAndOwn(PyObject* object, void** pointer, swig_type_info* type, int flags,
                                        int* own) {
  constexpr int known = SWIG_POINTER_NO_NULL | SWIG_POINTER_DISOWN;
  bool const plain = object && object != Py_None && type && !own && (flags & ~known) == 0;
  SwigPyObject* wrapped = plain ? zorQuickWrapped(object) : nullptr;
  if (wrapped) {
    swig_cast_info* cast = wrapped->ty == type ? nullptr : zorFindCast(wrapped->ty, type);
    if (wrapped->ty == type || cast) {
      int newMemory = 0;
      if (pointer)
        *pointer = SWIG_TypeCast(cast, wrapped->ptr, &newMemory);
      if (flags & SWIG_POINTER_DISOWN)
        wrapped->own = 0;
      if (!newMemory)
        return SWIG_OK;
    }
  }
  return SWIG_Python_ConvertPtrAndOwn_generated(object, pointer, type, flags, own);
}

/** Memory for a wrapped object: there are many of them, most of them short-lived. */
class ZorWrappedMemory {
public:
  static SwigPyObject* take() {
    if (!s_free)
      return PyObject_New(SwigPyObject, SwigPyObject_type());
    SwigPyObject* object = s_free;
    s_free = reinterpret_cast<SwigPyObject*>(object->next);
    --s_count;
    return reinterpret_cast<SwigPyObject*>(
        PyObject_Init(reinterpret_cast<PyObject*>(object), SwigPyObject_type()));
  }

  static void give(SwigPyObject* object) {
    if (s_count == limit) {
      PyObject_Free(object);
      return;
    }
    object->next = reinterpret_cast<PyObject*>(s_free);
    s_free = object;
    ++s_count;
  }

private:
#ifdef __SANITIZE_ADDRESS__
  static constexpr int limit = 0; // memory in use twice would go unseen
#else
  static constexpr int limit = 256;
#endif
  static inline SwigPyObject* s_free = nullptr;
  static inline int s_count = 0;
};

/** A new instance of an ordinary class, made as object.__new__ makes it; null where the class makes its own.
 */
static inline PyObject* zorPlainInstance(SwigPyClientData const* data) {
  auto* type = reinterpret_cast<PyTypeObject*>(data->klass);
  if (!PyType_Check(data->klass) || type->tp_new != PyBaseObject_Type.tp_new ||
      (type->tp_flags & Py_TPFLAGS_IS_ABSTRACT)) {
    return nullptr;
  }
  return type->tp_alloc(type, 0);
}

static PyObject* SWIG_Python_NewShadowInstance(SwigPyClientData* data, PyObject* wrapped) {
  PyObject* instance = zorPlainInstance(data);
  if (!instance) {
    if (PyErr_Occurred())
      return nullptr;
    return SWIG_Python_NewShadowInstance_generated(data, wrapped);
  }
  if (!zorAddInstanceAttribute(instance, zorThisName(), wrapped) &&
      PyObject_SetAttr(instance, zorThisName(), wrapped) < 0) {
    Py_CLEAR(instance);
  }
  return instance;
}

/** Attaches a new wrapped object to the proxy that is being made. */
static PyObject* SWIG_Python_InitShadowInstance(PyObject* arguments) {
  PyObject* held = nullptr;
  bool const fresh =
      PyTuple_Check(arguments) && PyTuple_GET_SIZE(arguments) == 2 &&
      zorReadInstanceAttribute(PyTuple_GET_ITEM(arguments, 0), zorThisName(), &held) == ZOR_ATTRIBUTE_ABSENT;
  if (fresh && zorAddInstanceAttribute(PyTuple_GET_ITEM(arguments, 0), zorThisName(),
                                       PyTuple_GET_ITEM(arguments, 1))) {
    return SWIG_Py_Void();
  }
  return SWIG_Python_InitShadowInstance_generated(arguments);
}
