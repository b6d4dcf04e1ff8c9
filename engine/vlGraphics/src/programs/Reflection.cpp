#include "programs/Reflection.h"

#include "programs/BindingModel.h"

#include <vlCommon/Result.h>

#include <fmt/format.h>
#include <spirv_cross/spirv_cross_c.h>

#include <algorithm>
#include <memory>
#include <span>
#include <tuple>

namespace vlGraphics {

namespace {

struct DestroyContext {
    void operator()(spvc_context context) const { spvc_context_destroy(context); }
};
using Context = std::unique_ptr<spvc_context_s, DestroyContext>;

/** The reflection of one stage, added to that of the program. */
class StageReflection {
public:
    StageReflection(SHADER_TYPE stage, ProgramReflection& into) : stage_(stage), into_(into) {}

    vlCommon::Result<> run(std::span<const std::uint32_t> spirv,
                           const std::vector<PlacedSemantic>& vertexInputs) {
        spvc_context made = nullptr;
        if (spvc_context_create(&made) != SPVC_SUCCESS)
            return vlCommon::fail("no memory for reflecting it");
        const Context context(made);
        spvc_parsed_ir ir = nullptr;
        spvc_set active = nullptr;
        const bool parsed =
                spvc_context_parse_spirv(made, spirv.data(), spirv.size(), &ir) == SPVC_SUCCESS &&
                spvc_context_create_compiler(made,
                                             SPVC_BACKEND_NONE,
                                             ir,
                                             SPVC_CAPTURE_MODE_TAKE_OWNERSHIP,
                                             &compiler_) == SPVC_SUCCESS &&
                spvc_compiler_get_active_interface_variables(compiler_, &active) == SPVC_SUCCESS &&
                spvc_compiler_create_shader_resources_for_active_variables(
                        compiler_, &resources_, active) == SPVC_SUCCESS;
        if (!parsed)
            return vlCommon::fail(fmt::format("it cannot be reflected: {}",
                                              spvc_context_get_last_error_string(made)));
        if (auto bound = addResources(); !bound) return bound;
        if (stage_ == SHADER_TYPE::VERTEX) addInputs(vertexInputs);
        if (stage_ == SHADER_TYPE::PIXEL) countTargets();
        if (stage_ == SHADER_TYPE::COMPUTE) readGroupSize();
        return {};
    }

private:
    std::span<const spvc_reflected_resource> list(spvc_resource_type type) const {
        const spvc_reflected_resource* first = nullptr;
        std::size_t count = 0;
        if (spvc_resources_get_resource_list_for_type(resources_, type, &first, &count) !=
            SPVC_SUCCESS)
            return {};
        return {first, count};
    }
    std::uint32_t decoration(const spvc_reflected_resource& resource, SpvDecoration which) const {
        return spvc_compiler_get_decoration(compiler_, resource.id, which);
    }

    vlCommon::Result<> addResources() {
        struct Kind {
            spvc_resource_type type;
            bool isBuffer;
        };
        constexpr Kind kinds[] = {{SPVC_RESOURCE_TYPE_UNIFORM_BUFFER, false},
                                  {SPVC_RESOURCE_TYPE_STORAGE_BUFFER, true},
                                  {SPVC_RESOURCE_TYPE_SEPARATE_IMAGE, false},
                                  {SPVC_RESOURCE_TYPE_STORAGE_IMAGE, false},
                                  {SPVC_RESOURCE_TYPE_SEPARATE_SAMPLERS, false}};
        for (const Kind& kind : kinds) {
            for (const spvc_reflected_resource& resource : list(kind.type))
                if (auto added = addResource(resource, kind.isBuffer); !added) return added;
        }
        constexpr spvc_resource_type refused[] = {SPVC_RESOURCE_TYPE_SAMPLED_IMAGE,
                                                  SPVC_RESOURCE_TYPE_PUSH_CONSTANT,
                                                  SPVC_RESOURCE_TYPE_SUBPASS_INPUT,
                                                  SPVC_RESOURCE_TYPE_ACCELERATION_STRUCTURE};
        for (const spvc_resource_type type : refused) {
            if (!list(type).empty())
                return vlCommon::fail(fmt::format("'{}': a resource of this kind cannot be bound",
                                                  list(type).front().name));
        }
        return {};
    }

