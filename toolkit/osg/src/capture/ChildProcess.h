#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

namespace zorOSG {

/** A program that runs beside this one. It is never left behind: neither running nor as a zombie. */
class ChildProcess {
public:
  /**
   * Starts a program, without input, with what it says kept for lastWords(). It is in a group of its own:
   * Ctrl-C is for this program, which then ends the other in good order.
   * \param path - the program's file
   * \param arguments - of the program, the first its name
   * \throws std::runtime_error if it cannot be started
   */
  ChildProcess(std::string const& path, std::vector<std::string> arguments);

  /** Ends it by force if it still runs. */
  ~ChildProcess();
  ChildProcess(ChildProcess const&) = delete;
  ChildProcess& operator=(ChildProcess const&) = delete;

  /** \return the path of a program on PATH; empty if there is none */
  static std::string find(std::string const& program);

  bool hasEnded();

  /**
   * Waits for its end. One that uses no processor time for that long is asked to end, and in the end made to.
   * \return true if it ended by itself and without an error
   */
  bool wait(std::chrono::milliseconds patience);

  /** Begins to watch whether it does something. */
  void watch() { m_progress = Clock::now(); }

  /** \return true if it has used no processor time for that long since watch(), as far as calls of this
   * function saw */
  bool isStuck(std::chrono::milliseconds patience);

  /** Ends it by force. */
  void end() noexcept;

  /** \return how it ended and what it said last */
  std::string lastWords() const;

private:
  using Clock = std::chrono::steady_clock;

  unsigned long long processorTime() const;
  bool waitFor(std::chrono::milliseconds patience);

  pid_t m_process = -1;
  int m_log = -1;
  int m_status = 0;
  bool m_wasStuck = false;
  unsigned long long m_processorTime = 0;
  Clock::time_point m_progress = Clock::now();
};

} // namespace zorOSG
