// The application. What it lends to a script keeps it alive.
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSimulation)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSceneDecorator)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getRoot)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSceneRoot)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSceneSwitch)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getCamera)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getTextureCamera)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getViewer)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getFrameMutex)
// An enumeration of a library whose headers the wrapper generator does not read.
%apply int { osg::NotifySeverity };
%include <zorOSG/ExampleApplication.h>
%clear osg::NotifySeverity;
