// Shared objects, their names, frames, events and callbacks.

%{
#include "runtime/PythonFunction.h"

// Called when the proxy of a reference-counted object dies: says that the overrides of a Python subclass are gone
// although the toolkit goes on using the object.
static void zorReportOrphan(zor::Referenced* object, PyObject* wrapped) {
  if (object->getReferenceCount() < 2 || !dynamic_cast<Swig::Director*>(object) || Py_IsFinalizing()) return;
  SwigPyObject* holder = SWIG_Python_GetSwigThis(wrapped);
  zor::notify(zor::Notify::NOTIFY_INFO)
      << "the Python object of a " << (holder ? SWIG_TypePrettyName(holder->ty) : "listener")
      << " died while the toolkit uses it: its overrides are not called any more" << zor::endMessage;
}
%}

// The destroy hook of every reference-counted class that has none of its own.
%exception zor::Referenced::~Referenced {
  zorReportOrphan(arg1, swig_obj[0]);
  $action
}
%extend zor::Referenced {
  ~Referenced() { $self->unreference(); }
}
%ignore zor::Referenced::operator=;
%ignore zor::Referenced::tryReference;
%ignore zor::Referenced::getOrCreateObserverBlock;
%ignore zor::Referenced::setDeleteHandler;
%ignore zor::Referenced::getDeleteHandler;
%ignore zor::Referenced::deleteUsingDeleteHandler;
%ignore zor::Referenced::Referenced(Referenced const&);
ZOR_SHARED(zor::Referenced)
ZOR_SHARED(zor::Object)
ZOR_SHARED(zor::Component)
ZOR_SHARED(zor::Frame)

%include <zor/Referenced.h>

%include <zor/Object.h>
%ignore zor::Component::getObjects;
ZOR_LENT_TO_CALLBACK(zor::Object)
%define ZOR_COMPONENT_METHOD(METHOD, ARGUMENTS)
ZOR_STANDARD(zor::Component::METHOD, )
ZOR_UPCALL(zor::Component, METHOD, ARGUMENTS)
%enddef
ZOR_COMPONENT_METHOD(setContext, (arg2))
ZOR_COMPONENT_METHOD(rebind, ())
ZOR_COMPONENT_METHOD(addObject, (arg2, arg3))
ZOR_COMPONENT_METHOD(removeObject, (arg2))
ZOR_COMPONENT_METHOD(printSubtree, ())
%include <zor/Component.h>
ZOR_INNER_RESULT(zor::Frame::getLocalMatrix)
%include <zor/Frame.h>

%ignore zor::ScopedLock;
%ignore zor::Mutex::operator=;
%extend zor::Mutex {
  %pythoncode %{
    def __enter__(self) -> "Mutex":
        """Takes the lock: `with mutex:` holds it for a block."""
        self.lock()
        return self

    def __exit__(self, *error: object) -> None:
        self.unlock()
  %}
}
%include <zor/Mutex.h>
%extend zor::HighAccuracyTimer {
  %pythoncode %{
    def __repr__(self):
        return f"<HighAccuracyTimer, {'running' if self.isRunning() else 'stopped'} at {self.getTime():.3f} ms>"
  %}
}
%include <zor/HighAccuracyTimer.h>

%ignore zor::Name::Name(char const*);
%ignore zor::Name::c_str;
%ignore zor::Name::operator==;
%ignore zor::Name::operator<;
%feature("python:maybecall") zor::Name::__eq__;
%copyctor zor::Name;
%feature("python:maybecall") zor::Name::__lt__;
ZOR_COPIED(zor::Name)
%extend zor::Name {
  bool __lt__(zor::Name const& other) const { return *$self < other; }
  bool __eq__(zor::Name const& other) const { return *$self == other; }
  size_t __hash__() const { return $self->hash() >> 4; }
  %pythoncode %{
    def __str__(self):
        return self.str()

    def __repr__(self):
        return f"Name({self.str()!r})"

    def __reduce__(self):
        return (type(self), (self.str(),))
  %}
}
%ignore std::hash;
%include <zor/Name.h>

