// Counted objects, what all of them share, and copying.

OSG_HELD(Referenced)
OSG_BASE_CLASS(osg, Object)

%{
// What a user value holds, as Python's own type where it has one. Null without an error for other kinds.
template <class Value>
static bool zorHolds(osg::Object const& holder, Value& value) {
  auto const* found = dynamic_cast<osg::TemplateValueObject<Value> const*>(&holder);
  if (found) value = found->getValue();
  return found;
}

template <class Integer>
static PyObject* zorIntegerValue(osg::Object const& holder) {
  Integer value = 0;
  return zorHolds(holder, value) ? PyLong_FromLongLong(value) : nullptr;
}

template <class Float>
static PyObject* zorFloatValue(osg::Object const& holder) {
  Float value = 0;
  return zorHolds(holder, value) ? PyFloat_FromDouble(static_cast<double>(value)) : nullptr;
}

template <class Value, class Shown = Value>
static PyObject* zorClassValue(osg::Object const& holder, swig_type_info* type) {
  Value value;
  return zorHolds(holder, value) ? SWIG_NewPointerObj(new Shown(value), type, SWIG_POINTER_OWN) : nullptr;
}

static PyObject* zorUserValue(osg::Object const& holder) {
  bool truth = false;
  if (zorHolds(holder, truth)) return PyBool_FromLong(truth);
  std::string text;
  if (zorHolds(holder, text)) return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
  PyObject* (*const numbers[])(osg::Object const&) = {
      zorIntegerValue<int>, zorIntegerValue<unsigned int>, zorIntegerValue<short>, zorIntegerValue<unsigned short>,
      zorIntegerValue<signed char>, zorIntegerValue<unsigned char>, zorIntegerValue<char>, zorFloatValue<float>,
      zorFloatValue<double>};
  for (auto read : numbers) {
    if (PyObject* number = read(holder)) return number;
  }
  if (PyObject* vector = zorClassValue<osg::Vec2f>(holder, SWIGTYPE_p_osg__Vec2f)) return vector;
  if (PyObject* vector = zorClassValue<osg::Vec3f>(holder, SWIGTYPE_p_osg__Vec3f)) return vector;
  if (PyObject* vector = zorClassValue<osg::Vec4f>(holder, SWIGTYPE_p_osg__Vec4f)) return vector;
  if (PyObject* vector = zorClassValue<osg::Vec2d>(holder, SWIGTYPE_p_osg__Vec2d)) return vector;
  if (PyObject* vector = zorClassValue<osg::Vec3d>(holder, SWIGTYPE_p_osg__Vec3d)) return vector;
  if (PyObject* vector = zorClassValue<osg::Vec4d>(holder, SWIGTYPE_p_osg__Vec4d)) return vector;
  if (PyObject* quat = zorClassValue<osg::Quat>(holder, SWIGTYPE_p_osg__Quat)) return quat;
  return zorClassValue<osg::Matrixd>(holder, SWIGTYPE_p_osg__Matrixd);
}
%}

