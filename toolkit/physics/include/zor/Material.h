#pragma once

#include <zor/Object.h>
#include <zor/Types.h>

namespace zor {

/**
 * What a geometry is made of. Where two materials meet and no zor::ContactMaterial names the pair, friction
 * is the geometric mean of the two and restitution the greater; rolling and spinning friction are the sums.
 */
class Material : public zor::Object {
public:
  /**
   * \param name - name
   * \param density - density (kg/m3), positive and finite, else std::invalid_argument
   * \param friction - friction coefficient, not negative
   */
  explicit Material(zor::String const& name = "", zor::Real density = 1000.0, zor::Real friction = 0.5);

  /** \param density - density (kg/m3), positive; bodies take it over with
   * zor::RigidBody::updateMassProperties */
  void setDensity(zor::Real density);
  /** \return density (kg/m3) */
  zor::Real getDensity() const { return m_density; }

  /** \param friction - friction coefficient, not negative, else std::invalid_argument */
  void setFriction(zor::Real friction);
  /** \return friction coefficient */
  zor::Real getFriction() const { return m_friction; }

  /** \param restitution - 0 no bounce to 1 full bounce; outside throws std::invalid_argument */
  void setRestitution(zor::Real restitution);
  /** \return 0 no bounce to 1 full bounce */
  zor::Real getRestitution() const { return m_restitution; }

  /**
   * Resists rolling: in a contact under the normal force N a moment of up to rollingFriction * N acts against
   * the turning about axes in the surface. Of a ball of radius r it takes the speed at 5/7 g rollingFriction
   * / r.
   * \param rollingFriction - arm of the moment (m), not negative, else std::invalid_argument
   */
  void setRollingFriction(zor::Real rollingFriction);
  /** \return arm of the moment against rolling (m); 0 by default */
  zor::Real getRollingFriction() const { return m_rollingFriction; }

  /**
   * Resists spinning on the spot: as rolling friction, about the normal of the contact.
   * \param spinningFriction - arm of the moment (m), not negative, else std::invalid_argument
   */
  void setSpinningFriction(zor::Real spinningFriction);
  /** \return arm of the moment against spinning (m); 0 by default */
  zor::Real getSpinningFriction() const { return m_spinningFriction; }

  /** \param youngsModulus - stiffness (Pa), positive; bodies stay rigid, deformable models use it */
  void setYoungsModulus(zor::Real youngsModulus);
  /** \return stiffness (Pa) */
  zor::Real getYoungsModulus() const { return m_youngsModulus; }

protected:
  ~Material() override = default;

private:
  zor::Real m_density = 1000.0;
  zor::Real m_friction = 0.5;
  zor::Real m_restitution = 0.0;
  zor::Real m_rollingFriction = 0.0;
  zor::Real m_spinningFriction = 0.0;
  zor::Real m_youngsModulus = 4.0e8;
};

} // namespace zor
