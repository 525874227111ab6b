// Calls around every frame, for Python to override.
%feature("director") zorOSG::ExampleApplicationListener;
ZOR_LENT_TO_CALLBACK(zorOSG::ExampleApplication)
ZOR_SCRIPT_MANAGED(zorOSG::ExampleApplicationListener::preFrame, "zorOSG::ExampleApplicationListener::preFrame", "preFrame", "zorOSG.i", 720, )
ZOR_SCRIPT_MANAGED(zorOSG::ExampleApplicationListener::postFrame, "zorOSG::ExampleApplicationListener::postFrame", "postFrame", "zorOSG.i", 721, )
%include <zorOSG/ExampleApplicationListener.h>
