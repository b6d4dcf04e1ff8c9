#pragma once
#include "bare_device.h"
#include "bare_vulkan.h"

namespace bench {

inline constexpr VkFormat bareColorFormat = VK_FORMAT_B8G8R8A8_SRGB;
inline constexpr VkFormat bareDepthFormat = VK_FORMAT_D32_SFLOAT;

/// What bindings are filled with.
struct BareInputs {
    BareBuffer constants;   ///< binding 0's, binding 1's and so on
    VkDeviceSize range = 0; ///< bytes of each
    VkImageView texture = VK_NULL_HANDLE;
    VkSampler sampler = VK_NULL_HANDLE;
};

/** A program as the device draws with it: its pipeline, and its one descriptor set. Nothing may be
 *  drawn with it any more when it goes. */
class BarePipeline {
public:
    BarePipeline(const BareDevice& device,
                 const BareProgram& program,
                 const BareInputs& inputs,
                 std::uint32_t vertexStride,
                 std::span<const BareAttribute> attributes);
    ~BarePipeline();
    BarePipeline(const BarePipeline&) = delete;
    BarePipeline& operator=(const BarePipeline&) = delete;

    /// The viewport and the scissor are the commands'.
    void bind(VkCommandBuffer commands) const;

private:
    void createSet(const BareProgram& program);
    void fillSet(const BareProgram& program, const BareInputs& inputs) const;
    void createPipeline(const BareProgram& program,
                        std::uint32_t vertexStride,
                        std::span<const BareAttribute> attributes);

    const BareDevice& device_;
    VkDescriptorSetLayout setLayout_ = VK_NULL_HANDLE;
    VkDescriptorPool setPool_ = VK_NULL_HANDLE;
    VkDescriptorSet set_ = VK_NULL_HANDLE;
    VkPipelineLayout layout_ = VK_NULL_HANDLE;
    VkPipeline pipeline_ = VK_NULL_HANDLE;
};

} // namespace bench
