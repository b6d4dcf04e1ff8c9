#include "entity_scene.h"

#include <cmath>
#include <cstring>
#include <numbers>

namespace bench {
namespace {

constexpr std::uint32_t segments = 8;
constexpr std::uint32_t rings = 4;
constexpr float pi = std::numbers::pi_v<float>;

void addVertex(EntityScene::Ball& ball, float azimuth, float height, float radius) {
    const float around = std::sqrt(std::max(0.0F, 1 - height * height));
    const std::array<float, 3> normal{
            around * std::cos(azimuth), height, around * std::sin(azimuth)};
    const std::array<float, 6> vertex{radius * normal[0],
                                      radius * normal[1],
                                      radius * normal[2],
                                      normal[0],
                                      normal[1],
                                      normal[2]};
    const std::size_t at = ball.vertices.size();
    ball.vertices.resize(at + sizeof vertex);
    std::memcpy(ball.vertices.data() + at, vertex.data(), sizeof vertex);
}

/// Clockwise seen from outside; 2 * segments * (rings - 1) triangles.
EntityScene::Ball makeBall(float radius) {
    EntityScene::Ball ball;
    for (std::uint32_t ring = 0; ring <= rings; ++ring) {
        const float height = std::cos(pi * static_cast<float>(ring) / rings);
        for (std::uint32_t segment = 0; segment <= segments; ++segment)
            addVertex(ball, 2 * pi * static_cast<float>(segment) / segments, height, radius);
    }
    for (std::uint32_t ring = 0; ring < rings; ++ring) {
        for (std::uint32_t segment = 0; segment < segments; ++segment) {
            const std::uint32_t top = ring * (segments + 1) + segment;
            const std::uint32_t bottom = top + segments + 1;
            if (ring > 0) ball.indices.insert(ball.indices.end(), {top, top + 1, bottom});
            if (ring + 1 < rings)
                ball.indices.insert(ball.indices.end(), {top + 1, bottom + 1, bottom});
        }
    }
    return ball;
}

} // namespace

EntityScene::EntityScene(std::uint32_t entityCount, std::uint32_t meshCount)
    : entityCount_(entityCount),
      columns_(static_cast<std::uint32_t>(std::ceil(std::sqrt(entityCount * 16.0 / 9.0)))) {
    for (std::uint32_t mesh = 0; mesh < meshCount; ++mesh)
        balls_.push_back(
                makeBall(0.4F + 0.1F * static_cast<float>(mesh) / static_cast<float>(meshCount)));
    const std::uint32_t rows = (entityCount + columns_ - 1) / columns_;
    for (std::uint32_t entity = 0; entity < entityCount; ++entity) {
        const auto column = static_cast<float>(entity % columns_);
        const auto row = static_cast<float>(entity / columns_);
        places_.push_back({column - 0.5F * static_cast<float>(columns_ - 1),
                           row - 0.5F * static_cast<float>(rows - 1),
                           0,
                           1});
    }
    for (std::size_t step = 0; step < circle_.size(); ++step) {
        const float angle = 2 * pi * static_cast<float>(step) / static_cast<float>(circle_.size());
        circle_[step] = {0.3F * std::cos(angle), 0.3F * std::sin(angle), 0, 0};
    }
}

std::uint64_t EntityScene::triangleCount() const {
    std::uint64_t count = 0;
    for (std::uint32_t entity = 0; entity < entityCount_; ++entity)
        count += balls_[meshOf(entity)].indices.size() / 3;
    return count;
}

vlMaths::Vector EntityScene::positionAt(std::uint32_t entity, std::uint32_t step) const {
    const vlMaths::Vector& place = places_[entity];
    const vlMaths::Vector& offset = circle_[(entity + step) % circle_.size()];
    return {place.x + offset.x, place.y + offset.y, place.z, 1};
}

vlMaths::Vector EntityScene::cameraPosition() const {
    // 60 degrees of view take in a wall of about this width.
    return {0, 0, -0.53F * static_cast<float>(columns_) - 2, 1};
}

} // namespace bench
