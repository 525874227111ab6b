// Toolkit classes that Python may derive from: how their calls reach Python and what becomes of errors.

// A method is looked up at every call, so that one that is replaced on the object is called from then on. (The
// generator's table of methods would also keep the object alive for good.)
%begin %{
#define SWIG_PYTHON_DIRECTOR_NO_VTABLE
%}

// The lock of the directors' ownership maps: SWIG 4.3 frees it where it should release it.
%begin %{
#define PyThread_free_lock PyThread_release_lock
%}

%{
#undef PyThread_free_lock

#include <mutex>
#include <set>
#include <zorPython/ScriptManager.h>
#include "runtime/DeathWatch.h"
#include "runtime/DirectorError.h"
#include "runtime/DynamicType.h"

// Opens the private members of the generator's director base that the end of a Python object must change. Naming a
// private member in an explicit instantiation is allowed, and this is the only way in.
template <auto Self, auto Disowned>
struct ZorDirectorAccess {
  friend void zorSetDirectorSelf(Swig::Director& director, PyObject* self) { director.*Self = self; }
  friend void zorForgetDisowned(Swig::Director& director) { director.*Disowned = false; }
};
void zorSetDirectorSelf(Swig::Director& director, PyObject* self);
void zorForgetDisowned(Swig::Director& director);
template struct ZorDirectorAccess<&Swig::Director::swig_self, &Swig::Director::swig_disown_flag>;

// Takes over when the Python object of a director dies before the toolkit is done with it: a plain proxy, for
// which each method is the toolkit's own. Belongs to the director.
class ZorStandIn {
public:
  ZorStandIn(Swig::Director& director, void* object, std::type_info const& type)
      : m_director(director), m_object(object), m_type(type),
        m_watch(director.swig_get_self(), [this] { takeOver(); }) {
    static bool const isTold = Py_AtExit(forgetAll) == 0;
    (void)isTold;
    std::lock_guard const lock(all().mutex);
    all().standIns.insert(this);
  }
  ZorStandIn(ZorStandIn const&) = delete;
  ~ZorStandIn() {
    {
      std::lock_guard const lock(all().mutex);
      all().standIns.erase(this);
    }
    zorPython::ScriptManager::PyGILGuard const lock;
    if (lock.isHeld()) Py_XDECREF(m_proxy);
  }
  bool isReady() const { return m_watch.isWatching(); }

private:
  struct All {
    std::mutex mutex;
    std::set<ZorStandIn*> standIns;
  };
  static All& all() {
    static All& instance = *new All; // never destroyed: toolkit objects may be the last to go
    return instance;
  }

  // The interpreter has ended: what outlives it has no Python object to give back.
  static void forgetAll() {
    std::lock_guard const lock(all().mutex);
    for (ZorStandIn* standIn : all().standIns) zorForgetDisowned(standIn->m_director);
  }

  void takeOver() {
    // While the interpreter ends, nothing can be made any more, and nothing needs to be called.
    if (!Py_IsFinalizing()) {
      swig_type_info* type = SWIG_TypeQuery(zorBinding::pointerTypeName(m_type).c_str());
      m_proxy = type ? SWIG_NewPointerObj(m_object, type, 0) : nullptr;
      if (!m_proxy) PyErr_Clear();
    }
    zorSetDirectorSelf(m_director, m_proxy ? m_proxy : Py_None);
  }

  Swig::Director& m_director;
  void* const m_object;
  std::type_info const& m_type;
  PyObject* m_proxy = nullptr;
  zorBinding::DeathWatch m_watch;
};

template <class Object>
static void zorPrepareStandIn(Object* object, Swig::Director* director) {
  if (!director->swig_get_self()) return; // every call will say so
  auto standIn = std::make_unique<ZorStandIn>(*director, object, typeid(Object));
  // What can't be watched, such as a number, must not die at all.
  if (!standIn->isReady()) director->swig_disown();
  director->swig_acquire_ownership(standIn.release());
}

// The generator's hook in the constructor of every director.
#undef SWIG_DIRECTOR_RGTR
#define SWIG_DIRECTOR_RGTR(OBJECT, DIRECTOR) zorPrepareStandIn(OBJECT, DIRECTOR)

// What Python gets for a shared toolkit object of a director class, a new reference: the object that overrides its
// methods, or a proxy of its own in place of a stand-in. Null for other objects.
template <class Object>
static PyObject* zorDirectorObject(Object* object) {
  auto* director = dynamic_cast<Swig::Director*>(object);
  PyObject* self = director ? director->swig_get_self() : nullptr;
  SwigPyObject* wrapped = self ? SWIG_Python_GetSwigThis(self) : nullptr;
  if (!wrapped) return nullptr;
  auto const* data = static_cast<SwigPyClientData const*>(wrapped->ty->clientdata);
  // Not the proxy of another object, which a script may have made the director's object as well.
  bool const isStandIn = data && data->klass == reinterpret_cast<PyObject*>(Py_TYPE(self)) &&
                         wrapped->ptr == dynamic_cast<void*>(object);
  if (!isStandIn) return Py_NewRef(self);
  object->reference();
  return SWIG_NewPointerObj(wrapped->ptr, wrapped->ty, SWIG_POINTER_OWN);
}
%}