    vlCommon::Result<> addResource(const spvc_reflected_resource& resource, bool isBuffer) {
        ReflectedResource found;
        const std::uint32_t binding = decoration(resource, SpvDecorationBinding);
        found.name = resource.name;
        found.resourceClass = BindingModel::classOf(binding);
        found.isBuffer = isBuffer;
        found.slot = binding % BindingModel::registersPerClass;
        found.space = decoration(resource, SpvDecorationDescriptorSet);
        found.stageMask = 1U << static_cast<std::uint32_t>(stage_);
        if (found.resourceClass == RESOURCE_CLASS::CONSTANT_BUFFER)
            found.byteSize = structSize(resource);
        for (ReflectedResource& known : into_.resources) {
            const bool same = known.space == found.space && known.slot == found.slot &&
                              known.resourceClass == found.resourceClass;
            if (!same) continue;
            const bool twiceHere = (known.stageMask & found.stageMask) != 0;
            if (twiceHere || known.isBuffer != found.isBuffer) return failShared(known, found);
            known.stageMask |= found.stageMask;
            known.byteSize = std::max(known.byteSize, found.byteSize);
            return {};
        }
        into_.resources.push_back(std::move(found));
        return {};
    }

    static vlCommon::Result<> failShared(const ReflectedResource& known,
                                         const ReflectedResource& found) {
        return vlCommon::fail(fmt::format("'{}' and '{}' are both at register {}{}, space{}",
                                          known.name,
                                          found.name,
                                          BindingModel::letterOf(found.resourceClass),
                                          found.slot,
                                          found.space));
    }

    std::uint32_t structSize(const spvc_reflected_resource& resource) const {
        std::size_t bytes = 0;
        const spvc_type type = spvc_compiler_get_type_handle(compiler_, resource.base_type_id);
        if (spvc_compiler_get_declared_struct_size(compiler_, type, &bytes) != SPVC_SUCCESS)
            return 0;
        return static_cast<std::uint32_t>((bytes + 15) / 16 * 16);
    }

    void addInputs(const std::vector<PlacedSemantic>& vertexInputs) {
        for (const spvc_reflected_resource& input : list(SPVC_RESOURCE_TYPE_STAGE_INPUT)) {
            const std::uint32_t location = decoration(input, SpvDecorationLocation);
            const auto placed =
                    std::find_if(vertexInputs.begin(), vertexInputs.end(), [&](const auto& entry) {
                        return entry.location == location;
                    });
            if (placed == vertexInputs.end()) continue;
            into_.inputs.push_back(
                    {placed->semantic, location, placed->locationCount, formatOf(input)});
        }
    }

    FORMAT formatOf(const spvc_reflected_resource& input) const {
        const spvc_type type = spvc_compiler_get_type_handle(compiler_, input.type_id);
        const unsigned size = spvc_type_get_vector_size(type);
        if (size < 1 || size > 4) return FORMAT::UNKNOWN;
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
        switch (spvc_type_get_basetype(type)) {
        case SPVC_BASETYPE_FP32:
            return floats[size - 1];
        case SPVC_BASETYPE_UINT32:
            return unsigneds[size - 1];
        case SPVC_BASETYPE_INT32:
            return signeds[size - 1];
        default:
            return FORMAT::UNKNOWN;
        }
    }

    void countTargets() {
        for (const spvc_reflected_resource& output : list(SPVC_RESOURCE_TYPE_STAGE_OUTPUT)) {
            const std::uint32_t location = decoration(output, SpvDecorationLocation);
            into_.colorTargetCount = std::max(into_.colorTargetCount, location + 1);
            if (location < 32) into_.colorTargetMask |= 1U << location;
            if (location == 0) into_.writesAlpha = formatOf(output) == FORMAT::R32G32B32A32_FLOAT;
        }
    }

    void readGroupSize() {
        for (unsigned axis = 0; axis < 3; ++axis) {
            into_.threadGroupSize[axis] = spvc_compiler_get_execution_mode_argument_by_index(
                    compiler_, SpvExecutionModeLocalSize, axis);
        }
    }

    SHADER_TYPE stage_;
    ProgramReflection& into_;
    spvc_compiler compiler_ = nullptr;
    spvc_resources resources_ = nullptr;
};

} // namespace

tl::expected<ProgramReflection, ProgramCompilationResult>
reflect(const CompiledProgram& program, const std::vector<PlacedSemantic>& vertexInputs) {
    ProgramReflection reflection;
    for (std::uint32_t index = 0; index < shaderTypeCount; ++index) {
        if (program.spirv[index].empty()) continue;
        const auto stage = static_cast<SHADER_TYPE>(index);
        if (auto done = StageReflection(stage, reflection).run(program.spirv[index], vertexInputs);
            !done)
            return tl::unexpected(ProgramCompilationResult(stage, "1: " + done.error().message));
    }
    std::sort(reflection.resources.begin(),
              reflection.resources.end(),
              [](const ReflectedResource& a, const ReflectedResource& b) {
                  return std::tie(a.space, a.resourceClass, a.slot) <
                         std::tie(b.space, b.resourceClass, b.slot);
              });
    std::sort(reflection.inputs.begin(),
              reflection.inputs.end(),
              [](const ReflectedInput& a, const ReflectedInput& b) {
                  return a.location < b.location;
              });
    return reflection;
}

} // namespace vlGraphics
