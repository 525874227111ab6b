#pragma once

#include "AutoPause.h"
#include "CameraControl.h"
#include "CaptureSet.h"
#include "CommandLine.h"
#include "ErrorPanel.h"
#include "FileWatch.h"
#include "HelpOverlay.h"
#include "InputAdapter.h"
#include "KeyMap.h"
#include "ListenerList.h"
#include "SavedViews.h"
#include "SceneGraph.h"
#include "SceneList.h"
#include "ScriptScene.h"
#include "StatisticsOverlay.h"
#include "StepClock.h"
#include "ViewerHost.h"
#include "debug/RenderProxyFactory.h"

#include <zor/ref_ptr.h>
#include <zorIO/ArgumentParser.h>
#include <zorOSG/ExampleApplication.h>
#include <zorOSG/PickHandler.h>
#include <zorOSG/RenderTarget.h>
#include <zorOSG/RenderToTexture.h>
#include <zorSDK/Simulation.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zorOSG {

/// The state of an application and the steps of its loop; the class itself only checks and forwards.
struct ExampleApplication::Impl {
  /// What a scene may change about a simulation and the next scene must not inherit.
  struct SimulationSettings {
    zor::Real timeStep;
    zor::Vec3 gravity;
    zor::UInt subSteps;
    zor::UInt iterations;
    zor::Real tolerance;
    zorSDK::Simulation::SolverType solver;
    bool autoSleep;

    static SimulationSettings of(zorSDK::Simulation const& simulation);
    void applyTo(zorSDK::Simulation& simulation) const;
  };

  struct AddedTarget {
    zor::ref_ptr<RenderTarget> target;
    osg::ref_ptr<osg::Node> node;
    bool ofScene;
  };

  explicit Impl(ExampleApplication& owner);
  ~Impl();

  // Set-up
  bool readCommandLine();
  void applyCommandLine();
  void openViewer(bool window);
  void closeViewer();
  void requireGraphics(char const* method) const;
  void installSimulation(zorSDK::Simulation* next);

  // Scenes
  bool build(std::size_t index, bool clearFirst);
  bool buildFrom(SceneDescription const& description);
  bool buildFromFile(std::string const& file, std::string const& function);
  bool readModel(std::string const& file);
  bool fail(std::string const& message);
  void clear();
  void sceneReady();
  void applyChoices();
  bool buildStartScene();
  void watchFiles(SceneDescription const& description);
  bool canBeMended() const;
  int runUnitTests();
  bool runUnitTest(std::size_t index);

  // Frame
  void frame();
  void callListeners(void (ListenerList::*method)(ExampleApplication*));
  void processEvents();
  void takeSteps();
  void paceFrame();
  bool moreStepsFit() const;
  void draw();
  void measureFrames(bool flag);
  void updateStatistics();
  bool stopTimeReached() const;
  void checkInterrupts();
  void takeScriptStop();
  void startRecording();
  void startCaptures();
  void saveSimulation();
  void writeTimeline();
  void runLoop();
  void finish();

  // Keys
  void bindKeys();
  std::function<void()> later(std::function<void()> action);
  KeyMap::Group simulationKeys();
  KeyMap::Group viewKeys();
  KeyMap::Group drawingKeys();
  KeyMap::Group debugKeys();
  KeyMap::Group windowKeys();
  void switchDebugKind(RenderProxyFactory::Kind kind);
  void showNextShadows();
  void keepView();
  void showNextView();
  void followBodyUnderMouse();
  bool keyDown(int key);
  void updateHelp();
  std::vector<HelpSection> helpSections() const;
  void resized(int width, int height);
  void scaleOverlays();
  void addTarget(RenderTarget& target, osg::Node& node, bool ofScene);
  zor::ref_ptr<RenderToTexture> captureFromTarget(ImageCaptureBase& capture, RenderToTexture* previous);
  void setDrawnTransform(zor::AffineMatrix4x4 const& simulationToDrawn);

  ExampleApplication& app;
  zor::ref_ptr<zorIO::ArgumentParser> arguments;
  CommandLine options;
  bool isInitialized = false;
  bool wantsGraphics = true;

  zor::ref_ptr<zorSDK::Simulation> simulation;
  std::optional<SimulationSettings> settings; // as they were before the first scene was built
  zor::Real timeStep = 1.0 / 60;
  bool timeStepSet = false;
  std::optional<SolverType> solver; // chosen before there was a simulation

  SceneGraph graph;
  SceneList scenes;
  ScriptScene script;
  std::string scriptFile;
  std::string failure; // why the last build failed
  FileWatch watch;
  bool isBuilt = false;
  std::vector<AddedTarget> targets;
  zor::ref_ptr<RenderToTexture> videoTarget, imageTarget; // that captures read, where they were told to

  ListenerList listeners;
  zor::Callback stepCallback;
  bool stepCallbackOfScene = false;
  AutoPause autoPause;
  zor::Mutex frameMutex;

  bool isStepping = false;
  bool autoStepping = true;
  bool pauseUpdate = true;
  std::optional<bool> realTimeSync; // unset: on in a window only
  std::optional<double> targetFps;  // unset: 60 in a window only
  bool quitEventSetsDone = true;
  StepClock clock;
  StepClock::Clock::time_point frameStart{};

  bool isRunning = false;
  bool stopped = false;
  bool stopUsed = false; // the stop has ended a run
  int exitCode = 0;
  std::optional<zor::Real> stopTime;
  bool interrupted = false;
  bool savesAtEnd = false;

  std::unique_ptr<ViewerHost> host;
  std::unique_ptr<CaptureSet> captures;
  zor::ref_ptr<PickHandler> pick;
  osg::ref_ptr<InputAdapter> input;
  RenderProxyFactory proxies;
  CameraControl camera;
  SavedViews views;
  HelpOverlay help;
  StatisticsOverlay statistics;
  ErrorPanel errors;
  KeyMap keys;
  std::function<void()> pendingAction; // asked for by a key, done between events and frame
  bool stepOnce = false;
  std::string title = "zorOSG";
  bool vsync = true;
  bool allowResizing = true;

  // Of the frame that is being made, for the statistics.
  double physicsTime = 0;
  StepClock::Clock::time_point lastDrawn{};
};

} // namespace zorOSG
