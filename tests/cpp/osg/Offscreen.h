#pragma once

#include <zorOSG/OffscreenContext.h>

#include <osg/Camera>
#include <osg/Image>
#include <osgDB/WriteFile>
#include <osgViewer/Viewer>

#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

namespace zorTest {

/**
 * Renders nodes into images without a display: one context and one viewer, as the application has them.
 * Pixels are addressed from the lower left corner.
 */
class Offscreen {
public:
  explicit Offscreen(int width = 160, int height = 120, unsigned int samples = 0)
      : m_context(zorOSG::createOffscreenContext(width, height, samples)), m_reader(new Reader) {
    m_viewer.setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
    m_viewer.setCameraManipulator(nullptr);
    camera().setGraphicsContext(m_context);
    camera().setViewport(0, 0, width, height);
    camera().setProjectionMatrixAsPerspective(40.0, static_cast<double>(width) / height, 0.1, 1000.0);
    camera().setFinalDrawCallback(m_reader);
  }

  osgViewer::Viewer& viewer() { return m_viewer; }
  osg::Camera& camera() { return *m_viewer.getCamera(); }
  osg::GraphicsContext& context() { return *m_context; }

  /** Places the camera; world up is +z unless said otherwise. */
  void lookAt(osg::Vec3d const& eye, osg::Vec3d const& center, osg::Vec3d const& up = {0.0, 0.0, 1.0}) {
    camera().setViewMatrixAsLookAt(eye, center, up);
  }

  /** \return the last of the given number of frames; a new image every time */
  osg::ref_ptr<osg::Image> render(osg::Node* scene, int frames = 1) {
    if (m_viewer.getSceneData() != scene)
      m_viewer.setSceneData(scene);
    for (int i = 0; i < frames; ++i)
      m_viewer.frame();
    return m_reader->takeImage();
  }

  /** \return pixel where the camera shows a point of the world */
  osg::Vec2d project(osg::Vec3d const& point) {
    osg::Vec3d const at = point * camera().getViewMatrix() * camera().getProjectionMatrix() *
                          camera().getViewport()->computeWindowMatrix();
    return {at.x(), at.y()};
  }

private:
  struct Reader : osg::Camera::DrawCallback {
    void operator()(osg::RenderInfo& info) const override {
      osg::Viewport const& area = *info.getCurrentCamera()->getViewport();
      m_image = new osg::Image;
      m_image->readPixels(static_cast<int>(area.x()), static_cast<int>(area.y()),
                          static_cast<int>(area.width()), static_cast<int>(area.height()), GL_RGBA,
                          GL_UNSIGNED_BYTE);
    }
    osg::ref_ptr<osg::Image> takeImage() { return std::exchange(m_image, nullptr); }
    mutable osg::ref_ptr<osg::Image> m_image;
  };

  osg::ref_ptr<osg::GraphicsContext> m_context;
  osg::ref_ptr<Reader> m_reader;
  osgViewer::Viewer m_viewer;
};

/** \return mean of red, green and blue of a pixel, 0 to 1 */
inline double brightness(osg::Image const& image, osg::Vec2d const& at) {
  osg::Vec4 const color =
      image.getColor(static_cast<unsigned int>(at.x()), static_cast<unsigned int>(at.y()));
  return (color.r() + color.g() + color.b()) / 3.0;
}

/** Keeps an image for people to look at when ZOR_TEST_IMAGES names a folder. */
inline void keepImage(osg::Image const& image, std::string const& name) {
  if (char const* const folder = std::getenv("ZOR_TEST_IMAGES"))
    osgDB::writeImageFile(image, std::string(folder) + "/" + name + ".png");
}

} // namespace zorTest
