// Nodes and groups.

ZOR_SEQUENCE_GUARD(osg::Switch::setValue)
ZOR_SEQUENCE_GUARD(osg::Switch::getValue)
ZOR_SEQUENCE_GUARD(osg::Switch::setSingleChildOn)
ZOR_SEQUENCE_GUARD(osg::LOD::setRange)
ZOR_SEQUENCE_GUARD(osg::LOD::getMinRange)
ZOR_SEQUENCE_GUARD(osg::LOD::getMaxRange)
ZOR_INNER_RESULT(osg::Billboard::getAxis)
ZOR_INNER_RESULT(osg::Billboard::getNormal)
ZOR_SEQUENCE_GUARD(osg::Billboard::setPosition)
ZOR_SEQUENCE_GUARD(osg::Billboard::getPosition)
ZOR_SEQUENCE_GUARD(osg::ClipNode::getClipPlane)
ZOR_INNER_RESULT(osg::Node::getBound)
OSG_OWNED(Node)
OSG_OWNED(Group)
OSG_OWNED(Switch)
OSG_OWNED(LOD)
OSG_OWNED(Geode)
OSG_OWNED(Billboard)
OSG_OWNED(ClipNode)
OSG_OWNED(LightSource)

%{
#include "runtime/CheckedBillboard.h"

static void zorCheckBillboard(osg::Group const* parent) {
  if (dynamic_cast<osg::Billboard const*>(parent))
    throw std::invalid_argument("a billboard takes drawables with addDrawable() and gives them back with removeDrawable()");
}

// Before the children of a group change.
static void zorChangeChildren(osg::Group const* parent) {
  zorCheckBillboard(parent);
  zorBinding::checkChildrenFree(*parent);
}

static void zorOsgCheckChild(osg::Node* parent, osg::Node* child) {
  if (!child) throw std::invalid_argument("a node is expected, not None");
  if (zorBinding::isAtOrAbove(*child, *parent)) throw std::invalid_argument("a node can't be its own descendant");
}

// Callbacks of a node are a chain, which must not lead back into itself.
static void zorAddCallback(osg::Node& node, osg::Callback* (osg::Node::*get)(), void (osg::Node::*set)(osg::Callback*), osg::Callback* added) {
  if (!added) throw std::invalid_argument("a callback is expected, not None");
  std::set<osg::Callback*> chain;
  for (osg::Callback* at = (node.*get)(); at; at = at->getNestedCallback()) chain.insert(at);
  for (osg::Callback* at = added; at; at = at->getNestedCallback()) {
    if (chain.contains(at)) throw std::invalid_argument("the callback has been added already");
  }
  if (osg::Callback* first = (node.*get)()) {
    first->addNestedCallback(added);
  } else {
    (node.*set)(added);
  }
}

// How many ways lead up from a node grows with the power of its depth where nodes have several parents.
static void zorCheckPaths(osg::Node* node, osg::Node* halt) {
  double const limit = 1e5;
  std::map<osg::Node*, double> counts;
  std::function<double(osg::Node*)> const count = [&](osg::Node* at) {
    auto const known = counts.find(at);
    if (known != counts.end()) return known->second;
    double ways = at->getNumParents() == 0 || at == halt ? 1 : 0;
    for (unsigned int i = 0; at != halt && i < at->getNumParents(); ++i) ways += count(at->getParent(i));
    return counts[at] = ways;
  };
  if (count(node) > limit) throw std::length_error("more than 100,000 paths lead to the node");
}
%}

ZOR_SEQUENCE_GUARD(osg::Group::getChild)
ZOR_SEQUENCE_GUARD(osg::Geode::getDrawable)
ZOR_SEQUENCE_GUARD(osg::Node::getParent)
ZOR_SEQUENCE_GUARD(osg::Node::_description)
ZOR_SEQUENCE_GUARD(osg::Group::setChild)

