#pragma once

#include <cstdint>
#include <string_view>

namespace zorStream {

/** \return the CRC-32 of bytes: any change of up to 32 neighbouring bits changes it */
std::uint32_t checksum(std::string_view bytes, std::uint32_t before = 0);

} // namespace zorStream
