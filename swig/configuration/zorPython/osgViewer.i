%module(threads="1", docstring="The viewer that draws the scene.") osgViewer

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
import osgGA
%}

%{
#include "headers/osg.h"
#include "headers/osgGA.h"
#include "headers/osgViewer.h"
#include "runtime/Traversal.h"
#include <zorOSG/OffscreenContext.h>
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"
%import "osgGA.i"

%{
// A frame in a callback of a frame would never end.
class ZorFrame {
public:
  explicit ZorFrame(osgViewer::Viewer const& viewer) {
    if (!viewer.isRealized() && !zorOSG::hasDisplay()) throw std::runtime_error("the viewer has no window: use setUpOffScreen()");
    if (isDrawing) throw std::runtime_error("a frame is being drawn already");
    isDrawing = true;
  }
  ZorFrame(ZorFrame const&) = delete;
  ~ZorFrame() { isDrawing = false; }

private:
  static inline thread_local bool isDrawing = false;
};

// Reads what a camera has drawn, at the end of a frame.
class ZorGrabber : public osg::Camera::DrawCallback {
public:
  explicit ZorGrabber(osg::Camera::DrawCallback* next) : m_next(next) {}
  void operator()(osg::RenderInfo& info) const override {
    if (m_next) m_next->run(info);
    if (osg::Viewport const* part = info.getCurrentCamera()->getViewport())
      image->readPixels(static_cast<int>(part->x()), static_cast<int>(part->y()), static_cast<int>(part->width()), static_cast<int>(part->height()), GL_RGB, GL_UNSIGNED_BYTE);
  }

  osg::ref_ptr<osg::Image> const image = new osg::Image;

private:
  osg::ref_ptr<osg::Camera::DrawCallback> const m_next;
};
%}

OSG_OWNED_CLASS(osgViewer, Viewer)
OSG_OWNED_CLASS(osgViewer, StatsHandler)
OSG_OWNED_CLASS(osgViewer, WindowSizeHandler)
OSG_HELD_CLASS(osg, Stats)
OSG_SHARED_CLASS(osg::Stats)
%apply SWIGTYPE* NOT_NULL { osgGA::EventHandler* handler };

namespace osg {

/** Times and counts of the frames drawn last. */
class Stats : public Referenced {
public:
  unsigned int getEarliestFrameNumber() const;
  unsigned int getLatestFrameNumber() const;
  /** \param what - "frame_rate", "event", "update", "rendering" or "scene" \param collect - whether it is measured */
  void collectStats(std::string const& what, bool collect);
  bool collectStats(std::string const& what) const;
};
%extend Stats {
  PyObject* _values(unsigned int frame) const {
    PyObject* values = PyDict_New();
    if (frame < $self->getEarliestFrameNumber() || frame > $self->getLatestFrameNumber()) return values;
    for (auto const& [name, number] : $self->getAttributeMap(frame)) {
      PyObject* shown = values ? PyFloat_FromDouble(number) : nullptr;
      if (shown) PyDict_SetItemString(values, name.c_str(), shown);
      Py_XDECREF(shown);
    }
    return values;
  }
  PyObject* _average(std::string const& name) const {
    double value = 0;
    if (!$self->getAveragedAttribute(name, value)) Py_RETURN_NONE;
    return PyFloat_FromDouble(value);
  }
  %pythoncode %{
    def getAttributes(self, frame: int) -> dict[str, float]:
        """Returns what is known of a frame, by names such as "Update traversal time taken" (s); empty if nothing is."""
        return self._values(frame)

    def getAveragedAttribute(self, name: str) -> float | None:
        """Returns the average of what is known under a name; None if nothing is."""
        return self._average(name)
  %}
}

} // namespace osg
namespace osgViewer {

/** Shows statistics in the window: the key s. */
class StatsHandler : public osgGA::GUIEventHandler {
public:
  StatsHandler();
  void setKeyEventTogglesOnScreenStats(int key);
  int getKeyEventTogglesOnScreenStats() const;
};

/** Keys that change the window: f full screen. */
class WindowSizeHandler : public osgGA::GUIEventHandler {
public:
  WindowSizeHandler();
};

/** Draws a scene in a window or off screen. */
class Viewer : public osg::Object {
public:
  osg::Camera* getCamera();
  osg::Node* getSceneData();
  osgGA::CameraManipulator* getCameraManipulator();
  osgGA::EventQueue* getEventQueue();
  /** Adds what is given the input events. */
  void addEventHandler(osgGA::EventHandler* handler);
  void removeEventHandler(osgGA::EventHandler* handler);
  /** Takes the camera to the manipulator's home position. */
  void home();
  /** Has run loops end. */
  void setDone(bool done);
  bool done() const;
  bool isRealized() const;
  double elapsedTime();
  osg::Light* getLight();
  void setLight(osg::Light* light);
  /** \param key - ends the viewer, 0 for none; Esc if nothing is set */
  void setKeyEventSetsDone(int key);
  int getKeyEventSetsDone() const;
};
%extend Viewer {
  /** A viewer without a window yet. Give it setUpOffScreen() or setUpViewInWindow(), else it opens one that fills the screen. */
  Viewer() {
    osg::ref_ptr<osgViewer::Viewer> viewer = new osgViewer::Viewer;
    viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded); // callbacks may be Python code
    return viewer.release();
  }
  /** \param node - what is drawn; None for nothing. The viewer's camera, or what it is below, throws std::invalid_argument */
  void setSceneData(osg::Node* node) {
    // The camera gets the scene as a child, which must not lead back to it.
    if (node && zorBinding::isAtOrAbove(*node, *$self->getCamera())) throw std::invalid_argument("the viewer's own camera can't be in the scene that it draws");
    $self->setSceneData(node);
  }
  /**
   * Draws without a window and a display.
   * \param width - of the picture (pixels) \param height - of the picture (pixels)
   */
  void setUpOffScreen(int width, int height) {
    if ($self->isRealized()) throw std::runtime_error("the viewer has its window already");
    osg::ref_ptr<osg::GraphicsContext> const context = zorOSG::createOffscreenContext(width, height);
    osg::Camera* camera = $self->getCamera();
    camera->setGraphicsContext(context);
    camera->setViewport(new osg::Viewport(0, 0, width, height));
    double fovy = 30, ratio = 1, zNear = 1, zFar = 10000;
    camera->getProjectionMatrixAsPerspective(fovy, ratio, zNear, zFar);
    camera->setProjectionMatrixAsPerspective(fovy, static_cast<double>(width) / height, zNear, zFar);
    $self->getEventQueue()->setMouseInputRange(0, 0, static_cast<float>(width), static_cast<float>(height));
    $self->realize();
  }
  /** Opens a window. \param x - its place on the screen (pixels) \param y - its place \param width - of what is drawn, 1 to 16384 \param height - 1 to 16384 */
  void setUpViewInWindow(int x, int y, int width, int height) {
    if (width < 1 || width > 16384 || height < 1 || height > 16384) throw std::invalid_argument("a window is 1 to 16384 pixels wide and high");
    if ($self->isRealized()) throw std::runtime_error("the viewer has its window already");
    if (!zorOSG::hasDisplay()) throw std::runtime_error("there is no display to open a window on: use setUpOffScreen()");
    $self->setUpViewInWindow(x, y, width, height);
    $self->realize();
  }
  /** \param manipulator - moves the camera from now on; None leaves it where it is \param resetPosition - whether it goes home */
  void setCameraManipulator(osgGA::CameraManipulator* manipulator, bool resetPosition = true) {
    $self->setCameraManipulator(manipulator, resetPosition);
    if (manipulator) manipulator->setCoordinateFrameCallback(nullptr);  // which would outlive the viewer that it points to
  }
  /** Draws a frame: events, updates, drawing. RuntimeError if there is nothing to draw on. */
  void frame() {
    ZorFrame const drawing(*$self);
    $self->frame();
  }
  /** Draws a frame of a scene at a time. \param simulationTime - of the scene (s) */
  void frame(double simulationTime) {
    ZorFrame const drawing(*$self);
    $self->frame(simulationTime);
  }
  /** Draws a frame. \return its picture, RGB, the first row the lowest */
  osg::Image* grab() {
    ZorFrame const drawing(*$self);
    osg::ref_ptr<osg::Camera> const camera = $self->getCamera();
    osg::ref_ptr<osg::Camera::DrawCallback> const before = camera->getFinalDrawCallback();
    osg::ref_ptr<ZorGrabber> grabber = new ZorGrabber(before);
    osg::ref_ptr<osg::Image> image = grabber->image;
    camera->setFinalDrawCallback(grabber);
    $self->frame();
    camera->setFinalDrawCallback(before);
    grabber = nullptr;
    if (!image->valid()) throw std::runtime_error("nothing was drawn");
    return image.release();
  }
  /** \return number and times of the frame */
  osg::FrameStamp* getFrameStamp() { return $self->getViewerFrameStamp(); }
  /** \return statistics of the viewer */
  osg::Stats* getViewerStats() { return $self->getViewerStats(); }
  /** \return how many are given the input events */
  size_t getNumEventHandlers() const { return $self->getEventHandlers().size(); }
}

} // namespace osgViewer
