#include "render/ShaderBinder.h"

#include "programs/BindingModel.h"
#include "render/PassRecorder.h"
#include "render/RendererGpu.h"
#include "vulkan/Device.h"
#include "vulkan/SamplerGpu.h"
#include "vulkan/TextureGpu.h"

#include <algorithm>
#include <cstring>

namespace vlGraphics::render {

using vulkan::Device;
using vulkan::GpuImage;
using vulkan::ImageUse;

namespace {

template <class Binding, class Get>
const Binding* findAt(const ReflectedResource& resource, Get get) {
    for (std::uint32_t i = 0;; ++i) {
        const Binding* binding = get(i);
        if (binding == nullptr) return nullptr;
        if (binding->slot == resource.slot && binding->space == resource.space) return binding;
    }
}

const ConstantBuffer* findBuffer(const Shader& shader, const ReflectedResource& resource) {
    for (std::uint32_t i = 0;; ++i) {
        const ConstantBuffer* buffer = shader.getConstantBufferPerIndex(i);
        if (buffer == nullptr) return nullptr;
        if (buffer->getSlot() == resource.slot && buffer->getSpace() == resource.space)
            return buffer;
    }
}

} // namespace

/// Gathers the writes of one shader's sets, whose parts must not move until they are done.
struct ShaderBinder::Writer {
    ShaderBinder& binder;
    const Shader& shader;
    PassRecorder& recorder;
    std::vector<VkWriteDescriptorSet> writes;
    std::vector<VkDescriptorImageInfo> images;
    std::vector<VkDescriptorBufferInfo> buffers;

    GpuImage& imageFor(const ReflectedResource& resource) {
        Fallbacks& fallbacks = recorder.renderer().fallbacks;
        const auto* binding = findAt<TextureBinding>(
                resource, [this](std::uint32_t i) { return shader.getTexturePerIndex(i); });
        const auto* handle =
                binding == nullptr ? nullptr : std::get_if<Handle<Texture>>(&binding->resource);
        const Texture* texture =
                handle == nullptr ? nullptr : TextureManager::getInstance()->resolve(*handle);
        if (texture == nullptr || texture->gpu() == nullptr) return fallbacks.texture();
        GpuImage& image = texture->gpu()->image;
        // What is being drawn into cannot be read at the same time.
        return recorder.isTarget(image) ? fallbacks.texture() : image;
    }

    VkSampler samplerFor(const ReflectedResource& resource) {
        const auto* binding = findAt<SamplerBinding>(
                resource, [this](std::uint32_t i) { return shader.getSamplerPerIndex(i); });
        const Sampler* sampler =
                binding == nullptr ? nullptr
                                   : SamplerManager::getInstance()->resolve(binding->resource);
        if (sampler == nullptr || sampler->gpu() == nullptr)
            return recorder.renderer().fallbacks.sampler();
        return sampler->gpu()->sampler;
    }

    void addImage(const ReflectedResource& resource) {
        GpuImage& image = imageFor(resource);
        std::vector<GpuImage*>& unreadable = binder.unreadable_;
        if (image.use() != ImageUse::shaderRead &&
            std::find(unreadable.begin(), unreadable.end(), &image) == unreadable.end())
            unreadable.push_back(&image);
        images.push_back({VK_NULL_HANDLE, image.view(), layoutOf(ImageUse::shaderRead)});
    }

    bool addUniforms(const ReflectedResource& resource) {
        const ConstantBuffer* buffer = findBuffer(shader, resource);
        const VkPhysicalDeviceLimits& limits = Device::getInstance()->limits();
        const std::uint32_t filled = buffer == nullptr ? 0 : buffer->getByteSize();
        const std::uint32_t size = std::max({16U, resource.byteSize, filled});
        const auto slice = recorder.frame().memory.allocate(
                size, std::max<VkDeviceSize>(16, limits.minUniformBufferOffsetAlignment));
        if (slice.data == nullptr) return false;
        std::memset(slice.data + filled, 0, size - filled);
        if (buffer != nullptr) buffer->fill(binder.inputs_, {slice.data, filled});
        buffers.push_back(
                {slice.buffer, slice.offset, std::min(size, limits.maxUniformBufferRange)});
        return true;
    }

