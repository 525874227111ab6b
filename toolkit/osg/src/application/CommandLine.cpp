#include "CommandLine.h"

#include <zorIO/ArgumentParser.h>

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace zorOSG {

namespace {

constexpr int MAX_SIZE = 16384;

void declareFlag(zorIO::ArgumentParser& parser, char const* names, char const* name, char const* text) {
  if (!parser.isDeclared(name))
    parser.addFlag(names, text);
}

void declareOption(zorIO::ArgumentParser& parser, char const* name, char const* value, char const* text) {
  if (!parser.isDeclared(name))
    parser.addOption(name, text, "", value);
}

/** Only what a script has not declared itself: it may read the same options. */
void declare(zorIO::ArgumentParser& parser) {
  declareFlag(parser, "-h,--help", "--help", "show this text and leave");
  declareFlag(parser, "-a,--zorOnly", "--zorOnly", "simulate without any graphics");
  declareFlag(parser, "--offscreen", "--offscreen", "draw off screen even if there is a display");
  declareFlag(parser, "--grid", "--grid", "show the visual grid");
  declareFlag(parser, "--paused", "--paused", "start paused");
  declareFlag(parser, "--realTime", "--realTime",
              "hold the simulation to the wall clock (default in a window)");
  declareFlag(parser, "--noRealTime", "--noRealTime", "simulate as fast as possible (default off screen)");
  declareOption(parser, "--window", "WxH", "size of the picture in pixels, 1280x720 if not given");
  declareOption(parser, "--scene", "SCENE",
                "first scene: its key, its function, or # and its position from 0");
  declareOption(parser, "--stopAfter", "SECONDS", "stop at this simulation time");
  declareOption(parser, "--timeStep", "SECONDS", "simulation time step");
  declareOption(parser, "--fps", "NUMBER", "pictures a second; 0 for no limit");
  declareOption(parser, "--captureVideo", "FILE", "write a video, in step with simulation time");
  declareOption(parser, "--captureImages", "FOLDER", "write numbered images, in step with simulation time");
  declareOption(parser, "--captureFps", "NUMBER", "pictures a second of video and images, 30 if not given");
  declareOption(parser, "--screenShot", "FILE", "write the last picture");
}

std::invalid_argument wrong(std::string const& option, std::string const& value,
                            std::string const& expected) {
  return std::invalid_argument(option + " " + value + ": expected " + expected);
}

std::optional<double> number(zorIO::ArgumentParser& parser, char const* option, double minimum,
                             bool orEqual) {
  if (!parser.has(option))
    return std::nullopt;
  double const value = parser.getReal(option);
  if (!std::isfinite(value) || value < minimum || (!orEqual && value == minimum))
    throw wrong(option, parser.getValue(option), orEqual ? "zero or more" : "a number above zero");
  return value;
}

void readSize(CommandLine& line, std::string const& text) {
  char end = 0;
  int const read = std::sscanf(text.c_str(), "%5d%*1[xX]%5d%c", &line.width, &line.height, &end);
  bool const valid =
      read == 2 && line.width > 0 && line.height > 0 && line.width <= MAX_SIZE && line.height <= MAX_SIZE;
  if (!valid)
    throw wrong("--window", text, "WIDTHxHEIGHT in pixels, each 1 to 16384, such as 1280x720");
}

} // namespace

CommandLine CommandLine::read(zorIO::ArgumentParser& parser) {
  declare(parser);
  parser.parse();
  CommandLine line;
  line.help = parser.has("--help");
  line.zorOnly = parser.has("--zorOnly");
  line.offscreen = parser.has("--offscreen");
  line.grid = parser.has("--grid");
  line.paused = parser.has("--paused");
  if (parser.has("--realTime") || parser.has("--noRealTime"))
    line.realTime = !parser.has("--noRealTime");
  line.stopAfter = number(parser, "--stopAfter", 0, true);
  line.timeStep = number(parser, "--timeStep", 0, false);
  line.fps = number(parser, "--fps", 0, true);
  line.captureFps = number(parser, "--captureFps", 0, false).value_or(line.captureFps);
  if (parser.has("--window"))
    readSize(line, parser.getValue("--window"));
  line.scene = parser.getValue("--scene");
  line.captureVideo = parser.getValue("--captureVideo");
  line.captureImages = parser.getValue("--captureImages");
  line.screenShot = parser.getValue("--screenShot");
  return line;
}

} // namespace zorOSG
