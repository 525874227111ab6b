#pragma once

#include <map>
#include <string>
#include <vector>

#include <zor/AffineMatrix4x4.h>
#include <zor/RigidBody.h>
#include <zor/ref_ptr.h>
#include <zorModel/UrdfReader.h>
#include <zorSDK/Assembly.h>

#include "urdf/Description.h"
#include "urdf/Joints.h"
#include "urdf/LinkShapes.h"
#include "urdf/MassSum.h"

namespace zorModel {

/** Puts a robot together: links into bodies, bodies into an assembly, joints between them. */
class RobotBuilder {
public:
  RobotBuilder(UrdfReader const& settings, Description const& description, Joints const& joints,
               LinkShapes const& shapes)
      : m_settings(settings), m_description(description), m_joints(joints), m_shapes(shapes) {}

  zor::ref_ptr<zorSDK::Assembly> build();

private:
  /** A link in the body that it belongs to. */
  struct Member {
    urdf::Link const* link;
    zor::AffineMatrix4x4 world; // where the link stands
    zor::AffineMatrix4x4 place; // its frame in the body's
    LinkShapes::Geometries collisions;
  };
  /** The links of one body; the one that gives it name and frame is the first with a mass, else the first. */
  struct Part {
    std::vector<Member> members;
    std::size_t main = 0;
    bool hasMass = false;
    bool fixed = false;
    zor::ref_ptr<zor::RigidBody> body;
  };

  void sortLinks();
  std::size_t partFor(urdf::Link const& link);
  void buildBody(Part& part);
  void setMass(Part& part) const;
  void setMassOfShapes(Part& part) const;
  void addFrames(Part const& part);
  void buildJoint(urdf::Joint const& source);
  void addMimic(UrdfJoint const& joint);
  void separateLinks() const;

  UrdfReader const& m_settings;
  Description const& m_description;
  Joints const& m_joints;
  LinkShapes const& m_shapes;
  zor::ref_ptr<zorSDK::Assembly> m_robot;
  std::vector<Part> m_parts;
  std::map<std::string, std::pair<std::size_t, std::size_t>> m_partOfLink; // part, member
};

} // namespace zorModel
