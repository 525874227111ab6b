#pragma once

#include <vector>

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>

namespace zor {
class RigidBody;
}

namespace zorBullet {

class GeometryImpl;

/**
 * What the user pointer of every collision object in the world points to. Call `attachTo` on each collision
 * object: it also asks the engine for the contact callback that materials and pairs need.
 */
struct WorldObject {
  zor::RigidBody* body = nullptr;        // null for a geometry that stands by itself
  std::vector<GeometryImpl*> geometries; // those whose leaves are in the object's shape
  bool sensor = false;                   // the object stands for a sensor geometry

  void attachTo(btCollisionObject& object) {
    object.setUserPointer(this);
    object.setCollisionFlags(object.getCollisionFlags() | btCollisionObject::CF_CUSTOM_MATERIAL_CALLBACK);
  }

  static WorldObject* of(btCollisionObject const& object) {
    return static_cast<WorldObject*>(object.getUserPointer());
  }
};

} // namespace zorBullet
