#pragma once

#include <string>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/**
 * Hands the pending Python error of a script-managed callback to the script manager, which records and
 * reports it. Without a script manager the error stays pending. Never throws a std::exception; call with the
 * interpreter locked.
 * \param label - namespace::class::method of the callback
 * \param function - short name of the method
 * \param file - interface file that declares the callback
 * \param line - line of the declaration
 */
void registerDirectorError(char const* label, char const* function, char const* file, int line);

/**
 * As registerDirectorError(), but tells whether there is a script manager.
 * \return false if there is none; the error is then still pending
 */
bool registerStepError(char const* label, char const* function, char const* file, int line);

/**
 * Sets a Python error aside that is pending where a scope begins, as it is when the toolkit cleans up after a
 * callback that failed: Python code must not run with it. It is back at the end, in place of a later one: the
 * first error is what a caller gets to see. Both ends need the interpreter lock.
 */
class EarlierError {
public:
  EarlierError();
  EarlierError(EarlierError const&) = delete;
  EarlierError& operator=(EarlierError const&) = delete;
  ~EarlierError();

private:
  PyObject* m_error;
};

/**
 * \param signature - full signature of the C++ method that called Python
 * \return message for a callback that did not return a bool
 */
std::string wrongBoolText(char const* signature);

} // namespace zorBinding
