#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>

#include <memory>

namespace osg {
class Camera;
class Group;
} // namespace osg

namespace osgGA {
class EventQueue;
}

namespace zorSDK {
class Simulation;
}

namespace zorOSG {

class GeometryNode;
class SceneDecorator;

/**
 * A viewer that draws into the OpenGL context of a host, such as a widget of a window toolkit.
 *
 * The host makes its context current, calls init() once and frame() whenever the widget is to be drawn, and
 * forwards its input. The context must offer the compatibility profile; it draws to whatever framebuffer the
 * host has bound. The host finds its own OpenGL state as it left it. Frames see the simulation as it is: the
 * window never steps it.
 *
 * Call clear() while the context is current before the context goes away. A window that is destroyed without
 * leaves its OpenGL objects to the context.
 */
class EmbeddedGLWindow {
public:
  /// Node mask bits of the parts of the scene graph.
  enum RenderMask : int {
    MAIN_SCENE_MASK = 2,   ///< The scene itself.
    DEBUG_RENDER_MASK = 4, ///< Debug rendering of the simulation.
    OSG_RENDER_MASK = 8,   ///< What is added under the scene root.
    HUD_MASK = 16,         ///< Text and logo over the picture.
    DECORATOR_MASK = 32    ///< Background and lights of the decorator.
  };

  /** Constructor */
  EmbeddedGLWindow();

  EmbeddedGLWindow(EmbeddedGLWindow const&) = delete;
  EmbeddedGLWindow& operator=(EmbeddedGLWindow const&) = delete;

  /**
   * Initialises scene graph, camera and viewer for the context that is current.
   * \param x - left edge of the area to draw in, pixels of the framebuffer
   * \param y - lower edge of it
   * \param width - pixels; 0, as hosts report while hidden, counts as 1
   * \param height - pixels; 0 counts as 1
   * \return false, with the reason on the log, if no usable context is current or the window is initialised
   * already Throws std::invalid_argument for a negative or too large size.
   */
  bool init(int x, int y, int width, int height);

  /**
   * Prepares the context and loads what the scene needs into it, so that the first frame does not take long.
   * A frame does so itself where it has not been called.
   * Throws std::runtime_error before init(), or if the context of init() is not current.
   */
  void initGL();

  /**
   * Handles the input forwarded since the last call and draws one frame; what a listener throws comes
   * through. Throws std::runtime_error before init(), if the context of init() is not current, or inside
   * another frame().
   */
  void frame();

  /**
   * Takes a new position and size.
   * \param x - left edge of the area to draw in, pixels of the framebuffer
   * \param y - lower edge of it
   * \param width - pixels; 0 counts as 1
   * \param height - pixels; 0 counts as 1
   * Throws std::invalid_argument for a negative or too large size, std::runtime_error before init().
   */
  void resize(int x, int y, int width, int height);

  /**
   * Removes the simulation and frees all elements of the scene graph; init() is required afterwards.
   * Throws std::runtime_error inside frame().
   */
  void clear();

  /**
   * Associates a simulation: its input listeners get the events, and debug rendering shows it to a camera
   * whose cull mask has DEBUG_RENDER_MASK, which at first it has not.
   * \param simulation - shared by the window; null for none
   */
  void setSimulation(zorSDK::Simulation* simulation);

  /** Ends the association with the simulation. */
  void removeSimulation();

  /** \return the associated simulation, borrowed; null if there is none */
  zorSDK::Simulation* getSimulation();

  /** \return the group to put visuals in, which the decorator lights, borrowed; null before init() */
  osg::Group* getRoot();

  /** \return the group to put visuals in, borrowed; null before init() */
  osg::Group const* getRoot() const;

  /** \return the camera, borrowed; null before init() */
  osg::Camera* getCamera();

  /** \return the camera, borrowed; null before init() */
  osg::Camera const* getCamera() const;

  /** \return the decorator that gives the scene its lights, shadows, background and texts, borrowed; null
   * before init() */
  zorOSG::SceneDecorator* getSceneDecorator();

  /**
   * \param scene - a group; null for everything below getRoot()
   * \return radius of what is in the group, metres; 0 if nothing is
   */
  zor::Real getSceneRadius(osg::Group* scene);

  /** Moves the camera so that the whole scene is visible. Throws std::runtime_error before init(). */
  void fitSceneIntoView();

  /** Has the mouse turn the camera like a ball, about any axis. Throws std::runtime_error before init(). */
  void setTrackBallManipulator();

  /**
   * Has the camera follow a node, and the mouse orbit it.
   * \param node - the node to follow; must not be null
   * \param pos - initial position of the camera, not straight above or below the node's centre
   * Throws std::runtime_error before init().
   */
  void setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& pos);

  /**
   * Chooses how the scene's surfaces are drawn.
   * \param mode - 0x1B00 for corners, 0x1B01 for edges, 0x1B02 (the default) for filled surfaces: the values
   * of GL_POINT, GL_LINE and GL_FILL Throws std::invalid_argument for another value.
   */
  void setPolygonMode(int mode);

  /** \return how surfaces are drawn: GL_POINT, GL_LINE or GL_FILL */
  int getPolygonMode() const;

  /** \return width of the area in pixels; 0 before init() */
  int getWidth() const;

  /** \return height of the area in pixels; 0 before init() */
  int getHeight() const;

  /** \return the events that wait for the next frame, borrowed; null before init() */
  osgGA::EventQueue* getEventQueue();

  /**
   * A key has gone down. Events before init() are ignored.
   * \param key - character code or zorSDK::GuiEventListener::KeySymbol
   * \param mod_mask - modifier keys that are down: combination of zorSDK::GuiEventListener::ModKeyMask
   */
  void keyPressEvent(int key, int mod_mask);

  /** A key has come up. \param key - as for keyPressEvent() \param mod_mask - modifier keys that are down */
  void keyReleaseEvent(int key, int mod_mask);

  /** The mouse has moved, with buttons down or without. \param x - pixels from the left edge \param y -
   * pixels from the upper edge, as window toolkits count */
  void mouseMoveEvent(int x, int y);

  /**
   * A mouse button has gone down.
   * \param x - pixels from the left edge
   * \param y - pixels from the upper edge
   * \param button - 0 left, 1 middle, 2 right; another throws std::invalid_argument
   */
  void mousePressEvent(int x, int y, int button);

  /** A mouse button has come up. \param x - pixels from the left edge \param y - pixels from the upper edge
   * \param button - 0 left, 1 middle, 2 right; another throws std::invalid_argument */
  void mouseReleaseEvent(int x, int y, int button);

  /** The wheel has turned. \param motion - 0 up, 1 down; another throws std::invalid_argument */
  void wheelEvent(int motion);

  /** Destructor */
  ~EmbeddedGLWindow();

private:
  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

} // namespace zorOSG
