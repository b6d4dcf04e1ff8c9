#include "programs/HlslCompiler.h"
#include "programs/IncludeFiles.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace vlGraphics {
namespace {

namespace fs = std::filesystem;
using vlMemory::StringView;

class IncludeTest : public testing::Test {
protected:
    IncludeTest() {
        fs::remove_all(root_);
        fs::create_directories(root_);
    }
    ~IncludeTest() override { fs::remove_all(root_); }

    void write(const std::string& path, StringView text) const {
        fs::create_directories((root_ / path).parent_path());
        std::ofstream(root_ / path, std::ios::binary) << text;
    }

    CompileReport compile(StringView text, StringView folder = {}) const {
        CompileRequest request;
        request.type = PROGRAM_TYPE::COMPUTE;
        request.sources.setComputeMemory(text);
        request.workingPath = root_.string();
        request.folder = folder;
        return compileHlsl(request);
    }
    /// Of a program that has the line in its second line.
    CompileReport including(StringView line, StringView folder = {}) const {
        return compile(fmt::format("RWStructuredBuffer<float> data : register(u0);\n{}\n"
                                   "[numthreads(1, 1, 1)] void main() {{ data[0] = value(); }}",
                                   line),
                       folder);
    }
    static std::string told(const CompileReport& report) {
        return report.outcome ? "compiled" : report.outcome.error().getErrorMessage();
    }
    std::string toldOf(StringView line, StringView folder = {}) const {
        return told(including(line, folder));
    }

