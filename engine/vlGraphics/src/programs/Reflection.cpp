#include "programs/Reflection.h"

#include "programs/BindingModel.h"
#include "programs/ComparedTextures.h"
#include "programs/ResourceTypes.h"
#include "programs/StageVaryings.h"
#include "vulkan/SpirvWords.h"

#include <fmt/format.h>
#include <spirv_cross/spirv_cross_c.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace vlGraphics {

namespace {

struct DestroyContext {
    void operator()(spvc_context context) const { spvc_context_destroy(context); }
};
using Context = std::unique_ptr<spvc_context_s, DestroyContext>;

/// The kinds of resource in the order in which they are looked at.
constexpr spvc_resource_type resourceKinds[] = {SPVC_RESOURCE_TYPE_UNIFORM_BUFFER,
                                                SPVC_RESOURCE_TYPE_STORAGE_BUFFER,
                                                SPVC_RESOURCE_TYPE_SEPARATE_IMAGE,
                                                SPVC_RESOURCE_TYPE_STORAGE_IMAGE,
                                                SPVC_RESOURCE_TYPE_SEPARATE_SAMPLERS,
                                                SPVC_RESOURCE_TYPE_SAMPLED_IMAGE,
                                                SPVC_RESOURCE_TYPE_PUSH_CONSTANT,
                                                SPVC_RESOURCE_TYPE_SUBPASS_INPUT,
                                                SPVC_RESOURCE_TYPE_ACCELERATION_STRUCTURE};

/** The reflection of one stage, added to that of the program. */
class StageReflection {
public:
    StageReflection(SHADER_TYPE stage,
                    const MappedInterfaces& interfaces,
                    ProgramReflection& into,
                    StageVaryings& varyings)
        : stage_(stage), interfaces_(interfaces), into_(into), varyings_(varyings) {}

