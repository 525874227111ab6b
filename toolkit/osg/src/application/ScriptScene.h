#pragma once

#include <zor/ref_ptr.h>
#include <zorPython/Script.h>

#include <osg/Group>
#include <osg/ref_ptr>

#include <string>

namespace zorSDK {
class Simulation;
}

namespace zorOSG {

class ExampleApplication;

/// Runs a script's scene function and keeps what it has made alive.
class ScriptScene {
public:
  /**
   * Loads the script and calls the function with as many of simulation, application and root as it requires.
   * Failures are registered with the script manager, which reports file, line and traceback.
   * \return the group that the function returned, root if it returned none; null on failure
   */
  osg::Group* run(std::string const& file, std::string const& function, ExampleApplication* app,
                  zorSDK::Simulation* simulation, osg::Group* root);

  void clear();

private:
  osg::Group* call(std::string const& function, ExampleApplication* app, zorSDK::Simulation* simulation,
                   osg::Group* root);

  zor::ref_ptr<zorPython::Script> m_script;
  osg::ref_ptr<osg::Group> m_result;
};

} // namespace zorOSG
