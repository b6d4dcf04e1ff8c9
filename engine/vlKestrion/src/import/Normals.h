#pragma once
#include "ObjFile.h"

#include <cstddef>

namespace vlKestrion {

/** Gives every corner without a normal one: the mean of the triangles that meet there, weighted by
 * area and angle. Where the file has smoothing groups, only triangles of the same group count, and
 * those of none stay flat; where it has none, edges sharper than 75 degrees stay sharp. */
void computeMissingNormals(ObjFile& file, std::size_t threads);

} // namespace vlKestrion
