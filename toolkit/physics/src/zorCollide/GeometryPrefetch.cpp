#include <zorCollide/GeometryPrefetch.h>

#include "bullet/GeometryImpl.h"

namespace zorCollide {

namespace {

// How many geometries ahead each part is asked for: long enough for it to arrive before the next part is.
constexpr std::size_t FRAMES_OF_BODIES = 3, PARTS = 6, IMPLEMENTATION = 9, OBJECT = 12;

template <class T>
void prefetch(T const* object) {
  constexpr std::size_t LINE = 64;
  char const* const start = reinterpret_cast<char const*>(object);
  for (std::size_t offset = 0; offset < sizeof(T); offset += LINE)
    __builtin_prefetch(start + offset);
}

/** The first lines, where that is all that is needed. */
void prefetchStart(void const* object) {
  __builtin_prefetch(object);
  __builtin_prefetch(static_cast<char const*>(object) + 64);
}

} // namespace

void GeometryPrefetch::before(std::size_t index) const {
  auto const ahead = [&](std::size_t distance) -> Geometry const* {
    return index + distance < m_geometries.size() ? m_geometries[index + distance].get() : nullptr;
  };
  if (Geometry const* const geometry = ahead(OBJECT))
    prefetch(geometry);
  if (Geometry const* const geometry = ahead(IMPLEMENTATION)) {
    prefetchStart(&geometry->getImpl());
    prefetchStart(geometry->getShapes().data());
  }
  if (Geometry const* const geometry = ahead(PARTS)) {
    prefetch(geometry->getImpl().frame.get());
    if (geometry->getNumShapes() > 0)
      prefetchStart(geometry->getShapes()[0].get());
  }
  if (Geometry const* const geometry = ahead(FRAMES_OF_BODIES))
    prefetch(geometry->getImpl().frame->getParent());
}

} // namespace zorCollide
