#pragma once

namespace zorOSG {

/**
 * \return an identifier that no context of this function had before. The scene graph gives those of closed
 * contexts out again, and an object that outlives its context would then be taken for one of the new context.
 */
unsigned int freshContextId();

} // namespace zorOSG
