#include "render/DescriptorWriter.h"

#include "programs/BindingModel.h"
#include "render/PassRecorder.h"
#include "render/RendererGpu.h"
#include "vulkan/BufferGpu.h"
#include "vulkan/Device.h"
#include "vulkan/SamplerGpu.h"
#include "vulkan/TextureGpu.h"
#include "vulkan/Translate.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace vlGraphics::render {

using vulkan::Device;
using vulkan::GpuBuffer;
using vulkan::GpuImage;
using vulkan::ImageUse;

namespace {

/// Of a list of bindings, that one at the address; null where there is none.
template <class Get> auto findAt(std::uint32_t slot, std::uint32_t space, Get get) {
    for (std::uint32_t i = 0;; ++i) {
        const auto* binding = get(i);
        if (binding == nullptr || (binding->slot == slot && binding->space == space))
            return binding;
    }
}

const ConstantBuffer* findConstants(const Shader& shader, std::uint32_t slot, std::uint32_t space) {
    for (std::uint32_t i = 0; const auto* buffer = shader.getConstantBufferPerIndex(i); ++i)
        if (buffer->getSlot() == slot && buffer->getSpace() == space) return buffer;
    return nullptr;
}

/// As elements of that many bytes are read where the program leaves it open; of four channels where
/// nothing better is known.
FORMAT formatOfElements(std::uint32_t byteSize, vulkan::NumberKind kind) {
    constexpr FORMAT formats[][4] = {{FORMAT::R32_FLOAT,
                                      FORMAT::R32G32_FLOAT,
                                      FORMAT::R32G32B32_FLOAT,
                                      FORMAT::R32G32B32A32_FLOAT},
                                     {FORMAT::R32_UINT,
                                      FORMAT::R32G32_UINT,
                                      FORMAT::R32G32B32_UINT,
                                      FORMAT::R32G32B32A32_UINT},
                                     {FORMAT::R32_SINT,
                                      FORMAT::R32G32_SINT,
                                      FORMAT::R32G32B32_SINT,
                                      FORMAT::R32G32B32A32_SINT}};
    const bool isWhole = byteSize % 4 == 0 && byteSize >= 4 && byteSize <= 16;
    return formats[static_cast<std::size_t>(kind)][isWhole ? byteSize / 4 - 1 : 3];
}

} // namespace

DescriptorWriter::DescriptorWriter(ShaderBinder& binder,
                                   BoundShader& bound,
                                   const Shader& shader,
                                   PassRecorder& recorder)
    : binder_(binder), bound_(bound), shader_(shader), recorder_(recorder) {
    std::size_t descriptors = 0;
    const std::vector<ReflectedResource>& all = shader.getProgram()->gpu()->reflection.resources;
    for (const ReflectedResource& resource : all)
        descriptors += resource.arrayCount;
    writes_.reserve(all.size() + 1);
    images_.reserve(descriptors);
    buffers_.reserve(descriptors + 1);
    texels_.reserve(descriptors);
}

bool DescriptorWriter::add(VkDescriptorSet set,
                           const Program::Gpu::Binding& binding,
                           const ReflectedResource& resource) {
    auto write = vulkan::vkInfo<VkWriteDescriptorSet>(VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET);
    write.dstSet = set;
    write.dstBinding = binding.binding;
    write.descriptorCount = resource.arrayCount;
    write.descriptorType = binding.type;
    write.pImageInfo = images_.data() + images_.size();
    write.pBufferInfo = buffers_.data() + buffers_.size();
    write.pTexelBufferView = texels_.data() + texels_.size();
    for (std::uint32_t i = 0; i < resource.arrayCount; ++i)
        if (!addElement(binding.type, {resource, resource.slot + i})) return false;
    writes_.push_back(write);
    return true;
}

void DescriptorWriter::addLoopWords(VkDescriptorSet set, const Program::Gpu& program) {
    auto write = vulkan::vkInfo<VkWriteDescriptorSet>(VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET);
    write.dstSet = set;
    write.dstBinding = BindingModel::loopBinding;
    write.descriptorCount = 1;
    write.descriptorType = VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
    write.pBufferInfo = buffers_.data() + buffers_.size();
    buffers_.push_back({program.loopWords.get(), 0, VK_WHOLE_SIZE});
    writes_.push_back(write);
}

