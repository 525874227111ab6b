%module(threads="1", docstring="Camera manipulators and input events of the viewer.") osgGA

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
%}

%{
#include "headers/osg.h"
#include "headers/osgGA.h"
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"

%nodefaultctor osgGA::CameraManipulator;
%nodefaultctor osgGA::EventQueue;
%nodefaultdtor osgGA::CameraManipulator;
%nodefaultdtor osgGA::EventQueue;
%ignore osgGA::MatrixManipulator;

namespace osgGA {

/** Moves the viewer's camera as the mouse tells. */
class CameraManipulator : public osg::Object {
public:
  osg::Matrixd getMatrix() const;
  osg::Matrixd getInverseMatrix() const;
  void setByMatrix(osg::Matrixd const& matrix);
  void setHomePosition(osg::Vec3d const& eye, osg::Vec3d const& center, osg::Vec3d const& up, bool autoComputeHomePosition = false);
  void home(double currentTime);
};
typedef CameraManipulator MatrixManipulator;

/** Input events waiting for the viewer. */
class EventQueue : public osg::Referenced {
public:
  void keyPress(int key);
  void keyRelease(int key);
  void mouseMotion(float x, float y);
  void mouseButtonPress(float x, float y, unsigned int button);
  void mouseButtonRelease(float x, float y, unsigned int button);
  void mouseScroll2D(float x, float y);
  double getTime() const;
};

} // namespace osgGA
