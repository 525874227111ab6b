#pragma once

#include <zorOSG/ImageCaptureBase.h>

#include <memory>
#include <string>

namespace zorOSG {

/**
 * Writes captured frames as numbered image files: directory path, prefix, five-digit number, ".", postfix.
 * Each file appears whole or not at all. Several files are written at the same time, each on a thread of its
 * own.
 */
class ImageCapture : public ImageCaptureBase {
public:
  /** \param sim - simulation to synchronise with; may be null. */
  ImageCapture(zorSDK::Simulation* sim = nullptr);

  /** \param postfix - file suffix without the dot, such as "bmp" or "png"; it selects the format. */
  void setPostfix(std::string const& postfix);

  /** \return the file suffix without the dot. */
  std::string getPostfix() const;

  /** \param prefix - text before the number in every file name. */
  void setPrefix(std::string const& prefix);

  /** \return the text before the number in every file name. */
  std::string getPrefix() const;

  /** \param path - output directory; it is made when capturing starts. Settings hold for files written from
   * now on. */
  void setDirectoryPath(std::string const& path);

  /** \return the output directory. */
  std::string getDirectoryPath() const;

  /**
   * Starts capturing.
   * \throws std::runtime_error if the output directory can't be made or written to, or no image writer knows
   * the postfix.
   */
  void startCapture(int start = 0) override;

  /**
   * Writes the file of one frame; called on several threads.
   * \param image - the picture; must not be null
   * \param index - its number in the file name
   */
  void writeImage(osg::Image* image, zor::Index index) override;

protected:
  ~ImageCapture() override;

private:
  struct Settings;
  std::unique_ptr<Settings> m_settings;
};

} // namespace zorOSG
