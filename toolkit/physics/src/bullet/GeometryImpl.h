#pragma once

#include <memory>
#include <set>
#include <vector>

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>

#include <zor/Frame.h>
#include <zor/Material.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/RayHit.h>

#include "bullet/MassData.h"
#include "bullet/Ray.h"
#include "bullet/ShapeImpl.h"
#include "bullet/WorldObject.h"

namespace zorBullet {

class GeometryFrame;
class SpaceImpl;

/** The body that carries geometries, as a geometry sees it. */
class GeometryOwner {
public:
  virtual zor::RigidBody* getBody() = 0;

  /** \return true if the geometry has to be built from shapes with a volume */
  virtual bool isDynamic() const = 0;

  /** A geometry's shapes, local transform, material, sensor or enable setting changed: the compound and the
   * mass have to be built again. */
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

  /** What everything without a material is made of. */
  static zor::Material* defaultMaterial();

  // --- for bodies

  /**
   * Makes the geometry part of a body; it gives up its own collision object, unless it is a sensor. Does not
   * call the body back.
   * \param owner - the body
   * \param bodyFrame - becomes the parent of the geometry's frame
   * \param local - frame of the geometry in the body's
   */
  void attach(GeometryOwner& owner, zor::Frame* bodyFrame, zor::AffineMatrix4x4 const& local);

  /** Undoes attach, without calling the body back. The geometry stays where it is in the world. */
  void detach();

  GeometryOwner* owner() const { return m_owner; }

  /** \return true if the geometry's leaves belong into the body's compound (enabled, no sensor) */
  bool isSolid() const { return enabled && !sensor; }

  /** \return false if a shape cannot be part of a dynamic body (planes and height fields) */
  bool canMove() const;

  /** Engine shapes, built on first use and kept until the shapes change. Bodies hold the set with the
   * compound. \param moving - for dynamic bodies; throws std::invalid_argument if `canMove` is false */
  std::shared_ptr<LeafSet const> leaves(bool moving);

  /** Frame of the geometry in the body's (or the world). */
  btTransform localTransform() const;

  /** Mass from volume and the material's density, in the geometry's frame. Zero unless solid. */
  MassData massData() const;

  // --- for spaces

  btTransform worldTransform() const;
  bool castRay(Ray const& ray, Hit& hit) const; // world frame
  /** Adds the nearest hit on each shape. */
  void castRayOnEach(Ray const& ray, double maxDistance, zorCollide::RayHitVector& hits) const;
  void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const;

  void enterSpace(SpaceImpl& space);
  void leaveSpace(); // raises nothing
  /** Tells all who want to know that the geometry has left a space; whoever calls holds the geometry. */
  void raiseRemoval(zorCollide::Space& from);
  SpaceImpl* space() const { return m_space; }
  /** Takes the pose of the frame over into the geometry's own collision object, if it has one. */
  void moveObject();
  /** True for a sensor on a body, whose own collision object has to follow. */
  bool followsBody() const { return m_object && m_owner; }
  /** The geometry's own collision object, or null. */
  btCollisionObject* object() const { return m_object.get(); }

  // --- for the geometry

  void addShape(zorCollide::Shape& shape, btTransform const& local);
  bool removeShape(zorCollide::Shape& shape);
  void setMaterial(zor::Material* newMaterial);
  void setEnablePair(GeometryImpl& other, bool enable);
  void shapesChanged();
  void filterChanged(); // who may meet whom
  void statusChanged(); // sensor, enable: body or own object are built again
  void poseChanged();   // the frame was moved in its parent
  void tellMoved() const { m_geometry.m_observers.tellMoved(); }
  /** Sets the frame of a geometry that is in no space, and tells nobody. */
  void placeFrame(zor::Frame* parent, zor::AffineMatrix4x4 const& local);
  void onShapeChanged() override { shapesChanged(); }

  std::vector<btTransform> locals; // one a shape
  zor::ref_ptr<zor::Frame> frame;
  zor::ref_ptr<zor::Material> material; // never null
  bool sensor = false;
  bool enabled = true;
  bool collisions = true;
  bool shapesPlaced = false;        // whether any of the locals is not the identity
  zor::UInt32Vector groups;         // ascending
  std::set<GeometryImpl*> disabled; // kept on both sides
  zorCollide::Geometry::ShapeChangeEvent shapeChange;
  zorCollide::Geometry::RemovalEvent removal;

private:
  void checkMovable() const;
  void removeLast();
  void makeObject();
  void dropObject();
  void rebuild();
  btCollisionShape* makeObjectShape();
  void raiseRemovalAtEnd() noexcept;

  zorCollide::Geometry& m_geometry;
  GeometryOwner* m_owner = nullptr;
  SpaceImpl* m_space = nullptr;
  zor::ref_ptr<GeometryFrame> m_frame;        // the same as frame
  std::shared_ptr<LeafSet const> m_leaves[2]; // fixed, moving
  // Own collision object: last in, first out.
  WorldObject m_worldObject;
  std::shared_ptr<LeafSet const> m_objectLeaves;
  std::unique_ptr<btCollisionShape> m_compound;
  btTransform m_objectOffset; // of the object in the geometry
  std::unique_ptr<btCollisionObject> m_object;
};

/** Tells the geometry when someone moves its frame. */
class GeometryFrame final : public zor::Frame {
public:
  explicit GeometryFrame(GeometryImpl& geometry) : m_geometry(&geometry) {}

  /** The geometry is gone, or does not want to know. */
  void setListener(GeometryImpl* geometry) { m_geometry = geometry; }

protected:
  ~GeometryFrame() override = default;
  void changed() override {
    if (m_geometry)
      m_geometry->poseChanged();
  }
  void moved() override {
    if (m_geometry)
      m_geometry->tellMoved();
  }

private:
  GeometryImpl* m_geometry;
};

} // namespace zorBullet