    const fs::path root_ = fs::temp_directory_path() /
                           (std::string("vl_include_") +
                            testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(IncludeTest, FindsFilesBesideTheIncluderAndThenFromTheWorkingDirectory) {
    write("shaders/near.hlsl", "#include \"deep/er.hlsl\"\r\n#include \"common.hlsl\"\r\n");
    write("shaders/deep/er.hlsl", "\xEF\xBB\xBF#include \"../sibling.hlsl\"\n");
    write("shaders/sibling.hlsl", "#define FACTOR 2\n");
    write("common.hlsl", "float value() { return FACTOR; }");
    const CompileReport report = including("#include \"near.hlsl\"", "shaders");
    EXPECT_EQ(told(report), "compiled");
    EXPECT_EQ(report.includedFiles,
              (std::vector<std::string>{"common.hlsl",
                                        "shaders/deep/er.hlsl",
                                        "shaders/near.hlsl",
                                        "shaders/sibling.hlsl"}));
    EXPECT_EQ(toldOf("#include <shaders/near.hlsl>"), "compiled");
    EXPECT_EQ(toldOf("#include \"shaders/near.hlsl\""), "compiled");
    EXPECT_EQ(toldOf("#include <near.hlsl>", "shaders"),
              "2: #include 'near.hlsl': there is no such file");
    EXPECT_EQ(toldOf("#if 0\n#include \"none.hlsl\"\n#endif\n#include <shaders/near.hlsl>"),
              "compiled");
}

TEST_F(IncludeTest, ErrorsNameTheFileAndItsLineAndLinesAfterItStayRight) {
    write("lib/bad.hlsl", "float other() { return 1; }\n\nfloat value() { return missing; }\n");
    write("lib/good.hlsl", "float value()\n{\n    return 1;\n}");
    EXPECT_EQ(toldOf("#include \"lib/bad.hlsl\""), "lib/bad.hlsl:3: 'missing' : unknown variable");
    EXPECT_EQ(toldOf("#include \"lib/good.hlsl\"\n#include \"lib/good.hlsl\"").substr(0, 16),
              "lib/good.hlsl:2:")
            << "no function twice";
    EXPECT_EQ(toldOf("#include \"lib/good.hlsl\"\n\nfloat b = c;"), "4: 'c' : unknown variable");
    write("lib/deep.hlsl", "\n" + std::string(1000, '('));
    EXPECT_EQ(toldOf("#include \"lib/deep.hlsl\""),
              "lib/deep.hlsl:2: brackets nested deeper than 256");
    write("lib/resource.hlsl",
          "\n\nTexture2D far : register(t140); float value() { return far[uint2(0, 0)].x; }");
    EXPECT_EQ(toldOf("#include \"lib/resource.hlsl\""),
              "lib/resource.hlsl:3: 'far': register t140 is past t127");
}

TEST_F(IncludeTest, RefusesWhatIsNotAReadableTextInside) {
    write("broken.hlsl", "// 1\n// caf\xC3\n");
    write("folder/x.hlsl", "");
    write("huge.hlsl", std::string(IncludeFiles::maxFileBytes + 1, ' '));
    fs::create_symlink("/etc/hostname", root_ / "link.hlsl");
    EXPECT_EQ(toldOf("#include \"none.hlsl\""), "2: #include 'none.hlsl': there is no such file");
    EXPECT_EQ(toldOf("#include \"../none.hlsl\""),
              "2: #include '../none.hlsl': it lies outside the working directory");
    EXPECT_EQ(toldOf("#include \"/etc/hostname\""),
              "2: #include '/etc/hostname' is not relative to the working directory");
    EXPECT_EQ(toldOf("#include \"link.hlsl\""),
              "2: #include 'link.hlsl': it lies outside the working directory");
    EXPECT_EQ(toldOf("#include \"folder\""),
              "2: #include 'folder': it cannot be read: it is a folder");
    EXPECT_EQ(toldOf("#include \"broken.hlsl\""),
              "2: #include 'broken.hlsl': in its line 2: the text is not valid UTF-8");
    EXPECT_EQ(toldOf("#include \"huge.hlsl\""),
              "2: #include 'huge.hlsl': it cannot be read: 4194305 bytes, more than the 4194304 "
              "allowed");
    EXPECT_EQ(toldOf("#include \"\"").substr(0, 2), "2:");
    EXPECT_EQ(toldOf("#include value").substr(0, 2), "2:");
    const CompileReport missing = including("#include \"sub/none.hlsl\"", "folder");
    EXPECT_EQ(missing.includedFiles,
              (std::vector<std::string>{"folder/sub/none.hlsl", "sub/none.hlsl"}))
            << "what is missing can be watched for";
}

TEST_F(IncludeTest, EndsWhereFilesIncludeEachOtherWithoutEnd) {
    write("self.hlsl", "\n#include \"self.hlsl\"\n");
    EXPECT_EQ(toldOf("#include \"self.hlsl\""),
              "self.hlsl:2: #include 'self.hlsl' includes itself");
    for (int i = 0; i < 40; ++i)
        write(fmt::format("chain{}.hlsl", i), fmt::format("#include \"chain{}.hlsl\"\n", i + 1));
    EXPECT_EQ(
            toldOf("#include \"chain0.hlsl\""),
            "chain31.hlsl:1: #include 'chain32.hlsl': files include each other more than 32 deep");
    write("double0.hlsl", "float a;");
    for (int i = 0; i < 20; ++i)
        write(fmt::format("double{}.hlsl", i + 1),
              fmt::format("#include \"double{0}.hlsl\"\n#include \"double{0}.hlsl\"\n", i));
    EXPECT_NE(toldOf("#include \"double20.hlsl\"").find("more than 1024 files"), std::string::npos);
    write("once.hlsl",
          "// first\n  #pragma once\n#include \"once.hlsl\"\nfloat value() { return 1; }\n");
    EXPECT_EQ(toldOf("#include \"once.hlsl\"\n#include \"once.hlsl\""), "compiled");
    write("guarded.hlsl", "#ifndef G\n#define G\nfloat value() { return 1; }\n#endif\n");
    EXPECT_EQ(toldOf("#include \"guarded.hlsl\"\n#include \"./guarded.hlsl\""), "compiled");
}

TEST_F(IncludeTest, WhatAGuardLeavesOutCountsOnce) {
    const auto guarded = [this](const std::string& name, const std::string& text) {
        write(name + ".hlsl",
              fmt::format(
                      "// {0}\n#ifndef {0}_H\n#define {0}_H\n{1}\n#endif // {0}\n", name, text));
    };
    guarded("a", "#include \"b.hlsl\"\n#ifdef X\nfloat x;\n#else\nfloat a;\n#endif");
    guarded("b", "#include \"a.hlsl\"\nfloat b;");
    EXPECT_EQ(toldOf("#include \"a.hlsl\"\nfloat value() { return a + b; }"), "compiled");
    std::string branches = "float pick(float x) {\n", all;
    for (int i = 0; i < 200; ++i)
        branches += "if (x > 1) x = 1;\n";
    guarded("common", branches + "return x; }");
    for (int i = 0; i < 40; ++i) {
        guarded(fmt::format("part{}", i), "#include \"common.hlsl\"");
        all += fmt::format("#include \"part{}.hlsl\"\n", i);
    }
    EXPECT_EQ(toldOf(all + "float value() { return pick(1); }"), "compiled");
    // What stands behind a guard is read each time.
    write("behind.hlsl", "#ifndef B\n#define B\n#endif\n" + branches + "return x; }\n");
    std::string again;
    for (int i = 0; i < 40; ++i)
        again += "#include \"behind.hlsl\"\n";
    EXPECT_NE(toldOf(again).find("more than 4096 branches"), std::string::npos);
}

TEST_F(IncludeTest, KnowsWhetherWhatItReadIsAsItWas) {
    write("shaders/a.hlsl", "#include \"b.hlsl\"\n");
    write("b.hlsl", "float value() { return 1; }");
    const CompileReport report = including("#include \"a.hlsl\"", "shaders");
    EXPECT_EQ(told(report), "compiled");
    const std::string root = root_.string();
    EXPECT_TRUE(areUnchanged(root, report.probes));
    write("b.hlsl", "float value() { return 2; }");
    EXPECT_FALSE(areUnchanged(root, report.probes));
    write("b.hlsl", "float value() { return 1; }");
    EXPECT_TRUE(areUnchanged(root, report.probes));
    write("shaders/b.hlsl", "float value() { return 3; }");
    EXPECT_FALSE(areUnchanged(root, report.probes)) << "a nearer file has come";
}

} // namespace
} // namespace vlGraphics
