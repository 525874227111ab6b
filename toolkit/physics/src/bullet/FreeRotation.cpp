#include "bullet/FreeRotation.h"

#include <algorithm>
#include <cmath>

#include <BulletDynamics/Dynamics/btRigidBody.h>

namespace zorBullet {

namespace {

constexpr double SLOW = 1e-5;      // rad a step: nothing changes that could be seen
constexpr double ISOTROPIC = 1e-9; // relative difference of moments of inertia
constexpr double SETTLED = 1e-24;  // relative, squared
constexpr int MOST_ROUNDS = 25;

/** Turns a vector about another by as many radians as that is long. */
btVector3 turned(btVector3 const& vector, btVector3 const& rotation) {
  double const square = rotation.length2(), angle = std::sqrt(square);
  double const sine = angle > 1e-4 ? std::sin(angle) / angle : 1 - square / 6;
  double const versine = angle > 1e-4 ? (1 - std::cos(angle)) / square : 0.5 - square / 24;
  btVector3 const across = rotation.cross(vector);
  return vector + across * sine + rotation.cross(across) * versine;
}

bool isIsotropic(btVector3 const& inverse) {
  double const most = std::max({inverse.x(), inverse.y(), inverse.z()});
  double const least = std::min({inverse.x(), inverse.y(), inverse.z()});
  return least <= 0 || most - least <= ISOTROPIC * most;
}

} // namespace

void FreeRotation::begin(btAlignedObjectArray<btRigidBody*> const& bodies, double dt) {
  m_entries.clear();
  for (int i = 0; i < bodies.size(); ++i)
    if (bodies[i]->isActive() && !bodies[i]->isStaticOrKinematicObject())
      begin(*bodies[i], dt);
}

void FreeRotation::begin(btRigidBody& body, double dt) {
  btVector3 const& inverse = body.getInvInertiaDiagLocal();
  if (body.getAngularVelocity().length2() * dt * dt < SLOW * SLOW || isIsotropic(inverse))
    return;
  btMatrix3x3 const& axes = body.getWorldTransform().getBasis();
  btVector3 const inertia(1 / inverse.x(), 1 / inverse.y(), 1 / inverse.z());
  btVector3 const spin = body.getAngularVelocity() * axes;
  btVector3 const momentum = inertia * spin;
  btVector3 middle = spin;
  for (int round = 0; round < MOST_ROUNDS; ++round) {
    // Seen from the body, which will have turned by half of its way, the momentum has turned back.
    btVector3 const half = middle * (0.5 * dt);
    btVector3 const found = turned(inverse * turned(momentum, -half), half);
    double const change = (found - middle).length2();
    middle = found;
    if (change > SETTLED * middle.length2())
      continue;
    body.setAngularVelocity(axes * middle);
    m_entries.push_back({&body, inertia, momentum, middle, axes});
    return;
  }
  // Too fast for the step: the engine's own rule brakes, but stays finite.
  body.setAngularVelocity(body.getAngularVelocity() + body.computeGyroscopicImpulseImplicit_Body(dt));
}

void FreeRotation::end() {
  for (Entry const& entry : m_entries)
    end(entry);
}

void FreeRotation::end(Entry const& entry) {
  btRigidBody& body = *entry.body;
  btVector3 const impulse = entry.inertia * (body.getAngularVelocity() * entry.axes - entry.middle);
  btMatrix3x3 const& now = body.getWorldTransform().getBasis();
  btVector3 const momentum = (entry.axes * (entry.momentum + impulse)) * now;
  body.setAngularVelocity(now * (momentum * body.getInvInertiaDiagLocal()));
}

} // namespace zorBullet
