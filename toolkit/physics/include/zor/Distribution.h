#pragma once

#include <vector>

#include <zor/Object.h>
#include <zor/RandomGenerator.h>
#include <zor/Types.h>

namespace zor {

/**
 * A table of models from which an emitter draws. Each has a weight; a model's share of what is emitted is its
 * weight by the sum of all.
 */
class Distribution : public zor::Object {
public:
  /** What the shares are shares of. */
  enum Quantity : int {
    COUNT = 0, /**< Pieces. */
    MASS = 1,  /**< kg */
    VOLUME = 2 /**< m3 */
  };

  /** \return number of models */
  zor::UInt getNumModels() const { return m_weights.size(); }
  /** \param index - less than the number of models \return the weight of a model */
  zor::Real getWeight(zor::UInt index) const;
  /** \param index - less than the number of models \param weight - not negative */
  void setWeight(zor::UInt index, zor::Real weight);

  /** \param quantity - what the shares are shares of */
  void setQuantity(zor::Distribution::Quantity quantity);
  /** \return what the shares are shares of; COUNT by default */
  zor::Distribution::Quantity getQuantity() const { return m_quantity; }

  /**
   * Draws a model.
   * \param generator - gives the chance
   * \return its index
   * \throws std::runtime_error when there are no models, or all weights are zero
   */
  zor::UInt draw(zor::RandomGenerator& generator) const;

protected:
  Distribution() = default;
  ~Distribution() override = default;

  void addWeight(zor::Real weight);
  /** Mean of a model's size: 1, its mass or its volume. */
  virtual zor::Real getMeanSize(zor::UInt index, Quantity quantity) const = 0;

private:
  std::vector<zor::Real> m_weights;
  zor::Distribution::Quantity m_quantity = COUNT;
};

} // namespace zor
