#include "ExampleApplicationImpl.h"

#include "CurrentApplicationScope.h"
#include "scene/ResourceFile.h"

#include <zor/FlagScope.h>
#include <zor/Notify.h>
#include <zorOSG/CreateVisual.h>
#include <zorPython/ScriptManager.h>

#include <filesystem>
#include <stdexcept>

namespace zorOSG {

namespace {

bool report(std::string const& message) {
  zor::notify(zor::Notify::NOTIFY_ERROR) << message << zor::endMessage;
  return false;
}

bool isScript(std::string const& file) {
  std::string const suffix = std::filesystem::path(file).extension().string();
  return suffix == ".py" || suffix == ".zorPy";
}

} // namespace

// --- The build of one scene

bool ExampleApplication::Impl::fail(std::string const& message) {
  failure = message;
  return report(message);
}

bool ExampleApplication::Impl::build(std::size_t index, bool clearFirst) {
  if (app.m_isLoadingScene)
    return fail("a scene cannot be built while another is being built");
  if (isStepping)
    return fail("a scene cannot be built during a simulation step; do it in a frame listener");
  SceneDescription const description = scenes.at(index).description;
  app.initSimulation(nullptr, wantsGraphics);
  if (clearFirst)
    clear();
  if (!settings)
    settings = SimulationSettings::of(*simulation);
  scenes.setCurrent(index);
  errors.clear();
  failure.clear();
  bool const isGood = buildFrom(description);
  watchFiles(description);
  if (!isGood) {
    clear(); // nothing half-built is left to run
    errors.showFailure(SceneList::describe(description), failure);
    return fail("the scene '" + SceneList::describe(description) + "' could not be built");
  }
  sceneReady();
  return true;
}

bool ExampleApplication::Impl::buildFrom(SceneDescription const& description) {
  CurrentApplicationScope const current(&app);
  zor::FlagScope const loading(app.m_isLoadingScene);
  try {
    if (!description.scene)
      return buildFromFile(description.fileName, description.scriptFunction);
    osg::ref_ptr<osg::Group> const scene = description.scene(simulation.get(), &app);
    graph.setScene(scene.get());
    return scene.valid() || fail("the scene function returned no group");
  } catch (std::exception const& error) {
    return fail(std::string("while building a scene: ") + error.what());
  }
}

bool ExampleApplication::Impl::buildFromFile(std::string const& file, std::string const& function) {
  if (function.empty() && !isScript(file)) {
    app.m_loadedSceneFile = readModel(file);
    return app.m_loadedSceneFile;
  }
  bool success = false;
  osg::ref_ptr<osg::Group> const scene =
      app.executePythonScript(file, function.empty() ? "buildScene" : function, success);
  scriptFile = success ? file : "";
  graph.setScene(scene.get());
  return success;
}

/** Edited files are built anew, where the user asked for it and where that may mend what has failed. */
void ExampleApplication::Impl::watchFiles(SceneDescription const& description) {
  if (description.fileName.empty())
    return watch.clear();
  bool const runsScript = !description.scriptFunction.empty() || isScript(description.fileName);
  if (runsScript) {
    auto const files = zorPython::ScriptManager::getOrCreate().getScriptFiles(description.fileName);
    return watch.watch({files.begin(), files.end()});
  }
  std::string const found = findResourceFile(description.fileName);
  watch.watch({found.empty() ? description.fileName : found});
}

/** \return true if somebody is there to change the scene that could not be built */
bool ExampleApplication::Impl::canBeMended() const {
  bool const isWatched = options.watch || (host && host->window());
  return scenes.getCurrent() && isWatched && !stopped;
}

void ExampleApplication::Impl::sceneReady() {
  isBuilt = true;
  osg::BoundingSphere const bound = graph.bound();
  graph.decorator()->calculateLightPositions(bound);
  applyChoices();
  camera.goHome(bound);
  clock.restart(app.getTimeStep());
  updateHelp();
  app.m_sceneLoadEvent.raise();
}

/** What the command line says about the look of scenes and their solver goes before what they say. */
void ExampleApplication::Impl::applyChoices() {
  if (options.shadows)
    graph.decorator()->setShadowMethod(*options.shadows);
  if (options.camera)
    camera.setHome(*options.camera);
  if (!options.solver.empty())
    app.setSolverType(app.getSolverType(options.solver));
}

void ExampleApplication::Impl::clear() {
  isBuilt = false;
  app.m_loadedSceneFile = false;
  scriptFile.clear();
  pick->reset();
  if (simulation) {
    simulation->cleanup();
    if (settings)
      settings->applyTo(*simulation);
  }
  graph.clear();
  graph.decorator()->clearText();
  listeners.removeSceneListeners();
  if (stepCallbackOfScene)
    stepCallback.clear();
  std::vector<AddedTarget> const present = targets;
  for (AddedTarget const& added : present)
    if (added.ofScene)
      app.removeRenderTarget(added.target.get());
  autoPause.clear();
  camera.reset();
  script.clear();
}

bool ExampleApplication::Impl::buildStartScene() {
  if (isBuilt || scenes.size() == 0) {
    if (!options.scene.empty() && scenes.size() == 0)
      return fail("--scene " + options.scene + ": no scenes are registered");
    applyChoices();
    return true;
  }
  std::optional<std::size_t> index = scenes.getCurrent().value_or(0);
  if (!options.scene.empty())
    index = scenes.find(options.scene);
  if (!index)
    return fail("--scene " + options.scene + ": no scene has that key, function or position");
  return app.createSceneFromIndex(static_cast<int>(*index), true);
}

// --- The methods of the class

bool ExampleApplication::addScene(std::string const& scriptFile, std::string const& scriptFunction, int key,
                                  bool isPartofUnitTest, float stopAfterTime, bool isSlowUnittest) {
  return addScene(
      SceneDescription(scriptFile, scriptFunction, isPartofUnitTest, stopAfterTime, isSlowUnittest), key);
}

bool ExampleApplication::addScene(std::string const& scriptFile, std::string const& scriptFunction,
                                  bool isPartofUnitTest, float stopAfterTime, bool isSlowUnittest) {
  return addScene(
      SceneDescription(scriptFile, scriptFunction, isPartofUnitTest, stopAfterTime, isSlowUnittest));
}

bool ExampleApplication::addScene(zorOSG::BuildScenePtr sceneFunction, int key, bool isPartofUnitTest,
                                  float stopAfterTime, bool isSlowUnittest) {
  return addScene(SceneDescription(sceneFunction, isPartofUnitTest, stopAfterTime, isSlowUnittest), key);
}

bool ExampleApplication::addScene(zorOSG::BuildScenePtr sceneFunction, bool isPartofUnitTest,
                                  float stopAfterTime, bool isSlowUnittest) {
  return addScene(SceneDescription(sceneFunction, isPartofUnitTest, stopAfterTime, isSlowUnittest));
}

bool ExampleApplication::addScene(zorOSG::SceneDescription const& sceneDescription, int key) {
  return m_impl->scenes.add(sceneDescription, key);
}

bool ExampleApplication::addScene(zorOSG::SceneDescription const& sceneDescription) {
  return m_impl->scenes.add(sceneDescription, std::nullopt);
}

void ExampleApplication::clearAddedScenes() {
  m_impl->scenes.clear();
}

size_t ExampleApplication::getNumScenes() const {
  return m_impl->scenes.size();
}

zorOSG::SceneDescription ExampleApplication::getCallbackIdx(size_t idx) const {
  return m_impl->scenes.at(idx).description;
}

zorOSG::SceneDescription ExampleApplication::getCallback(int key) const {
  auto const index = m_impl->scenes.findKey(key);
  return index ? m_impl->scenes.at(*index).description : SceneDescription();
}

bool ExampleApplication::createSceneFromKey(int key) {
  auto const index = m_impl->scenes.findKey(key);
  if (!index)
    return m_impl->fail("no scene has the key " + std::to_string(key));
  return m_impl->build(*index, true);
}

bool ExampleApplication::createSceneFromIndex(int idx, bool firstStartUp) {
  if (idx < 0 || static_cast<std::size_t>(idx) >= m_impl->scenes.size())
    return m_impl->fail("no scene at position " + std::to_string(idx) + ": " +
                        std::to_string(m_impl->scenes.size()) + " registered");
  return m_impl->build(static_cast<std::size_t>(idx), !firstStartUp);
}

void ExampleApplication::reloadScene() {
  if (auto* const scripts = zorPython::ScriptManager::instance("", "", "", false))
    scripts->clearErrors(); // else one that comes again would be counted, not told
  if (auto const index = m_impl->scenes.getCurrent())
    m_impl->build(*index, true);
  else
    m_impl->fail("there is no scene to build anew");
}

void ExampleApplication::createNextScene() {
  if (auto const index = m_impl->scenes.neighbour(1))
    m_impl->build(*index, true);
  else
    m_impl->fail("no scenes are registered");
}

void ExampleApplication::createPreviousScene() {
  if (auto const index = m_impl->scenes.neighbour(-1))
    m_impl->build(*index, true);
  else
    m_impl->fail("no scenes are registered");
}

void ExampleApplication::clearScene() {
  if (m_impl->isStepping)
    throw std::runtime_error("clearScene: not possible during a simulation step");
  m_impl->watch.clear();
  m_impl->clear();
}

osg::Group* ExampleApplication::getScene() const {
  return m_impl->graph.scene();
}

void ExampleApplication::setScene(osg::Group* scene) {
  m_impl->graph.setScene(scene);
}

osg::Group* ExampleApplication::getRoot() {
  return m_impl->graph.root();
}

osg::Group* ExampleApplication::getSceneRoot() {
  return m_impl->graph.sceneRoot();
}

osg::Group* ExampleApplication::getSceneZorOSGRoot() {
  return m_impl->graph.aidsRoot();
}

osg::Group* ExampleApplication::getSceneSwitch() const {
  return m_impl->graph.sceneSwitch();
}

zorOSG::SceneDecorator* ExampleApplication::getSceneDecorator() const {
  return m_impl->graph.decorator();
}

std::string ExampleApplication::getScriptFile() const {
  return m_impl->scriptFile;
}

osg::Group* ExampleApplication::executePythonScript(zor::String const& file, zor::String const& function,
                                                    bool& success) {
  success = false;
  CurrentApplicationScope const current(this);
  zorPython::ScriptManager::StopScope const stops;
  try {
    osg::Group* const scene =
        m_impl->script.run(file, function, this, m_impl->simulation.get(), m_impl->graph.sceneRoot());
    success = scene != nullptr;
    if (!success)
      m_impl->takeScriptStop(); // Ctrl-C during the build is no error of the script
    return scene;
  } catch (std::exception const& error) {
    m_impl->fail(file + ": " + error.what());
    return nullptr;
  }
}

void ExampleApplication::createVisual(zorSDK::Simulation* simulation, float detailRatio, bool createAxes) {
  if (!simulation)
    throw std::invalid_argument("createVisual: simulation must not be null");
  zorOSG::createVisual(simulation, m_impl->graph.sceneRoot(), detailRatio, createAxes);
}

void ExampleApplication::createVisual(zorSDK::Assembly* assembly, float detailRatio, bool createAxes) {
  if (!assembly)
    throw std::invalid_argument("createVisual: assembly must not be null");
  zorOSG::createVisual(assembly, m_impl->graph.sceneRoot(), detailRatio, createAxes);
}

} // namespace zorOSG
