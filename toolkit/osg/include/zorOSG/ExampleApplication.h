#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/Callback.h>
#include <zor/Event.h>
#include <zor/HighAccuracyTimer.h>
#include <zor/Mutex.h>
#include <zor/Referenced.h>
#include <zor/Types.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zorOSG/CameraData.h>
#include <zorOSG/ExampleApplicationListener.h>
#include <zorOSG/SceneDescription.h>

#include <osg/Notify>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace osg {
class Camera;
class Group;
class Node;
} // namespace osg

namespace osgGA {
class CameraManipulator;
typedef CameraManipulator MatrixManipulator;
} // namespace osgGA

namespace osgViewer {
class Viewer;
}

namespace zor {
class RigidBody;
}

namespace zorCollide {
class Geometry;
}

namespace zorIO {
class ArgumentParser;
}

namespace zorSDK {
class Assembly;
class Simulation;
} // namespace zorSDK

namespace zorOSG {

class GeometryNode;
class ImageCapture;
class PickHandler;
class RenderProxyFactory;
class RenderTarget;
class RenderToTexture;
class SceneDecorator;
class VideoFFMPEGPipeCapture;

/**
 * A ready-made viewer application: owns a simulation and a scene graph, holds a list of registered scenes,
 * builds one of them and runs the loop of stepping and drawing until it is stopped.
 *
 * It draws in a window where a display can be opened, off screen where none can, and not at all when it was
 * initialised for that. All methods are meant for one thread, the one that runs the loop; a thread that
 * changes the simulation or the scene graph meanwhile holds getFrameMutex().
 */
class ExampleApplication : public zor::Referenced {
public:
  /// Node mask bits of the parts of the scene graph.
  enum RenderMask : int {
    MAIN_SCENE_MASK = 2,        ///< The scene itself.
    DEBUG_RENDER_MASK = 4,      ///< Debug rendering of the simulation.
    OSG_RENDER_MASK = 8,        ///< What is added under the scene root.
    HUD_MASK = 16,              ///< Text and logo over the picture.
    DECORATOR_MASK = 32,        ///< Background and lights of the decorator.
    CASTS_SHADOWS_MASK = 64,    ///< What casts shadows.
    RECIEVES_SHADOWS_MASK = 128 ///< What shadows fall on.
  };

  /// Kinds of solvers.
  enum SolverType : int {
    MULTI = 0,      ///< Motion in several parts a step: stiffer and more exact joints at proportional cost.
    ITERATIVE = 1,  ///< Motion at once.
    NUM_SOLVERS = 2 ///< How many kinds there are.
  };

  /// Raised with the new state, true for play, when auto-stepping is switched.
  using AutoStepEvent = zor::BoolEvent;

  /**
   * Constructor.
   * \param simulation the simulation to use; null for one that initSimulation() creates
   */
  ExampleApplication(zorSDK::Simulation* simulation);

  /** Constructor of an application whose simulation is created by initSimulation(). */
  ExampleApplication();

  ExampleApplication(ExampleApplication const&) = delete;
  ExampleApplication& operator=(ExampleApplication const&) = delete;

  bool m_loadedSceneFile = false; ///< the current scene came from a loaded scene file
  bool m_isLoadingScene = false;  ///< a scene is being built right now
  bool m_isFMU = false;           ///< the application runs inside a co-simulation unit
  zor::Event m_sceneLoadEvent;    ///< signalled when a scene has been loaded
  AutoStepEvent autoStepEvent;    ///< raised when auto-stepping is toggled

  /**
   * Reads the command line and opens the window, or the off-screen context where no display can be opened.
   * The line "--help" lists the options. Says on the notification log which way it draws.
   * \param arguments the command line, shared by the application; null for an empty one
   * \param zorOnly true for no graphics context at all, as the option --zorOnly
   * \return false, with a message saying why, if the command line is wrong or help was asked for
   * Throws std::runtime_error if neither a window nor an off-screen context can be made.
   */
  bool init(zorIO::ArgumentParser* arguments, bool zorOnly = false);

  /** \return true if init() has completed with success */
  bool initialized() const;

  /** \return the parser given to init(), borrowed; null before */
  zorIO::ArgumentParser* getArguments() const;

