#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <zor/Constraint1DOF.h>
#include <zor/Notify.h>
#include <zorModel/UrdfReader.h>
#include <zorSDK/Simulation.h>

#include "../osg/TemporaryFolder.h"

namespace zorTest {

/** Robots from texts, with the log kept from the console. */
class RobotFixture : public testing::Test {
protected:
  RobotFixture() {
    zor::Notify::instance().setEnableConsole(false);
    simulation->setTimeStep(STEP);
  }
  ~RobotFixture() override { zor::Notify::instance().setEnableConsole(true); }

  /** Reads what stands inside the robot element. */
  zor::ref_ptr<zorSDK::Assembly> read(std::string const& inside) {
    return reader.readText("<robot name='r'>" + inside + "</robot>", folder.path());
  }

  /** The message with which reading fails. */
  std::string errorOf(std::string const& inside) {
    try {
      zor::ref_ptr<zorSDK::Assembly> const robot = read(inside);
    } catch (std::runtime_error const& error) {
      return error.what();
    }
    return "no error";
  }

  std::string write(std::string const& name, std::string const& text) const {
    std::filesystem::create_directories(std::filesystem::path(folder.file(name)).parent_path());
    std::ofstream(folder.file(name), std::ios::binary) << text;
    return folder.file(name);
  }

  void run(double seconds) {
    for (int i = 0; i < seconds / STEP; ++i)
      simulation->stepForward();
  }

  static zor::Constraint1DOF& joint(zorSDK::Assembly const& robot, std::string const& name) {
    return dynamic_cast<zor::Constraint1DOF&>(*robot.getConstraint(name));
  }

  static constexpr double STEP = 1.0 / 240.0;
  TemporaryFolder folder;
  zorModel::UrdfReader reader;
  zor::ref_ptr<zorSDK::Simulation> simulation = new zorSDK::Simulation;
};

/** A link of mass 2 kg whose centre lies at an offset. */
inline std::string linkOf(std::string const& name, std::string const& centre = "0 0 0") {
  return "<link name='" + name + "'><inertial><origin xyz='" + centre +
         "'/><mass value='2'/><inertia ixx='0.1' ixy='0' ixz='0' iyy='0.1' iyz='0' "
         "izz='0.1'/></inertial></link>";
}

inline std::string jointOf(std::string const& name, std::string const& type, std::string const& parent,
                           std::string const& child, std::string const& more = "") {
  return "<joint name='" + name + "' type='" + type + "'><parent link='" + parent + "'/><child link='" +
         child + "'/>" + more + "</joint>";
}

} // namespace zorTest
