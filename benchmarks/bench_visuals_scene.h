#pragma once

#include <zorCollide/Geometry.h>
#include <zorOSG/SceneDecorator.h>
#include <zorSDK/Simulation.h>

#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osgViewer/Viewer>

#include <unordered_map>
#include <vector>

// The scene that is measured, in each of the ways in which bench_visuals.cpp draws it: by visuals of this
// toolkit and by a graph written for it on the scene-graph library. bench_visuals.py draws it with another
// library; so that all show the same, it is told here in full.
//
// There are N bodies of one geometry, numbered from 0, and nothing else. Body i is of kind i mod 5, lengths
// in metres:
//
//   0  box with half extents 0.4, 0.3, 0.5          colour 0.80 0.25 0.20
//   1  sphere of radius 0.5                         colour 0.25 0.55 0.80
//   2  cylinder about y, radius 0.4, height 1       colour 0.95 0.75 0.25
//   3  capsule about y, radius 0.3, 0.6 between the centres of its ends   colour 0.40 0.70 0.35
//   4  cone about y, radius 0.5, height 1           colour 0.60 0.45 0.75
//
// as finely tessellated as createVisual does it with a detail ratio of 1. Colours are set where it is said;
// else bodies have the default look.
//
// Body i stands upright at x = 1.5 (i mod n - n/2), y = 1.5 (i div n - n/2), z = 0 on a grid of n =
// ceil(sqrt(N)) columns. Moving, before frame f > 0 it is put to z = 0.3 sin(0.1 f + i mod 17). At rest
// nothing is set between frames.
//
// The picture has 640 x 480 pixels. The camera stands at (0, -d, 0.8 d) with d = 1.1 * 1.5 sqrt(N) and looks
// at the origin, z up, with a vertical field of view of 45 degrees. Light comes from the decorator's three
// directional lights, per pixel; there are no shadows, and edges are not smoothed.

namespace scene {

constexpr int WIDTH = 640;
constexpr int HEIGHT = 480;

/** The bodies, without anything to see. */
class Bodies {
public:
  explicit Bodies(int count);

  /** Puts all bodies where they are before a frame. */
  void move(int frame);

  zorSDK::Simulation& simulation() { return *m_simulation; }
  std::vector<zor::ref_ptr<zorCollide::Geometry>> const& geometries() const { return m_geometries; }

private:
  zor::ref_ptr<zorSDK::Simulation> m_simulation;
  std::vector<zor::ref_ptr<zor::RigidBody>> m_bodies;
  std::vector<zor::ref_ptr<zorCollide::Geometry>> m_geometries;
  int m_columns;
};

constexpr int KINDS = 5;

/** The colour of a kind of bodies. */
zor::Vec4f colorOf(int body);

/** The meshes, those of visuals of this toolkit, so that both graphs draw the same triangles. */
class Meshes {
public:
  Meshes();
  osg::Geometry& of(int body) const { return *m_meshes[static_cast<size_t>(body % KINDS)]; }

private:
  osg::ref_ptr<osg::Group> m_visuals; // keeps them in the cache: neither graph has to make them
  std::vector<osg::ref_ptr<osg::Geometry>> m_meshes;
};

/** The graph as somebody writes it who knows the library and this scene: one matrix a body, shared meshes. */
class HandWritten {
public:
  /**
   * \param colored - true for one state for each kind, shared by its bodies
   * \param grouped - true for a named group for each body, as visuals that are made body by body have it
   */
  HandWritten(Bodies& bodies, Meshes const& meshes, bool colored, bool grouped = false);

  osg::Group& root() { return *m_root; }

  /** Takes the places of all bodies over; to be called only if they moved. */
  void follow();

  /** \return the geometry's node, if it is below top */
  osg::MatrixTransform* find(zorCollide::Geometry const* geometry, osg::Group const& top) const;

private:
  Bodies const& m_bodies;
  osg::ref_ptr<osg::Group> m_root = new osg::Group;
  std::vector<osg::MatrixTransform*> m_transforms;
  std::unordered_map<zorCollide::Geometry const*, osg::MatrixTransform*> m_byGeometry;
};

/** Light, material and program of a decorated scene that has been drawn once, above another graph. */
osg::ref_ptr<osg::Group> litLike(zorOSG::SceneDecorator& decorator, osg::Group& graph);

/** A viewer of the picture that is measured. */
osg::ref_ptr<osgViewer::Viewer> makeViewer(osg::Node& top, Bodies const& bodies);

} // namespace scene