  /**
   * Installs the given simulation, or creates one where there is none.
   * \param simulation the simulation to use, null to keep the present one or create one
   * \param initializeGraphics true to set up the scene graph and the viewer as well
   */
  void initSimulation(zorSDK::Simulation* simulation, bool initializeGraphics = true);

  /** Creates a simulation where there is none, and sets up its graphics. */
  void initSimulation();

  /** Sets up the scene graph under a root of its own. */
  void initScene();

  /**
   * Sets up the scene graph.
   * \param root becomes the top of the viewer's graph, with the children it has; must not be null
   */
  void initScene(osg::Group* root);

  /** \return the simulation, borrowed; null before there is one */
  zorSDK::Simulation* getSimulation() const;

  /** \param dt simulation time step in seconds, also the auto-stepping period; must be above zero */
  void setTimeStep(zor::Real dt);

  /** \return simulation time step in seconds */
  zor::Real getTimeStep() const;

  /** \return current simulation time in seconds; 0 without a simulation */
  zor::Real getTimeStamp() const;

  /** \return the simulation's gravity in m/s²; zero without a simulation */
  zor::Vec3 getGravity() const;

  /**
   * Registers a function of a script as a scene.
   * \param scriptFile script, looked up on the resource path when the scene is built
   * \param scriptFunction name of the function that builds the scene
   * \param key key code that builds the scene when pressed
   * \param isPartofUnitTest the scene takes part in the automatic run
   * \param stopAfter simulated seconds of the automatic run, -1 for not set
   * \param isSlowUnittest the scene is a slow one of the automatic run
   * \return true if registered; false if the description is not valid or the key is taken
   */
  bool addScene(std::string const& scriptFile, std::string const& scriptFunction, int key,
                bool isPartofUnitTest = true, float stopAfter = -1, bool isSlowUnittest = false);

  /** As above, without a key. */
  bool addScene(std::string const& scriptFile, std::string const& scriptFunction,
                bool isPartofUnitTest = true, float stopAfter = -1, bool isSlowUnittest = false);

  /**
   * Registers a build function as a scene.
   * \param sceneFunction the function; not called before the scene is built
   * \param key key code that builds the scene when pressed
   * \param isPartofUnitTest the scene takes part in the automatic run
   * \param stopAfter simulated seconds of the automatic run, -1 for not set
   * \param isSlowUnittest the scene is a slow one of the automatic run
   * \return true if registered; false if the function is null or the key is taken
   */
  bool addScene(zorOSG::BuildScenePtr sceneFunction, int key, bool isPartofUnitTest = true,
                float stopAfter = -1, bool isSlowUnittest = false);

  /** As above, without a key. */
  bool addScene(zorOSG::BuildScenePtr sceneFunction, bool isPartofUnitTest = true, float stopAfter = -1,
                bool isSlowUnittest = false);

  /**
   * Registers a scene.
   * \param sceneDescription copied
   * \param key key code that builds the scene when pressed
   * \return true if registered; false if the description is not valid or the key is taken
   */
  bool addScene(zorOSG::SceneDescription const& sceneDescription, int key);

  /** As above, without a key. */
  bool addScene(zorOSG::SceneDescription const& sceneDescription);

  /** Remove all added scenes. The scene that is built stays. */
  void clearAddedScenes();

  /** \return number of registered scenes */
  size_t getNumScenes() const;

  /**
   * \param idx position in the list
   * \return copy of the description at the position
   * Throws std::out_of_range beyond the end of the list.
   */
  zorOSG::SceneDescription getCallbackIdx(size_t idx) const;

  /**
   * \param key key code
   * \return copy of the description bound to the key; one that is not valid if there is none
   */
  zorOSG::SceneDescription getCallback(int key) const;

  /**
   * Builds the scene bound to a key, after clearing the present one.
   * \param key key code
   * \return false, with a message, if no scene has the key or its build fails; the application stays usable
   */
  bool createSceneFromKey(int key);

  /**
   * Builds a scene of the list, after clearing the present one.
   * \param idx position in the list
   * \param firstStartUp marks the first build after start: then there is nothing to clear and what the script
   * has put into the simulation before stays
   * \return false, with a message, if there is no such position or the build fails; the application stays
   * usable
   */
  bool createSceneFromIndex(int idx, bool firstStartUp = false);

