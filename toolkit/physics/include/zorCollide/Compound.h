#pragma once

#include <zorCollide/Shape.h>

namespace zorCollide {

/** Several shapes that are used as one. */
class Compound : public Shape {
public:
  Compound();

  /**
   * Adds a shape; the compound holds a reference.
   * \param shape - the shape; null, or one that holds this compound itself, throws std::invalid_argument
   * \param localTransform - the shape's frame in the compound's; must not scale
   */
  void add(zorCollide::Shape* shape, zor::AffineMatrix4x4 const& localTransform = zor::AffineMatrix4x4());

  /**
   * Removes a shape.
   * \param shape - the shape
   * \return false if the compound does not hold it
   */
  bool remove(zorCollide::Shape* shape);

  /** \return number of shapes */
  zor::UInt getNumShapes() const;

  /**
   * \param index - less than the number of shapes, else std::out_of_range
   * \return the shape
   */
  zorCollide::Shape* getShape(zor::UInt index) const;

  /**
   * \param index - less than the number of shapes, else std::out_of_range
   * \return the shape's frame in the compound's
   */
  zor::AffineMatrix4x4 getLocalTransform(zor::UInt index) const;

protected:
  ~Compound() override;
};

} // namespace zorCollide
