#pragma once

#include <optional>
#include <string>

namespace zorIO {
class ArgumentParser;
}

namespace zorOSG {

/// The options that an application takes from its command line.
struct CommandLine {
  bool help = false;
  bool zorOnly = false;
  bool offscreen = false;
  bool grid = false;
  bool paused = false;
  std::optional<bool> realTime;
  std::optional<double> stopAfter;
  std::optional<double> timeStep;
  std::optional<double> fps;
  double captureFps = 30;
  int width = 1280;
  int height = 720;
  std::string scene;
  std::string captureVideo;
  std::string captureImages;
  std::string screenShot;

  /**
   * Declares the options and reads the command line.
   * Throws std::invalid_argument that says which argument is wrong and why.
   */
  static CommandLine read(zorIO::ArgumentParser& parser);
};

} // namespace zorOSG
