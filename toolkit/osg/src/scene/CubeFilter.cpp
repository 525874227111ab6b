#include "CubeFilter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <future>
#include <map>
#include <mutex>
#include <numbers>
#include <type_traits>
#include <vector>

#include <osg/GL>
#include <osg/Texture>
#include <osg/observer_ptr>

#include "CubeLevel.h"

namespace zorOSG {

namespace {

constexpr int LEAST_SIDE = 256; // smaller ones are made larger, so that there is an image for each roughness
constexpr int MOST_READ = 512;  // what rough surfaces see needs no finer pixels
constexpr int LARGEST_BLURRED = 384; // larger images are of surfaces so smooth that means over pixels do
constexpr float QUARTER_ROUGH = 128; // pixels a side

constexpr float PI = std::numbers::pi_v<float>;

/** A direction that a rough mirror sees, about the z axis, and how large a part it stands for. */
struct Glance {
  osg::Vec3f way;
  float weight;
  int level; // of the pyramid
};

/** Numbers from 0 to 1 that are spread evenly (J. G. van der Corput, "Verteilungsfunktionen", 1935). */
float spread(std::uint32_t number) {
  std::uint32_t bits = 0;
  for (int i = 0; i < 32; ++i, number >>= 1)
    bits = bits << 1 | (number & 1);
  return static_cast<float>(bits) * 0x1p-32f;
}

/**
 * Where the small mirrors of a surface look when one looks straight at it. Their directions are those of the
 * shader's lights; each glance reads the size of the images whose pixels are as large as the part it stands
 * for (M. Colbert, J. Krivanek, "GPU-based importance sampling", GPU Gems 3, 2007).
 */
std::vector<Glance> glancesOf(float roughness, unsigned int count, int side, int levels) {
  float const width = std::max(roughness * roughness, 1.0e-4f), square = width * width;
  float const pixel = 4.0f * PI / (6.0f * static_cast<float>(side) * static_cast<float>(side));
  std::vector<Glance> glances;
  for (unsigned int i = 0; i < count; ++i) {
    float const share = (static_cast<float>(i) + 0.5f) / static_cast<float>(count);
    float const turn = 2.0f * PI * spread(i);
    float const middle = std::sqrt((1.0f - share) / (1.0f + (square - 1.0f) * share)); // cosine of the mirror
    float const slope = std::sqrt(std::max(1.0f - middle * middle, 0.0f));
    osg::Vec3f const way(2.0f * middle * slope * std::cos(turn), 2.0f * middle * slope * std::sin(turn),
                         2.0f * middle * middle - 1.0f);
    if (way.z() <= 0.0f)
      continue;
    float const away = middle * middle * (square - 1.0f) + 1.0f;
    float const density = square / (PI * away * away) / 4.0f;
    float const part = 1.0f / (static_cast<float>(count) * density);
    float const level = 0.5f * std::log2(part / pixel) + 1.0f; // a little wider, so that nothing is left out
    glances.push_back({way, way.z(), std::clamp(static_cast<int>(std::lround(level)), 0, levels - 1)});
  }
  float total = 0.0f;
  for (Glance const& glance : glances)
    total += glance.weight;
  for (Glance& glance : glances)
    glance.weight /= total;
  return glances;
}

using Pyramid = std::vector<CubeLevel>;

osg::Vec3f seenBy(std::vector<Glance> const& glances, osg::Vec3f normal, Pyramid const& pyramid) {
  normal.normalize();
  osg::Vec3f right = (std::abs(normal.z()) < 0.9f ? osg::Vec3f(0, 0, 1) : osg::Vec3f(1, 0, 0)) ^ normal;
  right.normalize();
  osg::Vec3f const up = normal ^ right;
  osg::Vec3f sum;
  for (Glance const& glance : glances)
    sum += pyramid[static_cast<size_t>(glance.level)].look(right * glance.way.x() + up * glance.way.y() +
                                                           normal * glance.way.z()) *
           glance.weight;
  return sum;
}

/** What falls on a dull surface, from all sides. */
osg::Vec3f lightOn(osg::Vec3f normal, CubeLevel const& around) {
  normal.normalize();
  osg::Vec3f sum;
  float total = 0.0f;
  for (int face = 0; face < 6; ++face)
    for (int row = 0; row < around.side(); ++row)
      for (int column = 0; column < around.side(); ++column) {
        osg::Vec3f const way = around.directionOf(face, column, row);
        float const square = way.length2();
        float const weight =
            std::max(way * normal, 0.0f) / (square * square); // pixels at corners are smaller
        sum += around.at(face, column, row) * weight;
        total += weight;
      }
  return sum / total;
}

/** Fills the faces of a level at once, on all processors. */
template <class Color>
CubeLevel makeLevel(int side, Color const& colorAt) {
  CubeLevel level(side);
  std::array<std::future<void>, 6> faces;
  for (int face = 0; face < 6; ++face)
    faces[static_cast<size_t>(face)] = std::async(std::launch::async, [&, face] {
      for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column)
          level.at(face, column, row) = colorAt(level.directionOf(face, column, row));
    });
  for (std::future<void>& face : faces)
    face.get();
  return level;
}

CubeLevel makeRoughLevel(int side, float roughness, Pyramid const& pyramid) {
  auto const count = std::max(static_cast<unsigned int>(48.0f * roughness * (1.0f + roughness)), 6u);
  std::vector<Glance> const glances =
      glancesOf(roughness, count, pyramid.front().side(), static_cast<int>(pyramid.size()));
  return makeLevel(side, [&](osg::Vec3f const& normal) { return seenBy(glances, normal, pyramid); });
}

/** All sizes, the given one first. */
Pyramid makePyramid(CubeLevel base) {
  Pyramid pyramid{std::move(base)};
  while (pyramid.back().side() > 1)
    pyramid.push_back(pyramid.back().halved());
  return pyramid;
}

Pyramid blurred(CubeLevel base) {
  Pyramid result = makePyramid(std::move(base));
  auto const isSmall = [](CubeLevel const& level) { return level.side() <= MOST_READ; };
  Pyramid const pyramid(std::find_if(result.begin(), result.end(), isSmall), result.end());
  CubeLevel const& around = pyramid[pyramid.size() - 5];
  // As the shader counts: the number of the image for 0.25 rough.
  int const quarter = static_cast<int>(
      std::ceil(std::log2(static_cast<float>(result.front().side()) / QUARTER_ROUGH) - 0.001f));
  for (int number = 1; number < static_cast<int>(result.size()); ++number) {
    CubeLevel& level = result[static_cast<size_t>(number)];
    float const roughness = number < quarter
                                ? 0.25f * static_cast<float>(number) / static_cast<float>(quarter)
                                : 0.25f * static_cast<float>(number - quarter + 1);
    if (level.side() > LARGEST_BLURRED)
      continue;
    level = roughness <= 1.0f
                ? makeRoughLevel(level.side(), roughness, pyramid)
                : makeLevel(level.side(), [&](osg::Vec3f const& normal) { return lightOn(normal, around); });
  }
  return result;
}

osg::Vec3f colorAt(osg::Image const& image, int column, int row) {
  auto const x = static_cast<unsigned int>(column), y = static_cast<unsigned int>(row);
  GLenum const format = image.getPixelFormat();
  if (image.getDataType() == GL_UNSIGNED_BYTE && (format == GL_RGB || format == GL_RGBA)) { // as most are
    unsigned char const* const bytes = image.data(x, y);
    return osg::Vec3f(bytes[0], bytes[1], bytes[2]) * (1.0f / 255.0f);
  }
  osg::Vec4 const color = image.getColor(x, y);
  return {color.r(), color.g(), color.b()};
}

CubeLevel read(CubeSides const& sides) {
  CubeLevel level(sides[0]->s());
  for (int face = 0; face < 6; ++face)
    for (int row = 0; row < level.side(); ++row)
      for (int column = 0; column < level.side(); ++column)
        level.at(face, column, row) = colorAt(*sides[static_cast<size_t>(face)], column, row);
  return level;
}

template <class Number>
void write(CubeLevel const& level, int face, Number*& to) {
  for (int row = 0; row < level.side(); ++row)
    for (int column = 0; column < level.side(); ++column)
      for (int i = 0; i < 3; ++i) {
        float const part = level.at(face, column, row)[i];
        if constexpr (std::is_same_v<Number, float>)
          *to++ = part;
        else
          *to++ = static_cast<Number>(std::clamp(part, 0.0f, 1.0f) * 255.0f + 0.5f);
      }
}

template <class Number>
osg::ref_ptr<osg::Image> makeSide(Pyramid const& pyramid, int face, GLint internalFormat, GLenum type) {
  size_t pixels = 0;
  osg::Image::MipmapDataType offsets;
  for (CubeLevel const& level : pyramid) {
    if (pixels > 0)
      offsets.push_back(static_cast<unsigned int>(3 * sizeof(Number) * pixels));
    pixels += static_cast<size_t>(level.side()) * static_cast<size_t>(level.side());
  }
  auto* const data = new unsigned char[3 * sizeof(Number) * pixels];
  osg::ref_ptr<FilteredSide> side = new FilteredSide;
  int const width = pyramid.front().side();
  side->setImage(width, width, 1, internalFormat, GL_RGB, type, data, osg::Image::USE_NEW_DELETE, 1);
  side->setMipmapLevels(offsets);
  side->setOrigin(osg::Image::TOP_LEFT);
  auto* to = reinterpret_cast<Number*>(data);
  for (CubeLevel const& level : pyramid)
    write(level, face, to);
  return side;
}

CubeSides makeSides(Pyramid const& pyramid, bool isByte) {
  CubeSides sides;
  for (int face = 0; face < 6; ++face)
    sides[static_cast<size_t>(face)] = isByte
                                           ? makeSide<unsigned char>(pyramid, face, GL_RGB8, GL_UNSIGNED_BYTE)
                                           : makeSide<float>(pyramid, face, GL_RGB16F_ARB, GL_FLOAT);
  return sides;
}

/** A number for the pixels of images (G. Fowler, L. C. Noll, K.-P. Vo, "FNV hash"). */
std::uint64_t numberOf(CubeSides const& sides) {
  std::uint64_t number = 0xcbf29ce484222325u;
  auto const add = [&number](std::uint64_t word) {
    number = std::rotl((number ^ word) * 0x100000001b3u, 29);
  };
  for (osg::ref_ptr<osg::Image> const& side : sides) {
    add(static_cast<std::uint64_t>(side->s()) << 32 | side->getPixelFormat());
    add(side->getDataType());
    for (int row = 0; row < side->t(); ++row) {
      unsigned char const* from = side->data(0, static_cast<unsigned int>(row));
      for (size_t left = side->getRowSizeInBytes(); left > 0;) {
        std::uint64_t word = 0;
        size_t const size = std::min(left, sizeof word);
        std::memcpy(&word, from, size);
        add(word);
        from += size;
        left -= size;
      }
    }
  }
  return number;
}

/** What has been filtered, for as long as it is used. */
class Filtered {
public:
  static Filtered& instance() {
    static Filtered& filtered = *new Filtered; // never destroyed: nodes in static storage may go later
    return filtered;
  }