namespace osg {

/** A leaf or group of the scene graph. */
class Node : public Object {
public:
  Node();
  unsigned int getNumParents() const;
  /** \return the mask that visitors and cameras compare with theirs; all bits are set in a new node */
  unsigned int getNodeMask() const;
  /** \param mask - 0 hides the node and all below it */
  void setNodeMask(unsigned int mask);
  void setStateSet(osg::StateSet* stateset);
  /** \return the sphere around everything below the node, in the coordinates of its parent */
  osg::BoundingSphere const& getBound() const;
  /** Has the bounds of the node and all above it computed anew. */
  void dirtyBound();
  /** \param active - false: the node is drawn even if it seems to be out of view */
  void setCullingActive(bool active);
  bool getCullingActive() const;
  unsigned int getNumDescriptions() const;
  void addDescription(std::string const& description);
  osg::Group* asGroup();
  osg::Geode* asGeode();
  osg::Transform* asTransform();
  osg::Switch* asSwitch();
  osg::Drawable* asDrawable();
  osg::Geometry* asGeometry();
};
%extend Node {
  /** \return the node's state, a new one if it has none; state that visuals of one colour share is copied first */
  osg::StateSet* getOrCreateStateSet() { return &zorOSG::unsharedOrNewStateSet(*$self); }
  /** \return the node's state; None if it has none */
  osg::StateSet* getStateSet() { return zorOSG::unsharedStateSet(*$self); }
}
%extend Node {
  /** \param index position below getNumParents() \return a parent; IndexError if there is none */
  osg::Group* getParent(ptrdiff_t index) {
    return $self->getParent(zorBinding::checkedIndex(index, $self->getNumParents()));
  }
  /** \return the box around everything below this node, in the coordinates of its parent */
  osg::BoundingBox computeBoundingBox() {
    osg::ComputeBoundsVisitor visitor;
    $self->accept(visitor);
    return visitor.getBoundingBox();
  }
  // Not under its own name, which classes of other modules have too.
  void _accept(osg::NodeVisitor& visitor) {
    osg::ref_ptr<osg::Node> const kept($self);
    zorBinding::PathGuard const guard(visitor);
    $self->accept(visitor);
  }
  PyObject* _parentalNodePaths(osg::Node* halt) {
    zorCheckPaths($self, halt);
    osg::NodePathList const paths = $self->getParentalNodePaths(halt);
    PyObject* list = PyList_New(0);
    for (osg::NodePath const& path : paths) {
      PyObject* nodes = list ? zorNodeList(path) : nullptr;
      if (nodes) PyList_Append(list, nodes);
      Py_XDECREF(nodes);
    }
    return list;
  }
  PyObject* _worldMatrices(osg::Node* halt) {
    zorCheckPaths($self, halt);
    osg::MatrixList const matrices = $self->getWorldMatrices(halt);
    PyObject* list = PyList_New(0);
    for (osg::Matrix const& matrix : matrices) {
      PyObject* shown = list ? SWIG_NewPointerObj(new osg::Matrixd(matrix), SWIGTYPE_p_osg__Matrixd, SWIG_POINTER_OWN) : nullptr;
      if (shown) PyList_Append(list, shown);
      Py_XDECREF(shown);
    }
    return list;
  }
  std::string _description(ptrdiff_t index) const {
    return $self->getDescription(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumDescriptions())));
  }
  void _setUpdateCallback(osg::Callback* callback) { $self->setUpdateCallback(callback); }
  void _addUpdateCallback(osg::Callback* callback) { zorAddCallback(*$self, &osg::Node::getUpdateCallback, &osg::Node::setUpdateCallback, callback); }
  void _setEventCallback(osg::Callback* callback) { $self->setEventCallback(callback); }
  void _addEventCallback(osg::Callback* callback) { zorAddCallback(*$self, &osg::Node::getEventCallback, &osg::Node::setEventCallback, callback); }
  void _setCullCallback(osg::Callback* callback) { $self->setCullCallback(callback); }
  void _addCullCallback(osg::Callback* callback) { zorAddCallback(*$self, &osg::Node::getCullCallback, &osg::Node::setCullCallback, callback); }
  /** \return what is called when the node is updated before each frame; None if nothing is */
  osg::Callback* getUpdateCallback() { return $self->getUpdateCallback(); }
  /** \return what is called when input events are given to the node; None if nothing is */
  osg::Callback* getEventCallback() { return $self->getEventCallback(); }
  /** \return what is called when the node is prepared for drawing; None if nothing is */
  osg::Callback* getCullCallback() { return $self->getCullCallback(); }
  /** Takes a callback away. */
  void removeUpdateCallback(osg::Callback* callback) { $self->removeUpdateCallback(callback); }
  /** Takes a callback away. */
  void removeEventCallback(osg::Callback* callback) { $self->removeEventCallback(callback); }
  /** Takes a callback away. */
  void removeCullCallback(osg::Callback* callback) { $self->removeCullCallback(callback); }
  %pythoncode %{
    def accept(self, visitor: NodeVisitor) -> None:
        """Shows the node to a visitor, which goes on from there. What the visitor raises is raised."""
        self._accept(visitor)

    def getParents(self) -> list[Group]:
        """Returns the groups that the node is a child of."""
        return [self.getParent(i) for i in range(self.getNumParents())]

    def getParentalNodePaths(self, halt: Node | None = None) -> list[list[Node]]:
        """Returns all ways from a root, or from `halt`, down to this node."""
        return self._parentalNodePaths(halt)

    def getWorldMatrices(self, halt: Node | None = None) -> list[Matrixd]:
        """Returns the transforms from the node's coordinates to the world's, or to those of `halt`, one for each way."""
        return self._worldMatrices(halt)

    def getDescriptions(self) -> list[str]:
        """Returns the texts that describe the node."""
        return [self._description(i) for i in range(self.getNumDescriptions())]

    def setUpdateCallback(self, callback: Callback | Callable[[Node, NodeVisitor], object] | None) -> None:
        """
        Sets what is called when the node is updated before each frame.

        :param callback: a NodeCallback, which the script has to keep; or a function, which the node keeps, called with the node and
            the visitor: the visitor goes on to the children afterwards, unless the function returns False
        """
        self._setUpdateCallback(_as_callback(callback))

    def addUpdateCallback(self, callback: Callback | Callable[[Node, NodeVisitor], object]) -> None:
        """Adds what is called when the node is updated, after those that are there; see setUpdateCallback()."""
        self._addUpdateCallback(_as_callback(callback))

    def setEventCallback(self, callback: Callback | Callable[[Node, NodeVisitor], object] | None) -> None:
        """Sets what is called when input events are given to the node; see setUpdateCallback()."""
        self._setEventCallback(_as_callback(callback))

    def addEventCallback(self, callback: Callback | Callable[[Node, NodeVisitor], object]) -> None:
        """Adds what is called when input events are given to the node; see setUpdateCallback()."""
        self._addEventCallback(_as_callback(callback))

    def setCullCallback(self, callback: Callback | Callable[[Node, NodeVisitor], object] | None) -> None:
        """Sets what is called when the node is prepared for drawing; what it leaves out isn't drawn; see setUpdateCallback()."""
        self._setCullCallback(_as_callback(callback))

    def addCullCallback(self, callback: Callback | Callable[[Node, NodeVisitor], object]) -> None:
        """Adds what is called when the node is prepared for drawing; see setUpdateCallback()."""
        self._addCullCallback(_as_callback(callback))
  %}
}

