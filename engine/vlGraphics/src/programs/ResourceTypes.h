#pragma once
#include <vlGraphics/ProgramReflection.h>

#include <spirv_cross/spirv_cross_c.h>

#include <string>

namespace vlGraphics::ResourceTypes {

/// A type as HLSL writes it: "float4x4", "uint3[2]", the name of a struct.
std::string textOf(spvc_compiler compiler, spvc_type_id type);

/// Of a vector of 32-bit numbers; UNKNOWN of all else.
FORMAT formatOf(spvc_basetype base, unsigned channels);

/** What a resource is, from its type: shape and flags, count, format, sizes and members. Where
 *  nothing of the engine's can be bound its shape is OTHER, and the result is the reason. Class and
 *  address must stand in it already. */
std::string describe(spvc_compiler compiler,
                     spvc_resource_type kind,
                     const spvc_reflected_resource& resource,
                     ReflectedResource& into);

} // namespace vlGraphics::ResourceTypes
