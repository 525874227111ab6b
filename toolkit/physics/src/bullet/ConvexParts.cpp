#include "bullet/ConvexParts.h"

#include <algorithm>
#include <optional>

namespace zorBullet {
namespace {

constexpr int numCuts = 7;           // planes tried along each axis
constexpr double worthwhile = 0.005; // least saving, as a share of the whole hull

/** Triangles cut into pieces, three corners each. */
typedef std::vector<btVector3> Soup;

struct Cut {
  int axis = 0;
  double at = 0.0;
  double saving = 0.0;
};

struct Part {
  Soup triangles;
  Hull hull;
  Cut best;
};

/** Adds what lies on one side of an axis-aligned plane; side +1 keeps coordinates above. */
void clipTriangle(btVector3 const* corner, int axis, double at, double side, Soup& out) {
  btVector3 polygon[4];
  int count = 0;
  for (int i = 0; i < 3; ++i) {
    btVector3 const &from = corner[i], &to = corner[(i + 1) % 3];
    double const a = side * (from[axis] - at), b = side * (to[axis] - at);
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
    clipTriangle(&triangles[i], cut.axis, cut.at, side, out);
  return out;
}

Hull hullOf(Soup const& triangles) {
  return Hull::of(triangles.data(), triangles.size());
}

void findBestCut(Part& part) {
  btVector3 lower = part.triangles.front(), upper = lower;
  for (btVector3 const& point : part.triangles) {
    lower.setMin(point);
    upper.setMax(point);
  }
  for (int axis = 0; axis < 3; ++axis)
    for (int i = 1; i <= numCuts; ++i) {
      Cut cut{axis, lower[axis] + (upper[axis] - lower[axis]) * i / (numCuts + 1), 0.0};
      cut.saving = part.hull.volume - hullOf(clip(part.triangles, cut, 1.0)).volume -
                   hullOf(clip(part.triangles, cut, -1.0)).volume;
      if (cut.saving > part.best.saving)
        part.best = cut;
    }
}

std::optional<Part> makePart(Soup triangles) {
  Part part{std::move(triangles), {}, {}};
  part.hull = hullOf(part.triangles);
  if (part.hull.volume <= 0.0)
    return std::nullopt; // a flat rest
  findBestCut(part);
  return part;
}

} // namespace

std::vector<Hull> makeConvexParts(MeshData const& mesh, size_t count) {
  Soup all;
  for (size_t triangle = 0; 3 * triangle < mesh.indices.size(); ++triangle)
    for (size_t corner = 0; corner < 3; ++corner)
      all.push_back(mesh.vertex(triangle, corner));
  std::vector<Part> parts;
  auto const add = [&parts](Soup triangles) {
    if (auto part = makePart(std::move(triangles)))
      parts.push_back(std::move(*part));
  };
  add(std::move(all));
  while (!parts.empty() && parts.size() < count) {
    auto const worst = std::max_element(parts.begin(), parts.end(), [](Part const& a, Part const& b) {
      return a.best.saving < b.best.saving;
    });
    if (worst->best.saving < worthwhile * mesh.hull().volume)
      break;
    Part const part = std::move(*worst);
    parts.erase(worst);
    add(clip(part.triangles, part.best, 1.0));
    add(clip(part.triangles, part.best, -1.0));
  }
  std::vector<Hull> hulls;
  for (Part& part : parts)
    hulls.push_back(std::move(part.hull));
  if (hulls.empty())
    hulls.push_back(mesh.hull());
  return hulls;
}

} // namespace zorBullet