  /** Clears and rebuilds the current scene, and forgets the errors of its scripts. Does nothing but report if
   * no scene has been built. */
  void reloadScene();

  /** Builds the scene after the current one in list order, the first after the last. */
  void createNextScene();

  /** Builds the scene before the current one in list order, the last before the first. */
  void createPreviousScene();

  /** Removes the current scene's content from simulation and graph, and sets the simulation time to zero. */
  void clearScene();

  /** \return the current scene group, borrowed; null if there is none */
  osg::Group* getScene() const;

  /** \param scene becomes the current scene group in place of the present one; null for none */
  void setScene(osg::Group* scene);

  /** \return top of the viewer's graph, borrowed; light and shadows begin below it, see getSceneRoot() */
  osg::Group* getRoot();

  /** \return the group under which scripts put their visuals, borrowed; it is emptied when the scene is
   * cleared */
  osg::Group* getSceneRoot();

  /** \return the group of the application's own aids (grid, coordinate system), borrowed; it outlives scenes
   */
  osg::Group* getSceneZorOSGRoot();

  /** \return the switch that shows or hides the scene, borrowed */
  osg::Group* getSceneSwitch() const;

  /** \return the decorator that gives the scene its lights, shadows, background and texts, borrowed */
  zorOSG::SceneDecorator* getSceneDecorator() const;

  /** \return the script file of the current scene, empty if it came from none */
  std::string getScriptFile() const;

  /**
   * Loads a script and calls a function of it. The function may take no parameters, or require one to three:
   * (simulation, application, root). Never throws for a failing script; its errors are reported with file,
   * line and traceback.
   * \param file script, looked up on the resource path
   * \param function name of the function
   * \param success receives the outcome
   * \return the group the function returned, or the scene root with what the function put there; borrowed.
   * Null on failure.
   */
  osg::Group* executePythonScript(zor::String const& file, zor::String const& function, bool& success);

  /**
   * Handles the errors that scripts have raised since the last call: reports their number.
   * \param abortSimulation true to stop the application with exit code 1 if there were any
   */
  void handleReactiveScriptErrors(bool abortSimulation = true);

  /**
   * Puts a stored simulation (".zor" or ".azor") in the place of the current scene: its objects, settings and
   * time, with visuals of what it holds.
   * \param filename the file, looked up on the resource path
   * \return false, with a message, if the file is missing or cannot be read; then the scene stays as it is
   */
  bool restoreFromFile(std::string const& filename);

  /** \return the file name under which the scene is saved: that of --saveScene, or "zor_scene.zor" */
  std::string getSaveSceneFilename() const;

  /**
   * Creates visuals for every body of a simulation in the application's scene.
   * \param simulation whose bodies; must not be null
   * \param detailRatio tessellation, 1 for the normal one
   * \param createAxes true for axes at each body
   */
  void createVisual(zorSDK::Simulation* simulation, float detailRatio = 1.0f, bool createAxes = false);

  /**
   * Creates visuals for every body of an assembly in the application's scene.
   * \param assembly whose bodies; must not be null
   * \param detailRatio tessellation, 1 for the normal one
   * \param createAxes true for axes at each body
   */
  void createVisual(zorSDK::Assembly* assembly, float detailRatio = 1.0f, bool createAxes = false);

  /**
   * Runs the loop until it is stopped: builds the first scene (or the one of --scene) if none is built, then
   * steps and draws. A scene that cannot be built ends the run, but not in a window, which shows why and
   * waits until the scene's file is mended. What a listener or event handler throws ends the loop and leaves
   * run() after files have been finished. So does an interrupt: a script gets KeyboardInterrupt when run()
   * returns to it.
   *
   * With --unitTests, runs every scene that is marked for it instead, each until its stopAfter time (or that
   * of
   * --stopAfter, or 3 s), and says how they went.
   * \return the exit code: that of stop(), 1 if the first scene cannot be built, a capture or a scene of the
   * automatic run fails, 130 after an interrupt, 143 after SIGTERM, that of a script's SystemExit
   * Throws std::runtime_error before init(), inside another run(), and if a capture of the command line
   * cannot start.
   */
  virtual int run();

