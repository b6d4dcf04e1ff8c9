#include <vlGraphics/Mesh.h>
#include <vlGraphics/MeshFile.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <tuple>

namespace vlGraphics {

namespace {

constexpr std::uint32_t mostAttributes = 16;
constexpr std::uint32_t mostStride = 2048; ///< bytes; every device can step so far

bool isFloatFormat(FORMAT format) {
    return format == FORMAT::R32_FLOAT || format == FORMAT::R32G32_FLOAT ||
           format == FORMAT::R32G32B32_FLOAT || format == FORMAT::R32G32B32A32_FLOAT;
}

bool isSemantic(vlMemory::StringView text) {
    constexpr std::size_t longest = 64;
    const auto isWord = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               c == '_';
    };
    return !text.empty() && text.size() <= longest && std::all_of(text.begin(), text.end(), isWord);
}

vlCommon::Result<> checkAttributes(const MeshData& mesh) {
    if (mesh.attributes.empty() || mesh.attributes.size() > mostAttributes) {
        return vlCommon::fail(fmt::format("{} vertex attributes, where 1 to {} are possible",
                                          mesh.attributes.size(),
                                          mostAttributes));
    }
    if (mesh.vertexStride == 0 || mesh.vertexStride > mostStride || mesh.vertexStride % 4 != 0) {
        return vlCommon::fail(fmt::format("a vertex of {} bytes, where multiples of 4 up to {} are "
                                          "possible",
                                          mesh.vertexStride,
                                          mostStride));
    }
    for (std::size_t index = 0; index < mesh.attributes.size(); ++index) {
        const VertexAttribute& attribute = mesh.attributes[index];
        if (!isSemantic(attribute.semantic)) {
            return vlCommon::fail(fmt::format("vertex attribute {} has no proper semantic", index));
        }
        const std::uint32_t size = vertexFormatSize(attribute.format);
        if (size == 0) {
            return vlCommon::fail(fmt::format("vertex attribute '{}' has format {}, which vertices "
                                              "cannot have",
                                              attribute.semantic,
                                              static_cast<std::uint32_t>(attribute.format)));
        }
        if (attribute.offset % 4 != 0 ||
            attribute.offset > mesh.vertexStride - std::min(size, mesh.vertexStride) ||
            size > mesh.vertexStride) {
            return vlCommon::fail(fmt::format("vertex attribute '{}' at byte {} does not fit a "
                                              "vertex of {} bytes",
                                              attribute.semantic,
                                              attribute.offset,
                                              mesh.vertexStride));
        }
        for (std::size_t other = 0; other < index; ++other) {
            if (mesh.attributes[other].semantic != attribute.semantic) continue;
            return vlCommon::fail(
                    fmt::format("vertex attribute '{}' appears twice", attribute.semantic));
        }
    }
    return {};
}

/// A float is finite unless all bits of its exponent are set; on the bits, the loops below become
/// wide instructions.
bool isFiniteBits(std::uint32_t bits) {
    return (bits & 0x7F800000U) != 0x7F800000U;
}

/// The first vertex with a value of the attribute that is not finite; vertexCount when there is
/// none.
std::uint32_t firstNotFinite(const MeshData& mesh, const VertexAttribute& attribute) {
    const std::size_t components = vertexFormatSize(attribute.format) / 4;
    const std::byte* at = mesh.vertices.data() + attribute.offset;
    for (std::uint32_t vertex = 0; vertex < mesh.vertexCount; ++vertex, at += mesh.vertexStride) {
        bool finite = true;
        for (std::size_t component = 0; component < components; ++component) {
            std::uint32_t bits = 0;
            std::memcpy(&bits, at + component * 4, sizeof bits);
            finite &= isFiniteBits(bits);
        }
        if (!finite) return vertex;
    }
    return mesh.vertexCount;
}

vlCommon::Result<> checkValues(const MeshData& mesh) {
    for (const VertexAttribute& attribute : mesh.attributes) {
        if (!isFloatFormat(attribute.format)) continue;
        const std::uint32_t vertex = firstNotFinite(mesh, attribute);
        if (vertex == mesh.vertexCount) continue;
        return vlCommon::fail(
                fmt::format("vertex {} has no finite '{}'", vertex, attribute.semantic));
    }
    std::uint32_t highest = 0;
    for (const std::uint32_t index : mesh.indices)
        highest = std::max(highest, index);
    if (mesh.indices.empty() || highest < mesh.vertexCount) return {};
    const auto wrong = std::find_if(mesh.indices.begin(),
                                    mesh.indices.end(),
                                    [&](std::uint32_t index) { return index >= mesh.vertexCount; });
    return vlCommon::fail(fmt::format("index {} is {}, past the last of {} vertices",
                                      wrong - mesh.indices.begin(),
                                      *wrong,
                                      mesh.vertexCount));
}

vlCommon::Result<> checkBounds(const MeshData& mesh) {
    const bool finite = isFinite(mesh.sphere.center) && std::isfinite(mesh.sphere.radius) &&
                        isFinite(mesh.box.lowest) && isFinite(mesh.box.highest);
    if (!finite) return vlCommon::fail("bounds that are not finite");
    return {};
}

/// Meshes of equal layout share pipelines, whatever else they hold. Layouts are few and stay.
std::uint32_t layoutIdOf(const MeshData& mesh) {
    struct Layout {
        std::vector<VertexAttribute> attributes;
        std::uint32_t stride = 0;
        PRIMITIVE_TOPOLOGY topology = PRIMITIVE_TOPOLOGY::TRIANGLE_LIST;
        bool operator==(const Layout&) const = default;
    };
    static std::vector<Layout> known;
    const Layout layout{mesh.attributes, mesh.vertexStride, mesh.topology};
    const auto found = std::find(known.begin(), known.end(), layout);
    const auto index = found - known.begin();
    if (found == known.end()) known.push_back(layout);
    return static_cast<std::uint32_t>(index) + 1;
}

std::uint64_t& boundsRevision() {
    static std::uint64_t revision = 1;
    return revision;
}

} // namespace

