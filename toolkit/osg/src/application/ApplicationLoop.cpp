#include "ExampleApplicationImpl.h"

#include "CurrentApplicationScope.h"
#include "SignalGuard.h"

#include <zor/Notify.h>
#include <zorPython/PendingSignals.h>
#include <zorPython/ScriptManager.h>
#include <zorUtil/TaskRecorder.h>

#include <osg/Stats>

#include <cmath>
#include <stdexcept>
#include <thread>
#include <utility>

namespace zorOSG {

namespace {

using Clock = StepClock::Clock;
using Seconds = StepClock::Seconds;
using zorUtil::TaskScope;

constexpr int EXIT_AFTER_SIGNAL = 128; // plus the number of the signal, as shells have it
constexpr double WINDOW_FPS = 60;
constexpr double LONGEST_CATCH_UP = 0.1; // seconds of steps in one frame
constexpr double IDLE_SLEEP = 0.01;

double secondsSince(Clock::time_point start) {
  return Seconds(Clock::now() - start).count();
}

void sleepFor(double seconds) {
  if (seconds > 0)
    std::this_thread::sleep_for(Seconds(seconds));
}

} // namespace

// --- One frame

void ExampleApplication::Impl::frame() {
  TaskScope const record("frame");
  frameStart = Clock::now();
  app.updateServices();
  if (app.breakRequested())
    return;
  processEvents();
  if (pendingAction)
    std::exchange(pendingAction, nullptr)();
  if (!autoStepping && !stepOnce && !pauseUpdate) {
    app.throttleIdleCpuUsageBySleeping();
    return;
  }
  callListeners(&ListenerList::preFrame);
  takeSteps();
  errors.update();
  draw();
  callListeners(&ListenerList::postFrame);
  paceFrame();
}

void ExampleApplication::Impl::callListeners(void (ListenerList::*method)(ExampleApplication*)) {
  TaskScope const record("frame listeners");
  (listeners.*method)(&app);
}

void ExampleApplication::Impl::processEvents() {
  if (!host)
    return;
  TaskScope const record("events");
  host->viewer().advance(app.getTimeStamp());
  host->viewer().eventTraversal();
  input->rethrow();
}

void ExampleApplication::Impl::takeSteps() {
  if (std::exchange(stepOnce, false)) {
    app.stepWrapper();
    return;
  }
  bool const hasWindow = host && host->window();
  while (autoStepping) {
    if (app.getRealTimeSync()) {
      // Only a window has something to show in between.
      if (hasWindow && !clock.isDue())
        return;
      app.synchronizedStep(true);
    } else {
      app.stepWrapper();
    }
    if (!moreStepsFit())
      return;
  }
}

bool ExampleApplication::Impl::moreStepsFit() const {
  if (!host || app.breakRequested())
    return false;
  if (captures->needsEveryStep()) // off screen, what is not captured is seen by nobody
    return !host->window() && !captures->isPictureDue();
  if (app.getRealTimeSync())
    return clock.isDue() && secondsSince(frameStart) < LONGEST_CATCH_UP;
  double const fps = app.getTargetFPS();
  return fps > 0 && secondsSince(frameStart) < 1 / fps;
}

void ExampleApplication::Impl::draw() {
  if (!host)
    return;
  zor::ScopedLock const lock(frameMutex);
  {
    TaskScope const record("update");
    updateStatistics();
    scaleOverlays(); // a script may change the scale at any time
    proxies.update(simulation.get());
    host->viewer().updateTraversal();
  }
  TaskScope const record("cull and draw");
  host->viewer().renderingTraversals();
}

void ExampleApplication::Impl::paceFrame() {
  TaskScope const record("wait");
  double const fps = app.getTargetFPS();
  bool const hasWindow = host && host->window();
  if (hasWindow && fps > 0)
    sleepFor(1 / fps - secondsSince(frameStart));
  else if (!autoStepping)
    app.throttleIdleCpuUsageBySleeping();
}

/** The viewer measures culling and drawing when it is told to. */
void ExampleApplication::Impl::measureFrames(bool flag) {
  statistics.restart();
  if (host)
    host->viewer().getCamera()->getStats()->collectStats("rendering", flag);
}

/** What the last frame took is known when the next one is about to be drawn. */
void ExampleApplication::Impl::updateStatistics() {
  double const physics = std::exchange(physicsTime, 0);
  auto const then = std::exchange(lastDrawn, Clock::now());
  if (!statistics.isVisible() || !simulation)
    return;
  FrameTimes times{physics, 0, 0, Seconds(lastDrawn - then).count()};
  osg::Stats& stats = *host->viewer().getCamera()->getStats();
  unsigned int const frame = stats.getLatestFrameNumber();
  stats.getAttribute(frame, "Cull traversal time taken", times.cull);
  stats.getAttribute(frame, "Draw traversal time taken", times.draw);
  statistics.addFrame(times, app.getTimeStamp(), simulation->getStatistics());
}

bool ExampleApplication::Impl::stopTimeReached() const {
  // The tolerance takes up the rounding of a sum of time steps.
  return stopTime && simulation && app.getTimeStamp() >= *stopTime - 1e-6 * app.getTimeStep();
}

// --- Beginning and end of a run

void ExampleApplication::Impl::checkInterrupts() {
  if (!isRunning || stopped)
    return;
  if (int const signal = SignalGuard::pending()) {
    app.stop(EXIT_AFTER_SIGNAL + signal);
    return;
  }
  if (zorPython::PendingSignals::check()) {
    interrupted = true;
    app.stop(EXIT_AFTER_SIGNAL + SIGINT);
    return;
  }
  takeScriptStop();
}

void ExampleApplication::Impl::takeScriptStop() {
  auto* const manager = zorPython::ScriptManager::instance("", "", "", false);
  std::optional<int> const code = manager ? manager->takeStopRequest() : std::nullopt;
  if (!code)
    return;
  app.stop(*code);
  bool const isInterrupt = *code == EXIT_AFTER_SIGNAL + SIGINT;
  if (isInterrupt && isRunning)
    interrupted = true;
  else if (isInterrupt)
    zorPython::PendingSignals::raiseAfterReturn();
}

void ExampleApplication::Impl::startCaptures() {
  if (!options.captureVideo.empty()) {
    requireGraphics("--captureVideo");
    VideoFFMPEGPipeCapture* const video = captures->video();
    video->setFilename(options.captureVideo);
    video->setVideoFPS(options.captureFps);
    video->setImageCaptureFPS(options.captureFps);
    video->startCapture();
  }
  if (!options.captureImages.empty()) {
    requireGraphics("--captureImages");
    ImageCapture* const images = captures->images();
    images->setDirectoryPath(options.captureImages);
    images->setPostfix("png");
    images->setFps(options.captureFps);
    images->startCapture();
  }
  if (!options.screenShot.empty())
    requireGraphics("--screenShot");
}

void ExampleApplication::Impl::finish() {
  try {
    if (!options.screenShot.empty() && host) {
      host->viewer().setDone(false); // a viewer that is done draws no more
      captures->takeScreenShot(options.screenShot);
      processEvents();
      draw();
    }
    app.postExecution();
  } catch (std::exception const& error) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << "after the run: " << error.what() << zor::endMessage;
    exitCode = exitCode ? exitCode : 1;
  }
  isRunning = false;
  stopUsed = true;
  if (std::exchange(interrupted, false))
    zorPython::PendingSignals::raiseAfterReturn();
}

