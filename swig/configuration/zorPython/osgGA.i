%module(directors="1", threads="1", docstring="Camera manipulators and input events of the viewer.") osgGA

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
%}

%{
#include "headers/osg.h"
#include "headers/osgGA.h"
%}

%include "shared/common.i"
%include "shared/directors.i"
%include "shared/scene_graph.i"
%import "osg.i"

%{
// What a callback is only lent: a script that keeps the proxy finds it empty afterwards.
class ZorBorrowed {
public:
  explicit ZorBorrowed(PyObject* proxy) : m_proxy(proxy) {}
  ZorBorrowed(ZorBorrowed const&) = delete;
  ~ZorBorrowed() {
    SwigPyObject* wrapped = m_proxy && Py_REFCNT(m_proxy) > 1 ? SWIG_Python_GetSwigThis(m_proxy) : nullptr;
    if (wrapped) wrapped->ptr = nullptr;
  }

private:
  PyObject* m_proxy;
};
%}

OSG_BASE_CLASS(osgGA, CameraManipulator)
OSG_BASE_CLASS(osgGA, StandardManipulator)
OSG_BASE_CLASS(osgGA, EventHandler)
OSG_BASE_CLASS(osgGA, GUIActionAdapter)
OSG_OWNED_CLASS(osgGA, EventQueue)
OSG_OWNED_CLASS(osgGA, GUIEventAdapter)
OSG_OWNED_CLASS(osgGA, GUIEventHandler)
OSG_OWNED_CLASS(osgGA, OrbitManipulator)
OSG_OWNED_CLASS(osgGA, TrackballManipulator)
OSG_OWNED_CLASS(osgGA, TerrainManipulator)
OSG_OWNED_CLASS(osgGA, FlightManipulator)
OSG_OWNED_CLASS(osgGA, NodeTrackerManipulator)
OSG_OWNED_CLASS(osgGA, StateSetManipulator)
OSG_SHARED_CLASS(osgGA::CameraManipulator)
OSG_SHARED_CLASS(osgGA::EventQueue)
OSG_SHARED_CLASS(osgGA::GUIEventAdapter)
%ignore osgGA::MatrixManipulator;
ZOR_INNER_RESULT(osgGA::OrbitManipulator::getCenter)

// Their destructors are virtual, and nobody's business but the last reference's.
%warnfilter(514) osgGA::GUIEventHandler;
%feature("director") osgGA::GUIEventHandler;
ZOR_SCRIPT_MANAGED(osgGA::GUIEventHandler::handle, "osgGA::GUIEventHandler::handle", "handle", "osgGA.i", 175, false)
%typemap(directorin) osgGA::GUIEventAdapter const& { $input = zorWrapNode(&$1, SWIGTYPE_p_osgGA__GUIEventAdapter); }
%typemap(directorin, noblock=1) osgGA::GUIActionAdapter& {
  $input = SWIG_NewPointerObj(&$1, SWIGTYPE_p_osgGA__GUIActionAdapter, 0);
  ZorBorrowed const zorBorrowed$argnum($input);
}

