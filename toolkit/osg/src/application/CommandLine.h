#pragma once

#include "CameraControl.h"

#include <zorOSG/SceneDecorator.h>

#include <optional>
#include <string>

namespace zorIO {
class ArgumentParser;
}

namespace zorOSG {

/// The options that an application takes from its command line.
struct CommandLine {
  bool help = false;

  // The picture
  bool zorOnly = false;
  bool offscreen = false;
  bool fullScreen = false;
  int width = 1280;
  int height = 720;
  std::optional<osg::Vec2i> position; // of the window
  std::optional<bool> vsync;
  bool grid = false;
  std::optional<SceneDecorator::ShadowMethod> shadows;
  std::optional<CameraControl::Pose> camera;
  double detail = 1;

  // The run
  std::string scene;
  bool watch = false;
  bool paused = false;
  std::optional<bool> realTime;
  std::optional<double> stopAfter;
  std::optional<double> timeStep;
  std::optional<double> fps;
  std::string solver; // empty for the simulation's own
  bool unitTests = false;
  bool slowUnitTests = false;

  // What is written
  std::string captureVideo;
  std::string captureImages;
  double captureFps = 30;
  std::string screenShot;
  std::string saveScene;
  bool profile = false;
  std::string timeline;

  /**
   * Declares the options and reads the command line.
   * Throws std::invalid_argument that says which argument is wrong and why.
   */
  static CommandLine read(zorIO::ArgumentParser& parser);
};

} // namespace zorOSG
