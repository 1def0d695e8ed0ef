// The rules of the run around the sweep: free-space goals and their cutoff, the report's numbers, the
// wildcard's split and the metrics file's replace.

#include "app/folder_run.h"
#include "app/free_space.h"
#include "app/metrics.h"
#include "app/wildcard.h"
#include "sweep/listing_rules.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

// -minfree, -freeto (none when 0) and the volume's size; the fault, then what
// is freed with 40 and with 80 bytes free.
TEST(FreeSpaceGoal, BelowTheLowMarkUpToTheHighOneOnAVolumeThatHoldsThem)
{
    const struct { FreeGoal low, high; std::uint64_t volume; GoalFault fault; std::uint64_t at40, at80; } cases[] = {
        {{50, false}, {0, false}, 1000, GoalFault::None, 10, 0},
        {{50, false}, {90, false}, 1000, GoalFault::None, 50, 0},
        {{5, true}, {9, true}, 1000, GoalFault::None, 50, 0},
        {{50, false}, {10, true}, 1000, GoalFault::None, 60, 0},
        {{50, false}, {1, true}, 1000, GoalFault::HighBelowLow, 0, 0},
        {{50, false}, {0, false}, 49, GoalFault::AboveVolume, 0, 0},
        {{50, false}, {60, false}, 59, GoalFault::AboveVolume, 0, 0},
    };
    for (const auto& c : cases) {
        VolumeGoal goal;
        EXPECT_EQ(volumeGoal(c.low, c.high.amount > 0 ? &c.high : nullptr, c.volume, goal), c.fault) << c.low.amount;
        if (c.fault != GoalFault::None)
            continue;
        EXPECT_EQ(bytesToFree(goal, 40), c.at40) << c.low.amount;
        EXPECT_EQ(bytesToFree(goal, 80), c.at80) << c.low.amount;
    }
    EXPECT_EQ(goalBytes(FreeGoal{15, true}, 1000), 150u);
    EXPECT_EQ(goalBytes(FreeGoal{0.5, true}, 1001), 6u);
}

// Candidates as (time, space); what is missing; the cutoff and what it frees.
TEST(FreeSpaceCutoff, OldestFirstWithTheirSecondAndTheFloorWhenAllAreNotEnough)
{
    const std::vector<SpaceCandidate> candidates{{300, 10}, {100, 10}, {200, 5}, {200, 5}, {400, 50}};
    const struct { std::uint64_t missing; TimeStamp cutoff; std::uint64_t bytes; } cases[] = {
        {1, 101, 10}, {10, 101, 10}, {11, 201, 20}, {25, 301, 30}, {81, 1000, 80}, {0, 1000, 0},
    };
    for (const auto& c : cases) {
        const Cutoff chosen = chooseCutoff(c.missing == 0 ? std::vector<SpaceCandidate>{} : candidates, c.missing,
                                           1000);
        EXPECT_EQ(chosen.cutoff, c.cutoff) << c.missing;
        EXPECT_EQ(chosen.bytes, c.bytes) << c.missing;
    }
    EXPECT_EQ(mebibytesDown((3u << 20) - 1), 2u);
    EXPECT_EQ(mebibytesUp((2u << 20) + 1), 3u);
}

TEST(FolderReport, GroupsDigitsFromOneThousandAndOneOn)
{
    const struct { std::int64_t value; const char* text; } cases[] = {
        {999, "999"}, {1000, "1000"}, {1001, "1 001"}, {1000000, "1000 000"}, {1001000, "1 001 000"},
        {1234567890, "1 234 567 890"}, {-1500, "-1 500"},
        // Three groups at most; what stands in front is printed whole.
        {1234567890123LL, "1234 567 890 123"},
        {std::numeric_limits<std::int64_t>::min(), "-9223372036 854 775 808"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(formatGroupedNumber(c.value), QString::fromLatin1(c.text)) << c.value;
}

// Runs on K: show the rest of the split; a share cannot be named there.
// Input, then base|nameStart|rest.
TEST(WildcardSplit, ABareShareIsAFolderAsItStands)
{
    const char* const cases[][2] = {
        {"\\\\srv\\share*\\x", "\\\\srv\\share\\||\\x"},
        {"\\\\srv\\share\\m*", "\\\\srv\\share\\|m|"},
    };
    for (const auto& c : cases) {
        const WildcardParts parts = splitAtFirstWildcard(QString::fromLatin1(c[0]));
        EXPECT_EQ(QStringList({parts.base, parts.nameStart, parts.rest}).join(QLatin1Char('|')),
                  QString::fromLatin1(c[1]))
            << c[0];
    }
}

TEST(MetricsReplace, IsTriedAgainOnlyWhileAReaderMayHoldTheFile)
{
    EXPECT_TRUE(retryMetricsReplace(kErrorSharingViolation, 0));
    EXPECT_TRUE(retryMetricsReplace(kErrorAccessDenied, kReplaceRetryMilliseconds - 1));
    EXPECT_FALSE(retryMetricsReplace(kErrorSharingViolation, kReplaceRetryMilliseconds));
    EXPECT_FALSE(retryMetricsReplace(kErrorFileNotFound, 0));
}

}
