#pragma once

namespace zorOSG {

/** \return true if the current context has a renderer that runs on the processor */
bool drawsOnProcessor();

/**
 * Lets the heap suit a renderer that runs on the processor, if the current context has one. Such a renderer
 * frees the vertices of each draw, and the system's allocator gives freed memory at once back to the system,
 * so that a sixth of each frame would go to mapping the same pages in again. Up to 128 MiB stay mapped
 * instead.
 */
void keepHeapForSoftwareRenderer();

} // namespace zorOSG
