#include "programs/ResourceTypes.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace vlGraphics::ResourceTypes {

namespace {

using vlMemory::StringView;

StringView baseName(spvc_basetype base) {
    switch (base) {
    case SPVC_BASETYPE_BOOLEAN:
        return "bool";
    case SPVC_BASETYPE_INT32:
        return "int";
    case SPVC_BASETYPE_UINT32:
        return "uint";
    case SPVC_BASETYPE_INT64:
        return "int64_t";
    case SPVC_BASETYPE_UINT64:
        return "uint64_t";
    case SPVC_BASETYPE_FP16:
        return "half";
    case SPVC_BASETYPE_FP64:
        return "double";
    default:
        return "float";
    }
}

/// Elements of a type's arrays, all dimensions multiplied; 0 where one has no count.
std::uint32_t elementCount(spvc_type type) {
    std::uint32_t count = 1;
    for (unsigned i = 0; i < spvc_type_get_num_array_dimensions(type); ++i)
        count *= spvc_type_get_array_dimension(type, i);
    return count;
}

RESOURCE_SHAPE shapeOf(spvc_type type) {
    const bool arrayed = spvc_type_get_image_arrayed(type) != 0;
    const bool samples = spvc_type_get_image_multisampled(type) != 0;
    switch (spvc_type_get_image_dimension(type)) {
    case SpvDimBuffer:
        return RESOURCE_SHAPE::TEXEL_BUFFER;
    case SpvDim1D:
        return arrayed ? RESOURCE_SHAPE::TEXTURE_1D_ARRAY : RESOURCE_SHAPE::TEXTURE_1D;
    case SpvDim2D:
        if (samples)
            return arrayed ? RESOURCE_SHAPE::TEXTURE_2D_MS_ARRAY : RESOURCE_SHAPE::TEXTURE_2D_MS;
        return arrayed ? RESOURCE_SHAPE::TEXTURE_2D_ARRAY : RESOURCE_SHAPE::TEXTURE_2D;
    case SpvDim3D:
        return RESOURCE_SHAPE::TEXTURE_3D;
    case SpvDimCube:
        return arrayed ? RESOURCE_SHAPE::TEXTURE_CUBE_ARRAY : RESOURCE_SHAPE::TEXTURE_CUBE;
    default:
        return RESOURCE_SHAPE::OTHER;
    }
}

FORMAT storedFormat(SpvImageFormat format) {
    struct Entry {
        SpvImageFormat from;
        FORMAT to;
    };
    constexpr Entry table[] = {{SpvImageFormatRgba32f, FORMAT::R32G32B32A32_FLOAT},
                               {SpvImageFormatRgba32ui, FORMAT::R32G32B32A32_UINT},
                               {SpvImageFormatRgba32i, FORMAT::R32G32B32A32_SINT},
                               {SpvImageFormatRg32f, FORMAT::R32G32_FLOAT},
                               {SpvImageFormatRg32ui, FORMAT::R32G32_UINT},
                               {SpvImageFormatRg32i, FORMAT::R32G32_SINT},
                               {SpvImageFormatR32f, FORMAT::R32_FLOAT},
                               {SpvImageFormatR32ui, FORMAT::R32_UINT},
                               {SpvImageFormatR32i, FORMAT::R32_SINT},
                               {SpvImageFormatRgba16f, FORMAT::R16G16B16A16_FLOAT},
                               {SpvImageFormatRg16f, FORMAT::R16G16_FLOAT},
                               {SpvImageFormatR16f, FORMAT::R16_FLOAT},
                               {SpvImageFormatRgba8, FORMAT::R8G8B8A8_UNORM},
                               {SpvImageFormatRg8, FORMAT::R8G8_UNORM},
                               {SpvImageFormatR8, FORMAT::R8_UNORM},
                               {SpvImageFormatR11fG11fB10f, FORMAT::R11G11B10_FLOAT},
                               {SpvImageFormatRgb10A2, FORMAT::R10G10B10A2_UNORM}};
    const auto* const found = std::find_if(std::begin(table),
                                           std::end(table),
                                           [&](const auto& entry) { return entry.from == format; });
    return found == std::end(table) ? FORMAT::UNKNOWN : found->to;
}

/** Fills in one resource. */
class Description {
public:
    Description(spvc_compiler compiler,
                const spvc_reflected_resource& resource,
                ReflectedResource& into)
        : compiler_(compiler), resourceId_(resource.id),
          type_(spvc_compiler_get_type_handle(compiler, resource.type_id)),
          base_(spvc_compiler_get_type_handle(compiler, resource.base_type_id)), into_(into) {}

