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
        {999, "999"}, {1000, "1000"}, {1001, "1 001"}, {1000000, "1000 000"}, {1001000, "1 001 000"},
        {1234567890, "1 234 567 890"}, {-1500, "-1 500"},
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
        {"C:\\temp\\x", "C:\\"}, {"C:", ""}, {"\\\\srv\\share\\folder", "\\\\srv\\share\\"},
        {"\\\\srv\\share", ""}, {"//srv/share/folder", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(freeSpaceRoot(QString::fromLatin1(c.path)), QString::fromLatin1(c.root)) << c.path;
}

TEST(AgeLimit, DaysBecomeSecondsWrappingIn32Bits)
{
    EXPECT_EQ(ageLimitMinutes(1491308), 2147483520);
    EXPECT_LT(ageLimitMinutes(1491309), 0);
    EXPECT_EQ(ageLimitSeconds(ageLimitMinutes(24855)), 2147472000LL);
    EXPECT_EQ(ageLimitSeconds(ageLimitMinutes(24856)), -2147408896LL);

    const TimeStamp now = 2000000000;
    EXPECT_FALSE(isOldEnough(now - 86400, 1440, now));
    EXPECT_TRUE(isOldEnough(now - 86401, 1440, now));
    EXPECT_TRUE(isOldEnough(now + 3600, ageLimitMinutes(-5), now));
    EXPECT_TRUE(isOldEnough(now, ageLimitMinutes(24856), now));
}

TEST(AgeLimit, KiBAreRoundedPerFile)
{
    EXPECT_EQ(roundedKiB(511), 0);
    EXPECT_EQ(roundedKiB(512), 1);
    EXPECT_EQ(roundedKiB(1535), 1);
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
        {"c:\\Users\\m*\\AppData\\Temp", "c:\\Users\\", "m", "", "\\AppData\\Temp"},
        {"c:\\Users\\a*b\\x\\*\\y", "c:\\Users\\", "a", "b", "\\x\\*\\y"},
        {"K:/jobs/*/tmp", "K:/jobs/\\", "", "/tmp", ""},
        // A bare share is a folder as it stands.
        {"\\\\srv\\share*\\x", "\\\\srv\\share\\", "", "", "\\x"},
        {"\\\\srv\\share\\m*", "\\\\srv\\share\\", "m", "", ""},
        {"*", "", "", "", ""},
    };
    for (const auto& c : cases) {
        const WildcardParts parts = splitAtFirstWildcard(QString::fromLatin1(c.path));
        EXPECT_EQ(parts.base + QLatin1Char('|') + parts.nameStart + QLatin1Char('|') + parts.nameEnd
                      + QLatin1Char('|') + parts.rest,
                  QStringList({QString::fromLatin1(c.base), QString::fromLatin1(c.nameStart),
                               QString::fromLatin1(c.nameEnd), QString::fromLatin1(c.rest)})
                      .join(QLatin1Char('|')));
    }
}

}
