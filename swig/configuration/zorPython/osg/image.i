// Images: pixels are a buffer over the image's own memory, rows from bottom to top as the image keeps them.

OSG_OWNED(Image)
ZOR_SEQUENCE_GUARD(osg::Image::getColor)

%{
#include <osg/GL>

// Element type of an image's pixels; packed and compressed ones are shown as bytes.
static zorBinding::Memory zorImageMemory(osg::Image& image) {
  zorBinding::Memory memory;
  memory.data = image.data();
  struct Known { GLenum type; char const* format; long size; };
  static Known const known[] = {{GL_UNSIGNED_BYTE, "B", 1}, {GL_BYTE, "b", 1},   {GL_UNSIGNED_SHORT, "H", 2},
                                {GL_SHORT, "h", 2},         {GL_INT, "i", 4},    {GL_UNSIGNED_INT, "I", 4},
                                {GL_FLOAT, "f", 4},         {GL_DOUBLE, "d", 8}, {GL_HALF_FLOAT, "e", 2}};
  for (Known const& type : known) {
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

static void zorCheckImageSize(int s, int t) {
  if (s <= 0 || t <= 0) throw std::invalid_argument("an image needs a width and a height above 0");
}
%}

namespace osg {

class Image : public Object {
public:
  Image();
  int s() const;
  int t() const;
  int r() const;
  bool valid() const;
  unsigned int getPixelFormat() const;
  unsigned int getDataType() const;
  unsigned int getTotalSizeInBytes() const;
  unsigned int getRowStepInBytes() const;
  std::string const& getFileName() const;
  void dirty();
};
%extend Image {
  /** Allocates 8-bit pixels, all 0. \param s width \param t height \param components 1 to 4 */
  void _allocate(int s, int t, int components) {
    zorCheckImageSize(s, t);
    static GLenum const formats[] = {GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB, GL_RGBA};
    if (components < 1 || components > 4) throw std::invalid_argument("a pixel has 1 to 4 components");
    $self->allocateImage(s, t, 1, formats[components - 1], GL_UNSIGNED_BYTE);
    std::fill_n($self->data(), $self->getTotalSizeInBytes(), static_cast<unsigned char>(0));
  }
  void _scale(int s, int t) {
    zorCheckImageSize(s, t);
    $self->scaleImage(s, t, 1);
  }
  void _flipVertical() { $self->flipVertical(); }
  /** \return the colour of a pixel, 0 to 1; IndexError outside the image, whose first row is the lowest */
  osg::Vec4f getColor(int s, int t) const {
    if (!$self->valid()) throw std::out_of_range("the image has no pixels");
    return $self->getColor(zorBinding::checkedIndex(s, $self->s()), zorBinding::checkedIndex(t, $self->t()), 0);
  }
  PyObject* _memory() { return zorBinding::newMemoryView(zorImageMemory(*$self)); }
  %pythoncode %{
    def _check_resizable(self):
        if self.__dict__.get("_views"):
            raise BufferError("a buffer of this image is in use: its pixels can't be moved")

    def allocate(self, width: int, height: int, components: int = 4) -> None:
        """Allocates 8-bit pixels, all 0."""
        self._check_resizable()
        self._allocate(width, height, components)

    def scale(self, width: int, height: int) -> None:
        """Resamples the pixels to another size."""
        self._check_resizable()
        self._scale(width, height)

    def flipVertical(self) -> None:
        """Turns the image upside down."""
        self._check_resizable()
        self._flipVertical()

    def tobytes(self) -> bytes:
        """Returns a copy of the pixels, row after row from the lowest."""
        return memoryview(self).tobytes()

    def __buffer__(self, flags):
        view = self._memory()
        self.__dict__["_views"] = self.__dict__.get("_views", 0) + 1
        return view

    def __release_buffer__(self, view):
        self.__dict__["_views"] -= 1
  %}
}

} // namespace osg
