// State sets and what they hold.

OSG_OWNED(StateSet)
OSG_OWNED(Material)
OSG_OWNED(Uniform)
OSG_OWNED(Program)
OSG_OWNED(Texture2D)
OSG_OWNED(TextureCubeMap)
%nodefaultctor osg::StateAttribute;
%nodefaultdtor osg::StateAttribute;
%nodefaultctor osg::Texture;
%nodefaultdtor osg::Texture;

namespace osg {

class StateAttribute : public Object {
public:
  enum Values { OFF = 0, ON = 1, OVERRIDE = 2, PROTECTED = 4, INHERIT = 8 };
};

class Material : public StateAttribute {
public:
  enum Face { FRONT = 0x0404, BACK = 0x0405, FRONT_AND_BACK = 0x0408 };
  Material();
  void setAmbient(Face face, osg::Vec4f const& ambient);
  osg::Vec4f const& getAmbient(Face face) const;
  void setDiffuse(Face face, osg::Vec4f const& diffuse);
  osg::Vec4f const& getDiffuse(Face face) const;
  void setSpecular(Face face, osg::Vec4f const& specular);
  osg::Vec4f const& getSpecular(Face face) const;
  void setEmission(Face face, osg::Vec4f const& emission);
  osg::Vec4f const& getEmission(Face face) const;
  void setShininess(Face face, float shininess);
  float getShininess(Face face) const;
  void setTransparency(Face face, float transparency);
};

class Light : public StateAttribute {
public:
  Light();
  osg::Vec4f const& getPosition() const;
  void setPosition(osg::Vec4f const& position);
  osg::Vec4f const& getDiffuse() const;
  void setDiffuse(osg::Vec4f const& diffuse);
  osg::Vec4f const& getAmbient() const;
  void setAmbient(osg::Vec4f const& ambient);
};

class Uniform : public Object {
public:
  Uniform(char const* name, float value);
  bool set(float value);
};

class Program : public StateAttribute {
public:
  Program();
};

class Texture : public StateAttribute {
public:
  int getTextureWidth() const;
  int getTextureHeight() const;
};

class Texture2D : public Texture {
public:
  Texture2D();
  Texture2D(osg::Image* image);
  void setImage(osg::Image* image);
  osg::Image* getImage();
};

class TextureCubeMap : public Texture {
public:
  TextureCubeMap();
};

class StateSet : public Object {
public:
  StateSet();
  void setMode(unsigned int mode, unsigned int value);
  unsigned int getMode(unsigned int mode) const;
  void setAttribute(osg::StateAttribute* attribute, unsigned int value = 0);
  void setAttributeAndModes(osg::StateAttribute* attribute, unsigned int value = 1);
  void setTextureAttributeAndModes(unsigned int unit, osg::StateAttribute* attribute, unsigned int value = 1);
  void addUniform(osg::Uniform* uniform);
  osg::Uniform* getUniform(std::string const& name);
};
%extend StateSet {
  /** \return the material, or None */
  osg::Material* getMaterial() {
    return dynamic_cast<osg::Material*>($self->getAttribute(osg::StateAttribute::MATERIAL));
  }
  /** \return the texture of a unit, or None */
  osg::Texture* getTexture(unsigned int unit) {
    return dynamic_cast<osg::Texture*>($self->getTextureAttribute(unit, osg::StateAttribute::TEXTURE));
  }
}

} // namespace osg
