#include <zorOSG/ExampleApplicationListener.h>

namespace zorOSG {

void ExampleApplicationListener::preFrame(zorOSG::ExampleApplication* /*app*/) {}

void ExampleApplicationListener::postFrame(zorOSG::ExampleApplication* /*app*/) {}

} // namespace zorOSG
