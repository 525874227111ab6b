// Drawables and geometry.
//
// Drawables that the visualisation layer makes are handed over without a reference: their proxies' hook only ends an object that
// nobody holds.

ZOR_INNER_RESULT(osg::Drawable::getBoundingBox)

%{
#include "runtime/CheckedGeometry.h"

static void zorOsgReleaseUnheld(osg::Referenced* object) {
  if (object->referenceCount() == 0) {
    object->ref();
    object->unref();
  }
}

static unsigned int const zorMostUnits = 16;

static unsigned int zorCheckedUnit(unsigned int unit, char const* what) {
  if (unit >= zorMostUnits) throw std::out_of_range(std::string(what) + " is 0 to 15, not " + std::to_string(unit));
  return unit;
}

// One element is for all, several are for the vertices each.
static osg::Array::Binding zorBindingOf(osg::Array const* array, int binding) {
  if (binding != osg::Array::BIND_UNDEFINED) return static_cast<osg::Array::Binding>(binding);
  return array && array->getNumElements() == 1 ? osg::Array::BIND_OVERALL : osg::Array::BIND_PER_VERTEX;
}
%}

%nodefaultctor osg::Drawable;
%extend osg::Drawable {
  ~Drawable() { zorOsgReleaseUnheld($self); }
}
OSG_OWNED(Geometry)
ZOR_SEQUENCE_GUARD(osg::Geometry::getPrimitiveSet)
ZOR_SEQUENCE_GUARD(osg::Geometry::setPrimitiveSet)
ZOR_SEQUENCE_GUARD(osg::Geometry::removePrimitiveSet)
%apply SWIGTYPE* NOT_NULL { osg::PrimitiveSet* primitives };

namespace osg {

/** What is drawn. */
class Drawable : public Node {
public:
  osg::BoundingBox const& getBoundingBox() const;
  /** Has what the graphics card holds made anew before the next frame. */
  void dirtyGLObjects();
  void dirtyDisplayList();
  /** \param use - true: vertices stay where they are and are sent each time, for those that change */
  void setUseVertexBufferObjects(bool use);
  bool getUseVertexBufferObjects() const;
  void setUseDisplayList(bool use);
  bool getUseDisplayList() const;
  osg::Shape* getShape();
  void setShape(osg::Shape* shape);
};

/**
 * Vertices with normals, colours and texture coordinates, and the primitive sets that say what is drawn of them. A geometry whose
 * indices lead out of its arrays is not drawn; getFault() says why.
 */
class Geometry : public Drawable {
public:
  osg::Array* getVertexArray();
  void setVertexArray(osg::Array* array);
  osg::Array* getNormalArray();
  osg::Array* getColorArray();
  osg::Array* getSecondaryColorArray();
  osg::Array* getFogCoordArray();
  unsigned int getNumTexCoordArrays() const;
  unsigned int getNumVertexAttribArrays() const;
  unsigned int getNumPrimitiveSets() const;
  /** Adds what is drawn. \return true */
  bool addPrimitiveSet(osg::PrimitiveSet* primitives);
};
%extend Geometry {
  Geometry() { return new zorBinding::CheckedGeometry; }
  /**
   * \param array - normals; None for none
   * \param binding - an Array.Binding; if it is left out, a single one is for all, several are for a vertex each
   */
  void setNormalArray(osg::Array* array, int binding = -1) { $self->setNormalArray(array, zorBindingOf(array, binding)); }
  /**
   * \param array - colours; None for none
   * \param binding - an Array.Binding; if it is left out, a single one is for all, several are for a vertex each
   */
  void setColorArray(osg::Array* array, int binding = -1) {
    if (array && array->getDataType() == GL_UNSIGNED_BYTE) array->setNormalize(true);
    $self->setColorArray(array, zorBindingOf(array, binding));
  }
  void setSecondaryColorArray(osg::Array* array, int binding = -1) { $self->setSecondaryColorArray(array, zorBindingOf(array, binding)); }
  void setFogCoordArray(osg::Array* array, int binding = -1) { $self->setFogCoordArray(array, zorBindingOf(array, binding)); }
  /** \param unit - texture unit, 0 to 15 \param array - coordinates, one for a vertex each; None for none */
  void setTexCoordArray(unsigned int unit, osg::Array* array) {
    $self->setTexCoordArray(zorCheckedUnit(unit, "a texture unit"), array, osg::Array::BIND_PER_VERTEX);
  }
  /** \return coordinates of a texture unit; None if there are none */
  osg::Array* getTexCoordArray(unsigned int unit) { return $self->getTexCoordArray(unit); }
  /** \param index - location in the shader, 0 to 15 \param array - values; None for none \param binding - as for normals */
  void setVertexAttribArray(unsigned int index, osg::Array* array, int binding = -1) {
    $self->setVertexAttribArray(zorCheckedUnit(index, "the location of an attribute"), array, zorBindingOf(array, binding));
  }
  /** \return values of an attribute; None if there are none */
  osg::Array* getVertexAttribArray(unsigned int index) { return $self->getVertexAttribArray(index); }
  /** \return what is drawn; IndexError if there is none at the position */
  osg::PrimitiveSet* getPrimitiveSet(ptrdiff_t index) {
    return $self->getPrimitiveSet(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumPrimitiveSets())));
  }
  /** Replaces what is drawn at a position. */
  void setPrimitiveSet(ptrdiff_t index, osg::PrimitiveSet* primitives) {
    $self->setPrimitiveSet(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumPrimitiveSets())), primitives);
  }
  /** Removes what is drawn at a position. */
  void removePrimitiveSet(ptrdiff_t index) {
    $self->removePrimitiveSet(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumPrimitiveSets())));
  }
  /** Says that numbers have changed: bounds are computed and the graphics card gets the vertices anew. */
  void dirty() {
    osg::Geometry::ArrayList arrays;
    $self->getArrayList(arrays);
    for (auto const& array : arrays) array->dirty();
    for (auto const& primitives : $self->getPrimitiveSetList()) primitives->dirty();
    $self->dirtyGLObjects();
    $self->dirtyBound();
  }
  /** \return what would be read outside of the arrays if the geometry was drawn; empty if nothing is */
  std::string getFault() const { return zorBinding::geometryFault(*$self); }
  %pythoncode %{
    def getPrimitiveSets(self) -> list[PrimitiveSet]:
        """Returns what is drawn of the vertices."""
        return [self.getPrimitiveSet(i) for i in range(self.getNumPrimitiveSets())]
  %}
}

} // namespace osg
%clear osg::PrimitiveSet* primitives;
