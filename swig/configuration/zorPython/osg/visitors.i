// What goes through the graph, and what nodes call: classes that Python may derive from.

OSG_SHARED(FrameStamp)
OSG_OWNED(FrameStamp)
OSG_OWNED(NodeVisitor)
OSG_HELD(Callback)
OSG_OWNED(NodeCallback)
OSG_OWNED_CLASS(osgUtil, UpdateVisitor)
// Their destructors are virtual, and nobody's business but the last reference's.
%warnfilter(514) osg::NodeVisitor;
%warnfilter(514) osg::NodeCallback;
%warnfilter(514) osg::Camera::DrawCallback;
%feature("director") osg::NodeVisitor;
%feature("director") osg::NodeCallback;
%feature("compactdefaultargs") osg::NodeVisitor::NodeVisitor;

%{
#include "runtime/Traversal.h"

static PyObject* zorNodeList(osg::NodePath const& path) {
  PyObject* list = PyList_New(static_cast<Py_ssize_t>(path.size()));
  for (std::size_t i = 0; list && i < path.size(); ++i)
    PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), zorWrapNode(path[i], SWIGTYPE_p_osg__Node));
  return list;
}

// What Python gets of an object that it may override: the object that does so, else a proxy.
template <class Object>
static PyObject* zorWrapDirector(Object* object, swig_type_info* type) {
  auto* director = dynamic_cast<Swig::Director*>(object);
  PyObject* self = director ? director->swig_get_self() : nullptr;
  SwigPyObject* wrapped = self ? SWIG_Python_GetSwigThis(self) : nullptr;
  auto const* data = wrapped ? static_cast<SwigPyClientData const*>(wrapped->ty->clientdata) : nullptr;
  // A plain proxy stands in for an object that has died, and is the director's own.
  bool const overrides = data && data->klass != reinterpret_cast<PyObject*>(Py_TYPE(self));
  return overrides ? Py_NewRef(self) : zorWrapNode(object, type);
}

// Calls a Python function for a node, then goes on to the children.
class ZorFunctionCallback : public osg::NodeCallback {
public:
  explicit ZorFunctionCallback(PyObject* function) : m_function(Py_NewRef(function)) {}

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    osg::ref_ptr<osg::Referenced> const kept(this); // the function may take its own callback away
    if (call(node, visitor)) traverse(node, visitor);
  }

protected:
  ~ZorFunctionCallback() override {
    zorPython::ScriptManager::PyGILGuard const lock;
    if (lock.isHeld()) Py_DECREF(m_function);
  }

private:
  bool call(osg::Node* node, osg::NodeVisitor* visitor) {
    zorPython::ScriptManager::PyGILGuard const lock;
    if (!lock.isHeld()) return true;
    zorBinding::EarlierError const earlier;
    zorBinding::InVisitor const inside(*visitor);
    PyObject* arguments[] = {zorWrapNode(node, SWIGTYPE_p_osg__Node), zorWrapDirector(visitor, SWIGTYPE_p_osg__NodeVisitor)};
    bool const isReady = arguments[0] && arguments[1];
    PyObject* result = isReady ? PyObject_Vectorcall(m_function, arguments, 2, nullptr) : nullptr;
    bool const goesOn = result != Py_False;
    for (PyObject* object : {result, arguments[0], arguments[1]}) Py_XDECREF(object);
    if (!result) zorBinding::registerDirectorError("osg::NodeCallback::operator()", "operator()", "swig/configuration/zorPython/osg.i", 23);
    inside.checkListsKept();
    return goesOn;
  }

  PyObject* const m_function;
};
%}

// The objects that these callbacks are given.
%typemap(directorin) osg::Node& { $input = zorWrapNode(&$1, SWIGTYPE_p_osg__Node); }
%typemap(directorin) osg::Node* { $input = zorWrapNode($1, SWIGTYPE_p_osg__Node); }
%typemap(directorin) osg::NodeVisitor* { $input = zorWrapDirector($1, SWIGTYPE_p_osg__NodeVisitor); }

%define OSG_CALLBACK(METHOD, VISITOR)
%feature("threadbeginblock") METHOD %{
  zorPython::ScriptManager::PyGILGuard const zorLock;
  if (!zorLock.isHeld() || swig_get_self() == Py_None) return;
  zorBinding::EarlierError const zorEarlier;
  zorBinding::InVisitor const zorInside(VISITOR);
%}
%feature("threadendblock") METHOD %{
  zorInside.checkListsKept();
%}
%enddef

// A visitor's error reaches whoever sent it; the one of a node's callback is registered, and the frame goes on.
OSG_CALLBACK(osg::NodeVisitor::apply, *this)
OSG_CALLBACK(osg::NodeCallback::operator(), *visitor)
%feature("director:except") osg::NodeCallback::operator() {
  if ($error != NULL) {
    zorBinding::registerDirectorError("osg::NodeCallback::operator()", "operator()", "swig/configuration/zorPython/osg.i", 23);
    zorInside.checkListsKept();
    return;
  }
}
%rename(__call__) osg::NodeCallback::operator();
%typemap(out) osg::Callback* { $result = zorWrapDirector($1, $descriptor(osg::Callback*)); }
%apply SWIGTYPE* NOT_NULL { osg::Node* node, osg::NodeVisitor* visitor };

