#pragma once
#include <vlMemory/String.h>

#include <vector>

namespace vlGraphics {

/** Who refers to a resource: a line for each place, "compositor 'main', pass 3" or "shader 'rust'",
 *  compositors first, each kind in order of creation. Passes and operations are counted from 1
 *  through the whole compositor. Hidden users are left out; render contexts and entities are not
 *  asked. What counts is whom a reference leads to now. For blend, depth-stencil and raster states,
 *  samplers, buffers, cameras, viewports, render queues, textures, programs, shaders and scripts.
 * Graphics thread only. */
template <class T> std::vector<vlMemory::String> usersOf(const T& resource);

} // namespace vlGraphics
