#include "ScriptModules.h"

#include "PythonReference.h"

#include <algorithm>

namespace zorPython {

namespace {
namespace fs = std::filesystem;

zor::String textOf(PyObject* object) {
  char const* const text = object && PyUnicode_Check(object) ? PyUnicode_AsUTF8(object) : nullptr;
  PyErr_Clear();
  return text ? text : "";
}

std::set<zor::String> importedNames() {
  std::set<zor::String> names;
  PythonReference const keys(PyDict_Keys(PyImport_GetModuleDict()));
  for (Py_ssize_t i = 0; keys && i < PyList_GET_SIZE(keys.get()); ++i) {
    names.insert(textOf(PyList_GET_ITEM(keys.get(), i)));
  }
  PyErr_Clear();
  return names;
}

zor::String fileOf(zor::String const& moduleName) {
  PyObject* const module = PyDict_GetItemString(PyImport_GetModuleDict(), moduleName.c_str()); // borrowed
  PythonReference const file(module ? PyObject_GetAttrString(module, "__file__") : nullptr);
  PyErr_Clear();
  return textOf(file.get());
}

/** Other folders may lie below a script's, with libraries that must not be run anew. */
bool isImportedFrom(fs::path const& folder, zor::String const& moduleName, zor::String const& file) {
  zor::String path = moduleName;
  std::replace(path.begin(), path.end(), '.', '/');
  return file == (folder / (path + ".py")).string() || file == (folder / path / "__init__.py").string();
}
} // namespace

ScriptModules::Run::Run(ScriptModules& modules, fs::path const& script)
    : m_modules(modules), m_script(script) {
  PyObject* const imported = PyImport_GetModuleDict(); // borrowed
  for (auto const& [name, file] : m_modules.m_files[script]) {
    if (PyDict_DelItemString(imported, name.c_str()) != 0) {
      PyErr_Clear(); // somebody else has dropped it
    }
  }
  m_before = importedNames();
}

ScriptModules::Run::~Run() {
  PyObject* const pending = PyErr_GetRaisedException();
  try {
    for (zor::String const& name : importedNames()) {
      zor::String const file = m_before.contains(name) ? zor::String() : fileOf(name);
      if (isImportedFrom(m_script.parent_path(), name, file)) {
        m_modules.m_files[m_script][name] = file;
      }
    }
  } catch (...) { // what is not noted is not run anew
  }
  PyErr_SetRaisedException(pending);
}

std::vector<zor::String> ScriptModules::filesOf(fs::path const& script) const {
  std::vector<zor::String> files{script.string()};
  auto const found = m_files.find(script);
  if (found != m_files.end()) {
    for (auto const& [name, file] : found->second) {
      files.push_back(file);
    }
  }
  return files;
}

} // namespace zorPython
