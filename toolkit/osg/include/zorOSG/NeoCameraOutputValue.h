#pragma once

namespace zorOSG {

/**
 * One pixel of a camera output: N channels (1 to 4) of one element type, without any padding, so that pixels
 * in a row are the image itself. A new value is zero in all channels.
 */
template <class T, int N>
struct NeoCameraOutputValue {
  T channels[N] = {}; ///< the elements, in the order of the output's channels
};

} // namespace zorOSG
