// State sets.

OSG_OWNED(StateSet)
ZOR_SEQUENCE_GUARD(osg::StateSet::getParent)

%{
static void zorCheckTextureAttribute(osg::StateAttribute const* attribute) {
  if (attribute && !attribute->isTextureAttribute())
    throw std::invalid_argument(std::string("a ") + attribute->className() + " does not belong to a texture unit");
}

static void zorCheckPlainAttribute(osg::StateAttribute const* attribute) {
  if (!attribute) throw std::invalid_argument("an attribute is expected, not None");
  if (attribute->isTextureAttribute())
    throw std::invalid_argument(std::string("a ") + attribute->className() + " belongs to a texture unit: use setTextureAttributeAndModes()");
}
%}

namespace osg {

/** How what is below a node is drawn. Shared where several nodes have the same. */
class StateSet : public Object {
public:
  enum RenderingHint { DEFAULT_BIN = 0, OPAQUE_BIN = 1, TRANSPARENT_BIN = 2 };
  enum RenderBinMode {
    INHERIT_RENDERBIN_DETAILS = 0,
    USE_RENDERBIN_DETAILS = 1,
    OVERRIDE_RENDERBIN_DETAILS = 2,
    PROTECTED_RENDERBIN_DETAILS = 4
  };
  StateSet();
  /** \param mode - one of OpenGL, such as osg.GL_BLEND \param value - StateAttribute.Values, added up */
  void setMode(unsigned int mode, unsigned int value);
  /** Leaves a mode as it is above the node. */
  void removeMode(unsigned int mode);
  unsigned int getMode(unsigned int mode) const;
  /** Removes everything. */
  void clear();
  /** Adds what another one sets. */
  void merge(osg::StateSet const& other);
  unsigned int getNumParents() const;
  void removeUniform(std::string const& name);
  /** \return the uniform of that name; None if there is none */
  osg::Uniform* getUniform(std::string const& name);
  /** Sets a macro of the shaders below. */
  void setDefine(std::string const& name, unsigned int value = 1);
  void setDefine(std::string const& name, std::string const& text, unsigned int value = 1);
  void removeDefine(std::string const& name);
  /** \param hint - TRANSPARENT_BIN: drawn after the rest, from back to front */
  void setRenderingHint(int hint);
  int getRenderingHint() const;
  /** \param number - lower ones are drawn first \param name - "RenderBin", "DepthSortedBin" for back to front, or "StateSortedBin" */
  void setRenderBinDetails(int number, std::string const& name, RenderBinMode mode = USE_RENDERBIN_DETAILS);
  void setRenderBinToInherit();
  int getBinNumber() const;
  std::string const& getBinName() const;
};
%extend StateSet {
  /** \param attribute - replaces the one of its type, its modes stay \param value - StateAttribute.Values, added up */
  void setAttribute(osg::StateAttribute* attribute, unsigned int value = 0) {
    zorCheckPlainAttribute(attribute);
    $self->setAttribute(attribute, value);
  }
  /** \param attribute - replaces the one of its type \param value - whether it is on: StateAttribute.Values, added up */
  void setAttributeAndModes(osg::StateAttribute* attribute, unsigned int value = 1) {
    zorCheckPlainAttribute(attribute);
    $self->setAttributeAndModes(attribute, value);
  }
  /** \param type - a StateAttribute.Type \param member - number of a light or clip plane \return the attribute; None if there is none */
  osg::StateAttribute* getAttribute(int type, unsigned int member = 0) {
    return $self->getAttribute(static_cast<osg::StateAttribute::Type>(type), member);
  }
  /** Leaves what attributes of a type set as it is above the node. */
  void removeAttribute(int type, unsigned int member = 0) {
    $self->removeAttribute(static_cast<osg::StateAttribute::Type>(type), member);
  }
  /** \param unit - texture unit, 0 to 15 \param mode - such as osg.GL_TEXTURE_2D */
  void setTextureMode(unsigned int unit, unsigned int mode, unsigned int value) {
    $self->setTextureMode(zorCheckedUnit(unit, "a texture unit"), mode, value);
  }
  unsigned int getTextureMode(unsigned int unit, unsigned int mode) const { return $self->getTextureMode(unit, mode); }
  /** \param unit - texture unit, 0 to 15 \param attribute - a texture, TexEnv or TexMat */
  void setTextureAttribute(unsigned int unit, osg::StateAttribute* attribute, unsigned int value = 0) {
    if (!attribute) throw std::invalid_argument("an attribute is expected, not None");
    zorCheckTextureAttribute(attribute);
    $self->setTextureAttribute(zorCheckedUnit(unit, "a texture unit"), attribute, value);
  }
  /** \param unit - texture unit, 0 to 15 \param attribute - a texture, TexEnv or TexMat \param value - whether it is on */
  void setTextureAttributeAndModes(unsigned int unit, osg::StateAttribute* attribute, unsigned int value = 1) {
    if (!attribute) throw std::invalid_argument("an attribute is expected, not None");
    zorCheckTextureAttribute(attribute);
    $self->setTextureAttributeAndModes(zorCheckedUnit(unit, "a texture unit"), attribute, value);
  }
  /** \param type - a StateAttribute.Type \return the attribute of a texture unit; None if there is none */
  osg::StateAttribute* getTextureAttribute(unsigned int unit, int type) {
    return $self->getTextureAttribute(unit, static_cast<osg::StateAttribute::Type>(type));
  }
  void removeTextureAttribute(unsigned int unit, int type) {
    $self->removeTextureAttribute(unit, static_cast<osg::StateAttribute::Type>(type));
  }
  unsigned int getNumTextureAttributeLists() const { return $self->getNumTextureAttributeLists(); }
  void addUniform(osg::Uniform* uniform, unsigned int value = 1) {
    if (!uniform) throw std::invalid_argument("a uniform is expected, not None");
    $self->addUniform(uniform, value);
  }
  /** \return the material, or None */
  osg::Material* getMaterial() {
    return dynamic_cast<osg::Material*>($self->getAttribute(osg::StateAttribute::MATERIAL));
  }
  /** \return the texture of a unit, or None */
  osg::Texture* getTexture(unsigned int unit) {
    return dynamic_cast<osg::Texture*>($self->getTextureAttribute(unit, osg::StateAttribute::TEXTURE));
  }
  osg::Node* getParent(ptrdiff_t index) {
    return $self->getParent(static_cast<unsigned int>(zorBinding::checkedIndex(index, $self->getNumParents())));
  }
  size_t _numUniforms() const { return $self->getUniformList().size(); }
  osg::Uniform* _uniform(ptrdiff_t index) {
    std::size_t const place = zorBinding::checkedIndex(index, $self->getUniformList().size());
    return std::next($self->getUniformList().begin(), static_cast<std::ptrdiff_t>(place))->second.first.get();
  }
  PyObject* _define(std::string const& name) const {
    auto const found = $self->getDefineList().find(name);
    if (found == $self->getDefineList().end()) Py_RETURN_NONE;
    return PyUnicode_DecodeUTF8(found->second.first.data(), static_cast<Py_ssize_t>(found->second.first.size()), "surrogateescape");
  }
  %pythoncode %{
    def getUniforms(self) -> list[Uniform]:
        """Returns all uniforms, in the order of their names."""
        return [self._uniform(i) for i in range(self._numUniforms())]

    def getDefine(self, name: str) -> str | None:
        """Returns the text of a macro of the shaders; None if it isn't set."""
        return self._define(name)
  %}
}

} // namespace osg
