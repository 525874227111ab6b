#pragma once

namespace zorBinding {

/**
 * Keeps the shared type registry to the end of the process. The wrappers release it as soon as the
 * interpreter clears its modules, while objects that scripts still hold need it to be destroyed properly.
 * Call once a module is initialised.
 */
void keepTypeRegistry();

/** Sets ImportError in any interpreter but the main one: the type registry is the main interpreter's. */
void requireMainInterpreter();

} // namespace zorBinding