    std::string run(spvc_resource_type kind) {
        // The variables of a tbuffer and of push constants have no names of their own.
        if (StringView(spvc_compiler_get_name(compiler_, resourceId_)).empty())
            into_.name = spvc_compiler_get_name(compiler_, spvc_type_get_base_type_id(base_));
        into_.arrayCount = elementCount(type_);
        std::string obstacle = runFor(kind);
        if (obstacle.empty() && into_.arrayCount == 0)
            obstacle = "an array without a count cannot be bound";
        if (obstacle.empty() && spvc_type_get_num_array_dimensions(type_) > 1)
            obstacle = "an array of arrays cannot be bound";
        if (obstacle.empty()) return obstacle;
        into_.shape = RESOURCE_SHAPE::OTHER;
        return fmt::format("'{}': {}", into_.name, obstacle);
    }

private:
    std::string runFor(spvc_resource_type kind) {
        switch (kind) {
        case SPVC_RESOURCE_TYPE_UNIFORM_BUFFER:
            into_.shape = RESOURCE_SHAPE::CONSTANT_BUFFER;
            into_.byteSize = roundedUp(structSize(base_));
            addMembers(base_);
            return {};
        case SPVC_RESOURCE_TYPE_STORAGE_BUFFER:
            describeBuffer();
            return {};
        case SPVC_RESOURCE_TYPE_SEPARATE_SAMPLERS:
            into_.shape = RESOURCE_SHAPE::SAMPLER;
            return {};
        case SPVC_RESOURCE_TYPE_SEPARATE_IMAGE:
        case SPVC_RESOURCE_TYPE_STORAGE_IMAGE:
            return describeImage(kind == SPVC_RESOURCE_TYPE_STORAGE_IMAGE);
        case SPVC_RESOURCE_TYPE_PUSH_CONSTANT:
            return "push constants cannot be set";
        case SPVC_RESOURCE_TYPE_SUBPASS_INPUT:
            return "a subpass input cannot be bound";
        case SPVC_RESOURCE_TYPE_ACCELERATION_STRUCTURE:
            return "an acceleration structure cannot be bound";
        default:
            return "a resource of this kind cannot be bound";
        }
    }

    static std::uint32_t roundedUp(std::size_t bytes) {
        return static_cast<std::uint32_t>((bytes + 15) / 16 * 16);
    }

    std::size_t structSize(spvc_type type) const {
        std::size_t bytes = 0;
        if (spvc_compiler_get_declared_struct_size(compiler_, type, &bytes) != SPVC_SUCCESS)
            return 0;
        return bytes;
    }

    void describeBuffer() {
        into_.isBuffer = true;
        into_.shape = RESOURCE_SHAPE::STRUCTURED_BUFFER;
        constexpr StringView counterEnd = "@count";
        into_.isCounter = into_.name.ends_with(counterEnd);
        const unsigned count = spvc_type_get_num_member_types(base_);
        if (count == 0) return;
        const spvc_type_id lastId = spvc_type_get_member_type(base_, count - 1);
        const spvc_type last = spvc_compiler_get_type_handle(compiler_, lastId);
        const unsigned dimensions = spvc_type_get_num_array_dimensions(last);
        // A counter, or a tbuffer: members at fixed places instead of elements.
        if (dimensions == 0 || spvc_type_get_array_dimension(last, dimensions - 1) != 0) {
            into_.byteSize = roundedUp(structSize(base_));
            addMembers(base_);
            return;
        }
        unsigned stride = 0;
        if (spvc_compiler_type_struct_member_array_stride(compiler_, base_, count - 1, &stride) ==
            SPVC_SUCCESS)
            into_.stride = stride;
        const spvc_type element =
                spvc_compiler_get_type_handle(compiler_, spvc_type_get_base_type_id(last));
        if (spvc_type_get_basetype(element) == SPVC_BASETYPE_STRUCT) addMembers(element);
    }

