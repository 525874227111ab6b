#pragma once

#include <memory>
#include <set>
#include <vector>

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>

#include <zor/Frame.h>
#include <zor/Material.h>
#include <zor/observer_ptr.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>

#include "bullet/MassData.h"
#include "bullet/Ray.h"
#include "bullet/ShapeImpl.h"
#include "bullet/WorldObject.h"

namespace zorBullet {

class SpaceImpl;

/** The body that carries geometries, as a geometry sees it. */
class GeometryOwner {
public:
  virtual zor::RigidBody* getBody() = 0;

  /** \return true if the geometry has to be built from moving (volume) shapes */
  virtual bool isDynamic() const = 0;

  /** A geometry's shapes, local transform, material density, sensor or enable setting changed: the compound
   * and the mass have to be built again. */
  virtual void onGeometryChanged(GeometryImpl& geometry) = 0;

protected:
  ~GeometryOwner() = default;
};

/**
 * The engine's side of a geometry.
 *
 * A geometry with a body: solid leaves go into the body's compound, which the body builds from `leaves` (only
 * of geometries that are `isSolid`). A sensor, and a geometry without a body, has a collision object of its
 * own, which the space keeps in place.
 */
class GeometryImpl final : public ShapeHolder {
public:
  explicit GeometryImpl(zorCollide::Geometry& geometry);
  ~GeometryImpl();
  GeometryImpl(GeometryImpl const&) = delete;
  GeometryImpl& operator=(GeometryImpl const&) = delete;

  zorCollide::Geometry& geometry() const { return m_geometry; }

  // --- for bodies

  /**
   * Makes the geometry part of a body; it leaves its own collision object.
   * \param owner - the body
   * \param bodyFrame - becomes the parent of the geometry's frame
   * \param local - frame of the geometry in the body's
   */
  void attach(GeometryOwner& owner, zor::Frame* bodyFrame, zor::AffineMatrix4x4 const& local);

  /** Undoes attach. The geometry stays where it is in the world. */
  void detach();

  GeometryOwner* owner() const { return m_owner; }

  /** \return true if the geometry's leaves belong into the body's compound (enabled, no sensor) */
  bool isSolid() const { return enabled && !sensor; }

  /** Engine shapes, built on first use and kept until the shapes change. Bodies hold the set with the
   * compound. */
  std::shared_ptr<LeafSet const> leaves(bool moving);

  /** Frame of the geometry in the body's (or the world). */
  btTransform localTransform() const;

  /** Mass from volume and the material's density, in the geometry's frame. Zero for sensors. */
  MassData massData() const;

  // --- for spaces

  btTransform worldTransform() const;
  bool castRay(Ray const& ray, Hit& hit) const; // world frame
  void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const;

  void enterSpace(SpaceImpl& space);
  void leaveSpace();
  SpaceImpl* space() const { return m_space; }
  /** Takes the pose of the frame over into the geometry's own collision object, if it has one. */
  void moveObject();
  bool hasObject() const { return m_object != nullptr; }

  // --- for the geometry

  void addShape(zorCollide::Shape& shape, zor::AffineMatrix4x4 const& local);
  bool removeShape(zorCollide::Shape& shape);
  void shapesChanged();
  void filterChanged(); // who may meet whom
  void statusChanged(); // sensor, enable, material: body or own object are built again
  void poseChanged();   // local transform
  void onShapeChanged() override { shapesChanged(); }

  std::vector<btTransform> locals; // one a shape
  zor::ref_ptr<zor::Frame> frame;
  zor::ref_ptr<zor::Material> material;
  bool sensor = false;
  bool enabled = true;
  bool collisions = true;
  zor::UInt32Vector groups;
  std::set<GeometryImpl const*> disabled; // kept on both sides
  zorCollide::Geometry::ShapeChangeEvent shapeChange;
  zorCollide::Geometry::RemovalEvent removal;

private:
  void makeObject();
  void dropObject();
  void rebuildObject();

  zorCollide::Geometry& m_geometry;
  GeometryOwner* m_owner = nullptr;
  SpaceImpl* m_space = nullptr;
  std::shared_ptr<LeafSet const> m_leaves[2]; // fixed, moving
  std::unique_ptr<btCollisionShape> m_compound;
  std::shared_ptr<LeafSet const> m_objectLeaves;
  std::unique_ptr<btCollisionObject> m_object;
  WorldObject m_worldObject;
};

} // namespace zorBullet
