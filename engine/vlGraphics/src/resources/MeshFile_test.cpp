#include "resources/TestManagers.h"

#include <vlGraphics/MeshFile.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>

namespace vlGraphics {
namespace {

void expectEqual(const MeshData& a, const MeshData& b) {
    EXPECT_EQ(a.attributes, b.attributes);
    EXPECT_EQ(a.vertexStride, b.vertexStride);
    EXPECT_EQ(a.vertexCount, b.vertexCount);
    EXPECT_EQ(a.vertices, b.vertices);
    EXPECT_EQ(a.indices, b.indices);
    EXPECT_EQ(a.topology, b.topology);
    EXPECT_EQ(a.sphere, b.sphere);
    EXPECT_EQ(a.box, b.box);
}

MeshData grid(std::uint32_t count) {
    MeshData mesh = triangle();
    const vlMemory::Buffer one = mesh.vertices;
    mesh.vertexCount = 3 * count;
    mesh.vertices = vlMemory::Buffer(one.size() * count);
    mesh.indices.clear();
    for (std::uint32_t i = 0; i < count; ++i) {
        std::memcpy(mesh.vertices.data() + i * one.size(), one.data(), one.size());
        for (std::uint32_t corner = 0; corner < 3; ++corner)
            mesh.indices.push_back(3 * i + corner);
    }
    return mesh;
}

TEST(MeshFile, ReadsBackWhatWasWritten) {
    const MeshData mesh = triangle(2);
    const vlMemory::Buffer bytes = writeMeshFile(mesh);
    const auto read = readMeshFile(bytes.span(), "memory");
    ASSERT_TRUE(read) << read.error().message;
    expectEqual(*read, mesh);

    const auto path = std::filesystem::path(testing::TempDir()) / "triangle.vlmb";
    std::ofstream(path, std::ios::binary) << bytes.text();
    const auto fromFile = readMeshFile(path.string());
    ASSERT_TRUE(fromFile) << fromFile.error().message;
    expectEqual(*fromFile, mesh);
    std::filesystem::remove(path);
}

TEST(MeshFile, NamesTheFileThatItCannotOpen) {
    const auto missing = readMeshFile("/nowhere/at/all.vlmb");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().message.find("/nowhere/at/all.vlmb: "), 0U);
    EXPECT_FALSE(readMeshFile(testing::TempDir()));
}

TEST(MeshFile, TruncatedAnywhereIsOneClearLine) {
    const vlMemory::Buffer bytes = writeMeshFile(grid(64));
    for (std::size_t size = 0; size < bytes.size(); size += size < 320 ? 1 : 64) {
        const auto read = readMeshFile(bytes.span().first(size), "cut");
        ASSERT_FALSE(read) << size;
        EXPECT_EQ(read.error().message.find("cut: "), 0U);
    }
    vlMemory::Buffer longer = bytes;
    longer.resize(bytes.size() + 1);
    EXPECT_FALSE(readMeshFile(longer.span(), "long"));
}

TEST(MeshFile, FlippedBitsNeverGiveDataThatIsNotSound) {
    const vlMemory::Buffer bytes = writeMeshFile(grid(8));
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        vlMemory::Buffer flipped = bytes;
        flipped.data()[bit / 8] ^= static_cast<std::byte>(1U << (bit % 8));
        const auto read = readMeshFile(flipped.span(), "flipped");
        if (read) {
            EXPECT_TRUE(checkMeshData(*read));
        } else {
            EXPECT_EQ(read.error().message.find('\n'), vlMemory::String::npos);
        }
    }
}

