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

TEST(AgeLimit, DaysBecomeSecondsWithoutWrapping)
{
    EXPECT_EQ(ageLimitSeconds(24856), 2147558400LL);
    EXPECT_EQ(ageLimitSeconds(1491309), 128849097600LL);
    EXPECT_EQ(ageLimitSeconds(-5), -432000LL);

    const TimeStamp now = 2000000000;
    EXPECT_FALSE(isOldEnough(now - 86400, ageLimitSeconds(1), now));
    EXPECT_TRUE(isOldEnough(now - 86401, ageLimitSeconds(1), now));
    EXPECT_TRUE(isOldEnough(now + 3600, ageLimitSeconds(-5), now));
    EXPECT_TRUE(isOldEnough(now + 3600, ageLimitSeconds(0), now));
    EXPECT_FALSE(isOldEnough(now - 1, ageLimitSeconds(30000), now));
    // 1901 is older than 30,000 days but younger than 1,491,309.
    EXPECT_TRUE(isOldEnough(-2145916800, ageLimitSeconds(30000), now));
    EXPECT_FALSE(isOldEnough(-2145916800, ageLimitSeconds(1491309), now));
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