  CubeSides find(std::uint64_t number) {
    std::scoped_lock const lock(m_mutex);
    CubeSides sides;
    auto const found = m_sides.find(number);
    for (size_t i = 0; found != m_sides.end() && i < sides.size(); ++i)
      if (!found->second[i].lock(sides[i]))
        return {};
    return sides;
  }

  void add(std::uint64_t number, CubeSides const& sides) {
    std::scoped_lock const lock(m_mutex);
    std::erase_if(m_sides, [](auto const& entry) { return !entry.second[0].valid(); });
    for (size_t i = 0; i < sides.size(); ++i)
      m_sides[number][i] = sides[i];
  }

private:
  std::mutex m_mutex;
  std::map<std::uint64_t, std::array<osg::observer_ptr<osg::Image>, 6>> m_sides;
};

} // namespace

CubeSides filterCube(CubeSides const& sides) {
  if (std::any_of(sides.begin(), sides.end(), [](auto const& side) { return side->isCompressed(); }))
    return sides;
  std::uint64_t const number = numberOf(sides);
  CubeSides found = Filtered::instance().find(number);
  if (found[0])
    return found;
  CubeLevel base = read(sides);
  if (base.side() < LEAST_SIDE)
    base = base.resized(LEAST_SIDE);
  found = makeSides(blurred(std::move(base)), sides[0]->getDataType() == GL_UNSIGNED_BYTE);
  Filtered::instance().add(number, found);
  return found;
}

} // namespace zorOSG
