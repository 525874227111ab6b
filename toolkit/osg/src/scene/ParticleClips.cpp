#include "ParticleClips.h"

#include <map>
#include <mutex>

namespace zorOSG {

namespace {

struct Clips {
  std::mutex mutex; // the last reference to a plane may go on another thread
  std::map<ClipPlane const*, zor::ParticleSystem const*> systems;

  static Clips& instance() {
    static Clips& clips = *new Clips; // never destroyed: planes in static storage may go later
    return clips;
  }
};

} // namespace

void addParticleClip(zor::ParticleSystem const& particles, ClipPlane const& plane) {
  Clips& clips = Clips::instance();
  std::scoped_lock const lock(clips.mutex);
  clips.systems[&plane] = &particles;
}

void removeParticleClip(ClipPlane const& plane) {
  Clips& clips = Clips::instance();
  std::scoped_lock const lock(clips.mutex);
  clips.systems.erase(&plane);
}

std::vector<zor::Plane> particleClips(zor::ParticleSystem const& particles) {
  Clips& clips = Clips::instance();
  std::scoped_lock const lock(clips.mutex);
  std::vector<zor::Plane> planes;
  for (auto const& [plane, system] : clips.systems)
    if (system == &particles && plane->getEnable())
      planes.push_back(plane->getPlane());
  return planes;
}

} // namespace zorOSG