namespace osg {

/** Number and times of a frame. */
class FrameStamp : public Referenced {
public:
  FrameStamp();
  unsigned int getFrameNumber() const;
  void setFrameNumber(unsigned int number);
  /** \return time on the wall clock (s) */
  double getReferenceTime() const;
  void setReferenceTime(double seconds);
  /** \return time in the scene (s) */
  double getSimulationTime() const;
  void setSimulationTime(double seconds);
};

/**
 * Goes through the scene graph: `node.accept(visitor)`. Derive from it and override `apply`, which gets every node as an object
 * of its own class; functools.singledispatchmethod gives each class a method. Only nodes for which it calls `traverse` are
 * gone into. What it raises ends the traversal and reaches the caller of accept(). Children of groups that the visitor is
 * below can't be changed meanwhile.
 */
class NodeVisitor : public Object {
public:
  enum TraversalMode { TRAVERSE_NONE, TRAVERSE_PARENTS, TRAVERSE_ALL_CHILDREN, TRAVERSE_ACTIVE_CHILDREN };
  /** \param mode - where traverse() goes: up, to all children, or only to those that are shown */
  NodeVisitor(osg::NodeVisitor::TraversalMode mode = osg::NodeVisitor::TRAVERSE_ALL_CHILDREN);
  /** Called for each node; goes on to its children unless overridden. */
  virtual void apply(osg::Node& node);
  TraversalMode getTraversalMode() const;
  unsigned int getTraversalMask() const;
  /** \param mask - only nodes that have a bit of it in their node mask are visited */
  void setTraversalMask(unsigned int mask);
  unsigned int getNodeMaskOverride() const;
  /** \param mask - bits that count as set in every node's mask */
  void setNodeMaskOverride(unsigned int mask);
  unsigned int getTraversalNumber() const;
  void setTraversalNumber(unsigned int number);
  void setFrameStamp(osg::FrameStamp* stamp);
};
%extend NodeVisitor {
  /** Goes on to the children, or parents, of a node. */
  void traverse(osg::Node& node) {
    zorBinding::PathGuard const guard(*$self);
    $self->traverse(node);
  }
  /** \param mode - where traverse() goes; RuntimeError while the visitor is under way */
  void setTraversalMode(osg::NodeVisitor::TraversalMode mode) {
    if (!$self->getNodePath().empty()) throw std::runtime_error("the visitor is under way: its mode can't be changed");
    $self->setTraversalMode(mode);
  }
  /** \return number and times of the frame; None outside of frames */
  osg::FrameStamp const* getFrameStamp() const { return $self->getFrameStamp(); }
  PyObject* _nodePath() const { return zorNodeList($self->getNodePath()); }
  %pythoncode %{
    def getNodePath(self) -> list[Node]:
        """Returns the way from where the visitor began to the node where it is, both included."""
        return self._nodePath()
  %}
}

} // namespace osg
namespace osgUtil {

/** Runs the update callbacks of the nodes it visits, as a viewer does before each frame. */
class UpdateVisitor : public osg::NodeVisitor {
public:
  UpdateVisitor();
};

} // namespace osgUtil
namespace osg {

/** What a node calls. */
class Callback : public Object {
public:
  /** \return what is called next; None if this is the last */
  osg::Callback* getNestedCallback();
};

/**
 * What a node calls when it is updated, given events or prepared for drawing. Derive from it, override `__call__`, and keep the
 * object: a node goes on without one that has died. Plain functions are kept; see Node.setUpdateCallback().
 */
class NodeCallback : public Callback {
public:
  NodeCallback();
  /** Called for the node; goes on to the next callback, or the children, unless overridden. */
  virtual void operator()(osg::Node* node, osg::NodeVisitor* visitor);
};
%extend NodeCallback {
  /** Goes on to the next callback, or to the children of the node. */
  void traverse(osg::Node* node, osg::NodeVisitor* visitor) {
    zorBinding::PathGuard const guard(*visitor);
    $self->traverse(node, visitor);
  }
}

} // namespace osg
%clear osg::Node* node, osg::NodeVisitor* visitor;

%inline %{
static osg::Callback* _functionCallback(PyObject* function) {
  if (!PyCallable_Check(function)) throw std::invalid_argument(std::string("a callback or function is expected, not ") + Py_TYPE(function)->tp_name);
  return new ZorFunctionCallback(function);
}
%}
%pythoncode %{
def _as_callback(callback: Callback | Callable[[Node, NodeVisitor], object] | None) -> Callback | None:
    if callback is None or isinstance(callback, Callback):
        return callback
    return _functionCallback(callback)
%}
