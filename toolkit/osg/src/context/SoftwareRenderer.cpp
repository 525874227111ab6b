#include "SoftwareRenderer.h"

#include <osg/GL>

#include <cstring>
#include <mutex>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace zorOSG {

namespace {

void keepHeap() {
#ifdef __GLIBC__
  // Setting one of the two stops the allocator from adapting the other.
  mallopt(M_TRIM_THRESHOLD, 128 << 20);
  mallopt(M_MMAP_THRESHOLD, 32 << 20); // the most that it takes
#endif
}

} // namespace

bool drawsOnProcessor() {
  auto const* const renderer = reinterpret_cast<char const*>(glGetString(GL_RENDERER));
  return renderer && (std::strstr(renderer, "llvmpipe") || std::strstr(renderer, "softpipe"));
}

void keepHeapForSoftwareRenderer() {
  static std::once_flag once;
  if (drawsOnProcessor())
    std::call_once(once, keepHeap);
}

} // namespace zorOSG
