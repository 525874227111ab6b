#include <zor/Component.h>

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace zor {

namespace {
// Compares plain pointers: a temporary ref_ptr would destroy an object that nobody else holds.
template <class Objects>
auto findIn(Objects& objects, zor::Object const* object) {
  return std::find_if(objects.begin(), objects.end(), [object](auto const& o) { return o.get() == object; });
}

thread_local int g_printDepth = 0; // nesting of printSubtree(), which an override may continue
} // namespace

Component::~Component() = default;

void Component::setContext(zor::Object* context) {
  m_context = context;
}

zor::Object* Component::getContext() const {
  return m_context.get();
}

void Component::rebind() {
  for (auto const& object : m_objects) {
    if (auto* component = dynamic_cast<Component*>(object.get())) {
      component->rebind();
    }
  }
}

void Component::addObject(zor::Object* object, bool bindNow) {
  if (!object || object == this) {
    throw std::invalid_argument("component \"" + getName() + "\" can't group " +
                                (object ? "itself" : "a null object"));
  }
  if (findIn(m_objects, object) == m_objects.end()) {
    m_objects.push_back(object);
  }
  auto* component = dynamic_cast<Component*>(object);
  if (bindNow && component) {
    component->setContext(getContext());
  }
}

void Component::removeObject(zor::Object* object) {
  auto const found = findIn(m_objects, object);
  if (found != m_objects.end()) {
    m_objects.erase(found);
  }
}

void Component::printSubtree() const {
  struct Level {
    Level() { ++g_printDepth; }
    ~Level() { --g_printDepth; }
  };
  std::cout << String(2 * static_cast<std::size_t>(g_printDepth), ' ') << getName() << "\n";
  Level const level;
  for (auto const& object : m_objects) {
    if (auto const* component = dynamic_cast<Component const*>(object.get())) {
      component->printSubtree();
    } else {
      std::cout << String(2 * static_cast<std::size_t>(g_printDepth), ' ') << object->getName() << "\n";
    }
  }
  if (g_printDepth == 1) {
    std::cout.flush();
  }
}

} // namespace zor
