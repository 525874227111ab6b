#pragma once

#include <string>

namespace osg {
class Group;
}

namespace zorSDK {
class Simulation;
}

namespace zorOSG {

class ExampleApplication;

/// A scene build function: fills the simulation and returns the group of its visuals (null on failure).
typedef osg::Group* (*BuildScenePtr)(zorSDK::Simulation*, zorOSG::ExampleApplication*);

/// Names one scene that an application can build: a function, a script function, or a file. A plain value.
class SceneDescription {
public:
  /** Describes no scene: isValid() is false. */
  SceneDescription();

  /**
   * A scene from a function pointer.
   * \param sceneFunction build function; null makes the description invalid
   * \param isPartofUnitTest the scene takes part in the automatic run
   * \param stopAfter simulated seconds after which the automatic run leaves the scene, -1 for not set
   * \param isSlowUnittest the scene is a slow one of the automatic run
   */
  SceneDescription(zorOSG::BuildScenePtr sceneFunction, bool isPartofUnitTest = true, float stopAfter = -1,
                   bool isSlowUnittest = false);

  /**
   * A scene from a script file and a function within the file.
   * \param scriptFile script, looked up on the resource path
   * \param scriptFunction name of the function that builds the scene
   * \param isPartofUnitTest the scene takes part in the automatic run
   * \param stopAfter simulated seconds after which the automatic run leaves the scene, -1 for not set
   * \param isSlowUnittest the scene is a slow one of the automatic run
   */
  SceneDescription(std::string const& scriptFile, std::string const& scriptFunction,
                   bool isPartofUnitTest = true, float stopAfter = -1, bool isSlowUnittest = false);

  /**
   * A scene from any file that the application reads: a script, whose buildScene function is called, or a
   * model.
   * \param sceneFile script or model, looked up on the resource path
   * \param isPartofUnitTest the scene takes part in the automatic run
   * \param stopAfter simulated seconds after which the automatic run leaves the scene, -1 for not set
   * \param isSlowUnittest the scene is a slow one of the automatic run
   */
  SceneDescription(std::string const& sceneFile, bool isPartofUnitTest = true, float stopAfter = -1,
                   bool isSlowUnittest = false);

#ifndef SWIG
  // A literal converts to bool before it converts to std::string: without this form the call
  // SceneDescription("file", "function") would silently drop the function.
  SceneDescription(std::string const& scriptFile, char const* scriptFunction, bool isPartofUnitTest = true,
                   float stopAfter = -1, bool isSlowUnittest = false);
#endif

  zorOSG::BuildScenePtr scene = nullptr; ///< build function; null for script and file scenes
  bool unittest = true;                  ///< takes part in the automatic run
  float stopAfter = -1;                  ///< simulated seconds of the automatic run, -1 for not set
  bool slowUnittest = false;             ///< a slow scene of the automatic run
  bool valid = false;                    ///< names a scene that can be built
  std::string scriptFunction;            ///< function to call in the script
  std::string fileName;                  ///< script or model file

  /** \return true if the description names a scene that can be built */
  bool isValid() const { return valid; }
};

} // namespace zorOSG
