#include "ScriptScene.h"

#include <zorPython/CallSignature.h>
#include <zorPython/ScriptManager.h>

#include <stdexcept>
#include <vector>

namespace zorOSG {

using zorPython::ScriptManager;
using zorPython::ScriptValue;

namespace {

zorPython::ScriptError makeError(std::string const& file, std::string const& message) {
  zorPython::ScriptError error;
  error.label = "zorOSG::ExampleApplication::executePythonScript";
  error.message = message;
  error.file = file;
  return error;
}

} // namespace

osg::Group* ScriptScene::run(std::string const& file, std::string const& function, ExampleApplication* app,
                             zorSDK::Simulation* simulation, osg::Group* root) {
  ScriptManager& manager = ScriptManager::getOrCreate();
  zor::UInt const errorsBefore = manager.getNumErrors();
  zor::ref_ptr<zorPython::Script> const script = manager.loadScript(file);
  if (!script || manager.getNumErrors() != errorsBefore)
    return nullptr;
  m_script = script;
  if (!m_script->hasFunction(function)) {
    manager.registerError(makeError(file, "the script has no function '" + function + "'"));
    return nullptr;
  }
  try {
    return call(function, app, simulation, root);
  } catch (std::exception const& error) {
    manager.registerError(makeError(file, error.what()));
    return nullptr;
  }
}

osg::Group* ScriptScene::call(std::string const& function, ExampleApplication* app,
                              zorSDK::Simulation* simulation, osg::Group* root) {
  int const wanted = zorPython::countRequiredParameters(m_script->getAttribute(function));
  std::vector<ScriptValue> arguments;
  if (wanted > 0)
    arguments.push_back(ScriptValue::fromPointer("zorSDK::Simulation", simulation));
  if (wanted > 1)
    arguments.push_back(ScriptValue::fromPointer("zorOSG::ExampleApplication", app));
  if (wanted > 2)
    arguments.push_back(ScriptValue::fromPointer("osg::Group", root));
  ScriptValue const result = ScriptManager::getOrCreate().callFunction(m_script.get(), function, arguments);
  if (!result.isValid())
    return nullptr;
  // A function may put its visuals under the root and return nothing, or something that is no group.
  bool const mayBeGroup = !result.isNone() && ScriptManager::getFromPython("osg::Group");
  m_result = mayBeGroup ? static_cast<osg::Group*>(result.toPointer("osg::Group")) : nullptr;
  if (!m_result)
    m_result = root;
  return m_result.get();
}

void ScriptScene::clear() {
  m_result = nullptr;
  m_script = nullptr;
}

} // namespace zorOSG
