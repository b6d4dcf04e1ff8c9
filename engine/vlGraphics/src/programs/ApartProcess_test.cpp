#include "programs/ApartProcess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace vlGraphics {
namespace {

using Bytes = std::vector<std::byte>;
using End = ApartResult::End;

// A sanitizer's allocator may be locked by another thread while the copy is made.
#if !defined(VL_SANITIZE_ADDRESS) && !defined(VL_SANITIZE_THREAD)

constexpr unsigned someSeconds = 10;

TEST(ApartProcess, GivesBackMoreThanAPipeHolds) {
    int own = 1;
    const ApartResult result = runApart(
            [&](ApartNote& note) {
                own = 2;
                note = 7;
                return Bytes(std::size_t{3} << 20U, std::byte{5});
            },
            someSeconds);
    EXPECT_EQ(result.end, End::DONE);
    EXPECT_EQ(result.bytes, Bytes(std::size_t{3} << 20U, std::byte{5}));
    EXPECT_EQ(result.note, 7U);
    EXPECT_EQ(own, 1);
}

TEST(ApartProcess, TellsHowWorkFailsAndWhereItWas) {
    const auto endOf = [](const std::function<void()>& fault) {
        const ApartResult result = runApart(
                [&](ApartNote& note) {
                    note = 3;
                    fault();
                    return Bytes(1);
                },
                1);
        EXPECT_EQ(result.note, 3U);
        EXPECT_TRUE(result.bytes.empty());
        return result.end;
    };
    EXPECT_EQ(endOf([] { std::abort(); }), End::BROKEN);
    EXPECT_EQ(endOf([] { throw std::runtime_error("fault"); }), End::BROKEN);
    EXPECT_EQ(endOf([] {
                  std::vector<std::unique_ptr<char[]>> taken;
                  for (std::size_t part = 0; part < 64; ++part)
                      taken.push_back(
                              std::make_unique_for_overwrite<char[]>(std::size_t{64} << 20U));
              }),
              End::BROKEN);
    EXPECT_EQ(endOf([] {
                  for (volatile unsigned turn = 0;;)
                      turn = turn + 1;
              }),
              End::STOPPED);
}

TEST(ApartProcess, ManyAtOnceGetTheirOwn) {
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < 8; ++number)
        threads.emplace_back([number] {
            for (int turn = 0; turn < 5; ++turn) {
                const Bytes own(100000, std::byte(number));
                const ApartResult result = runApart([&](ApartNote&) { return own; }, someSeconds);
                EXPECT_EQ(result.end, End::DONE);
                EXPECT_EQ(result.bytes, own);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

#endif

} // namespace
} // namespace vlGraphics
