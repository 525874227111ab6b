#include "ShapeTessellator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "MeshBuilder.h"

namespace zorOSG {

namespace {

/** One ring of a surface of revolution about y. */
struct ProfilePoint {
  float radius;
  float y;
  osg::Vec2 normal; // radial and axial part
  float v;
  bool cap = false; // textured from above instead of around
};

osg::Vec2 profileTextureCoordinate(ProfilePoint const& point, float turn, float sine, float cosine,
                                   float capRadius) {
  if (!point.cap)
    return {turn, point.v};
  float const scale = point.radius / (2.0f * capRadius);
  return {0.5f + sine * scale, 0.5f - cosine * scale * (point.normal.y() < 0.0f ? -1.0f : 1.0f)};
}

bool sameRing(ProfilePoint const& a, ProfilePoint const& b) {
  return a.radius == b.radius && a.y == b.y;
}

/** Turns a profile, given from the bottom up, into a surface. Two points at one place make a sharp edge. */
osg::ref_ptr<osg::Geometry> revolve(std::vector<ProfilePoint> const& profile, unsigned int segments,
                                    float capRadius = 1.0f) {
  MeshBuilder mesh;
  mesh.reserve(profile.size() * (segments + 1), profile.size() * segments * 2);
  for (ProfilePoint const& point : profile) {
    for (unsigned int i = 0; i <= segments; ++i) {
      float const turn = static_cast<float>(i) / static_cast<float>(segments);
      // The seam closes exactly: both of its sides are computed from the same angle.
      double const angle = 2.0 * std::numbers::pi * (i % segments) / segments;
      float const sine = static_cast<float>(std::sin(angle));
      float const cosine = static_cast<float>(std::cos(angle));
      mesh.vertex(osg::Vec3(point.radius * sine, point.y, point.radius * cosine),
                  osg::Vec3(point.normal.x() * sine, point.normal.y(), point.normal.x() * cosine),
                  profileTextureCoordinate(point, turn, sine, cosine, capRadius));
    }
  }
  unsigned int const ringSize = segments + 1;
  for (unsigned int ring = 0; ring + 1 < profile.size(); ++ring) {
    if (sameRing(profile[ring], profile[ring + 1]))
      continue;
    for (unsigned int i = 0; i < segments; ++i) {
      unsigned int const low = ring * ringSize + i;
      unsigned int const high = low + ringSize;
      if (profile[ring].radius > 0.0f)
        mesh.triangle(low, low + 1, high + 1);
      if (profile[ring + 1].radius > 0.0f)
        mesh.triangle(low, high + 1, high);
    }
  }
  return mesh.finish();
}

/** Points of a circle arc about (0, centre), from one latitude to another (radians). */
void appendArc(std::vector<ProfilePoint>& profile, float radius, float centre, double from, double to,
               unsigned int steps, float vFrom, float vTo) {
  for (unsigned int i = 0; i <= steps; ++i) {
    double const part = static_cast<double>(i) / steps;
    double const latitude = from + (to - from) * part;
    bool const pole = std::abs(std::abs(latitude) - std::numbers::pi / 2.0) < 1e-9;
    osg::Vec2 const normal(pole ? 0.0f : static_cast<float>(std::cos(latitude)),
                           static_cast<float>(std::sin(latitude)));
    profile.push_back({radius * normal.x(), centre + radius * normal.y(), normal,
                       vFrom + (vTo - vFrom) * static_cast<float>(part)});
  }
}

} // namespace

unsigned int segmentsForDetail(float detailRatio) {
  constexpr float segmentsAtOne = 32.0f;
  float const limited = std::clamp(detailRatio, 0.05f, 8.0f);
  // A multiple of four keeps the extreme points on the axes, and with them the exact bounds.
  return std::max(8u, 4u * static_cast<unsigned int>(std::lround(limited * segmentsAtOne / 4.0f)));
}

osg::ref_ptr<osg::Geometry> tessellateBox(osg::Vec3 const& halfExtents) {
  MeshBuilder mesh;
  mesh.reserve(24, 12);
  for (int axis = 0; axis < 3; ++axis) {
    for (float const side : {-1.0f, 1.0f}) {
      osg::Vec3 normal, u, v;
      normal[axis] = side;
      u[(axis + 1) % 3] = 1.0f;
      v[(axis + 2) % 3] = 1.0f;
      if (axis == 1) // z up on the y faces as well, so that a picture stands upright on all sides
        std::swap(u, v);
      if (((u ^ v) * normal) < 0.0f)
        u = -u;
      auto const corner = [&](float a, float b) {
        return mesh.vertex(osg::componentMultiply(normal + u * a + v * b, halfExtents), normal,
                           osg::Vec2(0.5f + 0.5f * a, 0.5f + 0.5f * b));
      };
      unsigned int const first = corner(-1.0f, -1.0f);
      corner(1.0f, -1.0f);
      corner(1.0f, 1.0f);
      corner(-1.0f, 1.0f);
      mesh.quad(first, first + 1, first + 2, first + 3);
    }
  }
  return mesh.finish();
}

osg::ref_ptr<osg::Geometry> tessellateSphere(float radius, unsigned int segments) {
  std::vector<ProfilePoint> profile;
  appendArc(profile, radius, 0.0f, -std::numbers::pi / 2.0, std::numbers::pi / 2.0, segments / 2, 0.0f, 1.0f);
  return revolve(profile, segments);
}

osg::ref_ptr<osg::Geometry> tessellateCapsule(float radius, float height, unsigned int segments) {
  std::vector<ProfilePoint> profile;
  unsigned int const steps = std::max(2u, segments / 4);
  float const arc = static_cast<float>(std::numbers::pi / 2.0) * radius;
  float const capShare = arc / (2.0f * arc + height);
  appendArc(profile, radius, -0.5f * height, -std::numbers::pi / 2.0, 0.0, steps, 0.0f, capShare);
  appendArc(profile, radius, 0.5f * height, 0.0, std::numbers::pi / 2.0, steps, 1.0f - capShare, 1.0f);
  return revolve(profile, segments);
}

osg::ref_ptr<osg::Geometry> tessellateCylinder(float radius, float height, unsigned int segments) {
  float const top = 0.5f * height;
  osg::Vec2 const down(0.0f, -1.0f), out(1.0f, 0.0f), up(0.0f, 1.0f);
  return revolve({{0.0f, -top, down, 0.0f, true},
                  {radius, -top, down, 0.0f, true},
                  {radius, -top, out, 0.0f},
                  {radius, top, out, 1.0f},
                  {radius, top, up, 0.0f, true},
                  {0.0f, top, up, 0.0f, true}},
                 segments, radius);
}

osg::ref_ptr<osg::Geometry> tessellateCone(float radius, float height, unsigned int segments) {
  float const top = 0.5f * height;
  osg::Vec2 slope(height, radius);
  slope.normalize();
  osg::Vec2 const down(0.0f, -1.0f);
  std::vector<ProfilePoint> profile{{0.0f, -top, down, 0.0f, true}, {radius, -top, down, 0.0f, true}};
  // Rings between base and tip keep the shading smooth where the triangles would grow long and thin.
  constexpr unsigned int rings = 4;
  for (unsigned int i = 0; i <= rings; ++i) {
    float const part = static_cast<float>(i) / static_cast<float>(rings);
    profile.push_back({i == rings ? 0.0f : radius * (1.0f - part), -top + height * part, slope, part});
  }
  return revolve(profile, segments, radius);
}

osg::ref_ptr<osg::Geometry> tessellatePlane(osg::Plane const& plane) {
  osg::Vec3 normal = plane.getNormal();
  float const length = normal.normalize();
  osg::Vec3 const centre = normal * static_cast<float>(-plane[3] / length);
  osg::Vec3 u = std::abs(normal.x()) < 0.9f ? osg::Vec3(1.0f, 0.0f, 0.0f) : osg::Vec3(0.0f, 1.0f, 0.0f);
  u -= normal * (u * normal);
  u.normalize();
  osg::Vec3 const v = normal ^ u;

  // Cells instead of one square: light and fog computed per vertex would be wrong over such a size.
  constexpr unsigned int cells = 20;
  MeshBuilder mesh;
  mesh.reserve((cells + 1) * (cells + 1), cells * cells * 2);
  for (unsigned int row = 0; row <= cells; ++row) {
    for (unsigned int column = 0; column <= cells; ++column) {
      float const a = (2.0f * static_cast<float>(column) / cells - 1.0f) * infinitePlaneHalfSize;
      float const b = (2.0f * static_cast<float>(row) / cells - 1.0f) * infinitePlaneHalfSize;
      mesh.vertex(centre + u * a + v * b, normal, osg::Vec2(a, b)); // one repetition a metre
    }
  }
  for (unsigned int row = 0; row < cells; ++row) {
    for (unsigned int column = 0; column < cells; ++column) {
      unsigned int const first = row * (cells + 1) + column;
      mesh.quad(first, first + 1, first + cells + 2, first + cells + 1);
    }
  }
  return mesh.finish();
}

osg::ref_ptr<osg::Geometry> tessellateHeightField(unsigned int resolutionX, unsigned int resolutionY,
                                                  float sizeX, float sizeY, std::span<float const> heights) {
  MeshBuilder mesh;
  if (resolutionX < 2 || resolutionY < 2)
    return mesh.finish();
  float const stepX = sizeX / static_cast<float>(resolutionX - 1);
  float const stepY = sizeY / static_cast<float>(resolutionY - 1);
  auto const height = [&](unsigned int x, unsigned int y) { return heights[y * resolutionX + x]; };
  mesh.reserve(heights.size(), 2 * heights.size());
  for (unsigned int y = 0; y < resolutionY; ++y) {
    for (unsigned int x = 0; x < resolutionX; ++x) {
      unsigned int const left = x > 0 ? x - 1 : x, right = std::min(x + 1, resolutionX - 1);
      unsigned int const front = y > 0 ? y - 1 : y, back = std::min(y + 1, resolutionY - 1);
      float const slopeX = (height(right, y) - height(left, y)) / (static_cast<float>(right - left) * stepX);
      float const slopeY = (height(x, back) - height(x, front)) / (static_cast<float>(back - front) * stepY);
      osg::Vec3 normal(-slopeX, -slopeY, 1.0f);
      normal.normalize();
      osg::Vec2 const share(static_cast<float>(x) / static_cast<float>(resolutionX - 1),
                            static_cast<float>(y) / static_cast<float>(resolutionY - 1));
      mesh.vertex(osg::Vec3((share.x() - 0.5f) * sizeX, (share.y() - 0.5f) * sizeY, height(x, y)), normal,
                  share);
    }
  }
  for (unsigned int y = 0; y + 1 < resolutionY; ++y) {
    for (unsigned int x = 0; x + 1 < resolutionX; ++x) {
      unsigned int const first = y * resolutionX + x;
      mesh.quad(first, first + 1, first + resolutionX + 1, first + resolutionX);
    }
  }
  return mesh.finish();
}

} // namespace zorOSG