namespace osg {

/** Base of all shared objects of the scene graph. Proxies of the same object are equal. */
class Referenced {
public:
  /** \return how many hold the object, this proxy included */
  int referenceCount() const;
};
%extend Referenced {
  size_t _address() const { return reinterpret_cast<size_t>(dynamic_cast<void const*>($self)); }
  %pythoncode %{
    def __eq__(self, other: object) -> bool:
        return isinstance(other, Referenced) and self._address() == other._address()

    def __hash__(self) -> int:
        return hash(self._address())
  %}
}

%copyctor osg::CopyOp;
/** What a copy shares with its original, and what it copies too. */
class CopyOp {
public:
  enum Options {
    SHALLOW_COPY = 0,
    DEEP_COPY_OBJECTS = 1,
    DEEP_COPY_NODES = 2,
    DEEP_COPY_DRAWABLES = 4,
    DEEP_COPY_STATESETS = 8,
    DEEP_COPY_STATEATTRIBUTES = 16,
    DEEP_COPY_TEXTURES = 32,
    DEEP_COPY_IMAGES = 64,
    DEEP_COPY_ARRAYS = 128,
    DEEP_COPY_PRIMITIVES = 256,
    DEEP_COPY_SHAPES = 512,
    DEEP_COPY_UNIFORMS = 1024,
    DEEP_COPY_CALLBACKS = 2048,
    DEEP_COPY_USERDATA = 4096,
    DEEP_COPY_ALL = 0x7FFFFFFF
  };
  /** \param flags - Options, added up */
  CopyOp(unsigned int flags = 0);
  unsigned int getCopyFlags() const;
};

/** Base of nodes, state, images: what has a name. */
class Object : public Referenced {
public:
  enum DataVariance { DYNAMIC, STATIC, UNSPECIFIED };
  std::string const& getName() const;
  void setName(std::string const& name);
  /** \return the library of the object's class */
  char const* libraryName() const;
  /** \return the object's class */
  char const* className() const;
  /** \param variance - STATIC lets the optimizer change the object, DYNAMIC says that it changes between frames */
  void setDataVariance(DataVariance variance);
  DataVariance getDataVariance() const;
};
%extend Object {
  osg::Object* _clone(osg::CopyOp const& how) const {
    osg::Object* copy = $self->clone(how);
    if (!copy) throw std::invalid_argument(std::string("an object of class ") + $self->className() + " can't be copied");
    return copy;
  }
  void _setUserValue(std::string const& name, bool value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, int value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, double value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, std::string const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Vec2d const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Vec3d const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Vec4d const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Vec2f const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Vec3f const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Vec4f const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Quat const& value) { $self->setUserValue(name, value); }
  void _setUserValue(std::string const& name, osg::Matrixd const& value) { $self->setUserValue(name, value); }
  PyObject* _userValues() const {
    PyObject* values = PyDict_New();
    osg::UserDataContainer const* container = $self->getUserDataContainer();
    for (unsigned int i = 0; values && container && i < container->getNumUserObjects(); ++i) {
      osg::Object const* holder = container->getUserObject(i);
      PyObject* value = holder ? zorUserValue(*holder) : nullptr;
      if (!value) continue;
      if (PyDict_SetItemString(values, holder->getName().c_str(), value) != 0) Py_CLEAR(values);
      Py_DECREF(value);
    }
    return values;
  }
  %pythoncode %{
    def __init_subclass__(cls, **arguments: object) -> None:
        super().__init_subclass__(**arguments)
        # Every proxy class comes with a repr of its own, which would hide the one below.
        if getattr(cls.__dict__.get("__repr__"), "__name__", "") == "_swig_repr":
            del cls.__repr__

    def __repr__(self) -> str:
        try:
            name = self.getName()
        except (AttributeError, TypeError):
            return object.__repr__(self)
        return f"<{type(self).__module__}.{type(self).__qualname__}{f' {name!r}' if name else ''} at {self._address():#x}>"

    def clone(self, how: CopyOp | None = None) -> Self:
        """
        Returns a copy of the object.

        :param how: what is copied with it, CopyOp(CopyOp.DEEP_COPY_ALL) for everything; the copy shares the rest
        """
        return self._clone(how if how is not None else CopyOp())

    def __copy__(self) -> Self:
        return self._clone(CopyOp(CopyOp.SHALLOW_COPY))

    def __deepcopy__(self, memo: dict[int, object], /) -> Self:
        return self._clone(CopyOp(CopyOp.DEEP_COPY_ALL))

    def setUserValue(self, name: str, value: bool | int | float | str | Vec2f | Vec3f | Vec4f | Vec2d | Vec3d | Vec4d | Quat | Matrixd) -> None:
        """Stores a value in the object under a name; it is written to files with it. Integers have 32 bits."""
        self._setUserValue(name, value)

    def getUserValue(self, name: str) -> bool | int | float | str | Vec2f | Vec3f | Vec4f | Vec2d | Vec3d | Vec4d | Quat | Matrixd | None:
        """Returns the value under a name, None if there is none."""
        return self._userValues().get(name)

    def getUserValues(self) -> dict[str, bool | int | float | str | Vec2f | Vec3f | Vec4f | Vec2d | Vec3d | Vec4d | Quat | Matrixd]:
        """Returns all values that are stored in the object, by name."""
        return self._userValues()
  %}
}

} // namespace osg
