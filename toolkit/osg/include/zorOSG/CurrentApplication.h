#pragma once

namespace zorOSG {

class ExampleApplication;

/**
 * The application that is building a scene or running its loop on this thread, for scene functions that take
 * no parameters.
 * \return the innermost such application, borrowed; else the most recently initialised application that is
 * still alive; else null
 */
zorOSG::ExampleApplication* getCurrentApplication();

} // namespace zorOSG
