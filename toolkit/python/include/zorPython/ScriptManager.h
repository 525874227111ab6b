#pragma once

#include <zor/Singleton.h>
#include <zor/Types.h>
#include <zor/ref_ptr.h>
#include <zorPython/Script.h>
#include <zorPython/ScriptError.h>
#include <zorPython/ScriptValue.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zorPython {

/**
 * The toolkit's door to the Python interpreter: runs scripts, calls functions in them, and records and
 * reports the errors of Python code that the toolkit has called. There is at most one. All operations may be
 * called from any thread, with or without the interpreter lock.
 */
class ScriptManager : public zor::Singleton {
public:
  /**
   * Holds the interpreter lock until the end of a scope. May be nested, also within code that holds the lock
   * already. Does nothing where no interpreter runs or it is shutting down on another thread.
   */
  class PyGILGuard {
  public:
    PyGILGuard() noexcept;
    PyGILGuard(PyGILGuard const&) = delete;
    PyGILGuard& operator=(PyGILGuard const&) = delete;
    ~PyGILGuard();

    /** \return true if the interpreter may be used in this scope */
    bool isHeld() const noexcept { return m_held; }

  private:
    bool m_held = false;
    bool m_taken = false;
    int m_state = 0;
  };

  /**
   * Says that somebody asks takeStopRequest() in the scope, as a run loop does. May be nested.
   * Outside all scopes a wish to stop goes to the Python code that has called the toolkit.
   */
  class StopScope {
  public:
    StopScope() noexcept;
    StopScope(StopScope const&) = delete;
    StopScope& operator=(StopScope const&) = delete;
    ~StopScope();
  };

  /** Makes a Python object, a new reference, of a toolkit object that is not null; null with a Python error
   * set if it can't. Called with the interpreter lock held. */
  typedef std::function<PyObjectType*(zor::String const& typeName, void* pointer)> ToPython;

  /** Gives the toolkit object that a Python object wraps, or null if it wraps none of that type. Called with
   * the interpreter lock held. */
  typedef std::function<void*(zor::String const& typeName, PyObjectType* object)> FromPython;

  /**
   * The script manager of the process. With empty texts and false: asks for the one that exists.
   * \param programName - what an interpreter started here calls itself; empty for "python3"
   * \param home - where an interpreter started here finds its library; empty for its own search
   * \param modulePath - folders, separated by colons, in which modules are searched before all others
   * \param create - true: makes the manager if there is none, and starts an interpreter if none runs
   * \return the manager, or null if there is none and none was to be made
   * \throws std::runtime_error if the interpreter can't be started
   */
  static ScriptManager* instance(zor::String const& programName, zor::String const& home,
                                 zor::String const& modulePath, bool create);

  /** \return the manager, made if there is none */
  static ScriptManager& getOrCreate();

  ~ScriptManager() override;

  /**
   * Records the Python error that is pending on this thread, reports it through the notification log with its
   * traceback, and clears it. Nothing happens if none is pending. An error that repeats (same label, class
   * and place) is recorded once with its count, and reported again only for every power of ten.
   * A KeyboardInterrupt or SystemExit is no error but a wish to stop. It is kept for takeStopRequest() within
   * a StopScope, or if no Python code has called the toolkit; else it is raised anew as soon as that code
   * goes on.
   * \param label - where it came to light, written namespace::class::method
   */
  void registerError(zor::String label);

  /** Records and reports an error that is no Python exception. */
  void registerError(ScriptError const& error);

  /** \return the errors since the last clearErrors(), each kind once, the oldest first; at most 256 kinds */
  std::vector<ScriptError> getErrors() const;

  /** \return the error that was registered last, with its count; none since the last clearErrors(), or after
   * too many kinds */
  std::optional<ScriptError> getLatestError() const;

  /** \return true if an error was registered since the last clearErrors() */
  bool hasErrors() const;

  /** \return number of errors registered since the last clearErrors(), repetitions included */
  zor::UInt getNumErrors() const;

  /** Forgets the recorded errors. */
  void clearErrors();

  /**
   * Asks whether Python code that the toolkit called wanted to end the program, and forgets it.
   * \return the exit code if a SystemExit (its code) or KeyboardInterrupt (130) was registered since the last
   * call
   */
  std::optional<int> takeStopRequest();

  /**
   * Runs a script file as a module of its own; its `__name__` is not "__main__". Each call runs the file
   * anew, and with it the modules below its folder that it was the first to import. The script's folder is
   * searched for modules that it imports.
   * \param path - the file; searched on the resource path if it is not absolute
   * \return the script; null if it could not be read or run, with the error registered
   */
  zor::ref_ptr<Script> loadScript(zor::String const& path);

  /**
   * Tells which files loadScript() runs.
   * \param path - the script, as given to loadScript()
   * \return paths of the script and of the modules below its folder that it has imported so far
   */
  std::vector<zor::String> getScriptFiles(zor::String const& path) const;

  /**
   * Calls a function of a script.
   * \param script - the script
   * \param name - name of the function
   * \param arguments - its positional arguments
   * \return what it returns; no value if it is missing or raises, with the error registered
   */
  ScriptValue callFunction(Script const* script, zor::String const& name,
                           std::vector<ScriptValue> const& arguments = std::vector<ScriptValue>());

  /** \param folder - searched for modules before all others; one that is on the search path moves to the
   * front */
  void addModulePath(zor::String const& folder);

  /**
   * Registers how objects of a type become Python objects. Replaces an earlier converter; an empty function
   * removes it. May be called before there is a manager.
   * \param typeName - the type, written as in "zorSDK::Simulation"; empty: all types without a converter
   * \param function - the converter
   */
  static void registerToPython(zor::String const& typeName, ToPython function);

  /** As registerToPython(), for the way back. */
  static void registerFromPython(zor::String const& typeName, FromPython function);

  /** \return the converter for a type, or an empty function */
  static ToPython getToPython(zor::String const& typeName);
  static FromPython getFromPython(zor::String const& typeName);

protected:
  /** Forgets the errors, and ends the interpreter if it was started here. */
  void shutdown() override;

private:
  ScriptManager();

  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

} // namespace zorPython