std::uint32_t vertexFormatSize(FORMAT format) {
    switch (format) {
    case FORMAT::R32G32B32A32_FLOAT:
        return 16;
    case FORMAT::R32G32B32_FLOAT:
        return 12;
    case FORMAT::R16G16B16A16_FLOAT:
    case FORMAT::R32G32_FLOAT:
        return 8;
    case FORMAT::R16G16_FLOAT:
    case FORMAT::R32_FLOAT:
    case FORMAT::R8G8B8A8_UNORM:
        return 4;
    default:
        return 0;
    }
}

vlCommon::Result<> checkMeshData(const MeshData& mesh) {
    const bool topology = mesh.topology >= PRIMITIVE_TOPOLOGY::POINT_LIST &&
                          mesh.topology <= PRIMITIVE_TOPOLOGY::TRIANGLE_STRIP;
    if (!topology) {
        return vlCommon::fail(fmt::format("{} is no primitive topology",
                                          static_cast<std::uint32_t>(mesh.topology)));
    }
    if (auto attributes = checkAttributes(mesh); !attributes) return attributes;
    const std::uint64_t size = std::uint64_t{mesh.vertexStride} * mesh.vertexCount;
    if (mesh.vertices.size() != size) {
        return vlCommon::fail(
                fmt::format("{} bytes of vertices, where {} vertices of {} bytes take "
                            "{}",
                            mesh.vertices.size(),
                            mesh.vertexCount,
                            mesh.vertexStride,
                            size));
    }
    if (mesh.indices.size() > std::numeric_limits<std::uint32_t>::max()) {
        return vlCommon::fail(fmt::format("{} indices are too many", mesh.indices.size()));
    }
    if (auto bounds = checkBounds(mesh); !bounds) return bounds;
    return checkValues(mesh);
}

void computeBounds(MeshData& mesh) {
    mesh.box = {};
    mesh.sphere = sphereAround(mesh.box);
    const auto isPosition = [](const VertexAttribute& attribute) {
        return attribute.semantic == "POSITION" && (attribute.format == FORMAT::R32G32B32_FLOAT ||
                                                    attribute.format == FORMAT::R32G32B32A32_FLOAT);
    };
    const auto position = std::find_if(mesh.attributes.begin(), mesh.attributes.end(), isPosition);
    if (position == mesh.attributes.end()) return;
    const auto pointAt = [&](std::uint32_t vertex) {
        std::array<float, 3> point{};
        std::memcpy(point.data(),
                    mesh.vertices.data() + std::size_t{mesh.vertexStride} * vertex +
                            position->offset,
                    sizeof point);
        return vlMaths::Vector{point[0], point[1], point[2]};
    };
    for (std::uint32_t vertex = 0; vertex < mesh.vertexCount; ++vertex) {
        mesh.box.add(pointAt(vertex));
    }
    if (mesh.box.empty()) return;
    // Round the box's middle, but only as far as the points reach: a good deal smaller than the
    // ball round the box for whatever is round itself.
    const vlMaths::Vector center = mesh.box.center();
    float farthest = 0;
    for (std::uint32_t vertex = 0; vertex < mesh.vertexCount; ++vertex) {
        farthest = std::max(farthest, lengthSquared(pointAt(vertex) - center));
    }
    mesh.sphere = {center, std::sqrt(farthest)};
}

std::uint64_t Mesh::getBoundsRevision() {
    return boundsRevision();
}

vlCommon::Result<> Mesh::setData(MeshData data) {
    if (auto checked = checkMeshData(data); !checked) {
        return vlCommon::fail(fmt::format("mesh '{}': {}", getName(), checked.error().message));
    }
    takeChecked(std::move(data));
    return {};
}

void Mesh::takeChecked(MeshData data) {
    layoutId_ = layoutIdOf(data);
    vertexStride_ = data.vertexStride;
    vertexCount_ = data.vertexCount;
    indexCount_ = static_cast<std::uint32_t>(data.indices.size());
    topology_ = data.topology;
    attributes_ = data.attributes;
    if (sphere_ != data.sphere) ++boundsRevision();
    sphere_ = data.sphere;
    box_ = data.box;
    data_ = std::make_unique<MeshData>(std::move(data));
    markChanged();
}

void Mesh::setSourcePath(vlMemory::StringView path) {
    if (sourcePath_ == path) return;
    sourcePath_ = path;
    markChanged();
}

} // namespace vlGraphics
