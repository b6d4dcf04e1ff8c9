#include "vulkan/DescriptorPools.h"

#include "programs/BindingModel.h"
#include "vulkan/Device.h"

#include <algorithm>
#include <array>

namespace vlGraphics::vulkan {
namespace {

constexpr std::uint32_t startSets = 32;
constexpr std::uint32_t mostSets = 4096;
// One set may use every register of a class in one space, and two classes and the loop buffer have
// one type, so a pool holds that at least; what few programs use, it holds no more of.
using BindingModel::registersPerClass;

} // namespace

DescriptorPools::~DescriptorPools() {
    for (VkDescriptorPool pool : pools_)
        Device::getInstance()->retire(pool);
}

bool DescriptorPools::addPool() {
    const std::uint32_t sets =
            std::min(mostSets, startSets << std::min<std::size_t>(pools_.size(), 7));
    const auto sized = [sets](VkDescriptorType type, std::uint32_t perSet) {
        return VkDescriptorPoolSize{type, std::max(sets * perSet, 2 * registersPerClass + 1)};
    };
    const std::array sizes{sized(VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, 2),
                           sized(VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE, 4),
                           sized(VK_DESCRIPTOR_TYPE_SAMPLER, 2),
                           sized(VK_DESCRIPTOR_TYPE_STORAGE_BUFFER, 1),
                           sized(VK_DESCRIPTOR_TYPE_STORAGE_IMAGE, 0),
                           sized(VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER, 0),
                           sized(VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER, 0)};
    auto info = vulkan::vkInfo<VkDescriptorPoolCreateInfo>(
            VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO);
    info.maxSets = sets;
    info.poolSizeCount = static_cast<std::uint32_t>(sizes.size());
    info.pPoolSizes = sizes.data();
    VkDescriptorPool pool = VK_NULL_HANDLE;
    if (vkCreateDescriptorPool(Device::getInstance()->get(), &info, nullptr, &pool) != VK_SUCCESS)
        return false;
    pools_.push_back(pool);
    return true;
}

VkDescriptorSet DescriptorPools::allocate(VkDescriptorSetLayout layout) {
    auto info = vulkan::vkInfo<VkDescriptorSetAllocateInfo>(
            VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO);
    info.descriptorSetCount = 1;
    info.pSetLayouts = &layout;
    for (;; ++current_) {
        const bool fresh = current_ == pools_.size();
        if (fresh && !addPool()) return VK_NULL_HANDLE;
        info.descriptorPool = pools_[current_];
        VkDescriptorSet set = VK_NULL_HANDLE;
        if (vkAllocateDescriptorSets(Device::getInstance()->get(), &info, &set) == VK_SUCCESS)
            return set;
        if (fresh) return VK_NULL_HANDLE;
    }
}

void DescriptorPools::reset() {
    for (VkDescriptorPool pool : pools_)
        vkResetDescriptorPool(Device::getInstance()->get(), pool, 0);
    current_ = 0;
}

} // namespace vlGraphics::vulkan
