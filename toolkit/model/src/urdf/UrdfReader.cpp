#include <zorModel/UrdfReader.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <zorIO/Environment.h>

#include "urdf/Description.h"
#include "urdf/FileFinder.h"
#include "urdf/Joints.h"
#include "urdf/LinkShapes.h"
#include "urdf/RobotBuilder.h"

namespace zorModel {

void UrdfReader::setNumConvexParts(zor::UInt count) {
  if (count < 1 || count > 64)
    throw std::invalid_argument("UrdfReader::setNumConvexParts: " + std::to_string(count) +
                                " is not 1 to 64");
  m_numConvexParts = count;
}

void UrdfReader::setPackageFolder(std::string const& package, std::string const& folder) {
  m_packages[package] = folder;
}

void UrdfReader::setJointPosition(std::string const& joint, zor::Real position) {
  if (!std::isfinite(position))
    throw std::invalid_argument("UrdfReader::setJointPosition: the position of joint \"" + joint +
                                "\" is not finite");
  m_positions[joint] = position;
}

zorSDK::Assembly* UrdfReader::read(std::string const& filename) {
  std::string const path = zorIO::Environment::instance().getFilePath().require(filename);
  std::ifstream in(path, std::ios::binary);
  std::string const text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!in || std::filesystem::is_directory(path))
    throw std::runtime_error("URDF file \"" + path + "\" cannot be read");
  return build(text, "URDF file \"" + path + "\"", std::filesystem::path(path).parent_path().string());
}

zorSDK::Assembly* UrdfReader::readText(std::string const& xml, std::string const& folder) {
  return build(xml, "URDF text", folder);
}

zorSDK::Assembly* UrdfReader::build(std::string const& xml, std::string const& source,
                                    std::string const& folder) {
  try {
    Description const description(xml);
    Joints const joints(description, m_positions);
    FileFinder const files(folder, m_packages);
    LinkShapes const shapes(files, m_material.get(), m_numConvexParts);
    zor::ref_ptr<zorSDK::Assembly> robot = RobotBuilder(*this, description, joints, shapes).build();
    m_joints = joints.all();
    return robot.release();
  } catch (std::exception const& error) {
    throw std::runtime_error(source + ": " + error.what());
  }
}

UrdfJoint UrdfReader::getJoint(std::string const& name) const {
  for (UrdfJoint const& joint : m_joints)
    if (joint.name == name)
      return joint;
  throw std::invalid_argument("UrdfReader::getJoint: the robot read last has no joint \"" + name + "\"");
}

} // namespace zorModel
