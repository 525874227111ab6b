#pragma once

#include <osgViewer/GraphicsWindow>
#include <osgViewer/Viewer>

#include <string>

namespace zorOSG {

/// A viewer and the surface it draws to: a window, or an off-screen buffer where no window can be opened.
class ViewerHost {
public:
  struct Settings {
    int x = 50;
    int y = 50;
    int width = 1280;
    int height = 720;
    int samples = 4;
    bool window = true;      ///< false to draw off screen even if there is a display
    bool fullScreen = false; ///< true for a window as large as the screen, without a frame
    bool vsync = true;
    std::string title;
  };

  /**
   * Opens the surface and reports on the log which it is.
   * Throws std::runtime_error if neither a window nor an off-screen buffer can be had.
   */
  explicit ViewerHost(Settings const& settings);
  ~ViewerHost();

  ViewerHost(ViewerHost const&) = delete;
  ViewerHost& operator=(ViewerHost const&) = delete;

  osgViewer::Viewer& viewer() const { return *m_viewer; }

  /** \return null when drawing off screen */
  osgViewer::GraphicsWindow* window() const;

  /** \return width and height of the drawing surface in pixels */
  osg::Vec2i size() const;

private:
  osg::ref_ptr<osgViewer::Viewer> m_viewer;
  osg::ref_ptr<osg::GraphicsContext> m_context;
};

} // namespace zorOSG
