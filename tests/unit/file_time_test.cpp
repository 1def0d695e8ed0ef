#include "sweep/file_time.h"

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t kEpochTicks = 116444736000000000LL;

TimeStamp secondsFromTicks(std::int64_t ticks)
{
    const std::uint64_t bits = static_cast<std::uint64_t>(ticks);
    return fileTimeToSeconds(std::uint32_t(bits & 0xFFFFFFFFu), std::uint32_t(bits >> 32));
}

TEST(FileTime, TicksAroundTheEpochTruncateTowardZero)
{
    const struct {
        std::int64_t ticks;
        TimeStamp seconds;
    } cases[] = {
        {kEpochTicks, 0},
        {kEpochTicks + 9999999, 0},
        {kEpochTicks + 10000000, 1},
        {kEpochTicks - 10000000, -1},
        {kEpochTicks - 9999999, 0},
        {kEpochTicks + 17000000000LL * 10000000, 17000000000LL},
    };
    for (const auto& c : cases)
        EXPECT_EQ(secondsFromTicks(c.ticks), c.seconds) << c.ticks;
}

TEST(FileTime, ElapsedOnlyStrictlyAfterTheSpan)
{
    TimeStamp stamp = 1000;
    const TimeStamp atLimit = 1060;
    const TimeStamp past = 1061;
    EXPECT_FALSE(hasElapsed(stamp, 60, true, &atLimit));
    EXPECT_EQ(stamp, 1000);
    EXPECT_TRUE(hasElapsed(stamp, 60, false, &past));
    EXPECT_EQ(stamp, 1000);
    EXPECT_TRUE(hasElapsed(stamp, 60, true, &past));
    EXPECT_EQ(stamp, 1061);
}

TEST(FileTime, ZeroStampIsElapsedAtTheCurrentTime)
{
    TimeStamp stamp = 0;
    EXPECT_TRUE(hasElapsed(stamp, 5, true));
    EXPECT_GT(stamp, 1700000000);
    EXPECT_LE(stamp, currentTime());
}

}
