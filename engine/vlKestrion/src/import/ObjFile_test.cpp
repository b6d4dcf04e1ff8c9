#include "ObjFile.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace vlKestrion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr vlMemory::StringView square = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

ObjFile parsed(vlMemory::StringView text) {
    auto file = parseObj(text, "a.obj", 1);
    EXPECT_TRUE(file.has_value()) << file.error().message;
    return file ? *file : ObjFile{};
}

vlMemory::String failure(vlMemory::StringView text) {
    const auto file = parseObj(text, "a.obj", 2);
    return file ? vlMemory::String() : file.error().message;
}

vlMemory::String with(vlMemory::StringView start, vlMemory::StringView rest) {
    return vlMemory::String(start) + vlMemory::String(rest);
}

/// Twice the area of all triangles, as seen from +Z.
float areaFromFront(const ObjFile& file) {
    float area = 0;
    for (std::size_t corner = 0; corner < file.corners.size(); corner += 3) {
        const auto at = [&](std::size_t place) {
            return file.positions[static_cast<std::size_t>(file.corners[corner + place].position)];
        };
        area += cross(at(1) - at(0), at(2) - at(0)).z;
    }
    return area;
}

std::vector<int> positionsOf(const ObjFile& file) {
    std::vector<int> positions;
    for (const ObjCorner& corner : file.corners)
        positions.push_back(corner.position);
    return positions;
}

TEST(ObjFile, EveryWayToWriteACornerIsRead) {
    const ObjFile file = parsed(with(square,
                                     "vt 0.5 0.25\nvn 0 0 2\n"
                                     "f 1 2 3\nf 1/1 2/1 3/1\nf 1//1 2//1 3//1\n"
                                     "f -4/-1/-1 -3/-1/-1 -2/-1/-1\nf 1/1/ 2/ 3\n"));
    ASSERT_EQ(file.triangleCount(), 5U);
    EXPECT_EQ(file.corners[0].texcoord, -1);
    EXPECT_EQ(file.corners[3].texcoord, 0);
    EXPECT_EQ(file.corners[6].normal, 0);
    EXPECT_EQ(file.corners[9].position, 0);
    EXPECT_EQ(file.corners[9].normal, 0);
    EXPECT_EQ(file.corners[12].texcoord, 0);
    EXPECT_FLOAT_EQ(file.normals[0].z, 1);
    EXPECT_TRUE(file.warnings.empty());
}

TEST(ObjFile, LinesContinueBehindABackslashAndEndAnyWay) {
    const ObjFile file = parsed("\xEF\xBB\xBFv 0 0 \\\r\n 0\r\nv +1.0 0e0 -0\r\n\tv 1 1 0\r\n"
                                "f 1 \\\n2 3 # the only one");
    EXPECT_EQ(file.triangleCount(), 1U);
    EXPECT_TRUE(file.warnings.empty());
}

TEST(ObjFile, PolygonsOfAnyShapeKeepTheirAreaAndWinding) {
    // A comb whose teeth no fan could cut, and an arrow whose short diagonal lies outside.
    const ObjFile comb = parsed("v 0 0 0\nv 5 0 0\nv 5 3 0\nv 4 1 0\nv 3 3 0\nv 2 1 0\nv 1 3 0\n"
                                "v 0.5 1 0\nv 0 3 0\nf 1 2 3 4 5 6 7 8 9\n");
    EXPECT_EQ(comb.triangleCount(), 7U);
    EXPECT_FLOAT_EQ(areaFromFront(comb), 2 * 10.0F);
    const ObjFile arrow = parsed("v 0 0 0\nv 4 2 0\nv 0 4 0\nv 3 2 0\nf 1 2 3 4\n");
    EXPECT_FLOAT_EQ(areaFromFront(arrow), 2 * 2.0F);
    const ObjFile turned = parsed("v 0 0 0\nv 4 2 0\nv 0 4 0\nv 3 2 0\nf 4 3 2 1\n");
    EXPECT_FLOAT_EQ(areaFromFront(turned), -2 * 2.0F);
}

TEST(ObjFile, APolygonOfThousandsOfCornersIsCut) {
    vlMemory::String text;
    vlMemory::String face = "f";
    for (int corner = 0; corner < 3000; ++corner) {
        const double angle = corner * 2 * 3.14159265358979 / 3000;
        text += fmt::format("v {} {} 0\n", std::cos(angle), std::sin(angle));
        face += fmt::format(" {}", corner + 1);
    }
    const ObjFile file = parsed(text + face);
    EXPECT_EQ(file.triangleCount(), 2998U);
    EXPECT_NEAR(areaFromFront(file), 2 * 3.14159, 1e-3);
}

