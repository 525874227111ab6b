// Textures.

OSG_BASE_CLASS(osg, Texture)
OSG_OWNED(Texture2D)
OSG_OWNED(TextureCubeMap)
ZOR_INNER_RESULT(osg::Texture::getBorderColor)
ZOR_SEQUENCE_GUARD(osg::TextureCubeMap::getImage)
ZOR_SEQUENCE_GUARD(osg::TextureCubeMap::setImage)

namespace osg {

/** Base of textures. */
class Texture : public StateAttribute {
public:
  enum WrapParameter { WRAP_S, WRAP_T, WRAP_R };
  enum WrapMode { CLAMP = 0x2900, CLAMP_TO_EDGE = 0x812F, CLAMP_TO_BORDER = 0x812D, REPEAT = 0x2901, MIRROR = 0x8370 };
  enum FilterParameter { MIN_FILTER, MAG_FILTER };
  enum FilterMode {
    LINEAR = 0x2601,
    LINEAR_MIPMAP_LINEAR = 0x2703,
    LINEAR_MIPMAP_NEAREST = 0x2701,
    NEAREST = 0x2600,
    NEAREST_MIPMAP_LINEAR = 0x2702,
    NEAREST_MIPMAP_NEAREST = 0x2700
  };
  /** \param which - direction of the texture \param wrap - what lies outside of 0 to 1 */
  void setWrap(WrapParameter which, WrapMode wrap);
  WrapMode getWrap(WrapParameter which) const;
  /** \param which - the texture seems smaller or larger than it is \param filter - how pixels are joined */
  void setFilter(FilterParameter which, FilterMode filter);
  FilterMode getFilter(FilterParameter which) const;
  osg::Vec4d const& getBorderColor() const;
  void setBorderColor(osg::Vec4d const& color);
  /** \param samples - 1 to 16: how sharp slanting surfaces are */
  void setMaxAnisotropy(float samples);
  float getMaxAnisotropy() const;
  void setUseHardwareMipMapGeneration(bool use);
  bool getUseHardwareMipMapGeneration() const;
  /** \param resize - true: images are scaled to sizes that are powers of two */
  void setResizeNonPowerOfTwoHint(bool resize);
  bool getResizeNonPowerOfTwoHint() const;
  /** \param forget - true: the image is given up when the graphics card has it */
  void setUnRefImageDataAfterApply(bool forget);
  bool getUnRefImageDataAfterApply() const;
  /** \param format - format on the graphics card, for instance osg.GL_RGBA32F_ARB */
  void setInternalFormat(int format);
  int getInternalFormat() const;
  int getTextureWidth() const;
  int getTextureHeight() const;
  unsigned int getNumImages() const;
  /** Has the graphics card's copy made anew. */
  void dirtyTextureObject();
};

class Texture2D : public Texture {
public:
  Texture2D();
  Texture2D(osg::Image* image);
  void setImage(osg::Image* image);
  osg::Image* getImage();
};
%extend Texture2D {
  /** Sets the size of a texture without an image (pixels, 1 to 8192). */
  void setTextureSize(int width, int height) {
    if (width < 1 || width > 8192 || height < 1 || height > 8192) throw std::invalid_argument("a texture is 1 to 8192 pixels wide and high");
    $self->setTextureSize(width, height);
  }
}

/** Six images around a point. */
class TextureCubeMap : public Texture {
public:
  enum Face { POSITIVE_X = 0, NEGATIVE_X = 1, POSITIVE_Y = 2, NEGATIVE_Y = 3, POSITIVE_Z = 4, NEGATIVE_Z = 5 };
  TextureCubeMap();
};
%extend TextureCubeMap {
  /** \param face - a Face */
  void setImage(int face, osg::Image* image) {
    if (face < 0) throw std::out_of_range("a cube has the faces 0 to 5");
    $self->setImage(static_cast<unsigned int>(zorBinding::checkedIndex(face, 6)), image);
  }
  /** \param face - a Face \return its image; None if it has none */
  osg::Image* getImage(int face) {
    if (face < 0) throw std::out_of_range("a cube has the faces 0 to 5");
    return $self->getImage(static_cast<unsigned int>(zorBinding::checkedIndex(face, 6)));
  }
}

} // namespace osg