namespace osgGA {

/** An event of mouse, keyboard or window. */
class GUIEventAdapter : public osg::Object {
public:
  enum MouseButtonMask { LEFT_MOUSE_BUTTON = 1, MIDDLE_MOUSE_BUTTON = 2, RIGHT_MOUSE_BUTTON = 4 };
  enum EventType {
    NONE = 0, PUSH = 1, RELEASE = 2, DOUBLECLICK = 4, DRAG = 8, MOVE = 16, KEYDOWN = 32, KEYUP = 64, FRAME = 128, RESIZE = 256, SCROLL = 512,
    CLOSE_WINDOW = 16384, QUIT_APPLICATION = 32768, USER = 65536
  };
  enum KeySymbol {
    KEY_Space, KEY_BackSpace, KEY_Tab, KEY_Return, KEY_Pause, KEY_Escape, KEY_Delete, KEY_Home, KEY_Left, KEY_Up, KEY_Right, KEY_Down,
    KEY_Page_Up, KEY_Page_Down, KEY_End, KEY_Insert, KEY_F1, KEY_F2, KEY_F3, KEY_F4, KEY_F5, KEY_F6, KEY_F7, KEY_F8, KEY_F9, KEY_F10,
    KEY_F11, KEY_F12, KEY_Shift_L, KEY_Shift_R, KEY_Control_L, KEY_Control_R, KEY_Alt_L, KEY_Alt_R
  };
  enum ModKeyMask { MODKEY_CTRL, MODKEY_SHIFT, MODKEY_ALT, MODKEY_META, MODKEY_NUM_LOCK, MODKEY_CAPS_LOCK };
  enum ScrollingMotion { SCROLL_NONE, SCROLL_LEFT, SCROLL_RIGHT, SCROLL_UP, SCROLL_DOWN, SCROLL_2D };
  GUIEventAdapter();
  void setEventType(EventType type);
  EventType getEventType() const;
  /** \return when it happened (s) */
  double getTime() const;
  void setTime(double time);
  bool getHandled() const;
  int getWindowX() const;
  int getWindowY() const;
  int getWindowWidth() const;
  int getWindowHeight() const;
  /** \return the character or KeySymbol */
  int getKey() const;
  void setKey(int key);
  int getUnmodifiedKey() const;
  /** \return the button that is pressed or released, of MouseButtonMask */
  int getButton() const;
  void setButton(int button);
  float getXmin() const;
  float getXmax() const;
  float getYmin() const;
  float getYmax() const;
  float getX() const;
  void setX(float x);
  float getY() const;
  void setY(float y);
  /** \return -1 at the left edge of the window to 1 at the right one */
  float getXnormalized() const;
  /** \return -1 at the lower edge of the window to 1 at the upper one */
  float getYnormalized() const;
  /** \return buttons that are down, of MouseButtonMask */
  int getButtonMask() const;
  void setButtonMask(int mask);
  /** \return keys that are down, of ModKeyMask */
  int getModKeyMask() const;
  void setModKeyMask(int mask);
  ScrollingMotion getScrollingMotion() const;
  float getScrollingDeltaX() const;
  float getScrollingDeltaY() const;
};

/** Input events waiting for the viewer. */
class EventQueue : public osg::Referenced {
public:
  EventQueue();
  bool empty() const;
  void clear();
  double getTime() const;
};
%extend EventQueue {
  /** Adds an event as if the key had been pressed. \param key - a character or KeySymbol \return the event */
  osgGA::GUIEventAdapter* keyPress(int key) { return $self->keyPress(key); }
  osgGA::GUIEventAdapter* keyRelease(int key) { return $self->keyRelease(key); }
  /** Adds an event as if the mouse had been moved to a pixel. \return the event */
  osgGA::GUIEventAdapter* mouseMotion(float x, float y) { return $self->mouseMotion(x, y); }
  /** \param button - 1 left, 2 middle, 3 right \return the event */
  osgGA::GUIEventAdapter* mouseButtonPress(float x, float y, unsigned int button) { return $self->mouseButtonPress(x, y, button); }
  osgGA::GUIEventAdapter* mouseDoubleButtonPress(float x, float y, unsigned int button) { return $self->mouseDoubleButtonPress(x, y, button); }
  osgGA::GUIEventAdapter* mouseButtonRelease(float x, float y, unsigned int button) { return $self->mouseButtonRelease(x, y, button); }
  osgGA::GUIEventAdapter* mouseScroll2D(float x, float y) { return $self->mouseScroll2D(x, y); }
  /** \param motion - of GUIEventAdapter.ScrollingMotion */
  osgGA::GUIEventAdapter* mouseScroll(osgGA::GUIEventAdapter::ScrollingMotion motion) { return $self->mouseScroll(motion); }
  osgGA::GUIEventAdapter* windowResize(int x, int y, int width, int height) { return $self->windowResize(x, y, width, height); }
  osgGA::GUIEventAdapter* closeWindow() { return $self->closeWindow(); }
  /** Sets the pixels that the mouse moves over. */
  void setMouseInputRange(float xMin, float yMin, float xMax, float yMax) { $self->setMouseInputRange(xMin, yMin, xMax, yMax); }
}

/** What an event handler asks of the viewer. Only there while handle() runs. */
class GUIActionAdapter {
public:
  void requestRedraw();
  void requestContinuousUpdate(bool needed = true);
};

/** Base of event handlers. */
class EventHandler : public osg::Object {};

/**
 * Is given the input events of a viewer. Derive from it, override `handle`, and keep the object: the viewer goes on without one that
 * has died.
 */
class GUIEventHandler : public EventHandler {
public:
  GUIEventHandler();
  /** Called for each event. \param event - what has happened \param viewer - what draws \return true if no other handler needs to see it */
  virtual bool handle(osgGA::GUIEventAdapter const& event, osgGA::GUIActionAdapter& viewer);
};

/** Moves the viewer's camera as the mouse tells. */
class CameraManipulator : public GUIEventHandler {
public:
  osg::Matrixd getMatrix() const;
  osg::Matrixd getInverseMatrix() const;
  void setByMatrix(osg::Matrixd const& matrix);
  void setByInverseMatrix(osg::Matrixd const& matrix);
  void setNode(osg::Node* node);
  osg::Node* getNode();
  void setHomePosition(osg::Vec3d const& eye, osg::Vec3d const& center, osg::Vec3d const& up, bool autoComputeHomePosition = false);
  void setAutoComputeHomePosition(bool compute);
  bool getAutoComputeHomePosition() const;
  /** Goes to the home position. \param currentTime - of the viewer (s) */
  void home(double currentTime);
};
%extend CameraManipulator {
  osg::Vec3d _home(int part) const {
    osg::Vec3d parts[3];
    $self->getHomePosition(parts[0], parts[1], parts[2]);
    return parts[part % 3 < 0 ? 0 : part % 3];
  }
  %pythoncode %{
    def getHomePosition(self) -> tuple[osg.Vec3d, osg.Vec3d, osg.Vec3d]:
        """Returns where the camera begins, what it looks at there, and its upward direction."""
        return self._home(0), self._home(1), self._home(2)
  %}
}
typedef CameraManipulator MatrixManipulator;

/** Base of the manipulators that turn and move the camera. */
class StandardManipulator : public CameraManipulator {
public:
  /** Puts the camera somewhere. \param eye - where it is \param center - what it looks at \param up - what is above */
  void setTransformation(osg::Vec3d const& eye, osg::Vec3d const& center, osg::Vec3d const& up);
  void setVerticalAxisFixed(bool isFixed);
  bool getVerticalAxisFixed() const;
  void setAllowThrow(bool allow);
  bool getAllowThrow() const;
  void setAnimationTime(double seconds);
  double getAnimationTime() const;
};
%extend StandardManipulator {
  osg::Vec3d _transformation(int part) const {
    osg::Vec3d parts[3];
    $self->getTransformation(parts[0], parts[1], parts[2]);
    return parts[part % 3 < 0 ? 0 : part % 3];
  }
  %pythoncode %{
    def getTransformation(self) -> tuple[osg.Vec3d, osg.Vec3d, osg.Vec3d]:
        """Returns where the camera is, what it looks at, and its upward direction."""
        return self._transformation(0), self._transformation(1), self._transformation(2)
  %}
}

/** Turns the camera about a point. */
class OrbitManipulator : public StandardManipulator {
public:
  OrbitManipulator();
  void setCenter(osg::Vec3d const& center);
  osg::Vec3d const& getCenter() const;
  void setDistance(double distance);
  double getDistance() const;
  /** \param heading - about the vertical axis (radians) */
  void setHeading(double heading);
  double getHeading() const;
  /** \param elevation - above the horizon (radians) */
  void setElevation(double elevation);
  double getElevation() const;
  /** \param factor - how far a step of the wheel goes; negative turns its direction */
  void setWheelZoomFactor(double factor);
  double getWheelZoomFactor() const;
};

/** Turns the camera about a point in all directions. */
class TrackballManipulator : public OrbitManipulator {
public:
  TrackballManipulator();
};

/** Turns the camera about a point on the ground. */
class TerrainManipulator : public OrbitManipulator {
public:
  TerrainManipulator();
};

/** Flies. */
class FlightManipulator : public StandardManipulator {
public:
  FlightManipulator();
  void setAcceleration(double acceleration);
  double getAcceleration() const;
  void setVelocity(double velocity);
  double getVelocity() const;
};

/** Turns the camera about a node that moves. */
class NodeTrackerManipulator : public OrbitManipulator {
public:
  enum TrackerMode { NODE_CENTER, NODE_CENTER_AND_AZIM, NODE_CENTER_AND_ROTATION };
  enum RotationMode { TRACKBALL, ELEVATION_AZIM };
  NodeTrackerManipulator();
  void setTrackNode(osg::Node* node);
  osg::Node* getTrackNode();
  void setTrackerMode(TrackerMode mode);
  TrackerMode getTrackerMode() const;
  void setRotationMode(RotationMode mode);
  RotationMode getRotationMode() const;
};

/** Keys that change how the scene is drawn: w lines, l light, t textures, b backs of faces. */
class StateSetManipulator : public GUIEventHandler {
public:
  StateSetManipulator(osg::StateSet* stateset = nullptr);
};

} // namespace osgGA
