#pragma once

#include <limits>

#include <zor/Distribution.h>
#include <zor/Material.h>
#include <zor/RandomReal.h>
#include <zor/Vec4.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

namespace zor {

/** A kind of particle: how large, of what, and how it looks. */
class ParticleModel : public zor::Object {
public:
  /**
   * \param radius - (m); its lower limit must be larger than zero
   * \param material - null for the material of the particle system
   * \param color - red, green, blue, alpha
   * \param lifetime - (s); its lower limit must be larger than zero
   */
  explicit ParticleModel(zor::RandomReal const& radius, zor::Material* material = nullptr,
                         zor::Vec4f const& color = zor::Vec4f(0.82f, 0.71f, 0.55f, 1.0f),
                         zor::RandomReal const& lifetime = zor::RandomReal(1e30));

  /** \return radius (m) */
  zor::RandomReal getRadius() const { return m_radius; }
  /** \return what it is made of; null for the material of the particle system */
  zor::Material* getMaterial() const { return m_material.get(); }
  /** \return red, green, blue, alpha */
  zor::Vec4f getColor() const { return m_color; }
  /** \return time until a particle is removed (s) */
  zor::RandomReal getLifetime() const { return m_lifetime; }

protected:
  ~ParticleModel() override = default;

private:
  zor::RandomReal m_radius;
  zor::ref_ptr<zor::Material> m_material;
  zor::Vec4f m_color;
  zor::RandomReal m_lifetime;
};

/** Particle models and their shares. */
class ParticleDistribution : public zor::Distribution {
public:
  /** Creates an empty table. */
  ParticleDistribution() = default;
  /** Creates a table of one model. \param model - not null */
  explicit ParticleDistribution(zor::ParticleModel* model);

  /**
   * Adds a model, which the table then holds.
   * \param model - not null
   * \param weight - not negative
   */
  void add(zor::ParticleModel* model, zor::Real weight = 1.0);
  /** \param index - less than the number of models \return the model */
  zor::ParticleModel* getModel(zor::UInt index) const;

protected:
  ~ParticleDistribution() override = default;
  zor::Real getMeanSize(zor::UInt index, zor::Distribution::Quantity quantity) const override;

private:
  // With the mean volume, which takes long to compute.
  struct Entry {
    zor::ref_ptr<zor::ParticleModel> model;
    zor::Real volume;
  };
  std::vector<Entry> m_entries;
};

} // namespace zor
