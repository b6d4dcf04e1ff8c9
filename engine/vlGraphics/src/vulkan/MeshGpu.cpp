#include "vulkan/MeshGpu.h"

#include "vulkan/Device.h"
#include "vulkan/Upload.h"

#include <vlGraphics/MeshFile.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

namespace vlGraphics {

using vulkan::Device;
using vulkan::GpuBuffer;

Mesh::Mesh() = default;
Mesh::~Mesh() = default;

vlCommon::Result<> Mesh::load() {
    if (gpu_) return {};
    const std::string name = fmt::format("mesh '{}'", getName());
    if (Device::getInstance() == nullptr)
        return vlCommon::fail(fmt::format("{}: there is no device", name));
    // Data that an earlier load brought to the device is still in the file that it came from.
    if (!data_ && !sourcePath_.empty()) {
        const auto& files = vlResources::ResourceManager::getInstance();
        auto data = readMeshFile(files.getAbsoluteFromWorkingDir(sourcePath_));
        if (!data) return vlCommon::fail(fmt::format("{}: {}", name, data.error().message));
        if (auto taken = setData(*std::move(data)); !taken) return taken;
    }
    if (!data_ || data_->vertices.empty())
        return vlCommon::fail(fmt::format("{} has no vertices to load", name));

    const VkDeviceSize vertexBytes = data_->vertices.size();
    const VkDeviceSize indexOffset = (vertexBytes + 3) / 4 * 4;
    auto buffer =
            GpuBuffer::create(indexOffset + data_->indices.size() * sizeof(std::uint32_t),
                              VK_BUFFER_USAGE_VERTEX_BUFFER_BIT | VK_BUFFER_USAGE_INDEX_BUFFER_BIT |
                                      VK_BUFFER_USAGE_TRANSFER_DST_BIT,
                              vulkan::BufferMemory::device,
                              name);
    if (!buffer) return tl::unexpected(buffer.error());
    vulkan::Upload& upload = Device::getInstance()->upload();
    auto done = upload.toBuffer(*buffer, 0, data_->vertices.span());
    // Written memory cannot fail any more: the vertices go before the indices are touched, so that
    // a large mesh is never twice in memory.
    if (done && buffer->mapped() != nullptr) data_->vertices = {};
    if (done)
        done = upload.toBuffer(*buffer, indexOffset, std::as_bytes(std::span(data_->indices)));
    if (!done) return vlCommon::fail(fmt::format("{}: {}", name, done.error().message));

    gpu_ = std::make_unique<Gpu>();
    gpu_->buffer = *std::move(buffer);
    gpu_->indexOffset = indexOffset;
    gpu_->vertexCount = vertexCount_;
    gpu_->indexCount = indexCount_;
    gpu_->vertexStride = vertexStride_;
    gpu_->layoutId = layoutId_;
    gpu_->topology = topology_;
    gpu_->attributes = attributes_;
    data_.reset();
    markChanged();
    return {};
}

void Mesh::unload() {
    if (!gpu_) return;
    gpu_.reset();
    markChanged();
}

} // namespace vlGraphics
