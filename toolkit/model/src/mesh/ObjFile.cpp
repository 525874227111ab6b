#include "mesh/MeshFile.h"

#include <array>
#include <charconv>
#include <map>
#include <stdexcept>
#include <vector>

#include <zor/Vec2.h>
#include <zor/Vec3.h>

#include "mesh/TextScanner.h"

namespace zorModel {

namespace {

/** A corner of a face names a position, a texture coordinate and a normal of their own; -1 for none. */
using Corner = std::array<long, 3>;

class ObjReader {
public:
  explicit ObjReader(std::string const& text) : m_scanner(text) {}

  zor::ref_ptr<zorRender::RenderData> read();

private:
  zor::Vec3 vector();
  void face();
  Corner corner(std::string_view word) const;
  long index(std::string_view text, std::size_t count) const;
  zor::UInt32 vertex(Corner const& corner);
  void give(zorRender::RenderData& data) const;

  TextScanner m_scanner;
  zor::Vec3Vector m_positions;
  zor::Vec2Vector m_texCoords;
  zor::Vec3Vector m_normals;
  std::map<Corner, zor::UInt32> m_known;
  std::vector<Corner> m_vertices;
  zor::UInt32Vector m_indices;
};

zor::ref_ptr<zorRender::RenderData> ObjReader::read() {
  while (m_scanner.nextLine()) {
    std::string_view const kind = m_scanner.word();
    if (kind == "v")
      m_positions.push_back(vector());
    else if (kind == "vn")
      m_normals.push_back(vector());
    else if (kind == "vt") {
      double const u = m_scanner.number();
      m_texCoords.push_back(zor::Vec2(u, m_scanner.number()));
    } else if (kind == "f")
      face();
  }
  zor::ref_ptr<zorRender::RenderData> data = new zorRender::RenderData;
  give(*data);
  return data;
}

zor::Vec3 ObjReader::vector() {
  double const x = m_scanner.number(), y = m_scanner.number();
  return zor::Vec3(x, y, m_scanner.number());
}

// Faces may have any number of corners; they are taken for convex.
void ObjReader::face() {
  std::vector<zor::UInt32> corners;
  for (std::string_view word = m_scanner.word(); !word.empty(); word = m_scanner.word())
    corners.push_back(vertex(corner(word)));
  if (corners.size() < 3)
    m_scanner.fail("a face has less than three corners");
  for (std::size_t i = 2; i < corners.size(); ++i)
    for (zor::UInt32 const each : {corners[0], corners[i - 1], corners[i]})
      m_indices.push_back(each);
}

Corner ObjReader::corner(std::string_view word) const {
  std::array<std::size_t, 3> const counts{m_positions.size(), m_texCoords.size(), m_normals.size()};
  Corner result{-1, -1, -1};
  for (std::size_t part = 0; part < 3; ++part) {
    std::size_t const slash = word.find('/');
    std::string_view const text = word.substr(0, slash);
    if (part == 0 || !text.empty())
      result[part] = index(text, counts[part]);
    if (slash == std::string_view::npos)
      return result;
    word.remove_prefix(slash + 1);
  }
  m_scanner.fail("a corner names more than three numbers");
}

// Counted from 1, or backwards from the last one so far.
long ObjReader::index(std::string_view text, std::size_t count) const {
  long value = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  long const size = static_cast<long>(count);
  bool const inside = value > 0 ? value <= size : value < 0 && value >= -size;
  if (error != std::errc() || end != text.data() + text.size() || !inside)
    m_scanner.fail("\"" + std::string(text) + "\" is not the number of one of the " + std::to_string(count) +
                   " entries before");
  return value > 0 ? value - 1 : size + value;
}

zor::UInt32 ObjReader::vertex(Corner const& corner) {
  auto const [place, isNew] = m_known.try_emplace(corner, static_cast<zor::UInt32>(m_vertices.size()));
  if (isNew)
    m_vertices.push_back(corner);
  return place->second;
}

void ObjReader::give(zorRender::RenderData& data) const {
  zor::Vec3Vector positions, normals;
  zor::Vec2Vector texCoords;
  bool haveTexCoords = true, haveNormals = true;
  for (Corner const& each : m_vertices) {
    positions.push_back(m_positions[static_cast<std::size_t>(each[0])]);
    haveTexCoords = haveTexCoords && each[1] >= 0;
    haveNormals = haveNormals && each[2] >= 0;
    if (haveTexCoords)
      texCoords.push_back(m_texCoords[static_cast<std::size_t>(each[1])]);
    if (haveNormals)
      normals.push_back(m_normals[static_cast<std::size_t>(each[2])]);
  }
  data.setVertices(positions);
  if (haveTexCoords)
    data.setTexCoords(texCoords);
  if (haveNormals)
    data.setNormals(normals);
  data.setIndices(m_indices);
}

} // namespace

zor::ref_ptr<zorRender::RenderData> readObj(std::string const& text) {
  return ObjReader(text).read();
}

} // namespace zorModel
