#include "TestFolder.h"

#include <vlExport/JsonExporter.h>
#include <vlGraphics/MeshFile.h>
#include <vlImages/Image.h>
#include <vlImages/PngEncoder.h>
#include <vlKestrion/ModelImporter.h>
#include <vlKestrion/Validation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

namespace vlKestrion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vlMemory::String;
using vlMemory::StringView;

constexpr StringView triangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 0 1\n";

String png(std::uint8_t red, std::uint8_t green, std::uint8_t alpha) {
    vlImages::Image image(2, 2, vlImages::PixelFormat::rgba8);
    for (std::size_t pixel = 0; pixel < 4; ++pixel) {
        image.pixels.data()[4 * pixel] = std::byte{red};
        image.pixels.data()[4 * pixel + 1] = std::byte{green};
        image.pixels.data()[4 * pixel + 2] = std::byte{red};
        image.pixels.data()[4 * pixel + 3] = std::byte{alpha};
    }
    const auto bytes = vlImages::PngEncoder::encode(image.view());
    return String(bytes->text());
}

class ModelImporter : public testing::Test {
protected:
    ImportReport import(StringView model, StringView project = "gallery.vls") {
        const auto report = importModel(folder_.path(model), folder_.path(project));
        EXPECT_TRUE(report.has_value()) << report.error().message;
        EXPECT_THAT(validateFile(folder_.path(project)), IsEmpty());
        return report ? *report : ImportReport{};
    }
    /// One line, and not a file more than before.
    String failure(StringView model, StringView project = "gallery.vls") {
        const std::size_t files = folder_.fileCount();
        const auto report = importModel(folder_.path(model), folder_.path(project));
        EXPECT_FALSE(report.has_value());
        EXPECT_EQ(folder_.fileCount(), files);
        const String text = report ? String() : report.error().message;
        EXPECT_THAT(text, testing::Not(HasSubstr("\n")));
        return text;
    }
    vlExport::Node tree(StringView file) {
        auto read = vlExport::JsonExporter::importIntoTree(folder_.read(file), file);
        EXPECT_TRUE(read.has_value()) << read.error().message;
        return read ? *read : vlExport::Node();
    }
    std::vector<String> namesIn(StringView file, StringView list) {
        std::vector<String> names;
        const vlExport::Node declarations = tree(file);
        for (const auto& element : declarations.find(list)->elements())
            names.push_back(*element.find("name")->asString());
        return names;
    }

    TestFolder folder_;
};

TEST_F(ModelImporter, WritesAProjectThatValidates) {
    folder_.write("box.mtl",
                  "newmtl red\nKd 1 0 0\nNs 10\nnewmtl glass\nKd 0.5 0.5 0.5\nd 0.25\n"
                  "map_Kd -s 1 1 1 -clamp on tile one.png\nbump -bm 0.5 bumps.png\n");
    folder_.write("tile one.png", png(200, 100, 255));
    folder_.write("bumps.png", png(90, 90, 255));
    folder_.write("box.obj",
                  String(triangle) + "mtllib box.mtl\no front\nusemtl red\nf 1 2 3\n"
                                     "usemtl glass\nf 1/1 3/3 2/2\no back\nusemtl red\nf 3 2 1\n");
    const ImportReport report = import("box.obj");
    EXPECT_EQ(report.meshes, 3U);
    EXPECT_EQ(report.materials, 2U);
    EXPECT_EQ(report.textures, 2U);
    EXPECT_EQ(report.triangles, 3U);
    EXPECT_THAT(report.warnings, IsEmpty());
    EXPECT_THAT(namesIn("box/box.vlme", "meshes"),
                ElementsAre("box/front red", "box/front glass", "box/back"));
    EXPECT_THAT(namesIn("box/box.vlma", "materials"), ElementsAre("box/red", "box/glass"));
    EXPECT_THAT(namesIn("box/box.vlpr", "programs"),
                ElementsAre("box/Lit", "box/Lit textured bumped"));
    EXPECT_TRUE(
            *tree("box/box.vlma").find("materials")->elements()[1].find("transparent")->asBool());
    EXPECT_TRUE(folder_.has("box/textures/bumps_normals.png"));
    EXPECT_TRUE(folder_.has("box/lit_src/pixelShader.hlsl"));
    EXPECT_EQ(*tree("gallery.vls").find("camera")->asString(), "box_CAMERA");
    EXPECT_EQ(*tree("gallery.vls").find("compositor")->asString(), "box_COMPOSITOR");
    const auto mesh = vlGraphics::readMeshFile(folder_.path("box/front glass.vlmb"));
    ASSERT_TRUE(mesh.has_value()) << mesh.error().message;
    EXPECT_EQ(mesh->vertexStride, 48U);
}

