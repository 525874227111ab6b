#include "runtime/CheckedGeometry.h"

#include <osg/Notify>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace zorBinding {
namespace {

std::uint64_t const NO_LIMIT = std::numeric_limits<std::uint64_t>::max();
std::uint64_t const IMPOSSIBLE = NO_LIMIT;

template <class Elements>
std::uint64_t endOfElements(osg::PrimitiveSet const& primitives) {
  auto const& indices = static_cast<Elements const&>(primitives);
  return indices.empty() ? 0 : std::uint64_t{*std::max_element(indices.begin(), indices.end())} + 1;
}

// Number of vertices that a primitive set needs.
std::uint64_t endOf(osg::PrimitiveSet const& primitives) {
  switch (primitives.getType()) {
  case osg::PrimitiveSet::DrawArraysPrimitiveType: {
    auto const& range = static_cast<osg::DrawArrays const&>(primitives);
    if (range.getFirst() < 0 || range.getCount() < 0)
      return IMPOSSIBLE;
    return static_cast<std::uint64_t>(range.getFirst()) + static_cast<std::uint64_t>(range.getCount());
  }
  case osg::PrimitiveSet::DrawArrayLengthsPrimitiveType: {
    auto const& lengths = static_cast<osg::DrawArrayLengths const&>(primitives);
    if (lengths.getFirst() < 0)
      return IMPOSSIBLE;
    auto end = static_cast<std::uint64_t>(lengths.getFirst());
    for (GLsizei const length : lengths) {
      if (length < 0)
        return IMPOSSIBLE;
      end += static_cast<std::uint64_t>(length);
    }
    return end;
  }
  case osg::PrimitiveSet::DrawElementsUBytePrimitiveType:
    return endOfElements<osg::DrawElementsUByte>(primitives);
  case osg::PrimitiveSet::DrawElementsUShortPrimitiveType:
    return endOfElements<osg::DrawElementsUShort>(primitives);
  case osg::PrimitiveSet::DrawElementsUIntPrimitiveType:
    return endOfElements<osg::DrawElementsUInt>(primitives);
  default:
    return 0; // not made by scripts
  }
}

struct Need {
  std::uint64_t vertices = 0;
  std::uint64_t sets = 0;
};

std::string faultOf(osg::Array const* array, char const* name, Need const& need, bool isVertices = false) {
  if (!array)
    return {};
  std::uint64_t const size = array->getNumElements();
  std::uint64_t needed = 0;
  if (isVertices || array->getBinding() == osg::Array::BIND_PER_VERTEX)
    needed = need.vertices;
  else if (array->getBinding() == osg::Array::BIND_PER_PRIMITIVE_SET)
    needed = need.sets;
  else if (array->getBinding() == osg::Array::BIND_OVERALL)
    needed = 1;
  if (size >= needed)
    return {};
  return std::to_string(needed) + " " + name + " are needed, there are " + std::to_string(size);
}

std::string faultOfLists(osg::Geometry const& geometry, Need const& need) {
  for (auto const& array : geometry.getTexCoordArrayList()) {
    if (std::string fault = faultOf(array.get(), "texture coordinates", need); !fault.empty())
      return fault;
  }
  for (auto const& array : geometry.getVertexAttribArrayList()) {
    if (std::string fault = faultOf(array.get(), "values of an attribute", need); !fault.empty())
      return fault;
  }
  return {};
}

} // namespace

std::string geometryFault(osg::Geometry const& geometry) {
  Need need;
  for (auto const& primitives : geometry.getPrimitiveSetList()) {
    std::uint64_t const end = endOf(*primitives);
    if (end == IMPOSSIBLE)
      return "a primitive set begins before the first vertex or has a negative length";
    need.vertices = std::max(need.vertices, end);
    ++need.sets;
  }
  for (std::string const& fault :
       {faultOf(geometry.getVertexArray(), "vertices", need, true),
        faultOf(geometry.getNormalArray(), "normals", need),
        faultOf(geometry.getColorArray(), "colours", need),
        faultOf(geometry.getSecondaryColorArray(), "secondary colours", need),
        faultOf(geometry.getFogCoordArray(), "fog coordinates", need), faultOfLists(geometry, need)}) {
    if (!fault.empty())
      return fault;
  }
  return {};
}

bool isSound(osg::Geometry const& geometry, std::string& reported) {
  std::string const fault = geometryFault(geometry);
  if (!fault.empty() && fault != reported)
    OSG_WARN << "Geometry '" << geometry.getName() << "' is not drawn: " << fault << std::endl;
  reported = fault;
  return fault.empty();
}

} // namespace zorBinding
