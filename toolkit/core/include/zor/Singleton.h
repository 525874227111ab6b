#pragma once

#include <memory>

namespace zor {

/**
 * Base of objects of which a process has one. Each registers itself when it is made; shutdownAll() lets them
 * give up what they hold in the reverse order, before static objects they may use die.
 */
class Singleton {
public:
  Singleton(Singleton const&) = delete;
  Singleton& operator=(Singleton const&) = delete;

  /** Calls shutdown() of every registered instance, the latest first; each is called once. */
  static void shutdownAll();

protected:
  Singleton();
  virtual ~Singleton();

  /** Gives up what the instance holds. It must stay usable as if new, or refuse with an exception. */
  virtual void shutdown() = 0;

private:
  class Registry;
  static std::shared_ptr<Registry> const& registry();

  // Kept by every instance, since static ones may die after the function's own static pointer.
  std::shared_ptr<Registry> m_registry;
};

} // namespace zor
