#pragma once

namespace zorBinding {

/**
 * Turns the C++ exception being handled into a Python error: RuntimeError with its text. An error that is
 * already pending (a Python callback raised it) stays. Call in a catch block only.
 */
void setToolkitError();

/** As setToolkitError(), but std::out_of_range becomes IndexError and std::invalid_argument ValueError. */
void setSequenceError();

/** \return true if a Python error is pending on this thread */
bool errorPending();

} // namespace zorBinding
