#pragma once

#include <zor/Types.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string_view>

namespace zor {

/** A message of the notification log. */
struct NotifyMessage {
  int level = 0;   ///< severity, a Notify::NotifyLevel
  String text;     ///< the message without the final line end
  String function; ///< where it comes from; empty if not told
  String file;     ///< source file; empty if not told
  int line = 0;    ///< line in the file; 0 if not told

  /** \return the message as the log writes it: severity, place if told, text */
  String format() const;
};

/**
 * The toolkit's notification log: one per process, for all threads.
 *
 * A message is written to the thread's stream and ended with zor::endMessage:
 * `zor::notify(zor::Notify::NOTIFY_WARNING) << "no texture " << name << zor::endMessage;`
 * Messages at or above the level are written to the standard error stream, to the log file if there is one
 * and to the targets. The level is NOTIFY_WARNING at first.
 */
class Notify {
public:
  /** Severities. */
  enum NotifyLevel : int {
    NOTIFY_DEBUG = 0,
    NOTIFY_LOW = 1,
    NOTIFY_INFO = 2,
    NOTIFY_WARNING = 3,
    NOTIFY_ERROR = 4
  };

  /** Receives every message at or above the level, on the thread that wrote it. */
  typedef std::function<void(NotifyMessage const&)> Target;

  Notify(Notify const&) = delete;
  Notify& operator=(Notify const&) = delete;

  /** \return the log of the process; valid until the process ends */
  static Notify& instance();

  /**
   * Tells where the calling thread's next message comes from and how severe it is.
   * \param function - name of the function
   * \param file - path of the source file
   * \param line - line in the file
   * \param level - severity, 0 to 4
   */
  void setDebugStrings(String const& function, String const& file, int line, int level = NOTIFY_ERROR);

  /** \return the calling thread's stream; end a message with zor::endMessage */
  std::ostream& stream();

  /** \param level - severity of the message that follows \return the calling thread's stream */
  std::ostream& stream(NotifyLevel level);

  /** Ends the message that the calling thread has written and sends it; one without any text is dropped. */
  void endMessage();

  /** Sends a whole message. */
  void send(NotifyMessage const& message);

  /** \param level - least severity that is let through; NOTIFY_ERROR + 1 silences all */
  void setNotifyLevel(int level);
  /** \return least severity that is let through */
  int getNotifyLevel() const;

  /** \param enable - false: nothing is written to the standard error stream */
  void setEnableConsole(bool enable);
  bool getEnableConsole() const;

  /**
   * Writes messages to a file as well, line by line as they come.
   * \param filename - the file, replaced if it exists unless append is true; empty closes the present one
   * \param append - true: writes after what is there
   * \throws std::runtime_error if the file can't be opened; the present one then stays
   */
  void setLogFile(String const& filename, bool append = false);
  /** \return the log file, or an empty text */
  String getLogFile() const;

  /** Adds a receiver of messages. What it throws is dropped. \return number to remove it with */
  int addTarget(Target target);
  /** \param id - what addTarget() returned; an unknown one is ignored */
  void removeTarget(int id);

  /** \param level - severity \return "Error", "Warning", "Info", "Low" or "Debug" */
  static char const* getLevelName(int level);

private:
  Notify();
  ~Notify();

  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

/** \param level - severity of the message that follows \return the calling thread's stream of the log */
std::ostream& notify(Notify::NotifyLevel level);

/** Ends a message: `zor::notify(level) << text << zor::endMessage`. Ends the line of any other stream. */
std::ostream& endMessage(std::ostream& stream);

} // namespace zor
