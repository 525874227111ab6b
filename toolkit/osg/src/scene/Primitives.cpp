#include <zorOSG/Primitives.h>

#include <array>
#include <stdexcept>
#include <vector>

#include <zorOSG/RenderState.h>

#include "Checks.h"
#include "Convert.h"
#include "LineBuilder.h"
#include "MeshBuilder.h"
#include "ShapeTessellator.h"

namespace zorOSG {

namespace {

osg::Vec4 const gridColor(0.45f, 0.45f, 0.48f, 1.0f);

osg::ref_ptr<osg::Geode> geodeOf(osg::Drawable* drawable) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(drawable);
  return geode;
}

void requireCells(char const* function, char const* name, unsigned int count, unsigned int limit) {
  if (count < 1 || count > limit)
    throw std::invalid_argument(std::string(function) + ": " + name + " must be 1 to " +
                                std::to_string(limit) + ", not " + std::to_string(count));
}

/** Lines along one axis of a grid, at all corners of the cells of two others. */
void addGridLines(LineBuilder& lines, osg::Vec3 const& origin, osg::Vec3 const& along, osg::Vec3 const& axis1,
                  unsigned int count1, osg::Vec3 const& axis2, unsigned int count2) {
  for (unsigned int i = 0; i <= count1; ++i) {
    for (unsigned int k = 0; k <= count2; ++k) {
      osg::Vec3 const from = origin + axis1 * (static_cast<float>(i) / static_cast<float>(count1)) +
                             axis2 * (static_cast<float>(k) / static_cast<float>(count2));
      lines.segment(from, from + along, gridColor);
    }
  }
}

osg::ref_ptr<osg::Geometry> lineGrid(unsigned int resU, unsigned int resV, osg::Vec3 const& origin,
                                     osg::Vec3 const& axisU, osg::Vec3 const& axisV) {
  LineBuilder lines;
  for (unsigned int i = 0; i <= resU; ++i) {
    osg::Vec3 const from = origin + axisU * (static_cast<float>(i) / static_cast<float>(resU));
    lines.segment(from, from + axisV, gridColor);
  }
  for (unsigned int i = 0; i <= resV; ++i) {
    osg::Vec3 const from = origin + axisV * (static_cast<float>(i) / static_cast<float>(resV));
    lines.segment(from, from + axisU, gridColor);
  }
  return lines.finish(1.0f);
}

osg::ref_ptr<osg::Geometry> filledGrid(unsigned int resU, unsigned int resV, osg::Vec3 const& origin,
                                       osg::Vec3 const& axisU, osg::Vec3 const& axisV) {
  osg::Vec3 normal = axisU ^ axisV;
  normal.normalize();
  MeshBuilder mesh;
  mesh.reserve((resU + 1) * (resV + 1), 2 * resU * resV);
  for (unsigned int v = 0; v <= resV; ++v) {
    for (unsigned int u = 0; u <= resU; ++u) {
      osg::Vec2 const share(static_cast<float>(u) / static_cast<float>(resU),
                            static_cast<float>(v) / static_cast<float>(resV));
      mesh.vertex(origin + axisU * share.x() + axisV * share.y(), normal, share);
    }
  }
  for (unsigned int v = 0; v < resV; ++v) {
    for (unsigned int u = 0; u < resU; ++u) {
      unsigned int const first = v * (resU + 1) + u;
      mesh.quad(first, first + 1, first + resU + 2, first + resU + 1);
    }
  }
  return mesh.finish();
}

zor::Vec4f single(zor::Vec4 const& color) {
  return zor::Vec4f(color);
}

} // namespace

osg::Geometry* createGrid(unsigned int resU, unsigned int resV, osg::Vec3 const& origin,
                          osg::Vec3 const& axisU, osg::Vec3 const& axisV, bool filled) {
  requireCells("createGrid", "resU", resU, 10000);
  requireCells("createGrid", "resV", resV, 10000);
  requireFinite("createGrid", "origin", origin);
  requireFinite("createGrid", "axisU", axisU);
  requireFinite("createGrid", "axisV", axisV);
  return (filled ? filledGrid(resU, resV, origin, axisU, axisV) : lineGrid(resU, resV, origin, axisU, axisV))
      .release();
}

osg::Geode* createGrid(unsigned int resU, unsigned int resV, zor::Vec3 const& origin, zor::Vec3 const& axisU,
                       zor::Vec3 const& axisV, osg::Group* root) {
  requireGiven("createGrid", "root", root);
  osg::ref_ptr<osg::Geode> const geode =
      geodeOf(createGrid(resU, resV, toOsgFloat(origin), toOsgFloat(axisU), toOsgFloat(axisV)));
  root->addChild(geode);
  return geode.get();
}

