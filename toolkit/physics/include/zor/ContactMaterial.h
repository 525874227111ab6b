#pragma once

#include <zor/Material.h>
#include <zor/Object.h>
#include <zor/Types.h>
#include <zor/ref_ptr.h>

namespace zor {

/** How two materials meet. Takes effect once added to a simulation (or space), for contacts of both orders.
 */
class ContactMaterial : public zor::Object {
public:
  /**
   * Starts with friction and restitution combined from the materials.
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

protected:
  ~ContactMaterial() override = default;

private:
  zor::ref_ptr<zor::Material> m_material1;
  zor::ref_ptr<zor::Material> m_material2;
  zor::Real m_friction;
  zor::Real m_restitution;
};

} // namespace zor