TEST_F(ModelImporter, TheSameModelAgainStandsBesideTheFirst) {
    folder_.write("box.obj", String(triangle) + "f 1 2 3\n");
    import("box.obj");
    const String before = folder_.read("box/box.vlme");
    import("box.obj");
    EXPECT_THAT(namesIn("box (2)/box (2).vlme", "meshes"), ElementsAre("box (2)/box (2)"));
    EXPECT_EQ(folder_.read("box/box.vlme"), before);
    const vlExport::Node project = tree("gallery.vls");
    EXPECT_EQ(project.find("scene")->find("nodes")->size(), 2U);
    EXPECT_EQ(*project.find("camera")->asString(), "box_CAMERA");
    EXPECT_FALSE(folder_.has("box (2)/box (2).vlco"));
}

TEST_F(ModelImporter, WhatAProjectSaysOtherwiseStays) {
    folder_.write("mine.vlca",
                  R"({"formatVersion": 1, "cameras": [{"name": "Eye"}, {"name": "box"}]})");
    folder_.write("gallery.vls",
                  R"({"formatVersion": 1, "declarations": ["mine.vlca"], "camera": "Eye",
                      "scene": {"nodes": [{"name": "old", "scale": [2, 2, 2]}]}})");
    folder_.write("box.obj", String(triangle) + "f 1 2 3\n");
    import("box.obj");
    const vlExport::Node project = tree("gallery.vls");
    EXPECT_EQ(*project.find("camera")->asString(), "Eye");
    const auto nodes = project.find("scene")->find("nodes")->elements();
    EXPECT_EQ(*nodes[0].find("name")->asString(), "old");
    EXPECT_EQ(*nodes[1].find("name")->asString(), "box (2)");
    EXPECT_EQ(*project.find("declarations")->elements()[0].asString(), "mine.vlca");
}

TEST_F(ModelImporter, NamesBecomeFileNamesThatStayInTheFolder) {
    folder_.write("m.mtl", "newmtl ../../up\nKd 1 1 1\nnewmtl a:b\nnewmtl A:B\n");
    folder_.write("m.obj",
                  String(triangle) + "mtllib m.mtl\no ../../etc/x\nusemtl ../../up\nf 1 2 3\n"
                                     "o Gr\xC3\xBC\xC3\x9F"
                                     "e\nusemtl a:b\nf 1 2 3\no \xFF\xFE\x01\nusemtl A:B\n"
                                     "f 1 2 3\no ..\nf 1 2 3\no GR\xC3\xBC\xC3\x9F"
                                     "E\nf 1 2 3\n");
    import("m.obj");
    EXPECT_TRUE(folder_.has("m/_.._etc_x.vlmb"));
    EXPECT_TRUE(folder_.has("m/Gr\xC3\xBC\xC3\x9F"
                            "e.vlmb"));
    EXPECT_TRUE(folder_.has("m/GR\xC3\xBC\xC3\x9F"
                            "E (2).vlmb"));
    EXPECT_TRUE(folder_.has("m/___.vlmb"));
    EXPECT_TRUE(folder_.has("m/mesh.vlmb"));
    EXPECT_THAT(namesIn("m/m.vlma", "materials"), ElementsAre("m/../../up", "m/a:b", "m/A:B (2)"));
}

TEST_F(ModelImporter, TexturesAreFoundBesideTheModelWhereverTheFileSaysTheyAre) {
    folder_.write("secret.png", png(1, 2, 255));
    folder_.write("models/Skin.PNG", png(1, 2, 0));
    folder_.write("models/maps/deep.png", png(3, 4, 255));
    folder_.write("models/m.mtl",
                  "newmtl a\nKd 0 0 0\nmap_Kd C:\\art\\skin.png\nnewmtl b\nmap_Kd maps\\deep.png\n"
                  "newmtl c\nmap_Kd ../secret.png\nnewmtl d\nmap_Kd /etc/passwd\n");
    folder_.write("models/m.obj",
                  "mtllib ../../somewhere/M.mtl\n" + String(triangle) +
                          "usemtl a\nf 1/1 2/2 3/3\nusemtl b\nf 1/1 2/2 3/3\n"
                          "usemtl c\nf 1/1 2/2 3/3\nusemtl d\nf 1/1 2/2 3/3\n");
    const ImportReport report = import("models/m.obj");
    EXPECT_EQ(report.textures, 2U);
    EXPECT_THAT(report.warnings,
                ElementsAre(HasSubstr("material 'c': texture '../secret.png' not found"),
                            HasSubstr("material 'd': texture '/etc/passwd' not found")));
    EXPECT_TRUE(folder_.has("m/textures/Skin.png"));
    EXPECT_THAT(namesIn("m/m.vlpr", "programs"),
                ElementsAre("m/Lit textured cut out", "m/Lit textured", "m/Lit"));
}