void DescriptorWriter::write() const {
    vkUpdateDescriptorSets(Device::getInstance()->get(),
                           static_cast<std::uint32_t>(writes_.size()),
                           writes_.data(),
                           0,
                           nullptr);
}

bool DescriptorWriter::addElement(VkDescriptorType type, const Register& at) {
    switch (type) {
    case VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER:
        return addUniforms(at);
    case VK_DESCRIPTOR_TYPE_STORAGE_BUFFER:
        return addBuffer(at);
    case VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER:
    case VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER:
        return addTexels(at);
    case VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE:
        return addTexture(at);
    case VK_DESCRIPTOR_TYPE_STORAGE_IMAGE:
        return addWrittenTexture(at);
    default:
        return addSampler(at);
    }
}

bool DescriptorWriter::addUniforms(const Register& at) {
    const ConstantBuffer* buffer = findConstants(shader_, at.slot, at.resource.space);
    const VkPhysicalDeviceLimits& limits = Device::getInstance()->limits();
    const std::uint32_t filled = buffer == nullptr ? 0 : buffer->getByteSize();
    const std::uint32_t size = std::max({16U, at.resource.byteSize, filled});
    const auto slice = recorder_.frame().memory.allocate(
            size, std::max<VkDeviceSize>(16, limits.minUniformBufferOffsetAlignment));
    if (slice.data == nullptr) return false;
    std::memset(slice.data + filled, 0, size - filled);
    if (buffer != nullptr) buffer->fill(binder_.inputs_, {slice.data, filled});
    buffers_.push_back({slice.buffer, slice.offset, std::min(size, limits.maxUniformBufferRange)});
    return true;
}

/// Null where none is bound, and where it has no device side.
const Buffer* DescriptorWriter::boundBuffer(const Register& at) const {
    Handle<Buffer> handle;
    if (at.isWritten()) {
        const auto* binding = findAt(at.slot, at.resource.space, [this](std::uint32_t i) {
            return shader_.getUavBufferPerIndex(i);
        });
        if (binding != nullptr) handle = binding->resource;
    } else {
        const auto* binding = findAt(at.slot, at.resource.space, [this](std::uint32_t i) {
            return shader_.getTexturePerIndex(i);
        });
        const auto* buffer =
                binding == nullptr ? nullptr : std::get_if<Handle<Buffer>>(&binding->resource);
        if (buffer != nullptr) handle = *buffer;
    }
    const Buffer* buffer = BufferManager::getInstance()->resolve(handle);
    return buffer != nullptr && buffer->gpu() != nullptr ? buffer : nullptr;
}

void DescriptorWriter::noteAccess(const Register& at, const void* resource) {
    bound_.access.push_back({resource, at.isWritten()});
    binder_.usesScratch_ |= resource == &recorder_.renderer().fallbacks.scratch();
}

bool DescriptorWriter::addBuffer(const Register& at) {
    const Buffer* bound = boundBuffer(at);
    const Fallbacks& fallbacks = recorder_.renderer().fallbacks;
    const GpuBuffer& buffer = bound != nullptr ? bound->gpu()->buffer
                              : at.isWritten() ? fallbacks.scratch()
                                               : fallbacks.zeros();
    buffers_.push_back({buffer.get(), 0, buffer.size()});
    if (bound != nullptr || at.isWritten()) noteAccess(at, &buffer);
    return true;
}

VkFormat DescriptorWriter::texelFormat(const Register& at, const Buffer* buffer) const {
    const ReflectedResource& resource = at.resource;
    if (resource.isFormatFixed || buffer == nullptr)
        return vulkan::texelFormat(resource.texelFormat);
    return vulkan::texelFormat(formatOfElements(buffer->getElementByteSize(),
                                                vulkan::numberKind(resource.texelFormat)));
}

