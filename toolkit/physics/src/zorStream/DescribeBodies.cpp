#include <algorithm>
#include <cmath>
#include <optional>

#include "bullet/BodyImpl.h"
#include "bullet/Check.h"
#include "bullet/Conversions.h"
#include "bullet/GeometryImpl.h"
#include "zorStream/Checksum.h"
#include "zorStream/Fields.h"
#include "zorStream/StateAccess.h"

// Materials, geometries, bodies, and the frames of all.

namespace zorStream {

using zorBullet::BodyImpl;
using zorBullet::GeometryImpl;
using zorBullet::MotionState;

// --- materials

void StateAccess::material(Archive& archive, Ref<zor::Material>& material) {
  using zor::Material;
  if (archive.reading())
    material = new Material;
  bool common = material.get() == zorBullet::GeometryImpl::defaultMaterial();
  field(archive, "isDefault", common); // that of geometries without one
  property(archive, "name", static_cast<zor::Object&>(*material), &zor::Object::getName,
           &zor::Object::setName);
  property(archive, "density", *material, &Material::getDensity, &Material::setDensity);
  property(archive, "friction", *material, &Material::getFriction, &Material::setFriction);
  property(archive, "restitution", *material, &Material::getRestitution, &Material::setRestitution);
  property(archive, "youngsModulus", *material, &Material::getYoungsModulus, &Material::setYoungsModulus);
  if (archive.version() >= 2) {
    property(archive, "rollingFriction", *material, &Material::getRollingFriction,
             &Material::setRollingFriction);
    property(archive, "spinningFriction", *material, &Material::getSpinningFriction,
             &Material::setSpinningFriction);
  }
  // The default material is one for the process; where it has been changed since, the file's is another one.
  Material& present = *zorBullet::GeometryImpl::defaultMaterial();
  if (archive.reading() && common && material->getName() == present.getName() &&
      material->getDensity() == present.getDensity() && material->getFriction() == present.getFriction() &&
      material->getRestitution() == present.getRestitution() &&
      material->getRollingFriction() == present.getRollingFriction() &&
      material->getSpinningFriction() == present.getSpinningFriction() &&
      material->getYoungsModulus() == present.getYoungsModulus())
    material = &present;
}

void StateAccess::contactMaterial(Archive& archive, ObjectTables& tables,
                                  Ref<zor::ContactMaterial>& material) {
  using zor::ContactMaterial;
  zor::Material* first = material ? material->getMaterial1() : nullptr;
  zor::Material* second = material ? material->getMaterial2() : nullptr;
  reference(archive, "material1", tables.materials, first);
  reference(archive, "material2", tables.materials, second);
  if (archive.reading())
    material = new ContactMaterial(first, second);
  property(archive, "name", static_cast<zor::Object&>(*material), &zor::Object::getName,
           &zor::Object::setName);
  property(archive, "friction", *material, &ContactMaterial::getFriction, &ContactMaterial::setFriction);
  property(archive, "restitution", *material, &ContactMaterial::getRestitution,
           &ContactMaterial::setRestitution);
  if (archive.version() < 2)
    return;
  property(archive, "rollingFriction", *material, &ContactMaterial::getRollingFriction,
           &ContactMaterial::setRollingFriction);
  property(archive, "spinningFriction", *material, &ContactMaterial::getSpinningFriction,
           &ContactMaterial::setSpinningFriction);
  property(archive, "stiffness", *material, &ContactMaterial::getStiffness, &ContactMaterial::setStiffness);
  property(archive, "damping", *material, &ContactMaterial::getDamping, &ContactMaterial::setDamping);
}

// --- frames

void StateAccess::ownFrame(Archive& archive, ObjectTables& tables, char const* name, zor::Frame& frame,
                           zor::Frame const* usual, GeometryImpl* geometry) {
  archive.beginObject(name);
  zor::AffineMatrix4x4 local = frame.getLocalMatrix();
  field(archive, "transform", local);
  if (archive.reading() && geometry)
    geometry->placeFrame(nullptr, local);
  else if (archive.reading())
    frame.setLocalMatrix(local);
  if (archive.optional("parent", frame.getParent() != usual)) {
    std::string parent = "world";
    if (!archive.reading() && frame.getParent())
      parent = tables.frameNames.at(frame.getParent());
    field(archive, "parent", parent);
    if (archive.reading())
      tables.pendingParents.push_back({&frame, geometry, parent, archive.placeOf("parent")});
  }
  archive.endObject();
}

void StateAccess::frame(Archive& archive, ObjectTables& tables, Ref<zor::Frame>& frame) {
  if (archive.reading())
    frame = new zor::Frame;
  ownFrame(archive, tables, "frame", *frame, nullptr);
}

namespace {

template <class T, class FrameOf>
void nameAll(ObjectTables& tables, ObjectTable<T> const& table, FrameOf frameOf) {
  for (auto const& object : table.objects())
    frameOf(*object, std::string(table.noun()) + " " + std::to_string(table.idOf(*object)));
  (void)tables;
}

} // namespace

void StateAccess::nameFrames(ObjectTables& tables) {
  std::map<zor::Frame const*, std::string>& names = tables.frameNames;
  auto const own = [&](auto& object, std::string const& name) { names[object.getFrame()] = name; };
  nameAll(tables, tables.bodies, own);
  nameAll(tables, tables.geometries, own);
  nameAll(tables, tables.observerFrames, own);
  nameAll(tables, tables.assemblies, own);
  nameAll(tables, tables.constraints, [&](zor::Constraint& constraint, std::string const& name) {
    for (zor::UInt i = 0; i < 2; ++i)
      names[constraint.getAttachment(i)] = name + " attachment " + std::to_string(i);
  });
  // Parents that belong to nothing in the file; those that are read stand in the table already.
  std::vector<zor::Frame const*> named;
  for (auto const& entry : names)
    named.push_back(entry.first);
  for (zor::Frame const* child : named)
    for (zor::Frame* parent = child->getParent(); parent && !names.contains(parent);
         parent = parent->getParent())
      tables.frames.add(*parent);
  nameAll(tables, tables.frames, [&](zor::Frame& frame, std::string const& name) { names[&frame] = name; });
}

void StateAccess::setParents(ObjectTables& tables) {
  if (tables.pendingParents.empty())
    return;
  nameFrames(tables);
  std::map<std::string, zor::Frame*> byName{{"world", nullptr}};
  for (auto const& [frame, name] : tables.frameNames)
    byName[name] = const_cast<zor::Frame*>(frame);
  for (ObjectTables::PendingParent const& each : tables.pendingParents) {
    auto const parent = byName.find(each.parent);
    if (parent == byName.end())
      throw ArchiveError(each.place + ": there is no frame '" + each.parent + "'");
    try {
      if (each.geometry)
        each.geometry->placeFrame(parent->second, each.frame->getLocalMatrix());
      else
        each.frame->setParent(parent->second);
    } catch (std::invalid_argument const& error) {
      throw ArchiveError(each.place + ": " + error.what());
    }
  }
}

// --- geometries

namespace {

struct PlacedShape {
  zorCollide::Shape* shape = nullptr;
  btTransform transform = btTransform::getIdentity();
};

void shapesField(Archive& archive, ObjectTables& tables, zorCollide::Geometry& geometry) {
  GeometryImpl& impl = geometry.getImpl();
  std::vector<PlacedShape> shapes;
  for (zor::UInt i = 0; i < impl.locals.size(); ++i)
    shapes.push_back({geometry.getShape(i), impl.locals[i]});
  listOfObjects(archive, "shapes", shapes, [&](PlacedShape& placed) {
    reference(archive, "shape", tables.shapes, placed.shape);
    field(archive, "transform", placed.transform);
    if (archive.reading())
      checked(archive, "transform", [&] {
        zorBullet::checkRigid("Geometry", zorBullet::fromBt(placed.transform));
        impl.addShape(*placed.shape, placed.transform);
      });
  });
}

// Pairs are known on both sides and written with the later geometry.
void disabledPairs(Archive& archive, ObjectTables& tables, zorCollide::Geometry& geometry) {
  ObjectTable<zorCollide::Geometry> const& table = tables.geometries;
  std::vector<zorCollide::Geometry*> others;
  if (!archive.reading())
    for (GeometryImpl const* other : geometry.getImpl().disabled)
      if (table.contains(other->geometry()) && table.idOf(other->geometry()) < table.idOf(geometry))
        others.push_back(&other->geometry());
  std::sort(others.begin(), others.end(), [&](auto* a, auto* b) { return table.idOf(*a) < table.idOf(*b); });
  references(archive, "apartFrom", table, others);
  if (archive.reading())
    for (zorCollide::Geometry* other : others)
      geometry.getImpl().setEnablePair(other->getImpl(), false);
}

} // namespace

void StateAccess::geometry(Archive& archive, ObjectTables& tables, Ref<zorCollide::Geometry>& geometry) {
  using zorCollide::Geometry;
  if (archive.reading())
    geometry = new Geometry;
  GeometryImpl& impl = geometry->getImpl();
  property(archive, "name", static_cast<zor::Object&>(*geometry), &zor::Object::getName,
           &zor::Object::setName);
  shapesField(archive, tables, *geometry);
  zor::Material* material = geometry->getMaterial();
  reference(archive, "material", tables.materials, material);
  if (archive.reading())
    geometry->setMaterial(material);
  field(archive, "sensor", impl.sensor);
  field(archive, "enabled", impl.enabled);
  field(archive, "collisions", impl.collisions);
  zor::UInt32Vector groups = impl.groups;
  listField(archive, "groups", groups);
  if (archive.reading())
    for (zor::UInt32 const group : groups)
      geometry->addGroup(group);
  disabledPairs(archive, tables, *geometry);
  ownFrame(archive, tables, "frame", *impl.frame,
           archive.reading() || !impl.owner() ? nullptr : impl.owner()->getBody()->getFrame(), &impl);
  if (archive.reading())
    checked(archive, "frame", [&] { zorBullet::checkRigid("Geometry", impl.frame->getLocalMatrix()); });
}

// --- bodies

void StateAccess::massProperties(Archive& archive, BodyImpl& body) {
  zor::MassProperties& mass = body.massProperties();
  archive.beginObject("massProperties");
  field(archive, "mass", mass.m_mass);
  field(archive, "inertia", mass.m_inertia);
  field(archive, "centre", mass.m_centre);
  field(archive, "automatic", mass.m_autoMask);
  if (archive.reading()) {
    zor::Matrix3x3 const& inertia = mass.m_inertia;
    if (!(mass.m_mass > 0) || !std::isfinite(mass.m_mass))
      archive.fail("mass", "must be finite and larger than zero");
    double const sum = inertia(0, 0) + inertia(1, 1) + inertia(2, 2);
    bool const good = std::isfinite(sum) && inertia(0, 0) >= 0 && inertia(1, 1) >= 0 && inertia(2, 2) >= 0 &&
                      sum > 0 && inertia.equals(inertia.transpose(), 1e-6 * sum);
    if (!good)
      archive.fail("inertia", "must be symmetric, with positive numbers in its diagonal");
    if (!mass.m_centre.isFinite())
      archive.fail("centre", "is not finite");
    if (mass.m_autoMask & ~zor::UInt32(zor::MassProperties::AUTO_GENERATE_ALL))
      archive.fail("automatic", "has unknown bits");
  }
  archive.endObject();
}

void StateAccess::readGeometry(Archive& archive, char const* name, ObjectTables&, GeometryImpl& impl) {
  if (impl.owner())
    archive.fail(name, "geometry '" + impl.geometry().getName() + "' is part of another body");
}

// Of where the body is, by which a reader sees that someone has edited that.
std::uint32_t StateAccess::placeChecksum(BodyImpl& body) {
  double numbers[24];
  zor::AffineMatrix4x4 const frames[2] = {body.frame()->getLocalMatrix(),
                                          zorBullet::fromBt(body.m_principal)};
  for (std::size_t i = 0; i < 24; ++i)
    numbers[i] = frames[i / 12](i % 12 / 3, i % 3);
  return checksum(std::string_view(reinterpret_cast<char const*>(numbers), sizeof numbers));
}

namespace {

void motionFields(Archive& archive, MotionState& motion) {
  field(archive, "pose", motion.pose);
  field(archive, "foreseenPose", motion.foreseenPose);
  field(archive, "foreseenVelocity", motion.foreseenVelocity);
  field(archive, "foreseenSpin", motion.foreseenSpin);
  choice<int>(archive, "activation", motion.activation,
              {{"active", ACTIVE_TAG},
               {"sleeping", ISLAND_SLEEPING},
               {"falling asleep", WANTS_DEACTIVATION},
               {"always active", DISABLE_DEACTIVATION},
               {"disabled", DISABLE_SIMULATION}});
  field(archive, "timeAtRest", motion.timeAtRest);
}

void finite(Archive& archive, char const* name, btVector3 const& vector) {
  if (archive.reading() && !zorBullet::fromBt(vector).isFinite())
    archive.fail(name, "is not finite");
}

} // namespace

void StateAccess::body(Archive& archive, ObjectTables& tables, Ref<zor::RigidBody>& body,
                       MotionState& motion) {
  using zor::RigidBody;
  if (archive.reading())
    body = new RigidBody;
  BodyImpl& impl = body->getImpl();
  btRigidBody& engine = impl.engine();
  property(archive, "name", static_cast<zor::Object&>(*body), &zor::Object::getName, &zor::Object::setName);
  choice<RigidBody::MotionControl>(archive, "motion", impl.m_control,
                                   {{"static", RigidBody::STATIC},
                                    {"kinematic", RigidBody::KINEMATICS},
                                    {"dynamic", RigidBody::DYNAMICS}});
  field(archive, "enabled", impl.m_enabled);
  field(archive, "autoSleep", impl.m_autoSleep);
  field(archive, "continuousCollision", impl.m_continuous);
  property(archive, "linearDamping", *body, &RigidBody::getLinearVelocityDamping,
           &RigidBody::setLinearVelocityDamping);
  property(archive, "angularDamping", *body, &RigidBody::getAngularVelocityDamping,
           &RigidBody::setAngularVelocityDamping);

  std::vector<zorCollide::Geometry*> geometries = pointers(impl.m_geometries);
  references(archive, "geometries", tables.geometries, geometries);
  if (archive.reading())
    for (zorCollide::Geometry* geometry : geometries) {
      readGeometry(archive, "geometries", tables, geometry->getImpl());
      checked(archive, "geometries", [&] { geometry->getImpl().leaves(impl.isDynamic()); });
      impl.m_geometries.push_back(geometry);
      geometry->getImpl().attach(impl, impl.frame(), geometry->getImpl().frame->getLocalMatrix());
    }
  massProperties(archive, impl);
  if (archive.reading())
    impl.applyMass();

  ownFrame(archive, tables, "frame", *impl.frame(), nullptr);
  if (archive.reading())
    checked(archive, "frame", [&] { zorBullet::checkRigid("RigidBody", impl.frame()->getLocalMatrix()); });
  btVector3 velocity = engine.getLinearVelocity(), spin = engine.getAngularVelocity();
  btVector3 force = engine.getTotalForce(), torque = engine.getTotalTorque();
  field(archive, "velocity", velocity);
  field(archive, "angularVelocity", spin);
  field(archive, "force", force);
  field(archive, "torque", torque);
  finite(archive, "velocity", velocity);
  finite(archive, "angularVelocity", spin);
  finite(archive, "force", force);
  finite(archive, "torque", torque);

  archive.beginObject("state");
  std::uint32_t place = placeChecksum(impl);
  field(archive, "placeChecksum", place);
  motionFields(archive, motion);
  field(archive, "acceleration", impl.m_acceleration);
  field(archive, "angularAcceleration", impl.m_angularAcceleration);
  archive.endObject();
  std::optional<BodyImpl::Move> move = impl.m_move;
  if (archive.version() >= 2 && archive.optional("move", move.has_value())) {
    if (!move)
      move.emplace(BodyImpl::Move{btTransform::getIdentity(), 0.0});
    archive.beginObject("move");
    field(archive, "target", move->target);
    field(archive, "timeLeft", move->left);
    if (archive.reading() && !(move->left >= 0))
      archive.fail("timeLeft", "must not be negative");
    if (archive.reading())
      checked(archive, "target",
              [&] { zorBullet::checkRigid("RigidBody", zorBullet::fromBt(move->target)); });
    archive.endObject();
  }
  if (!archive.reading())
    return;
  engine.setLinearVelocity(velocity);
  engine.setAngularVelocity(spin);
  engine.clearForces();
  engine.applyCentralForce(force);
  engine.applyTorque(torque);
  impl.setContinuous(impl.m_continuous);
  if (place == placeChecksum(impl)) {
    motion.apply(engine);
  } else { // edited by hand: the body is where its frame is
    impl.setModelTransform(zorBullet::toBt(impl.frame()->getLocalMatrix()));
    motion.applyActivation(engine);
    motion = MotionState::of(engine);
  }
  impl.m_move = move; // last, as setting a place gives a move up
}

void StateAccess::observerFrame(Archive& archive, ObjectTables& tables, Ref<zor::ObserverFrame>& frame) {
  if (archive.reading())
    frame = new zor::ObserverFrame;
  property(archive, "name", static_cast<zor::Object&>(*frame), &zor::Object::getName, &zor::Object::setName);
  zor::RigidBody* body = frame->getRigidBody();
  reference(archive, "body", tables.bodies, body, true);
  if (archive.reading() && body)
    frame->attachWithLocalTransform(body, zor::AffineMatrix4x4());
  ownFrame(archive, tables, "frame", *frame->getFrame(), body ? body->getFrame() : nullptr);
  field(archive, "enabled", frame->m_enabled);
}

} // namespace zorStream
