// Compares the layouts of InstanceAttribute.h with the interpreter's own, whose headers are for C only.
#define Py_BUILD_CORE_MODULE
#include "InstanceAttribute.h"

#include <internal/pycore_dict.h>
#include <internal/pycore_object.h>

#include <assert.h>
#include <stddef.h>

#define ZOR_SAME_PLACE(OUR_TYPE, OUR_MEMBER, TYPE, MEMBER)                                                   \
  static_assert(offsetof(OUR_TYPE, OUR_MEMBER) == offsetof(TYPE, MEMBER) &&                                  \
                    sizeof(((OUR_TYPE*)0)->OUR_MEMBER) == sizeof(((TYPE*)0)->MEMBER),                        \
                #OUR_MEMBER " is elsewhere in this interpreter")

ZOR_SAME_PLACE(ZorInstanceValues, capacity, PyDictValues, capacity);
ZOR_SAME_PLACE(ZorInstanceValues, size, PyDictValues, size);
ZOR_SAME_PLACE(ZorInstanceValues, valid, PyDictValues, valid);
ZOR_SAME_PLACE(ZorInstanceValues, values, PyDictValues, values);
ZOR_SAME_PLACE(ZorAttributeNames, log2TableBytes, PyDictKeysObject, dk_log2_index_bytes);
ZOR_SAME_PLACE(ZorAttributeNames, kind, PyDictKeysObject, dk_kind);
ZOR_SAME_PLACE(ZorAttributeNames, count, PyDictKeysObject, dk_nentries);
ZOR_SAME_PLACE(ZorAttributeEntry, name, PyDictUnicodeEntry, me_key);
static_assert(sizeof(ZorAttributeNames) == offsetof(PyDictKeysObject, dk_indices),
              "the names' table is elsewhere");
static_assert(sizeof(ZorAttributeEntry) == sizeof(PyDictUnicodeEntry), "entries have another size");
static_assert((int)ZOR_SHARED_NAMES == (int)DICT_KEYS_SPLIT, "shared names are another kind");
static_assert((int)ZOR_DICTIONARY_OFFSET * (int)sizeof(PyObject*) == MANAGED_DICT_OFFSET,
              "dictionaries are elsewhere");
