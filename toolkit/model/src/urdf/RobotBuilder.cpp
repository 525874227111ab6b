#include "urdf/RobotBuilder.h"

#include <stdexcept>

#include <zor/Constraint1DOF.h>
#include <zor/Notify.h>
#include <zor/ObserverFrame.h>

#include "urdf/JointBuilder.h"
#include "urdf/MimicListener.h"

namespace zorModel {

namespace {

bool hasMass(urdf::Link const& link) {
  return link.inertial && link.inertial->mass != 0;
}

/** What the inertial element says, in the link's frame. */
MassSum massOf(urdf::Link const& link) {
  urdf::Inertial const& source = *link.inertial;
  if (!(source.mass > 0))
    throw std::runtime_error(quoted("link", link.name) + ": the mass is negative");
  MassSum result;
  result.mass = source.mass;
  result.inertia = zor::Matrix3x3(zor::Vec3(source.ixx, source.ixy, source.ixz),
                                  zor::Vec3(source.ixy, source.iyy, source.iyz),
                                  zor::Vec3(source.ixz, source.iyz, source.izz));
  return result.seenFrom(toZor(source.origin));
}

/** Keeps mass properties from following the shapes. */
void freeze(zor::MassProperties& mass) {
  zor::Real const value = mass.getMass();
  zor::Matrix3x3 const inertia = mass.getInertiaTensor();
  zor::Vec3 const centre = mass.getCmLocalTranslate();
  mass.setMass(value);
  mass.setInertiaTensor(inertia);
  mass.setCmLocalTranslate(centre);
}

} // namespace

zor::ref_ptr<zorSDK::Assembly> RobotBuilder::build() {
  m_robot = new zorSDK::Assembly(m_description.name());
  sortLinks();
  for (Part& part : m_parts)
    buildBody(part);
  for (urdf::LinkConstSharedPtr const& link : m_description.links())
    if (link->parent_joint)
      buildJoint(*link->parent_joint);
  for (UrdfJoint const& joint : m_joints.all())
    if (!joint.mimicJoint.empty())
      addMimic(joint);
  if (!m_settings.getSelfCollisions())
    separateLinks();
  return m_robot;
}

// --- links

void RobotBuilder::sortLinks() {
  for (urdf::LinkConstSharedPtr const& link : m_description.links()) {
    zor::AffineMatrix4x4 world;
    if (urdf::JointSharedPtr const& joint = link->parent_joint) {
      auto const [part, member] = m_partOfLink.at(joint->parent_link_name);
      world = motionOf(*joint, m_joints.get(joint->name).position) *
              toZor(joint->parent_to_joint_origin_transform) * m_parts[part].members[member].world;
    }
    std::size_t const index = partFor(*link);
    Part& part = m_parts[index];
    if (hasMass(*link) && !part.hasMass) {
      part.hasMass = true;
      part.main = part.members.size();
    }
    m_partOfLink[link->name] = {index, part.members.size()};
    part.members.push_back({link.get(), world, zor::AffineMatrix4x4(), {}});
  }
}

// A link without mass cannot be a body of its own, so it joins what it is fixed to.
std::size_t RobotBuilder::partFor(urdf::Link const& link) {
  if (link.parent_joint && link.parent_joint->type == urdf::Joint::FIXED) {
    std::size_t const parent = m_partOfLink.at(link.parent_joint->parent_link_name).first;
    if (m_settings.getMergeFixedLinks() || !hasMass(link) || !m_parts[parent].hasMass)
      return parent;
  }
  m_parts.emplace_back();
  m_parts.back().fixed = !link.parent_joint && (m_settings.getFixedBase() || link.name == "world");
  return m_parts.size() - 1;
}

void RobotBuilder::buildBody(Part& part) {
  Member const& main = part.members[part.main];
  zor::AffineMatrix4x4 const fromWorld = main.world.inverse();
  part.body = new zor::RigidBody(main.link->name);
  if (part.fixed)
    part.body->setMotionControl(zor::RigidBody::STATIC);
  for (Member& member : part.members) {
    member.place = member.link == main.link ? zor::AffineMatrix4x4() : member.world * fromWorld;
    member.collisions = m_shapes.addCollisions(*member.link, *part.body, member.place);
  }
  setMass(part);
  for (Member const& member : part.members)
    m_shapes.addVisuals(*member.link, *part.body, member.place, member.collisions);
  part.body->setTransform(main.world);
  m_robot->add(part.body.get());
  addFrames(part);
}

void RobotBuilder::addFrames(Part const& part) {
  for (std::size_t i = 0; i < part.members.size(); ++i)
    if (i != part.main) {
      Member const& member = part.members[i];
      zor::ref_ptr<zor::ObserverFrame> const frame =
          new zor::ObserverFrame(part.body.get(), member.place, member.link->name);
      m_robot->add(frame.get());
    }
}

// --- mass

void RobotBuilder::setMass(Part& part) const {
  if (!part.hasMass)
    return setMassOfShapes(part);
  MassSum sum;
  for (Member const& member : part.members)
    if (hasMass(*member.link))
      sum.add(massOf(*member.link).seenFrom(member.place));
  zor::MassProperties& mass = *part.body->getMassProperties();
  std::string const name = quoted("link", part.body->getName());
  try {
    mass.setMass(sum.mass);
    if (sum.hasInertia())
      mass.setInertiaTensor(sum.inertia);
    else if (part.body->getGeometries().empty() && !part.fixed)
      throw std::runtime_error("the inertia is zero, and there is no collision element to take it from");
  } catch (std::exception const& error) {
    throw std::runtime_error(name + ": " + error.what());
  }
  freeze(mass);
  mass.setCmLocalTranslate(sum.centre);
}

void RobotBuilder::setMassOfShapes(Part& part) const {
  std::string const name = quoted("link", part.body->getName());
  if (part.body->getGeometries().empty()) {
    if (part.fixed)
      return;
    throw std::runtime_error(name + " moves, but has neither a mass nor a collision element to take it from" +
                             (part.members[part.main].link->parent_joint
                                  ? ""
                                  : "; setFixedBase(true) lets the root link stand still"));
  }
  freeze(*part.body->getMassProperties());
  if (!part.fixed)
    zor::notify(zor::Notify::NOTIFY_INFO)
        << "URDF robot \"" << m_description.name() << "\": " << name
        << " has no mass, its collision elements give " << part.body->getMassProperties()->getMass() << " kg"
        << zor::endMessage;
}

// --- joints

void RobotBuilder::buildJoint(urdf::Joint const& source) {
  auto const [childPart, childMember] = m_partOfLink.at(source.child_link_name);
  auto const [parentPart, parentMember] = m_partOfLink.at(source.parent_link_name);
  if (childPart == parentPart)
    return;
  Part const &child = m_parts[childPart], &parent = m_parts[parentPart];
  zor::AffineMatrix4x4 const origin = toZor(source.parent_to_joint_origin_transform);
  JointBuilder(*m_robot, source, m_joints.get(source.name))
      .build({child.body.get(), child.members[childMember].place},
             {parent.body.get(), origin * parent.members[parentMember].place});
}

void RobotBuilder::addMimic(UrdfJoint const& joint) {
  auto* const leader = dynamic_cast<zor::Constraint1DOF*>(m_robot->getConstraint(joint.mimicJoint));
  auto* const follower = dynamic_cast<zor::Constraint1DOF*>(m_robot->getConstraint(joint.name));
  zor::ref_ptr<MimicListener> const listener =
      new MimicListener(leader, follower, joint.mimicMultiplier, joint.mimicOffset);
  m_robot->add(listener.get());
}

void RobotBuilder::separateLinks() const {
  for (std::size_t a = 0; a < m_parts.size(); ++a)
    for (std::size_t b = a + 1; b < m_parts.size(); ++b)
      for (auto const& first : m_parts[a].body->getGeometries())
        for (auto const& second : m_parts[b].body->getGeometries())
          first->setEnableCollisions(second.get(), false);
}

} // namespace zorModel
