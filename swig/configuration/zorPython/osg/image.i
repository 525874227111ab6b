// Images: pixels are a buffer over the image's own memory, rows from bottom to top as the image keeps them.

OSG_OWNED(Image)
ZOR_SEQUENCE_GUARD(osg::Image::getColor)
ZOR_SEQUENCE_GUARD(osg::Image::setColor)

%{
#include <osg/GL>

struct ZorPixelType {
  GLenum type;
  char const* format;
  long size;
};
static ZorPixelType const zorPixelTypes[] = {{GL_UNSIGNED_BYTE, "B", 1}, {GL_BYTE, "b", 1},   {GL_UNSIGNED_SHORT, "H", 2},
                                             {GL_SHORT, "h", 2},         {GL_INT, "i", 4},    {GL_UNSIGNED_INT, "I", 4},
                                             {GL_FLOAT, "f", 4},         {GL_DOUBLE, "d", 8}, {GL_HALF_FLOAT, "e", 2}};

// Element type of an image's pixels; packed and compressed ones are shown as bytes.
static zorBinding::Memory zorImageMemory(osg::Image& image) {
  zorBinding::Memory memory;
  memory.data = image.data();
  for (ZorPixelType const& type : zorPixelTypes) {
    if (type.type == image.getDataType() && !image.isCompressed() && image.r() == 1) {
      memory.format = type.format;
      memory.itemSize = type.size;
      memory.dimensions = 3;
      memory.shape[0] = image.t();
      memory.shape[1] = image.s();
      memory.shape[2] = osg::Image::computeNumComponents(image.getPixelFormat());
      memory.rowStride = image.getRowStepInBytes();
      return memory;
    }
  }
  memory.shape[0] = image.data() ? image.getTotalSizeInBytes() : 0;
  return memory;
}

static void zorCheckImageSize(long s, long t) {
  if (s <= 0 || t <= 0) throw std::invalid_argument("an image needs a width and a height above 0");
  if (s > 32768 || t > 32768) throw std::invalid_argument("an image is 32768 pixels wide and high at most");
}

static GLenum zorPixelFormat(long components) {
  static GLenum const formats[] = {GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB, GL_RGBA};
  if (components < 1 || components > 4) throw std::invalid_argument("a pixel has 1 to 4 components");
  return formats[components - 1];
}

static void zorAllocateImage(osg::Image& image, long s, long t, long components, ZorPixelType const& type) {
  zorCheckImageSize(s, t);
  GLenum const format = zorPixelFormat(components);
  if (s * t * components * type.size > 0x7fffffffL) throw std::length_error("an image has 2 GiB at most");
  image.allocateImage(static_cast<int>(s), static_cast<int>(t), 1, format, type.type);
  if (!image.data()) throw std::bad_alloc();
}

// A buffer that Python lends while the scope lasts.
class ZorLentBuffer {
public:
  explicit ZorLentBuffer(PyObject* object) : m_isHeld(PyObject_GetBuffer(object, &view, PyBUF_STRIDED_RO | PyBUF_FORMAT) == 0) {
    if (!m_isHeld) throw std::runtime_error("the Python error says what is wrong");
  }
  ZorLentBuffer(ZorLentBuffer const&) = delete;
  ~ZorLentBuffer() {
    if (m_isHeld) PyBuffer_Release(&view);
  }

  Py_buffer view{};

private:
  bool const m_isHeld;
};

static ZorPixelType const& zorPixelTypeOf(Py_buffer const& view) {
  std::string const format = view.format ? view.format : "B";
  for (ZorPixelType const& type : zorPixelTypes) {
    if (format == type.format && view.itemsize == type.size) return type;
  }
  throw std::invalid_argument("pixels are numbers of 8, 16 or 32 bits, not '" + format + "'");
}

static void zorCopyPixels(osg::Image& image, PyObject* pixels, bool topFirst) {
  ZorLentBuffer const lent(pixels);
  Py_buffer const& view = lent.view;
  if (view.ndim != 2 && view.ndim != 3) throw std::invalid_argument("pixels have the dimensions height, width and components, not " + std::to_string(view.ndim));
  long const components = view.ndim == 3 ? view.shape[2] : 1;
  zorAllocateImage(image, view.shape[1], view.shape[0], components, zorPixelTypeOf(view));
  Py_ssize_t const size = view.itemsize;
  for (Py_ssize_t row = 0; row < view.shape[0]; ++row) {
    unsigned char* to = image.data(0, static_cast<unsigned int>(row));
    auto const* from = static_cast<unsigned char const*>(view.buf) + (topFirst ? view.shape[0] - 1 - row : row) * view.strides[0];
    for (Py_ssize_t column = 0; column < view.shape[1]; ++column) {
      for (Py_ssize_t i = 0; i < components; ++i, to += size)
        std::memcpy(to, from + column * view.strides[1] + (view.ndim == 3 ? i * view.strides[2] : 0), static_cast<std::size_t>(size));
    }
  }
  image.dirty();
}
%}

