#pragma once

#include <zor/Distribution.h>
#include <zor/RigidBody.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

namespace zor {

/** Bodies to copy and their shares. */
class RigidBodyDistribution : public zor::Distribution {
public:
  /** Creates an empty table. */
  RigidBodyDistribution() = default;
  /** Creates a table of one body. \param model - not null */
  explicit RigidBodyDistribution(zor::RigidBody* model);

  /**
   * Adds a body to copy. It is held; it should be in no simulation, and stay as it is.
   * \param model - dynamic and with a shape, else std::invalid_argument
   * \param weight - not negative
   */
  void add(zor::RigidBody* model, zor::Real weight = 1.0);
  /** \param index - less than the number of models \return the body to copy */
  zor::RigidBody* getModel(zor::UInt index) const;

protected:
  ~RigidBodyDistribution() override = default;
  zor::Real getMeanSize(zor::UInt index, zor::Distribution::Quantity quantity) const override;

private:
  zor::RigidBodyRefVector m_models;
};

} // namespace zor
