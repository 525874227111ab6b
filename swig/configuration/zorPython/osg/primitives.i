// What a geometry draws of its vertices.

OSG_BASE_CLASS(osg, PrimitiveSet)
OSG_BASE_CLASS(osg, DrawElements)
OSG_OWNED(DrawArrays)
OSG_OWNED(DrawArrayLengths)

namespace osg {

/** What is drawn of the vertices of a geometry. */
class PrimitiveSet : public BufferData {
public:
  enum Mode {
    POINTS = 0,
    LINES = 1,
    LINE_LOOP = 2,
    LINE_STRIP = 3,
    TRIANGLES = 4,
    TRIANGLE_STRIP = 5,
    TRIANGLE_FAN = 6,
    QUADS = 7,
    QUAD_STRIP = 8,
    POLYGON = 9,
    PATCHES = 14
  };
  unsigned int getNumIndices() const;
  unsigned int getNumPrimitives() const;
  unsigned int getMode() const;
  /** \param mode - a Mode */
  void setMode(unsigned int mode);
  int getNumInstances() const;
};
%extend PrimitiveSet {
  /** \param number - how often it is drawn, 0 to 1,000,000; a shader tells the instances apart. 0: once, without instances */
  void setNumInstances(int number) {
    if (number < 0 || number > 1000000) throw std::invalid_argument("a primitive set has 0 to 1,000,000 instances");
    $self->setNumInstances(number);
  }
}

/** Vertices in a row. */
class DrawArrays : public PrimitiveSet {
public:
  /** \param mode - a Mode \param first - the first vertex \param count - number of vertices */
  DrawArrays(unsigned int mode, int first, int count);
  int getFirst() const;
  void setFirst(int first);
  int getCount() const;
  void setCount(int count);
};

/** Several rows of vertices, one behind the other. */
class DrawArrayLengths : public PrimitiveSet {
public:
  int getFirst() const;
  void setFirst(int first);
};
%extend DrawArrayLengths {
  /** \param mode - a Mode \param first - the first vertex \param lengths - number of vertices of each row */
  DrawArrayLengths(unsigned int mode, int first, PyObject* lengths) {
    std::string const numbers = zorBinding::readElements({nullptr, "i", sizeof(GLsizei)}, lengths);
    osg::ref_ptr<osg::DrawArrayLengths> primitives = new osg::DrawArrayLengths(mode, first, static_cast<unsigned int>(numbers.size() / sizeof(GLsizei)));
    if (!numbers.empty()) std::memcpy(&primitives->front(), numbers.data(), numbers.size());
    return primitives.release();
  }
  size_t __len__() const { return $self->size(); }
  bool __bool__() const { (void)$self; return true; }
}

} // namespace osg

OSG_ELEMENTS(DrawElements, int)
ZOR_SEQUENCE_GUARD(osg::DrawElements::_get)

namespace osg {

/** Vertices by their numbers: a sequence, whose storage numpy.asarray() shows without a copy. */
class DrawElements : public PrimitiveSet {};
%extend DrawElements {
  size_t __len__() const { return $self->getNumIndices(); }
  unsigned int _get(ptrdiff_t index) const { return $self->index(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumIndices()))); }
  %pythoncode %{
    def __getitem__(self, index: int, /) -> int:
        return self._get(index)

    def tolist(self) -> list[int]:
        """Returns the indices as a list."""
        return self._memory().tolist()
  %}
}

} // namespace osg

%define OSG_DRAW_ELEMENTS(NAME, LARGEST)
OSG_OWNED(NAME)
namespace osg {
/** Vertices by their numbers, which are LARGEST at most. */
class NAME : public DrawElements {
public:
  NAME(unsigned int mode);
};
%extend NAME {
  /** \param mode - a Mode \param indices - numbers from an iterable or a buffer */
  NAME(unsigned int mode, PyObject* indices) {
    osg::ref_ptr<osg::NAME> primitives = new osg::NAME(mode);
    zorBinding::spliceElements(*primitives, 0, 0, zorBinding::readElements(zorBinding::storageOf(*primitives), indices));
    return primitives.release();
  }
}
}
%enddef

OSG_DRAW_ELEMENTS(DrawElementsUInt, 4294967295)
OSG_DRAW_ELEMENTS(DrawElementsUShort, 65535)
OSG_DRAW_ELEMENTS(DrawElementsUByte, 255)
