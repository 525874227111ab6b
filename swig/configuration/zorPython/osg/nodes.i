// Reference counting and the node classes.
//
// A proxy made by a constructor holds one reference, and the destroy hook gives it back. Drawables that the
// visualisation layer makes are handed over without one: their hook only ends an object that nobody holds.

ZOR_INNER_RESULT(osg::Node::getBound)
ZOR_INNER_RESULT(osg::MatrixTransform::getMatrix)

%{
static void zorOsgRelease(osg::Referenced* object) { object->unref(); }

static void zorOsgReleaseUnheld(osg::Referenced* object) {
  if (object->referenceCount() == 0) {
    object->ref();
    object->unref();
  }
}
%}

// A class whose constructor is wrapped: takes the reference that its own delete_ gives back.
%define OSG_OWNED(CLASS)
%feature("ref") osg::CLASS "$this->ref();"
%feature("notabstract") osg::CLASS;
%extend osg::CLASS {
  ~CLASS() { zorOsgRelease($self); }
}
%enddef

%define OSG_HELD(CLASS)
%nodefaultctor osg::CLASS;
%extend osg::CLASS {
  ~CLASS() { zorOsgRelease($self); }
}
%enddef

OSG_HELD(Referenced)
%nodefaultctor osg::Object;
%nodefaultdtor osg::Object;
OSG_OWNED(Node)
OSG_OWNED(Group)
OSG_OWNED(Switch)
OSG_OWNED(Geode)
OSG_OWNED(MatrixTransform)
OSG_OWNED(PositionAttitudeTransform)
OSG_OWNED(ClipNode)
OSG_OWNED(LightSource)
OSG_OWNED(Light)
OSG_OWNED(Camera)
%nodefaultctor osg::Transform;
%nodefaultdtor osg::Transform;
%nodefaultctor osg::NodeVisitor;
%nodefaultdtor osg::NodeVisitor;
%nodefaultctor osg::RenderInfo;
%nodefaultdtor osg::RenderInfo;

%{
static void zorOsgCheckChild(osg::Node* parent, osg::Node* child) {
  if (!child) throw std::invalid_argument("a node is expected, not None");
  // Nodes have several parents: each is visited once, for there may be very many paths.
  std::set<osg::Node*> seen{parent};
  std::vector<osg::Node*> open{parent};
  while (!open.empty()) {
    osg::Node* node = open.back();
    open.pop_back();
    if (node == child) throw std::invalid_argument("a node can't be its own descendant");
    for (unsigned int i = 0; i < node->getNumParents(); ++i) {
      if (seen.insert(node->getParent(i)).second) open.push_back(node->getParent(i));
    }
  }
}
%}

ZOR_SEQUENCE_GUARD(osg::Group::getChild)
ZOR_SEQUENCE_GUARD(osg::Geode::getDrawable)
ZOR_SEQUENCE_GUARD(osg::Node::getParent)

namespace osg {

/** Base of all shared objects of the scene graph. */
class Referenced {
public:
  int referenceCount() const;
};

class CopyOp {
public:
  enum Options {
    SHALLOW_COPY = 0,
    DEEP_COPY_OBJECTS = 1,
    DEEP_COPY_NODES = 2,
    DEEP_COPY_DRAWABLES = 4,
    DEEP_COPY_STATESETS = 8,
    DEEP_COPY_ALL = 0x7FFFFFFF
  };
  CopyOp(unsigned int flags = 0);
  unsigned int getCopyFlags() const;
};

class Object : public Referenced {
public:
  std::string const& getName() const;
  void setName(std::string const& name);
  char const* libraryName() const;
  char const* className() const;
};

class NodeVisitor : public Referenced {};

class RenderInfo {};

class Node : public Object {
public:
  Node();
  unsigned int getNumParents() const;
  unsigned int getNodeMask() const;
  void setNodeMask(unsigned int mask);
  osg::StateSet* getOrCreateStateSet();
  osg::StateSet* getStateSet();
  void setStateSet(osg::StateSet* stateset);
  osg::BoundingSphere const& getBound() const;
  void dirtyBound();
  osg::Group* asGroup();
  osg::Geode* asGeode();
  osg::Drawable* asDrawable();
  osg::Geometry* asGeometry();
};
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
}