/** A node with children, of which it is a sequence. Always true, even without children. */
class Group : public Node {
public:
  Group();
  unsigned int getNumChildren() const;
  bool containsNode(osg::Node const* node) const;
};
%extend Group {
  /** Adds a child at the end. \param child must not be null or above this group, else RuntimeError \return true */
  bool addChild(osg::Node* child) {
    zorChangeChildren($self);
    zorOsgCheckChild($self, child);
    return $self->addChild(child);
  }
  /** Adds a child before a position, at the end beyond the last. \return true */
  bool insertChild(unsigned int index, osg::Node* child) {
    zorChangeChildren($self);
    zorOsgCheckChild($self, child);
    return $self->insertChild(std::min(index, $self->getNumChildren()), child);
  }
  /** \return true if the child was there and is not any more */
  bool removeChild(osg::Node* child) {
    zorChangeChildren($self);
    return $self->removeChild(child);
  }
  /** Removes all children. */
  void removeChildren() {
    zorChangeChildren($self);
    $self->removeChildren(0, $self->getNumChildren());
  }
  /** \return true if the old child was there and the new one has its place */
  bool replaceChild(osg::Node* oldChild, osg::Node* newChild) {
    zorChangeChildren($self);
    zorOsgCheckChild($self, newChild);
    return $self->replaceChild(oldChild, newChild);
  }
  /** Puts a child in the place of another; IndexError if there is none at the position. \return true */
  bool setChild(ptrdiff_t index, osg::Node* child) {
    std::size_t const place = zorBinding::checkedIndex(index, $self->getNumChildren());
    zorChangeChildren($self);
    zorOsgCheckChild($self, child);
    return $self->setChild(static_cast<unsigned int>(place), child);
  }
  /** \return a child; IndexError if there is none at the position */
  osg::Node* getChild(ptrdiff_t index) {
    return $self->getChild(zorBinding::checkedIndex(index, $self->getNumChildren()));
  }
  /** \return position of a child; getNumChildren() if it is none */
  unsigned int getChildIndex(osg::Node const* child) const { return $self->getChildIndex(child); }
  %pythoncode %{
    def children(self) -> list[Node]:
        """Returns the children as a list."""
        return [self.getChild(i) for i in range(self.getNumChildren())]

    def addChildren(self, children: Iterable[Node]) -> None:
        """Adds several children at the end."""
        for child in children:
            self.addChild(child)

    def __len__(self) -> int:
        return self.getNumChildren()

    def __bool__(self) -> bool:
        return True

    def __iter__(self) -> Iterator[Node]:
        return iter(self.children())

    def __getitem__(self, index: int, /) -> Node:
        return self.getChild(index)

    def __contains__(self, node: object, /) -> bool:
        return isinstance(node, Node) and self.containsNode(node)
  %}
}