    std::optional<ProgramDiagnostic> run(std::span<const std::uint32_t> spirv) {
        spvc_context made = nullptr;
        if (spvc_context_create(&made) != SPVC_SUCCESS)
            return diagnostic("no memory for reflecting it");
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
            return diagnostic(fmt::format("it cannot be reflected: {}",
                                          spvc_context_get_last_error_string(made)));
        compared_ = findComparedTextures(spirv);
        for (const spvc_resource_type kind : resourceKinds)
            for (const spvc_reflected_resource& resource : list(kind))
                if (auto fault = addResource(kind, resource)) return fault;
        // What is declared and not used stands in the way, too.
        if (hasSubpassInputs(spirv)) setObstacle("a subpass input cannot be bound");
        varyings_.stage = stage_;
        for (const spvc_reflected_resource& output : list(SPVC_RESOURCE_TYPE_STAGE_OUTPUT))
            if (!isEmpty(output)) varyings_.outputs.push_back(varying(output, false));
        if (stage_ == SHADER_TYPE::VERTEX) {
            addInputs();
        } else {
            for (const spvc_reflected_resource& input : list(SPVC_RESOURCE_TYPE_STAGE_INPUT))
                if (!isEmpty(input)) varyings_.inputs.push_back(varying(input, true));
        }
        if (stage_ == SHADER_TYPE::PIXEL) countTargets();
        if (stage_ == SHADER_TYPE::COMPUTE) readGroupSize();
        return std::nullopt;
    }

private:
    static bool hasSubpassInputs(std::span<const std::uint32_t> spirv) {
        bool has = false;
        vulkan::eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t) {
            has = has ||
                  (opcode == SpvOpCapability && spirv[at + 1] == SpvCapabilityInputAttachment);
        });
        return has;
    }

    ProgramDiagnostic diagnostic(std::string text) const {
        return {stage_, {}, 1, std::move(text)};
    }

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
    const MappedResource* mappedAt(std::uint32_t space, std::uint32_t binding) const {
        for (const MappedResource& mapped : interfaces_.resources)
            if (mapped.stage == stage_ && mapped.space == space && mapped.binding == binding)
                return &mapped;
        return nullptr;
    }

    std::optional<ProgramDiagnostic> addResource(spvc_resource_type kind,
                                                 const spvc_reflected_resource& resource) {
        if (decoration(resource, SpvDecorationBinding) == BindingModel::loopBinding)
            return std::nullopt; // the engine's own
        ReflectedResource found;
        found.name = resource.name;
        found.stageMask = 1U << static_cast<std::uint32_t>(stage_);
        const MappedResource* mapped = nullptr;
        if (kind != SPVC_RESOURCE_TYPE_PUSH_CONSTANT) {
            const std::uint32_t binding = decoration(resource, SpvDecorationBinding);
            found.resourceClass = BindingModel::classOf(binding);
            found.slot = binding % BindingModel::registersPerClass;
            found.space = decoration(resource, SpvDecorationDescriptorSet);
            mapped = mappedAt(found.space, binding);
        }
        std::string obstacle = ResourceTypes::describe(compiler_, kind, resource, found);
        if (found.resourceClass == RESOURCE_CLASS::TEXTURE && compared_.contains(resource.id))
            found.isComparison = true;
        if (mapped != nullptr) {
            if (mapped->isByteAddress && found.isBuffer)
                found.shape = RESOURCE_SHAPE::BYTE_ADDRESS_BUFFER;
            if (found.shape == RESOURCE_SHAPE::SAMPLER) found.isComparison = mapped->isComparison;
            if (mapped->isUnbounded) {
                found.arrayCount = 0;
                found.shape = RESOURCE_SHAPE::OTHER;
                obstacle =
                        fmt::format("'{}': an array without a count cannot be bound", found.name);
            }
        }
        if (mapped != nullptr) {
            found.file = mapped->file;
            found.line = mapped->line;
        }
        setObstacle(obstacle, found);
        if (kind == SPVC_RESOURCE_TYPE_PUSH_CONSTANT) return std::nullopt;
        return merge(std::move(found), mapped);
    }

    void setObstacle(const std::string& text, const ReflectedResource& of = {}) {
        if (text.empty() || !into_.obstacle.empty()) return;
        into_.obstacle = text;
        into_.obstacleStage = stage_;
        into_.obstacleFile = of.file;
        into_.obstacleLine = of.line;
    }

    static std::uint32_t endOf(const ReflectedResource& resource) {
        return resource.slot + std::max(resource.arrayCount, 1U);
    }

    /// One descriptor serves both.
    static bool isShareable(const ReflectedResource& known, const ReflectedResource& found) {
        const bool sameType = known.slot == found.slot && known.arrayCount == found.arrayCount &&
                              known.shape == found.shape &&
                              known.texelFormat == found.texelFormat &&
                              known.isFormatFixed == found.isFormatFixed;
        if (!sameType) return false;
        // In one stage two texts of one buffer are rather a slip than a wish; stages may differ,
        // for each may know but the begin of what they share.
        if ((known.stageMask & found.stageMask) == 0) return true;
        return known.stride == found.stride && known.members == found.members;
    }

    std::optional<ProgramDiagnostic> merge(ReflectedResource found, const MappedResource* mapped) {
        for (ReflectedResource& known : into_.resources) {
            const bool overlaps = known.space == found.space &&
                                  known.resourceClass == found.resourceClass &&
                                  known.slot < endOf(found) && found.slot < endOf(known);
            if (!overlaps) continue;
            if (!isShareable(known, found)) return sharedFault(known, found, mapped);
            known.stageMask |= found.stageMask;
            // A texture that is compared must be of depth, however else it is read.
            known.isComparison = found.resourceClass == RESOURCE_CLASS::TEXTURE
                                         ? known.isComparison || found.isComparison
                                         : known.isComparison && found.isComparison;
            if (found.byteSize > known.byteSize) {
                known.byteSize = found.byteSize;
                known.members = std::move(found.members);
            }
            return std::nullopt;
        }
        into_.resources.push_back(std::move(found));
        return std::nullopt;
    }

    ProgramDiagnostic sharedFault(const ReflectedResource& known,
                                  const ReflectedResource& found,
                                  const MappedResource* mapped) const {
        ProgramDiagnostic fault =
                diagnostic(fmt::format("'{}' and '{}' are both at register {}{}, space{}",
                                       known.name,
                                       found.name,
                                       BindingModel::letterOf(found.resourceClass),
                                       std::max(known.slot, found.slot),
                                       found.space));
        if (mapped == nullptr) return fault;
        fault.file = mapped->file;
        fault.line = mapped->line;
        return fault;
    }

    /// A struct without members.
    bool isEmpty(const spvc_reflected_resource& resource) const {
        const spvc_type type = spvc_compiler_get_type_handle(compiler_, resource.type_id);
        return spvc_type_get_basetype(type) == SPVC_BASETYPE_STRUCT &&
               spvc_type_get_num_member_types(type) == 0;
    }

    Varying varying(const spvc_reflected_resource& resource, bool isInput) const {
        Varying made;
        const spvc_type type = spvc_compiler_get_type_handle(compiler_, resource.type_id);
        made.location = decoration(resource, SpvDecorationLocation);
        made.isPatch =
                spvc_compiler_has_decoration(compiler_, resource.id, SpvDecorationPatch) != 0;
        made.base = spvc_type_get_basetype(type);
        made.size = spvc_type_get_vector_size(type);
        made.columns = spvc_type_get_columns(type);
        // The outermost array of what is there for each point of a primitive counts the points.
        const bool ofPoints = !made.isPatch && (isInput ? stage_ != SHADER_TYPE::PIXEL
                                                        : stage_ == SHADER_TYPE::HULL);
        unsigned dimensions = spvc_type_get_num_array_dimensions(type);
        if (ofPoints && dimensions > 0) --dimensions;
        for (unsigned i = 0; i < dimensions; ++i)
            made.elements *= spvc_type_get_array_dimension(type, i);
        made.text = ResourceTypes::textOf(compiler_, spvc_type_get_base_type_id(type));
        if (made.elements > 1) made.text += fmt::format("[{}]", made.elements);
        return made;
    }

    void addInputs() {
        for (const spvc_reflected_resource& input : list(SPVC_RESOURCE_TYPE_STAGE_INPUT)) {
            const std::uint32_t location = decoration(input, SpvDecorationLocation);
            for (const PlacedSemantic& placed : interfaces_.vertexInputs)
                if (placed.location == location)
                    into_.inputs.push_back(
                            {placed.semantic, location, placed.locationCount, formatOf(input)});
        }
    }

    FORMAT formatOf(const spvc_reflected_resource& input) const {
        const spvc_type type = spvc_compiler_get_type_handle(compiler_, input.type_id);
        return ResourceTypes::formatOf(spvc_type_get_basetype(type),
                                       spvc_type_get_vector_size(type));
    }

    void countTargets() {
        for (const spvc_reflected_resource& output : list(SPVC_RESOURCE_TYPE_STAGE_OUTPUT)) {
            if (isEmpty(output)) continue;
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
        // The language has no others, although the compiler takes them.
        constexpr std::uint64_t maxThreads = 1024;
        const auto& [x, y, z] = into_.threadGroupSize;
        const bool isMore =
                std::uint64_t{x} * y > maxThreads || std::uint64_t{x} * y * z > maxThreads;
        if (isMore || x == 0 || y == 0 || z == 0)
            setObstacle(fmt::format("a group of {} x {} x {} threads, where 1 to {} are possible",
                                    x,
                                    y,
                                    z,
                                    maxThreads));
    }

    SHADER_TYPE stage_;
    const MappedInterfaces& interfaces_;
    ProgramReflection& into_;
    StageVaryings& varyings_;
    std::unordered_set<std::uint32_t> compared_; ///< textures' variables
    spvc_compiler compiler_ = nullptr;
    spvc_resources resources_ = nullptr;
};

} // namespace

tl::expected<ProgramReflection, ProgramDiagnostic> reflect(const CompiledProgram& program,
                                                           const MappedInterfaces& interfaces) {
    ProgramReflection reflection;
    std::vector<StageVaryings> varyings;
    for (std::uint32_t index = 0; index < shaderTypeCount; ++index) {
        if (program.spirv[index].empty()) continue;
        const auto stage = static_cast<SHADER_TYPE>(index);
        StageReflection one(stage, interfaces, reflection, varyings.emplace_back());
        if (auto fault = one.run(program.spirv[index])) return tl::unexpected(*std::move(fault));
    }
    if (auto fault = findMismatch(varyings, interfaces)) return tl::unexpected(*std::move(fault));
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
