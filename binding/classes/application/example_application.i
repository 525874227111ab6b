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
%include <zorOSG/ExampleApplication.h>
