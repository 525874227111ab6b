#pragma once

#include <cstddef>
#include <tuple>
#include <vector>

#include <osg/Geode>
#include <osg/Group>
#include <osg/MatrixTransform>

#include <zor/Emitter.h>
#include <zor/ObserverFrame.h>
#include <zor/ParticleSystem.h>
#include <zor/RigidBody.h>
#include <zor/RigidBodyEmitter.h>
#include <zorCollide/Geometry.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/ParticleSystemDrawable.h>
#include <zorOSG/RigidBodyRenderCache.h>
#include <zorRender/Color.h>
#include <zorSDK/Assembly.h>
#include <zorSDK/EventListener.h>
#include <zorSDK/Simulation.h>

namespace zorModel {
class DeformableObject;
}
namespace zorSDK {
class TerrainInstance;
}

namespace zorOSG {

class DeformableRenderer;
class TerrainVoxelRenderer;

/**
 * Creates the visual of a geometry's shapes and inserts it under a group. Render data stored in a shape is
 * drawn in place of the shape. Each call makes one more visual: calling twice draws the geometry twice.
 * \param geometry - the geometry; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \param detailRatio - tessellation: 1 looks round at normal distances, less is coarser, more is finer;
 * limited to [0.05, 8]; a negative number or NaN throws std::invalid_argument
 * \param createAxes - true to add xyz axes at the centre
 * \param evenIfSensor - false to create nothing, and return null, for a sensor geometry
 * \return the node, owned by root
 */
zorOSG::GeometryNode* createVisual(zorCollide::Geometry const* geometry, osg::Group* root,
                                   float detailRatio = 1.0f, bool createAxes = false,
                                   bool evenIfSensor = true);

/**
 * Creates the visual of a particle system: spheres in the particles' colours, in the light of the scene.
 * \param particleSystem - the particle system, which the visual holds; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \param renderMode - what a particle is made of
 * \param shaderMode - how it is coloured
 * \return the node, owned by root; its first drawable is a ParticleSystemDrawable
 */
osg::Geode* createVisual(zor::ParticleSystem* particleSystem, osg::Group* root,
                         zorOSG::ParticleSystemDrawable::ParticleRenderingMode renderMode =
                             zorOSG::ParticleSystemDrawable::QUAD_SPRITES,
                         zorOSG::ParticleSystemDrawable::ParticleShaderMode shaderMode =
                             zorOSG::ParticleSystemDrawable::ROTATION_SPRITES);

/**
 * Creates the visual of an emitter: the volume in which things appear, see-through, and each emitted body
 * from then on.
 * \param emitter - the emitter; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \return a new group under root
 */
osg::Group* createVisual(zor::RigidBodyEmitter* emitter, osg::Group* root);

/**
 * Creates the visual of an emitter: the volume in which particles appear, see-through. The particles are
 * drawn by the visual of their particle system.
 * \param emitter - the emitter; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \return a new group under root
 */
osg::Group* createVisual(zor::Emitter* emitter, osg::Group* root);

/**
 * Creates the renderer of a terrain. A terrain that is in a simulation already needs the renderer to be added
 * to that simulation by the caller.
 * \param terrainInstance - the terrain; null gives null. There is no renderer for others in this version,
 * which throws std::runtime_error
 * \param root - the group that gets and owns the node; null gives null
 * \return the renderer, owned by root
 */
zorOSG::TerrainVoxelRenderer* createVisual(zorSDK::TerrainInstance* terrainInstance, osg::Group* root);

/**
 * Creates an axis visual that follows an observer frame.
 * \param frame - the observer frame; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \param scale - length of the axes (m); must be positive, else std::invalid_argument
 * \return the node, owned by root
 */
osg::MatrixTransform* createVisual(zor::ObserverFrame* frame, osg::Group* root, float scale = 1.0f);

/**
 * Creates the visuals of all geometries that a body has now.
 * \param body - the body; null gives null
 * \param root - the group that gets and owns the visuals; null gives null
 * \param detailRatio - tessellation, as for a geometry
 * \param createAxes - true to add xyz axes at each centre
 * \return a new group under root with one geometry node a geometry
 */
osg::Group* createVisual(zor::RigidBody* body, osg::Group* root, float detailRatio = 1.0f,
                         bool createAxes = false);

/**
 * Creates the visuals of all geometries of an assembly, its bodies and its sub-assemblies.
 * \param assembly - the assembly; null gives null
 * \param root - the group that gets and owns the visuals; null gives null
 * \param detailRatio - tessellation, as for a geometry
 * \param createAxes - true to add xyz axes at each centre
 * \return a new group under root
 */
osg::Group* createVisual(zorSDK::Assembly* assembly, osg::Group* root, float detailRatio = 1.0f,
                         bool createAxes = false);

/**
 * Creates the visuals of all contents of a simulation: every geometry in its space, with or without a body,
 * and every particle system.
 * \param simulation - the simulation; null gives null
 * \param root - the group that gets and owns the visuals; null gives null
 * \param detailRatio - tessellation, as for a geometry
 * \param createAxes - true to add xyz axes at each centre
 * \return a new group under root
 */
osg::Group* createVisual(zorSDK::Simulation* simulation, osg::Group* root, float detailRatio = 1.0f,
                         bool createAxes = false);

/**
 * Creates the renderer of a deformable object, which draws its surface.
 * \param deformable - the object; null gives null. There is no renderer for others in this version, which
 * throws std::runtime_error
 * \param root - the group that gets and owns the node; null gives null
 * \param color - colour of the surface
 * \param colorSurfaceStress - true to colour the surface by its stress
 * \param maxStressColor - colour at the limit
 * \param maxStressLimit - stress (Pa) that is drawn in that colour
 * \return the renderer, a node owned by root
 */
zorOSG::DeformableRenderer* createVisual(
    zorModel::DeformableObject const* deformable, osg::Group* root,
    zorRender::Color const& color = zorRender::Color(85.0f / 255.0f, 107.0f / 255.0f, 47.0f / 255.0f, 1.0f),
    bool colorSurfaceStress = false,
    zorRender::Color const& maxStressColor = zorRender::Color(1.0f, 0.0f, 0.0f, 1.0f),
    zor::Real maxStressLimit = 60000.0);

/**
 * Creates a listener that draws what another one is about. It draws from when it is added to a simulation
 * until it is removed, after every step:
 * - zorSDK::ContactEventListener: the contacts of the last step that the listener's filters let through, as
 * points with their normals, over the scene, as long as the listener is enabled and in a simulation.
 * \param listener - the listener, which is only observed; null gives null
 * \param root - the group that gets what is drawn, in the simulation's coordinates; null gives null
 * \return a new listener, to be added to the simulation; null for listeners of other classes
 */
zorSDK::EventListener* createVisualUpdater(zorSDK::EventListener* listener, osg::Group* root);

/**
 * Creates the visuals of an assembly, sharing visual templates between bodies with equal geometries.
 * \param assembly - the assembly; null gives null
 * \param root - the group that gets and owns the visuals; null gives null
 * \param renderCache - the templates to share and to extend; null uses templates of this call only
 * \param detailRatio - tessellation, as for a geometry
 * \param createAxes - true to add xyz axes at each centre
 * \return a new group under root
 */
osg::Group* createVisualTemplateCaching(zorSDK::Assembly* assembly, osg::Group* root,
                                        zorOSG::RigidBodyRenderCache* renderCache = nullptr,
                                        float detailRatio = 1.0f, bool createAxes = false);

/**
 * Creates the visuals of all geometries of a body under a new group.
 * \param rb - the body; null gives a null group and an empty list
 * \param root - the group that gets and owns the visuals; null gives a null group and an empty list
 * \param detailRatio - tessellation, as for a geometry
 * \param createAxes - true to add xyz axes at each centre
 * \return the group, and for each of its children in order the index of its geometry in the body's geometry
 * list
 */
std::tuple<osg::Group*, std::vector<size_t>> createVisualWithGeometryConnection(zor::RigidBody* rb,
                                                                                osg::Group* root,
                                                                                float detailRatio = 1.0f,
                                                                                bool createAxes = false);

} // namespace zorOSG