TEST_F(ModelImporter, WhatIsMissingIsMadeUpForWithAWarning) {
    folder_.write("m.mtl", "newmtl broken\nKd red\nmap_Kd broken.png\n");
    folder_.write("broken.png", png(1, 2, 3).substr(0, 40));
    folder_.write("m.obj",
                  "mtllib m.mtl\nmtllib gone.mtl\n" + String(triangle) +
                          "usemtl broken\nf 1/1 2/2 3/3\nusemtl unknown\nf 1 2 3\n");
    const ImportReport report = import("m.obj");
    EXPECT_EQ(report.textures, 0U);
    EXPECT_THAT(report.warnings,
                ElementsAre(HasSubstr("m.mtl:2: 'Kd' has no proper numbers"),
                            HasSubstr("material library 'gone.mtl' not found"),
                            HasSubstr("material 'unknown' not found"),
                            HasSubstr("material 'broken' goes without a texture: ")));
}

TEST_F(ModelImporter, WhatCannotBeImportedFailsInOneLine) {
    folder_.write("bad.obj", "v 1 2 3\nno faces\n");
    folder_.write("m.obj", String(triangle) + "f 1 2 3\n");
    folder_.write("m.fbx", "binary");
    folder_.write("list.vls", R"({"formatVersion": 1, "declarations": 7})");
    folder_.write("cut.vls", R"({"formatVersion": 1, "decl)");
    folder_.write("newer.vls", R"({"formatVersion": 99})");
    folder_.write("node.vls", R"({"formatVersion": 1, "scene": {"nodes": [{"position": [1]}]}})");
    folder_.write("gone.vls", R"({"formatVersion": 1, "declarations": ["gone.vlca"]})");
    folder_.write("out.vls", R"({"formatVersion": 1, "declarations": ["../out.vlca"]})");
    const std::size_t files = folder_.fileCount();
    EXPECT_THAT(failure("bad.obj"), HasSubstr("no triangle"));
    EXPECT_THAT(failure("gone.obj"), HasSubstr("gone.obj"));
    EXPECT_THAT(failure("m.fbx"), HasSubstr("only Wavefront OBJ"));
    EXPECT_THAT(failure("m.obj", "project.json"), HasSubstr(".vls"));
    EXPECT_THAT(failure("m.obj", "list.vls"), HasSubstr("list.vls:1: 'declarations'"));
    EXPECT_THAT(failure("m.obj", "cut.vls"), HasSubstr("cut.vls:1"));
    EXPECT_THAT(failure("m.obj", "newer.vls"), HasSubstr("newer.vls:1"));
    const String broken = folder_.read("node.vls");
    EXPECT_THAT(failure("m.obj", "node.vls"), HasSubstr("node.vls:1: 'position'"));
    EXPECT_EQ(folder_.read("node.vls"), broken);
    EXPECT_THAT(failure("m.obj", "gone.vls"), HasSubstr("gone.vlca"));
    EXPECT_THAT(failure("m.obj", "out.vls"), HasSubstr("out.vls:1: path '../out.vlca'"));
    EXPECT_EQ(folder_.fileCount(), files);
}

TEST_F(ModelImporter, WhateverTheNamesAreTheProjectValidates) {
    const String hdr = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 1\n\x80\x80\x80\x80";
    folder_.write("sky.hdr", hdr);
    folder_.write("m.mtl", "newmtl a\xC2\x85\x7F\nmap_Kd sky.hdr\n");
    folder_.write("m\xC2\x85.obj",
                  "mtllib m.mtl\n" + String(triangle) +
                          "o \xC2\x9F\nusemtl a\xC2\x85\x7F\nf 1/1 2/2 3/3\n"
                          "o \xFF\nusemtl \x1B\xFF\nf 1 2 3\n");
    const ImportReport report = import("m\xC2\x85.obj");
    EXPECT_EQ(report.textures, 0U);
    EXPECT_THAT(report.warnings,
                ElementsAre(HasSubstr("material '\?\?' not found"), HasSubstr("dynamic range")));
}

