#include <zorOSG/CurrentApplication.h>

#include "CurrentApplicationScope.h"

#include <atomic>

namespace zorOSG {

namespace {

thread_local ExampleApplication* innermost = nullptr;
std::atomic<ExampleApplication*> latest{nullptr};

} // namespace

zorOSG::ExampleApplication* getCurrentApplication() {
  return innermost ? innermost : latest.load();
}

CurrentApplicationScope::CurrentApplicationScope(ExampleApplication* app) : m_previous(innermost) {
  innermost = app;
}

CurrentApplicationScope::~CurrentApplicationScope() {
  innermost = m_previous;
}

void CurrentApplicationScope::setLatest(ExampleApplication* app) {
  latest.store(app);
}

void CurrentApplicationScope::forget(ExampleApplication* app) {
  latest.compare_exchange_strong(app, nullptr);
}

} // namespace zorOSG
