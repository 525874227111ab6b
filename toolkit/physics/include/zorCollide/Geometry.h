#pragma once

#include <memory>

#include <zor/AffineMatrix4x4.h>
#include <zor/Frame.h>
#include <zor/Material.h>
#include <zor/Object.h>
#include <zor/Quat.h>
#include <zor/TypedEvent.h>
#include <zor/Vec3.h>

#include <zorCollide/Shape.h>

#ifndef SWIG
#include <zorCollide/GeometryObserver.h>

namespace zorBullet {
class GeometryImpl;
} // namespace zorBullet
#endif

namespace zor {
class RigidBody;
}

namespace zorCollide {

class Space;

/**
 * What collides: one or several shapes with a place in the world. A geometry belongs to at most one rigid
 * body, which carries it, and to at most one space; without a body it stands still where it is put.
 */
class Geometry : public zor::Object {
public:
  /** Raised after the geometry's shapes, or one of them, changed. */
  class ShapeChangeEvent : public zor::TypedEvent<zorCollide::Geometry*> {
#ifdef SWIG // inherited from a template that Python doesn't see
  public:
    /** Keeps a function listening to changes of a geometry's shapes. */
    class CallbackType {
    public:
      CallbackType();
      bool isValid() const;
      /** Stops listening. */
      void reset();
    };
    size_t getNumListeners() const;
#endif
  };

  /** Raised when the geometry has left a space, and with a null space when it is destroyed. */
  class RemovalEvent : public zor::TypedEvent<zorCollide::Space*, zorCollide::Geometry*> {};

  /** Creates a geometry without shapes. */
  Geometry();

  /**
   * Creates a geometry with one shape.
   * \param shape - the shape; null throws std::invalid_argument
   * \param localTransform - the shape's frame in the geometry's; must not scale
   */
  explicit Geometry(zorCollide::Shape* shape,
                    zor::AffineMatrix4x4 const& localTransform = zor::AffineMatrix4x4());

  /**
   * Adds a shape, which the geometry then holds.
   * \param shape - the shape; null throws std::invalid_argument
   * \param localTransform - the shape's frame in the geometry's; must not scale
   */
  void add(zorCollide::Shape* shape, zor::AffineMatrix4x4 const& localTransform = zor::AffineMatrix4x4());

  /**
   * Removes a shape.
   * \param shape - the shape
   * \return false if the geometry does not hold it
   */
  bool remove(zorCollide::Shape* shape);

  /** \return the shapes in the order in which they were added */
  zorCollide::ShapeRefVector const& getShapes() const { return m_shapes; }

  /** \return number of shapes */
  zor::UInt getNumShapes() const { return m_shapes.size(); }

  /**
   * \param index - less than the number of shapes, else std::out_of_range
   * \return the shape
   */
  zorCollide::Shape* getShape(zor::UInt index) const;

  /**
   * \param index - less than the number of shapes, else std::out_of_range
   * \return the shape's frame in the geometry's
   */
  zor::AffineMatrix4x4 getShapeTransform(zor::UInt index) const;

  /**
   * \param index - less than the number of shapes, else std::out_of_range
   * \param localTransform - the shape's frame in the geometry's; must not scale
   */
  void setShapeTransform(zor::UInt index, zor::AffineMatrix4x4 const& localTransform);

  /** \param material - what the geometry is made of; null for the default material */
  void setMaterial(zor::Material* material);
  /** \return what the geometry is made of; never null */
  zor::Material* getMaterial() const;

  /**
   * A sensor has contacts but no contact forces, no mass, and does not meet the other geometries of its body.
   * \param sensor - true to make it a sensor
   */
  void setSensor(bool sensor);
  /** \return true if the geometry is a sensor */
  bool isSensor() const;

  /** \param enable - false to have no contacts at all; rays still meet the geometry */
  void setEnableCollisions(bool enable);
  /** \return false if the geometry has no contacts at all */
  bool getEnableCollisions() const;

  /**
   * Turns contacts with one other geometry off or on, in every space.
   * \param other - the other geometry; null throws std::invalid_argument
   * \param enable - false to have no contacts with it
   */
  void setEnableCollisions(zorCollide::Geometry* other, bool enable);

  /**
   * \param other - another geometry
   * \return false if contacts with the other were turned off
   */
  bool getEnableCollisions(zorCollide::Geometry const* other) const;

  /** \param enable - false to take no part in contacts, rays or drawing */
  void setEnable(bool enable);
  /** \return false if the geometry takes no part in anything */
  bool getEnable() const;

  /** \param group - number of a collision group; see zorCollide::Space::setEnablePair */
  void addGroup(zor::UInt32 group);
  /**
   * \param group - number of a collision group
   * \return false if the geometry is not in the group
   */
  bool removeGroup(zor::UInt32 group);
  /**
   * \param group - number of a collision group
   * \return true if the geometry is in the group
   */
  bool hasGroup(zor::UInt32 group) const;
  /** \return the collision groups, ascending */
  zor::UInt32Vector const& getGroups() const;

  /** \return the body that carries the geometry, or null */
  zor::RigidBody* getRigidBody() const;

  /** \return the space that the geometry is in, or null */
  zorCollide::Space* getSpace() const;

  /** \return the geometry's frame, whose parent is the frame of the body; owned by the geometry */
  zor::Frame* getFrame() const;

  /** \return frame of the geometry in the world */
  zor::AffineMatrix4x4 getTransform() const;
  /** \return position in the world (m) */
  zor::Vec3 getPosition() const;
  /** \return rotation in the world */
  zor::Quat getRotation() const;
  /** \return frame of the geometry in the body's, or in the world without a body */
  zor::AffineMatrix4x4 getLocalTransform() const;

  /** \param transform - frame of the geometry in the world; must not scale, else std::invalid_argument */
  void setTransform(zor::AffineMatrix4x4 const& transform);
  /** \param position - position in the world (m) */
  void setPosition(zor::Vec3 const& position);
  /** \param rotation - rotation in the world */
  void setRotation(zor::Quat const& rotation);
  /** \param transform - frame of the geometry in the body's, or in the world without a body */
  void setLocalTransform(zor::AffineMatrix4x4 const& transform);

  /**
   * Gives the smallest box along the world's axes that holds the geometry now.
   * \param lower - gets the lower corner (m)
   * \param upper - gets the upper corner (m)
   */
  void getBounds(zor::Vec3& lower, zor::Vec3& upper) const;

  /** \return the event raised after a change of shapes */
  ShapeChangeEvent& getShapeChangeEvent() const;
  /** \return the event raised when the geometry leaves a space or is destroyed */
  RemovalEvent& getRemovalEvent() const;

#ifndef SWIG
  /** \return the first of those that are told when the geometry moves; null without any */
  zorCollide::GeometryObserver* getFirstObserver() const { return m_observers.first(); }

  /** \return false if all shapes lie in the geometry's own frame */
  bool hasShapeTransforms() const;

  zorBullet::GeometryImpl& getImpl() const { return *m_impl; }
#endif

protected:
  ~Geometry() override;

private:
  friend class zorBullet::GeometryImpl;
  friend class GeometryObserver;

  // Beside the shapes: whoever draws many geometries reads no more of each than it has to.
  zorCollide::GeometryObserverList m_observers;
  zorCollide::ShapeRefVector m_shapes;
  std::unique_ptr<zorBullet::GeometryImpl> m_impl;
};

/** Geometries in a row. */
typedef zor::Vector<zor::ref_ptr<zorCollide::Geometry>> GeometryRefVector;

} // namespace zorCollide
