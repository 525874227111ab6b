#pragma once

#include <vector>

#include <osg/Vec4>
#include <osg/ref_ptr>
#include <osgSim/ColorRange>

#include <zor/Referenced.h>
#include <zor/Types.h>
#include <zor/Vec4.h>
#include <zorRender/ColorVector.h>

namespace zorOSG {

/**
 * Gives colours to numbers: an interval is laid over a row of colours at even distances, between which is
 * interpolated. Numbers outside the interval get the colour of the nearer end.
 *
 * Where something changes, it does so for all that use the map.
 */
class ScalarColorMap : public zor::Referenced {
public:
  /** Rows of colours. Viridis, inferno, plasma and cividis rise evenly in brightness. */
  enum ColorRangePreset : int {
    RAINBOW = 0,        ///< blue, cyan, green, yellow, red
    COOLWARM = 1,       ///< blue over light grey to red
    VIRIDIS = 2,        ///< dark violet over green to yellow
    INFERNO = 3,        ///< black over red and orange to pale yellow
    PLASMA = 4,         ///< dark blue over magenta to yellow
    GRAYSCALE = 5,      ///< black to white
    BLUE_WHITE_RED = 6, ///< blue over white to red
    CIVIDIS = 7,        ///< dark blue over grey to yellow, the same to colour-blind eyes
    BONE = 8,           ///< black to white with a tint of blue
    COPPER = 9,         ///< black to copper
    AFMHOT = 10         ///< black over red-brown and orange to white
  };

  /** Creates a map with the preset VIRIDIS on the interval 0 to 1. */
  ScalarColorMap();

  /**
   * \param colorVector - the colours, from the lowest to the highest number; none, or one that is not finite,
   * throws std::invalid_argument
   * \param minScalar - where the first colour is
   * \param maxScalar - where the last colour is; the two are swapped if it is less. Not finite throws
   * std::invalid_argument
   */
  ScalarColorMap(zorRender::ColorVector const& colorVector, zor::Real minScalar, zor::Real maxScalar);

  /**
   * \param preset - the colours; another value throws std::invalid_argument
   * \param minScalar - where the first colour is
   * \param maxScalar - where the last colour is; the two are swapped if it is less. Not finite throws
   * std::invalid_argument
   */
  ScalarColorMap(zorOSG::ScalarColorMap::ColorRangePreset preset, zor::Real minScalar, zor::Real maxScalar);

  /** \param colorRangePreset - the new colours; another value throws std::invalid_argument */
  void setColorsFromPreset(zorOSG::ScalarColorMap::ColorRangePreset colorRangePreset);

  /**
   * \param colorVector - the new colours; none, or one that is not finite, throws std::invalid_argument
   */
  void setColors(zorRender::ColorVector const& colorVector);

  /** \return a copy of the colours */
  zorRender::ColorVector getColors() const;

  /**
   * \param scalar - a number; NaN throws std::invalid_argument
   * \param modifyAlpha - true to let alpha fade out towards the lower end, where it is 0
   * \return red, green, blue and alpha
   */
  zor::Vec4f getColor(zor::Real scalar, bool modifyAlpha = false) const;

  /**
   * \param scalar - a number; NaN throws std::invalid_argument
   * \param modifyAlpha - true to let alpha fade out towards the lower end, where it is 0
   * \return red, green, blue and alpha, as the scene graph has them
   */
  osg::Vec4 getColorOSG(zor::Real scalar, bool modifyAlpha = false) const;

  /** \param minScalar - where the first colour is; more than the maximum, or NaN, is ignored */
  void setMinScalar(zor::Real minScalar);

  /** \return where the first colour is */
  zor::Real getMinScalar() const { return m_min; }

  /** \param maxScalar - where the last colour is; less than the minimum, or NaN, is ignored */
  void setMaxScalar(zor::Real maxScalar);

  /** \return where the last colour is */
  zor::Real getMaxScalar() const { return m_max; }

  /**
   * \param minScalar - where the first colour is
   * \param maxScalar - where the last colour is; the two are swapped if it is less. Not finite throws
   * std::invalid_argument
   */
  void setScalarInterval(zor::Real minScalar, zor::Real maxScalar);

  /** \return the map as the scene graph has it, with the colours and the interval of this moment */
  osg::ref_ptr<osgSim::ColorRange> getOsgColorRange() const { return m_range; }

protected:
  ~ScalarColorMap() override = default;

private:
  void set(std::vector<osg::Vec4> const& colors, zor::Real min, zor::Real max);
  double partOf(zor::Real scalar) const;

  zor::Real m_min = 0;
  zor::Real m_max = 1;
  osg::ref_ptr<osgSim::ColorRange> m_range; // made anew by changes, as its interval is fixed
};

} // namespace zorOSG
