#include <cmath>
#include <locale>
#include <sstream>

#include "zorStream/Fields.h"
#include "zorStream/StateAccess.h"

// Random numbers, distributions and emitters.

namespace zorStream {

// --- random numbers

// The library gives the state of its engine only as text: numbers, the last of which is a position.
void StateAccess::randomGenerator(Archive& archive, zor::RandomGenerator& generator) {
  archive.beginObject("random");
  std::stringstream text;
  text.imbue(std::locale::classic());
  text << generator.m_engine;
  std::vector<std::uint64_t> numbers;
  for (std::uint64_t number = 0; text >> number;)
    numbers.push_back(number);
  std::size_t const size = numbers.size();
  numbersField(archive, "state", numbers);
  if (archive.reading()) {
    if (numbers.size() != size || numbers.back() >= size)
      archive.fail("state", "must be " + std::to_string(size) +
                                " numbers, the last of which is a position among the others");
    text.clear();
    text.str("");
    for (std::uint64_t const number : numbers)
      text << number << ' ';
    text >> generator.m_engine;
  }
  generator.m_hasSpare = archive.optional("spare", generator.m_hasSpare);
  if (generator.m_hasSpare)
    field(archive, "spare", generator.m_spare);
  if (archive.reading() && !std::isfinite(generator.m_spare))
    archive.fail("spare", "is not finite");
  archive.endObject();
}

void StateAccess::randomReal(Archive& archive, char const* name, zor::RandomReal& value) {
  using zor::RandomReal;
  archive.beginObject(name);
  choice<RandomReal::Kind>(archive, "kind", value.m_kind,
                           {{"constant", RandomReal::CONSTANT},
                            {"uniform", RandomReal::UNIFORM},
                            {"normal", RandomReal::NORMAL},
                            {"log-normal", RandomReal::LOG_NORMAL}});
  if (value.m_kind == RandomReal::CONSTANT) {
    field(archive, "value", value.m_center);
    checked(archive, "value", [&] { value = RandomReal(value.m_center); });
  } else {
    if (value.m_kind != RandomReal::UNIFORM) { // center and spread of the logarithm for the last kind
      field(archive, "center", value.m_center);
      field(archive, "spread", value.m_spread);
    }
    field(archive, "lower", value.m_lower);
    field(archive, "upper", value.m_upper);
    bool const finite = value.m_kind == RandomReal::UNIFORM
                            ? std::isfinite(value.m_lower) && std::isfinite(value.m_upper)
                            : std::isfinite(value.m_center) && std::isfinite(value.m_spread);
    if (!finite || value.m_spread < 0)
      archive.fail(nullptr, "has numbers that are not finite, or a negative spread");
    checked(archive, nullptr, [&] {
      value = RandomReal(value.m_kind, value.m_center, value.m_spread, value.m_lower, value.m_upper);
    });
  }
  archive.endObject();
}

// --- distributions

namespace {

void quantityField(Archive& archive, zor::Distribution::Quantity& quantity) {
  choice<zor::Distribution::Quantity>(archive, "quantity", quantity,
                                      {{"count", zor::Distribution::COUNT},
                                       {"mass", zor::Distribution::MASS},
                                       {"volume", zor::Distribution::VOLUME}});
}

template <class Distribution, class Model>
void distributionFields(Archive& archive, ObjectTable<Model> const& models,
                        zor::ref_ptr<Distribution>& distribution) {
  if (archive.reading())
    distribution = new Distribution;
  property(archive, "name", static_cast<zor::Object&>(*distribution), &zor::Object::getName,
           &zor::Object::setName);
  zor::Distribution::Quantity quantity = distribution->getQuantity();
  quantityField(archive, quantity);
  distribution->setQuantity(quantity);
  std::vector<std::pair<Model*, double>> shares;
  for (zor::UInt i = 0; i < distribution->getNumModels(); ++i)
    shares.emplace_back(distribution->getModel(i), distribution->getWeight(i));
  listOfObjects(archive, "models", shares, [&](auto& share) {
    reference(archive, "model", models, share.first);
    field(archive, "weight", share.second);
    if (archive.reading())
      checked(archive, nullptr, [&] { distribution->add(share.first, share.second); });
  });
}

} // namespace

void StateAccess::particleModel(Archive& archive, ObjectTables& tables, Ref<zor::ParticleModel>& model) {
  zor::RandomReal radius = model ? model->getRadius() : zor::RandomReal();
  zor::RandomReal lifetime = model ? model->getLifetime() : zor::RandomReal();
  zor::Material* material = model ? model->getMaterial() : nullptr;
  zor::Vec4f color = model ? model->getColor() : zor::Vec4f();
  std::string name = model ? model->getName() : "";
  field(archive, "name", name);
  randomReal(archive, "radius", radius);
  reference(archive, "material", tables.materials, material, true);
  field(archive, "color", color);
  randomReal(archive, "lifetime", lifetime);
  if (!archive.reading())
    return;
  checked(archive, nullptr, [&] { model = new zor::ParticleModel(radius, material, color, lifetime); });
  model->setName(name);
}

void StateAccess::particleDistribution(Archive& archive, ObjectTables& tables,
                                       Ref<zor::ParticleDistribution>& distribution) {
  distributionFields(archive, tables.particleModels, distribution);
}

void StateAccess::bodyDistribution(Archive& archive, ObjectTables& tables,
                                   Ref<zor::RigidBodyDistribution>& distribution) {
  distributionFields(archive, tables.bodies, distribution);
}

// --- emitters

zor::ParticleModel* StateAccess::drawnModel(zor::Emitter const& emitter) {
  return emitter.m_next ? emitter.m_model.get() : nullptr;
}

zor::RigidBody* StateAccess::drawnModel(zor::RigidBodyEmitter const& emitter) {
  return emitter.m_next ? emitter.m_model.get() : nullptr;
}

namespace {

void atLeastZero(Archive& archive, char const* name, double& value) {
  field(archive, name, value);
  if (archive.reading() && !(value >= 0))
    archive.fail(name, "must not be negative");
}

} // namespace

// What all kinds have.
void StateAccess::emission(Archive& archive, zor::EmitterBase& emitter) {
  using zor::EmitterBase;
  property(archive, "rate", emitter, &EmitterBase::getRate, &EmitterBase::setRate);
  quantityField(archive, emitter.m_quantity);
  property(archive, "maximumEmitted", emitter, &EmitterBase::getMaximumEmitted,
           &EmitterBase::setMaximumEmitted);
  property(archive, "velocity", emitter, &EmitterBase::getVelocity, &EmitterBase::setVelocity);
  field(archive, "enabled", emitter.m_enabled);
  randomGenerator(archive, emitter.m_generator);
  atLeastZero(archive, "due", emitter.m_due);
  archive.beginObject("emitted");
  field(archive, "pieces", emitter.m_count);
  atLeastZero(archive, "mass", emitter.m_mass);
  atLeastZero(archive, "volume", emitter.m_volume);
  archive.endObject();
}

// What was drawn and waits for its time or place. \param rest - describes what the kind of emitter adds
template <class Kind, class Table, class Rest>
void StateAccess::nextPiece(Archive& archive, Kind& emitter, Table& models, Rest rest) {
  if (!archive.optional("next", emitter.m_next.has_value()))
    return;
  if (archive.reading())
    emitter.m_next.emplace();
  zor::EmitterBase::Piece& piece = *emitter.m_next;
  archive.beginObject("next");
  auto* model = emitter.m_model.get();
  reference(archive, "model", models, model);
  emitter.m_model = model;
  atLeastZero(archive, "mass", piece.mass);
  atLeastZero(archive, "volume", piece.volume);
  field(archive, "radius", piece.radius);
  if (archive.reading() && (!(piece.radius > 0) || !std::isfinite(piece.radius)))
    archive.fail("radius", "must be finite and larger than zero");
  rest();
  archive.endObject();
}

void StateAccess::particleEmitter(Archive& archive, ObjectTables& tables, Ref<zor::Emitter>& emitter,
                                  zorCollide::Geometry* geometry) {
  zor::ParticleSystem* system = emitter ? emitter->getParticleSystem() : nullptr;
  zor::ParticleDistribution* distribution = emitter ? emitter->getDistribution() : nullptr;
  reference(archive, "particleSystem", tables.particleSystems, system);
  reference(archive, "distribution", tables.particleDistributions, distribution);
  if (archive.reading())
    checked(archive, "geometry", [&] { emitter = new zor::Emitter(system, distribution, geometry, 0); });
  emission(archive, *emitter);
  nextPiece(archive, *emitter, tables.particleModels, [&] {
    emitter->m_radius = emitter->m_next->radius;
    atLeastZero(archive, "lifetime", emitter->m_lifetime);
  });
}

void StateAccess::bodyEmitter(Archive& archive, ObjectTables& tables, Ref<zor::RigidBodyEmitter>& emitter,
                              zorCollide::Geometry* geometry) {
  zor::RigidBodyDistribution* distribution = emitter ? emitter->getDistribution() : nullptr;
  reference(archive, "distribution", tables.bodyDistributions, distribution);
  if (archive.reading())
    checked(archive, "geometry", [&] { emitter = new zor::RigidBodyEmitter(distribution, geometry, 0); });
  emission(archive, *emitter);
  field(archive, "randomRotation", emitter->m_randomRotation);
  nextPiece(archive, *emitter, tables.bodies, [&] {
    field(archive, "middle", emitter->m_middle);
    if (archive.reading() && !emitter->m_middle.isFinite())
      archive.fail("middle", "is not finite");
  });
  std::vector<zor::RigidBody*> bodies = pointers(emitter->m_bodies);
  references(archive, "bodies", tables.bodies, bodies);
  if (archive.reading())
    for (zor::RigidBody* body : bodies)
      emitter->m_bodies.push_back(body);
}

void StateAccess::emitter(Archive& archive, ObjectTables& tables, Ref<zor::EmitterBase>& emitter) {
  enum Kind { PARTICLES, BODIES };
  Ref<zor::Emitter> ofParticles = dynamic_cast<zor::Emitter*>(emitter.get());
  Ref<zor::RigidBodyEmitter> ofBodies = dynamic_cast<zor::RigidBodyEmitter*>(emitter.get());
  std::string name = emitter ? emitter->getName() : "";
  Kind kind = ofBodies ? BODIES : PARTICLES;
  zorCollide::Geometry* geometry = emitter ? emitter->getGeometry() : nullptr;
  field(archive, "name", name);
  choice<Kind>(archive, "kind", kind, {{"particles", PARTICLES}, {"bodies", BODIES}});
  reference(archive, "geometry", tables.geometries, geometry);
  if (kind == PARTICLES) {
    particleEmitter(archive, tables, ofParticles, geometry);
    emitter = ofParticles;
  } else {
    bodyEmitter(archive, tables, ofBodies, geometry);
    emitter = ofBodies;
  }
  emitter->setName(name);
}

} // namespace zorStream
