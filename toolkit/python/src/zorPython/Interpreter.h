#pragma once

#include "PythonReference.h"

#include <thread>

namespace zorPython {

/** The interpreter of a program that had none: started by us, and ended by us on the thread that started it.
 */
class Interpreter {
public:
  Interpreter() = default;
  Interpreter(Interpreter const&) = delete;
  Interpreter& operator=(Interpreter const&) = delete;

  /**
   * Starts an interpreter and gives its lock back; does nothing if one runs.
   * \throws std::runtime_error if it can't be started
   */
  void start(zor::String const& programName, zor::String const& home);

  /** Ends the interpreter that start() has started; does nothing on another thread. */
  void stop() noexcept;

private:
  PyThreadState* m_mainState = nullptr; // of the thread that started it
  std::thread::id m_thread;
};

} // namespace zorPython
