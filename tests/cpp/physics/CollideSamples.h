#pragma once

#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <zor/AffineMatrix4x4.h>
#include <zor/Vec3.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Box.h>
#include <zorCollide/Capsule.h>
#include <zorCollide/Compound.h>
#include <zorCollide/Cone.h>
#include <zorCollide/Convex.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/Sphere.h>
#include <zorCollide/Trimesh.h>

namespace samples {

using zor::Vec3;

/** A solid shape and, told independently, which points it holds. */
struct Solid {
  std::string name;
  zor::ref_ptr<zorCollide::Shape> shape;
  std::function<bool(Vec3 const&)> holds;
};

/** The corners and outward triangles of a box. */
inline zor::Vec3Vector boxVertices(Vec3 const& half) {
  zor::Vec3Vector vertices;
  for (int i = 0; i < 8; ++i)
    vertices.push_back(
        Vec3(i & 1 ? half.x() : -half.x(), i & 2 ? half.y() : -half.y(), i & 4 ? half.z() : -half.z()));
  return vertices;
}

inline zor::UInt32Vector boxIndices() {
  return {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
          2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
}

/** One of each solid shape, no size the same as another. */
inline std::vector<Solid> solids() {
  using namespace zorCollide;
  std::vector<Solid> all;
  all.push_back({"box", new Box(0.5, 0.8, 1.2), [](Vec3 const& p) {
                   return std::abs(p.x()) <= 0.5 && std::abs(p.y()) <= 0.8 && std::abs(p.z()) <= 1.2;
                 }});
  all.push_back({"sphere", new Sphere(0.9), [](Vec3 const& p) { return p.length() <= 0.9; }});
  all.push_back({"capsule", new Capsule(0.4, 1.3), [](Vec3 const& p) {
                   double const y = std::max(-0.65, std::min(0.65, p.y()));
                   return (p - Vec3(0, y, 0)).length() <= 0.4;
                 }});
  all.push_back({"cylinder", new Cylinder(0.6, 1.5),
                 [](Vec3 const& p) { return std::abs(p.y()) <= 0.75 && std::hypot(p.x(), p.z()) <= 0.6; }});
  all.push_back({"cone", new Cone(0.7, 1.6), [](Vec3 const& p) {
                   return std::abs(p.y()) <= 0.8 && std::hypot(p.x(), p.z()) <= 0.7 * (0.8 - p.y()) / 1.6;
                 }});
  zor::Vec3Vector const corners{Vec3(0, 0, 0), Vec3(1.5, 0, 0), Vec3(0, 1.2, 0), Vec3(0, 0, 0.9)};
  auto const inTetrahedron = [](Vec3 const& p) {
    return p.x() >= 0 && p.y() >= 0 && p.z() >= 0 && p.x() / 1.5 + p.y() / 1.2 + p.z() / 0.9 <= 1;
  };
  all.push_back({"convex", new Convex(corners), inTetrahedron});
  all.push_back({"trimesh", new Trimesh(corners, {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3}), inTetrahedron});
  auto* const compound = new Compound;
  compound->add(new Sphere(0.5), zor::AffineMatrix4x4::translate(0, 0, 0.8));
  compound->add(new Box(0.3, 0.4, 0.5), zor::AffineMatrix4x4::translate(0.2, 0, -0.4));
  all.push_back({"compound", compound, [](Vec3 const& p) {
                   return (p - Vec3(0, 0, 0.8)).length() <= 0.5 ||
                          (std::abs(p.x() - 0.2) <= 0.3 && std::abs(p.y()) <= 0.4 &&
                           std::abs(p.z() + 0.4) <= 0.5);
                 }});
  return all;
}

/** A frame that is neither at the origin nor along the axes. */
inline zor::AffineMatrix4x4 tilted() {
  return zor::AffineMatrix4x4(zor::Quat(0.7, Vec3(1, 2, -0.5)), Vec3(3, -2, 1.5));
}

inline Vec3 randomDirection(std::mt19937& random) {
  std::normal_distribution<double> normal;
  return Vec3(normal(random), normal(random), normal(random)).normal();
}

} // namespace samples
