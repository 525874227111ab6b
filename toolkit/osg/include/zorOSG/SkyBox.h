#pragma once

#include <string>

#include <osg/Group>

namespace zorOSG {

/**
 * A sky: the inside of a cube around the camera, which goes along with it. It lies behind everything, has no
 * bound, and neither light nor shadows reach it. Transforms above it turn it, but don't move it.
 */
class SkyBox : public osg::Group {
public:
  /**
   * Reads the six images of a sky, named as createTextureCubeMap has them. Where one cannot be read the log
   * says which, and the sky draws nothing.
   * \param name - name of the node
   * \param imagename - what the file names have in common, looked up on the resource path
   * \param filetype - such as ".dds" or ".png", with or without the dot
   * \param size - length of the cube's edges (m), more than 0; it matters to the offset, and to views without
   * perspective, where nothing lies beyond it
   * \param offset - how far the cube lies above the camera, or below it if negative (m): 0 shows the
   * images' middle at the height of the eye
   * \throws std::invalid_argument if the size is not positive, or the size or offset not finite
   */
  SkyBox(std::string const& name, std::string const& imagename, std::string const& filetype,
         double size = 1000.0, float offset = 0.0f);

protected:
  ~SkyBox() override = default;
};

} // namespace zorOSG
