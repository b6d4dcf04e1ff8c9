#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ResourceManager.h>
#include <vlImages/Image.h>

#include <memory>

namespace vlGraphics {

/** A two-dimensional picture on the device: read by shaders, or rendered to when it has a render
 * flag. Its content is either a picture (from a file or from memory) or, for targets, what passes
 * draw. Changing a setting takes effect at the next unload() and load(). */
class Texture final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "texture";
    /// Pixels on a side; larger sizes make load() fail.
    static constexpr std::uint32_t maxSize = 16384;

    Texture();
    ~Texture() override;

    std::uint32_t getWidth() const { return width_; }
    std::uint32_t getHeight() const { return height_; }
    /// 1 / width and 1 / height: the size of a pixel in texture coordinates.
    float getInverseWidth() const { return 1 / static_cast<float>(width_); }
    float getInverseHeight() const { return 1 / static_cast<float>(height_); }
    /// Levels of the chain; 0 asks for the whole chain. Targets have one.
    std::uint32_t getMipCount() const { return mipCount_; }
    FORMAT getFormat() const { return format_; }
    RENDER_FLAG getRenderFlag() const { return renderFlag_; }
    /// The picture holds sRGB colours that the device turns linear when a shader reads them.
    bool isGammaCorrected() const { return gammaCorrected_; }
    /// Where the picture came from: relative to the working directory, absolute where it lies
    /// outside, empty for targets and memory.
    const vlMemory::String& getSourcePath() const { return sourcePath_; }

    // A size of 0 and values that are none of their enumeration are ignored.
    void setWidth(std::uint32_t value);
    void setHeight(std::uint32_t value);
    void setMipCount(std::uint32_t value);
    void setFormat(FORMAT value);
    void setRenderFlag(RENDER_FLAG value);
    void setGammaCorrected(bool value);
    void setSourcePath(vlMemory::StringView path);
    /// Takes the picture, its size and its format; RGBA8 or BGRA8. Kept until load() has brought it
    /// to the device. An empty one only drops what is kept.
    void setImage(vlImages::Image image);
    /// Copies every setting (not the content) of another texture.
    void copySettings(const Texture& other);

    vlCommon::Result<> load() override;
    void unload() override;
    bool isLoaded() const;

    /// Reads the first level back, waiting for the device. Fails when not loaded.
    vlCommon::Result<vlImages::Image> convertToImage() const;

    struct Gpu; ///< the back end's side
    Gpu* gpu() const { return gpu_.get(); }

private:
    std::uint32_t width_ = 1;
    std::uint32_t height_ = 1;
    std::uint32_t mipCount_ = 0;
    FORMAT format_ = FORMAT::R8G8B8A8_UNORM;
    RENDER_FLAG renderFlag_ = RENDER_FLAG::NONE;
    bool gammaCorrected_ = true;
    vlMemory::String sourcePath_;
    vlImages::Image image_;
    std::unique_ptr<Gpu> gpu_;
};

class TextureManager final : public ResourceManager<Texture>,
                             public vlCommon::MaybeSingletonClass<TextureManager> {};

} // namespace vlGraphics
