#include "sweep/file_time.h"

#include <gtest/gtest.h>

namespace {

TEST(FileTime, TicksAroundTheEpochTruncateTowardZero)
{
    const std::int64_t epoch = 116444736000000000LL;
    const struct {
        std::int64_t ticks;
        TimeStamp seconds;
    } cases[] = {{epoch, 0}, {epoch + 9999999, 0}, {epoch + 10000000, 1}, {epoch - 10000000, -1}, {epoch - 9999999, 0}};
    for (const auto& c : cases) {
        const auto bits = static_cast<std::uint64_t>(c.ticks);
        EXPECT_EQ(fileTimeToSeconds(std::uint32_t(bits), std::uint32_t(bits >> 32)), c.seconds) << c.ticks;
    }
}

}
