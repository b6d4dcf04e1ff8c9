#pragma once
#include <vlMaths/Matrix.h>
#include <vlMaths/Vector.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bench {

/** The scene that the engine and the bare loop both draw: a wall of small balls, seen whole. Balls
 * of the same mesh do not stand together, as in a scene that grew. Plain value. */
class EntityScene {
public:
    static constexpr std::uint32_t width = 1280;
    static constexpr std::uint32_t height = 720;
    static constexpr std::array<float, 4> clearColor{0.05F, 0.06F, 0.08F, 1};
    static constexpr std::uint32_t vertexStride = 6 * sizeof(float);
    static constexpr std::string_view vertexSource = R"(
cbuffer Pass : register(b0) { float4x4 view; float4x4 projection; };
struct Output { float4 position : SV_POSITION; float3 normal : NORMAL; };
Output main(float3 position : POSITION, float3 normal : NORMAL, float4x4 world : WORLD_MATRIX) {
    Output output;
    output.position = mul(projection, mul(view, mul(world, float4(position, 1))));
    output.normal = mul((float3x3)world, normal);
    return output;
})";
    static constexpr std::string_view pixelSource = R"(
struct Input { float4 position : SV_POSITION; float3 normal : NORMAL; };
float4 main(Input input) : SV_TARGET {
    float light = saturate(dot(normalize(input.normal), float3(0.48, 0.64, -0.6)));
    return float4(float3(0.8, 0.55, 0.3) * (0.15 + 0.85 * light), 1);
})";

    struct Ball {
        std::vector<std::byte> vertices; ///< position, normal
        std::vector<std::uint32_t> indices;
    };

    EntityScene(std::uint32_t entityCount, std::uint32_t meshCount);

    std::uint32_t entityCount() const { return entityCount_; }
    std::uint32_t meshCount() const { return static_cast<std::uint32_t>(balls_.size()); }
    std::uint32_t meshOf(std::uint32_t entity) const { return entity % meshCount(); }
    const Ball& ball(std::uint32_t mesh) const { return balls_[mesh]; }
    std::uint64_t triangleCount() const;
    /// On a small circle that begins anew every 64 steps.
    vlMaths::Vector positionAt(std::uint32_t entity, std::uint32_t step) const;
    vlMaths::Vector cameraPosition() const;

private:
    std::uint32_t entityCount_;
    std::uint32_t columns_;
    std::vector<Ball> balls_;
    std::vector<vlMaths::Vector> places_;
    std::array<vlMaths::Vector, 64> circle_{};
};

} // namespace bench