  /** One simulation step, with the step callback and auto-pausing. */
  virtual void step();

  /** The step entry used by the loop: step(), holding the frame mutex. */
  void stepWrapper();

  /** Steps only the simulation. */
  void stepSimulation();

  /**
   * A step held to wall-clock time.
   * \param blocking true to wait until the next step is due; false to return without stepping if it is not
   */
  void synchronizedStep(bool blocking = false);

  /**
   * Takes a whole step, then updates graphics only if the target frame rate asks for it.
   * \param timer time since the last frame was drawn, restarted when one is; must have been started, or no
   * rendering happens
   * \return true if a frame was drawn
   */
  bool executeOneStepWithGraphics(zor::HighAccuracyTimer& timer);

  /**
   * Takes a whole step without rendering.
   * \return true if the simulation was stepped, false if there is none
   */
  bool executeOneStepWithoutGraphics();

  /** Updates the application's services once: interrupts, the stop-after time and pending captures. */
  void updateServices();

  /** Work done after the loop has ended: ends captures and finishes their files, saves the simulation and
   * writes profile and timeline where that was asked for. */
  void postExecution();

  /** \return true when the escape key has been pressed in the graphics window; always false without graphics
   */
  bool done() const;

  /** \return true if stop() was called, the stop-after time is reached, or the viewer asks to stop */
  bool breakRequested() const;

  /**
   * Stop (exit) the application at the next opportunity.
   * \param exitCode becomes the result of run()
   */
  void stop(int exitCode);

  /** Stop (exit) the application at the next opportunity, leaving the exit code as it is. */
  void stop();

  /** Cancels the stop if possible; the loop continues. */
  void cancelStop();

  /** \return true if someone has called stop() */
  bool shouldStop() const;

  /** \param stopTime simulation time in seconds at which to stop; same as --stopAfter. Below zero: never. */
  void stopAfter(zor::Real stopTime);

  /** \return the exit code that run() will return; 2 after an init() that refused the command line */
  int getExitCode() const;

  /**
   * Play or pause.
   * \param flag false for pause, true for play
   * \param resetTimer true to schedule the next step one time step after the call; false to take it after
   * whatever time was left
   */
  void setAutoStepping(bool flag, bool resetTimer);

  /** Play or pause, with the next step one time step after the call. */
  void setAutoStepping(bool flag);

  /** \return play (true) or pause */
  bool getAutoStepping() const;

  /** \param flag true (the default) to keep drawing and calling listeners while the simulation is paused */
  void setEnablePauseUpdate(bool flag);

  /** \return true if drawing and listener calls go on while paused */
  bool getEnablePauseUpdate() const;

  /** \param flag true to hold the simulation to wall-clock time: it waits when it is too fast */
  void setRealTimeSync(bool flag);

  /** \return true if the simulation is held to wall-clock time */
  bool getRealTimeSync() const;

  /** \param fps graphics updates per second; zero or below turns throttling off */
  void setTargetFPS(double fps);

  /** \return graphics updates per second, as set */
  double getTargetFPS() const;

  /** Sleeps a little if nothing is due, to keep CPU use down. */
  void throttleIdleCpuUsageBySleeping();

  /** \param flag true (the default): the escape key leaves the loop; false: it does not */
  void setQuitEventSetsDone(bool flag);

  /** \return true if the escape key leaves the loop */
  bool getQuitEventSetsDone() const;

  /**
   * Adds a pair of bodies whose contact pauses the simulation while auto-pausing is on.
   * \param body1 not null
   * \param body2 not null
   */
  void addAutoPausePair(zor::RigidBody const* body1, zor::RigidBody const* body2);

  /**
   * Adds a pair of geometries whose contact pauses the simulation while auto-pausing is on.
   * \param geometry1 not null
   * \param geometry2 not null
   */
  void addAutoPausePair(zorCollide::Geometry const* geometry1, zorCollide::Geometry const* geometry2);

  /** Removes a pair of bodies, in whatever order they were added. */
  void removeAutoPausePair(zor::RigidBody const* body1, zor::RigidBody const* body2);

