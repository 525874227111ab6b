// Drawables, geometry and its arrays.

ZOR_INNER_RESULT(osg::Drawable::getBoundingBox)

// Unlike nodes: see the head of the node section.
%nodefaultctor osg::Drawable;
%extend osg::Drawable {
  ~Drawable() { zorOsgReleaseUnheld($self); }
}
OSG_OWNED(Geometry)
OSG_OWNED(ShapeDrawable)
%nodefaultctor osg::Array;
%nodefaultdtor osg::Array;
%nodefaultctor osg::Shape;
%nodefaultdtor osg::Shape;
%nodefaultctor osg::PrimitiveSet;
%nodefaultdtor osg::PrimitiveSet;
OSG_OWNED(Box)
OSG_OWNED(Sphere)
OSG_OWNED(DrawArrays)
OSG_OWNED(DrawElementsUInt)

namespace osg {

class Drawable : public Node {
public:
  osg::BoundingBox const& getBoundingBox() const;
  void dirtyDisplayList();
};

class Shape : public Object {};

class Box : public Shape {
public:
  Box(osg::Vec3f const& center, float lengthX, float lengthY, float lengthZ);
};

class Sphere : public Shape {
public:
  Sphere(osg::Vec3f const& center, float radius);
};

class PrimitiveSet : public Object {
public:
  enum Mode {
    POINTS = 0,
    LINES = 1,
    LINE_LOOP = 2,
    LINE_STRIP = 3,
    TRIANGLES = 4,
    TRIANGLE_STRIP = 5,
    TRIANGLE_FAN = 6,
    QUADS = 7
  };
  unsigned int getNumIndices() const;
  unsigned int getMode() const;
};

class DrawArrays : public PrimitiveSet {
public:
  DrawArrays(unsigned int mode, int first, int count);
};

class DrawElementsUInt : public PrimitiveSet {
public:
  DrawElementsUInt(unsigned int mode);
};
%extend DrawElementsUInt {
  /** Adds an index. */
  void append(unsigned int index) { $self->push_back(index); }
}

class Array : public Object {
public:
  unsigned int getNumElements() const;
  void dirty();
};

} // namespace osg

// An array of vectors or numbers; its storage is a buffer of two dimensions.
%define OSG_ARRAY(NAME, VALUE, COUNT)
OSG_OWNED(NAME)
ZOR_SEQUENCE_GUARD(osg::NAME::__getitem__)
ZOR_SEQUENCE_GUARD(osg::NAME::__setitem__)
namespace osg {
class NAME : public Array {
public:
  NAME();
};
%extend NAME {
  size_t __len__() const { return $self->size(); }
  VALUE __getitem__(ptrdiff_t index) const { return (*$self)[zorBinding::checkedIndex(index, $self->size())]; }
  void __setitem__(ptrdiff_t index, VALUE const& value) {
    (*$self)[zorBinding::checkedIndex(index, $self->size())] = value;
  }
  void append(VALUE const& value) { $self->push_back(value); }
  void clear() { $self->clear(); }
  PyObject* _memory() {
    return zorBinding::memoryOf(static_cast<float*>(const_cast<void*>($self->getDataPointer())),
                                {static_cast<long>($self->size()), COUNT});
  }
  %pythoncode %{
    def tolist(self):
        """Returns the elements as a list of lists of numbers."""
        return self._memory().tolist()
  %}
}
}
%enddef

OSG_ARRAY(Vec2Array, osg::Vec2f, 2)
OSG_ARRAY(Vec3Array, osg::Vec3f, 3)
OSG_ARRAY(Vec4Array, osg::Vec4f, 4)
OSG_ARRAY(FloatArray, float, 1)

namespace osg {

class Geometry : public Drawable {
public:
  Geometry();
  osg::Array* getVertexArray();
  void setVertexArray(osg::Array* array);
  osg::Array* getNormalArray();
  osg::Array* getColorArray();
  unsigned int getNumPrimitiveSets() const;
  bool addPrimitiveSet(osg::PrimitiveSet* primitives);
};
%extend Geometry {
  /** \param array one normal for each vertex, or a single one for all */
  void setNormalArray(osg::Array* array) {
    bool const single = array && array->getNumElements() == 1;
    $self->setNormalArray(array, single ? osg::Array::BIND_OVERALL : osg::Array::BIND_PER_VERTEX);
  }
  /** \param array one colour for each vertex, or a single one for all */
  void setColorArray(osg::Array* array) {
    bool const single = array && array->getNumElements() == 1;
    $self->setColorArray(array, single ? osg::Array::BIND_OVERALL : osg::Array::BIND_PER_VERTEX);
  }
}

class ShapeDrawable : public Drawable {
public:
  ShapeDrawable(osg::Shape* shape);
  void setColor(osg::Vec4f const& color);
  osg::Vec4f const& getColor() const;
};

} // namespace osg
