#include "vulkan/PipelineCache.h"

#include "system/CacheFolder.h"
#include "vulkan/Device.h"
#include "vulkan/VkText.h"

#include <vlResources/FileWriter.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {
namespace {

constexpr std::uint64_t fileMagic = 0x31434C50'4C56ULL; ///< "VLPLC1"
constexpr std::uintmax_t largestFile = std::uintmax_t{256} << 20U;

/// Before the driver's data, which a driver is not obliged to check.
struct Header {
    std::uint64_t magic = fileMagic;
    std::uint64_t size = 0;
    std::uint64_t hash = 0;
};

std::uint64_t hashOf(std::span<const std::byte> bytes) {
    std::uint64_t hash = 0xCBF29CE484222325ULL;
    for (const std::byte byte : bytes)
        hash = (hash ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3ULL;
    return hash;
}

bool fitsDevice(std::span<const std::byte> data) {
    VkPipelineCacheHeaderVersionOne header{};
    if (data.size() < sizeof header) return false;
    std::memcpy(&header, data.data(), sizeof header);
    const VkPhysicalDeviceProperties& properties = Device::getInstance()->choice().properties;
    return header.headerVersion == VK_PIPELINE_CACHE_HEADER_VERSION_ONE &&
           header.vendorID == properties.vendorID && header.deviceID == properties.deviceID &&
           std::equal(std::begin(header.pipelineCacheUUID),
                      std::end(header.pipelineCacheUUID),
                      std::begin(properties.pipelineCacheUUID));
}

/// Empty unless the file is there, sound, and this device's.
std::vector<std::byte> readData(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size < sizeof(Header) || size > largestFile) return {};
    std::ifstream file(path, std::ios::binary);
    Header header;
    file.read(reinterpret_cast<char*>(&header), sizeof header);
    if (!file || header.magic != fileMagic || header.size != size - sizeof header) return {};
    std::vector<std::byte> data(header.size);
    file.read(reinterpret_cast<char*>(data.data()), static_cast<std::streamsize>(data.size()));
    if (!file || hashOf(data) != header.hash || !fitsDevice(data)) return {};
    return data;
}

} // namespace

PipelineCache::PipelineCache(vlMemory::StringView folder) {
    const std::string place = cacheFolder(folder);
    if (!place.empty()) path_ = place + "/pipelines.bin";
    const std::vector<std::byte> data = path_.empty() ? std::vector<std::byte>() : readData(path_);
    auto info =
            vulkan::vkInfo<VkPipelineCacheCreateInfo>(VK_STRUCTURE_TYPE_PIPELINE_CACHE_CREATE_INFO);
    info.initialDataSize = data.size();
    info.pInitialData = data.empty() ? nullptr : data.data();
    const VkDevice device = Device::getInstance()->get();
    if (vkCreatePipelineCache(device, &info, nullptr, &cache_) == VK_SUCCESS) return;
    info.initialDataSize = 0;
    if (vkCreatePipelineCache(device, &info, nullptr, &cache_) != VK_SUCCESS)
        cache_ = VK_NULL_HANDLE; // pipelines are made without one, only more slowly
}

PipelineCache::~PipelineCache() {
    if (cache_ == VK_NULL_HANDLE) return;
    if (!path_.empty() && !Device::getInstance()->isLost()) save();
    vkDestroyPipelineCache(Device::getInstance()->get(), cache_, nullptr);
}

void PipelineCache::save() const {
    const VkDevice device = Device::getInstance()->get();
    std::size_t size = 0;
    if (vkGetPipelineCacheData(device, cache_, &size, nullptr) != VK_SUCCESS || size == 0) return;
    std::vector<std::byte> bytes(sizeof(Header) + size);
    std::byte* data = bytes.data() + sizeof(Header);
    if (vkGetPipelineCacheData(device, cache_, &size, data) != VK_SUCCESS) return;
    bytes.resize(sizeof(Header) + size);
    Header header;
    header.size = size;
    header.hash = hashOf({data, size});
    std::memcpy(bytes.data(), &header, sizeof header);
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), error);
    const auto written = vlResources::FileWriter::writeFileWhole(path_, bytes);
    if (!written)
        logLine(fmt::format("Compiled pipelines are not kept: {}", written.error().message));
}

} // namespace vlGraphics::vulkan
