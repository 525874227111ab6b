// What a state set sets, apart from textures and shaders.

ZOR_INNER_RESULT(osg::Material::getAmbient)
ZOR_INNER_RESULT(osg::Material::getDiffuse)
ZOR_INNER_RESULT(osg::Material::getSpecular)
ZOR_INNER_RESULT(osg::Material::getEmission)
ZOR_INNER_RESULT(osg::ClipPlane::getClipPlane)
OSG_BASE_CLASS(osg, StateAttribute)
OSG_OWNED(Material)
OSG_OWNED(BlendFunc)
OSG_OWNED(Depth)
OSG_OWNED(CullFace)
OSG_OWNED(PolygonMode)
OSG_OWNED(PolygonOffset)
OSG_OWNED(LineWidth)
OSG_OWNED(Point)
OSG_OWNED(Light)
OSG_OWNED(LightModel)
OSG_OWNED(Fog)
OSG_OWNED(TexEnv)
OSG_OWNED(TexMat)
OSG_OWNED(AlphaFunc)
OSG_OWNED(ClipPlane)

// Constants of the base class have these names already.
%rename(NO_COLOR) osg::Material::OFF;
%rename(POINT_TYPE) osg::StateAttribute::POINT;
%rename(POINT) osg::PolygonMode::POINT;

// A colour, or other value, that a class shows of itself.
%define OSG_SHOWN(CLASS, TYPE, NAME)
%feature("pythonappend") CLASS::get##NAME %{
        if val is not None:
            val._owner = self
%}
%extend CLASS {
  TYPE const& get##NAME() const { return $self->get##NAME(); }
  void set##NAME(TYPE const& value) { $self->set##NAME(value); }
}
%enddef