TEST(ObjFile, RunsSayObjectMaterialAndSmoothing) {
    const ObjFile file = parsed(with(square,
                                     "f 1 2 3\no left part\nusemtl red paint \nf 1 3 4\n"
                                     "s 2\nf 1 2 4\ns off\ng\nf 2 3 4\no left part\nf 1 2 3\n"));
    ASSERT_EQ(file.runs.size(), 5U);
    EXPECT_THAT(file.objects, ElementsAre("", "left part"));
    EXPECT_THAT(file.materials, ElementsAre("", "red paint"));
    EXPECT_TRUE(file.hasSmoothingGroups);
    EXPECT_EQ(file.runs[1].object, 1U);
    EXPECT_EQ(file.runs[2].smoothing, 2U);
    EXPECT_EQ(file.runs[3].smoothing, 0U);
    EXPECT_EQ(file.runs[3].object, 0U);
    EXPECT_EQ(file.runs[4].object, 1U);
    EXPECT_EQ(file.runs[4].firstTriangle, 4U);
}

TEST(ObjFile, FaultyFacesAreLeftOutAndNamed) {
    const ObjFile file = parsed(with(square,
                                     "v nan 0 0\nv 1e39 0 0\nv 1\n"
                                     "f 1 2 3\nf 1 2 99\nf 0 1 2\nf 1 2\nf 1 one 2\nf 1/2/3/4 2 3\n"
                                     "f 1 1 2\nf 1 2 5\nf 1 2 6\nf 1 2 7\nf 1/7 2/7 4/7\n"));
    EXPECT_THAT(positionsOf(file), ElementsAre(0, 1, 2, 0, 1, 3));
    EXPECT_THAT(file.warnings,
                ElementsAre(HasSubstr("a.obj:5: 3 vertices without proper numbers"),
                            HasSubstr("a.obj:10: 4 faces that make no sense"),
                            HasSubstr("a.obj:9: 4 indices that point outside"),
                            HasSubstr("a.obj: 1 triangles without an area"),
                            HasSubstr("a.obj: 3 triangles at places that are no finite numbers")));
}

TEST(ObjFile, WhatHoldsNoTriangleFailsInOneLine) {
    const std::pair<vlMemory::String, vlMemory::StringView> cases[] = {
            {"", "empty"},
            {vlMemory::String(square), "no triangle"},
            {vlMemory::String("v\0\x01\x02", 4), "binary"},
            {"\xFF\xFEv\n", "UTF-16"},
            {"f 1 2 3\n", "a.obj:1: 1 indices"},
            {"just words\n", "no triangle"}};
    for (const auto& [text, why] : cases) {
        EXPECT_THAT(failure(text), testing::StartsWith("a.obj"));
        EXPECT_THAT(failure(text), HasSubstr(std::string(why)));
        EXPECT_THAT(failure(text), testing::Not(HasSubstr("\n")));
    }
}

TEST(ObjFile, EveryTruncationIsReadOrFailsInOneLine) {
    const vlMemory::String whole = with(square,
                                        "vt 1 0\nvn 0 0 1\nmtllib m.mtl\no a\nusemtl b\ns 1\n"
                                        "f 1/1/1 2/1/1 3/1/1 4/1/1\nf -4//-1 -3//-1 -1//-1\n");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto file = parseObj(vlMemory::StringView(whole).substr(0, size), "a.obj", 1);
        if (file) {
            EXPECT_GE(file->triangleCount(), 1U) << size;
        } else {
            EXPECT_THAT(file.error().message, testing::Not(HasSubstr("\n"))) << size;
        }
    }
}

TEST(ObjFile, TwoThreadsReadWhatOneReads) {
    vlMemory::String text;
    for (int strip = 0; strip < 3000; ++strip) {
        text += fmt::format("o strip{}\nusemtl m{}\ns {}\n", strip % 7, strip % 3, strip % 5);
        text += fmt::format("v {0} 0 0\nv {0} 1 0\nv {1} 0 0\\\n\nv {1} 1 0\n", strip, strip + 1);
        text += strip % 2 == 0 ? "f -4 -2 -1 -3\n" : "f -4 -2 -1\nf 1 2 999999\n";
    }
    const auto one = parseObj(text, "a.obj", 1);
    const auto two = parseObj(text, "a.obj", 2);
    ASSERT_TRUE(one && two);
    EXPECT_EQ(positionsOf(*one), positionsOf(*two));
    EXPECT_EQ(one->objects, two->objects);
    EXPECT_EQ(one->warnings, two->warnings);
    ASSERT_EQ(one->runs.size(), two->runs.size());
    for (std::size_t run = 0; run < one->runs.size(); ++run) {
        EXPECT_EQ(one->runs[run].firstTriangle, two->runs[run].firstTriangle);
        EXPECT_EQ(one->runs[run].material, two->runs[run].material);
        EXPECT_EQ(one->runs[run].smoothing, two->runs[run].smoothing);
    }
}

} // namespace
} // namespace vlKestrion
