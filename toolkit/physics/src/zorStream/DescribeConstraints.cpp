#include <array>
#include <map>

#include <zor/BallJoint.h>
#include <zor/CylindricalJoint.h>
#include <zor/DistanceJoint.h>
#include <zor/GearJoint.h>
#include <zor/Hinge.h>
#include <zor/LockJoint.h>
#include <zor/Prismatic.h>
#include <zor/UniversalJoint.h>
#include <zor/WheelJoint.h>

#include "bullet/BodyImpl.h"
#include "bullet/ConstraintImpl.h"
#include "zorStream/Fields.h"
#include "zorStream/StateAccess.h"

namespace zorStream {

using zorBullet::ConstraintImpl;

namespace {

using Maker = zor::Constraint* (*)(zor::RigidBody*, zor::Frame*, zor::RigidBody*, zor::Frame*);

template <class Kind>
zor::Constraint* make(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2, zor::Frame* frame2) {
  return new Kind(body1, frame1, body2, frame2);
}

// The one that refuses points which coincide; it may have come to that later, so it is made elsewhere.
zor::Constraint* makeDistanceJoint(zor::RigidBody* body1, zor::Frame*, zor::RigidBody* body2, zor::Frame*) {
  zor::Vec3 const apart = body1->getTransform().inverse().transformPoint(
      (body2 ? body2->getTransform() : zor::AffineMatrix4x4()).getTranslate() + zor::Vec3(1, 0, 0));
  return new zor::DistanceJoint(body1, apart, body2, zor::Vec3());
}

// Attachments and ratio follow.
zor::Constraint* makeGearJoint(zor::RigidBody* body1, zor::Frame*, zor::RigidBody* body2, zor::Frame*) {
  return new zor::GearJoint(body1, zor::Vec3(0, 0, 1), body2, zor::Vec3(0, 0, 1), 1);
}

// Every kind of constraint: its name in files is that of its class.
std::map<std::string, Maker> const& makers() {
  static std::map<std::string, Maker> const all{
      {"BallJoint", make<zor::BallJoint>},
      {"CylindricalJoint", make<zor::CylindricalJoint>},
      {"Hinge", make<zor::Hinge>},
      {"LockJoint", make<zor::LockJoint>},
      {"Prismatic", make<zor::Prismatic>},
      {"DistanceJoint", makeDistanceJoint},
      {"UniversalJoint", make<zor::UniversalJoint>},
      {"WheelJoint", make<zor::WheelJoint>},
      {"GearJoint", makeGearJoint},
  };
  return all;
}

} // namespace

void StateAccess::controller(Archive& archive, zor::Controller1D& controller) {
  using zor::Controller1D;
  field(archive, "enabled", controller.m_enabled);
  property(archive, "forceRange", controller, &Controller1D::getForceRange, &Controller1D::setForceRange);
  property(archive, "compliance", controller, &Controller1D::getCompliance, &Controller1D::setCompliance);
  property(archive, "damping", controller, &Controller1D::getDamping, &Controller1D::setDamping);
  field(archive, "currentForce", controller.m_currentForce);
}

// What the last steps have left: forces, and the impulses with which the next step starts.
void StateAccess::constraintMemory(Archive& archive, ConstraintImpl& impl) {
  archive.beginObject("memory");
  auto const tuple = [&](char const* name, auto& values) {
    archive.beginTuple(name, values.size());
    for (auto& value : values)
      field(archive, nullptr, value);
    archive.endList();
  };
  tuple("heldImpulse", impl.m_heldImpulse);
  tuple("heldForce", impl.m_heldForce);
  tuple("force", impl.m_force);
  tuple("torque", impl.m_torque);
  tuple("linearImpulse", impl.m_linearImpulse);
  tuple("angularImpulse", impl.m_angularImpulse);
  field(archive, "acted", impl.m_acted);
  field(archive, "known", impl.m_known);
  archive.endObject();
}

void StateAccess::constraint(Archive& archive, ObjectTables& tables, Ref<zor::Constraint>& constraint) {
  using zor::Constraint;
  std::string kind = constraint ? constraint->getImpl().kindName() : "";
  field(archive, "kind", kind);
  auto const maker = makers().find(kind);
  if (maker == makers().end())
    archive.fail("kind", "there are no constraints of kind '" + kind + "'");
  zor::RigidBody* body1 = constraint ? constraint->getBody(0) : nullptr;
  zor::RigidBody* body2 = constraint ? constraint->getBody(1) : nullptr;
  reference(archive, "body1", tables.bodies, body1);
  reference(archive, "body2", tables.bodies, body2, true);
  if (archive.reading())
    checked(archive, "body2", [&] { constraint = maker->second(body1, nullptr, body2, nullptr); });
  ConstraintImpl& impl = constraint->getImpl();
  property(archive, "name", static_cast<zor::Object&>(*constraint), &zor::Object::getName,
           &zor::Object::setName);
  ownFrame(archive, tables, "attachment1", *impl.attachment(0), body1->getFrame());
  ownFrame(archive, tables, "attachment2", *impl.attachment(1), body2 ? body2->getFrame() : nullptr);
  field(archive, "enabled", impl.m_enabled);
  field(archive, "collisions", impl.m_collisions);
  property(archive, "compliance", *constraint, &Constraint::getCompliance, &Constraint::setCompliance);
  property(archive, "damping", *constraint, &Constraint::getDamping, &Constraint::setDamping);
  property(archive, "forceRange", *constraint, &Constraint::getForceRange, &Constraint::setForceRange);

  if (auto* const gear = dynamic_cast<zor::GearJoint*>(constraint.get())) {
    property(archive, "ratio", *gear, &zor::GearJoint::getRatio, &zor::GearJoint::setRatio);
    field(archive, "slip", impl.m_gearSlip);
  }

  archive.beginTuple("freedoms", impl.m_freedoms.size());
  for (ConstraintImpl::Freedom& freedom : impl.m_freedoms) {
    archive.beginObject(nullptr);
    archive.beginObject("motor");
    controller(archive, *freedom.motor);
    property(archive, "speed", *freedom.motor, &zor::Motor1D::getSpeed, &zor::Motor1D::setSpeed);
    archive.endObject();
    archive.beginObject("range");
    controller(archive, *freedom.range);
    zor::RangeReal range = freedom.range->getRange();
    field(archive, "range", range);
    if (archive.reading())
      freedom.range->setRange(range);
    archive.endObject();
    archive.beginObject("lock");
    controller(archive, *freedom.lock);
    property(archive, "position", *freedom.lock, &zor::Lock1D::getPosition, &zor::Lock1D::setPosition);
    archive.endObject();
    field(archive, "angle", freedom.angle);
    field(archive, "motorImpulse", freedom.motorImpulse);
    field(archive, "lowerImpulse", freedom.lowerImpulse);
    field(archive, "upperImpulse", freedom.upperImpulse);
    field(archive, "lockImpulse", freedom.lockImpulse);
    archive.endObject();
  }
  archive.endList();
  constraintMemory(archive, impl);
}

} // namespace zorStream