osg::Geometry* create3DGrid(unsigned int resU, unsigned int resV, unsigned int resW, osg::Vec3 const& origin,
                            osg::Vec3 const& axisU, osg::Vec3 const& axisV, osg::Vec3 const& axisW,
                            float lineWidth) {
  requireCells("create3DGrid", "resU", resU, 200);
  requireCells("create3DGrid", "resV", resV, 200);
  requireCells("create3DGrid", "resW", resW, 200);
  requireFinite("create3DGrid", "origin", origin);
  requireFinite("create3DGrid", "axisU", axisU);
  requireFinite("create3DGrid", "axisV", axisV);
  requireFinite("create3DGrid", "axisW", axisW);
  requirePositive("create3DGrid", "lineWidth", lineWidth);
  LineBuilder lines;
  addGridLines(lines, origin, axisU, axisV, resV, axisW, resW);
  addGridLines(lines, origin, axisV, axisU, resU, axisW, resW);
  addGridLines(lines, origin, axisW, axisU, resU, axisV, resV);
  return lines.finish(lineWidth).release();
}

osg::Geode* create3DGrid(unsigned int resU, unsigned int resV, unsigned int resW, zor::Vec3 const& origin,
                         zor::Vec3 const& axisU, zor::Vec3 const& axisV, zor::Vec3 const& axisW,
                         float lineWidth, osg::Group* root) {
  requireGiven("create3DGrid", "root", root);
  osg::ref_ptr<osg::Geode> const geode =
      geodeOf(create3DGrid(resU, resV, resW, toOsgFloat(origin), toOsgFloat(axisU), toOsgFloat(axisV),
                           toOsgFloat(axisW), lineWidth));
  root->addChild(geode);
  return geode.get();
}

osg::Geode* createCubeLines(zor::Vec3 const& position, zor::Vec3 const& boxHalfVec3,
                            zorRender::Color const& color, zor::Real lineWidth) {
  requirePositive("createCubeLines", "lineWidth", lineWidth);
  requireFinite("createCubeLines", "position", position);
  requireFinite("createCubeLines", "boxHalfVec3", boxHalfVec3);
  osg::Vec3 const centre = toOsgFloat(position), half = toOsgFloat(boxHalfVec3);
  auto const corner = [&](unsigned int bits) {
    osg::Vec3 const side(bits & 1 ? 1.0f : -1.0f, bits & 2 ? 1.0f : -1.0f, bits & 4 ? 1.0f : -1.0f);
    return centre + osg::componentMultiply(side, half);
  };
  LineBuilder lines;
  for (unsigned int from = 0; from < 8; ++from)
    for (unsigned int const axis : {1u, 2u, 4u})
      if (!(from & axis))
        lines.segment(corner(from), corner(from | axis), toOsg(color.asVec4f()));
  return geodeOf(lines.finish(static_cast<float>(lineWidth))).release();
}

osg::Geode* createLine(zor::Vec3 const& p1, zor::Vec3 const& p2, zor::Vec4 const& color, float width) {
  requirePositive("createLine", "width", width);
  requireFinite("createLine", "p1", p1);
  requireFinite("createLine", "p2", p2);
  LineBuilder lines;
  lines.segment(toOsgFloat(p1), toOsgFloat(p2), toOsgFloat(color));
  return geodeOf(lines.finish(width, LineBuilder::Ends::DOTS)).release();
}

osg::Geode* createPolyline(zor::Vec3Vector const& points, zor::Vec4 const& color, float width) {
  requirePositive("createPolyline", "width", width);
  if (points.size() < 2)
    throw std::invalid_argument("createPolyline: at least two points are needed, not " +
                                std::to_string(points.size()));
  for (zor::Vec3 const& point : points)
    requireFinite("createPolyline", "each point", point);
  LineBuilder lines;
  for (size_t i = 0; i + 1 < points.size(); ++i)
    lines.segment(toOsgFloat(points[i]), toOsgFloat(points[i + 1]), toOsgFloat(color));
  return geodeOf(lines.finish(width, LineBuilder::Ends::DOTS)).release();
}

osg::Geode* createSphere(zor::Vec3 const& center, zor::Vec4 const& color, float radius) {
  requirePositive("createSphere", "radius", radius);
  requireFinite("createSphere", "center", center);
  osg::ref_ptr<osg::Geometry> const mesh = tessellateSphere(radius, segmentsForDetail(1.0f));
  auto& positions = static_cast<osg::Vec3Array&>(*mesh->getVertexArray());
  for (osg::Vec3& position : positions)
    position += toOsgFloat(center);
  osg::ref_ptr<osg::Geode> geode = geodeOf(mesh);
  setDiffuseColor(geode.get(), single(color));
  return geode.release();
}

osg::MatrixTransform* createCylinder(zor::AffineMatrix4x4 const& transform, zor::Vec4 const& color,
                                     float radius, float height) {
  requirePositive("createCylinder", "radius", radius);
  requirePositive("createCylinder", "height", height);
  requireFinite("createCylinder", "transform", transform);
  osg::ref_ptr<osg::MatrixTransform> node = new osg::MatrixTransform(toOsg(transform));
  node->addChild(geodeOf(tessellateCylinder(radius, height, segmentsForDetail(1.0f))));
  setDiffuseColor(node.get(), single(color));
  return node.release();
}

} // namespace zorOSG
