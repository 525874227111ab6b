#pragma once

#include "shaders/ScenePrograms.h"

#include <osg/BoundingBox>
#include <osg/ClipNode>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/NodeVisitor>
#include <osg/Plane>

#include <vector>

namespace zorOSG {

class GeometryNode;

/**
 * Walks the decorated scene once a frame. It collects the boxes of what casts shadows, for the shadow map,
 * and tells the scene's shader by defines what built-in uniforms leave out: whether light is on, whether
 * there are a texture, vertex colours and normals, and whether shadows fall.
 */
class SceneSurvey : public osg::NodeVisitor {
public:
  SceneSurvey();

  /** Forgets what was collected. */
  void begin();

  /** \param shadowed - false for a part of the scene that neither casts nor receives shadows; what lies there
   * has no part in boxes */
  void setShadowed(bool shadowed) { m_shadowed = shadowed; }

  /** Has meshes() filled, which only shadow volumes need. */
  void setCollectMeshes(bool flag) { m_collectsMeshes = flag; }

  /** Boxes of all that casts shadows, in the coordinates of the node where the walk began. */
  std::vector<osg::BoundingBoxd> const& casters() const { return m_casters; }

  /** Something solid that casts shadows. */
  struct Mesh {
    osg::ref_ptr<osg::Geometry> geometry; // culling may run code that takes it out of the scene
    osg::Matrixd place;
    osg::BoundingBoxd box;
    std::vector<osg::Plane> cuts; // clip planes that go through it, in the coordinates of place
  };

  std::vector<Mesh> const& meshes() const { return m_meshes; }

  /** Box of all that casts or receives shadows. */
  osg::BoundingBoxd const& scene() const { return m_scene; }

  void apply(osg::Node& node) override;
  void apply(osg::ClipNode& clip) override;
  void apply(osg::Transform& transform) override;
  void apply(osg::Drawable& drawable) override;
  void apply(osg::Geometry& geometry) override;

private:
  /** What nodes further up say about those below. */
  struct Inherited {
    osg::Material const* material = nullptr;
    bool materialOverrides = false;
    bool casts = true;
    bool transparent = false;
  };

  void enter(osg::Node& node);
  bool applyPlain(GeometryNode& visual);
  void takeMaterial(osg::StateSet const& state);
  void collect(osg::Drawable& drawable, osg::Matrixd const& matrix);
  void collectMesh(osg::Geometry& mesh, osg::Matrixd const& matrix, osg::BoundingBoxd const& box);

  Inherited m_inherited;
  std::vector<osg::Matrixd> m_matrices;
  std::vector<osg::BoundingBoxd> m_casters;
  std::vector<Mesh> m_meshes;
  std::vector<osg::Plane> m_planes; // of the clip planes on the way
  bool m_shadowed = true;
  bool m_collectsMeshes = false;
  osg::BoundingBoxd m_scene;
};

} // namespace zorOSG