    bool addZeros() {
        constexpr VkDeviceSize size = 256;
        const VkDeviceSize alignment =
                Device::getInstance()->limits().minStorageBufferOffsetAlignment;
        const auto slice =
                recorder.frame().memory.allocate(size, std::max<VkDeviceSize>(16, alignment));
        if (slice.data == nullptr) return false;
        std::memset(slice.data, 0, size);
        buffers.push_back({slice.buffer, slice.offset, size});
        return true;
    }

    bool add(VkDescriptorSet set,
             const Program::Gpu::Binding& binding,
             const ReflectedResource& resource) {
        auto write = vulkan::vkInfo<VkWriteDescriptorSet>(VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET);
        write.dstSet = set;
        write.dstBinding = binding.binding;
        write.descriptorCount = 1;
        write.descriptorType = binding.type;
        bool added = true;
        if (binding.type == VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE)
            addImage(resource);
        else if (binding.type == VK_DESCRIPTOR_TYPE_SAMPLER)
            images.push_back({samplerFor(resource), VK_NULL_HANDLE, VK_IMAGE_LAYOUT_UNDEFINED});
        else
            added = binding.type == VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER ? addUniforms(resource)
                                                                      : addZeros();
        if (!added) return false;
        write.pImageInfo = images.empty() ? nullptr : &images.back();
        write.pBufferInfo = buffers.empty() ? nullptr : &buffers.back();
        writes.push_back(write);
        return true;
    }

    void addLoopWords(VkDescriptorSet set, const Program::Gpu& program) {
        auto write = vulkan::vkInfo<VkWriteDescriptorSet>(VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET);
        write.dstSet = set;
        write.dstBinding = BindingModel::loopBinding;
        write.descriptorCount = 1;
        write.descriptorType = VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
        buffers.push_back({program.loopWords.get(), 0, VK_WHOLE_SIZE});
        write.pBufferInfo = &buffers.back();
        writes.push_back(write);
    }
};

void ShaderBinder::begin(const PassInputs& inputs) {
    inputs_ = inputs;
    bound_.clear();
    unreadable_.clear();
}

const BoundShader& ShaderBinder::bind(const Shader& shader, PassRecorder& recorder) {
    const auto found = bound_.find(&shader);
    if (found != bound_.end()) return found->second;
    return bound_.emplace(&shader, make(shader, recorder)).first->second;
}

BoundShader ShaderBinder::make(const Shader& shader, PassRecorder& recorder) {
    BoundShader bound;
    const Program* program = shader.getProgram();
    if (program == nullptr || !program->isUsable() || !shader.isUsableScene()) return bound;
    if (program->gpu()->needsUnorderedAccess) return bound;
    bound.program = program->gpu();
    Pipelines& pipelines = *recorder.renderer().pipelines;
    bound.instanceLayout = pipelines.instanceLayoutId(shader);
    const InstanceLayout& layout = pipelines.instanceLayout(bound.instanceLayout);
    bound.instanceStride = layout.stride;
    bound.onlyWorldMatrix = layout.slots.size() == 1 && layout.slots[0].semantic == "WORLD_MATRIX";
    if (!writeSets(shader, recorder, bound))
        bound.program = nullptr;
    else
        recorder.renderer().loops.use(*program);
    return bound;
}

bool ShaderBinder::writeSets(const Shader& shader, PassRecorder& recorder, BoundShader& bound) {
    const Program::Gpu& program = *bound.program;
    Writer writer{*this, shader, recorder, {}, {}, {}};
    const std::size_t count = program.reflection.resources.size() + 1;
    writer.writes.reserve(count);
    writer.images.reserve(count);
    writer.buffers.reserve(count);
    for (const Program::Gpu::Set& set : program.sets) {
        const VkDescriptorSet made = recorder.frame().descriptors.allocate(set.layout);
        if (made == VK_NULL_HANDLE) return false;
        bound.sets[bound.setCount++] = made;
        for (const Program::Gpu::Binding& binding : set.bindings)
            if (!writer.add(made, binding, program.reflection.resources[binding.resource]))
                return false;
    }
    if (program.tellingStages != 0) writer.addLoopWords(bound.sets[BindingModel::loopSet], program);
    vkUpdateDescriptorSets(Device::getInstance()->get(),
                           static_cast<std::uint32_t>(writer.writes.size()),
                           writer.writes.data(),
                           0,
                           nullptr);
    return true;
}

} // namespace vlGraphics::render
