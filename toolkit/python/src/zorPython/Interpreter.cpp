#include "Interpreter.h"

#include <stdexcept>

namespace zorPython {

namespace {
class Configuration {
public:
  Configuration() { PyConfig_InitPythonConfig(&m_config); }
  Configuration(Configuration const&) = delete;
  Configuration& operator=(Configuration const&) = delete;
  ~Configuration() { PyConfig_Clear(&m_config); }

  void initialize(zor::String const& programName, zor::String const& home) {
    m_config.install_signal_handlers = 0; // signals belong to the program that embeds the interpreter
    m_config.parse_argv = 0;
    set(&m_config.program_name, programName);
    set(&m_config.home, home);
    check(Py_InitializeFromConfig(&m_config));
  }

private:
  void set(wchar_t** field, zor::String const& text) {
    if (!text.empty()) {
      check(PyConfig_SetBytesString(&m_config, field, text.c_str()));
    }
  }

  static void check(PyStatus status) {
    if (PyStatus_Exception(status)) {
      throw std::runtime_error(zor::String("can't start the Python interpreter: ") +
                               (status.err_msg ? status.err_msg : "unknown reason"));
    }
  }

  PyConfig m_config;
};
} // namespace

void Interpreter::start(zor::String const& programName, zor::String const& home) {
  if (Py_IsInitialized()) {
    return;
  }
  Configuration().initialize(programName, home);
  m_thread = std::this_thread::get_id();
  m_mainState = PyEval_SaveThread();
}

void Interpreter::stop() noexcept {
  if (!m_mainState || m_thread != std::this_thread::get_id() || !Py_IsInitialized()) {
    return;
  }
  PyEval_RestoreThread(m_mainState);
  m_mainState = nullptr;
  Py_FinalizeEx();
}

} // namespace zorPython
