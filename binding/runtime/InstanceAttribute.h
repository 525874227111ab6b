#pragma once

#include <Python.h>

#include <stdint.h>

/*
 * Attributes of ordinary instances, read and written where the interpreter keeps them: in the values behind
 * the object. Access by name costs a method-cache look-up and several calls, and a wrapper needs the
 * attribute `this` of every argument.
 *
 * Whatever is unusual about an instance (a class with a layout or an attribute hook of its own, a replaced
 * dictionary) makes these functions say that they don't know; the caller then takes the general way.
 *
 * The layouts are CPython 3.14's, which its own headers only show to C; InstanceAttribute.c compares them
 * with those.
 */

/** The attribute values behind an instance. */
typedef struct {
  uint8_t capacity;
  uint8_t size;
  uint8_t embedded;
  uint8_t valid;
  PyObject* values[1];
} ZorInstanceValues;

/** The attribute names that the instances of a class share: this head, a hash table, the entries. */
typedef struct {
  Py_ssize_t references;
  uint8_t log2Size;
  uint8_t log2TableBytes;
  uint8_t kind;
  uint32_t version;
  Py_ssize_t usable;
  Py_ssize_t count;
} ZorAttributeNames;

typedef struct {
  PyObject* name;
  PyObject* value;
} ZorAttributeEntry;

enum {
  ZOR_SHARED_NAMES = 2 /* the kind of names that instances share */,
  ZOR_DICTIONARY_OFFSET = -3 /* in pointers */
};

typedef enum { ZOR_ATTRIBUTE_UNKNOWN, ZOR_ATTRIBUTE_ABSENT, ZOR_ATTRIBUTE_FOUND } ZorAttributeState;

/** The values behind an instance, or null where it keeps its attributes elsewhere. */
static inline ZorInstanceValues* zorInstanceValues(PyObject* instance) {
  PyTypeObject* type = Py_TYPE(instance);
  if (!(type->tp_flags & Py_TPFLAGS_INLINE_VALUES))
    return NULL;
  ZorInstanceValues* values = (ZorInstanceValues*)((char*)instance + type->tp_basicsize);
  return values->valid ? values : NULL;
}

/** The place of a name among the attributes that instances of a class share, or -1. */
static inline Py_ssize_t zorAttributePlace(PyTypeObject* type, PyObject* name) {
  ZorAttributeNames* names = (ZorAttributeNames*)((PyHeapTypeObject*)type)->ht_cached_keys;
  if (names->kind != ZOR_SHARED_NAMES)
    return -1;
  ZorAttributeEntry const* entries =
      (ZorAttributeEntry const*)((char*)(names + 1) + ((size_t)1 << names->log2TableBytes));
  for (Py_ssize_t place = 0; place < names->count; ++place) {
    if (entries[place].name == name)
      return place;
  }
  return -1;
}

/** Finds the attribute `name` (an interned string); `*value` is borrowed, and set only when it is found. */
static inline ZorAttributeState zorReadInstanceAttribute(PyObject* instance, PyObject* name,
                                                         PyObject** value) {
  PyTypeObject* type = Py_TYPE(instance);
  ZorInstanceValues* values = zorInstanceValues(instance);
  if (!values || type->tp_getattro != PyObject_GenericGetAttr)
    return ZOR_ATTRIBUTE_UNKNOWN;
  Py_ssize_t const place = zorAttributePlace(type, name);
  PyObject* found = place < 0 || place >= values->capacity ? NULL : values->values[place];
  if (!found)
    return ZOR_ATTRIBUTE_ABSENT;
  *value = found;
  return ZOR_ATTRIBUTE_FOUND;
}

/** Gives an attribute that the instance doesn't have yet its first value; 0 if it can't be done this way. */
static inline int zorAddInstanceAttribute(PyObject* instance, PyObject* name, PyObject* value) {
  PyTypeObject* type = Py_TYPE(instance);
  ZorInstanceValues* values = zorInstanceValues(instance);
  // A dictionary over the values keeps a count of its own.
  if (!values || type->tp_setattro != PyObject_GenericSetAttr ||
      ((PyObject**)instance)[ZOR_DICTIONARY_OFFSET])
    return 0;
  Py_ssize_t const place = zorAttributePlace(type, name);
  if (place < 0 || place >= values->capacity || values->values[place])
    return 0;
  values->values[place] = Py_NewRef(value);
  uint8_t* order = (uint8_t*)&values->values[values->capacity];
  order[values->size++] = (uint8_t)place;
  return 1;
}