/** A group that shows some of its children. */
class Switch : public Group {
public:
  Switch();
  void setNewChildDefaultValue(bool value);
  bool getNewChildDefaultValue() const;
  bool setAllChildrenOff();
  bool setAllChildrenOn();
};
%extend Switch {
  /** Adds a child at the end. \return true */
  bool addChild(osg::Node* child) {
    zorChangeChildren($self);
    zorOsgCheckChild($self, child);
    return $self->addChild(child);
  }
  /** Adds a child at the end. \param value - whether it is shown \return true */
  bool addChild(osg::Node* child, bool value) {
    zorChangeChildren($self);
    zorOsgCheckChild($self, child);
    return $self->addChild(child, value);
  }
  /** Shows or hides the child at a position. */
  void setValue(ptrdiff_t index, bool value) {
    $self->setValue(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumChildren())), value);
  }
  /** \return whether the child at a position is shown */
  bool getValue(ptrdiff_t index) const {
    return $self->getValue(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumChildren())));
  }
  /** Shows or hides a child; RuntimeError if it is none. */
  void setChildValue(osg::Node const* child, bool value) {
    if (!$self->containsNode(child)) throw std::invalid_argument("the node is no child of the switch");
    $self->setChildValue(child, value);
  }
  /** \return whether a child is shown; False if it is none */
  bool getChildValue(osg::Node const* child) const { return $self->containsNode(child) && $self->getChildValue(child); }
  /** Shows the child at a position, no other. \return true */
  bool setSingleChildOn(ptrdiff_t index) {
    return $self->setSingleChildOn(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumChildren())));
  }
}

