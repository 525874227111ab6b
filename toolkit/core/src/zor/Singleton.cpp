#include <zor/Singleton.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace zor {

namespace {
struct Registry {
  std::mutex mutex;
  std::vector<Singleton*> instances;
};

// Constructed before the first singleton is, hence destroyed after it.
Registry& registry() {
  static Registry instance;
  return instance;
}
} // namespace

Singleton::Singleton() {
  Registry& all = registry();
  std::lock_guard const lock(all.mutex);
  all.instances.push_back(this);
}

Singleton::~Singleton() {
  Registry& all = registry();
  std::lock_guard const lock(all.mutex);
  std::erase(all.instances, this);
}

void Singleton::shutdownAll() {
  std::vector<Singleton*> instances;
  {
    Registry& all = registry();
    std::lock_guard const lock(all.mutex);
    instances = all.instances;
  }
  // Unlocked: a shutdown may make or destroy other singletons, so each is looked up again.
  for (auto it = instances.rbegin(); it != instances.rend(); ++it) {
    std::unique_lock lock(registry().mutex);
    auto const& present = registry().instances;
    bool const alive = std::find(present.begin(), present.end(), *it) != present.end();
    lock.unlock();
    if (alive) {
      (*it)->shutdown();
    }
  }
}

} // namespace zor