  /** Removes a pair of geometries, in whatever order they were added. */
  void removeAutoPausePair(zorCollide::Geometry const* geometry1, zorCollide::Geometry const* geometry2);

  /** Enable/disable auto-pausing. */
  void setEnableAutoPausing(bool flag);

  /** \return true if auto-pausing is on */
  bool getEnableAutoPausing() const;

  /** \param listener called around every frame, shared by the application; a second add of the same is
   * ignored */
  void addListener(zorOSG::ExampleApplicationListener* listener);

  /** \param callback invoked on every step, copied */
  void setStepCallback(zor::Callback const& callback);

  /** \return copy of the callback invoked on every step */
  zor::Callback getStepCallback() const;

  /** \return the mutex that the loop holds while it steps or draws */
  zor::Mutex& getFrameMutex();

  std::string m_hostName; ///< name of the host the application runs on

  /**
   * Creates the viewer: a window, or an off-screen context where no display can be opened.
   * \param lightingEnabled false to switch the decorator's lights off
   * \param visibleWindow false to render off screen even if there is a display
   */
  void setupViewer(bool lightingEnabled = true, bool visibleWindow = true);

  /**
   * Creates the viewer in a given size.
   * \param width pixels, above zero
   * \param height pixels, above zero
   * \param osgWindow false to render off screen even if there is a display
   */
  void initViewer(int width, int height, bool osgWindow = true);

  /** Starts graphics: viewer and scene graph, unless they exist or the application was initialised without.
   */
  void initGraphics();

  /** \return the viewer, borrowed; null without graphics */
  osgViewer::Viewer* getViewer() const;

  /** \return the main camera, borrowed; null without graphics */
  osg::Camera* getCamera() const;

  /** \return the camera of the render target that was added last, borrowed; null if there is none */
  osg::Camera* getTextureCamera() const;

  /** \return false when --zorOnly was given: there is no graphics context */
  bool hasRenderContext() const;

  /** \return true if rendering goes to an off-screen window */
  bool hasOffscreenWindow() const;

  /** \return native window handle, 0 without a window */
  intptr_t getHWND() const;

  /**
   * Moves and resizes the window.
   * \param x left edge, pixels
   * \param y upper edge, pixels
   * \param width pixels, above zero
   * \param height pixels, above zero
   * \return true if a window is present and the resize succeeded
   */
  bool setWindowRectangle(unsigned int x, unsigned int y, unsigned int width, unsigned int height);

  /** \param title new window title \return true if a window is present and the title was updated */
  bool setWindowTitle(std::string const& title);

  /** \param flag false to keep the window at its size, which setWindowRectangle() may still change, true (the
   * default) to let its user change it */
  void setAllowWindowResizing(bool flag);

  /** \return true if the window's user may change its size */
  bool getAllowWindowResizing() const;

  /**
   * Waiting for the display's refresh.
   * \param flag true to draw in step with the display
   * \param forceUpdate true to tell the window again even if nothing changes
   */
  void setEnableVSync(bool flag, bool forceUpdate = false);

  /** \return true if drawing waits for the display's refresh */
  bool getEnableVSync() const;

  /** \param flag false to hide the scene's visuals; aids and texts stay */
  void setEnableOSGRenderer(bool flag);

  /** \return true if the scene's visuals are drawn */
  bool getEnableOSGRenderer() const;

  /** \return what makes the drawables of debug rendering, borrowed and opaque */
  zorOSG::RenderProxyFactory* getRenderProxyFactory() const;

  /** \param severity log level of the scene-graph library */
  void setOsgNotifyLevel(osg::NotifySeverity severity);

  /**
   * Reads the home position of the camera.
   * \param eye receives the position
   * \param center receives the point looked at
   * \param up receives the up direction
   */
  void getCameraHome(zor::Vec3& eye, zor::Vec3& center, zor::Vec3& up) const;

  /**
   * Sets the home position of the camera and moves it there.
   * \param eye position
   * \param center point looked at, another than eye
   * \param up up direction
   */
  void setCameraHome(zor::Vec3 const& eye, zor::Vec3 const& center, zor::Vec3 const& up = zor::Vec3(0, 0, 1));

  /** \return true if a script has set the home position; otherwise it is fitted to each scene */
  bool isCameraHomeSet() const;