TEST_F(ModelImporter, HostileModelsComeToAnEnd) {
    // A fan of very many triangles, a library's name as long as a book, and a flood of faults.
    constexpr int count = 200000;
    String fan = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf";
    for (int corner = 0; corner < count; ++corner)
        fan += corner % 3 == 0 ? " 1" : corner % 3 == 1 ? " 2" : " 3";
    String words;
    for (int word = 0; word < count; ++word)
        words += " a/b";
    String faults = "newmtl a\n";
    for (int fault = 0; fault < 1000; ++fault)
        faults += "Ns x\n";
    folder_.write("m.mtl", faults);
    folder_.write("m.obj", "mtllib m.mtl\nmtllib" + words + "\nusemtl a\n" + fan + "\n");
    EXPECT_LT(import("m.obj").warnings.size(), 110U);

    String materials(triangle);
    for (int number = 0; number <= 4096; ++number)
        materials += "usemtl " + std::to_string(number) + "\nf 1 2 3\n";
    folder_.write("many.obj", materials);
    EXPECT_THAT(failure("many.obj"), HasSubstr("4097 materials in use"));
}

TEST_F(ModelImporter, AFolderThatCannotBeWrittenIsLeftAsItIs) {
    folder_.write("m.obj", String(triangle) + "f 1 2 3\n");
    folder_.write("file", "in the way");
    EXPECT_THAT(failure("m.obj", "file/gallery.vls"), HasSubstr("file"));
    if (::geteuid() == 0) GTEST_SKIP() << "nothing is unwritable for this user";
    folder_.write("locked/old.txt", "");
    namespace fs = std::filesystem;
    fs::permissions(folder_.path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_THAT(failure("m.obj", "locked/gallery.vls"), HasSubstr("locked"));
    fs::permissions(folder_.path("locked"), fs::perms::owner_all);
}

TEST_F(ModelImporter, ATruncatedModelImportsOrFailsInOneLine) {
    const String mtl = "newmtl red\nKd 1 0 0\nmap_Kd skin.png\nnorm skin.png\nd 0.5\n";
    const String obj = "# model\nmtllib m.mtl\n" + String(triangle) +
                       "vn 0 0 1\no part\nusemtl red\ns 1\nf 1/1/1 2/2/1 3/3/1\nf -3 -2 -1\n";
    folder_.write("skin.png", png(1, 2, 255));
    std::size_t imported = 0;
    for (std::size_t size = 0; size <= obj.size() + mtl.size(); size += 11) {
        folder_.write("m.obj", StringView(obj).substr(0, std::min(size, obj.size())));
        folder_.write("m.mtl", size < obj.size() ? mtl : mtl.substr(0, size - obj.size()));
        const String project = std::to_string(size) + "/p.vls";
        const auto report = importModel(folder_.path("m.obj"), folder_.path(project));
        if (report) {
            ++imported;
            EXPECT_THAT(validateFile(folder_.path(project)), IsEmpty()) << size;
        } else {
            EXPECT_THAT(report.error().message, testing::Not(HasSubstr("\n"))) << size;
            EXPECT_FALSE(folder_.has(std::to_string(size))) << size;
        }
    }
    EXPECT_GT(imported, 5U);
}

TEST_F(ModelImporter, ForeignModelsImportOrFailInOneLine) {
    std::error_code error;
    std::size_t imported = 0;
    for (const StringView source : {"OBJ", "invalid"}) {
        const auto path = std::filesystem::path("/usr/share/assimp/models") / source;
        for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
            if (entry.path().extension() != ".obj") continue;
            const String name = entry.path().stem().string();
            const String project = folder_.path(name + "/p.vls");
            const auto report = importModel(entry.path().string(), project);
            if (report) {
                ++imported;
                EXPECT_THAT(validateFile(project), IsEmpty()) << name;
                EXPECT_LE(report->warnings.size(), 20U) << name;
            } else {
                EXPECT_THAT(report.error().message, HasSubstr(name + ".obj"));
                EXPECT_THAT(report.error().message, testing::Not(HasSubstr("\n")));
            }
        }
    }
    if (error && imported == 0) GTEST_SKIP() << "no foreign models are installed";
    EXPECT_GE(imported, 18U);
}

} // namespace
} // namespace vlKestrion
