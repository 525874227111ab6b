// Shaders and their parameters.

OSG_OWNED(Uniform)
OSG_OWNED(Shader)
OSG_OWNED(Program)
ZOR_SEQUENCE_GUARD(osg::Program::getShader)
ZOR_SEQUENCE_GUARD(osg::Uniform::_get)
ZOR_SEQUENCE_GUARD(osg::Uniform::_set)

%{
static unsigned int zorUniformElement(osg::Uniform const& uniform, std::ptrdiff_t index) {
  return static_cast<unsigned int>(zorBinding::checkedIndex(index, uniform.getNumElements()));
}

static void zorCheckUniformSet(osg::Uniform const& uniform, bool good) {
  if (!good)
    throw std::invalid_argument("the uniform '" + uniform.getName() + "' of type " + osg::Uniform::getTypename(uniform.getType()) +
                                " can't hold a value of this kind");
}

static bool zorSetUniformNumber(osg::Uniform& uniform, unsigned int index, double value) {
  bool const isWhole = value >= -2147483648.0 && value <= 4294967295.0 && value == std::floor(value);
  switch (osg::Uniform::getGlApiType(uniform.getType())) {
  case osg::Uniform::FLOAT: return uniform.setElement(index, static_cast<float>(value));
  case osg::Uniform::DOUBLE: return uniform.setElement(index, value);
  case osg::Uniform::UNSIGNED_INT: return isWhole && value >= 0 && uniform.setElement(index, static_cast<unsigned int>(value));
  case osg::Uniform::INT:
    if (uniform.getType() == osg::Uniform::BOOL) return uniform.setElement(index, value != 0);
    return isWhole && value <= 2147483647.0 && uniform.setElement(index, static_cast<int>(value));
  case osg::Uniform::BOOL: return uniform.setElement(index, value != 0);
  default: return false;
  }
}

template <class Number>
static PyObject* zorUniformNumber(osg::Uniform const& uniform, unsigned int index, PyObject* (*shown)(Number)) {
  Number value = 0;
  return uniform.getElement(index, value) ? shown(value) : nullptr;
}

template <class Value>
static PyObject* zorUniformValue(osg::Uniform const& uniform, unsigned int index, swig_type_info* type) {
  Value value;
  return uniform.getElement(index, value) ? SWIG_NewPointerObj(new Value(value), type, SWIG_POINTER_OWN) : nullptr;
}

static PyObject* zorUniformElementShown(osg::Uniform const& uniform, unsigned int index) {
  switch (uniform.getType()) {
  case osg::Uniform::FLOAT: return zorUniformNumber<float>(uniform, index, [](float v) { return PyFloat_FromDouble(static_cast<double>(v)); });
  case osg::Uniform::DOUBLE: return zorUniformNumber<double>(uniform, index, [](double v) { return PyFloat_FromDouble(v); });
  case osg::Uniform::BOOL: return zorUniformNumber<bool>(uniform, index, [](bool v) { return PyBool_FromLong(v); });
  case osg::Uniform::UNSIGNED_INT: return zorUniformNumber<unsigned int>(uniform, index, [](unsigned int v) { return PyLong_FromUnsignedLong(v); });
  case osg::Uniform::FLOAT_VEC2: return zorUniformValue<osg::Vec2f>(uniform, index, SWIGTYPE_p_osg__Vec2f);
  case osg::Uniform::FLOAT_VEC3: return zorUniformValue<osg::Vec3f>(uniform, index, SWIGTYPE_p_osg__Vec3f);
  case osg::Uniform::FLOAT_VEC4: return zorUniformValue<osg::Vec4f>(uniform, index, SWIGTYPE_p_osg__Vec4f);
  case osg::Uniform::DOUBLE_VEC2: return zorUniformValue<osg::Vec2d>(uniform, index, SWIGTYPE_p_osg__Vec2d);
  case osg::Uniform::DOUBLE_VEC3: return zorUniformValue<osg::Vec3d>(uniform, index, SWIGTYPE_p_osg__Vec3d);
  case osg::Uniform::DOUBLE_VEC4: return zorUniformValue<osg::Vec4d>(uniform, index, SWIGTYPE_p_osg__Vec4d);
  case osg::Uniform::FLOAT_MAT4: {
    osg::Matrixf matrix;
    return uniform.getElement(index, matrix) ? SWIG_NewPointerObj(new osg::Matrixd(matrix), SWIGTYPE_p_osg__Matrixd, SWIG_POINTER_OWN) : nullptr;
  }
  case osg::Uniform::DOUBLE_MAT4: return zorUniformValue<osg::Matrixd>(uniform, index, SWIGTYPE_p_osg__Matrixd);
  default: return zorUniformNumber<int>(uniform, index, [](int v) { return PyLong_FromLong(v); });
  }
}
%}

%define OSG_UNIFORM_VALUE(TYPE, ELEMENT)
%extend osg::Uniform {
  Uniform(std::string const& name, TYPE const& value) { return new osg::Uniform(name.c_str(), value); }
  void _set(ptrdiff_t index, TYPE const& value) { zorCheckUniformSet(*$self, $self->setElement(zorUniformElement(*$self, index), ELEMENT)); }
}
%enddef