void ExampleApplication::Impl::runLoop() {
  if (options.unitTests) {
    startCaptures();
    int const result = runUnitTests();
    bool const wasInterrupted = interrupted || SignalGuard::pending();
    app.stop(wasInterrupted ? exitCode : result);
    return;
  }
  bool const hasFailed = !buildStartScene();
  if (hasFailed)
    checkInterrupts();
  if (!hasFailed || canBeMended())
    startCaptures();
  else if (!stopped)
    app.stop(1);
  clock.restart(app.getTimeStep());
  while (!app.breakRequested())
    frame();
}

int ExampleApplication::run() {
  Impl& m = *m_impl;
  if (!m.isInitialized)
    throw std::runtime_error("run: the application is not initialised, call init() first");
  if (m.isRunning)
    throw std::runtime_error("run: the application is running already");
  if (m.stopUsed)
    cancelStop();
  CurrentApplicationScope const current(this);
  SignalGuard const signals;
  zorPython::ScriptManager::StopScope const stops;
  m.isRunning = true;
  try {
    initSimulation(nullptr, m.wantsGraphics);
    m.startRecording();
    m.runLoop();
  } catch (...) {
    m.finish();
    throw;
  }
  m.finish();
  return m.exitCode;
}

void ExampleApplication::postExecution() {
  if (!m_impl->captures->finish() && m_impl->exitCode == 0)
    m_impl->exitCode = 1;
  m_impl->saveSimulation();
  setEnableTaskProfile(false);
  setEnableThreadTimeline(false);
}

