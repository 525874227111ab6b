#pragma once

#include <cstdint>
#include <vector>

#include <zor/Material.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

#include "particles/CellGrid.h"
#include "particles/Colliders.h"
#include "particles/Contacts.h"
#include "particles/EngineMemory.h"
#include "particles/ParticleStore.h"

namespace zorBullet {
class SpaceImpl;
}

namespace zorParticles {

/** What a step needs to know. */
struct StepSettings {
  double dt = 0;
  zor::Vec3 gravity;
  uint32_t subSteps = 4;
  uint32_t threads = 2;
  double rollingResistance = 0;
  zor::UInt32Vector const* groups = nullptr;
  zorBullet::SpaceImpl* space = nullptr;
};

/**
 * Moves the particles of a store.
 *
 * A step finds the contacts and then goes through sub-steps: velocities from forces, last impulses as first
 * guess, two passes over the contacts, positions, and a pass that moves particles out of each other without
 * giving them speed. At the end, contacts that met fast enough bounce. Where many particles are fast, a step
 * does this in two or four rounds.
 *
 * Passes are Gauss-Seidel, in parallel: the grid is cut into slabs along its longest axis. Contacts inside a
 * slab touch nothing of the others; those across a border touch two slabs, so that all even borders go
 * together and then all odd ones; those with bodies that can be pushed go last, one after the other. The cut
 * depends on the particles only, so that the result does not depend on the number of threads.
 */
class Engine {
public:
  void step(ParticleStore& store, std::vector<zor::ref_ptr<zor::Material>>& materials,
            StepSettings const& settings);

  /** Rows were removed: place gives the new index of each old one, NONE for those that are gone. */
  void renumber(std::vector<uint32_t> const& places, size_t newSize);
  void clear();

  /** What the next step needs of the last one. Contacts whose numbers are no longer finite are left out. */
  EngineMemory memory() const;
  /**
   * Takes over what another engine remembered; the store holds the same particles.
   * \throws std::invalid_argument when it contradicts itself; the engine is then as it was
   */
  void restore(EngineMemory const& memory, size_t numParticles);

  ContactSet const& contacts() const { return m_now; }
  std::vector<Ball> const& balls() const { return m_balls; }
  Colliders const& colliders() const { return m_colliders; }
  zorCollide::Geometry* geometryOf(uint32_t collider) const { return m_geometries[collider].get(); }
  double lastStep() const { return m_settings.dt; }
  double lastSubStep() const { return m_subStep; }
  /** Particles that the last step left out as a number of theirs isn't finite. */
  size_t numLost() const { return m_numLost; }

private:
  static constexpr double PAIR_REACH = 0.2; // of the sum of radii: particles farther apart aren't looked at
  static constexpr double CELL_SIZE = 1 + PAIR_REACH + 1e-4; // of the largest diameter

  struct Spot {
    double x, y, z, radius;
  };

  // --- contacts (EngineContacts.cpp)
  uint32_t numRounds(ParticleStore const& store) const;
  void collectColliders(ParticleStore const& store, std::vector<zor::ref_ptr<zor::Material>>& materials);
  void round(ParticleStore& store);
  double reachOf(ParticleStore const& store, uint32_t index) const;
  void choose(ParticleStore& store);
  void gather(ParticleStore const& store);
  void cutSlabs();
  void prepareSurfaces(std::vector<zor::ref_ptr<zor::Material>> const& materials);
  void findContacts(uint32_t slab);
  void findInCell(CellGrid::Cell const& cell, SlabContacts& contacts);
  void findPairs(uint32_t particle, CellGrid::Range range, std::vector<PairContact>& pairs);
  void findInNextLayer(CellGrid::Cell const& cell, CellGrid::Range particles, SlabContacts& contacts);
  void findWalls(uint32_t particle, std::vector<uint32_t> const& colliders, SlabContacts& contacts);
  void addWall(uint32_t particle, uint32_t collider, zorBullet::SurfacePoint const& point, double radius,
               SlabContacts& contacts);
  Impulse lastPairImpulse(uint32_t first, uint32_t second) const;
  template <class Contact>
  Impulse lastWallImpulse(WallContact const& contact, std::vector<Contact> SlabContacts::* list,
                          uint32_t ContactStarts::* start) const;

  // --- motion (EngineMotion.cpp)
  void subStep();
  void accelerate(SlabContacts const& slab);
  void advance(SlabContacts& slab);
  void advanceBodies();
  void solve(float relaxation);
  void push();
  void bounce();
  void applyImpulses();
  void scatter(ParticleStore& store);
  void scatter(ParticleStore& store, uint32_t particle) const;
  template <class InSlab, class Across>
  void inColours(InSlab inSlab, Across across);
  template <class Task>
  void forSlabs(Task task);

  StepSettings m_settings;
  CellGrid m_grid;
  Colliders m_colliders;
  std::vector<uint32_t> m_chosen;
  double m_largestRadius = 0;
  size_t m_numLost = 0;
  float m_subStep = 0;
  uint32_t m_stepsDone = 0; // sub-steps

  std::vector<Ball> m_balls; // in the order of the grid, as everything here
  std::vector<Spot> m_spots;
  std::vector<Float3> m_accelerations;
  std::vector<float> m_reach; // how far the particle may move: contacts were looked for as far
  std::vector<uint32_t> m_materials;
  std::vector<Surface> m_surfaces;
  uint32_t m_numMaterials = 0;
  std::vector<std::vector<uint32_t>> m_layerColliders; // scratch of each slab
  std::vector<std::vector<uint32_t>> m_cellColliders;
  ContactSet m_now, m_last;
  std::vector<zor::ref_ptr<zorCollide::Geometry>> m_geometries; // held, for those who read the contacts
};

} // namespace zorParticles
