#pragma once

#include <cstddef>

namespace zor {

/**
 * Source of the memory of the toolkit's containers. Derive and install one with setDefault() to count, limit
 * or place their storage. A container keeps the allocator that was installed when it was made.
 */
class ByteAllocator {
public:
  virtual ~ByteAllocator() = default;

  /**
   * \param bytes - number of bytes, more than 0
   * \param alignment - alignment in bytes, a power of two
   * \return the memory, never null
   * \throws std::bad_alloc if there is not enough memory
   */
  virtual void* allocate(std::size_t bytes, std::size_t alignment);

  /** \param memory - memory from allocate() of this allocator; bytes and alignment as given there */
  virtual void deallocate(void* memory, std::size_t bytes, std::size_t alignment) noexcept;

  /** \return the allocator that containers made from now on use */
  static ByteAllocator& getDefault() noexcept;

  /** \param allocator - must outlive every container made meanwhile; null for the one of the system */
  static void setDefault(ByteAllocator* allocator) noexcept;
};

} // namespace zor
