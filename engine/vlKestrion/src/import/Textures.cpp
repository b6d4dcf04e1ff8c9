#include "Textures.h"

#include "Float.h"

#include <vlImages/Decoder.h>
#include <vlImages/PngEncoder.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <span>

namespace vlKestrion {

namespace {

namespace fs = std::filesystem;

bool isFile(const vlMemory::String& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::span<const std::uint8_t> pixelsOf(const vlImages::Image& image) {
    return {reinterpret_cast<const std::uint8_t*>(image.pixels.data()), image.pixels.size()};
}

bool isGrey(const vlImages::Image& image) {
    const auto pixels = pixelsOf(image);
    for (std::size_t place = 0; place + 3 < pixels.size(); place += 4)
        if (pixels[place] != pixels[place + 1] || pixels[place] != pixels[place + 2]) return false;
    return true;
}

bool hasHoles(const vlImages::Image& image) {
    const auto pixels = pixelsOf(image);
    for (std::size_t place = 3; place < pixels.size(); place += 4)
        if (pixels[place] < 128) return true;
    return false;
}

} // namespace

ModelFolder::ModelFolder(vlMemory::StringView folder) : folder_(folder) {
    std::error_code error;
    for (fs::directory_iterator entry(folder_, error), end; !error && entry != end;
         entry.increment(error)) {
        vlMemory::String name = entry->path().filename().string();
        byLowerName_.emplace(lowerCase(name), std::move(name));
    }
}

std::optional<vlMemory::String> ModelFolder::find(vlMemory::StringView reference) const {
    vlMemory::String path(reference);
    std::replace(path.begin(), path.end(), '\\', '/');
    const auto inside = vlResources::ResourceManager::getInstance().resolveInside(folder_, path);
    if (inside && isFile(*inside)) return *inside;
    const auto beside = byLowerName_.find(lowerCase(lastPathPart(path)));
    if (beside == byLowerName_.end()) return std::nullopt;
    const vlMemory::String found = (fs::path(folder_) / beside->second).string();
    return isFile(found) ? std::optional(found) : std::nullopt;
}

vlImages::Image normalsFromHeights(const vlImages::Image& heights) {
    constexpr float strength = 2.0F;
    vlImages::Image normals(heights.width, heights.height, vlImages::PixelFormat::rgba8);
    const auto source = pixelsOf(heights);
    const std::size_t width = heights.width;
    const std::size_t height = heights.height;
    const auto at = [&](std::size_t x, std::size_t y) {
        return static_cast<float>(source[((y % height) * width + x % width) * 4]) / 255.0F;
    };
    auto* target = reinterpret_cast<std::uint8_t*>(normals.pixels.data());
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const float right = at(x + 1, y) - at(x + width - 1, y);
            const float down = at(x, y + 1) - at(x, y + height - 1);
            const Float3 normal = normalised({-right * strength, down * strength, 1}, {0, 0, 1});
            for (const float channel : {normal.x, normal.y, normal.z})
                *target++ = static_cast<std::uint8_t>(std::lround((channel * 0.5F + 0.5F) * 255));
            *target++ = 255;
        }
    }
    return normals;
}

void prepareTexture(ModelTexture& texture) {
    auto file = vlResources::ResourceManager::getInstance().readFile(texture.path);
    if (!file) {
        texture.fault = file.error().message;
        return;
    }
    auto image = vlImages::decode(file->span(), texture.path);
    if (!image) {
        texture.fault = image.error().message;
        return;
    }
    if (image->format == vlImages::PixelFormat::rgba32f) {
        texture.fault =
                fmt::format("{}: high dynamic range, which textures cannot have", texture.path);
        return;
    }
    const bool eightBit = image->format == vlImages::PixelFormat::rgba8;
    texture.fileName = cleanFileName(lastPathPart(texture.path), "texture");
    if (texture.use == TextureUse::bump && eightBit && isGrey(*image)) {
        auto png = vlImages::PngEncoder::encode(normalsFromHeights(*image).view());
        if (!png) {
            texture.fault = png.error().message;
            return;
        }
        texture.bytes = std::move(*png);
        texture.fileName = fs::path(texture.fileName).stem().string() + "_normals.png";
        return;
    }
    texture.hasHoles = texture.use == TextureUse::color && eightBit && hasHoles(*image);
    texture.bytes = std::move(*file);
}

} // namespace vlKestrion
