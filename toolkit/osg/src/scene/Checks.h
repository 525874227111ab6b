#pragma once

#include <cmath>
#include <stdexcept>
#include <string>

#include <osg/Vec3>

namespace zorOSG {

/** Throws std::invalid_argument unless the value is a positive, finite number. */
inline void requirePositive(char const* function, char const* name, double value) {
  if (!(value > 0.0) || !std::isfinite(value))
    throw std::invalid_argument(std::string(function) + ": " + name + " must be positive, not " +
                                std::to_string(value));
}

/** Throws std::invalid_argument if the value is NaN or infinite. */
inline void requireFinite(char const* function, char const* name, double value) {
  if (!std::isfinite(value))
    throw std::invalid_argument(std::string(function) + ": " + name + " must be a finite number");
}

/** Throws std::invalid_argument if a component is NaN or infinite. */
inline void requireFinite(char const* function, char const* name, osg::Vec3 const& value) {
  if (!std::isfinite(value.x()) || !std::isfinite(value.y()) || !std::isfinite(value.z()))
    throw std::invalid_argument(std::string(function) + ": " + name + " must be finite");
}

/** As above, for the toolkit's vectors. */
template <class Vector>
  requires requires(Vector const& value) { value.isFinite(); }
void requireFinite(char const* function, char const* name, Vector const& value) {
  if (!value.isFinite())
    throw std::invalid_argument(std::string(function) + ": " + name + " must be finite");
}

/** Throws std::invalid_argument for a null pointer. */
inline void requireGiven(char const* function, char const* name, void const* pointer) {
  if (!pointer)
    throw std::invalid_argument(std::string(function) + ": " + name + " is null");
}

} // namespace zorOSG