TEST(MeshFile, HugeCountsAreRefusedBeforeMemoryIsTaken) {
    vlMemory::Buffer bytes = writeMeshFile(triangle());
    const std::uint32_t huge = 0xFFFFFFFF;
    for (const std::size_t place : {12U, 16U, 20U, 24U}) {
        vlMemory::Buffer broken = bytes;
        std::memcpy(broken.data() + place, &huge, sizeof huge);
        EXPECT_FALSE(readMeshFile(broken.span(), "huge"));
    }
    // Counts whose sizes come to that of the file again, modulo 2 to the power of 64.
    const std::uint32_t half = 0x80000000;
    const std::uint64_t size = std::uint64_t{huge} * huge + std::uint64_t{half} * 4 + 224;
    for (const std::size_t place : {16U, 20U})
        std::memcpy(bytes.data() + place, &huge, sizeof huge);
    std::memcpy(bytes.data() + 24, &half, sizeof half);
    std::memcpy(bytes.data() + 72, &size, sizeof size);
    bytes.resize(static_cast<std::size_t>(size));
    const auto wrapped = readMeshFile(bytes.span(), "wrapped");
    ASSERT_FALSE(wrapped);
    EXPECT_NE(wrapped.error().message.find("a vertex of 4294967295 bytes"), vlMemory::String::npos);
}

TEST(MeshFile, ANamedPipeIsRefusedWithoutWaiting) {
    const vlMemory::String path = testing::TempDir() + "vlGraphics_mesh_pipe";
    ::unlink(path.c_str());
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_FALSE(readMeshFile(path));
    ::unlink(path.c_str());
}

TEST(Mesh, SetDataNamesTheFaultAndKeepsTheEarlierContent) {
    MeshManager manager;
    Mesh& mesh = *manager.createOrRetrieve("gate");
    ASSERT_TRUE(mesh.setData(triangle(3)));
    const std::uint64_t revision = mesh.getRevision();
    const auto refuses = [&](MeshData data, vlMemory::StringView text) {
        const auto result = mesh.setData(std::move(data));
        EXPECT_FALSE(result);
        if (result) return;
        EXPECT_EQ(result.error().message.find("mesh 'gate': "), 0U);
        EXPECT_NE(result.error().message.find(text), vlMemory::String::npos)
                << result.error().message;
    };
    MeshData data = triangle();
    data.indices[1] = 3;
    refuses(data, "index 1 is 3");
    data = triangle();
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    std::memcpy(data.vertices.data() + 24, &notANumber, 4);
    refuses(data, "vertex 1 has no finite 'POSITION'");
    data = triangle();
    data.attributes[1].offset = 16;
    refuses(data, "does not fit");
    data = triangle();
    data.attributes[1].semantic = "POSITION";
    refuses(data, "appears twice");
    data = triangle();
    data.vertices.resize(59);
    refuses(data, "59 bytes");
    data = triangle();
    data.attributes[0].format = FORMAT::D32_FLOAT;
    refuses(data, "cannot have");
    data = triangle();
    data.vertexStride = 0;
    refuses(data, "0 bytes");
    refuses(MeshData(), "0 vertex attributes");
    EXPECT_EQ(mesh.getRevision(), revision);
    EXPECT_EQ(mesh.getBoundingBox().highest.x, 3);
}

TEST(Mesh, EqualLayoutsShareANumberAndOthersDoNot) {
    Mesh a;
    Mesh b;
    Mesh c;
    ASSERT_TRUE(a.setData(triangle(1)));
    ASSERT_TRUE(b.setData(triangle(2)));
    MeshData lines = triangle();
    lines.topology = PRIMITIVE_TOPOLOGY::LINE_LIST;
    ASSERT_TRUE(c.setData(lines));
    EXPECT_EQ(a.getLayoutId(), b.getLayoutId());
    EXPECT_NE(a.getLayoutId(), c.getLayoutId());
}

TEST(MeshData, BoundsHoldEveryPositionAndAreEmptyWithoutOne) {
    MeshData mesh = triangle(2);
    EXPECT_EQ(mesh.box.lowest, (vlMaths::Vector{-2, 0, 0}));
    EXPECT_EQ(mesh.box.highest, (vlMaths::Vector{2, 2, 0}));
    EXPECT_NEAR(mesh.sphere.radius, std::sqrt(5.0F), 1e-5F);
    mesh.attributes[0].semantic = "COLOR";
    computeBounds(mesh);
    EXPECT_LT(mesh.sphere.radius, 0);
    EXPECT_TRUE(mesh.box.empty());
}

} // namespace
} // namespace vlGraphics
