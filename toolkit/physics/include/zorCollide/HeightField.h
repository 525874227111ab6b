#pragma once

#include <memory>

#include <zorCollide/Shape.h>

#ifndef SWIG
namespace zorBullet {
struct HeightGrid;
} // namespace zorBullet
#endif

namespace zorCollide {

/**
 * A landscape of heights along z over a grid in the x-y plane, centred at the origin: sample (0, 0) lies at
 * (-sizeX/2, -sizeY/2). Each grid cell is two triangles, split along the diagonal from its corner of lowest
 * indices to that of highest. A surface without thickness; a body that holds one must not be dynamic.
 */
class HeightField : public Shape {
public:
  /**
   * \param resolutionX - number of samples along x, at least 2
   * \param resolutionY - number of samples along y, at least 2
   * \param sizeX - size along x (m), positive
   * \param sizeY - size along y (m), positive
   * \param heights - resolutionX * resolutionY heights (m), x running fastest; none for a flat field at zero.
   * Another count, or a height that is not finite, throws std::invalid_argument
   */
  HeightField(zor::UInt resolutionX, zor::UInt resolutionY, zor::Real sizeX, zor::Real sizeY,
              zor::RealVector const& heights = zor::RealVector());

  /** \return number of samples along x */
  zor::UInt getResolutionX() const;
  /** \return number of samples along y */
  zor::UInt getResolutionY() const;
  /** \return size along x (m) */
  zor::Real getSizeX() const;
  /** \return size along y (m) */
  zor::Real getSizeY() const;

  /** \param heights - all heights (m), x running fastest; a wrong count or value throws std::invalid_argument
   */
  void setHeights(zor::RealVector const& heights);
  /** \return all heights (m), x running fastest */
  zor::RealVector const& getHeights() const;

  /**
   * \param xIndex - sample along x
   * \param yIndex - sample along y; a sample outside the grid throws std::out_of_range
   * \param height - the new height (m)
   */
  void setHeight(zor::UInt xIndex, zor::UInt yIndex, zor::Real height);

  /**
   * \param xIndex - sample along x
   * \param yIndex - sample along y; a sample outside the grid throws std::out_of_range
   * \return the height (m)
   */
  zor::Real getHeight(zor::UInt xIndex, zor::UInt yIndex) const;

  /** \return all samples as points (m), x running fastest; made on each call */
  zor::Vec3Vector getVertices() const;
  /** \return three vertex indices a triangle, counter-clockwise seen from above; made on each call */
  zor::UInt32Vector getIndices() const;

protected:
  ~HeightField() override;

private:
  explicit HeightField(std::shared_ptr<zorBullet::HeightGrid> grid);

  std::shared_ptr<zorBullet::HeightGrid> m_grid; // shared with the engine's shapes
};

} // namespace zorCollide