bool DescriptorWriter::addTexels(const Register& at) {
    const Buffer* bound = boundBuffer(at);
    if (bound != nullptr) {
        const VkFormat format = texelFormat(at, bound);
        if (const VkBufferView view = bound->gpu()->texels.get(bound->gpu()->buffer, format)) {
            texels_.push_back(view);
            noteAccess(at, &bound->gpu()->buffer);
            return true;
        }
        Device::getInstance()->logOnce(
                fmt::format("shader '{}': '{}' cannot see buffer '{}', of {} bytes in elements of "
                            "{}, as its numbers: zeros take its place",
                            shader_.getName(),
                            at.resource.name,
                            bound->getName(),
                            bound->getByteSize(),
                            bound->getElementByteSize()));
    }
    Fallbacks& fallbacks = recorder_.renderer().fallbacks;
    const VkFormat format = texelFormat(at, nullptr);
    const VkBufferView view =
            at.isWritten() ? fallbacks.scratchTexels(format) : fallbacks.zeroTexels(format);
    texels_.push_back(view);
    if (at.isWritten()) noteAccess(at, &fallbacks.scratch());
    return view != VK_NULL_HANDLE;
}

/// Null where none is bound that can be read here.
GpuImage* DescriptorWriter::boundImage(const Register& at) const {
    const auto* binding = findAt(at.slot, at.resource.space, [this](std::uint32_t i) {
        return shader_.getTexturePerIndex(i);
    });
    const auto* handle =
            binding == nullptr ? nullptr : std::get_if<Handle<Texture>>(&binding->resource);
    const Texture* texture =
            handle == nullptr ? nullptr : TextureManager::getInstance()->resolve(*handle);
    if (texture == nullptr || texture->gpu() == nullptr) return nullptr;
    GpuImage& image = texture->gpu()->image;
    // What is being drawn into cannot be read at the same time.
    const bool isDrawn = binder_.use_ == ShaderBinder::Use::draw && recorder_.isTarget(image);
    return isDrawn || !fits(image, at.resource) ? nullptr : &image;
}

void DescriptorWriter::note(std::vector<GpuImage*>& images, GpuImage& image) {
    if (std::find(images.begin(), images.end(), &image) == images.end()) images.push_back(&image);
}

bool DescriptorWriter::addTexture(const Register& at) {
    GpuImage* image = boundImage(at);
    if (image == nullptr) image = recorder_.renderer().fallbacks.texture(at.resource);
    if (image == nullptr) return false;
    // A target may have a clear before it that is still to be carried out.
    if (image->use() != ImageUse::shaderRead || recorder_.isTarget(*image))
        note(binder_.read_, *image);
    images_.push_back({VK_NULL_HANDLE, image->view(), layoutOf(ImageUse::shaderRead)});
    return true;
}

/// Only buffers can be bound where shaders write.
bool DescriptorWriter::addWrittenTexture(const Register& at) {
    GpuImage* image = recorder_.renderer().fallbacks.writtenTexture(at.resource);
    if (image == nullptr) return false;
    if (image->use() != ImageUse::shaderWrite) note(binder_.written_, *image);
    images_.push_back({VK_NULL_HANDLE, image->view(), layoutOf(ImageUse::shaderWrite)});
    noteAccess(at, image);
    return true;
}

bool DescriptorWriter::addSampler(const Register& at) {
    const auto* binding = findAt(at.slot, at.resource.space, [this](std::uint32_t i) {
        return shader_.getSamplerPerIndex(i);
    });
    const Sampler* sampler = binding == nullptr
                                     ? nullptr
                                     : SamplerManager::getInstance()->resolve(binding->resource);
    const bool fits = sampler != nullptr && sampler->gpu() != nullptr &&
                      sampler->gpu()->compares == at.resource.isComparison;
    images_.push_back(
            {fits ? sampler->gpu()->sampler : recorder_.renderer().fallbacks.sampler(at.resource),
             VK_NULL_HANDLE,
             VK_IMAGE_LAYOUT_UNDEFINED});
    return true;
}

} // namespace vlGraphics::render