  /** \return the camera manipulator, borrowed; null without graphics */
  osgGA::MatrixManipulator* getCameraManipulator();

  /** \return the camera manipulator, borrowed; null without graphics */
  osgGA::MatrixManipulator const* getCameraManipulator() const;

  /** \return the main camera's data, not valid without graphics */
  zorOSG::CameraData getCameraData() const;

  /** \param cameraData applied to the main camera and made its home position */
  void applyCameraData(zorOSG::CameraData const& cameraData);

  /** \return unit vector in which the main camera looks */
  zor::Vec3 getViewDirection() const;

  /**
   * Orbit camera following a node.
   * \param node the node to follow, must not be null
   * \param heading radians about the up axis, 0 looks along +y
   * \param elevation radians above the horizon
   * \param distance metres
   * \param trackerMode mode of the scene-graph library's node tracker
   */
  void setOrbitCamera(zorOSG::GeometryNode* node, double heading, double elevation, double distance,
                      int trackerMode);

  /** As above, keeping the node's centre in view. */
  void setOrbitCamera(zorOSG::GeometryNode* node, double heading, double elevation, double distance);

  /**
   * Orbit camera following a node.
   * \param node the node to follow, must not be null
   * \param eye initial position
   * \param center initial point looked at
   * \param up up direction
   * \param trackerMode mode of the scene-graph library's node tracker
   */
  void setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& eye, zor::Vec3 const& center,
                      zor::Vec3 const& up, int trackerMode);

