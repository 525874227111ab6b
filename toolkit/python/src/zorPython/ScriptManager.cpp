#include "ErrorLog.h"
#include "ErrorReader.h"
#include "Interpreter.h"
#include "PythonReference.h"
#include "ScriptModules.h"

#include <zorIO/Environment.h>
#include <zorPython/PendingSignals.h>
#include <zorPython/ScriptManager.h>
#include <zorUtil/StringUtil.h>

#include <atomic>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <sstream>
#include <stdexcept>

namespace zorPython {

namespace {
namespace fs = std::filesystem;

struct Holder {
  std::recursive_mutex mutex; // start-up code of the interpreter may come back here
  std::unique_ptr<ScriptManager> manager;
};

Holder& holder() {
  static Holder instance;
  return instance;
}

zor::String readFile(fs::path const& path) {
  if (fs::is_directory(path)) {
    throw std::runtime_error("\"" + path.string() + "\" is a folder, not a script");
  }
  std::ifstream file(path, std::ios::binary);
  zor::String text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) {
    throw std::runtime_error("can't read the script \"" + path.string() + "\"");
  }
  return text;
}

// Readable in tracebacks, usable as an identifier, and different for equal file names in different folders.
zor::String moduleName(fs::path const& path) {
  zor::String name = "zor_script_" + path.stem().string();
  for (char& c : name) {
    if (!std::isalnum(static_cast<unsigned char>(c))) {
      c = '_';
    }
  }
  std::ostringstream result;
  result << name << "_" << std::hex << std::hash<zor::String>()(path.string());
  return result.str();
}

PythonReference compile(zor::String const& text, PyObject* path) {
  // As bytes, so that the interpreter honours the file's own encoding declaration.
  PythonReference const bytes(PyBytes_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size())));
  PythonReference const builtins(PyImport_ImportModule("builtins"));
  if (!bytes || !builtins) {
    return {};
  }
  return PythonReference(
      PyObject_CallMethod(builtins.get(), "compile", "OOsii", bytes.get(), path, "exec", 0, 1));
}

// Returns the module, or null with the Python error pending.
PythonReference runFile(fs::path const& path) {
  zor::String const text = readFile(path);
  PythonReference const file = fromText(path.string());
  PythonReference const name = fromText(moduleName(path));
  PythonReference const code = file ? compile(text, file.get()) : PythonReference();
  if (!code || !name) {
    return {};
  }
  // A module of an earlier run would lend its names to the new one.
  PyObject* const modules = PyImport_GetModuleDict();
  if (PyDict_Contains(modules, name.get()) == 1) {
    PyDict_DelItem(modules, name.get());
  }
  return PythonReference(PyImport_ExecCodeModuleObject(name.get(), code.get(), file.get(), nullptr));
}

PythonReference makeTuple(std::vector<ScriptValue> const& arguments) {
  PythonReference tuple(PyTuple_New(static_cast<Py_ssize_t>(arguments.size())));
  for (std::size_t i = 0; tuple && i < arguments.size(); ++i) {
    PyObject* const argument = arguments[i].isValid() ? arguments[i].get() : Py_None;
    PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), Py_NewRef(argument));
  }
  return tuple;
}

ScriptError plainError(char const* function, zor::String const& message, zor::String const& file = {}) {
  ScriptError error;
  error.label = zor::String("zorPython::ScriptManager::") + function;
  error.message = message;
  error.file = file;
  return error;
}

std::atomic<int> stopScopes{0};

char const* const NO_INTERPRETER = "no Python interpreter is running";
} // namespace

ScriptManager::PyGILGuard::PyGILGuard() noexcept {
  // A thread that has an interpreter's state attached has the lock.
  if (PyThreadState_GetUnchecked()) {
    m_held = true;
    return;
  }
  // While the interpreter ends, a thread that waits for the lock would hang for good.
  if (Py_IsInitialized() && (!Py_IsFinalizing() || PyGILState_Check())) {
    m_state = static_cast<int>(PyGILState_Ensure());
    m_held = m_taken = true;
  }
}

ScriptManager::PyGILGuard::~PyGILGuard() {
  if (m_taken) {
    PyGILState_Release(static_cast<PyGILState_STATE>(m_state));
  }
}

ScriptManager::StopScope::StopScope() noexcept {
  ++stopScopes;
}

ScriptManager::StopScope::~StopScope() {
  --stopScopes;
}

struct ScriptManager::Impl {
  Interpreter interpreter;
  ErrorLog errors;
  ScriptModules modules; // behind the interpreter lock
  std::mutex mutex;
  std::optional<int> stopRequest;
};

ScriptManager::ScriptManager() : m_impl(std::make_unique<Impl>()) {}

ScriptManager::~ScriptManager() = default;