namespace osg {

/**
 * Pixels. numpy.asarray(image) shows them without a copy, as height x width x components; the first row is the lowest. After changing
 * them call dirty(). While such a view is alive the image keeps its size.
 */
class Image : public BufferData {
public:
  Image();
  /** \return width in pixels */
  int s() const;
  /** \return height in pixels */
  int t() const;
  /** \return depth in pixels, 1 for a plain image */
  int r() const;
  bool valid() const;
  unsigned int getPixelFormat() const;
  unsigned int getDataType() const;
  /** \param format - format on the graphics card */
  void setInternalTextureFormat(int format);
  int getInternalTextureFormat() const;
  unsigned int getTotalSizeInBytes() const;
  unsigned int getRowStepInBytes() const;
  std::string const& getFileName() const;
  void setFileName(std::string const& name);
  unsigned int getModifiedCount() const;
  bool isImageTranslucent() const;
};
%extend Image {
  void _allocate(int s, int t, int components) {
    zorAllocateImage(*$self, s, t, components, zorPixelTypes[0]);
    std::fill_n($self->data(), $self->getTotalSizeInBytes(), static_cast<unsigned char>(0));
  }
  void _setPixels(PyObject* pixels, bool topFirst) { zorCopyPixels(*$self, pixels, topFirst); }
  void _copy(osg::Image const& other) {
    if (!other.valid() || other.r() != 1) throw std::invalid_argument("the image has no plain pixels");
    $self->allocateImage(other.s(), other.t(), 1, other.getPixelFormat(), other.getDataType(), static_cast<int>(other.getPacking()));
    if (!$self->data()) throw std::bad_alloc();
    std::memcpy($self->data(), other.data(), other.getTotalSizeInBytes());
    $self->dirty();
  }
  void _scale(int s, int t) {
    zorCheckImageSize(s, t);
    if (!$self->valid()) throw std::invalid_argument("the image has no pixels");
    $self->scaleImage(s, t, 1);
  }
  void _flipVertical() { $self->flipVertical(); }
  void _flipHorizontal() { $self->flipHorizontal(); }
  /** \return the colour of a pixel, 0 to 1; IndexError outside the image, whose first row is the lowest */
  osg::Vec4f getColor(int s, int t) const {
    if (!$self->valid()) throw std::out_of_range("the image has no pixels");
    return $self->getColor(zorBinding::checkedIndex(s, $self->s()), zorBinding::checkedIndex(t, $self->t()), 0);
  }
  /** Sets the colour of a pixel, 0 to 1; IndexError outside the image, whose first row is the lowest. */
  void setColor(osg::Vec4f const& color, int s, int t) {
    if (!$self->valid()) throw std::out_of_range("the image has no pixels");
    $self->setColor(color, static_cast<unsigned int>(zorBinding::checkedIndex(s, $self->s())), static_cast<unsigned int>(zorBinding::checkedIndex(t, $self->t())));
  }
  PyObject* _memory() { return zorBinding::newMemoryView(zorImageMemory(*$self)); }
  %pythoncode %{
    def allocate(self, width: int, height: int, components: int = 4) -> None:
        """Allocates 8-bit pixels, all 0."""
        _check_unused(self)
        self._allocate(width, height, components)

    def setPixels(self, pixels: Buffer, topFirst: bool = False) -> None:
        """
        Copies pixels into the image, which takes their size and kind.

        :param pixels: a buffer, such as a numpy array, of height x width x 1 to 4 components (grey, grey and alpha, RGB, RGBA), or
            height x width for grey
        :param topFirst: whether the first row is the highest, as other libraries have it, and not the lowest
        """
        copy = Image.fromArray(pixels, topFirst) # the pixels may be the image's own
        if copy.getTotalSizeInBytes() != self.getTotalSizeInBytes():
            _check_unused(self)
        self._copy(copy)

    @staticmethod
    def fromArray(pixels: Buffer, topFirst: bool = False) -> Image:
        """Returns a new image with a copy of pixels; see setPixels()."""
        image = Image()
        image._setPixels(pixels, topFirst)
        return image

    def scale(self, width: int, height: int) -> None:
        """Resamples the pixels to another size."""
        _check_unused(self)
        self._scale(width, height)

    def flipVertical(self) -> None:
        """Turns the image upside down."""
        _check_unused(self)
        self._flipVertical()

    def flipHorizontal(self) -> None:
        """Mirrors the image."""
        _check_unused(self)
        self._flipHorizontal()

    def asArray(self, topFirst: bool = False) -> numpy.typing.NDArray[Any]:
        """
        Returns the pixels as a numpy array of height x width x components, without a copy.

        :param topFirst: whether the first row is the highest, as other libraries have it, and not the lowest
        """
        import numpy
        pixels = numpy.asarray(self)
        return pixels[::-1] if topFirst else pixels

    def tobytes(self) -> bytes:
        """Returns a copy of the pixels, row after row from the lowest."""
        return memoryview(self).tobytes()

    def __buffer__(self, flags):
        view = self._memory()
        _lend_buffer(self)
        return view

    def __release_buffer__(self, view):
        _take_buffer_back(self)
  %}
}

} // namespace osg
