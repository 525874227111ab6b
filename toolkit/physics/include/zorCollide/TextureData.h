#pragma once

#include <string>

#include <zor/Object.h>
#include <zor/Types.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

namespace zorCollide {

/** The pixels of a texture, or the name of the image file that holds them. Rows run from bottom to top. */
class TextureData : public zor::Object {
public:
  /** Kind of pixel; the value is the number of bytes a pixel. */
  enum Format : int {
    LUMINANCE = 1,       ///< Brightness, a byte a pixel.
    LUMINANCE_ALPHA = 2, ///< Brightness and alpha, two bytes a pixel.
    RGB = 3,             ///< Red, green and blue, three bytes a pixel.
    RGBA = 4             ///< Red, green, blue and alpha, four bytes a pixel.
  };

  /** \param filename - image file, found through the resource path when the texture is made */
  explicit TextureData(std::string const& filename);

  /**
   * \param width - pixels a row, at least 1
   * \param height - number of rows, at least 1
   * \param format - kind of pixel
   * \param pixels - width * height * bytes a pixel; another size throws std::invalid_argument
   */
  TextureData(zor::UInt32 width, zor::UInt32 height, Format format, zor::Vector<zor::UInt8> const& pixels);

  /** \return pixels a row; 0 when the data is a file name */
  zor::UInt32 getWidth() const { return m_width; }
  /** \return number of rows; 0 when the data is a file name */
  zor::UInt32 getHeight() const { return m_height; }
  /** \return kind of pixel */
  Format getFormat() const { return m_format; }
  /** \return the pixels; empty when the data is a file name */
  zor::Vector<zor::UInt8> const& getPixels() const { return m_pixels; }
  /** \return the image file's name; empty when the data are pixels */
  std::string const& getFilename() const { return m_filename; }

protected:
  ~TextureData() override;

private:
  std::string m_filename;
  zor::UInt32 m_width = 0;
  zor::UInt32 m_height = 0;
  Format m_format = RGBA;
  zor::Vector<zor::UInt8> m_pixels;
};

/** Shared texture data. */
typedef zor::ref_ptr<zorCollide::TextureData> TextureDataRef;

} // namespace zorCollide
