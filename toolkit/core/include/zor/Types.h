#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zor {

typedef double Real;          ///< scalar of all simulation quantities, SI units
typedef std::int64_t Int;     ///< signed 64-bit integer
typedef std::uint64_t UInt;   ///< unsigned 64-bit integer
typedef std::uint64_t Index;  ///< position in a sequence
typedef std::uint8_t UInt8;   ///< unsigned 8-bit integer
typedef std::uint16_t UInt16; ///< unsigned 16-bit integer
typedef std::uint32_t UInt32; ///< unsigned 32-bit integer
typedef Real TimeStamp;       ///< simulated time in seconds
typedef std::string String;   ///< text, UTF-8

constexpr Real PI = 3.14159265358979323846; ///< half a turn in radians

/** \param degrees - angle in degrees \return the angle in radians */
constexpr Real degreesToRadians(Real degrees) {
  return degrees * PI / 180.0;
}

/** \param radians - angle in radians \return the angle in degrees */
constexpr Real radiansToDegrees(Real radians) {
  return radians * 180.0 / PI;
}

} // namespace zor
