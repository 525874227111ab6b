#include "ExampleApplicationImpl.h"

#include "CurrentApplicationScope.h"
#include "scene/Ancestry.h"
#include "scene/Checks.h"

#include <filesystem>
#include <stdexcept>

#include <unistd.h>

namespace zorOSG {

namespace {

std::string hostName() {
  char name[256] = "";
  return gethostname(name, sizeof name - 1) == 0 ? name : "localhost";
}

} // namespace

ExampleApplication::ExampleApplication(zorSDK::Simulation* simulation)
    : m_hostName(hostName()), m_impl(std::make_unique<Impl>(*this)) {
  if (simulation)
    m_impl->installSimulation(simulation);
}

ExampleApplication::ExampleApplication() : ExampleApplication(nullptr) {}

ExampleApplication::~ExampleApplication() = default;

bool ExampleApplication::init(zorIO::ArgumentParser* arguments, bool zorOnly) {
  Impl& m = *m_impl;
  m.arguments = arguments ? arguments : new zorIO::ArgumentParser;
  m.isInitialized = false;
  m.exitCode = 0;
  if (!m.readCommandLine())
    return false;
  m.wantsGraphics = !zorOnly && !m.options.zorOnly;
  std::string const program = std::filesystem::path(m.arguments->getProgramName()).filename().string();
  if (!program.empty())
    m.title = program;
  m.applyCommandLine();
  if (m.wantsGraphics)
    m.openViewer(!m.options.offscreen);
  m.isInitialized = true;
  CurrentApplicationScope::setLatest(this);
  return true;
}

bool ExampleApplication::initialized() const {
  return m_impl->isInitialized;
}

zorIO::ArgumentParser* ExampleApplication::getArguments() const {
  return m_impl->arguments.get();
}

void ExampleApplication::initSimulation(zorSDK::Simulation* simulation, bool initializeGraphics) {
  Impl& m = *m_impl;
  if (simulation && m.simulation != simulation)
    m.installSimulation(simulation);
  else if (!m.simulation)
    m.installSimulation(new zorSDK::Simulation);
  if (initializeGraphics)
    initGraphics();
}

void ExampleApplication::initSimulation() {
  initSimulation(nullptr, true);
}

void ExampleApplication::initScene() {
  initScene(new osg::Group);
}

void ExampleApplication::initScene(osg::Group* root) {
  requireGiven("initScene", "root", root);
  Impl& m = *m_impl;
  osg::ref_ptr<osg::Group> const previous = m.graph.root();
  osg::Node* const overlays[] = {m.help.node(), m.statistics.node(), m.errors.node()};
  for (osg::Node* const overlay : overlays)
    requireNoCircle("initScene", root, overlay);
  for (auto const& added : m.targets) {
    requireNoCircle("initScene", root, added.node);
    requireNoCircle("initScene", root, added.target->getCamera());
  }
  m.graph.setRoot(root);
  for (osg::Node* const overlay : overlays) {
    previous->removeChild(overlay);
    root->addChild(overlay);
  }
  for (auto const& added : m.targets) {
    previous->removeChild(added.target->getCamera());
    root->addChild(added.target->getCamera());
  }
  if (m.host)
    m.host->viewer().setSceneData(root);
}

zorSDK::Simulation* ExampleApplication::getSimulation() const {
  return m_impl->simulation.get();
}

void ExampleApplication::setTimeStep(zor::Real dt) {
  requirePositive("setTimeStep", "the time step", dt);
  m_impl->timeStep = dt;
  m_impl->timeStepSet = true;
  if (m_impl->simulation)
    m_impl->simulation->setTimeStep(dt);
}

zor::Real ExampleApplication::getTimeStep() const {
  return m_impl->simulation ? m_impl->simulation->getTimeStep() : m_impl->timeStep;
}

zor::Real ExampleApplication::getTimeStamp() const {
  return m_impl->simulation ? m_impl->simulation->getTimeStamp() : 0;
}

zor::Vec3 ExampleApplication::getGravity() const {
  return m_impl->simulation ? m_impl->simulation->getUniformGravity() : zor::Vec3();
}

} // namespace zorOSG
