#pragma once
#include "render/ShaderBinder.h"

#include <vector>

namespace vlGraphics::vulkan {
class GpuBuffer;
}

namespace vlGraphics::render {

/** Fills the descriptor sets of one shader for one pass, and notes what they make it use. Lives
 * until they are written. */
class DescriptorWriter {
public:
    DescriptorWriter(ShaderBinder& binder,
                     BoundShader& bound,
                     const Shader& shader,
                     PassRecorder& recorder);

    /// Every register of the resource. False when the device is out of memory or has nothing to
    /// stand in for what is missing.
    bool add(VkDescriptorSet set,
             const Program::Gpu::Binding& binding,
             const ReflectedResource& resource);
    /// Where watched loops tell that they were stopped.
    void addLoopWords(VkDescriptorSet set, const Program::Gpu& program);
    void write() const;

private:
    /// A register of a resource, which may be an array of them.
    struct Register {
        const ReflectedResource& resource;
        std::uint32_t slot;
        bool isWritten() const { return resource.resourceClass == RESOURCE_CLASS::UAV; }
    };
    bool addElement(VkDescriptorType type, const Register& at);
    bool addUniforms(const Register& at);
    bool addBuffer(const Register& at);
    bool addTexels(const Register& at);
    bool addTexture(const Register& at);
    bool addWrittenTexture(const Register& at);
    bool addSampler(const Register& at);

    const Buffer* boundBuffer(const Register& at) const;
    vulkan::GpuImage* boundImage(const Register& at) const;
    VkFormat texelFormat(const Register& at, const Buffer* buffer) const;
    void noteAccess(const Register& at, const void* resource);
    static void note(std::vector<vulkan::GpuImage*>& images, vulkan::GpuImage& image);

    ShaderBinder& binder_;
    BoundShader& bound_;
    const Shader& shader_;
    PassRecorder& recorder_;
    // Writes point into these, so that they are never to grow beyond what they reserve.
    std::vector<VkWriteDescriptorSet> writes_;
    std::vector<VkDescriptorImageInfo> images_;
    std::vector<VkDescriptorBufferInfo> buffers_;
    std::vector<VkBufferView> texels_;
};

} // namespace vlGraphics::render
