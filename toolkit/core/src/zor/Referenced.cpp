#include <zor/Referenced.h>

#include <zor/DeleteHandler.h>
#include <zor/ObserverBlock.h>

namespace zor {

namespace {
std::atomic<DeleteHandler*> g_deleteHandler{nullptr};
}

Referenced::~Referenced() {
  tellObservers();
}

bool Referenced::tryReference() const noexcept {
  int count = m_count.load(std::memory_order_acquire);
  while (count > 0) {
    if (m_count.compare_exchange_weak(count, count + 1, std::memory_order_acq_rel)) {
      return true;
    }
  }
  return false;
}

void Referenced::setDeleteHandler(DeleteHandler* handler) noexcept {
  g_deleteHandler = handler;
}

DeleteHandler* Referenced::getDeleteHandler() noexcept {
  return g_deleteHandler;
}

void Referenced::deleteUsingDeleteHandler() const noexcept {
  if (DeleteHandler* handler = g_deleteHandler) {
    handler->requestDelete(this);
  } else {
    delete this;
  }
}

void Referenced::destroy() const noexcept {
  // Before the destructors run: an observer must never see an object that is half gone.
  tellObservers();
  deleteUsingDeleteHandler();
}

void Referenced::tellObservers() const noexcept {
  if (ObserverBlock* block = m_observers.exchange(nullptr)) {
    block->objectDied();
    block->unreference();
  }
}

ObserverBlock* Referenced::getOrCreateObserverBlock() const {
  ObserverBlock* block = m_observers.load();
  if (!block) {
    auto* made = new ObserverBlock(this); // counted: the object holds the first reference
    if (m_observers.compare_exchange_strong(block, made)) {
      block = made;
    } else {
      made->unreference();
    }
  }
  return block;
}

void DeleteHandler::destroy(Referenced const* object) noexcept {
  delete object;
}

void ObserverBlock::unreference() noexcept {
  if (m_count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete this;
  }
}

bool ObserverBlock::isAlive() const noexcept {
  std::lock_guard const lock(m_mutex);
  return m_object != nullptr;
}

bool ObserverBlock::tryReferenceObject() noexcept {
  std::lock_guard const lock(m_mutex);
  return m_object && m_object->tryReference();
}

void ObserverBlock::objectDied() noexcept {
  std::lock_guard const lock(m_mutex);
  m_object = nullptr;
}

} // namespace zor