    std::string describeImage(bool isStorage) {
        into_.shape = shapeOf(base_);
        if (into_.shape == RESOURCE_SHAPE::OTHER) return "a texture of this kind cannot be bound";
        into_.isTexelBuffer = into_.shape == RESOURCE_SHAPE::TEXEL_BUFFER;
        into_.isComparison = spvc_type_get_image_is_depth(base_) != 0;
        const SpvImageFormat stored = spvc_type_get_image_storage_format(base_);
        into_.isFormatFixed = isStorage && stored != SpvImageFormatUnknown;
        const spvc_type channel =
                spvc_compiler_get_type_handle(compiler_, spvc_type_get_image_sampled_type(base_));
        into_.texelFormat = into_.isFormatFixed ? storedFormat(stored)
                                                : formatOf(spvc_type_get_basetype(channel), 4);
        if (into_.texelFormat == FORMAT::UNKNOWN) return "no texture has the format that it wants";
        return {};
    }

    void addMembers(spvc_type type) {
        for (unsigned i = 0; i < spvc_type_get_num_member_types(type); ++i) {
            const spvc_type_id owner = spvc_type_get_base_type_id(type);
            const spvc_type_id member = spvc_type_get_member_type(type, i);
            unsigned offset = 0;
            std::size_t bytes = 0;
            spvc_compiler_type_struct_member_offset(compiler_, type, i, &offset);
            if (spvc_compiler_get_declared_struct_member_size(compiler_, type, i, &bytes) !=
                SPVC_SUCCESS)
                bytes = 0;
            into_.members.push_back({spvc_compiler_get_member_name(compiler_, owner, i),
                                     textOf(compiler_, member),
                                     offset,
                                     static_cast<std::uint32_t>(bytes)});
        }
    }

    spvc_compiler compiler_;
    spvc_variable_id resourceId_;
    spvc_type type_;
    spvc_type base_;
    ReflectedResource& into_;
};

} // namespace

std::string textOf(spvc_compiler compiler, spvc_type_id id) {
    const spvc_type type = spvc_compiler_get_type_handle(compiler, id);
    const spvc_basetype base = spvc_type_get_basetype(type);
    std::string text;
    if (base == SPVC_BASETYPE_STRUCT) {
        text = spvc_compiler_get_name(compiler, spvc_type_get_base_type_id(type));
        if (text.empty()) text = "struct";
    } else {
        text = baseName(base);
        const unsigned size = spvc_type_get_vector_size(type);
        const unsigned columns = spvc_type_get_columns(type);
        // What SPIR-V has as columns are HLSL's rows.
        if (columns > 1)
            text += fmt::format("{}x{}", columns, size);
        else if (size > 1)
            text += fmt::format("{}", size);
    }
    // The outermost dimension is the last here, and the first in the text.
    for (unsigned i = spvc_type_get_num_array_dimensions(type); i > 0; --i)
        text += fmt::format("[{}]", spvc_type_get_array_dimension(type, i - 1));
    return text;
}

FORMAT formatOf(spvc_basetype base, unsigned channels) {
    if (channels < 1 || channels > 4) return FORMAT::UNKNOWN;
    constexpr FORMAT floats[] = {FORMAT::R32_FLOAT,
                                 FORMAT::R32G32_FLOAT,
                                 FORMAT::R32G32B32_FLOAT,
                                 FORMAT::R32G32B32A32_FLOAT};
    constexpr FORMAT unsigneds[] = {FORMAT::R32_UINT,
                                    FORMAT::R32G32_UINT,
                                    FORMAT::R32G32B32_UINT,
                                    FORMAT::R32G32B32A32_UINT};
    constexpr FORMAT signeds[] = {FORMAT::R32_SINT,
                                  FORMAT::R32G32_SINT,
                                  FORMAT::R32G32B32_SINT,
                                  FORMAT::R32G32B32A32_SINT};
    switch (base) {
    case SPVC_BASETYPE_FP32:
        return floats[channels - 1];
    case SPVC_BASETYPE_UINT32:
        return unsigneds[channels - 1];
    case SPVC_BASETYPE_INT32:
        return signeds[channels - 1];
    default:
        return FORMAT::UNKNOWN;
    }
}

std::string describe(spvc_compiler compiler,
                     spvc_resource_type kind,
                     const spvc_reflected_resource& resource,
                     ReflectedResource& into) {
    return Description(compiler, resource, into).run(kind);
}

} // namespace vlGraphics::ResourceTypes
