#include <zor/ByteAllocator.h>

#include <atomic>
#include <new>

namespace zor {

namespace {
// Never destroyed: containers in static objects may outlive everything else here.
ByteAllocator& systemAllocator() noexcept {
  alignas(ByteAllocator) static unsigned char storage[sizeof(ByteAllocator)];
  static ByteAllocator* const allocator = new (storage) ByteAllocator;
  return *allocator;
}

std::atomic<ByteAllocator*> g_allocator{nullptr};
} // namespace

void* ByteAllocator::allocate(std::size_t bytes, std::size_t alignment) {
  return ::operator new(bytes, std::align_val_t(alignment));
}

void ByteAllocator::deallocate(void* memory, std::size_t bytes, std::size_t alignment) noexcept {
  ::operator delete(memory, bytes, std::align_val_t(alignment));
}

ByteAllocator& ByteAllocator::getDefault() noexcept {
  ByteAllocator* const installed = g_allocator.load(std::memory_order_acquire);
  return installed ? *installed : systemAllocator();
}

void ByteAllocator::setDefault(ByteAllocator* allocator) noexcept {
  g_allocator = allocator;
}

} // namespace zor