// --- Stepping

void ExampleApplication::step() {
  Impl& m = *m_impl;
  stepSimulation();
  m.stepCallback.call();
  if (m.simulation && m.autoPause.isTriggered(*m.simulation->getSpace()))
    setAutoStepping(false);
}

void ExampleApplication::stepWrapper() {
  zor::ScopedLock const lock(m_impl->frameMutex);
  step();
}

void ExampleApplication::stepSimulation() {
  if (!m_impl->simulation)
    return;
  struct Stepping {
    bool& flag;
    bool before;
    explicit Stepping(bool& f) : flag(f), before(f) { flag = true; }
    ~Stepping() { flag = before; }
  } const stepping(m_impl->isStepping);
  auto const start = Clock::now();
  m_impl->simulation->stepForward();
  m_impl->physicsTime += secondsSince(start);
}

void ExampleApplication::synchronizedStep(bool blocking) {
  if (!m_impl->clock.isDue()) {
    if (!blocking)
      return;
    sleepFor(m_impl->clock.timeLeft());
  }
  m_impl->clock.advance(getTimeStep());
  stepWrapper();
}

bool ExampleApplication::executeOneStepWithGraphics(zor::HighAccuracyTimer& timer) {
  Impl& m = *m_impl;
  CurrentApplicationScope const current(this);
  m.frameStart = Clock::now();
  updateServices();
  double const interval = getTargetFPS() > 0 ? 1000 / getTargetFPS() : 0;
  bool const drawNow =
      m.host && timer.isRunning() && (timer.getTime() >= interval || m.captures->needsEveryStep());
  if (drawNow)
    m.processEvents();
  if (m.pendingAction)
    std::exchange(m.pendingAction, nullptr)();
  m.callListeners(&ListenerList::preFrame);
  if (std::exchange(m.stepOnce, false) || m.autoStepping)
    getRealTimeSync() ? synchronizedStep(true) : stepWrapper();
  m.errors.update();
  if (drawNow) {
    timer.reset(true);
    m.draw();
  }
  m.callListeners(&ListenerList::postFrame);
  return drawNow;
}

bool ExampleApplication::executeOneStepWithoutGraphics() {
  Impl& m = *m_impl;
  CurrentApplicationScope const current(this);
  updateServices();
  m.callListeners(&ListenerList::preFrame);
  if (m.autoStepping)
    stepWrapper();
  m.callListeners(&ListenerList::postFrame);
  return m.autoStepping && m.simulation;
}

void ExampleApplication::updateServices() {
  Impl& m = *m_impl;
  m.checkInterrupts();
  bool const rebuilds = (m.options.watch || !m.isBuilt) && m.scenes.getCurrent() && !m_isLoadingScene;
  if (rebuilds && m.watch.hasChanged())
    m.pendingAction = [this] { reloadScene(); };
}

void ExampleApplication::handleReactiveScriptErrors(bool abortSimulation) {
  auto* const manager = zorPython::ScriptManager::instance("", "", "", false);
  if (!manager || !manager->hasErrors())
    return;
  zor::notify(zor::Notify::NOTIFY_ERROR)
      << manager->getNumErrors() << " errors in scripts" << zor::endMessage;
  manager->clearErrors();
  if (abortSimulation)
    stop(1);
}

// --- Stopping

bool ExampleApplication::done() const {
  return m_impl->host && m_impl->host->viewer().done();
}

bool ExampleApplication::breakRequested() const {
  return m_impl->stopped || m_impl->stopTimeReached() || done();
}

void ExampleApplication::stop(int exitCode) {
  m_impl->exitCode = exitCode;
  stop();
}

void ExampleApplication::stop() {
  m_impl->stopped = true;
  m_impl->stopUsed = false;
}

void ExampleApplication::cancelStop() {
  Impl& m = *m_impl;
  if (m.stopTimeReached())
    m.stopTime.reset();
  m.stopped = m.stopUsed = false;
  m.exitCode = 0;
  if (m.host)
    m.host->viewer().setDone(false);
}

