#pragma once

#include <osg/MatrixTransform>

#include <zorCollide/Geometry.h>
#ifndef SWIG
#include <cstddef>
#include <cstdint>
#include <zorCollide/GeometryObserver.h>
#include <zorOSG/RigidBodyRenderCache.h>
#endif

namespace osgUtil {
class CullVisitor;
}
namespace zorCollide {
class Space;
}

namespace zorOSG {

/**
 * Scene-graph node that carries the visual of one collision geometry and follows its transformation.
 *
 * The node takes over the geometry's world transform in the update traversal of the scene that it is in, if
 * the geometry has moved since; a node at rest takes no time. A geometry that is not enabled is not drawn.
 * When the geometry changes its shapes, the visual is made anew. When the geometry is destroyed or leaves its
 * space, and auto-remove is on, the node detaches itself from all parents at once: do not let that happen
 * while the scene graph is being traversed.
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
  RenderFlag getSelectedRenderChild() const { return m_renderDataSelected ? RENDER_DATA : GEOMETRY_DATA; }

  /**
   * Sets the child of a kind, so that it can be toggled by flag. A previous child of that kind is removed.
   * \param flag - the kind of child
   * \param node - the child; null removes the present one
   */
  void setRenderChild(RenderFlag flag, osg::Node* node);

  /**
   * A child that is shared with other visuals becomes the node's own first, so that it may be changed.
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
   * \param templates - to take parts from and to add to; null for none
   */
  void buildVisual(float detailRatio, zorOSG::RigidBodyRenderCache::Templates* templates = nullptr);

  /** What the node looks like where its own state set says nothing. */
  enum class DefaultLook : std::uint8_t { NONE, THING, GROUND };

  void setDefaultLook(DefaultLook look) { m_defaultLook = look; }
  /** \return the state of the default look, shared and not to be changed; null for none */
  osg::StateSet* getDefaultLook() const;

  /** \return the mesh that is all there is to draw; null if there is nothing or more */
  osg::Geometry* getOnlyMesh() const;

  osg::BoundingSphere computeBound() const override;
  bool setChild(unsigned int index, osg::Node* node) override;
#endif

protected:
  ~GeometryNode() override;

#ifndef SWIG
private:
  friend class MovedNodes;

  class Follower final : public zorCollide::GeometryObserver {
  public:
    static char const KIND;

    Follower() : GeometryObserver(&KIND) {}

    /** The node that this is a part of. A pointer to it would have to be read before the node can be. */
    GeometryNode& node();

  protected:
    void geometryMoved() override;
    void geometryShapesChanged() override;
    void geometryLeft(zorCollide::Space* space, zorCollide::Geometry* geometry) override;
  };
  friend GeometryNode* nextFollowing(zorCollide::GeometryObserver* observer);
  friend GeometryNode* nextFollowing(GeometryNode const& node);

  static constexpr std::uint32_t NOT_MOVED = ~0u;

  static zorCollide::Geometry::ShapeChangeEvent::CallbackType const& ownShapeCallback();
  void stopListening();
  void moveTo(zor::AffineMatrix4x4 const& transform);
  void acceptCull(osgUtil::CullVisitor& visitor);
  bool cullMesh(osgUtil::CullVisitor& visitor);
  bool isDrawn(osg::Node const* child) const;
  osg::ref_ptr<osg::Node>& renderChild(RenderFlag flag);

  Follower m_follower;
  osg::ref_ptr<osg::Node> m_renderDataChild;
  osg::ref_ptr<osg::Node> m_geometryDataChild;
  mutable osg::Vec3 m_boundCenter;        // in the node's own coordinates
  float m_detailRatio = 0.0f;             // 0 while no visual was made from the shapes
  std::uint32_t m_movedPlace = NOT_MOVED; // among the moved nodes
  mutable bool m_boundCenterKnown : 1 = false;
  bool m_autoRemove : 1 = true;
  bool m_visible : 1 = true;         // follows whether the geometry is enabled
  bool m_renderDataSelected = false; // which RenderFlag is
  DefaultLook m_defaultLook = DefaultLook::NONE;
#endif
};

#ifndef SWIG
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof" // fixed, as there is no virtual base
inline GeometryNode& GeometryNode::Follower::node() {
  return *reinterpret_cast<GeometryNode*>(reinterpret_cast<char*>(this) - offsetof(GeometryNode, m_follower));
}
#pragma GCC diagnostic pop

/** \return the first geometry node among an observer and those after it; null if there is none */
inline GeometryNode* nextFollowing(zorCollide::GeometryObserver* observer) {
  for (; observer; observer = observer->getNext())
    if (observer->getKind() == &GeometryNode::Follower::KIND)
      return &static_cast<GeometryNode::Follower*>(observer)->node();
  return nullptr;
}

/** \return the node that has followed a geometry for longest, whether it is in a scene or not; null without
 * any */
inline GeometryNode* firstFollowing(zorCollide::Geometry const& geometry) {
  return nextFollowing(geometry.getFirstObserver());
}

/** \return the node that began to follow the same geometry after this one; null if this is the last */
inline GeometryNode* nextFollowing(GeometryNode const& node) {
  return nextFollowing(node.m_follower.getNext());
}
#endif

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
