#include <vlInputs/System.h>

#include <gtest/gtest.h>

namespace vlInputs {
namespace {

TEST(InputSystem, StartsAndEndsAgainHoweverOftenItIsAsked) {
    for (int life = 0; life < 2; ++life) {
        EXPECT_FALSE(System::isInitialized());
        System::initialize();
        System::initialize();
        EXPECT_TRUE(System::isInitialized());
        System::shutdown();
        System::shutdown();
    }
    EXPECT_FALSE(System::isInitialized());
}

} // namespace
} // namespace vlInputs