bool ExampleApplication::shouldStop() const {
  return m_impl->stopped;
}

void ExampleApplication::stopAfter(zor::Real stopTime) {
  if (std::isnan(stopTime))
    throw std::invalid_argument("stopAfter: the time must be a number");
  m_impl->stopTime = stopTime < 0 ? std::nullopt : std::optional<zor::Real>(stopTime);
}

int ExampleApplication::getExitCode() const {
  return m_impl->exitCode;
}

// --- Pace

void ExampleApplication::setAutoStepping(bool flag, bool resetTimer) {
  Impl& m = *m_impl;
  bool const changed = flag != m.autoStepping;
  if (changed && !flag)
    m.clock.pause();
  if (flag && resetTimer)
    m.clock.restart(getTimeStep());
  else if (flag && changed)
    m.clock.resume();
  m.autoStepping = flag;
  if (changed)
    autoStepEvent.raise(flag);
}

void ExampleApplication::setAutoStepping(bool flag) {
  setAutoStepping(flag, true);
}

bool ExampleApplication::getAutoStepping() const {
  return m_impl->autoStepping;
}

void ExampleApplication::setEnablePauseUpdate(bool flag) {
  m_impl->pauseUpdate = flag;
}

bool ExampleApplication::getEnablePauseUpdate() const {
  return m_impl->pauseUpdate;
}

void ExampleApplication::setRealTimeSync(bool flag) {
  m_impl->realTimeSync = flag;
  m_impl->clock.restart(getTimeStep());
}

bool ExampleApplication::getRealTimeSync() const {
  return m_impl->realTimeSync.value_or(m_impl->host && m_impl->host->window());
}

void ExampleApplication::setTargetFPS(double fps) {
  if (std::isnan(fps))
    throw std::invalid_argument("setTargetFPS: the rate must be a number");
  m_impl->targetFps = fps;
}

double ExampleApplication::getTargetFPS() const {
  return m_impl->targetFps.value_or(m_impl->host && m_impl->host->window() ? WINDOW_FPS : 0);
}

void ExampleApplication::throttleIdleCpuUsageBySleeping() {
  bool const waitsForStep = m_impl->autoStepping && getRealTimeSync();
  if (m_impl->autoStepping && !waitsForStep)
    return;
  sleepFor(waitsForStep ? std::min(IDLE_SLEEP, m_impl->clock.timeLeft()) : IDLE_SLEEP);
}

void ExampleApplication::setQuitEventSetsDone(bool flag) {
  m_impl->quitEventSetsDone = flag;
}

bool ExampleApplication::getQuitEventSetsDone() const {
  return m_impl->quitEventSetsDone;
}

void ExampleApplication::addAutoPausePair(zor::RigidBody const* body1, zor::RigidBody const* body2) {
  m_impl->autoPause.add(body1, body2);
}

void ExampleApplication::addAutoPausePair(zorCollide::Geometry const* geometry1,
                                          zorCollide::Geometry const* geometry2) {
  m_impl->autoPause.add(geometry1, geometry2);
}

void ExampleApplication::removeAutoPausePair(zor::RigidBody const* body1, zor::RigidBody const* body2) {
  m_impl->autoPause.remove(body1, body2);
}

void ExampleApplication::removeAutoPausePair(zorCollide::Geometry const* geometry1,
                                             zorCollide::Geometry const* geometry2) {
  m_impl->autoPause.remove(geometry1, geometry2);
}

void ExampleApplication::setEnableAutoPausing(bool flag) {
  m_impl->autoPause.setEnable(flag);
}

bool ExampleApplication::getEnableAutoPausing() const {
  return m_impl->autoPause.getEnable();
}

void ExampleApplication::addListener(zorOSG::ExampleApplicationListener* listener) {
  if (!listener)
    throw std::invalid_argument("addListener: listener must not be null");
  m_impl->listeners.add(listener, m_isLoadingScene);
}

void ExampleApplication::setStepCallback(zor::Callback const& callback) {
  m_impl->stepCallback = callback;
  m_impl->stepCallbackOfScene = m_isLoadingScene;
}

zor::Callback ExampleApplication::getStepCallback() const {
  return m_impl->stepCallback;
}

zor::Mutex& ExampleApplication::getFrameMutex() {
  return m_impl->frameMutex;
}

} // namespace zorOSG
