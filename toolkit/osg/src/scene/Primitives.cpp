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

void requireCells(char const* name, unsigned int count) {
  if (count < 1 || count > 10000)
    throw std::invalid_argument(std::string("createGrid: ") + name + " must be 1 to 10000, not " +
                                std::to_string(count));
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
  requireCells("resU", resU);
  requireCells("resV", resV);
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

osg::Geode* createCubeLines(zor::Vec3 const& position, zor::Vec3 const& boxHalfVec3,
                            zorRender::Color const& color, zor::Real lineWidth) {
  requirePositive("createCubeLines", "lineWidth", lineWidth);
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
  LineBuilder lines;
  lines.segment(toOsgFloat(p1), toOsgFloat(p2), toOsgFloat(color));
  return geodeOf(lines.finish(width)).release();
}

osg::Geode* createPolyline(zor::Vec3Vector const& points, zor::Vec4 const& color, float width) {
  requirePositive("createPolyline", "width", width);
  if (points.size() < 2)
    throw std::invalid_argument("createPolyline: at least two points are needed, not " +
                                std::to_string(points.size()));
  LineBuilder lines;
  for (size_t i = 0; i + 1 < points.size(); ++i)
    lines.segment(toOsgFloat(points[i]), toOsgFloat(points[i + 1]), toOsgFloat(color));
  return geodeOf(lines.finish(width)).release();
}

osg::Geode* createSphere(zor::Vec3 const& center, zor::Vec4 const& color, float radius) {
  requirePositive("createSphere", "radius", radius);
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
  osg::ref_ptr<osg::MatrixTransform> node = new osg::MatrixTransform(toOsg(transform));
  node->addChild(geodeOf(tessellateCylinder(radius, height, segmentsForDetail(1.0f))));
  setDiffuseColor(node.get(), single(color));
  return node.release();
}

} // namespace zorOSG