namespace osg {

/** What a state set sets. */
class StateAttribute : public Object {
public:
  enum Values { OFF = 0, ON = 1, OVERRIDE = 2, PROTECTED = 4, INHERIT = 8 };
  enum Type {
    TEXTURE,
    POLYGONMODE,
    POLYGONOFFSET,
    MATERIAL,
    ALPHAFUNC,
    CULLFACE,
    FOG,
    CLIPPLANE,
    LIGHT,
    POINT,
    LINEWIDTH,
    TEXENV,
    TEXMAT,
    LIGHTMODEL,
    BLENDFUNC,
    DEPTH,
    PROGRAM
  };
  /** \return a Type: a state set holds one attribute of each */
  int getType() const;
};

/** Colours of a surface in light. */
class Material : public StateAttribute {
public:
  enum Face { FRONT = 0x0404, BACK = 0x0405, FRONT_AND_BACK = 0x0408 };
  enum ColorMode { AMBIENT = 0x1200, DIFFUSE = 0x1201, SPECULAR = 0x1202, EMISSION = 0x1600, AMBIENT_AND_DIFFUSE = 0x1602, OFF = 0x0B57 };
  Material();
  /** \param mode - which colour the geometry's own colours stand for; NO_COLOR: none */
  void setColorMode(ColorMode mode);
  ColorMode getColorMode() const;
  void setAmbient(Face face, osg::Vec4f const& ambient);
  osg::Vec4f const& getAmbient(Face face) const;
  void setDiffuse(Face face, osg::Vec4f const& diffuse);
  osg::Vec4f const& getDiffuse(Face face) const;
  void setSpecular(Face face, osg::Vec4f const& specular);
  osg::Vec4f const& getSpecular(Face face) const;
  void setEmission(Face face, osg::Vec4f const& emission);
  osg::Vec4f const& getEmission(Face face) const;
  /** \param shininess - 0 to 128: the larger, the smaller the highlight */
  void setShininess(Face face, float shininess);
  float getShininess(Face face) const;
  /** \param alpha - of all colours, 0 to 1 */
  void setAlpha(Face face, float alpha);
  /** \param transparency - 1 less the alpha value of all colours */
  void setTransparency(Face face, float transparency);
};

/** How a colour is mixed with the one that is there. */
class BlendFunc : public StateAttribute {
public:
  enum BlendFuncMode {
    ZERO = 0,
    ONE = 1,
    SRC_COLOR = 0x0300,
    ONE_MINUS_SRC_COLOR = 0x0301,
    SRC_ALPHA = 0x0302,
    ONE_MINUS_SRC_ALPHA = 0x0303,
    DST_ALPHA = 0x0304,
    ONE_MINUS_DST_ALPHA = 0x0305,
    DST_COLOR = 0x0306,
    ONE_MINUS_DST_COLOR = 0x0307,
    SRC_ALPHA_SATURATE = 0x0308
  };
  BlendFunc();
  /** \param source - factor of the new colour, a BlendFuncMode \param destination - of the one that is there */
  BlendFunc(unsigned int source, unsigned int destination);
  void setFunction(unsigned int source, unsigned int destination);
  unsigned int getSource() const;
  unsigned int getDestination() const;
};

/** The test by which nearer things hide farther ones. */
class Depth : public StateAttribute {
public:
  enum Function { NEVER = 0x0200, LESS, EQUAL, LEQUAL, GREATER, NOTEQUAL, GEQUAL, ALWAYS };
  Depth(Function function = LESS, double zNear = 0.0, double zFar = 1.0, bool writeMask = true);
  void setFunction(Function function);
  Function getFunction() const;
  void setRange(double zNear, double zFar);
  double getZNear() const;
  double getZFar() const;
  /** \param write - false: what is drawn hides nothing */
  void setWriteMask(bool write);
  bool getWriteMask() const;
};

/** Which side of faces is left out. */
class CullFace : public StateAttribute {
public:
  enum Mode { FRONT = 0x0404, BACK = 0x0405, FRONT_AND_BACK = 0x0408 };
  CullFace(Mode mode = BACK);
  void setMode(Mode mode);
  Mode getMode() const;
};

/** Whether faces are filled. */
class PolygonMode : public StateAttribute {
public:
  enum Mode { POINT = 0x1B00, LINE = 0x1B01, FILL = 0x1B02 };
  enum Face { FRONT_AND_BACK = 0x0408, FRONT = 0x0404, BACK = 0x0405 };
  PolygonMode();
  PolygonMode(Face face, Mode mode);
  void setMode(Face face, Mode mode);
  Mode getMode(Face face) const;
};

/** Moves faces a little to the back, so that lines on them show. */
class PolygonOffset : public StateAttribute {
public:
  PolygonOffset();
  PolygonOffset(float factor, float units);
  void setFactor(float factor);
  float getFactor() const;
  void setUnits(float units);
  float getUnits() const;
};

/** Width of lines in pixels. */
class LineWidth : public StateAttribute {
public:
  LineWidth(float width = 1.0f);
  void setWidth(float width);
  float getWidth() const;
};

/** Size of points in pixels. */
class Point : public StateAttribute {
public:
  Point();
  Point(float size);
  void setSize(float size);
  float getSize() const;
  void setMinSize(float size);
  float getMinSize() const;
  void setMaxSize(float size);
  float getMaxSize() const;
};
OSG_SHOWN(Point, osg::Vec3f, DistanceAttenuation)

/** A light; a LightSource puts it into the scene. */
class Light : public StateAttribute {
public:
  Light();
  /** \param number - 0 to 7 */
  Light(unsigned int number);
  int getLightNum() const;
  /** \param number - 0 to 7 */
  void setLightNum(int number);
  float getConstantAttenuation() const;
  void setConstantAttenuation(float attenuation);
  float getLinearAttenuation() const;
  void setLinearAttenuation(float attenuation);
  float getQuadraticAttenuation() const;
  void setQuadraticAttenuation(float attenuation);
  float getSpotExponent() const;
  void setSpotExponent(float exponent);
  float getSpotCutoff() const;
  /** \param angle - half the angle of the light's cone (degrees), up to 90; 180 shines into all directions */
  void setSpotCutoff(float angle);
};
OSG_SHOWN(Light, osg::Vec4f, Ambient)
OSG_SHOWN(Light, osg::Vec4f, Diffuse)
OSG_SHOWN(Light, osg::Vec4f, Specular)
OSG_SHOWN(Light, osg::Vec4f, Position)
OSG_SHOWN(Light, osg::Vec3f, Direction)

class LightModel : public StateAttribute {
public:
  enum ColorControl { SEPARATE_SPECULAR_COLOR = 0x81FA, SINGLE_COLOR = 0x81F9 };
  LightModel();
  void setColorControl(ColorControl control);
  ColorControl getColorControl() const;
  void setLocalViewer(bool local);
  bool getLocalViewer() const;
  /** \param twoSided - true: backs of faces are lit as well */
  void setTwoSided(bool twoSided);
  bool getTwoSided() const;
};
OSG_SHOWN(LightModel, osg::Vec4f, AmbientIntensity)

class Fog : public StateAttribute {
public:
  enum Mode { LINEAR = 0x2601, EXP = 0x0800, EXP2 = 0x0801 };
  Fog();
  void setMode(Mode mode);
  Mode getMode() const;
  void setDensity(float density);
  float getDensity() const;
  void setStart(float distance);
  float getStart() const;
  void setEnd(float distance);
  float getEnd() const;
};
OSG_SHOWN(Fog, osg::Vec4f, Color)

/** How a texture's colour is joined with the surface's. */
class TexEnv : public StateAttribute {
public:
  enum Mode { DECAL = 0x2101, MODULATE = 0x2100, BLEND = 0x0BE2, REPLACE = 0x1E01, ADD = 0x0104 };
  TexEnv(Mode mode = MODULATE);
  void setMode(Mode mode);
  Mode getMode() const;
};
OSG_SHOWN(TexEnv, osg::Vec4f, Color)

/** Transform of texture coordinates. */
class TexMat : public StateAttribute {
public:
  TexMat();
  TexMat(osg::Matrixd const& matrix);
};
OSG_SHOWN(TexMat, osg::Matrixd, Matrix)

/** Leaves pixels out by their alpha value. */
class AlphaFunc : public StateAttribute {
public:
  enum ComparisonFunction { NEVER = 0x0200, LESS, EQUAL, LEQUAL, GREATER, NOTEQUAL, GEQUAL, ALWAYS };
  AlphaFunc();
  AlphaFunc(ComparisonFunction function, float reference);
  void setFunction(ComparisonFunction function, float reference);
  ComparisonFunction getFunction() const;
  float getReferenceValue() const;
};

/** Cuts the part of the scene off where a x + b y + c z + d is negative. */
class ClipPlane : public StateAttribute {
public:
  ClipPlane();
  /** \param number - 0 to 5 \param plane - a, b, c, d */
  ClipPlane(unsigned int number, osg::Vec4d const& plane);
  osg::Vec4d const& getClipPlane() const;
  void setClipPlane(osg::Vec4d const& plane);
  unsigned int getClipPlaneNum() const;
  void setClipPlaneNum(unsigned int number);
};

} // namespace osg
