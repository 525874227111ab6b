// Bodies, materials and constraints.


ZOR_SHARED(zor::ObserverFrame)
ZOR_SHARED(zor::Material)
ZOR_SHARED(zor::ContactMaterial)
ZOR_SHARED(zor::RigidBody)
ZOR_SHARED(zor::Controller1D)
ZOR_SHARED(zor::Motor1D)
ZOR_SHARED(zor::Range1D)
ZOR_SHARED(zor::Lock1D)
ZOR_SHARED(zor::Constraint)
ZOR_SHARED(zor::Constraint1DOF)
ZOR_SHARED(zor::Hinge)
ZOR_SHARED(zor::Prismatic)
ZOR_SHARED(zor::CylindricalJoint)
ZOR_SHARED(zor::BallJoint)
ZOR_SHARED(zor::LockJoint)
ZOR_SHARED(zor::DistanceJoint)
ZOR_SHARED(zor::UniversalJoint)
ZOR_SHARED(zor::WheelJoint)
ZOR_SHARED(zor::GearJoint)
ZOR_SHARED(zorCollide::Geometry)
ZOR_SHARED(zorSDK::Simulation)

ZOR_INNER_RESULT(zor::RigidBody::getMassProperties)

// Named in a sibling that this module does not read.
namespace zorCollide {
typedef zor::Vector<zor::ref_ptr<zorCollide::Geometry> > GeometryRefVector;
}

%include <zor/ObserverFrame.h>
%include <zor/Material.h>
%include <zor/ContactMaterial.h>
%include <zor/MassProperties.h>
%include <zor/RigidBody.h>
%copyctor zor::ForceStatistics;
%include <zor/ForceStatistics.h>
%include <zor/Controller1D.h>
%include <zor/Motor1D.h>
%include <zor/Range1D.h>
%include <zor/Lock1D.h>
%include <zor/Constraint.h>
%include <zor/Constraint1DOF.h>
%include <zor/Hinge.h>
%include <zor/Prismatic.h>
%include <zor/CylindricalJoint.h>
%include <zor/BallJoint.h>
%include <zor/LockJoint.h>
%include <zor/DistanceJoint.h>
%include <zor/UniversalJoint.h>
%include <zor/WheelJoint.h>
%include <zor/GearJoint.h>
