#include "interfaces/preview/PreviewDrawer.h"

#include "interfaces/preview/PreviewScene.h"

#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/Sampler.h>
#include <vlGraphics/Texture.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace vlEditor {
namespace {

using PreviewScene::Drawing;
using vlGraphics::FORMAT;
using vlGraphics::Handle;
using vlGraphics::Sampler;
using vlGraphics::Texture;

const Drawing ofTexture{.name = "TEXTURE", .pixelShader = "preview_texture.hlsl", .macro = ""};
const Drawing ofSampler{.name = "SAMPLER", .pixelShader = "preview_sampler.hlsl", .macro = ""};
const Drawing ofDepths{
        .name = "DEPTH", .pixelShader = "preview_depth.hlsl", .macro = "", .isDepth = true};
const Drawing ofComparison{.name = "COMPARISON",
                           .pixelShader = "preview_sampler.hlsl",
                           .macro = "COMPARED",
                           .first = &ofDepths};

/// What drawing previews has added to the engine's count.
std::uint64_t& ownChanges() {
    static std::uint64_t count = 0;
    return count;
}

/** Counts the changes made during its life as the drawing's own. */
class OwnChanges {
public:
    OwnChanges() : before_(vlGraphics::ChangeCount::get()) {}
    OwnChanges(const OwnChanges&) = delete;
    OwnChanges& operator=(const OwnChanges&) = delete;
    ~OwnChanges() { ownChanges() += vlGraphics::ChangeCount::get() - before_; }

private:
    std::uint64_t before_;
};

PreviewPicture without(std::string reason) {
    return {{}, std::move(reason)};
}

PreviewPicture refused(const vlCommon::Error& error) {
    return without("The preview cannot be drawn: " + error.message);
}

struct Size {
    std::uint32_t width;
    std::uint32_t height;
};

/// Not larger than it is.
Size fitting(const Texture& texture) {
    const double share = std::min(1.0,
                                  static_cast<double>(PreviewDrawer::side) /
                                          std::max(texture.getWidth(), texture.getHeight()));
    const auto scaled = [share](std::uint32_t texels) {
        return std::max(1U, static_cast<std::uint32_t>(std::lround(texels * share)));
    };
    return {scaled(texture.getWidth()), scaled(texture.getHeight())};
}

bool isOneOf(FORMAT format, std::initializer_list<FORMAT> formats) {
    return std::ranges::find(formats, format) != formats.end();
}

PreviewContent contentOf(const Texture& texture) {
    const FORMAT format = texture.getFormat();
    const bool isTarget = texture.getRenderFlag() != vlGraphics::RENDER_FLAG::NONE;
    PreviewContent content;
    content.isDepth = texture.getRenderFlag() == vlGraphics::RENDER_FLAG::DEPTH_TARGET;
    content.isGrey = content.isDepth ||
                     isOneOf(format, {FORMAT::R8_UNORM, FORMAT::R16_FLOAT, FORMAT::R32_FLOAT});
    content.isFree = isOneOf(format,
                             {FORMAT::R32G32B32A32_FLOAT,
                              FORMAT::R16G16B16A16_FLOAT,
                              FORMAT::R32G32_FLOAT,
                              FORMAT::R16G16_FLOAT,
                              FORMAT::R11G11B10_FLOAT,
                              FORMAT::R16_FLOAT,
                              FORMAT::R32_FLOAT});
    const bool isEncoded =
            isOneOf(format, {FORMAT::R8G8B8A8_UNORM_SRGB, FORMAT::B8G8R8A8_UNORM_SRGB}) ||
            (texture.isGammaCorrected() &&
             isOneOf(format, {FORMAT::R8G8B8A8_UNORM, FORMAT::B8G8R8A8_UNORM}));
    content.isLinear = isEncoded || (content.isFree && !content.isGrey);
    content.isOpaque = isTarget;
    return content;
}

/// The size goes into the shader's only slot.
void setUp(vlGraphics::Shader& shader, Handle<Texture> texture, Size size) {
    shader.setTexture(0, texture);
    shader.getConstantBuffer(0, 0)->getPassMemorySlot(0)->setFromVector(
            static_cast<float>(size.width), static_cast<float>(size.height), 0, 0);
}

} // namespace

std::optional<PreviewPicture> PreviewDrawer::drawTexture(const std::string& name) {
    const OwnChanges own;
    auto& textures = *vlGraphics::TextureManager::getInstance();
    const Texture* texture = textures.get(name);
    if (texture == nullptr) return without("There is no texture '" + name + "'");
    if (!texture->isLoaded()) return without("Texture '" + name + "' is not loaded");
    const Size size = fitting(*texture);
    std::string caption = fmt::format("{} x {}", texture->getWidth(), texture->getHeight());
    if (texture->getFormat() == FORMAT::R32_UINT) {
        const auto numbers = texture->convertToImage();
        if (!numbers) return refused(numbers.error());
        return PreviewPicture::fromNumbers(*numbers, size.width, size.height, caption);
    }
    const auto shader = PreviewScene::prepare(ofTexture);
    if (!shader) return refused(shader.error());
    if (!*shader) return std::nullopt;
    setUp(***shader, textures.handleOf(texture), size);
    const auto texels = PreviewScene::draw(ofTexture, side);
    if (!texels) return refused(texels.error());
    return PreviewPicture::fromTexels(
            *texels, size.width, size.height, contentOf(*texture), caption);
}

std::optional<PreviewPicture> PreviewDrawer::drawSampler(const std::string& name) {
    const OwnChanges own;
    auto& samplers = *vlGraphics::SamplerManager::getInstance();
    const Sampler* sampler = samplers.get(name);
    if (sampler == nullptr) return without("There is no sampler '" + name + "'");
    const bool compares = sampler->getFilter() >= vlGraphics::FILTER::COMPARISON_MIN_MAG_MIP_POINT;
    const auto pattern = PreviewScene::pattern();
    if (!pattern) return refused(pattern.error());
    const auto depths = PreviewScene::depths();
    if (!depths) return refused(depths.error());
    constexpr Size size{side, side / 2};
    const Drawing& drawing = compares ? ofComparison : ofSampler;
    const auto heights = PreviewScene::prepare(ofDepths);
    const auto shader = PreviewScene::prepare(drawing);
    if (!heights) return refused(heights.error());
    if (!shader) return refused(shader.error());
    if (!*heights || !*shader) return std::nullopt;
    setUp(***heights, *pattern, size);
    setUp(***shader, compares ? *depths : *pattern, size);
    (**shader)->setSampler(0, samplers.handleOf(sampler));
    const auto texels = PreviewScene::draw(drawing, side);
    if (!texels) return refused(texels.error());
    return PreviewPicture::fromTexels(*texels,
                                      size.width,
                                      size.height,
                                      {},
                                      compares ? "a pattern's heights compared with 0.5"
                                               : "-1 to 2, and receding");
}

std::uint64_t PreviewDrawer::getChangeCount() {
    return vlGraphics::ChangeCount::get() - ownChanges();
}

} // namespace vlEditor
