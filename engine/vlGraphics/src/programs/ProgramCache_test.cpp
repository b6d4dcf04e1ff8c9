#include "programs/HlslCompiler.h"
#include "programs/ProgramCache.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace vlGraphics {
namespace {

namespace fs = std::filesystem;

class ProgramCacheTest : public testing::Test {
protected:
    ProgramCacheTest() { fs::remove_all(folder_); }
    ~ProgramCacheTest() override { fs::remove_all(folder_); }

    static CompileRequest request(int number) {
        CompileRequest made;
        made.type = PROGRAM_TYPE::COMPUTE;
        made.sources.setComputeMemory(fmt::format(
                "struct S {{ float3 a; uint b; }}; RWStructuredBuffer<S> data : register(u{});\n"
                "cbuffer C : register(b0, space1) {{ float4x4 m; }};\n"
                "[numthreads(8, 1, 1)] void main() {{ data[0].a = m[1].xyz; }}",
                number));
        return made;
    }
    std::vector<fs::path> files() const {
        std::vector<fs::path> all;
        for (const auto& entry : fs::directory_iterator(folder_))
            all.push_back(entry.path());
        return all;
    }
    void keep(const CompileRequest& asked) { cache_.keep(asked, compileHlsl(asked)); }

    const fs::path folder_ = fs::temp_directory_path() /
                             (std::string("vl_programs_") +
                              testing::UnitTest::GetInstance()->current_test_info()->name());
    ProgramCache cache_{folder_.string()};
};

TEST_F(ProgramCacheTest, FindsWhatWasKeptAndNothingElse) {
    EXPECT_FALSE(cache_.find(request(1)));
    keep(request(1));
    const CompileReport made = compileHlsl(request(1));
    const auto found = ProgramCache(folder_.string()).find(request(1));
    ASSERT_TRUE(found && found->outcome);
    EXPECT_EQ(found->outcome->spirv, made.outcome->spirv);
    EXPECT_EQ(found->outcome->reflection, made.outcome->reflection);
    EXPECT_FALSE(cache_.find(request(2)));
    CompileRequest withMacro = request(1);
    withMacro.sources.addDefineMacroCompute("A", "1");
    EXPECT_FALSE(cache_.find(withMacro));
    EXPECT_EQ(files().size(), 1U) << "no sibling is left";
    CompileRequest bad = request(3);
    bad.sources.setComputeMemory("bad");
    keep(bad);
    EXPECT_FALSE(cache_.find(bad));
}

TEST_F(ProgramCacheTest, IgnoresDamagedFiles) {
    keep(request(1));
    keep(request(2));
    const std::vector<fs::path> both = files();
    ASSERT_EQ(both.size(), 2U);
    const auto content = [](const fs::path& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    };
    const auto put = [&](std::string_view text) {
        std::ofstream(both[0], std::ios::binary | std::ios::trunc) << text;
    };
    const std::string whole = content(both[0]);
    const int damaged = cache_.find(request(1)) && (put(""), !cache_.find(request(1))) ? 1 : 2;
    const auto isFound = [&] { return cache_.find(request(damaged)).has_value(); };
    put(whole);
    EXPECT_TRUE(isFound());
    for (const std::size_t at : {std::size_t{0},
                                 std::size_t{9},
                                 std::size_t{20},
                                 std::size_t{40},
                                 whole.size() / 2,
                                 whole.size() - 1}) {
        std::string changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ 0x10);
        put(changed);
        EXPECT_FALSE(isFound()) << at;
    }
    for (const std::size_t size : {std::size_t{0}, std::size_t{20}, whole.size() - 1}) {
        put(std::string_view(whole).substr(0, size));
        EXPECT_FALSE(isFound()) << size;
    }
    put(content(both[1]));
    EXPECT_FALSE(isFound()) << "another program's";
    keep(request(damaged));
    EXPECT_TRUE(isFound());
}

TEST_F(ProgramCacheTest, WritesNothingWhereItCannot) {
    std::ofstream(folder_.string()) << "a file in the way";
    keep(request(1));
    EXPECT_FALSE(cache_.find(request(1)));
}

TEST_F(ProgramCacheTest, TheOldestGoWhenItGrows) {
    keep(request(0));
    const std::uintmax_t one = fs::file_size(files().at(0));
    fs::remove(files().at(0));
    {
        ProgramCache small(folder_.string(), one * 8);
        for (int number = 0; number < 12; ++number) {
            small.keep(request(number), compileHlsl(request(number)));
            const auto age = std::chrono::minutes(12 - number);
            for (const fs::path& path : files())
                if (fs::file_time_type::clock::now() - fs::last_write_time(path) <
                    std::chrono::seconds(50))
                    fs::last_write_time(path, fs::file_time_type::clock::now() - age);
        }
    }
    EXPECT_LE(files().size(), 8U);
    EXPECT_GE(files().size(), 4U);
    EXPECT_FALSE(cache_.find(request(0)));
    EXPECT_TRUE(cache_.find(request(11)));
}

} // namespace
} // namespace vlGraphics