/** A group that shows those of its children whose range the distance of the viewer lies in. */
class LOD : public Group {
public:
  LOD();
  enum CenterMode { USE_BOUNDING_SPHERE_CENTER, USER_DEFINED_CENTER, UNION_OF_BOUNDING_SPHERE_AND_USER_DEFINED };
  void setCenterMode(CenterMode mode);
  CenterMode getCenterMode() const;
  void setRadius(float radius);
  float getRadius() const;
  enum RangeMode { DISTANCE_FROM_EYE_POINT, PIXEL_SIZE_ON_SCREEN };
  /** \param mode - what ranges are compared with: a distance, or a size in pixels */
  void setRangeMode(RangeMode mode);
  RangeMode getRangeMode() const;
  unsigned int getNumRanges() const;
};
%extend LOD {
  /** Adds a child at the end, shown at any distance beyond the ranges of the others. \return true */
  bool addChild(osg::Node* child) {
    zorChangeChildren($self);
    zorOsgCheckChild($self, child);
    return $self->addChild(child);
  }
  /** Adds a child at the end. \param nearest - shown from this distance \param farthest - up to this one \return true */
  bool addChild(osg::Node* child, float nearest, float farthest) {
    zorChangeChildren($self);
    zorOsgCheckChild($self, child);
    return $self->addChild(child, nearest, farthest);
  }
  void setCenter(osg::Vec3d const& center) { $self->setCenter(center); }
  osg::Vec3d getCenter() const { return $self->getCenter(); }
  /** Sets the range of the child at a position. */
  void setRange(ptrdiff_t index, float nearest, float farthest) {
    $self->setRange(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumChildren())), nearest, farthest);
  }
  float getMinRange(ptrdiff_t index) const {
    return $self->getMinRange(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumRanges())));
  }
  float getMaxRange(ptrdiff_t index) const {
    return $self->getMaxRange(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumRanges())));
  }
}

/** A group of drawables. (Drawables are nodes and may be children of any group.) */
class Geode : public Group {
public:
  Geode();
  unsigned int getNumDrawables() const;
};
%extend Geode {
  /** \param drawable must not be null, else RuntimeError \return true */
  bool addDrawable(osg::Drawable* drawable) {
    zorBinding::checkChildrenFree(*$self);
    zorOsgCheckChild($self, drawable);
    return $self->addDrawable(drawable);
  }
  /** \return true if the drawable was there and is not any more */
  bool removeDrawable(osg::Drawable* drawable) {
    zorBinding::checkChildrenFree(*$self);
    return $self->removeDrawable(drawable);
  }
  /** \return a drawable; IndexError if there is none at the position */
  osg::Drawable* getDrawable(ptrdiff_t index) {
    return $self->getDrawable(zorBinding::checkedIndex(index, $self->getNumDrawables()));
  }
}

/** Drawables that turn to the viewer, each at a place of its own. */
class Billboard : public Geode {
public:
  enum Mode { POINT_ROT_EYE, POINT_ROT_WORLD, AXIAL_ROT };
  void setMode(Mode mode);
  Mode getMode() const;
  void setAxis(osg::Vec3f const& axis);
  osg::Vec3f const& getAxis() const;
  void setNormal(osg::Vec3f const& normal);
  osg::Vec3f const& getNormal() const;
};
%extend Billboard {
  Billboard() { return new zorBinding::CheckedBillboard; }
  /** Adds a drawable. \param position - where it stands \return true */
  bool addDrawable(osg::Drawable* drawable, osg::Vec3f const& position = osg::Vec3f()) {
    zorBinding::checkChildrenFree(*$self);
    zorOsgCheckChild($self, drawable);
    return $self->addDrawable(drawable, position);
  }
  void setPosition(ptrdiff_t index, osg::Vec3f const& position) {
    $self->setPosition(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getPositionList().size())), position);
    $self->dirtyBound();
  }
  osg::Vec3f getPosition(ptrdiff_t index) const {
    return $self->getPosition(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getPositionList().size())));
  }
}

/** A group whose planes cut what is below it. */
class ClipNode : public Group {
public:
  ClipNode();
  unsigned int getNumClipPlanes() const;
  bool addClipPlane(osg::ClipPlane* clipPlane);
  bool removeClipPlane(osg::ClipPlane* clipPlane);
};
%extend ClipNode {
  /** Takes six planes that leave what lies in a box. \param first - number of the first plane */
  void createClipBox(osg::BoundingBox const& box, unsigned int first = 0) { $self->createClipBox(box, first); }
  osg::ClipPlane* getClipPlane(ptrdiff_t index) {
    return $self->getClipPlane(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumClipPlanes())));
  }
}

/** A node with a light, which shines on the whole scene. */
class LightSource : public Group {
public:
  LightSource();
  osg::Light* getLight();
  void setLight(osg::Light* light);
};

} // namespace osg