ScriptManager* ScriptManager::instance(zor::String const& programName, zor::String const& home,
                                       zor::String const& modulePath, bool create) {
  ScriptManager* manager = nullptr;
  {
    Holder& held = holder();
    std::lock_guard const lock(held.mutex);
    if (create && !held.manager) {
      held.manager.reset(new ScriptManager);
    }
    manager = held.manager.get();
    if (create && !Py_IsInitialized()) {
      manager->m_impl->interpreter.start(programName, home);
      static bool const endsAtExit = std::atexit([] { holder().manager->shutdown(); }) == 0;
      static_cast<void>(endsAtExit);
    }
  }
  // Unlocked: who holds the interpreter lock may be waiting for ours.
  if (manager) {
    std::vector<zor::String> const folders = zorUtil::split(modulePath, ':');
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
      manager->addModulePath(*folder);
    }
  }
  return manager;
}

ScriptManager& ScriptManager::getOrCreate() {
  return *instance({}, {}, {}, true);
}

void ScriptManager::registerError(zor::String label) {
  PyGILGuard const guard;
  if (!guard.isHeld()) {
    return;
  }
  PythonReference const exception(PyErr_GetRaisedException());
  if (!exception) {
    return;
  }
  if (std::optional<int> const stop = readStopRequest(exception.get())) {
    if (stopScopes == 0 && PendingSignals::raiseInCaller(exception.get())) {
      return;
    }
    std::lock_guard const lock(m_impl->mutex);
    m_impl->stopRequest = stop;
    return;
  }
  ScriptError error = readError(exception.get());
  error.label = std::move(label);
  if (!m_impl->errors.isKnown(error)) { // formatting is dear, and an error may come in every frame
    error.traceback = readTraceback(exception.get());
  }
  m_impl->errors.add(error);
}

void ScriptManager::registerError(ScriptError const& error) {
  m_impl->errors.add(error);
}

std::vector<ScriptError> ScriptManager::getErrors() const {
  return m_impl->errors.getErrors();
}

std::optional<ScriptError> ScriptManager::getLatestError() const {
  return m_impl->errors.getLatest();
}

bool ScriptManager::hasErrors() const {
  return getNumErrors() > 0;
}

zor::UInt ScriptManager::getNumErrors() const {
  return m_impl->errors.getCount();
}

void ScriptManager::clearErrors() {
  m_impl->errors.clear();
}

std::optional<int> ScriptManager::takeStopRequest() {
  std::lock_guard const lock(m_impl->mutex);
  return std::exchange(m_impl->stopRequest, std::nullopt);
}

zor::ref_ptr<Script> ScriptManager::loadScript(zor::String const& path) {
  PyGILGuard const guard;
  if (!guard.isHeld()) {
    registerError(plainError("loadScript", NO_INTERPRETER, path));
    return {};
  }
  PendingErrorGuard const pending;
  try {
    fs::path const file = fs::absolute(zorIO::Environment::instance().getFilePath().require(path));
    addModulePath(file.parent_path().string());
    ScriptModules::Run const run(m_impl->modules, file);
    if (PythonReference module = runFile(file)) {
      return new Script(file.string(), ScriptValue::fromNewReference(module.release()));
    }
    registerError("zorPython::ScriptManager::loadScript");
  } catch (std::exception const& e) {
    registerError(plainError("loadScript", e.what(), path));
  }
  return {};
}

std::vector<zor::String> ScriptManager::getScriptFiles(zor::String const& path) const {
  PyGILGuard const guard;
  zor::String const found = zorIO::Environment::instance().getFilePath().find(path);
  fs::path const file = fs::absolute(found.empty() ? path : found);
  return guard.isHeld() ? m_impl->modules.filesOf(file) : std::vector<zor::String>{file.string()};
}

ScriptValue ScriptManager::callFunction(Script const* script, zor::String const& name,
                                        std::vector<ScriptValue> const& arguments) {
  PyGILGuard const guard;
  if (!guard.isHeld() || !script) {
    registerError(plainError("callFunction", script ? NO_INTERPRETER : "the script is null"));
    return {};
  }
  PendingErrorGuard const pending;
  if (!script->hasFunction(name)) {
    registerError(
        plainError("callFunction", "the script has no function \"" + name + "\"", script->getPath()));
    return {};
  }
  ScriptValue const function = script->getAttribute(name);
  PythonReference const tuple = makeTuple(arguments);
  PythonReference result(tuple ? PyObject_Call(function.get(), tuple.get(), nullptr) : nullptr);
  if (!result) {
    registerError("zorPython::ScriptManager::callFunction");
  }
  return ScriptValue::fromNewReference(result.release());
}

void ScriptManager::addModulePath(zor::String const& folder) {
  PyGILGuard const guard;
  if (!guard.isHeld() || folder.empty()) {
    return;
  }
  PendingErrorGuard const pending;
  PyObject* const path = PySys_GetObject("path"); // borrowed
  PythonReference const name = fromText(folder);
  if (!path || !PyList_Check(path) || !name) {
    return;
  }
  Py_ssize_t const present = PySequence_Index(path, name.get());
  if (present >= 0) {
    PySequence_DelItem(path, present);
  } else {
    PyErr_Clear();
  }
  PyList_Insert(path, 0, name.get());
}

void ScriptManager::shutdown() {
  clearErrors();
  m_impl->interpreter.stop();
}

} // namespace zorPython