class Group : public Node {
public:
  Group();
  unsigned int getNumChildren() const;
  bool containsNode(osg::Node const* node) const;
};
%extend Group {
  /** Adds a child at the end. \param child must not be null or above this group, else RuntimeError \return true */
  bool addChild(osg::Node* child) {
    zorOsgCheckChild($self, child);
    return $self->addChild(child);
  }
  /** \return true if the child was there and is not any more */
  bool removeChild(osg::Node* child) { return $self->removeChild(child); }
  /** Removes all children. */
  void removeChildren() { $self->removeChildren(0, $self->getNumChildren()); }
  /** \return a child; IndexError if there is none at the position */
  osg::Node* getChild(ptrdiff_t index) {
    return $self->getChild(zorBinding::checkedIndex(index, $self->getNumChildren()));
  }
  %pythoncode %{
    def children(self) -> list[Node]:
        """Returns the children as a list."""
        return [self.getChild(i) for i in range(self.getNumChildren())]
  %}
}

class Switch : public Group {
public:
  Switch();
  bool setAllChildrenOff();
  bool setAllChildrenOn();
  bool setSingleChildOn(unsigned int position);
};

class Transform : public Group {};

class MatrixTransform : public Transform {
public:
  MatrixTransform();
  MatrixTransform(osg::Matrixd const& matrix);
  osg::Matrixd const& getMatrix() const;
  void setMatrix(osg::Matrixd const& matrix);
};

class PositionAttitudeTransform : public Transform {
public:
  PositionAttitudeTransform();
  void setPosition(osg::Vec3d const& position);
  osg::Vec3d const& getPosition() const;
  void setAttitude(osg::Quat const& attitude);
  osg::Quat const& getAttitude() const;
  void setScale(osg::Vec3d const& scale);
  osg::Vec3d const& getScale() const;
};

class Geode : public Group {
public:
  Geode();
  unsigned int getNumDrawables() const;
  bool removeDrawable(osg::Drawable* drawable);
};
%extend Geode {
  /** \param drawable must not be null, else RuntimeError \return true */
  bool addDrawable(osg::Drawable* drawable) {
    zorOsgCheckChild($self, drawable);
    return $self->addDrawable(drawable);
  }
  /** \return a drawable; IndexError if there is none at the position */
  osg::Drawable* getDrawable(ptrdiff_t index) {
    return $self->getDrawable(zorBinding::checkedIndex(index, $self->getNumDrawables()));
  }
}

class ClipNode : public Group {
public:
  ClipNode();
};

class LightSource : public Group {
public:
  LightSource();
  osg::Light* getLight();
  void setLight(osg::Light* light);
};

class Camera : public Transform {
public:
  Camera();
  osg::Vec4f const& getClearColor() const;
  void setClearColor(osg::Vec4f const& color);
  osg::Matrixd const& getViewMatrix() const;
  void setViewMatrix(osg::Matrixd const& matrix);
  osg::Matrixd const& getProjectionMatrix() const;
  void setProjectionMatrix(osg::Matrixd const& matrix);
  void setProjectionMatrixAsPerspective(double fovy, double aspectRatio, double zNear, double zFar);
  void setViewMatrixAsLookAt(osg::Vec3d const& eye, osg::Vec3d const& center, osg::Vec3d const& up);
  unsigned int getCullMask() const;
  void setCullMask(unsigned int mask);
};
%extend Camera {
  /** \return x, y, width and height in pixels; None while there is no viewport */
  PyObject* getViewport() const {
    osg::Viewport const* viewport = $self->getViewport();
    if (!viewport) Py_RETURN_NONE;
    return Py_BuildValue("dddd", viewport->x(), viewport->y(), viewport->width(), viewport->height());
  }
}

} // namespace osg
