#pragma once

#include <zorPython/ScriptValue.h>

namespace zorPython {

/**
 * Lets the interpreter see signals during a long call that never returns to it, as a run loop is: Python's
 * own signal handlers only set a mark, which somebody has to look at.
 */
class PendingSignals {
public:
  /**
   * Runs the Python handlers of signals that have arrived. Does nothing without an interpreter or on a thread
   * other than its main one.
   * \return true if a handler raised, as that of Ctrl-C does; the exception is kept for raiseAfterReturn()
   */
  static bool check();

  /**
   * Has the kept exception raised as soon as control is back in Python code, or KeyboardInterrupt if none is
   * kept. Without an interpreter nothing happens.
   */
  static void raiseAfterReturn();

  /**
   * Has an exception raised in the Python code that has called the toolkit as soon as that code goes on. Call
   * with the interpreter lock held.
   * \param exception - the exception
   * \return false if no Python code has called on this thread, or if it is not the interpreter's main one
   */
  static bool raiseInCaller(PyObjectType* exception);
};

} // namespace zorPython
