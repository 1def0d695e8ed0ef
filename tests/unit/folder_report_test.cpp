#include "app/folder_run.h"
#include "app/wildcard.h"
#include "sweep/sweep.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(FolderReport, GroupsDigitsFromOneThousandAndOneOn)
{
    const struct {
        std::int64_t value;
        const char* text;
    } cases[] = {
        {0, "0"},
        {999, "999"},
        {1000, "1000"},
        {1001, "1 001"},
        {123456, "123 456"},
        {1000000, "1000 000"},
        {1001000, "1 001 000"},
        {1234567890, "1 234 567 890"},
        {-1500, "-1 500"},
        {-1000, "-1000"},
        // Three groups at most; what stands in front is printed whole.
        {1234567890123LL, "1234 567 890 123"},
        {std::numeric_limits<std::int64_t>::min(), "-9223372036 854 775 808"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(formatGroupedNumber(c.value), QString::fromLatin1(c.text)) << c.value;
}

TEST(FolderReport, FreeSpaceRootOfDriveAndSharePaths)
{
    const struct {
        const char* path;
        const char* root;
    } cases[] = {
        {"C:\\temp\\x", "C:\\"},
        {"K:/work", "K:/"},
        {"C:", ""},
        {"", ""},
        {"\\\\srv\\share\\folder", "\\\\srv\\share\\"},
        {"\\\\srv\\share", ""},
        {"\\\\srv\\", ""},
        {"//srv/share/folder", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(freeSpaceRoot(QString::fromLatin1(c.path)), QString::fromLatin1(c.root)) << c.path;
}

TEST(AgeLimit, DaysBecomeMinutesAndSecondsWrappingIn32Bits)
{
    EXPECT_EQ(ageLimitMinutes(14), 20160);
    EXPECT_EQ(ageLimitMinutes(-5), -7200);
    EXPECT_EQ(ageLimitMinutes(1491308), 2147483520);
    EXPECT_LT(ageLimitMinutes(1491309), 0);

    EXPECT_EQ(ageLimitSeconds(ageLimitMinutes(24855)), 2147472000LL);
    EXPECT_EQ(ageLimitSeconds(ageLimitMinutes(24856)), -2147408896LL);
}

TEST(AgeLimit, OnlyStrictlyOlderFilesAreOldEnough)
{
    const TimeStamp now = 2000000000;
    const std::int32_t oneDay = 1440;
    const std::int64_t limit = 86400;
    EXPECT_FALSE(isOldEnough(now - limit, oneDay, now));
    EXPECT_FALSE(isOldEnough(now - limit + 1, oneDay, now));
    EXPECT_TRUE(isOldEnough(now - limit - 1, oneDay, now));
    EXPECT_FALSE(isOldEnough(now + 3600, oneDay, now));
}

TEST(AgeLimit, NoLimitOrAWrappedOneMakesEveryFileOldEnough)
{
    const TimeStamp now = 2000000000;
    EXPECT_TRUE(isOldEnough(now, 0, now));
    EXPECT_TRUE(isOldEnough(now + 3600, -1440, now));
    EXPECT_TRUE(isOldEnough(now, ageLimitMinutes(24856), now));
    EXPECT_FALSE(isOldEnough(now, ageLimitMinutes(24855), now));
}

TEST(SweepCounting, KiBAreRoundedPerFile)
{
    const struct {
        std::int64_t size;
        std::int64_t kib;
    } cases[] = {{0, 0}, {511, 0}, {512, 1}, {1535, 1}, {1536, 2}, {1048576, 1024}};
    for (const auto& c : cases)
        EXPECT_EQ(roundedKiB(c.size), c.kib) << c.size;
}

TEST(SweepCounting, FirstMatchingSuffixWinsIgnoringCase)
{
    const QStringList suffixes = {QStringLiteral(".tmp"), QStringLiteral("p")};
    ASSERT_NE(matchingSuffix(&suffixes, QStringLiteral("frame.TMP")), nullptr);
    EXPECT_EQ(*matchingSuffix(&suffixes, QStringLiteral("frame.TMP")), QStringLiteral(".tmp"));
    EXPECT_EQ(*matchingSuffix(&suffixes, QStringLiteral("map")), QStringLiteral("p"));
    EXPECT_EQ(matchingSuffix(&suffixes, QStringLiteral("frame.exr")), nullptr);
    EXPECT_EQ(matchingSuffix(nullptr, QStringLiteral("frame.tmp")), nullptr);
}

TEST(WildcardSplit, CutsAtTheFirstStarWithBackslashesOnly)
{
    const struct {
        const char* path;
        const char* base;
        const char* nameStart;
        const char* nameEnd;
        const char* rest;
    } cases[] = {
        {"c:\\Users\\m*\\AppData\\Local\\Temp", "c:\\Users\\", "m", "", "\\AppData\\Local\\Temp"},
        {"c:\\Users\\*", "c:\\Users\\", "", "", ""},
        {"c:\\Users\\*\\", "c:\\Users\\", "", "", "\\"},
        {"c:\\Users\\a*b\\x\\*\\y", "c:\\Users\\", "a", "b", "\\x\\*\\y"},
        {"*", "", "", "", ""},
        {"K:/jobs/*/tmp", "K:/jobs/\\", "", "/tmp", ""},
        {"ab*", "ab", "", "", ""},
    };
    for (const auto& c : cases) {
        const WildcardParts parts = splitAtFirstWildcard(QString::fromLatin1(c.path));
        EXPECT_EQ(parts.base, QString::fromLatin1(c.base)) << c.path;
        EXPECT_EQ(parts.nameStart, QString::fromLatin1(c.nameStart)) << c.path;
        EXPECT_EQ(parts.nameEnd, QString::fromLatin1(c.nameEnd)) << c.path;
        EXPECT_EQ(parts.rest, QString::fromLatin1(c.rest)) << c.path;
    }
}

}
