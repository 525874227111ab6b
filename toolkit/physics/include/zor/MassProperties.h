#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/Matrix3x3.h>
#include <zor/Quat.h>
#include <zor/Types.h>
#include <zor/Vec3.h>

#ifndef SWIG
namespace zorBullet {
class BodyImpl;
} // namespace zorBullet
#endif

namespace zorStream {
struct StateAccess;
} // namespace zorStream

namespace zor {

/** Mass, inertia and centre of mass of a rigid body.
 *
 * Owned by its body. Values follow from the volumes of the body's geometries and the densities of their
 * materials until they are set explicitly; each explicitly set value stays until setAutoGenerate brings the
 * automatic one back.
 */
class MassProperties {
public:
  /** Values that can be computed automatically (bit mask). */
  enum AutoGenerateFlags : int {
    MASS = 1,                ///< Mass.
    INERTIA_DIAGONAL = 2,    ///< Diagonal of the inertia tensor.
    INERTIA_OFFDIAGONAL = 4, ///< Other elements of the inertia tensor.
    CM_OFFSET = 8,           ///< Centre of mass.
    AUTO_GENERATE_ALL = 15   ///< All of them.
  };

  /** Sets the mass and stops computing it from the shapes. The inertia is scaled with it while automatic.
   * \param mass In kilograms, larger than zero and finite.
   * \param autoGenerate True to let the next change of the shapes compute it again.
   * \throws std::invalid_argument When the mass is not positive and finite.
   */
  void setMass(zor::Real mass, bool autoGenerate = false);

  /** \return Mass in kilograms. */
  zor::Real getMass() const;

  /** \return One over the mass, in 1/kg. */
  zor::Real getInvMass() const;

  /** Sets the diagonal of the inertia tensor about the centre of mass, in the body's axes; off-diagonal
   * elements become zero.
   * \param diagonal In kg m^2, each larger than zero and finite.
   * \param autoGenerate True to let the next change of the shapes compute it again.
   * \throws std::invalid_argument When an element is not positive and finite.
   */
  void setInertiaTensor(zor::Vec3 const& diagonal, bool autoGenerate = false);

  /** Sets the whole inertia tensor about the centre of mass, in the body's axes.
   * \param inertia Symmetric, positive definite, in kg m^2.
   * \param autoGenerate True to let the next change of the shapes compute it again.
   * \throws std::invalid_argument When the tensor is not symmetric and positive definite.
   */
  void setInertiaTensor(zor::Matrix3x3 const& inertia, bool autoGenerate = false);

  /** \return Inertia tensor about the centre of mass, in the body's axes, in kg m^2. */
  zor::Matrix3x3 getInertiaTensor() const;

  /** \return Diagonal of the inertia tensor in kg m^2. */
  zor::Vec3 getPrincipalInertiae() const;

  /** Sets the centre of mass.
   * \param offset Position in the body's model frame, in metres.
   * \param autoGenerate True to let the next change of the shapes compute it again.
   */
  void setCmLocalTranslate(zor::Vec3 const& offset, bool autoGenerate = false);

  /** \return Centre of mass in the body's model frame, in metres. */
  zor::Vec3 getCmLocalTranslate() const;

  /** Chooses which values follow from the shapes.
   * \param mask Combination of AutoGenerateFlags.
   */
  void setAutoGenerateMask(zor::UInt32 mask);

  /** \return Combination of AutoGenerateFlags. */
  zor::UInt32 getAutoGenerateMask() const;

  /** Lets all values follow from the shapes, or none.
   * \param enable True for all.
   */
  void setAutoGenerate(bool enable);

private:
  friend class zorBullet::BodyImpl;
  friend struct zorStream::StateAccess;
  explicit MassProperties(zorBullet::BodyImpl& body) : m_body(body) {}
  ~MassProperties() = default;
  MassProperties(MassProperties const&) = delete;
  MassProperties& operator=(MassProperties const&) = delete;
  void setAutomatic(zor::UInt32 bits, bool automatic);

  zorBullet::BodyImpl& m_body;
  zor::Real m_mass = 1;
  zor::Matrix3x3 m_inertia;
  zor::Vec3 m_centre;
  zor::UInt32 m_autoMask = AUTO_GENERATE_ALL;
};

} // namespace zor