// Every call holds the interpreter lock throughout, taken on whichever thread it comes, and begins without the error
// of an earlier one. Where there is nobody to call, as when the interpreter has gone, it gives RESULT at once.
%define ZOR_CALLBACK(METHOD, RESULT)
%feature("threadbeginblock") METHOD %{
  zorPython::ScriptManager::PyGILGuard const zorLock;
  if (!zorLock.isHeld() || swig_get_self() == Py_None) return RESULT;
  zorBinding::EarlierError const zorEarlier;
%}
%feature("threadendblock") METHOD %{
  // The lock goes with its scope.
%}
%enddef

// Standard methods: the exception goes to the C++ caller, the Python error stays pending.
%define ZOR_STANDARD(METHOD, RESULT)
ZOR_CALLBACK(METHOD, RESULT)
%enddef

// Script-managed methods: the script manager gets the error under LABEL and the toolkit goes on with RESULT.
%define ZOR_SCRIPT_MANAGED(METHOD, LABEL, SHORT_NAME, FILE, LINE, RESULT)
ZOR_CALLBACK(METHOD, RESULT)
%feature("director:except") METHOD {
  if ($error != NULL) {
    zorBinding::registerDirectorError(LABEL, SHORT_NAME, "swig/configuration/zorPython/" FILE, LINE);
    return RESULT;
  }
}
%enddef

// Arguments that are lent to a callback stay the caller's, but a script may keep them beyond the call: a shared object
// lives on then, a value that lives with the caller becomes a copy.
%{
#include "runtime/Lent.h"

template <class Value>
class ZorLentValue {
public:
  explicit ZorLentValue(PyObject* proxy) : m_proxy(proxy) {}
  ZorLentValue(ZorLentValue const&) = delete;
  ~ZorLentValue() {
    SwigPyObject* wrapped = m_proxy && Py_REFCNT(m_proxy) > 1 ? SWIG_Python_GetSwigThis(m_proxy) : nullptr;
    if (!wrapped || wrapped->own) return;
    wrapped->ptr = new (std::nothrow) Value(*static_cast<Value*>(wrapped->ptr));
    wrapped->own = wrapped->ptr ? SWIG_POINTER_OWN : 0;
  }

private:
  PyObject* m_proxy;
};
%}

%define ZOR_LENT_TO_CALLBACK(CLASS)
%typemap(directorin) CLASS* {
  $input = SWIG_NewPointerObj(SWIG_as_voidptr($1), $descriptor, 0);
  zorBinding::keepLent($input, $1);
}
%enddef

%define ZOR_LENT_VALUE_TO_CALLBACK(CLASS)
%typemap(directorin, noblock=1) CLASS&, CLASS const& {
  $input = SWIG_NewPointerObj(const_cast<CLASS*>(&$1), $descriptor, 0);
  ZorLentValue< CLASS > const zorLent$argnum($input);
}
%enddef

// A result must be exactly a bool.
%typemap(directorout) bool {
  if (!PyBool_Check($1)) {
    Swig::DirectorTypeMismatchException::raise(
        PyExc_TypeError, zorBinding::wrongBoolText(__PRETTY_FUNCTION__).c_str());
  }
  $result = PyObject_IsTrue($1) == 1;
}

// An object as result is copied; None is none.
%typemap(directorout) SWIGTYPE {
  void* address = nullptr;
  if (!SWIG_IsOK(SWIG_ConvertPtr($input, &address, $&descriptor, SWIG_POINTER_NO_NULL)) || !address) {
    Swig::DirectorTypeMismatchException::raise(PyExc_TypeError, "in output value of type '$type'");
  }
  $result = *reinterpret_cast<$&ltype>(address);
}

// A virtual method of a class below those that Python may derive from. A call that comes from the Python object
// which overrides the method, or which lacks it, goes to the toolkit's own implementation.
%define ZOR_UPCALL(CLASS, METHOD, ARGUMENTS)
%exception CLASS::METHOD {
  try {
    auto const* director = dynamic_cast<Swig::Director const*>(arg1);
    if (director && director->swig_get_self() == swig_obj[0]) {
      arg1->CLASS::METHOD ARGUMENTS;
    } else {
      $action
    }
  } catch (...) {
    zorBinding::setToolkitError();
    SWIG_fail;
  }
  if (zorBinding::errorPending()) SWIG_fail;
}
%enddef
