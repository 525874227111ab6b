#pragma once

#include <limits>

#include <zor/Material.h>
#include <zor/Object.h>
#include <zor/Types.h>
#include <zor/ref_ptr.h>

namespace zor {

/**
 * How two materials meet. Takes effect once added to a simulation (or space), for contacts of both orders.
 *
 * Friction is Coulomb's: up to friction times the normal force of each contact point, the same at rest and in
 * motion. It acts along two directions of the surface, the first of which is that of the sliding, so that a
 * sliding body is braked straight against its motion; a resting one, pulled across both directions, may hold
 * up to the square root of two of it.
 */
class ContactMaterial : public zor::Object {
public:
  /**
   * Starts with the values that the materials have without it, and rigid.
   * \param material1 - one material; null throws std::invalid_argument
   * \param material2 - the other, may be the same; null throws std::invalid_argument
   */
  ContactMaterial(zor::Material* material1, zor::Material* material2);

  /** \return the first material */
  zor::Material* getMaterial1() const { return m_material1.get(); }
  /** \return the second material */
  zor::Material* getMaterial2() const { return m_material2.get(); }

  /** \param friction - friction coefficient, not negative, else std::invalid_argument */
  void setFriction(zor::Real friction);
  /** \return friction coefficient */
  zor::Real getFriction() const { return m_friction; }

  /** \param restitution - 0 no bounce to 1 full bounce; outside throws std::invalid_argument */
  void setRestitution(zor::Real restitution);
  /** \return 0 no bounce to 1 full bounce */
  zor::Real getRestitution() const { return m_restitution; }

  /** \param rollingFriction - arm of the moment against rolling (m), not negative, else
   * std::invalid_argument; see zor::Material::setRollingFriction */
  void setRollingFriction(zor::Real rollingFriction);
  /** \return arm of the moment against rolling (m) */
  zor::Real getRollingFriction() const { return m_rollingFriction; }

  /** \param spinningFriction - arm of the moment against spinning on the spot (m), not negative, else
   * std::invalid_argument */
  void setSpinningFriction(zor::Real spinningFriction);
  /** \return arm of the moment against spinning on the spot (m) */
  zor::Real getSpinningFriction() const { return m_spinningFriction; }

  /**
   * Makes contacts yield like springs. It counts for each contact point by itself: a box that rests on four
   * corners sinks in by weight / (4 stiffness).
   * \param stiffness - N/m of one contact point, positive, else std::invalid_argument; infinite for rigid
   */
  void setStiffness(zor::Real stiffness);
  /** \return N/m of one contact point; infinite by default */
  zor::Real getStiffness() const { return m_stiffness; }

  /** \param damping - N s/m of one contact point, not negative, else std::invalid_argument; counts where
   * the stiffness is finite */
  void setDamping(zor::Real damping);
  /** \return N s/m of one contact point; 0 by default */
  zor::Real getDamping() const { return m_damping; }

  /**
   * \param material1 - a material
   * \param material2 - another
   * \return the friction of a pair that has no contact material: the geometric mean
   */
  static zor::Real combineFriction(zor::Material const& material1, zor::Material const& material2);

  /**
   * \param material1 - a material
   * \param material2 - another
   * \return the restitution of a pair that has no contact material: the greater of the two
   */
  static zor::Real combineRestitution(zor::Material const& material1, zor::Material const& material2);

  /**
   * \param material1 - a material
   * \param material2 - another
   * \return the rolling friction of a pair that has no contact material: the sum of the two (m)
   */
  static zor::Real combineRollingFriction(zor::Material const& material1, zor::Material const& material2);

  /**
   * \param material1 - a material
   * \param material2 - another
   * \return the spinning friction of a pair that has no contact material: the sum of the two (m)
   */
  static zor::Real combineSpinningFriction(zor::Material const& material1, zor::Material const& material2);

protected:
  ~ContactMaterial() override = default;

private:
  zor::ref_ptr<zor::Material> m_material1;
  zor::ref_ptr<zor::Material> m_material2;
  zor::Real m_friction;
  zor::Real m_restitution;
  zor::Real m_rollingFriction;
  zor::Real m_spinningFriction;
  zor::Real m_stiffness = std::numeric_limits<zor::Real>::infinity();
  zor::Real m_damping = 0.0;
};

} // namespace zor
