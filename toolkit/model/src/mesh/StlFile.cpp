#include "mesh/MeshFile.h"

#include <bit>
#include <cstdint>
#include <stdexcept>

#include <zor/Vec3.h>

#include "mesh/TextScanner.h"

namespace zorModel {

namespace {

constexpr std::size_t HEADER = 80, COUNT = 4, TRIANGLE = 50, NORMAL = 12;

std::uint32_t littleEndian(char const* bytes) {
  std::uint32_t value = 0;
  for (int i = 3; i >= 0; --i)
    value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return value;
}

std::size_t binarySize(std::string const& bytes) {
  return HEADER + COUNT + TRIANGLE * std::size_t{littleEndian(bytes.data() + HEADER)};
}

// Binary files may well begin with "solid", so their size decides.
bool isBinary(std::string const& bytes) {
  return bytes.size() >= HEADER + COUNT && (bytes.size() == binarySize(bytes) || !bytes.starts_with("solid"));
}

zor::Vec3Vector binaryCorners(std::string const& bytes) {
  if (bytes.size() < binarySize(bytes))
    throw std::runtime_error("the file ends too early: " + std::to_string(bytes.size()) + " bytes of " +
                             std::to_string(binarySize(bytes)));
  std::size_t const count = littleEndian(bytes.data() + HEADER);
  zor::Vec3Vector corners;
  corners.reserve(3 * count);
  for (std::size_t i = 0; i < 3 * count; ++i) {
    char const* at = bytes.data() + HEADER + COUNT + i / 3 * TRIANGLE + NORMAL + i % 3 * NORMAL;
    zor::Vec3 corner;
    for (std::size_t axis = 0; axis < 3; ++axis)
      corner[axis] = static_cast<double>(std::bit_cast<float>(littleEndian(at + 4 * axis)));
    if (!corner.isFinite())
      throw std::runtime_error("triangle " + std::to_string(i / 3) + " has a corner that is not finite");
    corners.push_back(corner);
  }
  return corners;
}

zor::Vec3Vector textCorners(std::string const& text) {
  TextScanner scanner(text);
  zor::Vec3Vector corners;
  std::size_t ofFace = 0;
  if (!scanner.nextLine() || scanner.word() != "solid")
    scanner.fail("neither \"solid\" nor a binary file");
  while (scanner.nextLine()) {
    std::string_view const word = scanner.word();
    if (word == "vertex") {
      double const x = scanner.number(), y = scanner.number();
      corners.push_back(zor::Vec3(x, y, scanner.number()));
      ++ofFace;
    } else if (word == "endloop") {
      if (ofFace != 3)
        scanner.fail("a facet has " + std::to_string(ofFace) + " corners instead of three");
      ofFace = 0;
    }
  }
  if (ofFace != 0)
    scanner.fail("the file ends inside a facet");
  return corners;
}

} // namespace

zor::ref_ptr<zorRender::RenderData> readStl(std::string const& bytes) {
  zor::Vec3Vector const corners = isBinary(bytes) ? binaryCorners(bytes) : textCorners(bytes);
  zor::UInt32Vector indices;
  for (zor::UInt32 i = 0; i < corners.size(); ++i)
    indices.push_back(i);
  zor::ref_ptr<zorRender::RenderData> data = new zorRender::RenderData;
  data->setVertices(corners);
  data->setIndices(indices);
  return data;
}

} // namespace zorModel
