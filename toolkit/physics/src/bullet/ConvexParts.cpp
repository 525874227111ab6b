#include "bullet/ConvexParts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "bullet/RayTriangle.h"

namespace zorBullet {
namespace {

constexpr int numCuts = 7;                 // planes tried along each axis
constexpr size_t numSamples = 300;         // points with which the empty part of a hull is measured
constexpr size_t maxTrialTriangles = 2000; // enough to choose a plane by
constexpr double worthwhile = 0.01;        // least emptiness, as a share of the whole hull

/** Triangles cut into pieces, three corners each. */
typedef std::vector<btVector3> Soup;

struct Cut {
  int axis = 0;
  double at = 0.0;
};

struct Part {
  Soup triangles;
  Hull hull;
  double empty = 0.0; // volume of the hull outside the mesh
};

/** Counts how often a line crosses the mesh. */
class CrossingCounter final : public btTriangleCallback {
public:
  explicit CrossingCounter(Ray const& ray) : m_ray(ray) {}

  void processTriangle(btVector3* triangle, int, int) override {
    Hit hit;
    count += hitTriangle(m_ray, triangle[0], triangle[1], triangle[2], hit) ? 1 : 0;
  }

  int count = 0;

private:
  Ray const& m_ray;
};

bool isInside(MeshData const& mesh, btVector3 const& point, double reach) {
  Ray const ray{point, btVector3(0.5377, 0.6181, 0.5734).normalized()}; // along no axis
  CrossingCounter counter(ray);
  mesh.tree().performRaycast(&counter, point, point + ray.direction * reach);
  return counter.count % 2 == 1;
}

bool isInside(Hull const& hull, btVector3 const& point) {
  for (size_t i = 0; i < hull.normals.size(); ++i)
    if (hull.normals[i].dot(point) > hull.constants[i])
      return false;
  return true;
}

void findBox(std::vector<btVector3> const& points, btVector3& lower, btVector3& upper) {
  lower = upper = points.front();
  for (btVector3 const& point : points) {
    lower.setMin(point);
    upper.setMax(point);
  }
}

/** Volume of the hull that the mesh leaves empty; all of it where the mesh has no inside. */
double measureEmpty(MeshData const& mesh, Hull const& hull) {
  if (!mesh.isClosed())
    return hull.volume;
  btVector3 lower, upper;
  findBox(hull.corners, lower, upper);
  double const reach = 2.0 * (mesh.hull().corners.front() - lower).length() + 1e3 * (upper - lower).length();
  std::minstd_rand random; // the same parts each time
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  size_t in = 0, empty = 0;
  for (size_t i = 0; i < numSamples; ++i) {
    btVector3 const point =
        lower + (upper - lower) * btVector3(uniform(random), uniform(random), uniform(random));
    if (!isInside(hull, point))
      continue;
    ++in;
    empty += isInside(mesh, point, reach) ? 0 : 1;
  }
  return in ? hull.volume * static_cast<double>(empty) / static_cast<double>(in) : 0.0;
}

/** Adds what lies on one side of an axis-aligned plane; side +1 keeps coordinates above. */
void clipTriangle(btVector3 const* corner, Cut const& cut, double side, Soup& out) {
  btVector3 polygon[4];
  int count = 0;
  for (int i = 0; i < 3; ++i) {
    btVector3 const &from = corner[i], &to = corner[(i + 1) % 3];
    double const a = side * (from[cut.axis] - cut.at), b = side * (to[cut.axis] - cut.at);
    if (a >= 0.0)
      polygon[count++] = from;
    if ((a > 0.0 && b < 0.0) || (a < 0.0 && b > 0.0))
      polygon[count++] = from.lerp(to, a / (a - b));
  }
  for (int i = 2; i < count; ++i)
    out.insert(out.end(), {polygon[0], polygon[i - 1], polygon[i]});
}

Soup clip(Soup const& triangles, Cut const& cut, double side) {
  Soup out;
  out.reserve(triangles.size());
  for (size_t i = 0; i + 2 < triangles.size(); i += 3)
    clipTriangle(&triangles[i], cut, side, out);
  return out;
}

Hull hullOf(Soup const& triangles) {
  return Hull::of(triangles.data(), triangles.size());
}

Soup thinOut(Soup const& triangles) {
  size_t const step = 1 + triangles.size() / (3 * maxTrialTriangles);
  Soup out;
  for (size_t i = 0; i + 2 < triangles.size(); i += 3 * step)
    out.insert(out.end(), {triangles[i], triangles[i + 1], triangles[i + 2]});
  return out;
}

/** The plane that leaves the least volume; among equals one across the middle of the longest side, because a
 * ring saves nothing until it is cut twice. */
Cut findBestCut(Part const& part) {
  Soup const trial = thinOut(part.triangles);
  btVector3 lower, upper;
  findBox(trial, lower, upper);
  btVector3 const size = upper - lower;
  Cut best;
  double least = std::numeric_limits<double>::infinity();
  for (int axis = 0; axis < 3; ++axis)
    for (int i = 1; i <= numCuts; ++i) {
      double const share = static_cast<double>(i) / (numCuts + 1);
      Cut const cut{axis, lower[axis] + size[axis] * share};
      double const volume = hullOf(clip(trial, cut, 1.0)).volume + hullOf(clip(trial, cut, -1.0)).volume;
      double const uneven = std::abs(share - 0.5) + 1.0 - size[axis] / size[size.maxAxis()];
      double const cost = volume / part.hull.volume + 0.05 * uneven;
      if (cost < least) {
        least = cost;
        best = cut;
      }
    }
  return best;
}

void addPart(MeshData const& mesh, Soup triangles, std::vector<Part>& parts) {
  Part part{std::move(triangles), {}, 0.0};
  part.hull = hullOf(part.triangles);
  if (part.hull.volume <= 0.0)
    return; // a flat rest
  part.empty = measureEmpty(mesh, part.hull);
  parts.push_back(std::move(part));
}

} // namespace

std::vector<Hull> makeConvexParts(MeshData const& mesh, size_t count) {
  Soup all;
  for (size_t triangle = 0; 3 * triangle < mesh.indices.size(); ++triangle)
    for (size_t corner = 0; corner < 3; ++corner)
      all.push_back(mesh.vertex(triangle, corner));
  std::vector<Part> parts;
  addPart(mesh, std::move(all), parts);
  while (!parts.empty() && parts.size() < count) {
    auto const worst = std::max_element(parts.begin(), parts.end(),
                                        [](Part const& a, Part const& b) { return a.empty < b.empty; });
    if (worst->empty < worthwhile * mesh.hull().volume)
      break;
    Part const part = std::move(*worst);
    parts.erase(worst);
    Cut const cut = findBestCut(part);
    addPart(mesh, clip(part.triangles, cut, 1.0), parts);
    addPart(mesh, clip(part.triangles, cut, -1.0), parts);
  }
  std::vector<Hull> hulls;
  for (Part& part : parts)
    hulls.push_back(std::move(part.hull));
  if (hulls.empty())
    hulls.push_back(mesh.hull());
  return hulls;
}

} // namespace zorBullet
