#include "CommandLine.h"

#include <zorIO/ArgumentParser.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <utility>
#include <vector>

namespace zorOSG {

namespace {

using Parser = zorIO::ArgumentParser;

constexpr int MAX_SIZE = 16384;
constexpr double LEAST_DETAIL = 0.05, MOST_DETAIL = 8;

struct Flag {
  char const* names;
  char const* name;
  char const* text;
};

struct Option {
  char const* name;
  char const* value;
  char const* text;
};

constexpr Flag FLAGS[] = {
    {"-h,--help", "--help", "show this text and leave"},
    {"-a,--zorOnly", "--zorOnly", "simulate without any graphics"},
    {"--offscreen", "--offscreen", "draw off screen even if there is a display"},
    {"--fullScreen", "--fullScreen", "a window as large as the screen, without a frame"},
    {"--vsync", "--vsync", "draw in step with the display (default)"},
    {"--noVsync", "--noVsync", "draw without waiting for the display"},
    {"--grid", "--grid", "show the visual grid"},
    {"--paused", "--paused", "start paused"},
    {"--realTime", "--realTime", "hold the simulation to the wall clock (default in a window)"},
    {"--noRealTime", "--noRealTime", "simulate as fast as possible (default off screen)"},
    {"--watch", "--watch", "build the scene anew whenever its file changes"},
    {"--unitTests", "--unitTests",
     "run all scenes that are marked for it, one after the other; the exit code is 1 if one fails"},
    {"--slowUnitTests", "--slowUnitTests", "as --unitTests, with the slow scenes as well"},
    {"--profile", "--profile", "say at the end where the time went"},
};

constexpr Option OPTIONS[] = {
    {"--window", "WxH[+X+Y]", "size of the picture and place of the window in pixels, 1280x720 if not given"},
    {"--scene", "SCENE", "first scene: its key, its function, or # and its position from 0"},
    {"--stopAfter", "SECONDS", "stop at this simulation time"},
    {"--timeStep", "SECONDS", "simulation time step"},
    {"--fps", "NUMBER", "pictures a second; 0 for no limit"},
    {"--solver", "NAME", "multi (stiffer, slower) or iterative"},
    {"--camera", "EYE,CENTER[,UP]", "pose of the camera: 6 or 9 numbers with commas between, in metres"},
    {"--detail", "NUMBER", "how finely round shapes are drawn, 0.05 to 8; 1 is normal"},
    {"--shadows", "METHOD", "soft, sharp, volume, split, perspective, texture or none"},
    {"--captureVideo", "FILE", "write a video, in step with simulation time"},
    {"--captureImages", "FOLDER", "write numbered images, in step with simulation time"},
    {"--captureFps", "NUMBER", "pictures a second of video and images, 30 if not given"},
    {"--screenShot", "FILE", "write the last picture"},
    {"--saveScene", "FILE", "write the simulation at the end, to a .zor or .azor file"},
    {"--timeline", "FILE", "write when each part of each frame ran, for a viewer of trace events"},
};

constexpr std::pair<char const*, SceneDecorator::ShadowMethod> SHADOWS[] = {
    {"soft", SceneDecorator::SOFT_SHADOWMAP},
    {"sharp", SceneDecorator::SHADOWMAP},
    {"volume", SceneDecorator::SHADOWVOLUME},
    {"split", SceneDecorator::PARALLELLSPLIT_SHADOWMAP},
    {"perspective", SceneDecorator::LIGHTSPACEPERSPECTIVE_SHADOWMAP},
    {"texture", SceneDecorator::SHADOWTEXTURE},
    {"none", SceneDecorator::NO_SHADOWS},
};

/** Only what a script has not declared itself: it may read the same options. */
void declare(Parser& parser) {
  for (Flag const& flag : FLAGS)
    if (!parser.isDeclared(flag.name))
      parser.addFlag(flag.names, flag.text);
  for (Option const& option : OPTIONS)
    if (!parser.isDeclared(option.name))
      parser.addOption(option.name, option.text, "", option.value);
}

std::invalid_argument wrong(std::string const& option, std::string const& value,
                            std::string const& expected) {
  return std::invalid_argument(option + " " + value + ": expected " + expected);
}

std::optional<double> number(Parser& parser, char const* option, double minimum, bool orEqual) {
  if (!parser.has(option))
    return std::nullopt;
  double const value = parser.getReal(option);
  if (!std::isfinite(value) || value < minimum || (!orEqual && value == minimum))
    throw wrong(option, parser.getValue(option), orEqual ? "zero or more" : "a number above zero");
  return value;
}

/** \return what the flag or the one that takes it back says; nothing if neither is given */
std::optional<bool> choice(Parser& parser, char const* flag, char const* opposite) {
  if (parser.has(flag) && parser.has(opposite))
    throw std::invalid_argument(std::string(flag) + " and " + opposite + " exclude each other");
  if (!parser.has(flag) && !parser.has(opposite))
    return std::nullopt;
  return parser.has(flag);
}

void readWindow(CommandLine& line, std::string const& text) {
  int sizeEnd = 0, placeEnd = 0;
  osg::Vec2i place;
  auto const end = static_cast<int>(text.size());
  bool valid = std::sscanf(text.c_str(), "%5d%*1[xX]%5d%n+%5d+%5d%n", &line.width, &line.height, &sizeEnd,
                           &place.x(), &place.y(), &placeEnd) >= 2;
  valid = valid && (sizeEnd == end || placeEnd == end);
  for (int const side : {line.width, line.height})
    valid = valid && side > 0 && side <= MAX_SIZE;
  if (!valid || place.x() < 0 || place.y() < 0)
    throw wrong("--window", text,
                "WIDTHxHEIGHT in pixels, each 1 to 16384, such as 1280x720, and +X+Y for a place");
  if (placeEnd == end)
    line.position = place;
}

/** \return numbers with commas between, or nothing if the text is anything else */
std::vector<double> readNumbers(std::string const& text) {
  std::vector<double> numbers;
  char const* const end = text.data() + text.size();
  for (char const* at = text.data();; ++at) {
    double value = 0;
    auto const [next, error] = std::from_chars(at, end, value);
    if (error != std::errc() || !std::isfinite(value) || (next != end && *next != ','))
      return {};
    numbers.push_back(value);
    if (next == end)
      return numbers;
    at = next;
  }
}

CameraControl::Pose readPose(std::string const& text) {
  std::vector<double> const numbers = readNumbers(text);
  if (numbers.size() != 6 && numbers.size() != 9)
    throw wrong("--camera", text, "6 numbers (eye and centre) or 9 (and up), such as 5,-8,3,0,0,1");
  CameraControl::Pose pose;
  pose.eye = zor::Vec3(numbers[0], numbers[1], numbers[2]);
  pose.center = zor::Vec3(numbers[3], numbers[4], numbers[5]);
  if (numbers.size() == 9)
    pose.up = zor::Vec3(numbers[6], numbers[7], numbers[8]);
  if (!CameraControl::givesDirection(pose))
    throw wrong("--camera", text, "a centre off the eye and an up direction across the view");
  return pose;
}

SceneDecorator::ShadowMethod readShadows(std::string const& text) {
  auto const* const found = std::find_if(std::begin(SHADOWS), std::end(SHADOWS),
                                         [&](auto const& entry) { return text == entry.first; });
  if (found == std::end(SHADOWS))
    throw wrong("--shadows", text, "soft, sharp, volume, split, perspective, texture or none");
  return found->second;
}

void readPicture(CommandLine& line, Parser& parser) {
  line.zorOnly = parser.has("--zorOnly");
  line.offscreen = parser.has("--offscreen");
  line.fullScreen = parser.has("--fullScreen");
  line.grid = parser.has("--grid");
  line.vsync = choice(parser, "--vsync", "--noVsync");
  if (parser.has("--window"))
    readWindow(line, parser.getValue("--window"));
  if (parser.has("--camera"))
    line.camera = readPose(parser.getValue("--camera"));
  if (parser.has("--shadows"))
    line.shadows = readShadows(parser.getValue("--shadows"));
  if (!parser.has("--detail"))
    return;
  line.detail = parser.getReal("--detail");
  if (!(line.detail >= LEAST_DETAIL && line.detail <= MOST_DETAIL))
    throw wrong("--detail", parser.getValue("--detail"), "0.05 to 8");
}

void readRun(CommandLine& line, Parser& parser) {
  line.paused = parser.has("--paused");
  line.watch = parser.has("--watch");
  line.slowUnitTests = parser.has("--slowUnitTests");
  line.unitTests = line.slowUnitTests || parser.has("--unitTests");
  line.realTime = choice(parser, "--realTime", "--noRealTime");
  line.stopAfter = number(parser, "--stopAfter", 0, true);
  line.timeStep = number(parser, "--timeStep", 0, false);
  line.fps = number(parser, "--fps", 0, true);
  line.scene = parser.getValue("--scene");
  line.solver = parser.getValue("--solver");
  std::transform(line.solver.begin(), line.solver.end(), line.solver.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (parser.has("--solver") && line.solver != "multi" && line.solver != "iterative")
    throw wrong("--solver", parser.getValue("--solver"), "multi or iterative");
}

void readOutput(CommandLine& line, Parser& parser) {
  line.captureFps = number(parser, "--captureFps", 0, false).value_or(line.captureFps);
  line.captureVideo = parser.getValue("--captureVideo");
  line.captureImages = parser.getValue("--captureImages");
  line.screenShot = parser.getValue("--screenShot");
  line.profile = parser.has("--profile");
  line.timeline = parser.getValue("--timeline");
  line.saveScene = parser.getValue("--saveScene");
  bool const isSimulation = line.saveScene.ends_with(".zor") || line.saveScene.ends_with(".azor");
  if (parser.has("--saveScene") && !isSimulation)
    throw wrong("--saveScene", line.saveScene, "a file name that ends with .zor or .azor");
}

} // namespace

CommandLine CommandLine::read(Parser& parser) {
  declare(parser);
  parser.parse();
  CommandLine line;
  line.help = parser.has("--help");
  readPicture(line, parser);
  readRun(line, parser);
  readOutput(line, parser);
  return line;
}

} // namespace zorOSG
