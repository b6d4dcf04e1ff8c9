#pragma once
#include <vlGraphics/ResourceManager.h>

#include <cstdint>
#include <memory>

namespace vlGraphics {

/** Memory of the device that shaders read and write as an array of elements. Starts empty, which
 *  means that there is no device side. */
class Buffer final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "buffer";

    struct Settings {
        std::uint32_t elementByteSize = 0; ///< bytes; any value, load() says what is too large
        std::uint32_t elementCount = 0;
        bool unorderedAccess = false; ///< offered where shaders write
        bool shaderResource = false;  ///< offered where shaders read
        friend bool operator==(const Settings&, const Settings&) = default;
    };

    Buffer();
    ~Buffer() override;

    // The device side follows at the next unload() and load().
    const Settings& getSettings() const { return settings_; }
    void setSettings(const Settings& settings);
    std::uint32_t getElementByteSize() const { return settings_.elementByteSize; }
    std::uint32_t getElementCount() const { return settings_.elementCount; }
    bool getUnorderedAccess() const { return settings_.unorderedAccess; }
    bool getShaderResource() const { return settings_.shaderResource; }
    /// Of all elements; cannot overflow.
    std::uint64_t getByteSize() const {
        return std::uint64_t{settings_.elementByteSize} * settings_.elementCount;
    }

    void setUnorderedAccess(bool value);
    void setShaderResource(bool value);
    void setElementCount(std::uint32_t value);
    void setElementByteSize(std::uint32_t value);

    /// The memory starts as zeros. Fails, with no device side and the settings as they are, where
    /// the device cannot take so many bytes. An empty buffer needs no device.
    vlCommon::Result<> load() override;
    void unload() override;

    struct Gpu; ///< the back end's side
    /// Null while it is not loaded, and for an empty buffer.
    Gpu* gpu() const { return gpu_.get(); }

private:
    Settings settings_;
    std::unique_ptr<Gpu> gpu_;
};

class BufferManager final : public ResourceManager<Buffer>,
                            public vlCommon::MaybeSingletonClass<BufferManager> {};

} // namespace vlGraphics
