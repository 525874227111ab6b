#include "ExampleApplicationImpl.h"

#include <zor/Notify.h>
#include <zorModel/UrdfReader.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/ReadFile.h>
#include <zorOSG/ReadNode.h>
#include <zorUtil/TaskRecorder.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>

// What an application reads and writes: scenes in files, the saved simulation, records of where the time
// went.

namespace zorOSG {

namespace {

using zorSDK::Simulation;
using zorUtil::TaskRecorder;

constexpr zor::UInt ALL_BUT_TIME =
    Simulation::READ_OBJECTS | Simulation::READ_SETTINGS | Simulation::READ_MATERIALS;

bool isSimulation(std::filesystem::path const& file) {
  return file.extension() == ".zor" || file.extension() == ".azor";
}

void readRobot(std::string const& file, Simulation& simulation, osg::Group* root) {
  zorModel::UrdfReader reader;
  reader.setFixedBase(true); // there is nothing to stand on
  zor::ref_ptr<zorSDK::Assembly> const robot = reader.read(file);
  simulation.add(robot.get());
  createVisual(robot.get(), root);
}

} // namespace

ExampleApplication::Impl::SimulationSettings
ExampleApplication::Impl::SimulationSettings::of(Simulation const& simulation) {
  return {simulation.getTimeStep(),        simulation.getUniformGravity(),
          simulation.getNumSubSteps(),     simulation.getNumSolverIterations(),
          simulation.getSolverTolerance(), simulation.getSolverType(),
          simulation.getEnableAutoSleep()};
}

void ExampleApplication::Impl::SimulationSettings::applyTo(Simulation& simulation) const {
  simulation.setTimeStep(timeStep);
  simulation.setUniformGravity(gravity);
  simulation.setNumSubSteps(subSteps);
  simulation.setNumSolverIterations(iterations);
  simulation.setSolverTolerance(tolerance);
  simulation.setSolverType(solver);
  simulation.setEnableAutoSleep(autoSleep);
}

bool ExampleApplication::Impl::readModel(std::string const& file) {
  osg::ref_ptr<osg::Group> const scene = new osg::Group;
  if (isSimulation(file)) {
    if (!readFile(file, simulation.get(), scene, nullptr, 1, false, ALL_BUT_TIME))
      return fail("the file '" + file + "' could not be read");
  } else if (std::filesystem::path(file).extension() == ".urdf") {
    readRobot(file, *simulation, scene);
  } else if (osg::ref_ptr<osg::Node> const node = readNodeFile(file)) {
    scene->addChild(node);
  } else {
    return fail("the file '" + file + "' could not be read");
  }
  graph.setScene(scene);
  return true;
}

bool ExampleApplication::restoreFromFile(std::string const& filename) {
  Impl& m = *m_impl;
  if (m_isLoadingScene || m.isStepping)
    return m.fail("restoreFromFile: not possible while a scene is built or a step is taken");
  // Into a simulation of its own first: a file that cannot be read must not cost the present scene.
  zor::ref_ptr<Simulation> const trial = new Simulation;
  if (!isSimulation(filename) || !readFile(filename, trial.get(), nullptr))
    return m.fail("the simulation could not be restored from '" + filename + "'");
  initSimulation(nullptr, false);
  if (!m.settings)
    m.settings = Impl::SimulationSettings::of(*m.simulation);
  m.clear();
  osg::ref_ptr<osg::Group> const scene = new osg::Group;
  m_loadedSceneFile = readFile(filename, m.simulation.get(), scene, nullptr, 1, false, Simulation::READ_ALL);
  m.graph.setScene(scene);
  m.errors.clear();
  m.watch.clear();
  m.sceneReady();
  return m_loadedSceneFile;
}

std::string ExampleApplication::getSaveSceneFilename() const {
  return m_impl->options.saveScene.empty() ? "zor_scene.zor" : m_impl->options.saveScene;
}

void ExampleApplication::setEnableSimulationDump(bool flag) {
  m_impl->savesAtEnd = flag;
}

bool ExampleApplication::getEnableSimulationDump() const {
  return m_impl->savesAtEnd;
}

void ExampleApplication::Impl::saveSimulation() {
  if (savesAtEnd && simulation)
    simulation->write(app.getSaveSceneFilename());
}

// --- Records

void ExampleApplication::Impl::startRecording() {
  TaskRecorder::instance().nameThread("loop");
  if (options.profile)
    app.setEnableTaskProfile(true);
  if (!options.timeline.empty())
    app.setEnableThreadTimeline(true);
}

void ExampleApplication::Impl::writeTimeline() {
  TaskRecorder::instance().setEnableTimeline(false);
  TaskRecorder::instance().writeTimeline(options.timeline.empty() ? "zor_timeline.json" : options.timeline);
}

void ExampleApplication::setEnableThreadTimeline(bool flag) {
  TaskRecorder& recorder = TaskRecorder::instance();
  if (flag)
    recorder.setEnableTimeline(true);
  else if (recorder.getEnableTimeline())
    m_impl->writeTimeline();
}

void ExampleApplication::setEnableTaskProfile(bool flag) {
  TaskRecorder& recorder = TaskRecorder::instance();
  if (!flag && recorder.getEnableProfile())
    std::cerr << recorder.formatSums() << std::flush; // not through the log, whose level would hide it
  recorder.setEnableProfile(flag);
}

} // namespace zorOSG