// Events and callbacks hold C++ functions; from Python, any callable without parameters will do. What it raises
// goes to the script manager.
%{
typedef zor::Event::CallbackType ZorEventListener;
typedef zor::BoolEvent::CallbackType ZorBoolEventListener;
%}
%newobject zor::BoolEvent::add;
%rename(BoolListener) ZorBoolEventListener;
%nodefaultctor ZorBoolEventListener;
%copyctor zor::Callback;
%copyctor zor::Event;
%copyctor zor::BoolEvent;
%newobject zor::BoolEvent::add;
%rename(raise_) zor::BoolEvent::raise;
%newobject zor::Event::add;
%rename(raise_) zor::Event::raise;

%nodefaultctor ZorEventListener;
%rename(Listener) ZorEventListener;
/** Keeps a function listening to an event. */
class ZorEventListener {
public:
  ~ZorEventListener();
  bool isValid() const;
  /** Stops listening. */
  void reset();
  %extend {
    %pythoncode %{
    def __repr__(self):
        return f"<{type(self).__name__}, {'listening' if self.isValid() else 'reset'}>"
    %}
  }
};

/** Keeps a function listening to an event with a truth value. */
class ZorBoolEventListener {
public:
  ~ZorBoolEventListener();
  bool isValid() const;
  /** Stops listening. */
  void reset();
  %extend {
    %pythoncode %{
    def __repr__(self):
        return f"<{type(self).__name__}, {'listening' if self.isValid() else 'reset'}>"
    %}
  }
};

namespace zor {

/** A function that the toolkit calls, for instance on every step; calling an empty one does nothing. */
class Callback {
public:
  Callback();
  bool isValid() const;
  /** Calls the function, if there is one. */
  void call() const;
  /** Forgets the function. */
  void clear();
};
%extend Callback {
  /** \param function - called without arguments */
  Callback(PyObject* function) {
    return new zor::Callback(zorBinding::functionOf(function, "zor::Callback"));
  }
  %pythoncode %{
    def __call__(self) -> None:
        """Calls the function, if there is one."""
        self.call()

    def __bool__(self) -> bool:
        return self.isValid()

    def __repr__(self):
        return f"<Callback, {'valid' if self else 'empty'}>"
  %}
}

/** A signal to which any number of functions listen. */
class Event {
public:
  Event();
  /** \return number of functions that listen */
  size_t getNumListeners() const;
  /** Stops all functions from listening. */
  void clear();
  /** Calls everything that listens. */
  void raise();
};
%extend Event {
  /**
   * Adds a function.
   * \param function - called without arguments
   * \return the listener: the function listens as long as it is kept
   */
  ZorEventListener* add(PyObject* function) {
    return new ZorEventListener($self->add(zorBinding::functionOf(function, "zor::Event")));
  }
  %pythoncode %{
    def __repr__(self):
        return f"<{type(self).__name__}, {self.getNumListeners()} listening>"
  %}
}

/** A signal with a truth value to which any number of functions listen. */
class BoolEvent {
public:
  BoolEvent();
  /** \return number of functions that listen */
  size_t getNumListeners() const;
  /** Stops all functions from listening. */
  void clear();
  /** Calls everything that listens. */
  void raise(bool value);
};
%extend BoolEvent {
  /**
   * Adds a function.
   * \param function - called with the truth value
   * \return the listener: the function listens as long as it is kept
   */
  ZorBoolEventListener* add(PyObject* function) {
    return new ZorBoolEventListener($self->add(zorBinding::boolFunctionOf(function, "zor::BoolEvent")));
  }
  %pythoncode %{
    def __repr__(self):
        return f"<{type(self).__name__}, {self.getNumListeners()} listening>"
  %}
}

} // namespace zor