namespace osg {

/** A parameter of shaders. */
class Uniform : public Object {
public:
  enum Type {
    FLOAT, FLOAT_VEC2, FLOAT_VEC3, FLOAT_VEC4, DOUBLE, DOUBLE_VEC2, DOUBLE_VEC3, DOUBLE_VEC4, INT, UNSIGNED_INT, BOOL,
    FLOAT_MAT4, DOUBLE_MAT4, SAMPLER_2D, SAMPLER_CUBE
  };
  int getType() const;
  /** \return length of an array; 1 for a single value */
  unsigned int getNumElements() const;
};
%extend Uniform {
  /** \param type - a Type \param name - its name in the shaders \param length - of an array, 1 to 4096 */
  Uniform(int type, std::string const& name, int length = 1) {
    if (length < 1 || length > 4096) throw std::invalid_argument("a uniform has 1 to 4096 elements");
    if (osg::Uniform::getTypeNumComponents(static_cast<osg::Uniform::Type>(type)) < 1) throw std::invalid_argument("no type of a uniform: " + std::to_string(type));
    return new osg::Uniform(static_cast<osg::Uniform::Type>(type), name, length);
  }
  /** \param name - its name in the shaders \param value - its value, which decides its type */
  Uniform(std::string const& name, bool value) { return new osg::Uniform(name.c_str(), value); }
  Uniform(std::string const& name, int value) { return new osg::Uniform(name.c_str(), value); }
  Uniform(std::string const& name, float value) { return new osg::Uniform(name.c_str(), value); }
  void _set(ptrdiff_t index, double value) { zorCheckUniformSet(*$self, zorSetUniformNumber(*$self, zorUniformElement(*$self, index), value)); }
  PyObject* _get(ptrdiff_t index) const {
    PyObject* value = zorUniformElementShown(*$self, zorUniformElement(*$self, index));
    if (!value && !PyErr_Occurred()) zorCheckUniformSet(*$self, false);
    return value;
  }
  %pythoncode %{
    def set(self, value: bool | int | float | Vec2f | Vec3f | Vec4f | Vec2d | Vec3d | Vec4d | Matrixd, index: int = 0) -> None:
        """Sets the value, or one of an array; ValueError if it is not of the uniform's type."""
        self._set(index, value)

    def get(self, index: int = 0) -> bool | int | float | Vec2f | Vec3f | Vec4f | Vec2d | Vec3d | Vec4d | Matrixd:
        """Returns the value, or one of an array."""
        return self._get(index)
  %}
}

} // namespace osg

OSG_UNIFORM_VALUE(osg::Vec2f, value)
OSG_UNIFORM_VALUE(osg::Vec3f, value)
OSG_UNIFORM_VALUE(osg::Vec4f, value)
OSG_UNIFORM_VALUE(osg::Vec2d, value)
OSG_UNIFORM_VALUE(osg::Vec3d, value)
OSG_UNIFORM_VALUE(osg::Vec4d, value)
%extend osg::Uniform {
  Uniform(std::string const& name, osg::Matrixd const& value) { return new osg::Uniform(name.c_str(), osg::Matrixf(value)); }
  void _set(ptrdiff_t index, osg::Matrixd const& value) {
    unsigned int const element = zorUniformElement(*$self, index);
    bool const isDouble = $self->getType() == osg::Uniform::DOUBLE_MAT4;
    zorCheckUniformSet(*$self, isDouble ? $self->setElement(element, value) : $self->setElement(element, osg::Matrixf(value)));
  }
}

namespace osg {

/** A stage of a shader program. */
class Shader : public Object {
public:
  enum Type { VERTEX, TESSCONTROL, TESSEVALUATION, GEOMETRY, FRAGMENT, COMPUTE, UNDEFINED };
  /** \param type - the stage \param source - text in GLSL */
  Shader(Type type, std::string const& source = std::string());
  Type getType() const;
  void setShaderSource(std::string const& source);
  std::string const& getShaderSource() const;
  std::string const& getFileName() const;
};
%extend Shader {
  /** Reads the text from a file; RuntimeError with its name if it can't be read. */
  void loadShaderSourceFromFile(std::string const& fileName) {
    if (!$self->loadShaderSourceFromFile(fileName)) throw std::runtime_error("can't read shader file '" + fileName + "'");
  }
}

/** A shader program. */
class Program : public StateAttribute {
public:
  Program();
  unsigned int getNumShaders() const;
  /** \return true unless it was added already */
  bool addShader(osg::Shader* shader);
  bool removeShader(osg::Shader* shader);
  /** Gives an attribute of the vertices its location, 0 to 15. */
  void addBindAttribLocation(std::string const& name, unsigned int index);
  void addBindFragDataLocation(std::string const& name, unsigned int index);
};
%extend Program {
  osg::Shader* getShader(ptrdiff_t index) {
    return $self->getShader(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumShaders())));
  }
}

} // namespace osg
