#include "render/EngineTest.h"
#include "vulkan/BufferGpu.h"
#include "vulkan/Device.h"
#include "vulkan/Upload.h"

#include <algorithm>
#include <span>

namespace vlGraphics {
namespace {

class BufferGpuTest : public EngineTest {
protected:
    static Buffer& make(std::uint32_t elementByteSize, std::uint32_t elementCount) {
        Buffer& buffer = *BufferManager::getInstance()->createOrRetrieve("particles");
        buffer.setElementByteSize(elementByteSize);
        buffer.setElementCount(elementCount);
        return buffer;
    }

    /// What the device has in it.
    static std::vector<std::byte> contentOf(const Buffer& buffer) {
        const vulkan::GpuBuffer& from = buffer.gpu()->buffer;
        auto copy = vulkan::GpuBuffer::create(from.size(),
                                              VK_BUFFER_USAGE_TRANSFER_DST_BIT,
                                              vulkan::BufferMemory::readback,
                                              "copy");
        EXPECT_TRUE(copy.has_value());
        vulkan::Device& device = *vulkan::Device::getInstance();
        // What fills the buffer comes before what reads it.
        EXPECT_EQ(device.upload().submit(), VK_SUCCESS);
        const VkBufferCopy all{0, 0, from.size()};
        vkCmdCopyBuffer(device.upload().commands(), from.get(), copy->get(), 1, &all);
        EXPECT_EQ(device.upload().submit(), VK_SUCCESS);
        EXPECT_TRUE(device.waitFor(device.submitted()));
        const std::span bytes(copy->mapped(), from.size());
        return {bytes.begin(), bytes.end()};
    }
};

TEST_F(BufferGpuTest, StartsAsZerosEachTimeItIsLoaded) {
    // No whole number of words.
    Buffer& buffer = make(7, 3);
    for (int life = 0; life < 2; ++life) {
        ASSERT_TRUE(buffer.load().has_value());
        const auto content = contentOf(buffer);
        ASSERT_GE(content.size(), 21U);
        EXPECT_TRUE(std::ranges::all_of(content, [](std::byte b) { return b == std::byte{0}; }));
        const std::vector<std::byte> other(content.size(), std::byte{0xAA});
        vulkan::Upload& upload = vulkan::Device::getInstance()->upload();
        ASSERT_TRUE(upload.toBuffer(buffer.gpu()->buffer, 0, other).has_value());
        EXPECT_EQ(contentOf(buffer), other);
        buffer.unload();
    }
}

TEST_F(BufferGpuTest, EmptyOnesHaveNoDeviceSide) {
    for (const auto& [size, count] : {std::pair{0U, 0U}, {16U, 0U}, {0U, 4294967295U}}) {
        Buffer& buffer = make(size, count);
        EXPECT_TRUE(buffer.load().has_value());
        EXPECT_EQ(buffer.gpu(), nullptr);
    }
}

TEST_F(BufferGpuTest, AbsurdSizesAreOneLineAndKeepTheSettings) {
    for (const auto& [size, count, product] :
         {std::tuple{4294967295U, 1U, "4294967295"},
          {65536U, 65536U, "4294967296"},
          {4294967295U, 4294967295U, "18446744065119617025"}}) {
        Buffer& buffer = make(size, count);
        const auto loaded = buffer.load();
        ASSERT_FALSE(loaded.has_value());
        const std::string expected = "buffer 'particles': " + std::to_string(count) +
                                     " elements of " + std::to_string(size) + " bytes are " +
                                     product + " bytes: more than the ";
        EXPECT_EQ(loaded.error().message.find(expected), 0U) << loaded.error().message;
        EXPECT_EQ(loaded.error().message.find('\n'), std::string::npos);
        EXPECT_EQ(buffer.gpu(), nullptr);
        EXPECT_EQ(buffer.getElementByteSize(), size);
        EXPECT_EQ(buffer.getElementCount(), count);
    }
    // Nothing is left that a smaller one could not be made beside.
    EXPECT_TRUE(make(16, 1024).load().has_value());
}

} // namespace
} // namespace vlGraphics
