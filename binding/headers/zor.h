// Every class that the module zor wraps; read by the modules that import it as well.
#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/BallJoint.h>
#include <zor/Callback.h>
#include <zor/Component.h>
#include <zor/Constraint.h>
#include <zor/ContactMaterial.h>
#include <zor/CylindricalJoint.h>
#include <zor/DistanceJoint.h>
#include <zor/Distribution.h>
#include <zor/Emitter.h>
#include <zor/EmitterBase.h>
#include <zor/Event.h>
#include <zor/Frame.h>
#include <zor/HighAccuracyTimer.h>
#include <zor/Hinge.h>
#include <zor/LockJoint.h>
#include <zor/Material.h>
#include <zor/Matrix3x3.h>
#include <zor/Mutex.h>
#include <zor/Name.h>
#include <zor/Notify.h>
#include <zor/Object.h>
#include <zor/ObserverFrame.h>
#include <zor/ParticleArray.h>
#include <zor/ParticleContacts.h>
#include <zor/ParticleDistribution.h>
#include <zor/ParticleSystem.h>
#include <zor/Plane.h>
#include <zor/Prismatic.h>
#include <zor/Quat.h>
#include <zor/RandomGenerator.h>
#include <zor/RandomReal.h>
#include <zor/RangeReal.h>
#include <zor/Referenced.h>
#include <zor/RigidBody.h>
#include <zor/RigidBodyDistribution.h>
#include <zor/RigidBodyEmitter.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>
#include <zor/ref_ptr.h>
#include <zorSDK/Simulation.h>
#include <zorStream/Serializable.h>

typedef bool BoolPointer; // the Python class of a variable that holds a truth value
