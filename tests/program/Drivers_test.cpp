#include "program/ProgramRun.h"
#include "program/Screen.h"

#include <vlImages/Decoder.h>
#include <vlImages/ImageOperations.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <span>
#include <sstream>

namespace tests {

namespace {

/// What the script prints: variables that choose the newer driver. Empty where it cannot be had.
std::map<std::string, std::string> newerDriver() {
    const std::string command = source("tests/support/mesa25.sh").string();
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return {};
    std::string text;
    std::array<char, 512> part{};
    while (std::fgets(part.data(), static_cast<int>(part.size()), pipe) != nullptr)
        text += part.data();
    if (pclose(pipe) != 0) return {};
    std::istringstream words(text);
    std::map<std::string, std::string> variables;
    for (std::string word; words >> word;) {
        const std::size_t equals = word.find('=');
        if (equals != std::string::npos)
            variables[word.substr(0, equals)] = word.substr(equals + 1);
    }
    return variables;
}

vlImages::Image render(const Folder& folder,
                       const std::map<std::string, std::string>& environment) {
    const auto outcome = run(folder.path(),
                             {"--render",
                              "out.png",
                              "--size",
                              "640x360",
                              source("samples/gallery/gallery.vls").string()},
                             environment);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(complaints(outcome.err), "");
    const std::string bytes = textOf(folder.path() / "out.png");
    auto image = vlImages::decode(std::as_bytes(std::span(bytes)), "out.png");
    return image ? std::move(*image) : vlImages::Image();
}

} // namespace

// Guards the renderer against leaning on one driver's habits: the two differ in extensions, limits
// and in how they filter, but not in what a picture shows.
TEST(Drivers, OlderAndNewerSoftwareDriverDrawTheSamePicture) {
    const auto environment = newerDriver();
    if (environment.empty()) GTEST_SKIP() << "the newer driver cannot be had here";
    const Folder folder;
    const vlImages::Image older = render(folder, {});
    const vlImages::Image newer = render(folder, environment);
    ASSERT_FALSE(older.empty());
    keep(older, "driver_older");
    keep(newer, "driver_newer");
    EXPECT_LT(vlImages::difference(older.view(), newer.view(), 16).fraction, 0.01);
}

} // namespace tests
