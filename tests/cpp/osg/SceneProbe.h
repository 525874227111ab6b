#pragma once

#include <cmath>
#include <set>
#include <vector>

#include <osg/ComputeBoundsVisitor>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/Material>
#include <osg/NodeVisitor>
#include <osg/Transform>
#include <osg/TriangleFunctor>
#include <osgUtil/UpdateVisitor>

namespace zorTest {

/** What is drawn below a node, measured in the node's world. */
class SceneProbe : public osg::NodeVisitor {
public:
  explicit SceneProbe(osg::Node& node) : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN) { node.accept(*this); }

  void apply(osg::Geometry& mesh) override {
    meshes.push_back(&mesh);
    osg::Matrixd const toWorld = osg::computeLocalToWorld(getNodePath());
    osg::TriangleFunctor<Sum> sum;
    sum.toWorld = &toWorld;
    mesh.accept(sum);
    volume += sum.volume;
    triangles += sum.triangles;
    checkNormals(mesh);
  }

  std::set<osg::ref_ptr<osg::Geometry>> distinctMeshes() const { return {meshes.begin(), meshes.end()}; }

  std::vector<osg::ref_ptr<osg::Geometry>> meshes;
  double volume = 0.0; // by the divergence theorem: positive only if the triangles face outwards
  unsigned int triangles = 0;
  double leastAgreement = 1.0; // of vertex normals with the faces that they belong to (cosine)

private:
  struct Sum {
    osg::Matrixd const* toWorld = nullptr;
    double volume = 0.0;
    unsigned int triangles = 0;
    void operator()(osg::Vec3 const& a, osg::Vec3 const& b, osg::Vec3 const& c) {
      osg::Vec3d const first = osg::Vec3d(a) * *toWorld, second = osg::Vec3d(b) * *toWorld,
                       third = osg::Vec3d(c) * *toWorld;
      volume += first * (second ^ third) / 6.0;
      ++triangles;
    }
  };

  void checkNormals(osg::Geometry const& mesh) {
    auto const* positions = dynamic_cast<osg::Vec3Array const*>(mesh.getVertexArray());
    auto const* normals = dynamic_cast<osg::Vec3Array const*>(mesh.getNormalArray());
    if (!positions || !normals || normals->size() != positions->size())
      return;
    for (unsigned int set = 0; set < mesh.getNumPrimitiveSets(); ++set) {
      osg::PrimitiveSet const& indices = *mesh.getPrimitiveSet(set);
      if (indices.getMode() != GL_TRIANGLES)
        continue;
      for (unsigned int i = 0; i + 2 < indices.getNumIndices(); i += 3) {
        unsigned int const a = indices.index(i), b = indices.index(i + 1), c = indices.index(i + 2);
        osg::Vec3 face = ((*positions)[b] - (*positions)[a]) ^ ((*positions)[c] - (*positions)[a]);
        face.normalize();
        for (unsigned int const corner : {a, b, c})
          leastAgreement = std::min<double>(leastAgreement, face * (*normals)[corner]);
      }
    }
  }
};

inline osg::BoundingBox boundsOf(osg::Node& node) {
  osg::ComputeBoundsVisitor visitor;
  node.accept(visitor);
  return visitor.getBoundingBox();
}

/** One update traversal, as the viewer makes one a frame. */
inline void update(osg::Node& root) {
  osgUtil::UpdateVisitor visitor;
  root.accept(visitor);
}

/** The diffuse colour that the node's own state sets; zero if it sets none. */
inline osg::Vec4 ownDiffuse(osg::Node const& node) {
  osg::StateSet const* state = node.getStateSet();
  auto const* material =
      state ? dynamic_cast<osg::Material const*>(state->getAttribute(osg::StateAttribute::MATERIAL))
            : nullptr;
  return material ? material->getDiffuse(osg::Material::FRONT) : osg::Vec4();
}

} // namespace zorTest
