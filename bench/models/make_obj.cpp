// Writes an OBJ of about so many triangles with its MTL and two pictures: a bumpy ball with
// positions, normals and texture coordinates, its halves in two materials.
#include <vlImages/Image.h>
#include <vlImages/JpgEncoder.h>
#include <vlImages/PngEncoder.h>
#include <vlResources/FileWriter.h>

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <numbers>
#include <string>

namespace {

constexpr std::uint32_t pictureSize = 512;
constexpr double pi = std::numbers::pi;

struct Point {
    double x, y, z;
};

/// Segments round the ball for each ring from pole to pole.
constexpr std::uint32_t segmentsPerRing = 2;

Point pointAt(double u, double v) {
    const double azimuth = 2 * pi * u;
    const double polar = pi * v;
    // The waves fade at the poles, where all azimuths meet.
    const double calm = std::sin(polar);
    const double radius = 1 + calm * calm *
                                      (0.06 * std::sin(9 * azimuth) * std::sin(7 * polar) +
                                       0.02 * std::sin(41 * azimuth) * std::sin(37 * polar));
    return {radius * std::sin(polar) * std::cos(azimuth),
            radius * std::cos(polar),
            radius * std::sin(polar) * std::sin(azimuth)};
}

Point normalAt(double u, double v) {
    constexpr double step = 1e-5;
    const double inner = std::min(std::max(v, 2 * step), 1 - 2 * step);
    const Point east = pointAt(u + step, inner);
    const Point west = pointAt(u - step, inner);
    const Point south = pointAt(u, inner + step);
    const Point north = pointAt(u, inner - step);
    const Point a{east.x - west.x, east.y - west.y, east.z - west.z};
    const Point b{south.x - north.x, south.y - north.y, south.z - north.z};
    const Point n{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    const double length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
    return {n.x / length, n.y / length, n.z / length};
}

std::string makeObj(std::uint32_t rings, std::uint32_t segments) {
    std::string text = "mtllib ball.mtl\no ball\n";
    auto out = std::back_inserter(text);
    for (std::uint32_t ring = 0; ring <= rings; ++ring) {
        for (std::uint32_t segment = 0; segment <= segments; ++segment) {
            const double u = static_cast<double>(segment) / segments;
            const double v = static_cast<double>(ring) / rings;
            const Point p = pointAt(u, v);
            const Point n = normalAt(u, v);
            fmt::format_to(out, "v {:.6f} {:.6f} {:.6f}\n", p.x, p.y, p.z);
            fmt::format_to(out, "vt {:.6f} {:.6f}\n", 8 * u, 4 * (1 - v));
            fmt::format_to(out, "vn {:.4f} {:.4f} {:.4f}\n", n.x, n.y, n.z);
        }
    }
    for (std::uint32_t ring = 0; ring < rings; ++ring) {
        if (ring == 0) text += "usemtl warm\n";
        if (ring == rings / 2) text += "usemtl cold\n";
        for (std::uint32_t segment = 0; segment < segments; ++segment) {
            const std::uint32_t a = ring * (segments + 1) + segment + 1;
            const std::uint32_t b = a + segments + 1;
            if (ring > 0)
                fmt::format_to(out, "f {0}/{0}/{0} {1}/{1}/{1} {2}/{2}/{2}\n", a, a + 1, b);
            if (ring + 1 < rings)
                fmt::format_to(out, "f {0}/{0}/{0} {1}/{1}/{1} {2}/{2}/{2}\n", a + 1, b + 1, b);
        }
    }
    return text;
}

constexpr std::string_view materials = R"(newmtl warm
Kd 1 0.9 0.8
Ks 0.1 0.1 0.1
Ns 60
map_Kd warm.png

newmtl cold
Kd 0.8 0.9 1
Ks 0.3 0.3 0.3
Ns 200
map_Kd cold.jpg
)";

vlImages::Image makePicture(std::uint32_t red, std::uint32_t blue) {
    vlImages::Image image(pictureSize, pictureSize, vlImages::PixelFormat::rgba8);
    std::byte* at = image.pixels.data();
    std::uint32_t noise = 1;
    for (std::uint32_t y = 0; y < pictureSize; ++y) {
        for (std::uint32_t x = 0; x < pictureSize; ++x, at += 4) {
            noise = noise * 1664525U + 1013904223U;
            const std::uint32_t grain = (noise >> 24U) / 8 + ((x / 32 + y / 32) % 2) * 60;
            at[0] = static_cast<std::byte>(red + grain);
            at[1] = static_cast<std::byte>(100 + grain);
            at[2] = static_cast<std::byte>(blue + grain);
            at[3] = std::byte{255};
        }
    }
    return image;
}

void write(const std::filesystem::path& file, std::span<const std::byte> bytes) {
    const auto written = vlResources::FileWriter::writeFileWhole(file.string(), bytes);
    if (written) return;
    fmt::print(stderr, "make_obj: {}\n", written.error().message);
    std::exit(1);
}

void writePicture(const std::filesystem::path& file,
                  const vlCommon::Result<vlMemory::Buffer>& encoded) {
    if (encoded) return write(file, encoded->span());
    fmt::print(stderr, "make_obj: {}\n", encoded.error().message);
    std::exit(1);
}

} // namespace

int main(int argc, char** argv) {
    const int triangles = argc == 3 ? std::atoi(argv[1]) : 0;
    if (triangles < 100) {
        fmt::print(stderr, "usage: make_obj TRIANGLES FOLDER; at least 100 triangles\n");
        return 2;
    }
    const std::filesystem::path folder = argv[2];
    std::filesystem::create_directories(folder);
    // A ball has 2 * segments * (rings - 1) triangles.
    const auto rings = static_cast<std::uint32_t>(
            std::lround(std::sqrt(triangles / (2.0 * segmentsPerRing)) + 0.5));
    const std::uint32_t segments = rings * segmentsPerRing;
    const std::string obj = makeObj(rings, segments);
    write(folder / "ball.obj", std::as_bytes(std::span(obj)));
    write(folder / "ball.mtl", std::as_bytes(std::span(materials)));
    writePicture(folder / "warm.png", vlImages::PngEncoder::encode(makePicture(150, 60).view()));
    writePicture(folder / "cold.jpg", vlImages::JpgEncoder::encode(makePicture(60, 150).view()));
    fmt::print("{}: {} triangles, {:.1f} MB\n",
               (folder / "ball.obj").string(),
               2 * segments * (rings - 1),
               static_cast<double>(obj.size()) / 1e6);
}
