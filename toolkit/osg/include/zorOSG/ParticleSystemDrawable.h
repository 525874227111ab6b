#pragma once

#include <memory>

#include <osg/Drawable>
#include <osg/Geometry>
#include <osg/Uniform>

#include <zor/ParticleSystem.h>
#include <zor/ref_ptr.h>

namespace zorOSG {

#ifndef SWIG
template <class NodeType>
class IndexEntry;
#endif

/**
 * Draws the particles of a system as lit spheres in their colours. Positions are taken over in every update
 * traversal. The drawable holds the particle system.
 */
class ParticleSystemDrawable : public osg::Drawable {
public:
  /** What a particle is made of. */
  enum ParticleRenderingMode : int {
    SPRITES = 0,      ///< a point, limited in size by the graphics driver
    QUAD_SPRITES = 1, ///< a square that faces the viewer
    TRIANGLES = 2     ///< a sphere of triangles
  };

  /** How particles are coloured, whatever they are made of. */
  enum ParticleShaderMode : int {
    SIMPLE_SPRITES = 0,   ///< as plain spheres
    ROTATION_SPRITES = 1, ///< with a dark band that turns with the particle
    ALPHA_SPRITES = 2     ///< with soft, see-through edges
  };

  /**
   * \param particleSystem - the particle system; null draws nothing
   * \param renderMode - what a particle is made of; values out of range are taken as QUAD_SPRITES
   * \param particleShaderMode - how it is coloured; values out of range are taken as ROTATION_SPRITES
   */
  explicit ParticleSystemDrawable(zor::ParticleSystem* particleSystem,
                                  zorOSG::ParticleSystemDrawable::ParticleRenderingMode renderMode =
                                      zorOSG::ParticleSystemDrawable::QUAD_SPRITES,
                                  zorOSG::ParticleSystemDrawable::ParticleShaderMode particleShaderMode =
                                      zorOSG::ParticleSystemDrawable::ROTATION_SPRITES);

#ifndef SWIG
  ParticleSystemDrawable();
  ParticleSystemDrawable(ParticleSystemDrawable const& other,
                         osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);
  ParticleSystemDrawable& operator=(ParticleSystemDrawable const&) = delete;
#endif

  /** \return how particles are coloured */
  zorOSG::ParticleSystemDrawable::ParticleShaderMode getParticleShaderMode() const { return m_shaderMode; }
  /** \param flag - how particles are coloured; values out of range are taken as ROTATION_SPRITES */
  void setParticleShaderMode(zorOSG::ParticleSystemDrawable::ParticleShaderMode flag);

  /** \return a new drawable of the same particle system with the default modes */
  osg::Object* cloneType() const override;
  /** \param copyop - says what is copied \return a copy */
  osg::Object* clone(osg::CopyOp const& copyop) const override;
  /** \param obj - another object \return true if it is a ParticleSystemDrawable */
  bool isSameKindAs(osg::Object const* obj) const override;
  /** \return "zorOSG" */
  char const* libraryName() const override { return "zorOSG"; }
  /** \return "ParticleSystemDrawable" */
  char const* className() const override { return "ParticleSystemDrawable"; }

  /** Draws the particles; called by the scene graph. */
  void drawImplementation(osg::RenderInfo& renderInfo) const override;

  /** \param enable - false to draw nothing */
  void setEnable(bool enable);
  /** \return false if nothing is drawn */
  bool getEnable() const { return m_enabled; }

  /** \return the particle system, or null */
  zor::ParticleSystem* getParticleSystem() const { return m_particles.get(); }

  /** \param mode - the least rendering mode of all drawables: simpler ones are drawn in this one */
  static void setAllowedRenderMode(zorOSG::ParticleSystemDrawable::ParticleRenderingMode mode);
  /** \return the least rendering mode of all drawables; SPRITES by default */
  static zorOSG::ParticleSystemDrawable::ParticleRenderingMode getAllowedRenderMode();

#ifndef SWIG
  osg::BoundingBox computeBoundingBox() const override;
  void releaseGLObjects(osg::State* state = nullptr) const override;
  void resizeGLObjectBuffers(unsigned int size) override;
  /** Takes the particles over. */
  void updateParticles();
#endif

protected:
  ~ParticleSystemDrawable() override;

#ifndef SWIG
private:
  ParticleRenderingMode usedMode() const;
  void setUp();
  void setUpMode();

  zor::ref_ptr<zor::ParticleSystem> m_particles;
  ParticleRenderingMode m_renderMode;
  ParticleShaderMode m_shaderMode;
  bool m_enabled = true;
  int m_mode = -1; // that the state is set up for
  osg::ref_ptr<osg::Geometry> m_geometry;
  osg::ref_ptr<osg::Uniform> m_shader;
  osg::BoundingBox m_box;
  std::unique_ptr<zorOSG::IndexEntry<ParticleSystemDrawable>> m_indexEntry;
#endif
};

} // namespace zorOSG