  /** As above, keeping the node's centre in view. */
  void setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& eye, zor::Vec3 const& center,
                      zor::Vec3 const& up);

  /** As above, with z up. */
  void setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& eye, zor::Vec3 const& center);

  /** Moves the camera along its view direction so that the whole scene is visible. */
  void fitSceneIntoView();

  /** Turns the camera to the middle of the scene from where it is. */
  void centerScene();

  /** \return the handler that drags bodies with the mouse, borrowed; shift and the left button activate it */
  zorOSG::PickHandler* getPickHandler();

  /** \return the handler that drags bodies with the mouse, borrowed */
  zorOSG::PickHandler const* getPickHandler() const;

  /**
   * Draws debug rendering in moved coordinates, for scenes with very large ones whose visuals a script draws
   * moved likewise. Picking and the simulation's input listeners are told, so that they find what is seen.
   * \param matrix inverse of the transform of the object that is drawn at the origin
   * Throws std::invalid_argument if it has no inverse.
   */
  void setDebugRenderInverseMatrix(zor::AffineMatrix4x4 const& matrix);

  /**
   * Draws what the simulation computes with over the scene. Each kind is a node below getSceneZorOSGRoot():
   * "Contacts" (points and normals, redder with more force), "ConstraintAxes", "BoundingBoxes",
   * "CentersOfMass" (with velocities) and "CollisionShapes" (wire frames). A node mask of 0 leaves one out,
   * as keys of the application do; bounding boxes are left out at first.
   * \param flag true to draw it; without graphics or a simulation nothing happens
   */
  void setEnableDebugRenderer(bool flag);

  /** \return true if debug rendering is on; false without a simulation */
  bool getEnableDebugRenderer() const;

  /** \param flag true to write the names of bodies and constraints where they are */
  void setEnableTextDebugRendering(bool flag);

  /** \return true if names are written; false without a simulation */
  bool getEnableTextDebugRendering() const;

  /** \param flag true to show the visual grid */
  void setEnableGrid(bool flag);

  /** \return true if the visual grid is shown */
  bool getEnableGrid() const;

  /** \param size edge lengths of the visual grid in metres, above zero */
  void setGridSize(zor::Vec2 const& size);

  /** \return edge lengths of the visual grid in metres */
  zor::Vec2 getGridSize() const;

  /** \param resolution number of cells of the visual grid in each direction, above zero */
  void setGridResolution(zor::Vec2u resolution);

  /** \return number of cells of the visual grid in each direction */
  zor::Vec2u getGridResolution() const;

  /** \param flag true to show the visual coordinate system */
  void setEnableCoordinateSystem(bool flag);

  /** \return true if the visual coordinate system is shown */
  bool getEnableCoordinateSystem() const;

  /** \param transform placement of the visual coordinate system and of the grid */
  void setCoordinateSystemTransform(zor::AffineMatrix4x4 const& transform);

  /** \return placement of the visual coordinate system and of the grid */
  zor::AffineMatrix4x4 getCoordinateSystemTransform() const;

  /**
   * Adds an extra camera rendering to a buffer of its own.
   * \param rtt the target, shared by the application; must not be null
   * \param targetSceneNode part of the scene to render, the scene decorator if null
   * Throws std::runtime_error without graphics.
   */
  void addRenderTarget(zorOSG::RenderTarget* rtt, osg::Node* targetSceneNode);

  /** As above, rendering the scene decorator. */
  void addRenderTarget(zorOSG::RenderTarget* rtt);

  /** \param rtt a target added before \return true if removed */
  bool removeRenderTarget(zorOSG::RenderTarget* rtt);

  /**
   * Writes the next frame to a file.
   * \param filename file whose suffix selects the format; an empty name picks the first free one of
   * zor_screen_00000.png, zor_screen_00001.png, ...
   * Throws std::runtime_error without graphics or if the folder cannot be written.
   */
  void takeScreenShot(zor::String const& filename);

  /** Writes the next frame to the first free file of zor_screen_00000.png, zor_screen_00001.png, ... */
  void takeScreenShot();

  /**
   * Has the video capture store what a render target of its own draws, which follows the main camera: its
   * size stays when the window changes, and help and statistics are not in the picture.
   * Throws std::runtime_error without graphics or while a video is being captured.
   */
  void setupVideoCaptureRenderTotexture();

  /** As setupVideoCaptureRenderTotexture(), for the capture of numbered images. */
  void setupImageCaptureRenderToTexture();

  /** \return the capture of numbered images, borrowed; null without graphics */
  zorOSG::ImageCapture* getImageCapture();

  /** \return the capture of numbered images, borrowed; null without graphics */
  zorOSG::ImageCapture const* getImageCapture() const;

  /** \return the video capture, borrowed; null without graphics */
  zorOSG::VideoFFMPEGPipeCapture* getVideoServerCapture() const;

  /** \return the render target that the video capture reads, borrowed; null before
   * setupVideoCaptureRenderTotexture() */
  zorOSG::RenderToTexture* getVideoCaptureRendertoTexture() const;

  /** \param enableSync true to capture frames in step with simulation time */
  void setEnableCaptureSyncWithSimulation(bool enableSync);

  /** \return true if frames are captured in step with simulation time */
  bool getEnableCaptureSyncWithSimulation() const;

  /** \param flag true to save the simulation when a run ends, however it ends, as getSaveSceneFilename() */
  void setEnableSimulationDump(bool flag);

  /** \return true if the simulation is saved when a run ends */
  bool getEnableSimulationDump() const;

  /**
   * Records when each part of each frame and step runs, on every thread.
   * \param flag true to start; false to stop and write what has been recorded to the file of --timeline, or
   * "zor_timeline.json": trace events, as browsers show them. The end of a run writes it as well.
   * Throws std::runtime_error if the file cannot be written.
   */
  void setEnableThreadTimeline(bool flag);

  /** \param flag true to sum up the time of each part of frames and steps; false to stop and print the table.
   * The end of a run prints it as well. */
  void setEnableTaskProfile(bool flag);

  /**
   * Chooses the solver; another number of sub-steps of the simulation goes.
   * \param t a solver type
   * Throws std::invalid_argument for a value that is no solver type.
   */
  void setSolverType(SolverType t);

  /** \return the solver type in use: MULTI if the simulation takes more than one sub-step */
  SolverType getSolverType() const;

  /**
   * \param name name of a solver type, in any case
   * \return the type with that name
   * Throws std::invalid_argument if there is none.
   */
  SolverType getSolverType(std::string name) const;

  /**
   * \param t a solver type
   * \return its name
   * Throws std::invalid_argument for a value that is no solver type.
   */
  std::string getSolverName(SolverType t) const;

  /** Goes on to the next solver type, from the last one to the first. */
  void changeSolver();

protected:
  ~ExampleApplication() override;

private:
  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

} // namespace zorOSG
