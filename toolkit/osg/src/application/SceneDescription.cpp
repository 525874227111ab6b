#include <zorOSG/SceneDescription.h>

namespace zorOSG {

SceneDescription::SceneDescription() = default;

SceneDescription::SceneDescription(zorOSG::BuildScenePtr sceneFunction, bool isPartofUnitTest,
                                   float stopAfterTime, bool isSlowUnittest)
    : scene(sceneFunction), unittest(isPartofUnitTest), stopAfter(stopAfterTime),
      slowUnittest(isSlowUnittest), valid(sceneFunction != nullptr) {}

SceneDescription::SceneDescription(std::string const& scriptFile, std::string const& function,
                                   bool isPartofUnitTest, float stopAfterTime, bool isSlowUnittest)
    : unittest(isPartofUnitTest), stopAfter(stopAfterTime), slowUnittest(isSlowUnittest),
      valid(!scriptFile.empty() && !function.empty()), scriptFunction(function), fileName(scriptFile) {}

SceneDescription::SceneDescription(std::string const& sceneFile, bool isPartofUnitTest, float stopAfterTime,
                                   bool isSlowUnittest)
    : unittest(isPartofUnitTest), stopAfter(stopAfterTime), slowUnittest(isSlowUnittest),
      valid(!sceneFile.empty()), fileName(sceneFile) {}

SceneDescription::SceneDescription(std::string const& scriptFile, char const* function, bool isPartofUnitTest,
                                   float stopAfterTime, bool isSlowUnittest)
    : SceneDescription(scriptFile, std::string(function ? function : ""), isPartofUnitTest, stopAfterTime,
                       isSlowUnittest) {}

} // namespace zorOSG
