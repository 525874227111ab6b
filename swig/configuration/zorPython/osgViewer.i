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
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"
%import "osgGA.i"

%include "shared/lent.i"
ZOR_LENT(osgGA::CameraManipulator)
ZOR_LENT(osgGA::EventQueue)

%nodefaultctor osgViewer::Viewer;
%nodefaultdtor osgViewer::Viewer;

namespace osgViewer {

/** Draws a scene in a window or off screen. Made by the application. */
class Viewer {
public:
  osg::Camera* getCamera();
  osg::Node* getSceneData();
  osgGA::CameraManipulator* getCameraManipulator();
  osgGA::EventQueue* getEventQueue();
  void setDone(bool done);
  bool done() const;
  bool isRealized() const;
  void frame();
  double elapsedTime();
};

} // namespace osgViewer
