#include <zor/Singleton.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace zor {

class Singleton::Registry {
public:
  void add(Singleton* instance) {
    std::lock_guard const lock(m_mutex);
    m_instances.push_back(instance);
  }

  void remove(Singleton* instance) {
    std::lock_guard const lock(m_mutex);
    std::erase(m_instances, instance);
  }

  bool contains(Singleton* instance) const {
    std::lock_guard const lock(m_mutex);
    return std::find(m_instances.begin(), m_instances.end(), instance) != m_instances.end();
  }

  std::vector<Singleton*> getInstances() const {
    std::lock_guard const lock(m_mutex);
    return m_instances;
  }

private:
  mutable std::mutex m_mutex;
  std::vector<Singleton*> m_instances;
};

std::shared_ptr<Singleton::Registry> const& Singleton::registry() {
  static std::shared_ptr<Registry> const instance = std::make_shared<Registry>();
  return instance;
}

Singleton::Singleton() : m_registry(registry()) {
  m_registry->add(this);
}

Singleton::~Singleton() {
  m_registry->remove(this);
}

void Singleton::shutdownAll() {
  std::vector<Singleton*> const instances = registry()->getInstances();
  // A shutdown may make or destroy other singletons, so each is looked up again.
  for (auto instance = instances.rbegin(); instance != instances.rend(); ++instance) {
    if (registry()->contains(*instance)) {
      (*instance)->shutdown();
    }
  }
}

} // namespace zor
