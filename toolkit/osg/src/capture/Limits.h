#pragma once

#include <zor/Types.h>
#include <zor/Vec2.h>

namespace zorOSG {

/**
 * \param what - begins the message of the error
 * \param minimum - least number of pixels each way; the most is 16384
 * \return the size
 * \throws std::invalid_argument outside the range
 */
zor::Vec2u checkedSize(char const* what, zor::UInt width, zor::UInt height, zor::UInt minimum = 1);

/**
 * \param what - begins the message of the error
 * \return the rate
 * \throws std::invalid_argument unless it is more than 0 and at most 10000
 */
zor::Real checkedRate(char const* what, zor::Real fps);

} // namespace zorOSG
