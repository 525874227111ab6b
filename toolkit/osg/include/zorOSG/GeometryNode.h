#pragma once

#include <osg/MatrixTransform>

#include <zorCollide/Geometry.h>

namespace zorCollide {
class Space;
}

namespace zorOSG {

/**
 * Scene-graph node that carries the visual of one collision geometry and follows its transformation.
 *
 * The node reads the geometry's world transform in the update traversal and changes its matrix only when the
 * geometry has moved. A geometry that is not enabled is not drawn. When the geometry changes its shapes, the
 * visual is made anew. When the geometry is destroyed or leaves its space, and auto-remove is on, the node
 * detaches itself from all parents at once: do not let that happen while the scene graph is being traversed.
 */
class GeometryNode : public osg::MatrixTransform {
public:
  /** Kind of child that the node can draw. */
  enum RenderFlag : int {
    RENDER_DATA = 1,  ///< child made from the render data stored in the geometry's shapes
    GEOMETRY_DATA = 2 ///< child made from the geometry's collision shapes
  };

  /** Creates a node without a geometry. */
  GeometryNode();

  /**
   * Creates a node that follows a geometry.
   * \param geometry - the geometry to follow; may be null
   */
  explicit GeometryNode(zorCollide::Geometry* geometry);

  /**
   * Copies a node; the copy follows the same geometry.
   * \param node - the node to copy
   * \param copyop - says which children and states are shared and which copied
   */
  GeometryNode(GeometryNode const& node, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

  GeometryNode& operator=(GeometryNode const&) = delete;

  /**
   * Associates the node's transformation with that of a geometry.
   * \param geometry - the geometry to follow; null leaves the node where it is
   */
  void setGeometry(zorCollide::Geometry* geometry);

  /** \return the associated geometry, or null when there is none or it has been destroyed */
  zorCollide::Geometry* getGeometry();
#ifndef SWIG
  zorCollide::Geometry const* getGeometry() const;
#endif

  /** \return true if the node is removed when the geometry's destructor runs or the geometry leaves its space
   */
  bool getAutoRemove() const { return m_autoRemove; }

  /**
   * Sets whether the node removes itself from its parents together with its geometry.
   * \param autoRemove - true (the default of a new node) to remove it
   */
  void setAutoRemove(bool autoRemove) { m_autoRemove = autoRemove; }

  /** \return a new default geometry node */
  osg::Object* cloneType() const override;

  /**
   * \param copyop - says which children and states are shared and which copied
   * \return a copy of this node
   */
  osg::Object* clone(osg::CopyOp const& copyop) const override;

  /**
   * \param obj - the object to test; null gives false
   * \return true if the object is a geometry node
   */
  bool isSameKindAs(osg::Object const* obj) const override;

  /** \return "MatrixTransform": the node keeps the identity of its base, so that writers and visitors know it
   */
  char const* className() const override { return "MatrixTransform"; }

  /** \return "osg" */
  char const* libraryName() const override { return "osg"; }

  using osg::MatrixTransform::accept;
#ifndef SWIG
  void accept(osg::NodeVisitor& visitor) override;
#endif

  /**
   * Traverses the selected render child and every other child. An update visitor also brings the matrix up to
   * date.
   * \param visitor - the visitor that traverses
   */
  void traverse(osg::NodeVisitor& visitor) override;

  /**
   * Removes the node because its geometry leaves a space.
   * \param space - the space that the geometry leaves; may be null
   * \param geometry - the geometry that leaves; another geometry than the node's own is ignored
   */
  void removeNode(zorCollide::Space* space, zorCollide::Geometry* geometry);

  /** Detaches the node from all its parents. */
  void removeFromParents();

  /**
   * Selects which render child is drawn. Children that were not given as a render child are always drawn.
   * \param flag - the kind of child
   */
  void selectRenderChild(RenderFlag flag);

  /** \return the kind of child that is drawn; GEOMETRY_DATA for a new node */
  RenderFlag getSelectedRenderChild() const { return m_selected; }

  /**
   * Sets the child of a kind, so that it can be toggled by flag. A previous child of that kind is removed.
   * \param flag - the kind of child
   * \param node - the child; null removes the present one
   */
  void setRenderChild(RenderFlag flag, osg::Node* node);

  /**
   * \param flag - the kind of child
   * \return the child of that kind, or null if it does not exist
   */
  osg::Node* getRenderChild(RenderFlag flag);
#ifndef SWIG
  osg::Node const* getRenderChild(RenderFlag flag) const;
#endif

  /** Reads the geometry's world transform and updates the node's matrix. */
  void updateTransform();

  /**
   * What the node does when its geometry has changed its shapes: it makes its visual anew. Another callback
   * assigned here listens from the next call of setGeometry on; until then nothing listens.
   */
  zorCollide::Geometry::ShapeChangeEvent::CallbackType shapeCallback;

#ifndef SWIG
  /**
   * Makes the render children from the geometry's shapes, and makes them anew whenever the shapes change.
   * \param detailRatio - tessellation, see createVisual
   */
  void buildVisual(float detailRatio);
#endif

protected:
  ~GeometryNode() override;

private:
  void initialize();
  void stopListening();
  void geometryLeft(zorCollide::Space* space, zorCollide::Geometry* geometry);
  bool isDrawn(osg::Node const* child) const;
  osg::ref_ptr<osg::Node>& renderChild(RenderFlag flag);

  zorCollide::Geometry* m_geometry = nullptr; // tells when it is destroyed
  zorCollide::Geometry::RemovalEvent::CallbackType m_removalCallback;
  osg::ref_ptr<osg::Node> m_renderDataChild;
  osg::ref_ptr<osg::Node> m_geometryDataChild;
  float m_detailRatio = 0.0f; // 0 while no visual was made from the shapes
  RenderFlag m_selected = GEOMETRY_DATA;
  bool m_autoRemove = true;
  bool m_visible = true; // follows whether the geometry is enabled
};

/**
 * Takes one reference on a node.
 * \param node - the node
 */
void GeometryNode_reference(zorOSG::GeometryNode* node);

/**
 * Releases one reference of a node and deletes it with the last one.
 * \param node - the node
 */
void GeometryNode_unreference(zorOSG::GeometryNode* node);

} // namespace zorOSG
